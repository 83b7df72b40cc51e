#include "BenchWorms.h"

#include "db/ExperimentFactory.h"
#include "model/Angles.h"
#include "model/Morphology.h"
#include "model/Region.h"

#include <QRandomGenerator>

namespace Planaria {

namespace {

ExperimentFactory *vocabulary()
{
    return ExperimentFactory::instance(nullptr);
}

/// Four eyes, four brain lobes, two pharynges and two cords.
void addTwelveOrgans(Region *region)
{
    for (int i = 0; i < 10; ++i) {
        const double angle = i * Angles::fullTurn / 10.0;
        region->addSpotOrgan(vocabulary()->spotOrganType(i < 4 ? 1 : (i < 8 ? 2 : 3)),
                             30.0 * Angles::direction(angle), angle);
    }
    for (const double side : {-1.0, 1.0})
        region->addLineOrgan(vocabulary()->lineOrganType(1), {side * 20.0, 0.0}, {side * 8.0, 60.0},
                             {side * -8.0, -60.0});
}

} // namespace

std::unique_ptr<Morphology> BenchWorms::wildType()
{
    return vocabulary()->createWildMorphology();
}

std::unique_ptr<Morphology> BenchWorms::large()
{
    auto worm = std::make_unique<Morphology>();
    worm->setName(QStringLiteral("Large"));
    Region *trunk = worm->addRegion(vocabulary()->regionType(2));
    addTwelveOrgans(trunk);
    for (int i = 0; i < 8; ++i) {
        Region *head = worm->addRegion(vocabulary()->regionType(1));
        trunk->addLink(head, 260.0, i * Angles::fullTurn / 8.0, 0.5);
        addTwelveOrgans(head);
    }
    return worm;
}

std::unique_ptr<Morphology> BenchWorms::varied(int number)
{
    QRandomGenerator random(static_cast<quint32>(number));
    const auto upTo = [&random](double limit) { return random.bounded(limit); };
    auto worm = std::make_unique<Morphology>();
    Region *trunk = worm->addRegion(vocabulary()->regionType(2));
    const int others = random.bounded(5);
    for (int i = 0; i < others; ++i)
        trunk->addLink(worm->addRegion(vocabulary()->regionType(random.bounded(2) == 0 ? 1 : 3)),
                       150.0 + upTo(100.0), (i + upTo(0.5)) * Angles::fullTurn / others, 0.5);
    for (Region *region : worm->regions()) {
        for (int i = random.bounded(7); i > 0; --i)
            region->addSpotOrgan(vocabulary()->spotOrganType(1 + random.bounded(3)),
                                 {upTo(60.0) - 30.0, upTo(60.0) - 30.0}, upTo(Angles::fullTurn));
    }
    return worm;
}

} // namespace Planaria
