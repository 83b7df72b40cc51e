#include "morphology/MorphologyItem.h"

#include "model/Morphology.h"
#include "model/RegionType.h"
#include "morphology/DrawableNumbers.h"
#include "morphology/RegionLayout.h"

#include <QRadialGradient>

namespace Planaria {

using namespace Angles;

MorphologyItem::MorphologyItem(const Morphology &morphology, QGraphicsItem *parent, bool plain)
    : QGraphicsPathItem(parent), plainStyle(plain)
{
    setFlag(ItemClipsChildrenToShape);
    setBrush(Qt::NoBrush);
    if (plainStyle)
        setPen(Qt::NoPen);
    buildMorphology(morphology);
}

MorphologyItem::~MorphologyItem() = default;

QRectF MorphologyItem::boundingRect() const
{
    QRectF bounds;
    for (const QGraphicsPathItem *item : orderedRegionItems)
        bounds |= item->boundingRect().translated(item->pos());
    return bounds;
}

void MorphologyItem::buildMorphology(const Morphology &morphology)
{
    buildRegionsItems(morphology);
    updateRegionsPos(morphology);
    centerAtGravity();
    buildOrgansItems(morphology);
}

QPen MorphologyItem::outlinePen() const
{
    return plainStyle ? QPen(Qt::NoPen) : QPen(Qt::black, 1.0);
}

// --- Regions ---

void MorphologyItem::buildRegionsItems(const Morphology &morphology)
{
    for (const Region *region : morphology.regions()) {
        QGraphicsPathItem *item = buildRegion(region);
        regionItems.insert(region, item);
        orderedRegionItems.append(item);
    }
}

QGraphicsPathItem *MorphologyItem::buildRegion(const Region *region)
{
    switch (region->links().size()) {
    case 0:
        return buildRegion0Links(region);
    case 1:
        return buildRegion1Link(region);
    default:
        return buildRegionNLinks(region);
    }
}

QGraphicsPathItem *MorphologyItem::buildRegion0Links(const Region *region)
{
    const double right = Drawable::param(region, 0);
    const double top = Drawable::param(region, 1);
    const double left = Drawable::param(region, 2);
    const double bottom = Drawable::param(region, 3);

    QPainterPath path;
    path.addEllipse(QRectF(-left, -bottom, right + left, top + bottom));
    return createRegionItem(region, path);
}

QGraphicsPathItem *MorphologyItem::buildRegion1Link(const Region *region)
{
    const RegionsLink *link = region->links().first();
    const double ang = Drawable::ang(link, region);
    const QPointF flank0 = Drawable::param(region, 0) * direction(ang + quarterTurn);
    const QPointF farEnd = Drawable::param(region, 1) * direction(ang + halfTurn);
    const QPointF flank2 = Drawable::param(region, 2) * direction(ang + 3.0 * quarterTurn);

    QPainterPath path;
    path.moveTo(flank0);
    path.quadTo(flank0 + farEnd, farEnd);
    path.quadTo(flank2 + farEnd, flank2);
    addLink2Path(region, link, &path);
    return createRegionItem(region, path);
}

QGraphicsPathItem *MorphologyItem::buildRegionNLinks(const Region *region)
{
    QPainterPath path;
    for (const RegionsLink *link : region->links())
        addLink2Path(region, link, &path);
    // The outline was begun at the origin; now it is known where it has to begin to be closed.
    if (path.elementCount() > 0)
        path.setElementPositionAt(0, path.currentPosition().x(), path.currentPosition().y());
    return createRegionItem(region, path);
}

QGraphicsPathItem *MorphologyItem::createRegionItem(const Region *region, const QPainterPath &path)
{
    auto *item = new QGraphicsPathItem(path, this);
    item->setFlag(ItemClipsChildrenToShape);
    item->setZValue(-5.0);
    item->setPen(outlinePen());
    if (plainStyle) {
        QColor strong;
        QColor pale;
        calcRegionColors(region, &strong, &pale);
        item->setBrush(strong);
    } else {
        item->setBrush(calcRegionGradient(region));
    }
    return item;
}

// --- Layout ---

void MorphologyItem::updateRegionsPos(const Morphology &morphology)
{
    layOutRegions(
        morphology,
        [this](const Region *region) { return regionItems.value(region)->boundingRect(); },
        [this](const Region *region, const QPointF &pos) {
            regionItems.value(region)->setPos(pos);
        });
}

void MorphologyItem::centerAtGravity()
{
    QPointF sum;
    for (const QGraphicsPathItem *item : std::as_const(orderedRegionItems))
        sum += item->pos();
    moveAll(regionItems.isEmpty() ? QPointF() : -sum / static_cast<double>(regionItems.size()));
}

void MorphologyItem::centerAtZero()
{
    QRectF bounds;
    for (const QGraphicsPathItem *item : std::as_const(orderedRegionItems)) {
        QRectF itemBounds = item->boundingRect();
        itemBounds.moveCenter(item->pos());
        bounds |= itemBounds;
    }
    moveAll(-bounds.center());
}

void MorphologyItem::moveAll(const QPointF &offset)
{
    prepareGeometryChange();
    for (QGraphicsPathItem *item : std::as_const(orderedRegionItems))
        item->setPos(item->pos() + offset);
    for (QGraphicsPathItem *item : std::as_const(lineOrganItems))
        item->setPos(item->pos() + offset);
    setupGlobalPath();
}

void MorphologyItem::setupGlobalPath()
{
    QPainterPath path;
    for (const QGraphicsPathItem *item : std::as_const(orderedRegionItems))
        path.addPath(item->path().translated(item->pos()));
    setPath(path);
}

// --- Shading ---

void MorphologyItem::calcRegionColors(const Region *region, QColor *strong, QColor *pale)
{
    switch (region->type()->id()) {
    case 1: // head
        *strong = Qt::red;
        *pale = QColor(255, 200, 200);
        break;
    case 2: // trunk
        *strong = Qt::gray;
        *pale = QColor(200, 200, 200);
        break;
    case 3: // tail
        *strong = Qt::blue;
        *pale = QColor(200, 200, 255);
        break;
    default:
        *strong = Qt::yellow;
        *pale = Qt::yellow;
    }
}

QPointF MorphologyItem::calcRegionFocus(const Region *region)
{
    if (region->links().size() != 1)
        return {};
    const RegionsLink *link = region->links().first();
    return Drawable::dist(link, region) * direction(Drawable::ang(link, region));
}

double MorphologyItem::calcRegionRadius(const Region *region)
{
    double longest = 0.0;
    for (qsizetype i = 0; i < region->params().size(); ++i)
        longest = std::max(longest, Drawable::param(region, i));
    for (const RegionsLink *link : region->links())
        longest = std::max(longest, Drawable::dist(link, region));
    return (region->links().size() >= 2 ? 2.0 : 1.5) * longest;
}

QRadialGradient MorphologyItem::calcRegionGradient(const Region *region)
{
    QColor strong;
    QColor pale;
    calcRegionColors(region, &strong, &pale);
    const QPointF focus = calcRegionFocus(region);
    constexpr double smallest = 0.001; // the painter cannot fill with a radius of 0
    QRadialGradient gradient(focus, std::max(calcRegionRadius(region), smallest), focus);
    gradient.setColorAt(0.0, strong);
    gradient.setColorAt(1.0, pale);
    return gradient;
}

// --- Outline ---

void MorphologyItem::calcPrevNextPoints(const Region *region, const RegionsLink *link,
                                        QPointF *prevPoint, QPointF *nextPoint, double *prevAng,
                                        double *nextAng)
{
    const double ang = Drawable::ang(link, region);
    const qsizetype n = region->links().size();
    qsizetype prevParam = 2;
    qsizetype nextParam = 0;
    if (n == 1) {
        *prevAng = ang - quarterTurn;
        *nextAng = ang + quarterTurn;
    } else {
        const qsizetype i = region->links().indexOf(link);
        const qsizetype prev = (i + n - 1) % n;
        const double before = Drawable::ang(region->links().at(prev), region);
        const double behind = Drawable::ang(region->links().at((i + 1) % n), region);
        *prevAng = before + 0.5 * sweep(before, ang);
        *nextAng = ang + 0.5 * sweep(ang, behind);
        prevParam = prev;
        nextParam = i;
    }
    *prevPoint = Drawable::param(region, prevParam) * direction(*prevAng);
    *nextPoint = Drawable::param(region, nextParam) * direction(*nextAng);
}

void MorphologyItem::addLink2Path(const Region *region, const RegionsLink *link, QPainterPath *path)
{
    const double ang = Drawable::ang(link, region);
    QPointF prev;
    QPointF next;
    double prevAng = 0.0;
    double nextAng = 0.0;
    calcPrevNextPoints(region, link, &prev, &next, &prevAng, &nextAng);

    QPointF otherPrev;
    QPointF otherNext;
    double otherPrevAng = 0.0; // not used, but each angle needs a place of its own
    double otherNextAng = 0.0;
    calcPrevNextPoints(link->otherRegion(region), link, &otherPrev, &otherNext, &otherPrevAng,
                       &otherNextAng);
    const QPointF otherCentre = Drawable::totalDist(link) * direction(ang);

    // The waist lies on the straight lines between the points of the two regions that face each
    // other; seen from the other region, before and behind are exchanged.
    const double ratio = Drawable::ratio(link, region);
    const QPointF waistPrev = Drawable::point(prev + (otherCentre + otherNext - prev) * ratio);
    const QPointF waistNext = Drawable::point(next + (otherCentre + otherPrev - next) * ratio);
    const double dist = Drawable::dist(link, region);
    const double handle = 0.25 * dist;

    path->cubicTo(prev + handle * direction(prevAng + quarterTurn),
                  waistPrev + handle * unit(prev - waistPrev), waistPrev);
    path->quadTo(dist * direction(ang), waistNext);
    path->cubicTo(waistNext + handle * unit(next - waistNext),
                  next + handle * direction(nextAng - quarterTurn), next);
}

} // namespace Planaria
