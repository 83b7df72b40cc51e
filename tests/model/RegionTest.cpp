#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"
#include "model/SpotOrgan.h"

#include <QTest>

#include <limits>
#include <numbers>

using namespace Planaria;
using std::numbers::pi;

/// A hub whose params are told apart by their values, and regions around it to link it with.
class RegionTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void startsWithFourParamsOfSixty();
    void hasAsManyParamsAsItsLinksAskFor_data();
    void hasAsManyParamsAsItsLinksAskFor();
    void firstLinkReplacesTheParamOfItsQuadrant_data();
    void firstLinkReplacesTheParamOfItsQuadrant();
    void secondLinkReplacesTheParamOfItsHalf_data();
    void secondLinkReplacesTheParamOfItsHalf();
    void furtherLinkBringsAParamBehindItself_data();
    void furtherLinkBringsAParamBehindItself();
    void listsLinksByAngle();
    void listsALinkOfEqualAngleBehindTheOlderOnes();
    void lastLinkLeavesADefaultInItsQuadrant_data();
    void lastLinkLeavesADefaultInItsQuadrant();
    void secondLinkAddedAndRemovedRestoresTheDefault_data();
    void secondLinkAddedAndRemovedRestoresTheDefault();
    void linkOfManyTakesTheParamAtItsPlaceAlong_data();
    void linkOfManyTakesTheParamAtItsPlaceAlong();
    void queuesTheDroppedParam();
    void removesNoLinkThatIsNotItsOwn_data();
    void removesNoLinkThatIsNotItsOwn();
    void leavesParamsAloneWhereToldTo();
    void findsTheFirstLinkToAnotherRegion();
    void makesLinksInItsMorphology();
    void countsBothEndsOfALinkToItself();
    void survivesAnglesThatAreNone_data();
    void survivesAnglesThatAreNone();

    void setsParamsThatAreThere();
    void changesItsType();
    void addsOrgansInOrder();

    void isEqualByTypeParamsAndOrgans();
    void isUnequalByTheSmallestDifferenceOfAParam();
    void isUnequalByTheOrderOfItsOrgans();
    void isEqualWhateverItsLinks();
    void copiesAllButTheLinks();
    void keepsItsOrgansWhenRemoved();
    void isRemovedOnce();

private:
    /// Links the hub to a region of its own at each of @p angles.
    QList<RegionsLink *> linkAt(const QList<double> &angles);

    std::unique_ptr<Morphology> worm;
    Region *hub = nullptr;
};

void RegionTest::init()
{
    worm = std::make_unique<Morphology>();
    hub = worm->addRegion(trunkType());
}

QList<RegionsLink *> RegionTest::linkAt(const QList<double> &angles)
{
    QList<RegionsLink *> links;
    for (const double ang : angles)
        links += hub->addLink(worm->addRegion(tailType()), 100.0, ang, 0.5);
    return links;
}

void RegionTest::startsWithFourParamsOfSixty()
{
    QCOMPARE(paramValues(hub), (QList<double>{60.0, 60.0, 60.0, 60.0}));
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2, 3}));
    QCOMPARE(hub->type(), trunkType());
    QCOMPARE(hub->morphology(), worm.get());
    QVERIFY(hub->links().isEmpty());
    QVERIFY(hub->organs().isEmpty());
    QCOMPARE(hub->id(), 0);
}

void RegionTest::hasAsManyParamsAsItsLinksAskFor_data()
{
    QTest::addColumn<int>("links");
    QTest::addColumn<int>("params");

    QTest::newRow("none") << 0 << 4;
    QTest::newRow("one") << 1 << 3;
    for (int n = 2; n <= 8; ++n)
        QTest::addRow("%d", n) << n << n;
}

void RegionTest::hasAsManyParamsAsItsLinksAskFor()
{
    QFETCH(int, links);
    QFETCH(int, params);

    const QList<RegionsLink *> made =
        linkAt(QList<double>{3.0, 0.5, 6.0, 1.5, 4.5, 2.2, 5.1, 0.1, 3.9, 1.1});
    for (qsizetype surplus = made.size(); surplus > links; --surplus)
        worm->removeRegionsLink(made.at(surplus - 1));

    QCOMPARE(hub->links().size(), links);
    QCOMPARE(hub->params().size(), params);

    init();
    linkAt(QList<double>{3.0, 0.5, 6.0, 1.5, 4.5, 2.2, 5.1, 0.1}.first(links));
    QCOMPARE(hub->params().size(), params);
}

