#pragma once

#include "model/AreaAction.h"

namespace Planaria {

/// Marks what lies within its area as irradiated.
class IrradiationAction final : public AreaAction
{
public:
    IrradiationAction(ManipulationAction *from, ManipulationAction *toAction,
                      Manipulation *manipulation);
    IrradiationAction(ManipulationAction *toAction, Manipulation *manipulation, int ownRowId,
                      int actionRowId, DB *db);
    IrradiationAction(const IrradiationAction &other, ManipulationAction *toAction,
                      Manipulation *manipulation, bool keepIds);

    void accept(Visitor *visitor) override;

protected:
    ManipulationAction *copy(Manipulation *manipulation, ManipulationAction *toAction,
                             bool keepIds) const override;

private:
    static constexpr Traits own{Kind::Irradiation, "IrradiationActionAreaPoint"};
};

} // namespace Planaria
