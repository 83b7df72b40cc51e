#include "support/JsonWorm.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/Region.h"

#include <QJsonArray>
#include <QPointF>

namespace Planaria {

namespace {

QPointF point(const QJsonValue &json)
{
    return {json[0].toDouble(), json[1].toDouble()};
}

} // namespace

void addOrgan(Region *region, const QJsonObject &organ)
{
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    const int type = organ["type"].toInt();
    if (organ.contains(QStringLiteral("rot")))
        region->addSpotOrgan(factory->spotOrganType(type), point(organ["pos"]),
                             organ["rot"].toDouble());
    else
        region->addLineOrgan(factory->lineOrganType(type), point(organ["pos"]),
                             point(organ["end1"]), point(organ["end2"]));
}

std::unique_ptr<Morphology> wormFromJson(const QJsonObject &json)
{
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    auto worm = std::make_unique<Morphology>();
    worm->setName(json["name"].toString());

    const QJsonArray regions = json["regions"].toArray();
    for (const QJsonValue &region : regions)
        worm->addRegion(factory->regionType(region["type"].toInt()));
    const QJsonArray links = json["links"].toArray();
    for (const QJsonValue &link : links) {
        worm->addRegionsLink(worm->regions().at(link["from"].toInt()),
                             worm->regions().at(link["to"].toInt()), link["dist"].toDouble(),
                             link["ang"].toDouble(), link["ratio"].toDouble());
    }
    for (int i = 0; i < regions.size(); ++i) {
        Region *region = worm->regions().at(i);
        const QJsonArray params = regions[i]["params"].toArray();
        for (int index = 0; index < params.size(); ++index)
            region->setParam(index, params[index].toDouble());
        const QJsonArray organs = regions[i]["organs"].toArray();
        for (const QJsonValue &organ : organs)
            addOrgan(region, organ.toObject());
    }
    return worm;
}

} // namespace Planaria
