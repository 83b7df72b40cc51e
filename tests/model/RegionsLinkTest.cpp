#include "model/RegionsLink.h"

#include "model/Morphology.h"
#include "model/Shorthand.h"

#include <QTest>

#include <limits>
#include <numbers>

using namespace Planaria;
using std::numbers::pi;

class RegionsLinkTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void looksDifferentFromItsTwoEnds();
    void countsAForeignRegionAsItsEnd();
    void looksBackAtZeroFromAHalfTurn();
    void storesTheAngleWithinOneTurn_data();
    void storesTheAngleWithinOneTurn();
    void setsItsNumbersFromEitherEnd();
    void setsItsAngleFromEitherEnd_data();
    void setsItsAngleFromEitherEnd();
    void storesALaterAngleAsItIs();

    void aloneLeavesItsRegionsAsTheyAre();
    void changesPlacesButNotParamsWithANeighbour_data();
    void changesPlacesButNotParamsWithANeighbour();
    void takesItsParamAlongAcrossZero_data();
    void takesItsParamAlongAcrossZero();
    void staysWhereItsAngleEqualsANeighbours_data();
    void staysWhereItsAngleEqualsANeighbours();
    void isSortedAnewAtBothEnds();
    void neverChangesTheNumberOfParams();
    void survivesAnglesThatAreNone_data();
    void survivesAnglesThatAreNone();

    void mayJoinTwoRegionsThatAreLinkedAlready();
    void isEqualByItsThreeNumbersExactly();
    void isEqualWhateverItsRegions();
    void copiesItsNumbersUnchanged();
    void leavesBothRegionsWhenRemoved();

private:
    /// Links of the hub at @p angles to a region each, whose params are 0, 1, 2, ...
    QList<RegionsLink *> linkHubAt(const QList<double> &angles);
    /// The angles of the hub's links in their order.
    [[nodiscard]] QList<double> hubAngles() const;

    std::unique_ptr<Morphology> worm;
    Region *hub = nullptr;
    Region *from = nullptr;
    Region *to = nullptr;
};

void RegionsLinkTest::init()
{
    worm = std::make_unique<Morphology>();
    from = worm->addRegion(headType());
    to = worm->addRegion(tailType());
    hub = worm->addRegion(trunkType());
}

QList<RegionsLink *> RegionsLinkTest::linkHubAt(const QList<double> &angles)
{
    QList<RegionsLink *> links;
    for (const double ang : angles)
        links += hub->addLink(worm->addRegion(tailType()), 100.0, ang, 0.5);
    for (int index = 0; index < hub->params().size(); ++index)
        hub->setParam(index, index);
    return links;
}

QList<double> RegionsLinkTest::hubAngles() const
{
    QList<double> angles;
    for (const RegionsLink *link : hub->links())
        angles += link->ang(hub);
    return angles;
}

void RegionsLinkTest::looksDifferentFromItsTwoEnds()
{
    const RegionsLink *link = worm->addRegionsLink(from, to, 100.0, 0.5 * pi, 0.25);

    QCOMPARE(link->dist(from), 25.0);
    QCOMPARE(link->dist(to), 75.0);
    QCOMPARE(link->Ratio(from), 0.25);
    QCOMPARE(link->Ratio(to), 0.75);
    QCOMPARE(link->ang(from), 0.5 * pi);
    QCOMPARE(link->ang(to), 1.5 * pi);
    QCOMPARE(link->otherRegion(from), to);
    QCOMPARE(link->otherRegion(to), from);

    QCOMPARE(link->from(), from);
    QCOMPARE(link->to(), to);
    QCOMPARE(link->totalDist(), 100.0);
    QCOMPARE(link->fromAng(), 0.5 * pi);
    QCOMPARE(link->fromRatio(), 0.25);
    QVERIFY(link->isComplete());
    QCOMPARE(link->id(), 0);
}

void RegionsLinkTest::countsAForeignRegionAsItsEnd()
{
    RegionsLink *link = worm->addRegionsLink(from, to, 100.0, 1.0, 0.25);

    QCOMPARE(link->otherRegion(hub), from);
    QCOMPARE(link->dist(hub), 75.0);
    QCOMPARE(link->Ratio(hub), 0.75);
    QCOMPARE(link->ang(hub), 1.0 + pi);

    link->setRatio(0.4, hub);
    link->setAng(2.0, hub);
    QCOMPARE(link->fromRatio(), 0.6);
    QCOMPARE(link->fromAng(), 2.0 + pi);
}

