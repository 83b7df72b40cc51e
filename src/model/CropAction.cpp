#include "model/CropAction.h"

namespace Planaria {

CropAction::CropAction(ManipulationAction *from, ManipulationAction *toAction,
                       Manipulation *manipulation)
    : AreaAction(own, from, toAction, manipulation)
{
}

CropAction::CropAction(ManipulationAction *toAction, Manipulation *manipulation, int ownRowId,
                       int actionRowId, DB *db)
    : AreaAction(own, toAction, manipulation, ownRowId, actionRowId, db)
{
}

CropAction::CropAction(const CropAction &other, ManipulationAction *toAction,
                       Manipulation *manipulation, bool keepIds)
    : AreaAction(other, toAction, manipulation, keepIds)
{
}

void CropAction::accept(Visitor *visitor)
{
    visitor->visit(this);
}

ManipulationAction *CropAction::copy(Manipulation *manipulation, ManipulationAction *toAction,
                                     bool keepIds) const
{
    return new CropAction(*this, toAction, manipulation, keepIds);
}

} // namespace Planaria
