#include "distance/DistAlgo.h"

#include "model/Morphology.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"
#include "support/JsonWorm.h"

#include <QJsonArray>
#include <QTest>

#include <cmath>
#include <future>
#include <limits>
#include <numbers>
#include <vector>

using namespace Planaria;
using DistAlgo::dist;
using std::numbers::pi;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

#define COMPARE_DIST(actual, expected)                                                             \
    QVERIFY2(std::abs((actual) - (expected)) <= 1e-9,                                              \
             qPrintable(QStringLiteral("%1 instead of %2").arg(actual, 0, 'g', 17).arg(expected)))

void addOrgans(Region *region, const QList<QJsonObject> &organs)
{
    for (const QJsonObject &organ : organs)
        addOrgan(region, organ);
}

/// A worm of one trunk, with organs on it.
std::unique_ptr<Morphology> trunk(const QList<QJsonObject> &organs = {})
{
    auto worm = std::make_unique<Morphology>();
    addOrgans(worm->addRegion(trunkType()), organs);
    return worm;
}

QJsonArray json(const QPointF &point)
{
    return {point.x(), point.y()};
}

QJsonObject spot(int type, const QPointF &pos, double rot)
{
    return {{"type", type}, {"pos", json(pos)}, {"rot", rot}};
}

QJsonObject line(int type, const QPointF &pos, const QPointF &end1, const QPointF &end2)
{
    return {{"type", type}, {"pos", json(pos)}, {"end1", json(end1)}, {"end2", json(end2)}};
}

/// A head and a trunk without link, with organs on them.
std::unique_ptr<Morphology> headAndTrunkWith(const QList<QJsonObject> &ofHead,
                                             const QList<QJsonObject> &ofTrunk)
{
    auto worm = std::make_unique<Morphology>();
    addOrgans(worm->addRegion(headType()), ofHead);
    addOrgans(worm->addRegion(trunkType()), ofTrunk);
    return worm;
}

struct Link
{
    double dist;
    double ang;
    double ratio = 0.5;
};

/// A head and, along @p links, a trunk.
std::unique_ptr<Morphology> headAndTrunk(const QList<Link> &links)
{
    auto worm = std::make_unique<Morphology>();
    Region *head = worm->addRegion(headType());
    Region *trunk = worm->addRegion(trunkType());
    for (const Link &link : links)
        head->addLink(trunk, link.dist, link.ang, link.ratio);
    for (Region *region : worm->regions())
        region->setParams({60.0, 60.0, 60.0, 60.0});
    return worm;
}

/// Regions of one type without links, with one of the given params each.
std::unique_ptr<Morphology> heads(const QList<double> &params)
{
    auto worm = std::make_unique<Morphology>();
    for (const double param : params)
        worm->addRegion(headType())->setParam(0, param);
    return worm;
}

/// Eyes that differ, by whole turns, though not in what they cost.
QList<QJsonObject> turnedEyes(int count)
{
    QList<QJsonObject> eyes;
    for (int turns = 0; turns < count; ++turns)
        eyes.append(spot(1, {}, turns * 2.0 * pi));
    return eyes;
}

/// Spots of all types here and there; all numbers follow from @p seed.
QList<QJsonObject> scattered(int count, double seed)
{
    QList<QJsonObject> spots;
    for (int i = 1; i <= count; ++i) {
        const QPointF pos(std::fmod(i * i * seed, 101.0), std::fmod(i * i * i * seed, 97.0));
        spots.append(spot(1 + i % 3, pos, i * seed));
    }
    return spots;
}

/// A head in the middle of others, each with an eye; all numbers follow from @p seed.
std::unique_ptr<Morphology> star(int rays, double seed)
{
    auto worm = std::make_unique<Morphology>();
    Region *middle = worm->addRegion(trunkType());
    for (int i = 0; i < rays; ++i) {
        Region *ray = worm->addRegion(headType());
        middle->addLink(ray, 200.0 + std::fmod(i * seed, 37.0), i * 2.0 * pi / rays, 0.5);
        ray->addSpotOrgan(eyeType(), {std::fmod(i * seed, 31.0), 0.0}, i * seed);
    }
    return worm;
}

} // namespace

class DistAlgoTest final : public QObject
{
    Q_OBJECT

private slots:
    void weighsTheEdits_data();
    void weighsTheEdits();

