#include "morphology/MorphologyItem.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionsLink.h"
#include "support/DrawnWorm.h"
#include "support/PathDifference.h"

#include <QGraphicsScene>
#include <QImage>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <numbers>

namespace Planaria {

namespace {

constexpr double pi = std::numbers::pi;

struct RegionNumbers
{
    int type;
    QList<double> params;
};

struct LinkNumbers
{
    int from;
    int to;
    double dist;
    double ang;
    double ratio;
};

std::unique_ptr<Morphology> makeWorm(const QList<RegionNumbers> &regions,
                                     const QList<LinkNumbers> &links = {})
{
    auto worm = std::make_unique<Morphology>();
    for (const RegionNumbers &region : regions)
        worm->addRegion(ExperimentFactory::instance(nullptr)->regionType(region.type));
    for (const LinkNumbers &link : links) {
        worm->addRegionsLink(worm->regions().at(link.from), worm->regions().at(link.to), link.dist,
                             link.ang, link.ratio);
    }
    for (int i = 0; i < regions.size(); ++i)
        worm->regions().at(i)->setParams(regions[i].params);
    return worm;
}

std::unique_ptr<Morphology> wildType()
{
    return ExperimentFactory::instance(nullptr)->createWildMorphology();
}

/// A head at the left, a trunk and a tail at the right, with shares of unequal size.
std::unique_ptr<Morphology> lyingWorm()
{
    return makeWorm({{1, {60.0, 80.0, 40.0}}, {2, {70.0, 90.0}}, {3, {50.0, 75.0, 45.0}}},
                    {{0, 1, 200.0, 0.0, 0.3}, {2, 1, 150.0, pi, 0.6}});
}

/// A trunk that three neighbours surround.
std::unique_ptr<Morphology> branchedWorm()
{
    return makeWorm({{2, {70.0, 45.0, 60.0}},
                     {1, {50.0, 75.0, 50.0}},
                     {1, {55.0, 70.0, 45.0}},
                     {3, {50.0, 90.0, 50.0}}},
                    {{0, 1, 200.0, 0.9, 0.5}, {2, 0, 190.0, 5.5, 0.55}, {0, 3, 220.0, 4.7, 0.4}});
}

bool near(const QPointF &a, const QPointF &b, double tolerance = 1e-9)
{
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance;
}

const QRadialGradient *gradientOf(const QGraphicsPathItem *item)
{
    return static_cast<const QRadialGradient *>(item->brush().gradient());
}

/// The four points of the curve along which @p region meets the other region of its link number
/// @p link, in the coordinates of the worm.
QList<QPointF> border(const MorphologyItem &item, const Morphology &worm, int region, int link)
{
    const QGraphicsPathItem *regionItem = regionItems(item).at(region);
    // A region of one link has two curves more before those of its link, of which each is a curve
    // to the border, the border, and a curve back.
    const bool end = worm.regions().at(region)->links().size() == 1;
    const int first = (end ? 6 : 0) + 9 * link + 3;
    QList<QPointF> points;
    for (int i = first; i < first + 4; ++i)
        points += regionItem->pos() + QPointF(regionItem->path().elementAt(i));
    return points;
}

/// Whether the two regions of link number @p link of @p worm are drawn along one curve.
bool bordersMeet(const MorphologyItem &item, const Morphology &worm, int link)
{
    RegionsLink *shared = worm.links().at(link);
    const auto borderOf = [&](Region *region) {
        return border(item, worm, static_cast<int>(worm.regions().indexOf(region)),
                      static_cast<int>(region->links().indexOf(shared)));
    };
    const QList<QPointF> one = borderOf(shared->from());
    const QList<QPointF> other = borderOf(shared->to());
    return std::equal(one.cbegin(), one.cend(), other.crbegin(), other.crend(),
                      [](const QPointF &a, const QPointF &b) { return near(a, b); });
}

/// @p path cut before each of its starts.
QList<QPainterPath> subpaths(const QPainterPath &path)
{
    QList<QPainterPath> parts;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo())
            parts.append(QPainterPath(element));
        else if (element.isLineTo())
            parts.last().lineTo(element);
        else if (element.isCurveTo())
            parts.last().cubicTo(element, path.elementAt(i + 1), path.elementAt(i + 2));
    }
    return parts;
}

