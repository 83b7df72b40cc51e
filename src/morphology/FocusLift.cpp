#include "morphology/FocusLift.h"

#include <QGraphicsItem>

namespace Planaria {

void FocusLift::lift(QGraphicsItem *item)
{
    savedZ = static_cast<int>(item->zValue());
    item->setZValue(10.0);
}

void FocusLift::restore(QGraphicsItem *item) const
{
    item->setZValue(savedZ);
}

} // namespace Planaria
