#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "morphology/MorphologyItem.h"
#include "support/DrawnWorm.h"
#include "support/PathDifference.h"

#include <QGraphicsEllipseItem>
#include <QGraphicsScene>
#include <QTest>

#include <cmath>
#include <numbers>

namespace Planaria {

namespace {

constexpr double pi = std::numbers::pi;

ExperimentFactory *factory()
{
    return ExperimentFactory::instance(nullptr);
}

/// A trunk of 100 around its centre, drawn on a scene of its own; its centre is the scene's origin.
class DrawnTrunk final
{
public:
    DrawnTrunk()
    {
        trunk = worm.addRegion(factory()->regionType(2));
        trunk->setParams({100.0, 100.0, 100.0, 100.0});
    }

    void addSpot(int type, const QPointF &pos, double rot)
    {
        trunk->addSpotOrgan(factory()->spotOrganType(type), pos, rot);
    }

    void addCord(const QPointF &pos, const QPointF &end1, const QPointF &end2, int type = 1)
    {
        trunk->addLineOrgan(factory()->lineOrganType(type), pos, end1, end2);
    }

    MorphologyItem *draw(bool plain = false)
    {
        scene.clear();
        item = new MorphologyItem(worm, nullptr, plain);
        scene.addItem(item);
        return item;
    }

    QList<QGraphicsItem *> spots() const { return regionItems(*item).constFirst()->childItems(); }
    QString tint(const QPointF &point) { return tintAt(&scene, point); }

private:
    Morphology worm;
    Region *trunk;
    QGraphicsScene scene;
    MorphologyItem *item = nullptr;
};

/// The path of a lone cord at the origin.
QPainterPath cordPath(const QPointF &end1, const QPointF &end2)
{
    DrawnTrunk worm;
    worm.addCord({}, end1, end2);
    return cordItems(*worm.draw()).constFirst()->path();
}

/// Where the curve that begins with element @p first of @p path is halfway.
QPointF halfway(const QPainterPath &path, int first)
{
    const auto at = [&](int i) { return QPointF(path.elementAt(first + i)); };
    return (at(0) + 3.0 * at(1) + 3.0 * at(2) + at(3)) / 8.0;
}

bool near(const QPointF &a, const QPointF &b)
{
    return std::abs(a.x() - b.x()) <= 1e-9 && std::abs(a.y() - b.y()) <= 1e-9;
}

} // namespace

class OrganShapesTest final : public QObject
{
    Q_OBJECT

private slots:
    void ellipsesHaveTheirSizeLayerAndColours_data();
    void ellipsesHaveTheirSizeLayerAndColours();
    void pharynxIsAnOpenTubeAroundItsCentre();
    void pharynxIsAnOutlineOrInPlainStyleAFlat();
    void pupilLooksForward_data();
    void pupilLooksForward();
    void pupilHasAPenAndTheWhiteOfTheEyeNone();
    void plainEyeHasNoPupil();
    void spotOrganStandsInItsRegionAndTurnsByDegrees();
    void spotOrgansKeepTheirOrderWithinALayer();
    void unknownTypesAreLeftOut();

    void cordHasItsLayerAndColours();
    void cordBendsThroughItsPosition();
    void straightCordIsABandOfWidthEight();
    void cordWithoutAnEndTapersToItsPosition();
    void cordOfOnePointIsDrawnSoundly();
    void cordStandsInTheWormAndDoesNotTurn();
    void recentringTakesAllOrgansAlong();

    void pixelsShowAnEyeThatLooks();
    void borderOfARegionCutsItsSpotOrgans();
    void outlineOfTheWormCutsItsCords();
};

// --- Spot organs ---

void OrganShapesTest::ellipsesHaveTheirSizeLayerAndColours_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("plain");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<double>("z");
    QTest::addColumn<QPen>("pen");
    QTest::addColumn<QBrush>("brush");

