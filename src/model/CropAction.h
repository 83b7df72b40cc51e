#pragma once

#include "model/AreaAction.h"

namespace Planaria {

/// Cuts away what lies outside of its area.
class CropAction final : public AreaAction
{
public:
    CropAction(ManipulationAction *from, ManipulationAction *toAction, Manipulation *manipulation);
    CropAction(ManipulationAction *toAction, Manipulation *manipulation, int ownRowId,
               int actionRowId, DB *db);
    CropAction(const CropAction &other, ManipulationAction *toAction, Manipulation *manipulation,
               bool keepIds);

    void accept(Visitor *visitor) override;

protected:
    ManipulationAction *copy(Manipulation *manipulation, ManipulationAction *toAction,
                             bool keepIds) const override;

private:
    static constexpr Traits own{Kind::Crop, "CropActionAreaPoint"};
};

} // namespace Planaria
