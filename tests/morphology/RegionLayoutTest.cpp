#include "morphology/RegionLayout.h"

#include "model/Morphology.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"

#include <QHash>
#include <QTest>

#include <limits>
#include <numbers>

using namespace Planaria;

namespace {

constexpr double pi = std::numbers::pi;

QRectF squareOf40(const Region * /*region*/)
{
    return {-20.0, -20.0, 40.0, 40.0};
}

/// Where each region stands, rounded to a millionth, in the order of the morphology.
QList<QPointF> places(const Morphology &worm,
                      const std::function<QRectF(const Region *)> &extent = squareOf40)
{
    QHash<const Region *, QPointF> placed;
    layOutRegions(worm, extent, [&placed](const Region *region, const QPointF &pos) {
        if (placed.contains(region))
            qFatal("A region is placed twice.");
        placed.insert(region, pos);
    });
    const auto rounded = [](double number) { return std::round(number * 1e6) / 1e6 + 0.0; };
    QList<QPointF> inOrder;
    for (const Region *region : worm.regions()) {
        const QPointF pos = placed.value(region, QPointF(-1e9, -1e9));
        inOrder += QPointF(rounded(pos.x()), rounded(pos.y()));
    }
    return inOrder;
}

} // namespace

class RegionLayoutTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void placesNothingInAnEmptyMorphology();
    void startsAtTheFirstRegion();
    void followsDistanceAndAngleOfTheLinks();
    void looksAlongALinkFromItsFarEnd();
    void keepsThePlaceOfTheFirstRoute();
    void centresAPieceOnTheXAxis();
    void setsPieces25ApartFromLeftToRight();
    void countsTheWholeExtentOfAPiece();
    void leavesTheFirstRegionAtZeroWhateverLiesToItsLeft();
    void placesRegionsOfDamagedLinks();
    void placesALongChain();

private:
    Region *add() { return worm->addRegion(trunkType()); }

    std::unique_ptr<Morphology> worm;
};

void RegionLayoutTest::init()
{
    worm = std::make_unique<Morphology>();
}

void RegionLayoutTest::placesNothingInAnEmptyMorphology()
{
    QCOMPARE(places(*worm), QList<QPointF>());
}

void RegionLayoutTest::startsAtTheFirstRegion()
{
    add();
    QCOMPARE(places(*worm), QList<QPointF>({{0.0, 0.0}}));
}

void RegionLayoutTest::followsDistanceAndAngleOfTheLinks()
{
    Region *first = add();
    Region *second = add();
    Region *third = add();
    first->addLink(second, 100.0, 0.0, 0.25);
    second->addLink(third, 50.0, pi, 0.75);
    QCOMPARE(places(*worm), QList<QPointF>({{0.0, 0.0}, {100.0, 0.0}, {50.0, 0.0}}));
}

void RegionLayoutTest::looksAlongALinkFromItsFarEnd()
{
    Region *first = add();
    add()->addLink(first, 100.0, 0.0, 0.25);
    QCOMPARE(places(*worm), QList<QPointF>({{0.0, 0.0}, {-100.0, 0.0}}));
}

void RegionLayoutTest::keepsThePlaceOfTheFirstRoute()
{
    Region *first = add();
    Region *second = add();
    Region *third = add();
    first->addLink(third, 300.0, pi, 0.5);
    first->addLink(second, 100.0, 0.0, 0.5);
    second->addLink(third, 70.0, 0.0, 0.5); // in another place than the link from the first
    QCOMPARE(places(*worm), QList<QPointF>({{0.0, 0.0}, {100.0, 0.0}, {170.0, 0.0}}));
}

void RegionLayoutTest::centresAPieceOnTheXAxis()
{
    Region *first = add();
    first->addLink(add(), 100.0, 1.5 * pi, 0.5);
    QCOMPARE(places(*worm), QList<QPointF>({{0.0, 50.0}, {0.0, -50.0}}));
}

void RegionLayoutTest::setsPieces25ApartFromLeftToRight()
{
    Region *first = add();
    add();
    Region *third = add();
    first->addLink(third, 100.0, 0.0, 0.5);
    add();
    // The pieces reach from -20 to 120, from 145 to 185 and from 210 on.
    QCOMPARE(places(*worm), QList<QPointF>({{0.0, 0.0}, {165.0, 0.0}, {100.0, 0.0}, {230.0, 0.0}}));
}

void RegionLayoutTest::countsTheWholeExtentOfAPiece()
{
    const Region *first = add();
    add();
    const auto extent = [first](const Region *region) {
        return region == first ? QRectF(-10.0, -30.0, 80.0, 200.0) : QRectF(-40.0, 0.0, 50.0, 10.0);
    };
    QCOMPARE(places(*worm, extent), QList<QPointF>({{0.0, -70.0}, {70.0 + 25.0 + 40.0, -5.0}}));
}

void RegionLayoutTest::leavesTheFirstRegionAtZeroWhateverLiesToItsLeft()
{
    Region *first = add();
    first->addLink(add(), 100.0, pi, 0.5);
    add();
    QCOMPARE(places(*worm), QList<QPointF>({{0.0, 0.0}, {-100.0, 0.0}, {65.0, 0.0}}));
}

void RegionLayoutTest::placesRegionsOfDamagedLinks()
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Region *first = add();
    first->addLink(add(), infinity, 0.0, 0.5);
    first->addLink(add(), 10.0, 0.0, 0.5)->setTotalDist(nan);
    first->addLink(add(), 10.0, 0.0, 0.5)->setFromAng(nan);
    for (const QPointF &place : places(*worm))
        QVERIFY(std::isfinite(place.x()) && std::isfinite(place.y()));
}

void RegionLayoutTest::placesALongChain()
{
    constexpr int length = 20000;
    Region *last = add();
    for (int i = 1; i < length; ++i) {
        Region *next = add();
        last->addLink(next, 1.0, 0.0, 0.5);
        last = next;
    }
    QCOMPARE(places(*worm).last(), QPointF(length - 1.0, 0.0));
}

QTEST_GUILESS_MAIN(RegionLayoutTest)
#include "RegionLayoutTest.moc"