    const QRectF eye(-10.0, -20.0, 20.0, 40.0);
    const QRectF brain(-20.0, -40.0, 40.0, 80.0);
    const QPen none(Qt::NoPen);
    QTest::newRow("eye") << 1 << false << eye << 2.0 << none << QBrush(Qt::white);
    QTest::newRow("plain eye") << 1 << true << eye << 2.0 << none << QBrush(Qt::cyan);
    QTest::newRow("brain") << 2 << false << brain << 1.0 << QPen(Qt::black, 1.0)
                           << QBrush(Qt::green);
    QTest::newRow("plain brain") << 2 << true << brain << 1.0 << none << QBrush(Qt::green);
}

void OrganShapesTest::ellipsesHaveTheirSizeLayerAndColours()
{
    QFETCH(const int, type);
    QFETCH(const bool, plain);
    DrawnTrunk worm;
    worm.addSpot(type, {}, 0.0);
    worm.draw(plain);
    QCOMPARE(worm.spots().size(), 1);
    const auto *organ = qgraphicsitem_cast<QGraphicsEllipseItem *>(worm.spots().constFirst());
    QVERIFY(organ);
    QTEST(organ->rect(), "rect");
    QTEST(organ->zValue(), "z");
    QTEST(organ->pen(), "pen");
    QTEST(organ->brush(), "brush");
}

void OrganShapesTest::pharynxIsAnOpenTubeAroundItsCentre()
{
    DrawnTrunk worm;
    worm.addSpot(3, {}, 0.0);
    worm.draw();
    const auto *organ = qgraphicsitem_cast<QGraphicsPathItem *>(worm.spots().constFirst());
    QVERIFY(organ);
    // 82.5 long, since the curve of the tip goes three quarters of the way to its controls.
    QPainterPath tube(QPointF(41.25, 20.0));
    tube.lineTo(-18.75, 20.0);
    tube.cubicTo(-48.75, 20.0, -48.75, -20.0, -18.75, -20.0);
    tube.lineTo(41.25, -20.0);
    QCOMPARE(pathDifference(organ->path(), tube), QString());
    QVERIFY(near(organ->path().boundingRect().center(), {}));
}

void OrganShapesTest::pharynxIsAnOutlineOrInPlainStyleAFlat()
{
    DrawnTrunk worm;
    worm.addSpot(3, {}, 0.0);
    const auto organ = [&] {
        return qgraphicsitem_cast<QGraphicsPathItem *>(worm.spots().constFirst());
    };
    worm.draw();
    QCOMPARE(organ()->zValue(), 1.0);
    QCOMPARE(organ()->pen(), QPen(Qt::black, 1.0));
    QCOMPARE(organ()->brush(), QBrush(Qt::NoBrush));
    QCOMPARE(worm.tint({0.0, 0.0}), "grey");

    worm.draw(true);
    QCOMPARE(organ()->zValue(), 1.0);
    QCOMPARE(organ()->pen(), QPen(Qt::NoPen));
    QCOMPARE(organ()->brush(), QBrush(Qt::yellow));
    QCOMPARE(worm.tint({0.0, 0.0}), "yellow");
}

void OrganShapesTest::pupilLooksForward_data()
{
    QTest::addColumn<double>("rot");
    QTest::addColumn<QPointF>("side");
    QTest::newRow("along +x") << 0.0 << QPointF(5.0, 0.0);
    QTest::newRow("along +y") << 0.5 * pi << QPointF(0.0, 5.0);
    QTest::newRow("along -x") << pi << QPointF(-5.0, 0.0);
}

void OrganShapesTest::pupilLooksForward()
{
    QFETCH(const double, rot);
    QFETCH(const QPointF, side);
    DrawnTrunk worm;
    worm.addSpot(1, {30.0, 40.0}, rot);
    worm.draw();
    const QGraphicsItem *eye = worm.spots().constFirst();
    QVERIFY(near(eye->mapToParent(eye->childItems().constFirst()->pos()) - eye->pos(), side));
}

