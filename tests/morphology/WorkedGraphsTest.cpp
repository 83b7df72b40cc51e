#include "model/LineOrgan.h"
#include "model/LineOrganType.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"
#include "morphology/MGLineOrgan.h"
#include "morphology/MGLineOrganEnd.h"
#include "morphology/MGLink.h"
#include "morphology/MGLinkLever.h"
#include "morphology/MGRegion.h"
#include "morphology/MGRegionLever.h"
#include "morphology/MGSpotOrgan.h"
#include "morphology/MGSpotOrganLever.h"
#include "morphology/MorphoGraphView.h"
#include "support/JsonWorm.h"
#include "support/TestData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <algorithm>
#include <cmath>

namespace Planaria {

namespace {

/// Where @p actual differs from @p expected by more than 1e-9; empty where all agrees.
QString difference(const QJsonValue &actual, const QJsonValue &expected, const QString &path = {})
{
    if (expected.isDouble() && actual.isDouble()) {
        const double a = actual.toDouble();
        const double b = expected.toDouble();
        return std::abs(a - b) <= 1e-9 ? QString()
                                       : QStringLiteral("%1: %2 instead of %3")
                                             .arg(path)
                                             .arg(a, 0, 'g', 17)
                                             .arg(b, 0, 'g', 17);
    }
    QStringList found;
    if (expected.isArray() && actual.toArray().size() == expected.toArray().size()) {
        for (int i = 0; i < expected.toArray().size(); ++i)
            found += difference(actual[i], expected[i], path + QStringLiteral("/%1").arg(i));
    } else if (expected.isObject() && actual.toObject().keys() == expected.toObject().keys()) {
        for (const QString &key : expected.toObject().keys())
            found += difference(actual[key], expected[key], path + '/' + key);
    } else if (actual != expected) {
        return path + QStringLiteral(": another value");
    }
    found.removeAll(QString());
    return found.join('\n');
}

QPointF point(const QJsonValue &json)
{
    return {json[0].toDouble(), json[1].toDouble()};
}

QJsonArray json(const QPointF &point)
{
    return {point.x(), point.y()};
}

QJsonArray json(const QLineF &line)
{
    return {line.x1(), line.y1(), line.x2(), line.y2()};
}

/// The line as seen from its from-node; null where none shows.
QJsonValue jsonLine(const MGLink *link)
{
    if (link->opacity() == 0.0)
        return link->line().isNull() ? QJsonValue() : QJsonValue("a line that does not show");
    return json(link->line().translated(-link->fromNode()->scenePos()));
}

// --- The numbers of a worm ---

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

QJsonObject json(const Region *region)
{
    QJsonArray params;
    for (const RegionParam *param : region->params())
        params += param->value();
    QJsonArray organs;
    for (const Organ *organ : region->organs())
        organs += json(organ);
    return {{"type", region->type()->id()}, {"params", params}, {"organs", organs}};
}

QJsonObject json(const Morphology &worm)
{
    QJsonArray regions;
    for (const Region *region : worm.regions())
        regions += json(region);
    QJsonArray links;
    for (const RegionsLink *link : worm.links()) {
        links += QJsonObject{{"from", worm.regions().indexOf(link->from())},
                             {"to", worm.regions().indexOf(link->to())},
                             {"dist", link->totalDist()},
                             {"ang", link->fromAng()},
                             {"ratio", link->fromRatio()}};
    }
    return {{"name", worm.name()}, {"regions", regions}, {"links", links}};
}

/// The places in the worm's list of links, for each region in the order of its own list.
QJsonArray linkOrder(const Morphology &worm)
{
    QJsonArray order;
    for (const Region *region : worm.regions()) {
        QJsonArray places;
        for (RegionsLink *link : region->links())
            places += worm.links().indexOf(link);
        order += places;
    }
    return order;
}

} // namespace

/// The editor against numbers computed independently from the same worms and drags.
class WorkedGraphsTest final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void itemsStandWhereTheModelPutsThem_data() { addCases(); }
    void itemsStandWhereTheModelPutsThem();
    void buildingWritesNothingIntoTheModel_data() { addCases(); }
    void buildingWritesNothingIntoTheModel();
    void dragsLeaveTheComputedNumbers_data() { addCases(); }
    void dragsLeaveTheComputedNumbers();

private:
    void addCases() const;
    void fetchCase();

    MGRegion *node(int region) const;
    MGOrgan *organNode(int region, int organ) const;
    MGLink *link(int number) const;
    void drag(const QJsonValue &step) const;

    QJsonObject shownOrgan(int region, int organ) const;
    QJsonObject shownRegion(int region, int pieceFirst) const;
    /// All that the editor shows, with regions relative to the first of their piece as @p expected
    /// names it.
    QJsonObject shown(const QJsonValue &expected) const;

    QJsonArray cases;
    QJsonValue workedCase;
    std::unique_ptr<Morphology> worm;
    std::unique_ptr<MorphoGraphView> view; // goes before its worm
};

void WorkedGraphsTest::initTestCase()
{
    cases = QJsonDocument::fromJson(readTestData("graphs.json"))["cases"].toArray();
    QCOMPARE(cases.size(), 12);
}