    void isZeroToItself();
    void isZeroBetweenWormsWithoutRegions();
    void chargesAWholeWormAgainstNoneEitherWay();
    void chargesADeletedRegionWithItsOrgansAndItsLink();
    void changesTheTypeOfARegionRatherThanReplaceIt();
    void replacesARegionThatIsTooFarAway();
    void comparesParamsAsFarAsBothRegionsHaveThem();

    void weighsOrgans_data();
    void weighsOrgans();
    void pairsOrgansInWhateverOrderIsCheapest();
    void knowsARegionTypeByItsId();

    void weighsLinks_data();
    void weighsLinks();
    void chargesALinkWithoutCounterpart();
    void comparesNoRatioOfALink();
    void comparesAQuarterTurnAsItIsRounded_data();
    void comparesAQuarterTurnAsItIsRounded();
    void matchesParallelLinksWithTheFirst();
    void mayDifferFromTheWayBackWithParallelLinks();
    void chargesNoLinkOfARegionToItself();

    void givesTheSameCostWhicheverOfEqualAssignmentsIsTaken();
    void endsAtOnceAmongCountlessEqualAssignments();
    void endsAtOnceAmongNearlyEqualElements();
    void searchesOrdinaryOrgansBesideCountlessEqualAssignments();
    void neverFallsBelowZeroAfterManyTurns();
    void comparesWormsOfThousandsOfRegions();
    void endsWithMoreRegionsThanItCanFollow();
    void chargesManyOrgansAgainstNone();
    void leavesNumbersThatAreNoneWithoutPartner_data();
    void leavesNumbersThatAreNoneWithoutPartner();
    void changesNeitherWorm();
    void runsSideBySideWithItself();
};

// --- Weights ---

void DistAlgoTest::weighsTheEdits_data()
{
    QTest::addColumn<double>("weight");
    QTest::addColumn<double>("expected");

    using namespace DistAlgo::Costs;
    QTest::newRow("insertDeleteRegion") << insertDeleteRegion << 1500.0;
    QTest::newRow("changeRegionType") << changeRegionType << 1000.0;
    QTest::newRow("changeRegionParameter") << changeRegionParameter << 0.1;
    QTest::newRow("insertDeleteOrgan") << insertDeleteOrgan << 50.0;
    QTest::newRow("moveOrgan") << moveOrgan << 0.1;
    QTest::newRow("changeSpotLineOrganType") << changeSpotLineOrganType << 30.0;
    QTest::newRow("changeSpotOrganType") << changeSpotOrganType << 20.0;
    QTest::newRow("changeSpotOrganRotation") << changeSpotOrganRotation << 5.0;
    QTest::newRow("moveLineOrganEnd") << moveLineOrganEnd << 0.1;
    QTest::newRow("insertDeleteLink") << insertDeleteLink << 1000.0;
    QTest::newRow("changeLinkDistance") << changeLinkDistance << 0.1;
    QTest::newRow("changeLinkAngle") << changeLinkAngle << 100.0;
    QTest::newRow("changeLinkAngleMore90Penalty") << changeLinkAngleMore90Penalty << 750.0;
}

void DistAlgoTest::weighsTheEdits()
{
    QFETCH(const double, weight);
    QFETCH(const double, expected);
    QVERIFY(weight == expected);
}

// --- Regions ---

void DistAlgoTest::isZeroToItself()
{
    const auto wildType = ExperimentFactory::instance(nullptr)->createWildMorphology();
    QCOMPARE(dist(*wildType, *wildType), 0.0);
    QCOMPARE(dist(*wildType, Morphology(*wildType, false)), 0.0);
}

void DistAlgoTest::isZeroBetweenWormsWithoutRegions()
{
    QCOMPARE(dist(Morphology(), Morphology()), 0.0);
}

void DistAlgoTest::chargesAWholeWormAgainstNoneEitherWay()
{
    const auto worm = trunk({spot(1, {}, 0.0), spot(2, {}, 0.0), line(1, {}, {}, {})});
    QCOMPARE(dist(Morphology(), *worm), 1650.0);
    QCOMPARE(dist(*worm, Morphology()), 1650.0);

    const auto linked = headAndTrunk({{200.0, 1.0}});
    QCOMPARE(dist(Morphology(), *linked), 4000.0);
    QCOMPARE(dist(*linked, Morphology()), 4000.0);
}