/// Whether the outline of the worm is all of its regions' outlines, in any order.
bool outlineIsSumOfRegions(const MorphologyItem &item)
{
    QList<QPainterPath> parts = subpaths(item.path());
    for (const QGraphicsPathItem *region : regionItems(item)) {
        const QPainterPath expected = region->path().translated(region->pos());
        const auto found = std::find_if(parts.cbegin(), parts.cend(), [&](const auto &part) {
            return pathDifference(part, expected).isEmpty();
        });
        if (found == parts.cend())
            return false;
        parts.erase(found);
    }
    return parts.isEmpty();
}

} // namespace

class MorphologyItemTest final : public QObject
{
    Q_OBJECT

private slots:
    void drawsNothingOfAWormWithoutRegions();
    void drawsALoneRegionOfEqualExtentsAsACircle();
    void drawsALoneRegionOfUnequalExtentsOffItsCentre();
    void roundsTheFarEndOfARegionWithOneLink();
    void closesTheOutlineOfARegionWithSeveralLinks();
    void ratioOfZeroPutsTheBorderThroughTheCentre();
    void pointOnTheBorderLeavesItsCurveWithoutAHandle();
    void neighboursShareOneBorder();
    void triangleThatDoesNotCloseIsDrawnAsItIs();

    void setsPiecesSideBySide();
    void placesNeighboursByTheWholeLengthOfTheirLink();
    void firstRouteDecidesWhereARegionStands();
    void standsWithTheMeanOfItsCentresAtItsOrigin();
    void centresItsExtentAsIfRegionsLayEvenlyAroundTheirCentres();

    void shadesByType_data();
    void shadesByType();
    void lightFallsOnTheBorderOfAnEndAndTheCentreOfAMiddle();
    void shadeReachesBeyondTheLongestNumber();
    void plainStyleIsFlatAndWithoutPens();

    void stacksAndClips();
    void outlineIsTheSumOfTheRegions();
    void shapeContainsThePen();
    void boundingRectLeavesOrgansOut();
    void needsItsMorphologyNoMore();
    void pixelsShowTheRegions();
    void pixelsFadeTowardsTheEndOfAHead();

    void drawsAnyWormSoundly();
};

// --- Outline ---

void MorphologyItemTest::drawsNothingOfAWormWithoutRegions()
{
    MorphologyItem item(Morphology(), nullptr, false);
    QVERIFY(item.path().isEmpty());
    QCOMPARE(item.boundingRect(), QRectF());
    QVERIFY(item.childItems().isEmpty());
    item.centerAtZero();
    QVERIFY(item.path().isEmpty());
    QCOMPARE(item.pos(), QPointF());
}

void MorphologyItemTest::drawsALoneRegionOfEqualExtentsAsACircle()
{
    const auto worm = makeWorm({{1, {60.0, 60.0, 60.0, 60.0}}});
    const MorphologyItem item(*worm, nullptr, false);
    const QGraphicsPathItem *head = regionItems(item).constFirst();
    QPainterPath circle;
    circle.addEllipse(QPointF(), 60.0, 60.0);
    QCOMPARE(pathDifference(head->path(), circle), QString());
    QCOMPARE(pathDifference(item.path(), circle), QString());
    QCOMPARE(head->pos(), QPointF());
    QCOMPARE(gradientOf(head)->center(), QPointF());
    QCOMPARE(gradientOf(head)->radius(), 90.0);
    QCOMPARE(gradientOf(head)->stops().constFirst(), QGradientStop(0.0, Qt::red));
}

