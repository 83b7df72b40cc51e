#include "db/ExperimentFactory.h"
#include "model/Angles.h"
#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "morphology/MGLineOrgan.h"
#include "morphology/MGLineOrganEnd.h"
#include "morphology/MGLink.h"
#include "morphology/MGLinkLever.h"
#include "morphology/MGRegion.h"
#include "morphology/MGRegionLever.h"
#include "morphology/MGSpotOrgan.h"
#include "morphology/MGSpotOrganLever.h"
#include "morphology/MorphoGraphView.h"
#include "morphology/MorphologyItem.h"
#include "support/DrawnWorm.h"
#include "support/PaintedItem.h"
#include "support/TemporaryLibrary.h"

#include <QHash>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <functional>
#include <limits>

namespace Planaria {

using namespace Angles;

namespace {

enum Type { Head = 1, Trunk = 2, Tail = 3 };

constexpr QGraphicsItem::GraphicsItemFlags dragged = QGraphicsItem::ItemIsMovable |
                                                     QGraphicsItem::ItemIsSelectable |
                                                     QGraphicsItem::ItemSendsGeometryChanges;
constexpr QGraphicsItem::GraphicsItemFlags focused = dragged | QGraphicsItem::ItemIsFocusable;

/// Takes away the last digits, so that what is meant to be 0 compares as 0.
double rounded(double value)
{
    return std::round(value * 1e9) / 1e9 + 0.0;
}

QPointF rounded(const QPointF &point)
{
    return {rounded(point.x()), rounded(point.y())};
}

QLineF rounded(const QLineF &line)
{
    return {rounded(line.p1()), rounded(line.p2())};
}

ExperimentFactory *factory()
{
    return ExperimentFactory::instance(nullptr);
}

/// A worm and its editor on the screen, one pixel a unit: a head at the left of a trunk, 200 apart,
/// and more where a test adds it before show().
class Editor final
{
public:
    Editor()
    {
        head->setParams({60.0, 60.0, 60.0});
        trunk->setParams({60.0, 60.0, 60.0});
    }

    bool show(bool withOrgans = true)
    {
        shown = std::make_unique<MorphoGraphView>(&worm, nullptr);
        shown->updateParamsVisibility(withOrgans);
        shown->resize(1000, 800);
        shown->show();
        return QTest::qWaitForWindowExposed(shown.get());
    }

    MorphoGraphView *view() const { return shown.get(); }
    MGRegion *node(const Region *region) const { return shown->regionNodes().value(region); }
    /// The line of the link, which is made after those to organs.
    MGLink *shownLink() const { return node(head)->links().constLast(); }
    SpotOrgan *addSpot(Region *region, const QPointF &pos, double rot = 0.0, int type = 1)
    {
        return region->addSpotOrgan(factory()->spotOrganType(type), pos, rot);
    }
    LineOrgan *addCord(Region *region, const QPointF &pos, const QPointF &end1, const QPointF &end2)
    {
        return region->addLineOrgan(factory()->lineOrganType(1), pos, end1, end2);
    }
    /// The node of the only organ of @p region.
    template <typename Node> Node *organNode(const Region *region) const
    {
        for (QGraphicsItem *child : node(region)->childItems()) {
            if (auto *found = dynamic_cast<Node *>(child))
                return found;
        }
        qFatal("no such organ");
    }

    QPoint pixel(const QPointF &point) const { return shown->mapFromScene(point); }
    void click(const QPointF &point) const
    {
        QTest::mouseClick(shown->viewport(), Qt::LeftButton, {}, pixel(point));
    }
    /// Takes @p item at its origin and moves it in one step.
    void drag(const QGraphicsItem *item, const QPoint &by) const
    {
        const QPoint start = pixel(item->scenePos());
        QCOMPARE(shown->itemAt(start), item);
        QTest::mousePress(shown->viewport(), Qt::LeftButton, {}, start);
        QTest::mouseMove(shown->viewport(), start + QPoint(by.x(), -by.y()));
        QTest::mouseRelease(shown->viewport(), Qt::LeftButton, {}, start + QPoint(by.x(), -by.y()));
    }
    /// What @p value is each time the editor announces a change.
    void watch(const std::function<double()> &value)
    {
        QObject::connect(shown.get(), &MorphoGraphView::signMorphologyChanged, shown.get(),
                         [this, value] { announced += rounded(value()); });
    }

    Morphology worm;
    Region *head = worm.addRegion(factory()->regionType(Head));
    Region *trunk = worm.addRegion(factory()->regionType(Trunk));
    RegionsLink *link = worm.addRegionsLink(head, trunk, 200.0, 0.0, 0.5);
    QList<double> announced;

private:
    std::unique_ptr<MorphoGraphView> shown;
};

/// The line to a lever, which is a child of the same item.
QGraphicsLineItem *lineTo(const QGraphicsItem *lever)
{
    for (QGraphicsItem *sibling : lever->parentItem()->childItems()) {
        auto *line = qgraphicsitem_cast<QGraphicsLineItem *>(sibling);
        if (line && line->line().p2() == lever->pos())
            return line;
    }
    return nullptr;
}

// --- Numbers ---

/// The names of the numbers of @p worm that are none, or infinite.
QSet<QString> notFinite(const Morphology &worm)
{
    QSet<QString> names;
    const auto check = [&](const QString &name, std::initializer_list<double> numbers) {
        for (const double number : numbers) {
            if (!std::isfinite(number))
                names += name;
        }
    };
    for (const RegionsLink *link : worm.links()) {
        check("dist", {link->totalDist()});
        check("ratio", {link->fromRatio()});
        check("ang", {link->fromAng()});
    }
    for (const Region *region : worm.regions()) {
        for (const RegionParam *param : region->params())
            check("param", {param->value()});
        for (const Organ *organ : region->organs()) {
            check(organ->typeName() + " pos", {organ->pos().x(), organ->pos().y()});
            if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ))
                check("rot", {spot->rot()});
            if (const auto *line = dynamic_cast<const LineOrgan *>(organ)) {
                check("end 1", {line->end1().x(), line->end1().y()});
                check("end 2", {line->end2().x(), line->end2().y()});
            }
        }
    }
    return names;
}

// --- Pixels ---

/// How often ink and paper change along @p points of the scene, as the screen shows it.
int gaps(const Editor &editor, const QList<QPointF> &points)
{
    const QImage image = editor.view()->viewport()->grab().toImage();
    int changes = 0;
    bool wasInk = true;
    for (const QPointF &point : points) {
        const bool isInk = image.pixelColor(editor.pixel(point)).lightness() < 230;
        changes += wasInk && !isInk ? 1 : 0;
        wasInk = isInk;
    }
    return changes;
}

} // namespace

class GraphItemsTest final : public QObject
{
    Q_OBJECT

private slots:
    void leversAndOrgansKeepClearOfTheNodes();