void RegionsLinkTest::looksBackAtZeroFromAHalfTurn()
{
    const RegionsLink *link = worm->addRegionsLink(from, to, 100.0, pi, 0.5);

    QCOMPARE(link->ang(from), pi);
    QCOMPARE(link->ang(to), 0.0);
}

void RegionsLinkTest::storesTheAngleWithinOneTurn_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("stored");

    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("within the turn") << 6.0 << 6.0;
    QTest::newRow("a quarter back") << -0.5 * pi << 1.5 * pi;
    QTest::newRow("a full turn") << 2.0 * pi << 0.0;
    QTest::newRow("over a turn") << 7.0 << 7.0 - 2.0 * pi;
}

void RegionsLinkTest::storesTheAngleWithinOneTurn()
{
    QFETCH(double, given);
    QFETCH(double, stored);

    QCOMPARE(worm->addRegionsLink(from, to, 100.0, given, 0.5)->fromAng(), stored);
}

void RegionsLinkTest::setsItsNumbersFromEitherEnd()
{
    RegionsLink *link = worm->addRegionsLink(from, to, 100.0, 1.0, 0.5);

    link->setTotalDist(200.0);
    QCOMPARE(link->totalDist(), 200.0);
    link->setFromRatio(0.1);
    QCOMPARE(link->fromRatio(), 0.1);
    link->setToRatio(0.25);
    QCOMPARE(link->fromRatio(), 0.75);
    link->setRatio(0.125, from);
    QCOMPARE(link->fromRatio(), 0.125);
    link->setRatio(0.125, to);
    QCOMPARE(link->fromRatio(), 0.875);
}

void RegionsLinkTest::setsItsAngleFromEitherEnd_data()
{
    QTest::addColumn<double>("ang");
    QTest::addColumn<double>("opposite");

    QTest::newRow("below a half turn") << 1.0 << 1.0 + pi;
    QTest::newRow("a half turn") << pi << 0.0;
    QTest::newRow("above a half turn") << 4.0 << 4.0 - pi;
}

void RegionsLinkTest::setsItsAngleFromEitherEnd()
{
    QFETCH(double, ang);
    QFETCH(double, opposite);
    RegionsLink *link = worm->addRegionsLink(from, to, 100.0, 2.5, 0.5);

    link->setFromAng(ang);
    QCOMPARE(link->fromAng(), ang);
    link->setToAng(ang);
    QCOMPARE(link->fromAng(), opposite);
    link->setAng(ang, from);
    QCOMPARE(link->fromAng(), ang);
    link->setAng(ang, to);
    QCOMPARE(link->fromAng(), opposite);
}

void RegionsLinkTest::storesALaterAngleAsItIs()
{
    RegionsLink *link = worm->addRegionsLink(from, to, 100.0, 1.0, 0.5);

    link->setFromAng(-0.5 * pi);
    QCOMPARE(link->fromAng(), -0.5 * pi);
    QCOMPARE(link->ang(to), 0.5 * pi);
}

void RegionsLinkTest::aloneLeavesItsRegionsAsTheyAre()
{
    const QList<RegionsLink *> links = linkHubAt({3.0});
    const QList<RegionParam *> params = hub->params();

    for (const double ang : {6.0, 0.1, 3.0, -9.0})
        links.first()->setFromAng(ang);

    QCOMPARE(hub->links(), links);
    QCOMPARE(hub->params(), params);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2}));
}

void RegionsLinkTest::changesPlacesButNotParamsWithANeighbour_data()
{
    QTest::addColumn<QList<double>>("angles");
    QTest::addColumn<int>("moved");
    QTest::addColumn<double>("ang");
    QTest::addColumn<QList<double>>("anglesAfter");

    QTest::newRow("upwards") << QList<double>{3.0, 3.5} << 0 << 4.0 << QList<double>{3.5, 4.0};
    QTest::newRow("downwards") << QList<double>{3.0, 3.5} << 1 << 2.5 << QList<double>{2.5, 3.0};
    QTest::newRow("over two") << QList<double>{2.0, 2.5, 3.0} << 0 << 3.5
                              << QList<double>{2.5, 3.0, 3.5};
    // At equal distance the link counts as one that jumped over its neighbour.
    QTest::newRow("as near to zero")
        << QList<double>{0.5, 1.0} << 1 << 0.25 << QList<double>{0.25, 0.5};
}

