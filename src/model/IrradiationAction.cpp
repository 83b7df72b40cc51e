#include "model/IrradiationAction.h"

namespace Planaria {

IrradiationAction::IrradiationAction(ManipulationAction *from, ManipulationAction *toAction,
                                     Manipulation *manipulation)
    : AreaAction(own, from, toAction, manipulation)
{
}

IrradiationAction::IrradiationAction(ManipulationAction *toAction, Manipulation *manipulation,
                                     int ownRowId, int actionRowId, DB *db)
    : AreaAction(own, toAction, manipulation, ownRowId, actionRowId, db)
{
}

IrradiationAction::IrradiationAction(const IrradiationAction &other, ManipulationAction *toAction,
                                     Manipulation *manipulation, bool keepIds)
    : AreaAction(other, toAction, manipulation, keepIds)
{
}

void IrradiationAction::accept(Visitor *visitor)
{
    visitor->visit(this);
}

ManipulationAction *IrradiationAction::copy(Manipulation *manipulation,
                                            ManipulationAction *toAction, bool keepIds) const
{
    return new IrradiationAction(*this, toAction, manipulation, keepIds);
}

} // namespace Planaria