    // Nodes
    void nodesCanBeMovedSelectedAndFocused();
    void organNodesMoveWithTheirRegion();
    void captionsTellTheRegionTypeByTheirColor_data();
    void captionsTellTheRegionTypeByTheirColor();
    void aNodeIsACircleWithAnUprightCaption();
    void aNodeIsPaintedInItsColors();
    void theOutlineOfASelectedNodeIsDotted();
    void theItemWithTheFocusLiesAboveOthers();
    void aLinkWhoseLeverHasTheFocusLiesAboveOthers();
    void aDoubleClickDoesNothing();

    // Links
    void aLinkJoinsItsNodes();
    void theLineToAnOrganIsOnlyALine();
    void linesStopShortOfTheRims_data();
    void linesStopShortOfTheRims();
    void aSelectedLinkIsDashed();
    void draggingALinkMovesNothing();
    void aNodeTakesItsLinksAlong();
    void regionLeversFollowTheNumberOfLinks();

    // Levers
    void leversAreSmallDiscs();
    void leversOfALoneRegionStandAtRightAngles();
    void aRegionLeverStopsAtItsStart();
    void aRegionLeverSlidesOnItsRayOnly();
    void aLinkLeverStaysBetweenItsNodes_data();
    void aLinkLeverStaysBetweenItsNodes();
    void aSpotOrganLeverTurnsTheOrgan();
    void aLineOrganLeverMovesItsEnd_data();
    void aLineOrganLeverMovesItsEnd();
    void endsWithoutExtentStandAboveAndBelow_data();
    void endsWithoutExtentStandAboveAndBelow();
    void aLeverThatIsSelectedKeepsOrgansShowing();

    // Organs
    void organsWithoutAPlaceStandBelowTheCentre_data();
    void organsWithoutAPlaceStandBelowTheCentre();
    void draggingAnOrganMovesIt_data();
    void draggingAnOrganMovesIt();
    void theLineToAnOrganFollowsItsNode();
    void draggingALineOrganLeavesItsEndsInPlace();

    // Regions
    void draggingARegionWritesItsLink();
    void aRegionAnnouncesBeforeItsLinksFollow();
    void leversAnnounceWhatTheyHaveWritten();
    void buildingAnnouncesNothing();
    void organsTurnWithTheOnlyLinkOfTheirRegion();
    void leversOfTurnedOrgansFollowWhenTheGraphIsRebuilt();
    void organsOfARegionWithThreeLinksStayAsTheyAre();
    void turnedAnglesStayWithinOneTurn_data();
    void turnedAnglesStayWithinOneTurn();
    void draggingADamagedWormSpoilsNoSoundNumber_data();
    void draggingADamagedWormSpoilsNoSoundNumber();
    void aLinkLeverOnADamagedLinkGoesWhereItIsDragged();
    void regionsAtOnePointLoseTheirRatioUntilTheyAreSaved();
};

void GraphItemsTest::leversAndOrgansKeepClearOfTheNodes()
{
    QCOMPARE(MGRegionLever::minDist_, 25.0);
    QCOMPARE(MGOrgan::minDist, 35.0);
    QCOMPARE(MGLineOrganEnd::minDist_, 18.5);
}

// --- Nodes ---

void GraphItemsTest::nodesCanBeMovedSelectedAndFocused()
{
    Editor editor;
    editor.addSpot(editor.head, {-30.0, 40.0}, 0.0, 4); // a type without a layer of its own
    QVERIFY(editor.show());
    const MGRegion *region = editor.node(editor.head);
    const auto *organ = editor.organNode<MGSpotOrgan>(editor.head);

    QCOMPARE(region->flags(), focused);
    QCOMPARE(region->zValue(), 0.0);
    QCOMPARE(region->boundingRect(), QRectF(-20.5, -20.5, 41.0, 41.0));
    QCOMPARE(region->shape().boundingRect(), QRectF(-20.0, -20.0, 40.0, 40.0));
    QVERIFY(!region->shape().contains(QPointF(15.0, 15.0)));

    QCOMPARE(organ->flags(), focused);
    QCOMPARE(organ->zValue(), 0.0);
    QCOMPARE(organ->boundingRect(), QRectF(-15.5, -15.5, 31.0, 31.0));
    QCOMPARE(organ->shape().boundingRect(), QRectF(-15.0, -15.0, 30.0, 30.0));
}

void GraphItemsTest::organNodesMoveWithTheirRegion()
{
    Editor editor;
    Region *lone = editor.worm.addRegion(factory()->regionType(Tail));
    SpotOrgan *organ = editor.addSpot(lone, {-30.0, 40.0});
    QVERIFY(editor.show());
    MGRegion *region = editor.node(lone);
    const auto *node = editor.organNode<MGSpotOrgan>(lone);
    QVERIFY(!region->parentItem());
    QCOMPARE(node->parentItem(), region);
    QCOMPARE(node->parent(), region);
    QCOMPARE(node->organ(), organ);

    const QPointF before = node->scenePos();
    editor.drag(region, {20, 30});
    QCOMPARE(node->scenePos(), before + QPointF(20.0, 30.0));
    QCOMPARE(organ->pos(), QPointF(-30.0, 40.0));
}

void GraphItemsTest::captionsTellTheRegionTypeByTheirColor_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QColor>("color");
    QTest::newRow("head") << 1 << QColor(Qt::darkRed);
    QTest::newRow("trunk") << 2 << QColor(Qt::darkGray);
    QTest::newRow("tail") << 3 << QColor(Qt::darkBlue);
    QTest::newRow("any other") << 4 << QColor(Qt::yellow);
}

void GraphItemsTest::captionsTellTheRegionTypeByTheirColor()
{
    QFETCH(const int, type);
    QFETCH(const QColor, color);
    Editor editor;
    const Region *region = editor.worm.addRegion(factory()->regionType(type));
    editor.addSpot(editor.trunk, {-30.0, 40.0});
    QVERIFY(editor.show());
    QCOMPARE(editor.node(region)->getTextColor(), color);
    QCOMPARE(editor.organNode<MGSpotOrgan>(editor.trunk)->getTextColor(), QColor(Qt::black));

    editor.trunk->setType(factory()->regionType(type));
    editor.node(editor.trunk)->setText("changed");
    QCOMPARE(editor.node(editor.trunk)->text(), "changed");
    QCOMPARE(editor.node(editor.trunk)->getTextColor(), color);
}

void GraphItemsTest::aNodeIsACircleWithAnUprightCaption()
{
    Editor editor;
    editor.addSpot(editor.head, {-30.0, 40.0});
    QVERIFY(editor.show());
    const QPen outline(Qt::darkBlue, 1.0);

    MGRegion *region = editor.node(editor.head);
    QVERIFY(!region->text().isEmpty());
    QCOMPARE(painted(region), circle({20.0, outline, Qt::white, Qt::darkRed, 13}, region->text()));
    auto *organ = editor.organNode<MGSpotOrgan>(editor.head);
    QVERIFY(!organ->text().isEmpty());
    QCOMPARE(painted(organ), circle({15.0, outline, Qt::white, Qt::black, 11}, organ->text()));
}