void OrganShapesTest::pupilHasAPenAndTheWhiteOfTheEyeNone()
{
    DrawnTrunk worm;
    worm.addSpot(1, {}, 0.0);
    worm.draw();
    const auto *eye = qgraphicsitem_cast<QGraphicsEllipseItem *>(worm.spots().constFirst());
    QCOMPARE(eye->pen(), QPen(Qt::NoPen));
    QCOMPARE(eye->childItems().size(), 1);
    const auto *pupil = qgraphicsitem_cast<QGraphicsEllipseItem *>(eye->childItems().constFirst());
    QVERIFY(pupil);
    QCOMPARE(pupil->rect(), QRectF(-5.0, -10.0, 10.0, 20.0));
    QCOMPARE(pupil->pos(), QPointF(5.0, 0.0));
    QCOMPARE(pupil->rotation(), 0.0);
    QCOMPARE(pupil->zValue(), 2.0);
    QCOMPARE(pupil->pen(), QPen());
    QCOMPARE(pupil->brush(), QBrush(Qt::black));
}

void OrganShapesTest::plainEyeHasNoPupil()
{
    DrawnTrunk worm;
    worm.addSpot(1, {}, 0.0);
    worm.draw(true);
    QVERIFY(worm.spots().constFirst()->childItems().isEmpty());
}

void OrganShapesTest::spotOrganStandsInItsRegionAndTurnsByDegrees()
{
    for (const int type : {1, 2, 3}) {
        DrawnTrunk worm;
        worm.addSpot(type, {30.0, -20.0}, 0.75 * pi);
        const MorphologyItem *item = worm.draw();
        const QGraphicsItem *organ = worm.spots().constFirst();
        QCOMPARE(organ->parentItem(), regionItems(*item).constFirst());
        QCOMPARE(organ->pos(), QPointF(30.0, -20.0));
        QCOMPARE(organ->rotation(), 135.0);
    }
}

void OrganShapesTest::spotOrgansKeepTheirOrderWithinALayer()
{
    DrawnTrunk worm;
    worm.addSpot(1, {1.0, 0.0}, 0.0);
    worm.addSpot(3, {2.0, 0.0}, 0.0);
    worm.addSpot(2, {3.0, 0.0}, 0.0);
    worm.addSpot(1, {4.0, 0.0}, 0.0);
    worm.draw();
    QList<double> stacked;
    for (const QGraphicsItem *organ : worm.spots())
        stacked += organ->x();
    QCOMPARE(stacked, QList<double>({2.0, 3.0, 1.0, 4.0}));
}

void OrganShapesTest::unknownTypesAreLeftOut()
{
    DrawnTrunk worm;
    for (const int type : {0, 4, -1, 1000})
        worm.addSpot(type, {}, 0.0);
    for (const int type : {0, 2, -1, 1000})
        worm.addCord({}, {50.0, 0.0}, {-50.0, 0.0}, type);
    const MorphologyItem *item = worm.draw();
    QVERIFY(worm.spots().isEmpty());
    QCOMPARE(item->childItems().size(), 1); // the trunk
}

// --- Cords ---

void OrganShapesTest::cordHasItsLayerAndColours()
{
    DrawnTrunk worm;
    worm.addCord({}, {50.0, 0.0}, {-50.0, 0.0});
    const QGraphicsPathItem *cord = cordItems(*worm.draw()).constFirst();
    QCOMPARE(cord->zValue(), 5.0);
    QCOMPARE(cord->pen(), QPen(Qt::black, 1.0));
    QCOMPARE(cord->brush(), QBrush(Qt::green));

    const QGraphicsPathItem *plain = cordItems(*worm.draw(true)).constFirst();
    QCOMPARE(plain->zValue(), 5.0);
    QCOMPARE(plain->pen(), QPen(Qt::NoPen));
    QCOMPARE(plain->brush(), QBrush(Qt::darkGreen));
}

