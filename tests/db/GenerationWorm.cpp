#include "GenerationWorm.h"

#include "db/ExperimentFactory.h"
#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"

#include <QStringList>

#include <algorithm>

namespace Planaria {

namespace {

constexpr int regionCount = 60;
constexpr int organCount = 3;

QByteArray picture(int generation)
{
    return QByteArray::number(generation).repeated(2000);
}

void addLastRegion(Morphology *worm)
{
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    Region *region = worm->addRegion(factory->regionType(2));
    region->addSpotOrgan(factory->spotOrganType(1), {}, 0.0);
    region->addSpotOrgan(factory->spotOrganType(2), {}, 0.0);
    region->addLineOrgan(factory->lineOrganType(1), {}, {}, {});
    const qsizetype last = worm->regions().size() - 1;
    if (last > 0)
        worm->addRegionsLink(worm->regions().at(last - 1), region, 0.0, 1.0, 0.5);
}

void setOrgan(Organ *organ, double number)
{
    organ->setPos({number, number});
    if (auto *spot = dynamic_cast<SpotOrgan *>(organ)) {
        spot->setRot(number);
    } else if (auto *line = dynamic_cast<LineOrgan *>(organ)) {
        line->setEnd1({number, number});
        line->setEnd2({number, number});
    }
}

bool isOf(double number, const Organ *organ)
{
    const QPointF point(number, number);
    if (organ->pos() != point)
        return false;
    if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ))
        return spot->rot() == number;
    const auto *line = dynamic_cast<const LineOrgan *>(organ);
    return line && line->end1() == point && line->end2() == point;
}

bool isOf(double number, const Region *region, bool atAnEnd)
{
    return region->links().size() == (atAnEnd ? 1 : 2) &&
           region->params().size() == (atAnEnd ? 3 : 2) &&
           std::all_of(region->params().cbegin(), region->params().cend(),
                       [&](const RegionParam *param) { return param->value() == number; }) &&
           region->organs().size() == organCount &&
           std::all_of(region->organs().cbegin(), region->organs().cend(),
                       [&](const Organ *organ) { return isOf(number, organ); });
}

} // namespace

std::unique_ptr<Morphology> newGenerationWorm(int generation)
{
    auto worm = std::make_unique<Morphology>();
    for (int i = 0; i < regionCount; ++i)
        addLastRegion(worm.get());
    worm->addImage({});
    turnIntoGeneration(worm.get(), generation);
    return worm;
}

void turnIntoGeneration(Morphology *worm, int generation)
{
    nameByGeneration(worm, "worm", generation);
    worm->removeRegion(worm->regions().first());
    addLastRegion(worm);
    for (const Region *region : worm->regions()) {
        for (RegionParam *param : region->params())
            param->setValue(generation);
        for (Organ *organ : region->organs())
            setOrgan(organ, generation);
    }
    for (RegionsLink *link : worm->links())
        link->setTotalDist(generation);
    worm->removeImage(worm->getImage(0));
    worm->addImage(picture(generation));
}

void nameByGeneration(Morphology *worm, const QString &prefix, int generation)
{
    worm->setName(prefix + ' ' + QString::number(generation));
}

int generationOf(const Morphology &worm)
{
    return worm.name().section(' ', -1).toInt();
}

QString generationFault(const Morphology &worm)
{
    const int generation = generationOf(worm);
    const QString place = worm.name() + ": ";
    if (worm.regions().size() != regionCount || worm.links().size() != regionCount - 1)
        return place + QStringLiteral("%1 regions, %2 links")
                           .arg(worm.regions().size())
                           .arg(worm.links().size());
    for (int i = 0; i < regionCount; ++i) {
        if (!isOf(generation, worm.regions().at(i), i == 0 || i == regionCount - 1))
            return place + QStringLiteral("region %1").arg(i);
    }
    for (int i = 0; i < regionCount - 1; ++i) {
        const RegionsLink *link = worm.links().at(i);
        if (link->totalDist() != generation || link->from() != worm.regions().at(i) ||
            link->to() != worm.regions().at(i + 1))
            return place + QStringLiteral("link %1").arg(i);
    }
    if (worm.nImages() != 1 || worm.getImage(0)->bytes() != picture(generation))
        return place + QStringLiteral("picture");
    return {};
}

} // namespace Planaria