void MorphologyItemTest::drawsALoneRegionOfUnequalExtentsOffItsCentre()
{
    const auto worm = makeWorm({{3, {10.0, 20.0, 30.0, 40.0}}});
    const MorphologyItem item(*worm, nullptr, false);
    QPainterPath ellipse;
    ellipse.addEllipse(QRectF(QPointF(-30.0, -40.0), QPointF(10.0, 20.0)));
    QCOMPARE(pathDifference(regionItems(item).constFirst()->path(), ellipse), QString());
}

void MorphologyItemTest::roundsTheFarEndOfARegionWithOneLink()
{
    const auto worm = lyingWorm();
    const MorphologyItem item(*worm, nullptr, false);
    QPainterPath expected(QPointF(0.0, 60.0));
    expected.quadTo(QPointF(-80.0, 60.0), QPointF(-80.0, 0.0));
    expected.quadTo(QPointF(-80.0, -40.0), QPointF(0.0, -40.0));
    // The border lies at 60 of 200, where the flanks of 40 and 90 and those of 60 and 70 meet.
    const QPointF below(60.0, -55.0);
    const QPointF above(60.0, 63.0);
    const QPointF alongBelow = QPointF(-60.0, 15.0) / std::hypot(60.0, 15.0);
    const QPointF alongAbove = QPointF(-60.0, -3.0) / std::hypot(60.0, 3.0);
    expected.cubicTo(QPointF(15.0, -40.0), below + 15.0 * alongBelow, below);
    expected.quadTo(QPointF(60.0, 0.0), above);
    expected.cubicTo(above + 15.0 * alongAbove, QPointF(15.0, 60.0), QPointF(0.0, 60.0));
    QCOMPARE(pathDifference(regionItems(item).constFirst()->path(), expected), QString());
}

void MorphologyItemTest::closesTheOutlineOfARegionWithSeveralLinks()
{
    const auto worm = branchedWorm();
    const MorphologyItem item(*worm, nullptr, false);
    const QPainterPath path = regionItems(item).constFirst()->path();
    QCOMPARE(path.elementCount(), 1 + 3 * 9);
    QVERIFY(near(path.elementAt(0), path.currentPosition()));
    // The curves of one link end where those of the next begin: on the bisector, at the param.
    const QList<RegionsLink *> links = worm->regions().constFirst()->links();
    for (int i = 0; i < 3; ++i) {
        const QPointF joint = path.elementAt(9 * (i + 1));
        const double before = links.at(i)->ang(worm->regions().constFirst());
        double behind = links.at((i + 1) % 3)->ang(worm->regions().constFirst());
        if (behind < before)
            behind += 2.0 * pi;
        const double bisector = 0.5 * (before + behind);
        const double radius = QList<double>{70.0, 45.0, 60.0}.at(i);
        QVERIFY(near(joint, radius * QPointF(std::cos(bisector), std::sin(bisector))));
    }
}

void MorphologyItemTest::ratioOfZeroPutsTheBorderThroughTheCentre()
{
    const auto worm =
        makeWorm({{1, {50.0, 60.0, 40.0}}, {3, {30.0, 70.0, 35.0}}}, {{0, 1, 150.0, 0.0, 0.0}});
    const MorphologyItem item(*worm, nullptr, false);
    const QGraphicsPathItem *head = regionItems(item).constFirst();
    QPainterPath expected(QPointF(0.0, 50.0));
    expected.quadTo(QPointF(-60.0, 50.0), QPointF(-60.0, 0.0));
    expected.quadTo(QPointF(-60.0, -40.0), QPointF(0.0, -40.0));
    expected.quadTo(QPointF(0.0, 0.0), QPointF(0.0, 50.0)); // no way to the waist, none back
    QCOMPARE(pathDifference(withoutEmptySegments(head->path()), expected), QString());
    QCOMPARE(gradientOf(head)->center(), QPointF());
    QVERIFY(isFinite(regionItems(item).at(1)->path()));
}