void DistAlgoTest::chargesADeletedRegionWithItsOrgansAndItsLink()
{
    const auto whole = headAndTrunk({{200.0, 1.0}});
    Region *trunk = whole->regions().at(1);
    trunk->addSpotOrgan(eyeType(), {}, 0.0);
    trunk->addSpotOrgan(eyeType(), {}, 0.0);

    QCOMPARE(dist(*whole, *heads({60.0})), 1500.0 + 2 * 50.0 + 1000.0);
    QCOMPARE(dist(*heads({60.0}), *whole), 1500.0 + 2 * 50.0 + 1000.0);
}

void DistAlgoTest::changesTheTypeOfARegionRatherThanReplaceIt()
{
    QCOMPARE(dist(*trunk(), *heads({60.0})), 1000.0);
}

void DistAlgoTest::replacesARegionThatIsTooFarAway()
{
    COMPARE_DIST(dist(*heads({0.0}), *heads({29990.0})), 2999.0);
    COMPARE_DIST(dist(*heads({0.0}), *heads({30010.0})), 3000.0);
}

void DistAlgoTest::comparesParamsAsFarAsBothRegionsHaveThem()
{
    const auto alone = trunk(); // four params
    alone->regions().first()->setParams({10.0, 20.0, 30.0, 1000.0});
    const auto linked = headAndTrunk({{200.0, 1.0}}); // three params each
    linked->regions().at(1)->setParams({11.0, 18.0, 33.0});

    COMPARE_DIST(dist(*alone, *linked), 0.1 * (1.0 + 2.0 + 3.0) + 1500.0 + 1000.0);
    COMPARE_DIST(dist(*linked, *alone), 0.1 * (1.0 + 2.0 + 3.0) + 1500.0 + 1000.0);
}

void DistAlgoTest::knowsARegionTypeByItsId()
{
    RegionType sameId(2, QStringLiteral("another word"));
    Morphology worm;
    worm.addRegion(&sameId);
    QCOMPARE(dist(worm, *trunk()), 0.0);
}

// --- Organs ---

void DistAlgoTest::weighsOrgans_data()
{
    QTest::addColumn<QList<QJsonObject>>("a");
    QTest::addColumn<QList<QJsonObject>>("b");
    QTest::addColumn<double>("expected");

    using Organs = QList<QJsonObject>;
    const auto row = [](const char *name, const Organs &a, const Organs &b, double expected) {
        QTest::newRow(name) << a << b << expected;
    };
    const QJsonObject eye = spot(1, {}, 0.0);
    row("the same", {eye}, {eye}, 0.0);
    row("one more", {eye}, {eye, eye}, 50.0);
    row("moved", {eye}, {spot(1, {3.0, -4.0}, 0.0)}, 0.5);
    row("too far away", {eye}, {spot(1, {2000.0, 0.0}, 0.0)}, 100.0);
    row("another spot", {eye}, {spot(2, {}, 0.0)}, 20.0);
    row("turned half round", {eye}, {spot(1, {}, pi)}, 5.0);
    row("turned a quarter", {eye}, {spot(1, {}, 0.5 * pi)}, 2.5);
    row("turned a quarter back", {eye}, {spot(1, {}, 1.5 * pi)}, 2.5);
    row("turned round and round", {eye}, {spot(1, {}, -6.0 * pi)}, 0.0);
    row("another spot, moved and turned", {eye}, {spot(3, {0.0, 10.0}, pi)}, 26.0);

    const QJsonObject cord = line(1, {}, {0.0, 50.0}, {0.0, -50.0});
    row("spot and line", {eye}, {cord}, 30.0);
    row("spot and line, moved", {eye}, {line(1, {6.0, 8.0}, {0.0, 50.0}, {})}, 31.0);
    row("the same line", {cord}, {cord}, 0.0);
    row("another type of line", {cord}, {line(2, {}, {0.0, 50.0}, {0.0, -50.0})}, 0.0);
    row("line moved", {cord}, {line(1, {3.0, 4.0}, {0.0, 50.0}, {0.0, -50.0})}, 0.5);
    row("first end moved", {cord}, {line(1, {}, {6.0, 42.0}, {0.0, -50.0})}, 1.0);
    row("second end moved", {cord}, {line(1, {}, {0.0, 50.0}, {20.0, -50.0})}, 2.0);
    row("ends exchanged", {cord}, {line(1, {}, {0.0, -50.0}, {0.0, 50.0})}, 20.0);
}

