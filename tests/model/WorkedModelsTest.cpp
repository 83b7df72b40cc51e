#include "db/ExperimentFactory.h"
#include "model/LineOrgan.h"
#include "model/LineOrganType.h"
#include "model/Morphology.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"
#include "support/JsonDifference.h"
#include "support/JsonWorm.h"
#include "support/TestData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <functional>
#include <map>

using namespace Planaria;

namespace {

QJsonArray json(const QPointF &point)
{
    return {point.x(), point.y()};
}

QJsonObject json(const Organ *organ)
{
    if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ)) {
        return {{"kind", "spot"},
                {"type", spot->type()->id()},
                {"pos", json(spot->pos())},
                {"rot", spot->rot()}};
    }
    const auto *line = dynamic_cast<const LineOrgan *>(organ);
    return {{"kind", "line"},
            {"type", line->type()->id()},
            {"pos", json(line->pos())},
            {"end1", json(line->end1())},
            {"end2", json(line->end2())}};
}

/// A worm under a list of operations, which name regions and links by the order of their creation.
class ScriptedWorm final
{
public:
    ScriptedWorm() : worm(std::make_unique<Morphology>()) {}

    QJsonArray run(const QJsonObject &workedCase)
    {
        worm->setName(workedCase["name"].toString());
        QJsonArray results;
        const QJsonArray ops = workedCase["ops"].toArray();
        for (const QJsonValue &op : ops)
            results += perform(op.toObject());
        return results;
    }

    [[nodiscard]] const Morphology &morphology() const { return *worm; }
    [[nodiscard]] QJsonObject state() const;

private:
    using Op = const QJsonObject &;

    QJsonValue perform(Op op);
    std::map<QString, std::function<QJsonValue(Op)>> operationsWithResult();
    std::map<QString, std::function<void(Op)>> operationsWithoutResult();

    [[nodiscard]] Region *region(const QJsonValue &handle) const
    {
        return regions.at(handle.toInt());
    }
    [[nodiscard]] RegionsLink *link(const QJsonValue &handle) const
    {
        return links.at(handle.toInt());
    }
    QJsonValue listed(Region *added);
    QJsonValue listed(RegionsLink *added);
    void replaceByCopy(bool keepIds);

    qsizetype handle(const Region *wanted) const { return regions.indexOf(wanted); }
    qsizetype handle(const RegionsLink *wanted) const { return links.indexOf(wanted); }
    QJsonObject regionState(const Region *region) const;
    QJsonObject linkState(const RegionsLink *link) const;
    QJsonObject view(const RegionsLink *link, const Region *region) const;
    [[nodiscard]] QJsonArray removed() const;
    [[nodiscard]] QJsonArray isLinked() const;

    std::unique_ptr<Morphology> worm;
    std::unique_ptr<Morphology> formerWorm; // its members still have their handles
    QList<Region *> regions;
    QList<RegionsLink *> links;
};

QJsonValue ScriptedWorm::perform(Op op)
{
    const QString name = op["op"].toString();
    if (const auto withResult = operationsWithResult(); withResult.contains(name))
        return withResult.at(name)(op);
    if (const auto withoutResult = operationsWithoutResult(); withoutResult.contains(name)) {
        withoutResult.at(name)(op);
        return QJsonValue::Null;
    }
    return QStringLiteral("unknown operation ") + name;
}

std::map<QString, std::function<QJsonValue(const QJsonObject &)>>
ScriptedWorm::operationsWithResult()
{
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    return {
        {"addRegion",
         [=, this](Op op) {
             return listed(worm->addRegion(factory->regionType(op["type"].toInt())));
         }},
        {"addRegionsLink",
         [this](Op op) {
             return listed(worm->addRegionsLink(region(op["from"]), region(op["to"]),
                                                op["dist"].toDouble(), op["ang"].toDouble(),
                                                op["ratio"].toDouble()));
         }},
        {"regionAddLink",
         [this](Op op) {
             return listed(region(op["region"])
                               ->addLink(region(op["other"]), op["dist"].toDouble(),
                                         op["ang"].toDouble(), op["ratio"].toDouble()));
         }},
        {"removeRegion", [this](Op op) { return worm->removeRegion(region(op["region"])); }},
        {"removeRegionsLink", [this](Op op) { return worm->removeRegionsLink(link(op["link"])); }},
        {"removeOrgan",
         [this](Op op) {
             return region(op["region"])->organs().at(op["index"].toInt())->removeFromMorphology();
         }},
    };
}

