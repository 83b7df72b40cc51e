#include "morphology/MGLever.h"

#include <QBrush>
#include <QPen>
#include <QScopedValueRollback>

namespace Planaria {

MGLever::MGLever(double radius, const QColor &color, QGraphicsItem *parent)
    : QGraphicsEllipseItem(-radius, -radius, 2.0 * radius, 2.0 * radius, parent)
{
    setFlags(ItemIsMovable | ItemIsSelectable | ItemSendsGeometryChanges);
    setPen(QPen(Qt::black, 1.0));
    setBrush(color);
}

MGLever::~MGLever()
{
    delete lineItem;
}

QLineF MGLever::line() const
{
    return lineItem ? lineItem->line() : QLineF();
}

void MGLever::addLine(double zValue)
{
    lineItem = new QGraphicsLineItem(parentItem());
    lineItem->setZValue(zValue);
    lineItem->setPen(QPen(Qt::black, 1.0));
}

void MGLever::setLine(const QPointF &rim, const QPointF &handle)
{
    lineItem->setLine(QLineF(rim, handle));
}

void MGLever::updatePos()
{
    const QScopedValueRollback guard(movesItself, true);
    setPos(modelPos());
}

void MGLever::selectionChanged(bool /*selected*/) {}

QVariant MGLever::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemPositionChange && !movesItself)
        return QGraphicsEllipseItem::itemChange(change, dragged(value.toPointF()));
    if (change == ItemSelectedHasChanged)
        selectionChanged(value.toBool());
    return QGraphicsEllipseItem::itemChange(change, value);
}

} // namespace Planaria