void RegionTest::firstLinkReplacesTheParamOfItsQuadrant_data()
{
    QTest::addColumn<double>("ang");
    QTest::addColumn<QList<double>>("fromParams");
    QTest::addColumn<QList<double>>("toParams");

    const QList<QList<double>> without{{2, 3, 4}, {1, 3, 4}, {1, 2, 4}, {1, 2, 3}};
    const auto row = [&](const char *name, double ang, int fromQuadrant, int toQuadrant) {
        QTest::newRow(name) << ang << without[fromQuadrant] << without[toQuadrant];
    };
    row("zero", 0.0, 0, 2);
    row("first quadrant", 1.57, 0, 2);
    row("a quarter turn", 0.5 * pi, 1, 3);
    row("second quadrant", 3.14, 1, 3);
    row("a half turn", pi, 2, 0);
    row("third quadrant", 4.71, 2, 0);
    row("three quarters", 1.5 * pi, 3, 1);
    row("fourth quadrant", 6.28, 3, 1);
    row("a full turn", 2.0 * pi, 0, 2);
    row("a little back", -0.1, 3, 1);
    row("a hair back, rounded to a full turn", -1e-17, 0, 2);
}

void RegionTest::firstLinkReplacesTheParamOfItsQuadrant()
{
    QFETCH(double, ang);
    QFETCH(QList<double>, fromParams);
    QFETCH(QList<double>, toParams);

    Region *other = worm->addRegion(headType());
    for (Region *region : {hub, other})
        region->setParams({1, 2, 3, 4});
    hub->addLink(other, 100.0, ang, 0.5);

    QCOMPARE(paramValues(hub), fromParams);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2}));
    QCOMPARE(paramValues(other), toParams);
    QCOMPARE(paramIndices(other), (QList<int>{0, 1, 2}));
}

void RegionTest::secondLinkReplacesTheParamOfItsHalf_data()
{
    QTest::addColumn<double>("ang");
    QTest::addColumn<QList<double>>("params");

    const QList<double> withoutFirst{2, 3};
    const QList<double> withoutSecond{1, 3};
    QTest::newRow("zero") << 0.0 << withoutFirst;
    QTest::newRow("before the other link") << 1.9 << withoutFirst;
    QTest::newRow("below a half turn") << 3.14 << withoutFirst;
    QTest::newRow("a half turn") << pi << withoutSecond;
    QTest::newRow("above a half turn") << 6.28 << withoutSecond;
}

void RegionTest::secondLinkReplacesTheParamOfItsHalf()
{
    QFETCH(double, ang);
    QFETCH(QList<double>, params);

    linkAt({2.0});
    hub->setParams({1, 2, 3});
    linkAt({ang});

    QCOMPARE(paramValues(hub), params);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1}));
}

void RegionTest::furtherLinkBringsAParamBehindItself_data()
{
    QTest::addColumn<QList<double>>("angles");
    QTest::addColumn<double>("ang");
    QTest::addColumn<QList<double>>("params");

    const QList<double> two{1.0, 2.0};
    const QList<double> three{1.0, 2.0, 3.0};
    QTest::newRow("first of three") << two << 0.5 << QList<double>{1, 60, 2};
    QTest::newRow("second of three") << two << 1.5 << QList<double>{1, 2, 60};
    QTest::newRow("last of three") << two << 2.5 << QList<double>{1, 2, 60};
    QTest::newRow("first of four") << three << 0.5 << QList<double>{1, 60, 2, 3};
    QTest::newRow("second of four") << three << 1.5 << QList<double>{1, 2, 60, 3};
    QTest::newRow("third of four") << three << 2.5 << QList<double>{1, 2, 3, 60};
    QTest::newRow("last of four") << three << 3.5 << QList<double>{1, 2, 3, 60};
}

void RegionTest::furtherLinkBringsAParamBehindItself()
{
    QFETCH(QList<double>, angles);
    QFETCH(double, ang);
    QFETCH(QList<double>, params);

    linkAt(angles);
    hub->setParams({1, 2, 3});
    linkAt({ang});

    QCOMPARE(paramValues(hub), params);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2, 3}.first(params.size())));
}

void RegionTest::listsLinksByAngle()
{
    const QList<RegionsLink *> links = linkAt({3.0, 1.0, 6.0, 2.0});
    // Seen from its end, this one leaves at 4.5.
    RegionsLink *arriving = worm->addRegion(headType())->addLink(hub, 100.0, 4.5 - pi, 0.5);

    QCOMPARE(hub->links(),
             (QList<RegionsLink *>{links[1], links[3], links[0], arriving, links[2]}));
}