std::map<QString, std::function<void(const QJsonObject &)>> ScriptedWorm::operationsWithoutResult()
{
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    return {
        {"setName", [this](Op op) { worm->setName(op["name"].toString()); }},
        {"setType",
         [=, this](Op op) {
             region(op["region"])->setType(factory->regionType(op["type"].toInt()));
         }},
        {"setParam",
         [this](Op op) {
             region(op["region"])->setParam(op["index"].toInt(), op["value"].toDouble());
         }},
        {"setParams",
         [this](Op op) {
             QList<double> values;
             const QJsonArray numbers = op["values"].toArray();
             for (const QJsonValue &value : numbers)
                 values += value.toDouble();
             region(op["region"])->setParams(values);
         }},
        {"addSpotOrgan", [this](Op op) { addOrgan(region(op["region"]), op); }},
        {"addLineOrgan", [this](Op op) { addOrgan(region(op["region"]), op); }},
        {"setTotalDist", [this](Op op) { link(op["link"])->setTotalDist(op["dist"].toDouble()); }},
        {"setFromRatio", [this](Op op) { link(op["link"])->setFromRatio(op["ratio"].toDouble()); }},
        {"setToRatio", [this](Op op) { link(op["link"])->setToRatio(op["ratio"].toDouble()); }},
        {"setFromAng", [this](Op op) { link(op["link"])->setFromAng(op["ang"].toDouble()); }},
        {"setToAng", [this](Op op) { link(op["link"])->setToAng(op["ang"].toDouble()); }},
        {"setAng",
         [this](Op op) { link(op["link"])->setAng(op["ang"].toDouble(), region(op["region"])); }},
        {"regionRemoveFromMorphology",
         [this](Op op) { region(op["region"])->removeFromMorphology(); }},
        {"linkRemoveFromMorphology", [this](Op op) { link(op["link"])->removeFromMorphology(); }},
        {"copy", [this](Op op) { replaceByCopy(op["keepIds"].toBool()); }},
    };
}

QJsonValue ScriptedWorm::listed(Region *added)
{
    regions += added;
    return regions.size() - 1;
}

QJsonValue ScriptedWorm::listed(RegionsLink *added)
{
    links += added;
    return links.size() - 1;
}

void ScriptedWorm::replaceByCopy(bool keepIds)
{
    formerWorm = std::exchange(worm, std::make_unique<Morphology>(*worm, keepIds));
    for (int i = 0; i < worm->regions().size(); ++i)
        regions[handle(formerWorm->regions().at(i))] = worm->regions().at(i);
    for (int i = 0; i < worm->links().size(); ++i)
        links[handle(formerWorm->links().at(i))] = worm->links().at(i);
}

QJsonObject ScriptedWorm::state() const
{
    QJsonArray regionStates;
    for (const Region *region : worm->regions())
        regionStates += regionState(region);
    QJsonArray linkStates;
    for (const RegionsLink *link : worm->links())
        linkStates += linkState(link);
    return {{"name", worm->name()},
            {"regions", regionStates},
            {"links", linkStates},
            {"removed", removed()},
            {"isLinked", isLinked()}};
}

QJsonObject ScriptedWorm::regionState(const Region *region) const
{
    QJsonArray params;
    for (const RegionParam *param : region->params())
        params += QJsonObject{{"index", param->index()}, {"value", param->value()}};
    QJsonArray linkHandles;
    for (const RegionsLink *link : region->links())
        linkHandles += handle(link);
    QJsonArray organs;
    for (const Organ *organ : region->organs())
        organs += json(organ);
    QJsonArray queue;
    for (const DBElement *element : region->record().removedReferences()) {
        if (const auto *param = dynamic_cast<const RegionParam *>(element))
            queue += QJsonArray{"param", param->value()};
        else
            queue += QJsonArray{"organ", json(dynamic_cast<const Organ *>(element))};
    }
    return {{"handle", handle(region)}, {"type", region->type()->id()},
            {"params", params},         {"links", linkHandles},
            {"organs", organs},         {"removed", queue}};
}

QJsonObject ScriptedWorm::view(const RegionsLink *link, const Region *region) const
{
    return {{"dist", link->dist(region)},
            {"Ratio", link->Ratio(region)},
            {"ang", link->ang(region)},
            {"otherRegion", handle(link->otherRegion(region))}};
}