void MorphologyItemTest::pointOnTheBorderLeavesItsCurveWithoutAHandle()
{
    // The flank point of the head and the end of the border lie 200 times the ratio apart.
    constexpr int handle = 8;
    constexpr int waist = 9;
    for (const double ratio : {4.9e-7, 5.1e-7}) {
        const auto worm = makeWorm({{1, {50.0, 60.0, 50.0}}, {3, {50.0, 70.0, 50.0}}},
                                   {{0, 1, 200.0, 0.0, ratio}});
        const MorphologyItem item(*worm, nullptr, false);
        const QPainterPath path = regionItems(item).constFirst()->path();
        const double length = path.elementAt(waist).x - path.elementAt(handle).x;
        const double expected = ratio < 5e-7 ? 0.0 : 0.25 * 200.0 * ratio;
        QVERIFY2(std::abs(length - expected) < 1e-12, qPrintable(QString::number(length)));
    }
}

void MorphologyItemTest::neighboursShareOneBorder()
{
    for (const auto &worm : {wildType(), lyingWorm(), branchedWorm()}) {
        const MorphologyItem item(*worm, nullptr, false);
        for (int link = 0; link < worm->links().size(); ++link)
            QVERIFY(bordersMeet(item, *worm, link));
    }
}

void MorphologyItemTest::triangleThatDoesNotCloseIsDrawnAsItIs()
{
    const auto worm =
        makeWorm({{2, {45.0, 60.0}}, {2, {50.0, 65.0}}, {3, {40.0, 70.0}}},
                 {{0, 1, 200.0, 0.2, 0.5}, {1, 2, 180.0, 4.0, 0.5}, {2, 0, 150.0, 1.8, 0.3}});
    const MorphologyItem item(*worm, nullptr, false);
    QCOMPARE(regionItems(item).size(), 3);
    QVERIFY(bordersMeet(item, *worm, 0));
    QVERIFY(bordersMeet(item, *worm, 1));
    QVERIFY(!bordersMeet(item, *worm, 2));
    // The border of the last link lies where its numbers tell as seen from either region: the tip
    // of the curve is its control point.
    const auto tip = [&](int region, int link) {
        const QList<QPointF> curve = border(item, *worm, region, link);
        return 1.5 * curve[1] - 0.5 * curve[0] - positions(regionItems(item)).at(region);
    };
    QVERIFY(near(tip(2, 1), 45.0 * QPointF(std::cos(1.8), std::sin(1.8))) ||
            near(tip(2, 0), 45.0 * QPointF(std::cos(1.8), std::sin(1.8))));
    QVERIFY(near(tip(0, 1), -105.0 * QPointF(std::cos(1.8), std::sin(1.8))));
}

// --- Layout ---

void MorphologyItemTest::setsPiecesSideBySide()
{
    const auto worm = makeWorm({{1, {60.0, 60.0, 60.0, 60.0}},
                                {3, {30.0, 50.0, 20.0, 10.0}},
                                {2, {40.0, 40.0, 40.0, 40.0}}});
    const MorphologyItem item(*worm, nullptr, false);
    const QList<QPointF> centres = positions(regionItems(item));
    // 25 between the rectangles, which contain the pen; all level with the first.
    QVERIFY(near(centres[1] - centres[0], {60.5 + 25.0 + 20.5, -20.0}));
    QVERIFY(near(centres[2] - centres[1], {30.5 + 25.0 + 40.5, 20.0}));
}

void MorphologyItemTest::placesNeighboursByTheWholeLengthOfTheirLink()
{
    const auto worm = lyingWorm();
    const MorphologyItem item(*worm, nullptr, false);
    const QList<QPointF> centres = positions(regionItems(item));
    QVERIFY(near(centres[1] - centres[0], {200.0, 0.0}));
    QVERIFY(near(centres[2] - centres[1], {150.0, 0.0}));
}