void DistAlgoTest::weighsOrgans()
{
    QFETCH(const QList<QJsonObject>, a);
    QFETCH(const QList<QJsonObject>, b);
    QFETCH(const double, expected);

    COMPARE_DIST(dist(*trunk(a), *trunk(b)), expected);
    COMPARE_DIST(dist(*trunk(b), *trunk(a)), expected);
}

void DistAlgoTest::pairsOrgansInWhateverOrderIsCheapest()
{
    const auto one = trunk({spot(1, {10.0, 0.0}, 0.0), spot(1, {20.0, 0.0}, 0.0),
                            line(1, {0.0, 5.0}, {}, {}), spot(2, {0.0, 0.0}, 0.0)});
    const auto other = trunk({spot(2, {0.0, 1.0}, 0.0), line(1, {0.0, 5.0}, {}, {}),
                              spot(1, {22.0, 0.0}, 0.0), spot(1, {13.0, 0.0}, 0.0)});
    COMPARE_DIST(dist(*one, *other), 0.1 + 0.2 + 0.3);
}

// --- Links ---

void DistAlgoTest::weighsLinks_data()
{
    QTest::addColumn<double>("dist");
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("expected");

    QTest::newRow("the same") << 200.0 << 0.0 << 0.0;
    QTest::newRow("shorter") << 150.0 << 0.0 << 5.0;
    QTest::newRow("longer") << 250.0 << 0.0 << 5.0;
    QTest::newRow("turned by 45 degrees") << 200.0 << 45.0 << 25.0;
    QTest::newRow("turned a quarter") << 200.0 << 90.0 << 50.0;
    QTest::newRow("turned a quarter back") << 200.0 << 270.0 << 50.0;
    QTest::newRow("turned by 91 degrees") << 200.0 << 91.0 << 100.0 * 91.0 / 180.0 + 750.0;
    QTest::newRow("turned by 269 degrees") << 200.0 << 269.0 << 100.0 * 91.0 / 180.0 + 750.0;
    QTest::newRow("the opposite") << 200.0 << 180.0 << 850.0;
    QTest::newRow("longer and turned") << 210.0 << 18.0 << 11.0;
}

void DistAlgoTest::weighsLinks()
{
    QFETCH(const double, dist);
    QFETCH(const double, degrees);
    QFETCH(const double, expected);

    const auto one = headAndTrunk({{200.0, 0.0}});
    const auto other = headAndTrunk({{dist, degrees * pi / 180.0}});
    COMPARE_DIST(DistAlgo::dist(*one, *other), expected);
    COMPARE_DIST(DistAlgo::dist(*other, *one), expected);
}

void DistAlgoTest::chargesALinkWithoutCounterpart()
{
    const auto linked = headAndTrunk({{200.0, 0.0}});
    const auto loose = headAndTrunk({});
    for (const auto &worm : {&linked, &loose}) {
        for (Region *region : (*worm)->regions())
            region->setParams({60.0, 60.0, 60.0, 60.0});
    }
    QCOMPARE(dist(*linked, *loose), 1000.0);
    QCOMPARE(dist(*loose, *linked), 1000.0);
}

void DistAlgoTest::comparesNoRatioOfALink()
{
    QCOMPARE(dist(*headAndTrunk({{200.0, 1.0, 0.1}}), *headAndTrunk({{200.0, 1.0, 0.9}})), 0.0);
}

void DistAlgoTest::comparesAQuarterTurnAsItIsRounded_data()
{
    QTest::addColumn<int>("from"); // twelfths of half a turn
    QTest::addColumn<int>("to");
    QTest::addColumn<double>("expected");

    QTest::newRow("a quarter") << 0 << 6 << 50.0;
    QTest::newRow("a hair less") << 7 << 1 << 50.0;
    QTest::newRow("a hair more") << 1 << 19 << 800.0;
    QTest::newRow("a hair more one way") << 4 << 10 << 800.0;
    QTest::newRow("a hair less than three") << 5 << 23 << 800.0;
    QTest::newRow("a hair more than three") << 2 << 20 << 50.0;
}