void GraphItemsTest::aNodeIsPaintedInItsColors()
{
    Editor editor;
    QVERIFY(editor.show());
    MGRegion *node = editor.node(editor.head);
    QCOMPARE(node->getOutlineColor(), QColor(Qt::darkBlue));
    QCOMPARE(node->getBackgroundColor(), QColor(Qt::white));

    node->setText("P7");
    node->setTextColor(Qt::magenta);
    node->setOutlineColor(Qt::green);
    node->setBackgroundColor(Qt::cyan);
    QCOMPARE(node->getTextColor(), QColor(Qt::magenta));
    QCOMPARE(painted(node),
             circle({20.0, QPen(Qt::green, 1.0), Qt::cyan, Qt::magenta, 13}, QStringLiteral("P7")));
}

void GraphItemsTest::theOutlineOfASelectedNodeIsDotted()
{
    Editor editor;
    QVERIFY(editor.show());
    MGRegion *node = editor.node(editor.head);
    const CircleLook dotted{20.0, QPen(Qt::darkBlue, 2.0, Qt::DotLine), Qt::white, Qt::darkRed, 13};
    QCOMPARE(painted(node, QStyle::State_Selected), circle(dotted, node->text()));

    const auto onScreen = [&editor, node] {
        const QRect around(editor.pixel(node->scenePos()) - QPoint(22, 22), QSize(44, 44));
        return editor.view()->viewport()->grab(around).toImage();
    };
    const QImage solid = onScreen();
    editor.click(node->scenePos());
    QVERIFY(node->isSelected());
    QVERIFY(onScreen() != solid);
}

void GraphItemsTest::theItemWithTheFocusLiesAboveOthers()
{
    Editor editor;
    editor.addSpot(editor.head, {-30.0, 40.0});
    QVERIFY(editor.show());
    const QPointF centre = editor.node(editor.head)->scenePos();
    const QList<std::pair<const QGraphicsItem *, QPointF>> items = {
        {editor.node(editor.head), centre},
        {editor.organNode<MGSpotOrgan>(editor.head), centre + QPointF(-51.0, 68.0)},
        {editor.shownLink(), centre + QPointF(60.0, 0.0)},
    };
    for (const auto &[item, place] : items) {
        const double zValue = item->zValue();
        QVERIFY(zValue < 10.0);
        editor.click(place);
        QVERIFY(item->hasFocus());
        QCOMPARE(item->zValue(), 10.0);
        editor.click(centre + QPointF(-200.0, -200.0));
        QCOMPARE(item->zValue(), zValue);
    }
}

void GraphItemsTest::aLinkWhoseLeverHasTheFocusLiesAboveOthers()
{
    Editor editor;
    QVERIFY(editor.show());
    const MGLink *link = editor.shownLink();
    const QPointF place = link->lever()->scenePos();

    editor.click(place);
    QVERIFY(link->lever()->hasFocus());
    QCOMPARE(link->zValue(), 10.0);
    QCOMPARE(link->lever()->zValue(), 1.0);
    editor.click(place + QPointF(0.0, 200.0));
    QCOMPARE(link->zValue(), -1.0);
}

void GraphItemsTest::aDoubleClickDoesNothing()
{
    Editor editor;
    QVERIFY(editor.show());
    const MGRegion *node = editor.node(editor.head);
    const QPointF place = node->pos();
    const QSignalSpy changes(editor.view(), &MorphoGraphView::signMorphologyChanged);

    // A press would select the node and begin to move it.
    QTest::mouseDClick(editor.view()->viewport(), Qt::LeftButton, {}, editor.pixel(place));
    QVERIFY(!node->isSelected());
    QTest::mouseRelease(editor.view()->viewport(), Qt::LeftButton, {}, editor.pixel(place));
    QCOMPARE(changes.count(), 0);
    QCOMPARE(node->pos(), place);
}

// --- Links ---