void MorphologyItemTest::firstRouteDecidesWhereARegionStands()
{
    // The younger link of the first region comes first by its angle, and leads on to the third.
    const auto worm =
        makeWorm({{2, {50.0, 50.0}}, {2, {50.0, 50.0}}, {2, {50.0, 50.0}}},
                 {{0, 2, 500.0, 1.0, 0.5}, {0, 1, 100.0, 0.0, 0.5}, {1, 2, 100.0, 0.5 * pi, 0.5}});
    const MorphologyItem item(*worm, nullptr, false);
    const QList<QPointF> centres = positions(regionItems(item));
    QVERIFY(near(centres[1] - centres[0], {100.0, 0.0}));
    QVERIFY(near(centres[2] - centres[0], {100.0, 100.0}));
}

void MorphologyItemTest::standsWithTheMeanOfItsCentresAtItsOrigin()
{
    const auto worm = lyingWorm(); // centres at 0, 200 and 350
    const MorphologyItem item(*worm, nullptr, false);
    const QList<QPointF> centres = positions(regionItems(item));
    QVERIFY(near(centres[0], {-550.0 / 3.0, 0.0}));
    QVERIFY(near(centres[0] + centres[1] + centres[2], {}));
    QCOMPARE(item.pos(), QPointF());
}

void MorphologyItemTest::centresItsExtentAsIfRegionsLayEvenlyAroundTheirCentres()
{
    // Rectangles of 121 and 61 at -58 and 58, between -118.5 and 88.5.
    const auto circles = makeWorm({{1, {60.0, 60.0, 60.0, 60.0}}, {3, {30.0, 30.0, 30.0, 30.0}}});
    MorphologyItem item(*circles, nullptr, false);
    QVERIFY(near(positions(regionItems(item))[0], {-58.0, 0.0}));
    item.centerAtZero();
    QVERIFY(near(positions(regionItems(item))[0], {-43.0, 0.0}));
    QVERIFY(near(positions(regionItems(item))[1], {73.0, 0.0}));
    QVERIFY(outlineIsSumOfRegions(item));
    QVERIFY(near(item.boundingRect().center(), {}));

    const auto lopsided = makeWorm({{1, {100.0, 10.0, 10.0, 10.0}}});
    MorphologyItem other(*lopsided, nullptr, false);
    other.centerAtZero();
    QCOMPARE(regionItems(other).constFirst()->pos(), QPointF());
    QVERIFY(near(other.boundingRect().center(), {45.0, 0.0}));
}

// --- Shading ---

void MorphologyItemTest::shadesByType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QColor>("strong");
    QTest::addColumn<QColor>("pale");
    QTest::newRow("head") << 1 << QColor(Qt::red) << QColor(255, 200, 200);
    QTest::newRow("trunk") << 2 << QColor(Qt::gray) << QColor(200, 200, 200);
    QTest::newRow("tail") << 3 << QColor(Qt::blue) << QColor(200, 200, 255);
    QTest::newRow("unknown") << 4 << QColor(Qt::yellow) << QColor(Qt::yellow);
    QTest::newRow("below all") << 0 << QColor(Qt::yellow) << QColor(Qt::yellow);
}

void MorphologyItemTest::shadesByType()
{
    QFETCH(const int, type);
    QFETCH(const QColor, strong);
    QFETCH(const QColor, pale);
    const auto worm = makeWorm({{type, {60.0, 60.0, 60.0, 60.0}}});

    const MorphologyItem item(*worm, nullptr, false);
    const QBrush brush = regionItems(item).constFirst()->brush();
    QCOMPARE(brush.style(), Qt::RadialGradientPattern);
    QCOMPARE(brush.gradient()->stops(), QGradientStops({{0.0, strong}, {1.0, pale}}));

    const MorphologyItem plain(*worm, nullptr, true);
    QCOMPARE(regionItems(plain).constFirst()->brush(), QBrush(strong));
}

void MorphologyItemTest::lightFallsOnTheBorderOfAnEndAndTheCentreOfAMiddle()
{
    const auto worm = lyingWorm();
    const MorphologyItem item(*worm, nullptr, false);
    const QList<QPointF> expected{{0.3 * 200.0, 0.0}, {}, {-0.6 * 150.0, 0.0}};
    for (int i = 0; i < expected.size(); ++i) {
        const QRadialGradient *gradient = gradientOf(regionItems(item).at(i));
        QVERIFY(near(gradient->center(), expected[i]));
        QVERIFY(near(gradient->focalPoint(), expected[i]));
    }
}