void RegionsLinkTest::changesPlacesButNotParamsWithANeighbour()
{
    QFETCH(QList<double>, angles);
    QFETCH(int, moved);
    QFETCH(double, ang);
    QFETCH(QList<double>, anglesAfter);
    const QList<RegionsLink *> links = linkHubAt(angles);
    const QList<RegionParam *> params = hub->params();

    links.at(moved)->setFromAng(ang);

    QCOMPARE(hubAngles(), anglesAfter);
    QCOMPARE(hub->params(), params);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2}.first(params.size())));
}

void RegionsLinkTest::takesItsParamAlongAcrossZero_data()
{
    QTest::addColumn<QList<double>>("angles");
    QTest::addColumn<int>("moved");
    QTest::addColumn<double>("ang");
    QTest::addColumn<QList<double>>("anglesAfter");
    QTest::addColumn<QList<double>>("params");

    QTest::newRow("backwards, of two")
        << QList<double>{0.1, 3.0} << 0 << 6.2 << QList<double>{3.0, 6.2} << QList<double>{1, 0};
    QTest::newRow("forwards, of two")
        << QList<double>{3.0, 6.2} << 1 << 0.1 << QList<double>{0.1, 3.0} << QList<double>{1, 0};
    QTest::newRow("backwards, of three") << QList<double>{0.1, 2.0, 4.0} << 0 << 6.2
                                         << QList<double>{2.0, 4.0, 6.2} << QList<double>{1, 2, 0};
    QTest::newRow("forwards, of three") << QList<double>{2.0, 4.0, 6.2} << 2 << 0.1
                                        << QList<double>{0.1, 2.0, 4.0} << QList<double>{2, 0, 1};
}

void RegionsLinkTest::takesItsParamAlongAcrossZero()
{
    QFETCH(QList<double>, angles);
    QFETCH(int, moved);
    QFETCH(double, ang);
    QFETCH(QList<double>, anglesAfter);
    QFETCH(QList<double>, params);
    const QList<RegionsLink *> links = linkHubAt(angles);

    links.at(moved)->setFromAng(ang);

    QCOMPARE(hubAngles(), anglesAfter);
    QCOMPARE(paramValues(hub), params);
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2}.first(params.size())));
}

void RegionsLinkTest::staysWhereItsAngleEqualsANeighbours_data()
{
    QTest::addColumn<int>("moved");
    QTest::addColumn<double>("ang");

    QTest::newRow("up to the next") << 0 << 2.0;
    QTest::newRow("up to the last") << 1 << 3.0;
    QTest::newRow("down to the one before") << 2 << 2.0;
    QTest::newRow("down to the first") << 1 << 1.0;
}

void RegionsLinkTest::staysWhereItsAngleEqualsANeighbours()
{
    QFETCH(int, moved);
    QFETCH(double, ang);
    const QList<RegionsLink *> links = linkHubAt({1.0, 2.0, 3.0});

    links.at(moved)->setFromAng(ang);

    QCOMPARE(hub->links(), links);
    QCOMPARE(paramValues(hub), (QList<double>{0, 1, 2}));
}

void RegionsLinkTest::isSortedAnewAtBothEnds()
{
    RegionsLink *fromSide = worm->addRegionsLink(from, hub, 100.0, 2.0, 0.5);
    RegionsLink *toSide = worm->addRegionsLink(hub, to, 100.0, 2.0, 0.5);
    RegionsLink *link = worm->addRegionsLink(from, to, 100.0, 1.0, 0.5);
    QCOMPARE(from->links(), (QList<RegionsLink *>{link, fromSide}));
    QCOMPARE(to->links(), (QList<RegionsLink *>{link, toSide}));

    link->setFromAng(3.0);
    QCOMPARE(from->links(), (QList<RegionsLink *>{fromSide, link}));
    QCOMPARE(to->links(), (QList<RegionsLink *>{toSide, link}));

    link->setToAng(1.5 + pi);
    QCOMPARE(from->links(), (QList<RegionsLink *>{link, fromSide}));
    QCOMPARE(to->links(), (QList<RegionsLink *>{link, toSide}));
}

void RegionsLinkTest::neverChangesTheNumberOfParams()
{
    const QList<RegionsLink *> links = linkHubAt({1.0, 2.0, 3.0, 4.0});
    const QList<RegionParam *> params = hub->params();

    for (const double ang : {6.2, 0.1, 2.5, -1.0, 7.0})
        links.at(1)->setFromAng(ang);

    QCOMPARE(hub->params().size(), params.size());
    for (RegionParam *param : params)
        QVERIFY(hub->params().contains(param));
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2, 3}));
    QCOMPARE(queued<RegionParam>(hub).size(), 2); // from the first two links
}