void DistAlgoTest::comparesAQuarterTurnAsItIsRounded()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    QFETCH(const double, expected);

    COMPARE_DIST(
        dist(*headAndTrunk({{200.0, from * pi / 12.0}}), *headAndTrunk({{200.0, to * pi / 12.0}})),
        expected);
}

void DistAlgoTest::matchesParallelLinksWithTheFirst()
{
    // Both are compared with the first, and the second is left over.
    const auto worm = headAndTrunk({{200.0, 0.0}, {300.0, 0.3}});
    COMPARE_DIST(dist(*worm, *worm), 10.0 + 100.0 * 0.3 / pi + 1000.0);

    // With one on the other side, the second finds none left.
    COMPARE_DIST(dist(*worm, *headAndTrunk({{200.0, 0.0}})), 1000.0);
    COMPARE_DIST(dist(*headAndTrunk({{200.0, 0.0}}), *worm), 1000.0);
}

void DistAlgoTest::mayDifferFromTheWayBackWithParallelLinks()
{
    const auto one = headAndTrunk({{200.0, 0.0}, {300.0, 0.3}});
    const auto other = headAndTrunk({{200.0, 0.0}, {200.0, 0.1}});
    COMPARE_DIST(dist(*one, *other), 10.0 + 100.0 * 0.3 / pi + 1000.0);
    COMPARE_DIST(dist(*other, *one), 100.0 * 0.1 / pi + 1000.0);
}

void DistAlgoTest::chargesNoLinkOfARegionToItself()
{
    const auto looped = trunk();
    Region *region = looped->regions().first();
    region->addLink(region, 100.0, 1.0, 0.5);
    QCOMPARE(dist(*looped, *trunk()), 0.0);
    QCOMPARE(dist(*trunk(), *looped), 0.0);
    QCOMPARE(dist(*looped, Morphology()), 1500.0);
}

// --- The search ---

void DistAlgoTest::givesTheSameCostWhicheverOfEqualAssignmentsIsTaken()
{
    // Whichever three of the four are kept, all cost the same.
    QCOMPARE(dist(*heads({10.0, 10.0, 10.0, 10.0}), *heads({10.0, 10.0, 10.0})), 1500.0);
    QCOMPARE(dist(*heads({10.0, 10.0, 10.0}), *heads({10.0, 10.0, 10.0, 10.0})), 1500.0);
    // 10 to 20 and 30 to 40, or 10 to 40 and 30 to 20.
    COMPARE_DIST(dist(*heads({10.0, 30.0}), *heads({40.0, 20.0})), 2.0);
    COMPARE_DIST(dist(*heads({10.0, 10.0}), *heads({20.0, 40.0})), 4.0);
}

void DistAlgoTest::endsAtOnceAmongCountlessEqualAssignments()
{
    const auto equal = heads(QList<double>(40, 10.0));
    QCOMPARE(dist(*equal, *equal), 0.0);
    QCOMPARE(dist(*equal, *heads(QList<double>(39, 10.0))), 1500.0);

    const QList<QJsonObject> eyes(40, spot(1, {}, 0.0));
    QCOMPARE(dist(*trunk(eyes), *trunk(eyes)), 0.0);
}

void DistAlgoTest::endsAtOnceAmongNearlyEqualElements()
{
    // Of each of the many ways to assign the equal ones, one is left that fits nothing.
    const auto eyes = trunk(QList<QJsonObject>(13, spot(1, {}, 0.0)));
    const auto brainBehindEyes =
        trunk(QList<QJsonObject>(12, spot(1, {}, 0.0)) << spot(2, {}, 0.0));
    QCOMPARE(dist(*brainBehindEyes, *eyes), 20.0);
    QCOMPARE(dist(*eyes, *brainBehindEyes), 20.0);

    Morphology loose;
    Morphology other;
    for (int i = 0; i < 13; ++i) {
        loose.addRegion(headType());
        other.addRegion(i < 12 ? headType() : trunkType());
    }
    QCOMPARE(dist(other, loose), 1000.0);
    QCOMPARE(dist(loose, other), 1000.0);
}