void MorphologyItemTest::shadeReachesBeyondTheLongestNumber()
{
    const auto lying = lyingWorm();
    const MorphologyItem item(*lying, nullptr, false);
    QCOMPARE(gradientOf(regionItems(item).at(0))->radius(), 1.5 * 80.0);  // a param
    QCOMPARE(gradientOf(regionItems(item).at(1))->radius(), 2.0 * 140.0); // a share of a link
    QCOMPARE(gradientOf(regionItems(item).at(2))->radius(), 1.5 * 90.0);

    const auto lone = makeWorm({{1, {10.0, 20.0, 40.0, 30.0}}});
    const MorphologyItem loneItem(*lone, nullptr, false);
    QCOMPARE(gradientOf(regionItems(loneItem).constFirst())->radius(), 1.5 * 40.0);
}

void MorphologyItemTest::plainStyleIsFlatAndWithoutPens()
{
    const auto worm = wildType();
    const MorphologyItem item(*worm, nullptr, true);
    QCOMPARE(item.pen(), QPen(Qt::NoPen));
    QCOMPARE(item.brush(), QBrush(Qt::NoBrush));
    const QList<QColor> strong{Qt::red, Qt::gray, Qt::blue};
    for (int i = 0; i < strong.size(); ++i) {
        QCOMPARE(regionItems(item).at(i)->pen(), QPen(Qt::NoPen));
        QCOMPARE(regionItems(item).at(i)->brush(), QBrush(strong[i]));
    }
    QCOMPARE(pathDifference(item.shape(), item.path()), QString());

    const MorphologyItem normal(*worm, nullptr, false);
    QCOMPARE(pathDifference(regionItems(item).at(1)->path(), regionItems(normal).at(1)->path()),
             QString());
}

// --- The whole ---

void MorphologyItemTest::stacksAndClips()
{
    QGraphicsPathItem parent;
    const auto worm = wildType();
    const auto *item = new MorphologyItem(*worm, &parent, false);
    QCOMPARE(item->parentItem(), &parent);
    QCOMPARE(item->flags(), QGraphicsItem::ItemClipsChildrenToShape);
    QCOMPARE(item->brush(), QBrush(Qt::NoBrush));
    QCOMPARE(item->pen(), QPen());

    const QList<QGraphicsPathItem *> regions = regionItems(*item);
    QCOMPARE(regions.size(), 3);
    for (const QGraphicsPathItem *region : regions) {
        QCOMPARE(region->flags(), QGraphicsItem::ItemClipsChildrenToShape);
        QCOMPARE(region->zValue(), -5.0);
        QCOMPARE(region->pen(), QPen(Qt::black, 1.0));
    }
    QCOMPARE(cordItems(*item).size(), 2);
    QCOMPARE(item->childItems().size(), 5);
}

void MorphologyItemTest::outlineIsTheSumOfTheRegions()
{
    for (const auto &worm : {wildType(), lyingWorm(), branchedWorm()}) {
        const MorphologyItem item(*worm, nullptr, false);
        QVERIFY(outlineIsSumOfRegions(item));
    }
}

void MorphologyItemTest::shapeContainsThePen()
{
    const auto worm = makeWorm({{1, {60.0, 60.0, 60.0, 60.0}}});
    const MorphologyItem item(*worm, nullptr, false);
    QCOMPARE(item.boundingRect(), QRectF(-60.5, -60.5, 121.0, 121.0));
    QVERIFY(!item.path().contains(QPointF(60.4, 0.0)));
    QVERIFY(item.shape().contains(QPointF(60.4, 0.0)));
    QVERIFY(!item.shape().contains(QPointF(60.6, 0.0)));

    const MorphologyItem plain(*worm, nullptr, true);
    QCOMPARE(plain.boundingRect(), QRectF(-60.0, -60.0, 120.0, 120.0));
    QVERIFY(!plain.shape().contains(QPointF(60.4, 0.0)));
}

