#include "morphology/RegionLayout.h"

#include "model/Morphology.h"
#include "morphology/DrawableNumbers.h"

#include <QList>
#include <QSet>

namespace Planaria {

namespace {

constexpr double pieceGap = 25.0;

struct PlacedRegion
{
    const Region *region;
    QPointF pos;
};

/// Walks from @p first over all of @p pending that hang on it, with @p first at the origin.
QList<PlacedRegion> pieceOf(const Region *first, QSet<const Region *> *pending)
{
    // The road back is a list: a chain of regions in a damaged file may be longer than the stack.
    struct Step
    {
        PlacedRegion at;
        qsizetype nextLink = 0;
    };
    QList<PlacedRegion> piece{{first, QPointF()}};
    QList<Step> road{Step{piece.first()}};
    pending->remove(first);
    while (!road.isEmpty()) {
        Step &step = road.last();
        const Region *region = step.at.region;
        if (step.nextLink == region->links().size()) {
            road.removeLast();
            continue;
        }
        const RegionsLink *link = region->links().at(step.nextLink++);
        const Region *other = link->otherRegion(region);
        if (pending->remove(other)) {
            const QPointF pos = step.at.pos + Drawable::totalDist(link) *
                                                  Angles::direction(Drawable::ang(link, region));
            piece.append(PlacedRegion{other, pos});
            road.append(Step{piece.last()});
        }
    }
    return piece;
}

} // namespace

void layOutRegions(const Morphology &morphology,
                   const std::function<QRectF(const Region *)> &extent,
                   const std::function<void(const Region *, const QPointF &)> &place)
{
    QSet<const Region *> pending(morphology.regions().cbegin(), morphology.regions().cend());
    double right = 0.0; // of the pieces so far
    bool isFirstPiece = true;
    for (const Region *first : morphology.regions()) {
        if (!pending.contains(first))
            continue;
        const QList<PlacedRegion> piece = pieceOf(first, &pending);
        QRectF bounds;
        for (const PlacedRegion &placed : piece)
            bounds |= extent(placed.region).translated(placed.pos);

        // The first region of the first piece stands at x = 0, whatever lies to its left.
        const double x = isFirstPiece ? 0.0 : right + pieceGap - bounds.left();
        const double y = -(0.5 * bounds.height() + bounds.top());
        for (const PlacedRegion &placed : piece)
            place(placed.region, placed.pos + QPointF(x, y));
        right = x + bounds.left() + bounds.width();
        isFirstPiece = false;
    }
}

} // namespace Planaria