void WorkedGraphsTest::addCases() const
{
    QTest::addColumn<int>("number");
    for (int i = 0; i < cases.size(); ++i)
        QTest::newRow(qPrintable(cases[i]["id"].toString())) << i;
}

void WorkedGraphsTest::fetchCase()
{
    QFETCH(const int, number);
    workedCase = cases[number];
    view.reset();
    worm = wormFromJson(workedCase["morphology"].toObject());
    view = std::make_unique<MorphoGraphView>(worm.get(), nullptr);
}

MGRegion *WorkedGraphsTest::node(int region) const
{
    return view->regionNodes().value(worm->regions().at(region));
}

MGOrgan *WorkedGraphsTest::organNode(int region, int organ) const
{
    const Organ *wanted = worm->regions().at(region)->organs().at(organ);
    for (QGraphicsItem *child : node(region)->childItems()) {
        auto *found = dynamic_cast<MGOrgan *>(child);
        if (found && found->organ() == wanted)
            return found;
    }
    qFatal("region %d shows no node for its organ %d", region, organ);
}

MGLink *WorkedGraphsTest::link(int number) const
{
    const RegionsLink *wanted = worm->links().at(number);
    for (MGLink *found : view->regionNodes().value(wanted->from())->links()) {
        if (found->regionsLink() == wanted)
            return found;
    }
    qFatal("link %d is not shown", number);
}

void WorkedGraphsTest::drag(const QJsonValue &step) const
{
    const QString op = step["op"].toString();
    const int region = step["region"].toInt();
    const QPointF to = point(step["to"]);
    if (op == "moveRegion") {
        node(region)->setPos(node(region)->pos() + point(step["by"]));
    } else if (op == "dragRegionLever") {
        node(region)->levers().at(step["index"].toInt())->setPos(to);
    } else if (op == "dragLinkLever") {
        const MGLink *dragged = link(step["link"].toInt());
        dragged->lever()->setPos(dragged->fromNode()->scenePos() + to);
    } else if (op == "dragLineEnd") {
        const auto *cord = dynamic_cast<MGLineOrgan *>(organNode(region, step["organ"].toInt()));
        cord->ends().at(step["end"].toInt() - 1)->setPos(to);
    } else {
        QFAIL(qPrintable(op));
    }
}

QJsonObject WorkedGraphsTest::shownOrgan(int region, int organ) const
{
    const MGOrgan *item = organNode(region, organ);
    QJsonArray levers;
    if (const auto *spot = dynamic_cast<const MGSpotOrgan *>(item)) {
        levers += json(spot->lever()->pos());
    } else if (const auto *cord = dynamic_cast<const MGLineOrgan *>(item)) {
        for (const MGLineOrganEnd *end : cord->ends())
            levers += json(end->pos());
    }
    return {{"node", json(item->pos())},
            {"levers", levers},
            {"line", jsonLine(item->links().constFirst())}};
}

QJsonObject WorkedGraphsTest::shownRegion(int region, int pieceFirst) const
{
    QJsonArray levers;
    for (const MGRegionLever *lever : node(region)->levers()) {
        levers += QJsonObject{{"pos", json(lever->pos())},
                              {"ang", lever->ang()},
                              {"value", lever->value()},
                              {"line", json(lever->line())}};
    }
    QJsonArray organs;
    for (int i = 0; i < worm->regions().at(region)->organs().size(); ++i)
        organs += shownOrgan(region, i);
    return {{"pieceFirst", pieceFirst},
            {"relativeToFirst", json(node(region)->pos() - node(pieceFirst)->pos())},
            {"levers", levers},
            {"organs", organs}};
}

QJsonObject WorkedGraphsTest::shown(const QJsonValue &expected) const
{
    QJsonArray regions;
    for (int i = 0; i < worm->regions().size(); ++i)
        regions += shownRegion(i, expected["regions"][i]["pieceFirst"].toInt());
    QJsonArray links;
    for (int i = 0; i < worm->links().size(); ++i) {
        const QPointF lever = link(i)->lever()->pos() - link(i)->fromNode()->scenePos();
        links += QJsonObject{{"lever", json(lever)}, {"line", jsonLine(link(i))}};
    }
    return {{"regions", regions}, {"links", links}};
}

void WorkedGraphsTest::itemsStandWhereTheModelPutsThem()
{
    fetchCase();
    const QJsonValue built = workedCase["expected"]["built"];
    QCOMPARE(difference(shown(built), built), QString());
}

void WorkedGraphsTest::buildingWritesNothingIntoTheModel()
{
    fetchCase();
    QCOMPARE(json(*worm), json(*wormFromJson(workedCase["morphology"].toObject())));
}

void WorkedGraphsTest::dragsLeaveTheComputedNumbers()
{
    fetchCase();
    for (const QJsonValue &step : workedCase["ops"].toArray())
        drag(step);

    const QJsonValue expected = workedCase["expected"];
    QCOMPARE(difference(json(*worm), expected["morphology"]), QString());
    QCOMPARE(linkOrder(*worm), expected["linkOrder"].toArray());
    QCOMPARE(difference(shown(expected["after"]), expected["after"]), QString());
}

} // namespace Planaria

QTEST_MAIN(Planaria::WorkedGraphsTest)
#include "WorkedGraphsTest.moc"
