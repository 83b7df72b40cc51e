#include "manipulation/ManipulationItem.h"

#include "manipulation/ClipPathItem.h"
#include "manipulation/DrawableArea.h"
#include "model/Angles.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Morphology.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "morphology/DrawableNumbers.h"
#include "morphology/MorphologyItem.h"
#include "widgets/GuiConfig.h"

#include <QBrush>
#include <QGraphicsItemGroup>
#include <QPen>

namespace Planaria {

ManipulationItem::ManipulationItem(const ManipulationAction *action, QGraphicsItem *parent)
    : QGraphicsItem(parent)
{
    QGraphicsItem *built = buildItem(action);
    prepareGeometryChange();
    item = built;
}

QRectF ManipulationItem::boundingRect() const
{
    return item ? item->boundingRect() : QRectF();
}

QPainterPath ManipulationItem::shape() const
{
    return item ? item->shape() : QPainterPath();
}

void ManipulationItem::paint(QPainter * /*painter*/, const QStyleOptionGraphicsItem * /*option*/,
                             QWidget * /*widget*/)
{
}

QGraphicsItem *ManipulationItem::buildItem(const ManipulationAction *action)
{
    if (const auto *remove = dynamic_cast<const RemoveAction *>(action))
        return buildRemoveItem(remove);
    if (const auto *crop = dynamic_cast<const CropAction *>(action))
        return buildCropItem(crop);
    if (const auto *join = dynamic_cast<const JoinAction *>(action))
        return buildJoinItem(join);
    if (const auto *irradiation = dynamic_cast<const IrradiationAction *>(action))
        return buildIrradiationItem(irradiation);
    return buildMorphologyItem(action);
}

QGraphicsItem *ManipulationItem::buildRemoveItem(const AreaAction *action)
{
    QGraphicsItem *child = buildItem(action->fromAction());
    return new ClipPathItem(child->shape().subtracted(Drawable::areaPath(*action)), child, this);
}

QGraphicsItem *ManipulationItem::buildCropItem(const AreaAction *action)
{
    QGraphicsItem *child = buildItem(action->fromAction());
    return new ClipPathItem(child->shape().intersected(Drawable::areaPath(*action)), child, this);
}

QGraphicsItem *ManipulationItem::buildJoinItem(const JoinAction *action)
{
    QGraphicsItem *item1 = buildItem(action->fromAction1());
    QGraphicsItem *item2 = buildItem(action->fromAction2());
    item2->setPos(Drawable::point({action->vectX(), action->vectY()}));
    item2->setRotation(180.0 * Drawable::number(action->rot()) / Angles::halfTurn);
    return grouped(item1, item2);
}

QGraphicsItem *ManipulationItem::buildIrradiationItem(const AreaAction *action)
{
    QGraphicsItem *child = buildItem(action->fromAction());
    auto *mark =
        new QGraphicsPathItem(Drawable::areaPath(*action).intersected(child->shape()), this);
    mark->setPen(Qt::NoPen);
    mark->setBrush(GuiConfig::radiationColor());
    return grouped(child, mark);
}

QGraphicsItem *ManipulationItem::buildMorphologyItem(const ManipulationAction *action)
{
    const auto *leaf = dynamic_cast<const MorphologyAction *>(action);
    if (leaf && leaf->morphology())
        return new MorphologyItem(*leaf->morphology(), this, false);
    return new MorphologyItem(Morphology(), this, false);
}

QGraphicsItem *ManipulationItem::grouped(QGraphicsItem *lower, QGraphicsItem *upper)
{
    auto *group = new QGraphicsItemGroup(this);
    group->addToGroup(lower);
    group->addToGroup(upper);
    return group;
}

} // namespace Planaria
