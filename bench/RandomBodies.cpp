#include "RandomBodies.h"

#include "db/ExperimentFactory.h"
#include "model/Angles.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionsLink.h"

#include <cmath>

namespace Planaria {

std::unique_ptr<Morphology> RandomBodies::worm(const Kind &kind)
{
    auto worm = std::make_unique<Morphology>();
    for (int i = 0; i < kind.regions; ++i)
        worm->addRegion(ExperimentFactory::instance(nullptr)->regionType(1 + number(3)));
    link(worm.get(), kind);
    for (Region *region : worm->regions())
        shape(region, kind);
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
    for (int to = 1; to < kind.regions; ++to) {
        Region *region = worm->regions().at(to);
        for (int links = number(8) == 0 ? 0 : 1 + number(5) / 4; links > 0; --links) {
            Region *other = worm->regions().at(number(2) == 0 ? 0 : number(to));
            if (!kind.parallelLinks && region->isLinked(other))
                continue;
            const double direction = ang(kind);
            const double dist = number(100.0, 300.0, kind);
            other->addLink(region, dist, direction, 0.5);
        }
    }
}

void RandomBodies::shape(Region *region, const Kind &kind)
{
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    for (int i = 0; i < region->params().size(); ++i)
        region->setParam(i, number(30.0, 100.0, kind));
    for (int organs = number(kind.organs + 1); organs > region->organs().size();) {
        if (number(5) > 0) {
            const double rot = ang(kind);
            const QPointF pos = point(kind);
            region->addSpotOrgan(factory->spotOrganType(1 + number(3)), pos, rot);
        } else {
            const QPointF end2 = point(kind);
            const QPointF end1 = point(kind);
            region->addLineOrgan(factory->lineOrganType(1), point(kind), end1, end2);
        }
    }
}

double RandomBodies::number(double from, double to, const Kind &kind)
{
    const double share = generator.generateDouble();
    return from + (to - from) * (kind.evenNumbers ? std::floor(share * 3.0) / 2.0 : share);
}

double RandomBodies::ang(const Kind &kind)
{
    return kind.evenNumbers ? number(4) * Angles::quarterTurn
                            : Angles::fullTurn * generator.generateDouble();
}

QPointF RandomBodies::point(const Kind &kind)
{
    const double x = number(-100.0, 100.0, kind);
    return {x, number(-100.0, 100.0, kind)};
}

} // namespace Planaria
