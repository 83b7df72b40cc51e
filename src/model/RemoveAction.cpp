#include "model/RemoveAction.h"

namespace Planaria {

RemoveAction::RemoveAction(ManipulationAction *from, ManipulationAction *toAction,
                           Manipulation *manipulation)
    : AreaAction(own, from, toAction, manipulation)
{
}

RemoveAction::RemoveAction(ManipulationAction *toAction, Manipulation *manipulation, int ownRowId,
                           int actionRowId, DB *db)
    : AreaAction(own, toAction, manipulation, ownRowId, actionRowId, db)
{
}

RemoveAction::RemoveAction(const RemoveAction &other, ManipulationAction *toAction,
                           Manipulation *manipulation, bool keepIds)
    : AreaAction(other, toAction, manipulation, keepIds)
{
}

void RemoveAction::accept(Visitor *visitor)
{
    visitor->visit(this);
}

ManipulationAction *RemoveAction::copy(Manipulation *manipulation, ManipulationAction *toAction,
                                       bool keepIds) const
{
    return new RemoveAction(*this, toAction, manipulation, keepIds);
}

} // namespace Planaria