void GraphItemsTest::aLinkJoinsItsNodes()
{
    Editor editor;
    QVERIFY(editor.show());
    MGRegion *head = editor.node(editor.head);
    MGRegion *trunk = editor.node(editor.trunk);
    MGLink *link = editor.shownLink();

    QCOMPARE(link->fromNode(), head);
    QCOMPARE(link->toNode(), trunk);
    QCOMPARE(link->otherNode(head), trunk);
    QCOMPARE(link->otherNode(trunk), head);
    QCOMPARE(link->regionsLink(), editor.link);
    QVERIFY(link->isRegionsLink());
    QCOMPARE(trunk->links(), QList{link});

    QCOMPARE(link->flags(), focused);
    QCOMPARE(link->zValue(), -1.0);
    QCOMPARE(link->pen(), QPen(Qt::darkRed, 1.5, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
}

void GraphItemsTest::theLineToAnOrganIsOnlyALine()
{
    Editor editor;
    const Region *lone = editor.worm.addRegion(factory()->regionType(Head));
    editor.addSpot(editor.worm.regions().constLast(), {-30.0, 40.0});
    QVERIFY(editor.show());
    const auto *organ = editor.organNode<MGSpotOrgan>(lone);
    const MGLink *link = organ->links().constFirst();

    QCOMPARE(link->fromNode(), editor.node(lone));
    QCOMPARE(link->toNode(), organ);
    QVERIFY(!link->isRegionsLink());
    QVERIFY(!link->regionsLink());
    QVERIFY(!link->lever());
    QCOMPARE(link->flags(), QGraphicsItem::GraphicsItemFlags());
    QCOMPARE(link->zValue(), -1.0);
    QCOMPARE(link->pen().widthF(), 1.0);
}

void GraphItemsTest::linesStopShortOfTheRims_data()
{
    QTest::addColumn<double>("dist");
    QTest::addColumn<double>("organDist");
    QTest::addColumn<QLineF>("linkLine");
    QTest::addColumn<QLineF>("organLine");
    QTest::newRow("far") << 200.0 << 65.0 << QLineF(21.0, 0.0, 179.0, 0.0)
                         << QLineF(0.0, 21.0, 0.0, 84.0);
    QTest::newRow("just apart") << 43.0 << 3.0 << QLineF(21.0, 0.0, 22.0, 0.0)
                                << QLineF(0.0, 21.0, 0.0, 22.0);
    QTest::newRow("rims touch") << 42.0 << 2.0 << QLineF() << QLineF();
    QTest::newRow("too close") << 10.0 << 1.0 << QLineF() << QLineF();
}

void GraphItemsTest::linesStopShortOfTheRims()
{
    QFETCH(const double, dist);
    QFETCH(const double, organDist);
    QFETCH(const QLineF, linkLine);
    QFETCH(const QLineF, organLine);
    Editor editor;
    editor.link->setTotalDist(dist);
    editor.addSpot(editor.trunk, {0.0, organDist});
    QVERIFY(editor.show());

    const auto seenFromItsStart = [](const MGLink *link) {
        const QLineF line = link->line();
        return line.isNull() ? line : rounded(line.translated(-link->fromNode()->scenePos()));
    };
    const MGLink *link = editor.shownLink();
    QCOMPARE(seenFromItsStart(link), linkLine);
    QCOMPARE(link->opacity(), linkLine.isNull() ? 0.0 : 1.0);
    QCOMPARE(link->lever()->effectiveOpacity(), 1.0);
    QCOMPARE(editor.worm.links(), QList{editor.link});

    const MGLink *toOrgan = editor.organNode<MGSpotOrgan>(editor.trunk)->links().constFirst();
    QCOMPARE(seenFromItsStart(toOrgan), organLine);
    QCOMPARE(toOrgan->opacity(), organLine.isNull() ? 0.0 : 1.0);
}

void GraphItemsTest::aSelectedLinkIsDashed()
{
    Editor editor;
    QVERIFY(editor.show());
    MGLink *link = editor.shownLink();
    QList<QPointF> line;
    for (double x = 24.0; x < 90.0; x += 1.0)
        line += link->fromNode()->scenePos() + QPointF(x, 0.0);

    QCOMPARE(gaps(editor, line), 0);
    editor.click(line.at(30));
    QVERIFY(link->isSelected());
    QVERIFY(gaps(editor, line) >= 4);

    link->setLine(QLineF(-20.0, 5.0, 20.0, 5.0));
    QCOMPARE(painted(link, QStyle::State_Selected), drawn([](QPainter *painter) {
                 painter->scale(1.0, -1.0);
                 painter->setPen(
                     QPen(Qt::darkRed, 2.0, Qt::DashLine, Qt::SquareCap, Qt::BevelJoin));
                 painter->drawLine(QLineF(-20.0, 5.0, 20.0, 5.0));
             }));
}

void GraphItemsTest::draggingALinkMovesNothing()
{
    Editor editor;
    QVERIFY(editor.show());
    const MGLink *link = editor.shownLink();
    const QLineF line = link->line();
    const Morphology before(editor.worm, true);
    const QPoint start = editor.pixel(line.pointAt(0.25));

    QTest::mousePress(editor.view()->viewport(), Qt::LeftButton, {}, start);
    QTest::mouseMove(editor.view()->viewport(), start + QPoint(30, 50));
    QTest::mouseRelease(editor.view()->viewport(), Qt::LeftButton, {}, start + QPoint(30, 50));
    QVERIFY(link->isSelected());
    QCOMPARE(link->pos(), QPointF());
    QCOMPARE(link->line(), line);
    QVERIFY(editor.worm == before);
}

void GraphItemsTest::aNodeTakesItsLinksAlong()
{
    Editor editor;
    editor.addSpot(editor.head, {-30.0, 40.0});
    QVERIFY(editor.show());
    MGRegion *head = editor.node(editor.head);
    MGRegion *trunk = editor.node(editor.trunk);
    QCOMPARE(head->links().size(), 2);

    editor.click(head->scenePos() + QPointF(-51.0, 68.0));
    editor.view()->deleteSelection();
    QCOMPARE(head->links().size(), 1);
    editor.click(head->scenePos());
    editor.view()->deleteSelection();
    QCOMPARE(trunk->links(), QList<MGLink *>());
    QCOMPARE(editor.view()->regionNodes().size(), 1);
}

void GraphItemsTest::regionLeversFollowTheNumberOfLinks()
{
    Editor editor;
    const Region *tail = editor.worm.addRegion(factory()->regionType(Tail));
    editor.trunk->addLink(editor.worm.regions().constLast(), 200.0, 0.0, 0.5);
    QVERIFY(editor.show());
    QCOMPARE(editor.node(editor.head)->levers().size(), 3);
    QCOMPARE(editor.node(editor.trunk)->levers().size(), 2);
    QCOMPARE(editor.node(tail)->levers().size(), 3);

    editor.click(editor.node(editor.head)->scenePos() + QPointF(60.0, 0.0));
    editor.view()->deleteSelection();
    QCOMPARE(editor.worm.links().size(), 1);
    QCOMPARE(editor.node(editor.head)->levers().size(), 4);
    QCOMPARE(editor.node(editor.trunk)->levers().size(), 3);
    QCOMPARE(editor.node(tail)->levers().size(), 3);
}

// --- Levers ---

void GraphItemsTest::leversAreSmallDiscs()
{
    Editor editor;
    editor.addSpot(editor.head, {-30.0, 40.0});
    editor.addCord(editor.trunk, {30.0, 40.0}, {0.0, 100.0}, {0.0, -100.0});
    QVERIFY(editor.show());
    const auto *spot = editor.organNode<MGSpotOrgan>(editor.head);
    const auto *cord = editor.organNode<MGLineOrgan>(editor.trunk);
    const QRectF large(-5.0, -5.0, 10.0, 10.0);
    const QRectF small(-3.5, -3.5, 7.0, 7.0);
    struct Row
    {
        const QGraphicsEllipseItem *lever;
        const QGraphicsItem *parent;
        QRectF rect;
        QColor color;
        double zValue;
        QGraphicsItem::GraphicsItemFlags flags;
    };
    const QList<Row> rows = {
        {editor.node(editor.head)->levers().at(0), editor.node(editor.head), large,
         QColor(255, 0, 0), -1.0, dragged},
        {editor.shownLink()->lever(), editor.shownLink(), large, QColor(0, 255, 0), 1.0,
         focused | QGraphicsItem::ItemIgnoresParentOpacity},
        {spot->lever(), spot, small, QColor(0, 0, 255), 1.0, dragged},
        {cord->ends().at(0), cord, small, QColor(Qt::darkYellow), 0.0, dragged},
        {cord->ends().at(1), cord, small, QColor(Qt::darkYellow), 0.0, dragged},
    };
    for (const Row &row : rows) {
        QCOMPARE(row.lever->parentItem(), row.parent);
        QCOMPARE(row.lever->rect(), row.rect);
        QCOMPARE(row.lever->pen(), QPen(Qt::black, 1.0));
        QCOMPARE(row.lever->brush(), QBrush(row.color));
        QCOMPARE(row.lever->zValue(), row.zValue);
        QCOMPARE(row.lever->flags(), row.flags);
    }
    QCOMPARE(cord->ends().size(), 2);

    const QGraphicsLineItem *ray = lineTo(rows.at(0).lever);
    QVERIFY(ray);
    QCOMPARE(ray->zValue(), -2.0);
    QCOMPARE(ray->pen(), QPen(Qt::black, 1.0));
    for (const MGLineOrganEnd *end : cord->ends()) {
        const QGraphicsLineItem *line = lineTo(end);
        QVERIFY(line);
        QCOMPARE(line->zValue(), -1.0);
        QCOMPARE(line->pen(), QPen(Qt::black, 1.0));
    }
    for (const MGLever *lever :
         QList<const MGLever *>{editor.shownLink()->lever(), spot->lever()}) {
        QVERIFY(!lineTo(lever));
        QVERIFY(lever->line().isNull());
    }
}

void GraphItemsTest::leversOfALoneRegionStandAtRightAngles()
{
    Editor editor;
    Region *lone = editor.worm.addRegion(factory()->regionType(Trunk));
    lone->setParams({10.0, 20.0, 30.0, 40.0});
    QVERIFY(editor.show());
    QList<QPointF> places;
    for (const MGRegionLever *lever : editor.node(lone)->levers())
        places += rounded(lever->pos());
    QCOMPARE(places, QList<QPointF>({{35.0, 0.0}, {0.0, 45.0}, {-55.0, 0.0}, {0.0, -65.0}}));
    QCOMPARE(rounded(editor.node(lone)->levers().at(1)->line()), QLineF(0.0, 20.0, 0.0, 45.0));
}

void GraphItemsTest::aRegionLeverStopsAtItsStart()
{
    Editor editor;
    QVERIFY(editor.show());
    const MGRegionLever *lever = editor.node(editor.head)->levers().at(1);
    QCOMPARE(rounded(lever->pos()), QPointF(-85.0, 0.0));

    editor.drag(lever, {100, 0}); // past the centre
    QCOMPARE(rounded(lever->pos()), QPointF(-25.0, 0.0));
    QCOMPARE(rounded(lever->line()), QLineF(-20.0, 0.0, -25.0, 0.0));
    QCOMPARE(editor.head->params().at(1)->value(), 0.0);
    QCOMPARE(lever->value(), 0.0);
}

void GraphItemsTest::aRegionLeverSlidesOnItsRayOnly()
{
    Editor editor;
    QVERIFY(editor.show());
    const MGRegionLever *lever = editor.node(editor.head)->levers().at(1);

    editor.drag(lever, {-10, 40});
    QCOMPARE(rounded(lever->pos()), QPointF(-95.0, 0.0));
    QCOMPARE(editor.head->params().at(1)->value(), 70.0);
    editor.drag(lever, {0, -70});
    QCOMPARE(rounded(lever->pos()), QPointF(-95.0, 0.0));
    QCOMPARE(editor.head->params().at(0)->value(), 60.0);
}

void GraphItemsTest::aLinkLeverStaysBetweenItsNodes_data()
{
    QTest::addColumn<QPoint>("by");
    QTest::addColumn<double>("ratio");
    QTest::newRow("along") << QPoint(20, 0) << 0.6;
    QTest::newRow("sideways") << QPoint(-20, 70) << 0.4;
    QTest::newRow("past the to-node") << QPoint(150, 30) << 1.0;
    QTest::newRow("behind the from-node") << QPoint(-150, -20) << 0.0;
}

void GraphItemsTest::aLinkLeverStaysBetweenItsNodes()
{
    QFETCH(const QPoint, by);
    QFETCH(const double, ratio);
    Editor editor;
    QVERIFY(editor.show());
    const MGLinkLever *lever = editor.shownLink()->lever();
    const QPointF from = editor.node(editor.head)->scenePos();
    QCOMPARE(lever->pos(), from + QPointF(100.0, 0.0));

    editor.drag(lever, by);
    QCOMPARE(rounded(editor.link->fromRatio()), ratio);
    QCOMPARE(rounded(lever->pos() - from), QPointF(200.0 * ratio, 0.0));
}

void GraphItemsTest::aSpotOrganLeverTurnsTheOrgan()
{
    Editor editor;
    SpotOrgan *organ = editor.addSpot(editor.head, {-30.0, 40.0});
    QVERIFY(editor.show());
    const MGSpotOrganLever *lever = editor.organNode<MGSpotOrgan>(editor.head)->lever();
    QCOMPARE(lever->pos(), QPointF(15.0, 0.0));

    editor.drag(lever, {-15, -30});
    QCOMPARE(organ->rot(), 3.0 * quarterTurn);
    QCOMPARE(rounded(lever->pos()), QPointF(0.0, -15.0));
    organ->setRot(1.0); // the lever does not look again
    QCOMPARE(rounded(lever->pos()), QPointF(0.0, -15.0));
}

void GraphItemsTest::aLineOrganLeverMovesItsEnd_data()
{
    QTest::addColumn<int>("end");
    QTest::addColumn<QPoint>("by");
    QTest::addColumn<QPointF>("vector");
    QTest::addColumn<QLineF>("line");
    QTest::newRow("end 1") << 1 << QPoint(30, -80) << QPointF(18.9, 25.2)
                           << QLineF(9.0, 12.0, 30.0, 40.0);
    QTest::newRow("end 2") << 2 << QPoint(30, 80) << QPointF(18.9, -25.2)
                           << QLineF(9.0, -12.0, 30.0, -40.0);
    QTest::newRow("end 1 on the node")
        << 1 << QPoint(0, -115) << QPointF() << QLineF(0.0, 15.0, 0.0, 18.5);
}

void GraphItemsTest::aLineOrganLeverMovesItsEnd()
{
    QFETCH(const int, end);
    QFETCH(const QPoint, by);
    QFETCH(const QPointF, vector);
    QFETCH(const QLineF, line);
    Editor editor;
    LineOrgan *organ = editor.addCord(editor.head, {-30.0, 40.0}, {0.0, 101.5}, {0.0, -101.5});
    QVERIFY(editor.show());
    const auto *cord = editor.organNode<MGLineOrgan>(editor.head);
    const MGLineOrganEnd *lever = cord->ends().at(end - 1);
    const MGLineOrganEnd *other = cord->ends().at(2 - end);
    const QPointF otherPlace = other->pos();

    editor.drag(lever, by);
    QCOMPARE(rounded(end == 1 ? organ->end1() : organ->end2()), vector);
    QCOMPARE(end == 1 ? organ->end2() : organ->end1(), QPointF(0.0, end == 1 ? -101.5 : 101.5));
    QCOMPARE(rounded(lever->line()), line);
    QCOMPARE(rounded(lever->pos()), line.p2());
    QCOMPARE(other->pos(), otherPlace);
}

void GraphItemsTest::endsWithoutExtentStandAboveAndBelow_data()
{
    QTest::addColumn<QPointF>("vector");
    QTest::addColumn<QPointF>("handle1");
    QTest::addColumn<QPointF>("handle2");
    QTest::newRow("none") << QPointF() << QPointF(0.0, 18.5) << QPointF(0.0, -18.5);
    QTest::newRow("one coordinate 0")
        << QPointF(0.0, -40.0) << QPointF(0.0, -58.5) << QPointF(0.0, -58.5);
    QTest::newRow("the other 0") << QPointF(10.0, 0.0) << QPointF(28.5, 0.0) << QPointF(28.5, 0.0);
    QTest::newRow("both") << QPointF(3.0, 4.0) << QPointF(14.1, 18.8) << QPointF(14.1, 18.8);
    QTest::newRow("too short for a direction")
        << QPointF(1e-4, 0.0) << QPointF(1e-4, 0.0) << QPointF(1e-4, 0.0);
}

void GraphItemsTest::endsWithoutExtentStandAboveAndBelow()
{
    QFETCH(const QPointF, vector);
    QFETCH(const QPointF, handle1);
    QFETCH(const QPointF, handle2);
    Editor editor;
    editor.addCord(editor.head, {-30.0, 40.0}, vector, vector);
    QVERIFY(editor.show());
    const auto *cord = editor.organNode<MGLineOrgan>(editor.head);
    QCOMPARE(rounded(cord->ends().at(0)->pos()), handle1);
    QCOMPARE(rounded(cord->ends().at(1)->pos()), handle2);
}

void GraphItemsTest::aLeverThatIsSelectedKeepsOrgansShowing()
{
    Editor editor;
    editor.addSpot(editor.head, {-30.0, 40.0});
    editor.addCord(editor.trunk, {30.0, 40.0}, {0.0, 100.0}, {0.0, -100.0});
    QVERIFY(editor.show(false));
    const auto *spot = editor.organNode<MGSpotOrgan>(editor.head);
    const auto *cord = editor.organNode<MGLineOrgan>(editor.trunk);
    const QList<std::pair<const MGOrgan *, const QGraphicsItem *>> levers = {
        {spot, spot->lever()}, {cord, cord->ends().at(0)}, {cord, cord->ends().at(1)}};
    for (const auto &[organ, lever] : levers) {
        editor.click(organ->parent()->scenePos());
        QVERIFY(organ->isVisible());
        editor.click(lever->scenePos());
        QVERIFY(lever->isSelected());
        editor.view()->updateOrgansVis();
        QVERIFY(organ->isVisible());
        QCOMPARE(organ->opacity(), 1.0);
    }
    editor.click(editor.node(editor.head)->scenePos() + QPointF(-150.0, -150.0));
    QTRY_VERIFY(!cord->isVisible());
}

// --- Organs ---

void GraphItemsTest::organsWithoutAPlaceStandBelowTheCentre_data()
{
    QTest::addColumn<QPointF>("pos");
    QTest::addColumn<QPointF>("place");
    QTest::newRow("none") << QPointF() << QPointF(0.0, -35.0);
    QTest::newRow("some") << QPointF(-30.0, 40.0) << QPointF(-51.0, 68.0);
    QTest::newRow("too short for a direction") << QPointF(0.0, 1e-4) << QPointF(0.0, 1e-4);
}

void GraphItemsTest::organsWithoutAPlaceStandBelowTheCentre()
{
    QFETCH(const QPointF, pos);
    QFETCH(const QPointF, place);
    Editor editor;
    editor.addSpot(editor.head, pos);
    editor.addCord(editor.trunk, pos, {0.0, 100.0}, {0.0, -100.0});
    QVERIFY(editor.show());
    QCOMPARE(rounded(editor.organNode<MGSpotOrgan>(editor.head)->pos()), place);
    QCOMPARE(rounded(editor.organNode<MGLineOrgan>(editor.trunk)->pos()), place);
}

void GraphItemsTest::draggingAnOrganMovesIt_data()
{
    QTest::addColumn<QPoint>("by");
    QTest::addColumn<QPointF>("pos");
    QTest::addColumn<QPointF>("place");
    QTest::newRow("away") << QPoint(-9, 12) << QPointF(-39.0, 52.0) << QPointF(-60.0, 80.0);
    QTest::newRow("around") << QPoint(102, 0) << QPointF(30.0, 40.0) << QPointF(51.0, 68.0);
    QTest::newRow("too near") << QPoint(39, -52) << QPointF() << QPointF(-21.0, 28.0);
}

void GraphItemsTest::draggingAnOrganMovesIt()
{
    QFETCH(const QPoint, by);
    QFETCH(const QPointF, pos);
    QFETCH(const QPointF, place);
    Editor editor;
    SpotOrgan *organ = editor.addSpot(editor.head, {-30.0, 40.0}, 2.0);
    QVERIFY(editor.show());
    const auto *node = editor.organNode<MGSpotOrgan>(editor.head);

    editor.drag(node, by);
    QCOMPARE(rounded(organ->pos()), pos);
    QCOMPARE(rounded(node->pos()), place);
    QCOMPARE(organ->rot(), 2.0);
}

void GraphItemsTest::theLineToAnOrganFollowsItsNode()
{
    Editor editor;
    editor.addSpot(editor.head, {0.0, 65.0});
    QVERIFY(editor.show());
    const auto *node = editor.organNode<MGSpotOrgan>(editor.head);
    const MGLink *link = node->links().constFirst();
    const double before = link->line().length();

    editor.drag(node, {0, 20});
    QCOMPARE(rounded(link->line().length()), before + 20.0);
}

void GraphItemsTest::draggingALineOrganLeavesItsEndsInPlace()
{
    Editor editor;
    LineOrgan *organ = editor.addCord(editor.head, {-30.0, 40.0}, {0.0, 100.0}, {0.0, -100.0});
    QVERIFY(editor.show());
    const auto *cord = editor.organNode<MGLineOrgan>(editor.head);
    editor.watch([organ] { return organ->end1().x(); });

    editor.drag(cord, {-9, 12});
    QCOMPARE(rounded(organ->pos()), QPointF(-39.0, 52.0));
    QCOMPARE(rounded(organ->end1()), QPointF(9.0, 88.0));
    QCOMPARE(rounded(organ->end2()), QPointF(9.0, -112.0));
    QCOMPARE(editor.announced, QList<double>({0.0, 9.0})); // the place, then the ends
    for (int i = 0; i < 2; ++i) {
        const QPointF end = i == 0 ? organ->end1() : organ->end2();
        QCOMPARE(rounded(cord->ends().at(i)->pos()), rounded(end + 18.5 * unit(end)));
        QCOMPARE(cord->ends().at(i)->line().p2(), cord->ends().at(i)->pos());
    }
}

// --- Regions ---

void GraphItemsTest::draggingARegionWritesItsLink()
{
    Editor editor;
    QVERIFY(editor.show());
    const MGRegion *head = editor.node(editor.head);

    editor.drag(editor.node(editor.trunk), {-50, 200});
    QCOMPARE(rounded(editor.link->totalDist()), 250.0);
    QCOMPARE(editor.link->fromAng(), std::atan2(200.0, 150.0));
    QCOMPARE(editor.link->fromRatio(), 0.5);
    QCOMPARE(rounded(editor.shownLink()->lever()->pos() - head->pos()), QPointF(75.0, 100.0));
    QCOMPARE(rounded(editor.shownLink()->line().p1() - head->pos()), QPointF(12.6, 16.8));
    // The levers of the region at the other end turn with the link.
    QCOMPARE(rounded(head->levers().at(1)->pos()), QPointF(-51.0, -68.0));

    editor.drag(head, {150, 0});
    QCOMPARE(rounded(editor.link->totalDist()), 200.0);
    QCOMPARE(editor.link->fromAng(), quarterTurn);
}

void GraphItemsTest::aRegionAnnouncesBeforeItsLinksFollow()
{
    Editor editor;
    QVERIFY(editor.show());
    editor.watch([&editor] { return editor.link->totalDist(); });

    editor.drag(editor.node(editor.trunk), {50, 0});
    editor.drag(editor.node(editor.trunk), {50, 0});
    QCOMPARE(editor.announced, QList<double>({200.0, 250.0}));
    QCOMPARE(editor.link->totalDist(), 300.0);
}

void GraphItemsTest::leversAnnounceWhatTheyHaveWritten()
{
    Editor editor;
    SpotOrgan *spot = editor.addSpot(editor.head, {-30.0, 40.0});
    LineOrgan *cord = editor.addCord(editor.trunk, {30.0, 40.0}, {0.0, 101.5}, {0.0, -101.5});
    QVERIFY(editor.show());
    editor.watch([&] {
        return editor.head->params().at(1)->value() + 1000.0 * editor.link->fromRatio() +
               10000.0 * spot->rot() + cord->end1().y() + 3.0 * spot->pos().x();
    });
    const auto *spotNode = editor.organNode<MGSpotOrgan>(editor.head);
    const auto *cordNode = editor.organNode<MGLineOrgan>(editor.trunk);
    const double start = 60.0 + 500.0 + 101.5 - 90.0;

    editor.drag(editor.node(editor.head)->levers().at(1), {-10, 0});
    editor.drag(editor.shownLink()->lever(), {20, 0});
    editor.drag(cordNode->ends().at(0), {0, 20});
    editor.drag(spotNode, {-9, 12});
    editor.drag(spotNode->lever(), {-15, 30});
    QCOMPARE(editor.announced,
             QList<double>({start + 10.0, start + 110.0, start + 130.0, start + 103.0,
                            rounded(start + 103.0 + 10000.0 * quarterTurn)}));
}

void GraphItemsTest::buildingAnnouncesNothing()
{
    Editor editor;
    editor.addSpot(editor.head, {-30.0, 40.0});
    editor.addCord(editor.trunk, {30.0, 40.0}, {0.0, 100.0}, {0.0, -100.0});
    QVERIFY(editor.show());
    const QSignalSpy changes(editor.view(), &MorphoGraphView::signMorphologyChanged);

    editor.view()->updateParamsVisibility(false);
    editor.view()->setMorphology(&editor.worm);
    editor.view()->clear();
    QCOMPARE(changes.count(), 0);
}

void GraphItemsTest::organsTurnWithTheOnlyLinkOfTheirRegion()
{
    Editor editor;
    SpotOrgan *spot = editor.addSpot(editor.head, {-30.0, 40.0}, 6.0);
    LineOrgan *cord = editor.addCord(editor.trunk, {30.0, 40.0}, {0.0, 100.0}, {-50.0, 0.0});
    QVERIFY(editor.show());

    editor.drag(editor.node(editor.trunk), {-200, 200}); // a quarter turn for both ends
    QCOMPARE(rounded(spot->pos()), QPointF(-40.0, -30.0));
    QCOMPARE(rounded(spot->rot()), rounded(6.0 + quarterTurn - fullTurn));
    QCOMPARE(rounded(cord->pos()), QPointF(-40.0, 30.0));
    QCOMPARE(rounded(cord->end1()), QPointF(-100.0, 0.0));
    QCOMPARE(rounded(cord->end2()), QPointF(0.0, -50.0));
    QCOMPARE(rounded(editor.organNode<MGSpotOrgan>(editor.head)->pos()), QPointF(-68.0, -51.0));
    QCOMPARE(rounded(editor.organNode<MGLineOrgan>(editor.trunk)->pos()), QPointF(-68.0, 51.0));
}

void GraphItemsTest::leversOfTurnedOrgansFollowWhenTheGraphIsRebuilt()
{
    Editor editor;
    editor.addSpot(editor.head, {-30.0, 40.0});
    editor.addCord(editor.trunk, {30.0, 40.0}, {0.0, 100.0}, {0.0, -100.0});
    QVERIFY(editor.show());

    editor.drag(editor.node(editor.trunk), {-200, 200});
    const auto spotLever = [&] {
        return rounded(editor.organNode<MGSpotOrgan>(editor.head)->lever()->pos());
    };
    const auto cordLever = [&] {
        return rounded(editor.organNode<MGLineOrgan>(editor.trunk)->ends().at(0)->pos());
    };
    QCOMPARE(spotLever(), QPointF(15.0, 0.0));
    QCOMPARE(cordLever(), QPointF(0.0, 118.5));
    editor.view()->updateParamsVisibility(true);
    QCOMPARE(spotLever(), QPointF(0.0, 15.0));
    QCOMPARE(cordLever(), QPointF(-118.5, 0.0));
}

void GraphItemsTest::organsOfARegionWithThreeLinksStayAsTheyAre()
{
    Editor editor;
    for (const double ang : {0.0, quarterTurn}) {
        Region *tail = editor.worm.addRegion(factory()->regionType(Tail));
        editor.trunk->addLink(tail, 200.0, ang, 0.5);
    }
    SpotOrgan *inTrunk = editor.addSpot(editor.trunk, {30.0, -40.0}, 2.0);
    SpotOrgan *inHead = editor.addSpot(editor.head, {-30.0, 40.0}, 2.0);
    QVERIFY(editor.show());

    editor.drag(editor.node(editor.trunk), {-40, -50});
    QCOMPARE(inTrunk->pos(), QPointF(30.0, -40.0));
    QCOMPARE(inTrunk->rot(), 2.0);
    const double turn = std::atan2(-50.0, 160.0);
    QCOMPARE(rounded(inHead->rot()), rounded(2.0 + turn));

    editor.drag(editor.node(editor.head), {0, -50}); // level with the trunk again
    QCOMPARE(inTrunk->rot(), 2.0);
    QCOMPARE(rounded(inHead->rot()), 2.0);
    QCOMPARE(rounded(inHead->pos()), QPointF(-30.0, 40.0));
}

void GraphItemsTest::turnedAnglesStayWithinOneTurn_data()
{
    QTest::addColumn<double>("rot");
    QTest::addColumn<double>("delta");
    QTest::addColumn<double>("turned");
    QTest::newRow("within") << 2.0 << 0.5 << 1.5;
    QTest::newRow("to 0") << 1.0 << 1.0 << 0.0;
    QTest::newRow("below 0") << 0.5 << 1.0 << fullTurn - 0.5;
    QTest::newRow("beyond one turn") << 6.0 << -1.0 << 7.0 - fullTurn;
    QTest::newRow("by several turns") << 0.5 << 2.0 * fullTurn << 0.5;
    QTest::newRow("back by several turns") << 0.5 << -3.0 * fullTurn << 0.5;
    QTest::newRow("a hair below 0") << 0.0 << 1e-17 << 0.0;
    QTest::newRow("from beyond") << 20.0 << 0.0 << 20.0 - 3.0 * fullTurn;
}

void GraphItemsTest::turnedAnglesStayWithinOneTurn()
{
    QFETCH(const double, rot);
    QFETCH(const double, delta);
    QFETCH(const double, turned);
    Editor editor;
    SpotOrgan *spot = editor.addSpot(editor.head, 50.0 * direction(rot), rot);
    Region *lone = editor.worm.addRegion(factory()->regionType(Trunk));
    SpotOrgan *inLone = editor.addSpot(lone, {-30.0, 40.0}, rot);
    QVERIFY(editor.show());

    editor.node(editor.head)->adjustOrgansRot(delta);
    QCOMPARE(rounded(spot->rot()), rounded(turned));
    QVERIFY(spot->rot() >= 0.0 && spot->rot() < fullTurn);
    QCOMPARE(rounded(spot->pos()), rounded(50.0 * direction(turned)));

    editor.node(lone)->adjustOrgansRot(delta); // no link that could have turned
    QCOMPARE(inLone->rot(), rot);
}

void GraphItemsTest::draggingADamagedWormSpoilsNoSoundNumber_data()
{
    QTest::addColumn<QString>("damaged");
    QTest::addColumn<double>("number");
    constexpr double inf = std::numeric_limits<double>::infinity();
    for (const char *damaged : {"ang", "dist", "ratio", "param", "pos", "rot", "end"}) {
        for (const double number : {inf, -inf, std::nan(""), 1e300})
            QTest::addRow("%s %g", damaged, number) << damaged << number;
    }
    QTest::newRow("self link") << "self link" << 0.0;
    QTest::newRow("parallel link") << "parallel link" << 0.0;
}

void GraphItemsTest::draggingADamagedWormSpoilsNoSoundNumber()
{
    QFETCH(const QString, damaged);
    QFETCH(const double, number);
    Editor editor;
    SpotOrgan *spot = editor.addSpot(editor.head, {30.0, -40.0}, 2.0);
    LineOrgan *cord = editor.addCord(editor.head, {-30.0, 40.0}, {0.0, 50.0}, {0.0, -50.0});
    const QHash<QString, std::function<void()>> damage{
        {"ang", [&] { editor.link->setFromAng(number); }},
        {"dist", [&] { editor.link->setTotalDist(number); }},
        {"ratio", [&] { editor.link->setFromRatio(number); }},
        {"param", [&] { editor.head->setParam(0, number); }},
        {"pos",
         [&] {
             cord->setPos({number, 0.0});
         }},
        {"rot", [&] { spot->setRot(number); }},
        {"end",
         [&] {
             cord->setEnd1({0.0, number});
         }},
        {"self link",
         [&] { editor.worm.addRegionsLink(editor.head, editor.head, 30.0, 1.0, 0.5); }},
        {"parallel link", [&] { editor.head->addLink(editor.trunk, 90.0, 1.0, 0.5); }},
    };
    damage.value(damaged)();
    const QSet<QString> before = notFinite(editor.worm);
    QVERIFY(editor.show());

    for (QGraphicsItem *item : editor.view()->items()) {
        if (item->flags() & QGraphicsItem::ItemIsMovable)
            item->moveBy(7.0, -5.0);
    }
    // Without a distance there is no ratio, until the worm is saved.
    const QSet<QString> ratio = damaged == "dist" ? QSet<QString>{"ratio"} : QSet<QString>();
    const QSet<QString> spoiled = notFinite(editor.worm) - before - ratio;
    QVERIFY2(spoiled.isEmpty(), qPrintable(QStringList(spoiled.values()).join(' ')));
    for (const RegionsLink *link : editor.worm.links()) {
        if (link->from() == link->to())
            QCOMPARE(link->totalDist(), 30.0);
    }
}

void GraphItemsTest::aLinkLeverOnADamagedLinkGoesWhereItIsDragged()
{
    for (const double ang : {std::numeric_limits<double>::infinity(), std::nan("")}) {
        Editor editor;
        editor.link->setFromAng(ang); // shown along +x
        QVERIFY(editor.show());
        editor.drag(editor.shownLink()->lever(), {30, 0});
        QCOMPARE(rounded(editor.link->fromRatio()), 0.65);
    }
}

void GraphItemsTest::regionsAtOnePointLoseTheirRatioUntilTheyAreSaved()
{
    TemporaryLibrary library;
    Editor editor;
    editor.worm.setName("Folded");
    QVERIFY(editor.show());
    editor.drag(editor.node(editor.trunk), {-200, 0});
    QCOMPARE(editor.link->totalDist(), 0.0);
    QCOMPARE(editor.link->fromRatio(), 0.5);

    MGLinkLever *lever = editor.shownLink()->lever();
    lever->setPos(lever->pos() + QPointF(20.0, 0.0)); // it lies beneath the nodes
    QVERIFY(std::isnan(editor.link->fromRatio()));
    QVERIFY(isFinite(lever->pos()));

    editor.node(editor.trunk)->setPos(editor.node(editor.head)->pos() + QPointF(100.0, 0.0));
    QVERIFY(std::isnan(editor.link->fromRatio()));
    QCOMPARE(rounded(lever->pos() - editor.node(editor.head)->pos()), QPointF(50.0, 0.0));
    const auto outlines = [&editor] {
        const MorphologyItem item(editor.worm, nullptr, false);
        QList<QPainterPath> paths;
        for (const QGraphicsPathItem *region : regionItems(item))
            paths += region->path();
        return paths;
    };
    const QList<QPainterPath> withoutRatio = outlines();

    QVERIFY(editor.worm.submit(library.db()) > 0);
    QCOMPARE(editor.link->fromRatio(), 0.5);
    QCOMPARE(library.value("SELECT Ratio FROM RegionsLink").toDouble(), 0.5);
    QCOMPARE(outlines(), withoutRatio);
    QCOMPARE(library.brokenReferences(), QStringList());
}

} // namespace Planaria

QTEST_MAIN(Planaria::GraphItemsTest)
#include "GraphItemsTest.moc"