void OrganShapesTest::cordBendsThroughItsPosition()
{
    // From +x to +y: the bisector of the arc between them points to 45 degrees.
    const QPainterPath path = cordPath({60.0, 0.0}, {0.0, 80.0});
    QCOMPARE(path.elementCount(), 9);
    QVERIFY(near(path.elementAt(0), {60.0, 4.0})); // beside the first end
    QVERIFY(near(path.elementAt(3), {4.0, 80.0})); // and along to the second
    QVERIFY(path.elementAt(4).isLineTo());
    QVERIFY(near(path.elementAt(4), {-4.0, 80.0}));
    QVERIFY(near(path.elementAt(7), {60.0, -4.0}));
    QVERIFY(path.elementAt(8).isLineTo());
    QVERIFY(near(path.elementAt(8), {60.0, 4.0}));

    const QPointF bisector = 4.0 * QPointF(std::cos(0.25 * pi), std::sin(0.25 * pi));
    QVERIFY(near(halfway(path, 0), bisector));
    QVERIFY(near(halfway(path, 4), -bisector));

    // From +y to +x the arc goes the long way round, and its bisector points back.
    QVERIFY(near(halfway(cordPath({0.0, 80.0}, {60.0, 0.0}), 0), -bisector));
}

void OrganShapesTest::straightCordIsABandOfWidthEight()
{
    const QPainterPath path = cordPath({0.0, -70.0}, {0.0, 90.0});
    for (int i = 0; i < path.elementCount(); ++i)
        QCOMPARE(std::abs(path.elementAt(i).x), 4.0);
    QCOMPARE(path.boundingRect(), QRectF(-4.0, -70.0, 8.0, 160.0));
    QVERIFY(near(halfway(path, 0), {4.0, 0.0}));
    QVERIFY(near(halfway(path, 4), {-4.0, 0.0}));
}

void OrganShapesTest::cordWithoutAnEndTapersToItsPosition()
{
    // The first end has no direction, and counts as pointing along +x.
    const QPainterPath path = cordPath({0.0, 0.0}, {0.0, 50.0});
    const QPointF bisector = 4.0 * QPointF(std::cos(0.25 * pi), std::sin(0.25 * pi));
    QVERIFY(near(path.elementAt(0), {}));
    QVERIFY(near(path.elementAt(3), {4.0, 50.0}));
    QVERIFY(near(path.elementAt(4), {-4.0, 50.0}));
    QVERIFY(near(path.elementAt(7), {}));
    QCOMPARE(path.elementCount(), 8); // the line back to the start has no extent
    QVERIFY(near(halfway(path, 0), bisector));
    QVERIFY(near(halfway(path, 4), -bisector));

    // An end of 0.0001 is none, a longer one is.
    QVERIFY(near(cordPath({0.0001, 0.0}, {0.0, 50.0}).elementAt(0), {0.0001, 0.0}));
    QVERIFY(near(cordPath({0.00011, 0.0}, {0.0, 50.0}).elementAt(0), {0.00011, 4.0}));
}

void OrganShapesTest::cordOfOnePointIsDrawnSoundly()
{
    DrawnTrunk worm;
    worm.addCord({}, {}, {});
    const MorphologyItem *item = worm.draw();
    QVERIFY(isFinite(cordItems(*item).constFirst()->path()));
    QCOMPARE(worm.tint({0.0, 50.0}), "grey");
}

void OrganShapesTest::cordStandsInTheWormAndDoesNotTurn()
{
    Morphology worm;
    Region *head = worm.addRegion(factory()->regionType(1));
    Region *tail = worm.addRegion(factory()->regionType(3));
    worm.addRegionsLink(head, tail, 100.0, 1.0, 0.5);
    tail->addLineOrgan(factory()->lineOrganType(1), {10.0, -5.0}, {30.0, 0.0}, {-30.0, 0.0});
    const MorphologyItem item(worm, nullptr, false);
    const QGraphicsPathItem *cord = cordItems(item).constFirst();
    QCOMPARE(cord->parentItem(), &item);
    QCOMPARE(cord->pos(), regionItems(item).at(1)->pos() + QPointF(10.0, -5.0));
    QCOMPARE(cord->rotation(), 0.0);
}