void RegionTest::listsALinkOfEqualAngleBehindTheOlderOnes()
{
    const QList<RegionsLink *> links = linkAt({1.0, 2.0, 1.0, 1.0});

    QCOMPARE(hub->links(), (QList<RegionsLink *>{links[0], links[2], links[3], links[1]}));
}

void RegionTest::lastLinkLeavesADefaultInItsQuadrant_data()
{
    QTest::addColumn<double>("ang");
    QTest::addColumn<QList<double>>("params");

    const QList<QList<double>> restored{{60, 1, 2, 3}, {1, 60, 2, 3}, {1, 2, 60, 3}, {1, 2, 3, 60}};
    QTest::newRow("first quadrant") << 0.0 << restored[0];
    QTest::newRow("second quadrant") << 0.5 * pi << restored[1];
    QTest::newRow("third quadrant") << pi << restored[2];
    QTest::newRow("fourth quadrant") << 6.28 << restored[3];
    QTest::newRow("below zero") << -0.5 * pi << restored[3];
    QTest::newRow("above a full turn") << 7.0 << restored[0];
}

void RegionTest::lastLinkLeavesADefaultInItsQuadrant()
{
    QFETCH(double, ang);
    QFETCH(QList<double>, params);

    const QList<RegionsLink *> links = linkAt({2.0});
    links.first()->setFromAng(ang);
    hub->setParams({1, 2, 3});

    QVERIFY(hub->removeLink(links.first()));
    QCOMPARE(paramValues(hub), params);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2, 3}));
    QVERIFY(hub->links().isEmpty());
}

void RegionTest::secondLinkAddedAndRemovedRestoresTheDefault_data()
{
    QTest::addColumn<double>("ang");
    QTest::addColumn<QList<double>>("params");

    QTest::newRow("below a half turn") << 1.0 << QList<double>{60, 2, 3};
    QTest::newRow("a half turn") << pi << QList<double>{1, 60, 3};
    QTest::newRow("above a half turn") << 5.0 << QList<double>{1, 60, 3};
    // On its way over zero, the link changes places with the other, and so do their params.
    QTest::newRow("below zero") << -0.5 * pi << QList<double>{3, 60, 1};
    QTest::newRow("above a full turn") << 7.0 << QList<double>{60, 3, 2};
}

void RegionTest::secondLinkAddedAndRemovedRestoresTheDefault()
{
    QFETCH(double, ang);
    QFETCH(QList<double>, params);

    linkAt({2.0});
    hub->setParams({1, 2, 3});
    const QList<RegionsLink *> second = linkAt({ang});
    second.first()->setFromAng(ang); // which, unlike the constructor, keeps it as it is

    QVERIFY(worm->removeRegionsLink(second.first()));
    QCOMPARE(paramValues(hub), params);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2}));
}

void RegionTest::linkOfManyTakesTheParamAtItsPlaceAlong_data()
{
    QTest::addColumn<QList<double>>("angles");
    QTest::addColumn<int>("place");
    QTest::addColumn<QList<double>>("params");

    const QList<double> three{1.0, 2.0, 3.0};
    const QList<double> four{1.0, 2.0, 3.0, 4.0};
    QTest::newRow("first of three") << three << 0 << QList<double>{2, 3};
    QTest::newRow("second of three") << three << 1 << QList<double>{1, 3};
    QTest::newRow("third of three") << three << 2 << QList<double>{1, 2};
    QTest::newRow("third of four") << four << 2 << QList<double>{1, 2, 4};
}

void RegionTest::linkOfManyTakesTheParamAtItsPlaceAlong()
{
    QFETCH(QList<double>, angles);
    QFETCH(int, place);
    QFETCH(QList<double>, params);

    const QList<RegionsLink *> links = linkAt(angles);
    hub->setParams({1, 2, 3, 4});

    QVERIFY(hub->removeLink(links.at(place)));
    QCOMPARE(paramValues(hub), params);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2}.first(params.size())));
    QVERIFY(!hub->links().contains(links.at(place)));
}

void RegionTest::queuesTheDroppedParam()
{
    const QList<RegionParam *> params = hub->params();
    linkAt({0.0});
    QCOMPARE(queued<RegionParam>(hub), (QList<const RegionParam *>{params[0]}));

    linkAt({1.0});
    QCOMPARE(queued<RegionParam>(hub), (QList<const RegionParam *>{params[0], params[1]}));

    const QList<RegionsLink *> third = linkAt({2.0});
    const RegionParam *added = hub->params().at(2);
    hub->removeLink(third.first());
    QCOMPARE(queued<RegionParam>(hub), (QList<const RegionParam *>{params[0], params[1], added}));
}