QJsonObject ScriptedWorm::linkState(const RegionsLink *link) const
{
    QJsonObject state{{"handle", handle(link)},
                      {"from", handle(link->from())},
                      {"to", handle(link->to())},
                      {"dist", link->totalDist()},
                      {"ang", link->fromAng()},
                      {"ratio", link->fromRatio()},
                      {"atFrom", view(link, link->from())},
                      {"atTo", view(link, link->to())}};
    for (const Region *region : worm->regions()) {
        if (region != link->from() && region != link->to()) {
            QJsonObject foreign = view(link, region);
            foreign["region"] = handle(region);
            state["foreign"] = foreign;
            break;
        }
    }
    return state;
}

QJsonArray ScriptedWorm::removed() const
{
    QJsonArray queue;
    for (const DBElement *element : worm->record().removedReferences()) {
        if (const auto *link = dynamic_cast<const RegionsLink *>(element))
            queue += QJsonArray{"link", handle(link)};
        else
            queue += QJsonArray{"region", handle(dynamic_cast<const Region *>(element))};
    }
    return queue;
}

QJsonArray ScriptedWorm::isLinked() const
{
    QJsonArray pairs;
    for (const Region *region : worm->regions()) {
        for (const Region *other : worm->regions()) {
            if (region == other)
                continue;
            const RegionsLink *link = region->isLinked(other);
            pairs += QJsonArray{handle(region), handle(other),
                                link ? QJsonValue(handle(link)) : QJsonValue(QJsonValue::Null)};
        }
    }
    return pairs;
}

/// Every pair of @p members by position, the earlier one first, and whether the two are equal.
template <typename Member>
QJsonArray equalPairs(const QList<Member *> &members, const QJsonArray &handles)
{
    QJsonArray pairs;
    for (int i = 0; i < members.size(); ++i) {
        for (int j = i + 1; j < members.size(); ++j) {
            pairs += QJsonArray{handles[i]["handle"], handles[j]["handle"],
                                *members.at(i) == *members.at(j)};
        }
    }
    return pairs;
}

QJsonArray worked(const QString &list)
{
    return QJsonDocument::fromJson(readTestData(QStringLiteral("models.json")))[list].toArray();
}

} // namespace

/// Edits and comparisons whose outcome was worked out independently.
class WorkedModelsTest final : public QObject
{
    Q_OBJECT

private slots:
    void editsEndInTheExpectedWorm_data();
    void editsEndInTheExpectedWorm();
    void pairsAreEqualWhereExpected_data();
    void pairsAreEqualWhereExpected();
};

void WorkedModelsTest::editsEndInTheExpectedWorm_data()
{
    QTest::addColumn<QJsonObject>("workedCase");

    const QJsonArray cases = worked(QStringLiteral("cases"));
    QCOMPARE(cases.size(), 60);
    for (const QJsonValue &each : cases)
        QTest::newRow(qPrintable(each["id"].toString())) << each.toObject();
}

void WorkedModelsTest::editsEndInTheExpectedWorm()
{
    QFETCH(QJsonObject, workedCase);
    const QJsonValue expected = workedCase["expected"];

    ScriptedWorm script;
    QCOMPARE(jsonDifference(script.run(workedCase), expected["results"], "results"), QString());

    ScriptedWorm again;
    again.run(workedCase);
    const Morphology &worm = script.morphology();
    QJsonObject state = script.state();
    state["checks"] = QJsonObject{
        {"equalsItself", worm == worm},
        {"equalsCopyKeepIds", Morphology(worm, true) == worm},
        {"equalsSameScriptRunAgain", again.morphology() == worm},
        {"regionEquals", equalPairs(worm.regions(), state["regions"].toArray())},
        {"linkEquals", equalPairs(worm.links(), state["links"].toArray())},
    };
    QCOMPARE(jsonDifference(state, expected["state"], "state"), QString());
}

void WorkedModelsTest::pairsAreEqualWhereExpected_data()
{
    QTest::addColumn<QJsonObject>("pair");

    const QJsonArray pairs = worked(QStringLiteral("pairs"));
    QCOMPARE(pairs.size(), 25);
    for (int i = 0; i < pairs.size(); ++i)
        QTest::addRow("%d %s", i, qPrintable(pairs[i]["change"].toString())) << pairs[i].toObject();
}

void WorkedModelsTest::pairsAreEqualWhereExpected()
{
    QFETCH(QJsonObject, pair);

    const std::unique_ptr<Morphology> a = wormFromJson(pair["a"].toObject());
    const std::unique_ptr<Morphology> b = wormFromJson(pair["b"].toObject());

    QCOMPARE(*a == *b, pair["equal"].toBool());
    QCOMPARE(*b == *a, pair["equal"].toBool());
}

QTEST_GUILESS_MAIN(WorkedModelsTest)
#include "WorkedModelsTest.moc"