void OrganShapesTest::recentringTakesAllOrgansAlong()
{
    Morphology worm;
    Region *head = worm.addRegion(factory()->regionType(1));
    worm.addRegion(factory()->regionType(3))->setParams({10.0, 10.0, 10.0, 10.0});
    head->addSpotOrgan(factory()->spotOrganType(1), {7.0, 8.0}, 0.0);
    head->addLineOrgan(factory()->lineOrganType(1), {10.0, -5.0}, {30.0, 0.0}, {-30.0, 0.0});
    MorphologyItem item(worm, nullptr, false);
    const QGraphicsItem *headItem = regionItems(item).constFirst();
    const QGraphicsItem *eye = headItem->childItems().constFirst();
    const QPointF before = headItem->pos();
    item.centerAtZero();
    QVERIFY(!near(headItem->pos(), before));
    QCOMPARE(eye->pos(), QPointF(7.0, 8.0));
    QVERIFY(near(eye->mapToItem(&item, 0.0, 0.0), headItem->pos() + QPointF(7.0, 8.0)));
    QVERIFY(near(cordItems(item).constFirst()->pos(), headItem->pos() + QPointF(10.0, -5.0)));
}

// --- Pixels ---

void OrganShapesTest::pixelsShowAnEyeThatLooks()
{
    DrawnTrunk worm;
    worm.addSpot(1, {-30.0, 0.0}, 0.0);
    worm.addSpot(1, {30.0, 0.0}, pi);
    worm.draw();
    QCOMPARE(worm.tint({-25.0, 0.0}), "black");
    QCOMPARE(worm.tint({-36.0, 0.0}), "white");
    QCOMPARE(worm.tint({25.0, 0.0}), "black");
    QCOMPARE(worm.tint({36.0, 0.0}), "white");
    QCOMPARE(worm.tint({-30.0, 15.0}), "white");
    QCOMPARE(worm.tint({0.0, 0.0}), "grey");
}

void OrganShapesTest::borderOfARegionCutsItsSpotOrgans()
{
    Morphology worm;
    Region *head = worm.addRegion(factory()->regionType(1));
    Region *trunk = worm.addRegion(factory()->regionType(2));
    worm.addRegionsLink(head, trunk, 200.0, 0.0, 0.5);
    head->addSpotOrgan(factory()->spotOrganType(2), {90.0, 0.0}, 0.5 * pi);
    QGraphicsScene scene;
    auto *item = new MorphologyItem(worm, nullptr, false);
    scene.addItem(item);
    const QPointF centre = regionItems(*item).constFirst()->pos();
    QCOMPARE(tintAt(&scene, centre + QPointF(90.0, 0.0)), "green");
    QCOMPARE(tintAt(&scene, centre + QPointF(115.0, 0.0)), "grey");
}

void OrganShapesTest::outlineOfTheWormCutsItsCords()
{
    Morphology worm;
    Region *head = worm.addRegion(factory()->regionType(1));
    Region *trunk = worm.addRegion(factory()->regionType(2));
    worm.addRegionsLink(head, trunk, 200.0, 0.0, 0.5);
    head->addLineOrgan(factory()->lineOrganType(1), {}, {300.0, 0.0}, {-300.0, 0.0});
    QGraphicsScene scene;
    auto *item = new MorphologyItem(worm, nullptr, false);
    scene.addItem(item);
    const QPointF centre = regionItems(*item).constFirst()->pos();
    QCOMPARE(tintAt(&scene, centre), "green");
    QCOMPARE(tintAt(&scene, centre + QPointF(200.0, 0.0)), "green"); // above the trunk
    QCOMPARE(tintAt(&scene, centre + QPointF(280.0, 0.0)), "white");
    QCOMPARE(tintAt(&scene, centre + QPointF(-100.0, 0.0)), "white");
}

} // namespace Planaria

QTEST_MAIN(Planaria::OrganShapesTest)
#include "OrganShapesTest.moc"
