#include "model/RandomWorms.h"

#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"
#include "model/SpotOrgan.h"

#include <array>
#include <numbers>

namespace Planaria {

std::unique_ptr<Morphology> RandomWorms::worm()
{
    auto worm = std::make_unique<Morphology>();
    rename(worm.get());
    for (int edits = number(40); edits > 0; --edits)
        edit(worm.get());
    return worm;
}

void RandomWorms::editGraph(Morphology *worm)
{
    static constexpr std::array edits{
        &RandomWorms::addRegion,  &RandomWorms::addRegion,    &RandomWorms::addLink,
        &RandomWorms::addLink,    &RandomWorms::addLink,      &RandomWorms::addLink,
        &RandomWorms::removeLink, &RandomWorms::removeRegion, &RandomWorms::turnLink,
        &RandomWorms::turnLink,
    };
    (this->*edits[number(edits.size())])(worm);
}

void RandomWorms::edit(Morphology *worm)
{
    static constexpr std::array edits{
        &RandomWorms::editGraph,   &RandomWorms::editGraph,    &RandomWorms::editGraph,
        &RandomWorms::editGraph,   &RandomWorms::editGraph,    &RandomWorms::editGraph,
        &RandomWorms::rename,      &RandomWorms::changeRegion, &RandomWorms::changeLink,
        &RandomWorms::addOrgan,    &RandomWorms::addOrgan,     &RandomWorms::changeOrgan,
        &RandomWorms::removeOrgan, &RandomWorms::addImage,     &RandomWorms::removeImage,
    };
    (this->*edits[number(edits.size())])(worm);
}

// --- Regions and links ---

void RandomWorms::addRegion(Morphology *worm)
{
    worm->addRegion(anyOf(ExperimentFactory::instance(nullptr)->regionTypes));
}

void RandomWorms::addLink(Morphology *worm)
{
    Region *from = anyOf(worm->regions());
    Region *to = anyOf(worm->regions());
    if (from != to)
        from->addLink(to, number(1.0, 400.0), ang(), number(0.0, 1.0));
}

void RandomWorms::removeRegion(Morphology *worm)
{
    Region *region = anyOf(worm->regions());
    if (number(2) == 0)
        worm->removeRegion(region);
    else if (region)
        region->removeFromMorphology();
}

void RandomWorms::removeLink(Morphology *worm)
{
    RegionsLink *link = anyOf(worm->links());
    if (number(2) == 0)
        worm->removeRegionsLink(link);
    else if (link)
        link->removeFromMorphology();
}

void RandomWorms::turnLink(Morphology *worm)
{
    RegionsLink *link = anyOf(worm->links());
    if (link)
        link->setAng(ang(), number(2) == 0 ? link->from() : link->to());
}

// --- All else ---

void RandomWorms::rename(Morphology *worm)
{
    worm->setName(QStringLiteral("worm %1").arg(generator.generate64()));
}

void RandomWorms::changeRegion(Morphology *worm)
{
    Region *region = anyOf(worm->regions());
    if (!region)
        return;
    region->setType(anyOf(ExperimentFactory::instance(nullptr)->regionTypes));
    region->setParam(number(4), number(0.0, 200.0));
}

void RandomWorms::changeLink(Morphology *worm)
{
    RegionsLink *link = anyOf(worm->links());
    if (!link)
        return;
    link->setTotalDist(number(1.0, 400.0));
    link->setFromRatio(number(0.0, 1.0));
}

void RandomWorms::addOrgan(Morphology *worm)
{
    Region *region = anyOf(worm->regions());
    if (!region)
        return;
    if (number(2) == 0)
        region->addSpotOrgan(anyOf(ExperimentFactory::instance(nullptr)->spotOrganTypes), point(),
                             number(-10.0, 10.0));
    else
        region->addLineOrgan(cordType(), point(), point(), point());
}

void RandomWorms::changeOrgan(Morphology *worm)
{
    const Region *region = anyOf(worm->regions());
    Organ *organ = region ? anyOf(region->organs()) : nullptr;
    if (!organ)
        return;
    organ->setPos(point());
    if (auto *spot = dynamic_cast<SpotOrgan *>(organ))
        spot->setRot(number(-10.0, 10.0));
    if (auto *line = dynamic_cast<LineOrgan *>(organ)) {
        line->setEnd1(point());
        line->setEnd2(point());
    }
}

void RandomWorms::removeOrgan(Morphology *worm)
{
    const Region *region = anyOf(worm->regions());
    Organ *organ = region ? anyOf(region->organs()) : nullptr;
    if (organ)
        organ->removeFromMorphology();
}

void RandomWorms::addImage(Morphology *worm)
{
    QByteArray bytes(number(60), Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(number(256));
    worm->addImage(bytes);
}

void RandomWorms::removeImage(Morphology *worm)
{
    MorphologyImage *image = anyOf(worm->getImages());
    if (number(2) == 0)
        worm->removeImage(image);
    else if (image)
        image->removeFromMorphology();
}

// --- Numbers ---

double RandomWorms::number(double from, double to)
{
    return from + (to - from) * generator.generateDouble();
}

QPointF RandomWorms::point()
{
    const double x = number(-100.0, 100.0);
    return {x, number(-100.0, 100.0)};
}

double RandomWorms::ang()
{
    if (angles == AnyAngles && number(3) > 0)
        return number(8) * std::numbers::pi / 4.0;
    return number(0.0, 2.0 * std::numbers::pi);
}

} // namespace Planaria