void RegionTest::removesNoLinkThatIsNotItsOwn_data()
{
    QTest::addColumn<int>("links");

    for (int n = 0; n <= 3; ++n)
        QTest::addRow("%d", n) << n;
}

void RegionTest::removesNoLinkThatIsNotItsOwn()
{
    QFETCH(int, links);

    linkAt(QList<double>{1.0, 2.0, 3.0}.first(links));
    Region *stranger = worm->addRegion(headType());
    RegionsLink *foreign = stranger->addLink(worm->addRegion(tailType()), 100.0, 1.0, 0.5);
    const QList<RegionParam *> params = hub->params();

    QVERIFY(!hub->removeLink(foreign));
    QCOMPARE(hub->links().size(), links);
    QCOMPARE(hub->params(), params);
}

void RegionTest::leavesParamsAloneWhereToldTo()
{
    const QList<RegionParam *> params = hub->params();
    Region *head = worm->addRegion(headType());
    RegionsLink *link = head->addLink(worm->addRegion(tailType()), 100.0, 1.0, 0.5);

    hub->addLink(link, false);
    QCOMPARE(hub->links(), QList<RegionsLink *>{link});
    QCOMPARE(hub->params(), params);
}

void RegionTest::findsTheFirstLinkToAnotherRegion()
{
    Region *tail = worm->addRegion(tailType());
    const Region *stranger = worm->addRegion(headType());
    hub->addLink(tail, 100.0, 3.0, 0.5);
    RegionsLink *first = hub->addLink(tail, 100.0, 1.0, 0.5);

    QCOMPARE(hub->isLinked(tail), first);
    QCOMPARE(tail->isLinked(hub), first);
    QCOMPARE(hub->isLinked(stranger), nullptr);
    QCOMPARE(hub->isLinked(hub), nullptr);
}

void RegionTest::makesLinksInItsMorphology()
{
    Region *tail = worm->addRegion(tailType());
    RegionsLink *link = hub->addLink(tail, 100.0, 1.0, 0.25);

    QCOMPARE(worm->links(), QList<RegionsLink *>{link});
    QCOMPARE(link->from(), hub);
    QCOMPARE(link->to(), tail);
    QCOMPARE(link->totalDist(), 100.0);
    QCOMPARE(link->fromAng(), 1.0);
    QCOMPARE(link->fromRatio(), 0.25);
}

void RegionTest::countsBothEndsOfALinkToItself()
{
    RegionsLink *loop = hub->addLink(hub, 100.0, 1.0, 0.5);
    QCOMPARE(hub->links(), (QList<RegionsLink *>{loop, loop}));
    QCOMPARE(hub->params().size(), 2);
    QCOMPARE(hub->isLinked(hub), loop);

    loop->setFromAng(4.0);
    loop->setToAng(2.0);
    QVERIFY(worm->removeRegionsLink(loop));
    QVERIFY(hub->links().isEmpty());
    QCOMPARE(hub->params().size(), 4);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2, 3}));

    hub->addLink(hub, 100.0, 1.0, 0.5);
    QVERIFY(worm->removeRegion(hub));
    QCOMPARE(worm->record().removedReferences().size(), 3); // two loops and the region
}

void RegionTest::survivesAnglesThatAreNone_data()
{
    QTest::addColumn<double>("ang");

    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    QTest::newRow("infinite backwards") << -std::numeric_limits<double>::infinity();
    QTest::newRow("huge") << 1e308;
    QTest::newRow("tiny and negative") << -5e-324;
}

void RegionTest::survivesAnglesThatAreNone()
{
    QFETCH(double, ang);

    const QList<RegionsLink *> links = linkAt({ang, 1.0, ang, ang, 4.0});
    QCOMPARE(hub->params().size(), 5);
    for (RegionsLink *link : links) {
        link->setFromAng(ang);
        link->setToAng(ang);
    }
    for (RegionsLink *link : links)
        QVERIFY(worm->removeRegionsLink(link));

    QCOMPARE(hub->params().size(), 4);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2, 3}));
    QVERIFY(hub->links().isEmpty());
}