void DistAlgoTest::searchesOrdinaryOrgansBesideCountlessEqualAssignments()
{
    // Among the eyes a search ends before its time.
    const QList<QJsonObject> eyes = turnedEyes(13);
    const QList<QJsonObject> brainBehindEyes = turnedEyes(12) << spot(2, {}, 0.0);
    // Here many paths are given up, and the cost is not the one known before the search.
    const QList<QJsonObject> organs = scattered(11, 10.31);
    const QList<QJsonObject> others = scattered(11, 14.93);

    COMPARE_DIST(dist(*headAndTrunkWith(brainBehindEyes, organs), *headAndTrunkWith(eyes, others)),
                 20.0 + dist(*trunk(organs), *trunk(others)));
}

void DistAlgoTest::neverFallsBelowZeroAfterManyTurns()
{
    const auto eye = trunk({spot(1, {}, 0.0)});
    for (const double rot : {106.81415022205296, 5e17, 7.341442796350994e18, 1e300}) {
        QVERIFY(dist(*eye, *trunk({spot(1, {}, rot)})) >= 0.0);
        QVERIFY(dist(*trunk({spot(1, {}, rot)}), *eye) >= 0.0);
    }
}

void DistAlgoTest::comparesWormsOfThousandsOfRegions()
{
    Morphology damaged;
    for (int i = 0; i < 5000; ++i)
        damaged.addRegion(headType());
    QCOMPARE(dist(damaged, damaged), 0.0);
    QCOMPARE(dist(damaged, *heads({60.0})), 4999 * 1500.0);
    QVERIFY(dist(*heads(QList<double>(900, 60.0)), *heads({60.0})) > 0.0);
}

void DistAlgoTest::endsWithMoreRegionsThanItCanFollow()
{
    const auto one = star(25, 7.3);
    const auto other = star(25, 11.9);
    const double there = dist(*one, *other);
    QVERIFY(there > 0.0);
    QVERIFY(there <= 2.0 * 26 * (1500.0 + 50.0) + 2.0 * 25 * 1000.0);
    QCOMPARE(dist(*one, *other), there);
    QCOMPARE(dist(*one, *one), 0.0);
}

void DistAlgoTest::chargesManyOrgansAgainstNone()
{
    const auto eyes = trunk(QList<QJsonObject>(200, spot(1, {}, 0.0)));
    QCOMPARE(dist(*eyes, *trunk()), 200 * 50.0);
    QCOMPARE(dist(*trunk(), *eyes), 200 * 50.0);
}

void DistAlgoTest::leavesNumbersThatAreNoneWithoutPartner_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("not a number") << notANumber;
    QTest::newRow("infinite") << infinite;
    QTest::newRow("infinite backwards") << -infinite;
}

void DistAlgoTest::leavesNumbersThatAreNoneWithoutPartner()
{
    QFETCH(const double, value);

    const auto head = heads({value});
    QCOMPARE(dist(*head, *heads({60.0})), 3000.0);
    QCOMPARE(dist(*head, *head), 3000.0);

    const auto organs = trunk();
    organs->regions().first()->addSpotOrgan(eyeType(), {value, 0.0}, value);
    QCOMPARE(dist(*organs, *trunk({spot(1, {}, 0.0)})), 100.0);

    const auto linked = headAndTrunk({{200.0, 0.0}});
    const auto broken = headAndTrunk({{200.0, 0.0}});
    broken->links().first()->setFromAng(value);
    QCOMPARE(dist(*linked, *broken), 2.0 * (1500.0 + 1000.0)); // one pair of regions is left
}

void DistAlgoTest::changesNeitherWorm()
{
    // Read only, so that each call gives the same.
    const auto one = star(5, 7.3);
    const auto other = headAndTrunk({{200.0, 0.0}});
    const double there = dist(*one, *other);
    const double back = dist(*other, *one);
    QVERIFY(dist(*one, *other) == there);
    QVERIFY(dist(*other, *one) == back);
}

void DistAlgoTest::runsSideBySideWithItself()
{
    const auto one = star(7, 7.3);
    const auto other = star(6, 11.9);
    const double there = dist(*one, *other);
    std::vector<std::future<double>> runs;
    for (int i = 0; i < 8; ++i)
        runs.push_back(std::async(std::launch::async, [&] { return dist(*one, *other); }));
    for (std::future<double> &run : runs)
        QVERIFY(run.get() == there);
}

QTEST_GUILESS_MAIN(DistAlgoTest)
#include "DistAlgoTest.moc"
