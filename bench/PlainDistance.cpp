#include "PlainDistance.h"

#include "distance/DistAlgo.h"
#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"

#include <QMultiMap>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace Planaria::PlainDistance {

namespace {

using namespace DistAlgo::Costs;
using std::numbers::pi;

/// What is told to all searches of a distance, and of them.
struct Limits
{
    int mostOpenPaths;
    int givenUp = 0;
};

/// Pairs of elements of two lists; null stands for the partner that an element does not have.
template <typename T> struct Path
{
    double cost = 0.0;
    QList<T *> first;
    QList<T *> second;
};

/// The whole search; @p stepCost tells what a pair adds to the cost of a path.
template <typename T, typename StepCost>
double cheapest(const QList<T *> &a, const QList<T *> &b, const StepCost &stepCost, Limits *limits)
{
    QMultiMap<double, Path<T> *> open;
    const auto extend = [&](const Path<T> &path, T *first, T *second) {
        auto extended = std::make_unique<Path<T>>(path);
        extended->cost += stepCost(path, first, second);
        extended->first.append(first);
        extended->second.append(second);
        const double cost = extended->cost;
        open.insert(cost, extended.release()); // ahead of those of the same cost
    };

    auto path = std::make_unique<Path<T>>();
    const auto placed = [](const QList<T *> &list) { return list.size() - list.count(nullptr); };
    while (placed(path->first) + placed(path->second) != a.size() + b.size()) {
        QList<T *> remaining = b;
        for (T *used : std::as_const(path->second))
            remaining.removeOne(used);

        T *next = path->first.size() < a.size() ? a.at(path->first.size()) : nullptr;
        for (T *partner : std::as_const(remaining))
            extend(*path, next, partner);
        if (next)
            extend(*path, next, nullptr);

        for (; open.size() > limits->mostOpenPaths; ++limits->givenUp) {
            delete open.last();
            open.erase(std::prev(open.end()));
        }
        path.reset(*open.begin()); // the newest of the lowest cost
        open.erase(open.begin());
    }
    qDeleteAll(open);
    return path->cost;
}

double length(const QPointF &vector)
{
    return std::sqrt(vector.x() * vector.x() + vector.y() * vector.y());
}

/// The angle between two directions, 0 to pi.
double angleBetween(double a, double b)
{
    double angle = a - b;
    angle -= 2.0 * pi * std::floor(angle / (2.0 * pi));
    return std::clamp(angle > pi ? 2.0 * pi - angle : angle, 0.0, pi); // after many turns
}

double organStep(const Organ *a, const Organ *b)
{
    if (!a || !b)
        return insertDeleteOrgan;
    double cost = moveOrgan * length(b->pos() - a->pos());
    const auto *spotA = dynamic_cast<const SpotOrgan *>(a);
    const auto *spotB = dynamic_cast<const SpotOrgan *>(b);
    const auto *lineA = dynamic_cast<const LineOrgan *>(a);
    const auto *lineB = dynamic_cast<const LineOrgan *>(b);
    if (spotA && spotB) {
        cost += changeSpotOrganRotation / pi * angleBetween(spotA->rot(), spotB->rot());
        if (spotA->type()->id() != spotB->type()->id())
            cost += changeSpotOrganType;
    } else if (lineA && lineB) {
        cost += moveLineOrganEnd * length(lineB->end1() - lineA->end1());
        cost += moveLineOrganEnd * length(lineB->end2() - lineA->end2());
    } else {
        cost += changeSpotLineOrganType;
    }
    return cost;
}

double organsCost(const Region *a, const Region *b, Limits *limits)
{
    return cheapest<Organ>(
        a->organs(), b->organs(),
        [](const Path<Organ> &, const Organ *first, const Organ *second) {
            return organStep(first, second);
        },
        limits);
}

double paramsCost(const Region *a, const Region *b)
{
    double cost = 0.0;
    for (int i = 0; i < std::min(a->params().size(), b->params().size()); ++i)
        cost += changeRegionParameter *
                std::abs(a->params().at(i)->value() - b->params().at(i)->value());
    return cost;
}

double linkChange(const RegionsLink *linkA, const Region *a, const RegionsLink *linkB,
                  const Region *b)
{
    double cost = changeLinkDistance * std::abs(linkB->totalDist() - linkA->totalDist());
    const double turn = angleBetween(linkA->ang(a), linkB->ang(b)) / pi;
    cost += changeLinkAngle * turn;
    if (turn > 0.5)
        cost += changeLinkAngleMore90Penalty;
    return cost;
}

/// @p cost with that of each of @p links of @p region which leads to one of @p placed.
double withLostLinks(double cost, const Region *region, const QList<RegionsLink *> &links,
                     const QList<Region *> &placed)
{
    for (const RegionsLink *link : links) {
        if (placed.contains(link->otherRegion(region)))
            cost += insertDeleteLink;
    }
    return cost;
}

double linksCost(const Path<Region> &path, const Region *a, const Region *b)
{
    double cost = 0.0;
    QList<RegionsLink *> linksA = a->links();
    QList<RegionsLink *> linksB = b->links();
    while (!linksA.isEmpty() && !linksB.isEmpty()) {
        const RegionsLink *link = linksA.takeFirst();
        const qsizetype pair = path.first.indexOf(link->otherRegion(a));
        if (pair < 0)
            continue;
        const Region *partner = path.second.at(pair);
        RegionsLink *counterpart = partner ? b->isLinked(partner) : nullptr;
        if (counterpart) {
            linksB.removeOne(counterpart);
            cost += linkChange(link, a, counterpart, b);
        } else {
            cost += insertDeleteLink;
        }
    }
    cost = withLostLinks(cost, a, linksA, path.first);
    return withLostLinks(cost, b, linksB, path.second);
}

/// Of a region without partner; @p placed are the regions of its worm.
double loneCost(const Region *region, const QList<Region *> &placed)
{
    const double cost =
        insertDeleteRegion + insertDeleteOrgan * static_cast<double>(region->organs().size());
    return withLostLinks(cost, region, region->links(), placed);
}

double regionStep(const Path<Region> &path, const Region *a, const Region *b, Limits *limits)
{
    if (!a)
        return loneCost(b, path.second);
    if (!b)
        return loneCost(a, path.first);
    return (a->type()->id() == b->type()->id() ? 0.0 : changeRegionType) + paramsCost(a, b) +
           organsCost(a, b, limits) + linksCost(path, a, b);
}

} // namespace

Outcome dist(const Morphology &first, const Morphology &second, int mostOpenPaths)
{
    Limits limits{mostOpenPaths};
    const double dist = cheapest<Region>(
        first.regions(), second.regions(),
        [&limits](const Path<Region> &path, const Region *a, const Region *b) {
            return regionStep(path, a, b, &limits);
        },
        &limits);
    return {dist, limits.givenUp};
}

} // namespace Planaria::PlainDistance
