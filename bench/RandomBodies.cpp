#include "RandomBodies.h"

#include "db/ExperimentFactory.h"
#include "model/Angles.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionsLink.h"

#include <array>
#include <cmath>
#include <utility>

namespace Planaria {

namespace {

/// The first regions, from which links lead to others.
int linkedRegions(const RandomBodies::Kind &kind)
{
    return kind.twins ? kind.regions / 2 : kind.regions;
}

} // namespace

std::unique_ptr<Morphology> RandomBodies::worm(const Kind &kind)
{
    auto worm = std::make_unique<Morphology>();
    for (int i = 0; i < kind.regions; ++i)
        worm->addRegion(ExperimentFactory::instance(nullptr)->regionType(1 + number(kind.types)));
    link(worm.get(), kind);
    for (Region *region : worm->regions().first(linkedRegions(kind)))
        shape(region, kind);
    shapeTwins(worm->regions().sliced(linkedRegions(kind)), kind);
    return worm;
}

std::unique_ptr<Morphology> RandomBodies::variation(const Morphology &worm, const Kind &kind)
{
    auto varied = std::make_unique<Morphology>(worm, false);
    for (RegionsLink *link : varied->links()) {
        if (number(3) == 0)
            link->setTotalDist(number(100.0, 300.0, kind));
    }
    for (Region *region : varied->regions()) {
        if (number(3) == 0)
            shape(region, kind);
    }
    return varied;
}

/// Most regions hang on an earlier one, and a few links close cycles.
void RandomBodies::link(Morphology *worm, const Kind &kind)
{
    for (int to = 1; to < linkedRegions(kind); ++to) {
        Region *region = worm->regions().at(to);
        for (int links = number(8) == 0 ? 0 : 1 + number(5) / 4; links > 0; --links) {
            Region *other = worm->regions().at(number(2) == 0 ? 0 : number(to));
            if (!kind.parallelLinks && region->isLinked(other))
                continue;
            const double direction = ang(kind);
            const double dist = number(100.0, 300.0, kind);
            other->addLink(region, dist, direction, 0.5);
        }
        if (kind.loops && number(2) == 0) {
            const double dist = number(100.0, 300.0, kind);
            region->addLink(region, dist, ang(kind), 0.5);
        }
    }
}

void RandomBodies::shapeTwins(const QList<Region *> &regions, const Kind &kind)
{
    QRandomGenerator ofLast = generator;
    for (Region *region : regions) {
        region->setType(regions.first()->type());
        if (region != regions.first() && number(2) == 0) {
            repeat(ofLast, [&] { shape(region, kind); });
        } else {
            ofLast = generator;
            shape(region, kind);
        }
    }
}

template <typename Make> void RandomBodies::repeat(const QRandomGenerator &then, const Make &make)
{
    const QRandomGenerator now = std::exchange(generator, then);
    make();
    generator = now;
}

void RandomBodies::shape(Region *region, const Kind &kind)
{
    for (int i = 0; i < region->params().size(); ++i)
        region->setParam(i, number(30.0, 100.0, kind));
    for (int organs = number(kind.organs + 1); organs > region->organs().size();) {
        const QRandomGenerator then = generator;
        addOrgan(region, kind);
        if (kind.twins && organs > region->organs().size() && number(2) == 0)
            repeat(then, [&] { addOrgan(region, kind); });
    }
}

void RandomBodies::addOrgan(Region *region, const Kind &kind)
{
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    if (number(5) > 0) {
        const double rot = ang(kind);
        const QPointF pos = point(kind);
        region->addSpotOrgan(factory->spotOrganType(1 + number(kind.types)), pos, rot);
    } else {
        const QPointF end2 = point(kind);
        const QPointF end1 = point(kind);
        region->addLineOrgan(factory->lineOrganType(1), point(kind), end1, end2);
    }
}

double RandomBodies::number(double from, double to, const Kind &kind)
{
    constexpr std::array huge{1e308, -1e308, 1e160}; // whose differences or squares are too large
    if (kind.hugeNumbers && number(12) == 0)
        return huge.at(static_cast<std::size_t>(number(static_cast<int>(huge.size()))));
    const double share = generator.generateDouble();
    return from + (to - from) * (kind.evenNumbers ? std::floor(share * 3.0) / 2.0 : share);
}

double RandomBodies::ang(const Kind &kind)
{
    const double turns = kind.wholeTurns ? number(4) : 0;
    const double ang = kind.evenNumbers ? number(4) * Angles::quarterTurn
                                        : Angles::fullTurn * generator.generateDouble();
    return Angles::fullTurn * turns + ang;
}

QPointF RandomBodies::point(const Kind &kind)
{
    const double x = number(-100.0, 100.0, kind);
    return {x, number(-100.0, 100.0, kind)};
}

} // namespace Planaria