void RegionsLinkTest::survivesAnglesThatAreNone_data()
{
    QTest::addColumn<double>("ang");

    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    QTest::newRow("infinite backwards") << -std::numeric_limits<double>::infinity();
}

void RegionsLinkTest::survivesAnglesThatAreNone()
{
    QFETCH(double, ang);
    const QList<RegionsLink *> links = linkHubAt({1.0, 2.0, 3.0});

    for (RegionsLink *link : links)
        link->setAng(ang, hub);
    for (RegionsLink *link : links)
        link->setAng(ang, link->to());
    QCOMPARE(hub->params().size(), 3);

    // Back to sound angles, the list is sound too.
    for (int i = 0; i < 3; ++i)
        links.at(i)->setFromAng(3.0 - i);
    for (int i = 0; i < 3; ++i)
        links.at(i)->setFromAng(1.0 + i);
    QCOMPARE(hubAngles(), (QList<double>{1.0, 2.0, 3.0}));
    QCOMPARE(paramIndices(hub), (QList<int>{0, 1, 2}));
}

void RegionsLinkTest::mayJoinTwoRegionsThatAreLinkedAlready()
{
    const RegionsLink *first = worm->addRegionsLink(from, to, 100.0, 1.0, 0.5);
    const RegionsLink *second = worm->addRegionsLink(to, from, 100.0, 5.0, 0.5);

    QCOMPARE(worm->links().size(), 2);
    QCOMPARE(from->isLinked(to), first);
    QCOMPARE(second->ang(from), 5.0 - pi);
    QCOMPARE(from->params().size(), 2);
    QCOMPARE(to->params().size(), 2);
}

void RegionsLinkTest::isEqualByItsThreeNumbersExactly()
{
    const RegionsLink *link = worm->addRegionsLink(from, to, 100.0, 1.0, 0.5);
    RegionsLink *other = worm->addRegionsLink(from, to, 100.0, 1.0, 0.5);
    QVERIFY(*link == *other);

    other->setTotalDist(std::nextafter(100.0, 0.0));
    QVERIFY(!(*link == *other));
    other->setTotalDist(100.0);

    other->setFromRatio(std::nextafter(0.5, 0.0));
    QVERIFY(!(*link == *other));
    other->setFromRatio(0.5);

    other->setFromAng(std::nextafter(1.0, 0.0));
    QVERIFY(!(*link == *other));
    other->setFromAng(1.0);
    QVERIFY(*link == *other);
}

void RegionsLinkTest::isEqualWhateverItsRegions()
{
    QVERIFY(*worm->addRegionsLink(from, to, 100.0, 1.0, 0.5) ==
            *worm->addRegionsLink(to, hub, 100.0, 1.0, 0.5));
}

void RegionsLinkTest::copiesItsNumbersUnchanged()
{
    RegionsLink *link = worm->addRegionsLink(from, hub, 100.0, 1.0, 0.25);
    link->setFromAng(-0.5 * pi);
    Region *copyOfFrom = worm->addRegion(headType());

    const RegionsLink copy(*link, worm.get(), copyOfFrom, to, true);
    QVERIFY(copy == *link);
    QCOMPARE(copy.from(), copyOfFrom);
    QCOMPARE(copy.to(), to);
    for (const Region *region : {copyOfFrom, to}) {
        QCOMPARE(region->links().size(), 1);
        QCOMPARE(region->links().first(), &copy);
        QCOMPARE(region->params().size(), 4);
    }
}

void RegionsLinkTest::leavesBothRegionsWhenRemoved()
{
    RegionsLink *link = worm->addRegionsLink(from, to, 100.0, 1.0, 0.5);

    link->removeFromMorphology();
    link->removeFromMorphology();

    QVERIFY(worm->links().isEmpty());
    QVERIFY(from->links().isEmpty());
    QVERIFY(to->links().isEmpty());
    QCOMPARE(link->from(), from);
    QCOMPARE(link->to(), to);
    QCOMPARE(queued<RegionsLink>(worm.get()), QList<const RegionsLink *>{link});
}

QTEST_GUILESS_MAIN(RegionsLinkTest)
#include "RegionsLinkTest.moc"
