#include "manipulation/ClipPathItem.h"

#include <QBrush>
#include <QPen>

namespace Planaria {

ClipPathItem::ClipPathItem(const QPainterPath &path, QGraphicsItem *child, QGraphicsItem *parent)
    : QGraphicsPathItem(parent), clipPath(path), clipRect(path.boundingRect())
{
    child->setParentItem(this);
    setFlag(ItemClipsChildrenToShape);
    setPen(Qt::NoPen);
    setBrush(Qt::NoBrush);
}

} // namespace Planaria