void MorphologyItemTest::boundingRectLeavesOrgansOut()
{
    const auto worm = wildType();
    const QRectF bounds = MorphologyItem(*worm, nullptr, false).boundingRect();
    QRectF regions;
    const MorphologyItem item(*worm, nullptr, false);
    for (const QGraphicsPathItem *region : regionItems(item))
        regions |= region->boundingRect().translated(region->pos());
    QCOMPARE(bounds, regions);

    Region *head = worm->regions().constFirst();
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    head->addSpotOrgan(factory->spotOrganType(1), {500.0, 500.0}, 0.0);
    head->addLineOrgan(factory->lineOrganType(1), {}, {900.0, 0.0}, {-900.0, 0.0});
    QCOMPARE(MorphologyItem(*worm, nullptr, false).boundingRect(), bounds);
}

void MorphologyItemTest::needsItsMorphologyNoMore()
{
    auto worm = wildType();
    QGraphicsScene scene;
    auto *item = new MorphologyItem(*worm, nullptr, false);
    scene.addItem(item);
    worm.reset();
    QCOMPARE(tintAt(&scene, {0.0, 0.0}), "grey");
    item->centerAtZero();
    QVERIFY(outlineIsSumOfRegions(*item));
}

void MorphologyItemTest::pixelsShowTheRegions()
{
    const auto worm = wildType();
    for (const bool plain : {false, true}) {
        QGraphicsScene scene;
        scene.addItem(new MorphologyItem(*worm, nullptr, plain));
        QCOMPARE(tintAt(&scene, {0.0, 260.0}), "red");
        QCOMPARE(tintAt(&scene, {0.0, 0.0}), plain ? "yellow" : "grey"); // a pharynx
        QCOMPARE(tintAt(&scene, {0.0, 60.0}), "grey");
        QCOMPARE(tintAt(&scene, {0.0, -260.0}), "blue");
        QCOMPARE(tintAt(&scene, {80.0, 0.0}), "white");
        QCOMPARE(tintAt(&scene, {0.0, 290.0}), "white");
    }
}

void MorphologyItemTest::pixelsFadeTowardsTheEndOfAHead()
{
    const auto worm = lyingWorm();
    QGraphicsScene scene;
    auto *item = new MorphologyItem(*worm, nullptr, false);
    scene.addItem(item);
    const QPointF head = regionItems(*item).constFirst()->pos();
    const QImage image = rendered(&scene, QRectF(head + QPointF(-80.0, -2.0), QSizeF(140.0, 4.0)));
    const auto greenAt = [&](int x) { return image.pixelColor(x, 1).green(); };
    QVERIFY(greenAt(5) > greenAt(70) + 50);
    QVERIFY(greenAt(70) > greenAt(130) + 50);
}

// --- Any worm ---

