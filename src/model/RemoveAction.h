#pragma once

#include "model/AreaAction.h"

namespace Planaria {

/// Cuts away what lies within its area.
class RemoveAction final : public AreaAction
{
public:
    RemoveAction(ManipulationAction *from, ManipulationAction *toAction,
                 Manipulation *manipulation);
    RemoveAction(ManipulationAction *toAction, Manipulation *manipulation, int ownRowId,
                 int actionRowId, DB *db);
    RemoveAction(const RemoveAction &other, ManipulationAction *toAction,
                 Manipulation *manipulation, bool keepIds);

    void accept(Visitor *visitor) override;

protected:
    ManipulationAction *copy(Manipulation *manipulation, ManipulationAction *toAction,
                             bool keepIds) const override;

private:
    static constexpr Traits own{Kind::Remove, "RemoveActionAreaPoint"};
};

} // namespace Planaria
