#include "model/LineOrganType.h"
#include "model/Morphology.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"
#include "morphology/DrawableNumbers.h"
#include "morphology/MorphologyItem.h"

// The organ half of MorphologyItem. Shapes are fixed templates in scene units, whose +x is the
// direction in which an organ faces.

namespace Planaria {

using namespace Angles;

namespace {

double degrees(double radians)
{
    return 180.0 * Drawable::number(radians) / halfTurn;
}

void place(QGraphicsItem *item, const SpotOrgan &organ)
{
    item->setPos(Drawable::point(organ.pos()));
    item->setRotation(degrees(organ.rot()));
}

/// @p vector turned a quarter of a turn to the left.
QPointF leftOf(const QPointF &vector)
{
    return {-vector.y(), vector.x()};
}

} // namespace

void MorphologyItem::buildOrgansItems(const Morphology &morphology)
{
    for (const Region *region : morphology.regions())
        buildRegionOrgans(*region, regionItems.value(region));
}

void MorphologyItem::buildRegionOrgans(const Region &region, QGraphicsPathItem *regionItem)
{
    for (const Organ *organ : region.organs())
        buildOrgan(organ, regionItem);
}

void MorphologyItem::buildOrgan(const Organ *organ, QGraphicsPathItem *regionItem)
{
    if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ)) {
        switch (spot->type()->id()) {
        case 1:
            buildEye(*spot, regionItem);
            break;
        case 2:
            buildBrain(*spot, regionItem);
            break;
        case 3:
            buildPharynx(*spot, regionItem);
            break;
        default: // a type of a newer program
            break;
        }
    } else if (const auto *line = dynamic_cast<const LineOrgan *>(organ)) {
        if (line->type()->id() == 1)
            buildVNC(*line, regionItem);
    }
}

void MorphologyItem::buildEye(const SpotOrgan &eye, QGraphicsPathItem *regionItem)
{
    auto *item = new QGraphicsEllipseItem(-10.0, -20.0, 20.0, 40.0, regionItem);
    place(item, eye);
    item->setZValue(2.0);
    item->setPen(Qt::NoPen);
    item->setBrush(plainStyle ? Qt::cyan : Qt::white);
    if (plainStyle)
        return;

    auto *pupil = new QGraphicsEllipseItem(-5.0, -10.0, 10.0, 20.0, item);
    pupil->setPos(5.0, 0.0);
    pupil->setZValue(2.0);
    pupil->setBrush(Qt::black);
}

void MorphologyItem::buildBrain(const SpotOrgan &brain, QGraphicsPathItem *regionItem)
{
    auto *item = new QGraphicsEllipseItem(-20.0, -40.0, 40.0, 80.0, regionItem);
    place(item, brain);
    item->setZValue(1.0);
    item->setBrush(Qt::green);
    item->setPen(outlinePen());
}

void MorphologyItem::buildPharynx(const SpotOrgan &pharynx, QGraphicsPathItem *regionItem)
{
    // A tube, open where it faces and round at the other end.
    QPainterPath path;
    path.moveTo(60.0, 20.0);
    path.lineTo(0.0, 20.0);
    path.cubicTo(-30.0, 20.0, -30.0, -20.0, 0.0, -20.0);
    path.lineTo(60.0, -20.0);
    path.translate(-path.boundingRect().center());

    auto *item = new QGraphicsPathItem(path, regionItem);
    place(item, pharynx);
    item->setZValue(1.0);
    item->setPen(outlinePen());
    if (plainStyle)
        item->setBrush(Qt::yellow);
}

void MorphologyItem::buildVNC(const LineOrgan &cord, QGraphicsPathItem *regionItem)
{
    constexpr double halfWidth = 4.0;
    const QPointF end1 = Drawable::point(cord.end1());
    const QPointF end2 = Drawable::point(cord.end2());
    const double ang1 = angleOf(end1);
    const QPointF middle = halfWidth * direction(ang1 + 0.5 * sweep(ang1, angleOf(end2)));
    const QPointF side1 = leftOf(halfWidth * unit(end1));
    const QPointF side2 = leftOf(halfWidth * unit(end2));
    const QPointF left1 = end1 + side1;
    const QPointF right1 = end1 - side1;
    const QPointF left2 = end2 + side2;
    const QPointF right2 = end2 - side2;

    // The control points make the two long sides pass the organ's position at the half width.
    QPainterPath path;
    path.moveTo(left1);
    path.quadTo(2.0 * middle - 0.5 * left1 - 0.5 * right2, right2);
    path.lineTo(left2);
    path.quadTo(-2.0 * middle - 0.5 * left2 - 0.5 * right1, right1);
    path.lineTo(left1);

    auto *item = new QGraphicsPathItem(path, this);
    lineOrganItems.append(item);
    item->setPos(regionItem->pos() + Drawable::point(cord.pos()));
    item->setZValue(5.0);
    item->setPen(outlinePen());
    item->setBrush(plainStyle ? Qt::darkGreen : Qt::green);
}

} // namespace Planaria