void RegionTest::setsParamsThatAreThere()
{
    hub->setParam(2, 7.5);
    for (const int absent :
         {-1, 4, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        hub->setParam(absent, 1.0);
    QCOMPARE(paramValues(hub), (QList<double>{60.0, 60.0, 7.5, 60.0}));

    hub->setParams({1, 2});
    QCOMPARE(paramValues(hub), (QList<double>{1.0, 2.0, 7.5, 60.0}));

    hub->setParams({1, 2, 3, 4, 5});
    QCOMPARE(paramValues(hub), (QList<double>{1, 2, 3, 4}));
}

void RegionTest::changesItsType()
{
    hub->setType(headType());
    QCOMPARE(hub->type(), headType());
}

void RegionTest::addsOrgansInOrder()
{
    SpotOrgan *eye = hub->addSpotOrgan(eyeType(), {1.0, 2.0}, 3.0);
    LineOrgan *cord = hub->addLineOrgan(cordType(), {1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0});

    QCOMPARE(hub->organs(), (QList<Organ *>{eye, cord}));
    QCOMPARE(eye->region(), hub);
    QCOMPARE(cord->region(), hub);
}

void RegionTest::isEqualByTypeParamsAndOrgans()
{
    RegionType sameId(2, QStringLiteral("another word"));
    Region *other = worm->addRegion(&sameId);
    QVERIFY(*hub == *other);

    other->setType(tailType());
    QVERIFY(!(*hub == *other));
    other->setType(trunkType());

    hub->addSpotOrgan(eyeType(), {}, 0.0);
    QVERIFY(!(*hub == *other));
    other->addSpotOrgan(eyeType(), {}, 0.0);
    QVERIFY(*hub == *other);

    linkAt({0.0});
    QVERIFY(!(*hub == *other)); // three params instead of four
}

void RegionTest::isUnequalByTheSmallestDifferenceOfAParam()
{
    Region *other = worm->addRegion(trunkType());
    other->setParam(3, std::nextafter(60.0, 61.0));

    QVERIFY(!(*hub == *other));
}

void RegionTest::isUnequalByTheOrderOfItsOrgans()
{
    Region *other = worm->addRegion(trunkType());
    hub->addSpotOrgan(eyeType(), {}, 0.0);
    hub->addSpotOrgan(brainType(), {}, 0.0);
    other->addSpotOrgan(brainType(), {}, 0.0);
    other->addSpotOrgan(eyeType(), {}, 0.0);

    QVERIFY(!(*hub == *other));
}

void RegionTest::isEqualWhateverItsLinks()
{
    Region *other = worm->addRegion(trunkType());
    linkAt({1.0});
    other->addLink(worm->addRegion(headType()), 20.0, 5.0, 0.1);

    QVERIFY(*hub == *other);
}

void RegionTest::copiesAllButTheLinks()
{
    linkAt({1.0, 2.0});
    hub->setParams({1, 2});
    hub->addLineOrgan(cordType(), {1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0});
    hub->addSpotOrgan(eyeType(), {7.0, 8.0}, 9.0);

    const Region copy(*hub, worm.get(), false);
    QCOMPARE(copy.type(), hub->type());
    QCOMPARE(copy.morphology(), worm.get());
    QCOMPARE(paramValues(&copy), paramValues(hub));
    QCOMPARE(paramIndices(&copy), paramIndices(hub));
    QVERIFY(copy.links().isEmpty());
    QVERIFY(copy.record().removedReferences().isEmpty());

    const auto *cord = dynamic_cast<const LineOrgan *>(copy.organs().at(0));
    const auto *eye = dynamic_cast<const SpotOrgan *>(copy.organs().at(1));
    QVERIFY(cord && eye);
    QCOMPARE(cord->region(), &copy);
    QCOMPARE(cord->end2(), QPointF(5.0, 6.0));
    QCOMPARE(eye->rot(), 9.0);
}

void RegionTest::keepsItsOrgansWhenRemoved()
{
    Organ *eye = hub->addSpotOrgan(eyeType(), {}, 0.0);
    hub->removeFromMorphology();

    QCOMPARE(hub->organs(), QList<Organ *>{eye});
    QCOMPARE(eye->region(), hub);
    QVERIFY(!eye->removeFromMorphology());
    QCOMPARE(hub->organs(), QList<Organ *>{eye});
}

void RegionTest::isRemovedOnce()
{
    hub->removeFromMorphology();
    QCOMPARE(hub->morphology(), nullptr);
    hub->removeFromMorphology();

    QVERIFY(worm->regions().isEmpty());
    QCOMPARE(queued<Region>(worm.get()), QList<const Region *>{hub});
}

QTEST_GUILESS_MAIN(RegionTest)
#include "RegionTest.moc"