namespace {

std::unique_ptr<Morphology> randomWorm(quint32 seed)
{
    QRandomGenerator random(seed);
    const auto between = [&](double low, double high) {
        return low + random.generateDouble() * (high - low);
    };
    const auto place = [&] { return QPointF(between(-90.0, 90.0), between(-90.0, 90.0)); };

    auto worm = std::make_unique<Morphology>();
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    const int count = random.bounded(1, 13);
    for (int i = 0; i < count; ++i)
        worm->addRegion(factory->regionType(random.bounded(1, 5)));
    for (int i = random.bounded(0, 2 * count); i > 0; --i) {
        Region *from = worm->regions().at(random.bounded(count));
        Region *to = worm->regions().at(random.bounded(count));
        if (from != to)
            worm->addRegionsLink(from, to, between(0.0, 300.0), between(-10.0, 10.0),
                                 between(0.0, 1.0));
    }
    for (Region *region : worm->regions()) {
        for (int i = 0; i < region->params().size(); ++i)
            region->setParam(i, between(1.0, 120.0));
        for (int i = random.bounded(4); i > 0; --i)
            region->addSpotOrgan(factory->spotOrganType(random.bounded(1, 5)), place(),
                                 between(-10.0, 10.0));
        for (int i = random.bounded(2); i > 0; --i)
            region->addLineOrgan(factory->lineOrganType(1), place(), place(), place());
    }
    return worm;
}

using Centres = QHash<Region *, QPointF>;

/// Where @p region and what hangs on it stand as seen from the first region of their piece.
void walk(Region *region, const QPointF &centre, Centres *centres)
{
    centres->insert(region, centre);
    for (RegionsLink *link : region->links()) {
        Region *other = link->otherRegion(region);
        const double ang = link->ang(region);
        if (!centres->contains(other))
            walk(other, centre + link->totalDist() * QPointF(std::cos(ang), std::sin(ang)),
                 centres);
    }
}

/// The pieces of @p worm in the order of their first regions.
QList<Centres> pieces(const Morphology &worm)
{
    QList<Centres> all;
    Centres seen;
    for (Region *region : worm.regions()) {
        if (seen.contains(region))
            continue;
        Centres piece;
        walk(region, {}, &piece);
        seen.insert(piece);
        all += piece;
    }
    return all;
}

/// The first thing that is wrong with the layout of @p item; empty where nothing is.
QString layoutFault(const MorphologyItem &item, const Morphology &worm)
{
    constexpr double tolerance = 1e-7;
    const QList<QGraphicsPathItem *> items = regionItems(item);
    QPointF sum;
    for (const QPointF &centre : positions(items))
        sum += centre;
    if (!near(sum / static_cast<double>(items.size()), {}, tolerance))
        return "the mean is not at the origin";

    QRectF all;
    QRectF last;
    const QList<Centres> allPieces = pieces(worm);
    for (const Centres &piece : allPieces) {
        QRectF extent;
        std::optional<QPointF> first;
        for (int i = 0; i < items.size(); ++i) {
            Region *region = worm.regions().at(i);
            if (!piece.contains(region))
                continue;
            if (!first)
                first = items[i]->pos();
            if (!near(items[i]->pos() - *first, piece.value(region), tolerance))
                return QStringLiteral("region %1 is out of place").arg(i);
            extent |= items[i]->boundingRect().translated(items[i]->pos());
        }
        if (!last.isNull() &&
            !near({extent.left() - last.right(), extent.center().y() - last.center().y()},
                  {25.0, 0.0}, tolerance))
            return "a piece does not stand 25 beside the last one and level with it";
        last = extent;
        all |= extent;
    }
    return all == item.boundingRect() ? QString() : "the extent is not that of the regions";
}

QString centringFault(const MorphologyItem &item)
{
    QRectF extent;
    for (const QGraphicsPathItem *region : regionItems(item)) {
        QRectF rect = region->boundingRect();
        rect.moveCenter(region->pos());
        extent |= rect;
    }
    return near(extent.center(), {}, 1e-7) ? QString() : "the extent is not centred";
}

QString outlineFault(const MorphologyItem &item)
{
    if (!isFinite(&item))
        return "not all is finite";
    for (const QGraphicsPathItem *region : regionItems(item)) {
        const QPainterPath path = region->path();
        if (!near(path.elementAt(0), path.currentPosition(), 1e-7))
            return "an outline is not closed";
    }
    return outlineIsSumOfRegions(item) ? QString() : "the outline is not the sum of the regions";
}

} // namespace

void MorphologyItemTest::drawsAnyWormSoundly()
{
    for (quint32 seed = 0; seed < 500; ++seed) {
        const auto worm = randomWorm(seed);
        MorphologyItem item(*worm, nullptr, false);
        QString fault = layoutFault(item, *worm) + outlineFault(item);
        item.centerAtZero();
        fault += centringFault(item) + outlineFault(item);
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
    }
}

} // namespace Planaria

QTEST_MAIN(Planaria::MorphologyItemTest)
#include "MorphologyItemTest.moc"
