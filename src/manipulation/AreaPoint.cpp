#include "manipulation/AreaPoint.h"

#include "model/ActionAreaPoint.h"
#include "morphology/DrawableNumbers.h"
#include "widgets/GuiConfig.h"

#include <QBrush>
#include <QPen>
#include <QScopedValueRollback>

namespace Planaria {

AreaPoint::AreaPoint(ActionAreaPoint *corner)
    : QGraphicsEllipseItem(-5.0, -5.0, 10.0, 10.0), point(corner)
{
    setZValue(1.0);
    setFlags(ItemIsMovable | ItemIsSelectable | ItemSendsGeometryChanges);
    setPen(QPen(Qt::black));
    setBrush(GuiConfig::cropAreaPointColor());
    updatePos();
}

void AreaPoint::updatePos()
{
    const QScopedValueRollback guard(updating, true);
    setPos(Drawable::point(point->point()));
}

QVariant AreaPoint::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemPositionChange && !updating) {
        point->setPoint(value.toPointF());
        emit pointChanged();
    }
    return QGraphicsEllipseItem::itemChange(change, value);
}

} // namespace Planaria
