#include "manipulation/ManipulationItem.h"

#include "db/ExperimentFactory.h"
#include "manipulation/ClipPathItem.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RemoveAction.h"
#include "morphology/MorphologyItem.h"
#include "support/DrawnProduct.h"
#include "support/DrawnWorm.h"
#include "support/TemporaryLibrary.h"
#include "widgets/GuiConfig.h"

#include <QGraphicsItemGroup>
#include <QGraphicsScene>
#include <QPainter>
#include <QTest>

#include <array>
#include <limits>
#include <numbers>

using namespace Planaria;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
const QRectF window(-400.0, -400.0, 800.0, 800.0);

std::unique_ptr<Morphology> wildType()
{
    return ExperimentFactory::instance(nullptr)->createWildMorphology();
}

/// One region that is wider than high, its right side longer than its left.
std::unique_ptr<Morphology> lopsidedHead()
{
    auto worm = std::make_unique<Morphology>();
    worm->addRegion(ExperimentFactory::instance(nullptr)->regionType(1))
        ->setParams({120.0, 40.0, 50.0, 30.0});
    return worm;
}

std::unique_ptr<Manipulation> manipulationOf(std::unique_ptr<Morphology> worm)
{
    return std::make_unique<Manipulation>(worm.release());
}

void setArea(AreaAction *action, const QPolygonF &corners)
{
    for (const QPointF &corner : corners)
        action->addAreaPoint(corner);
}

/// Without the first corner again at the end.
QPolygonF rectangle(double left, double top, double width, double height)
{
    QPolygonF corners(QRectF(left, top, width, height));
    corners.removeLast();
    return corners;
}

/// Joins a head to the tree. @param isBody the tree is grafted onto the head
void addHead(Manipulation *manipulation, bool isBody)
{
    auto head = lopsidedHead();
    head->setName(QStringLiteral("head %1").arg(manipulation->actions().size()));
    JoinAction *join = manipulation->addJoinAction(manipulation->rootAction(), head.release());
    if (isBody) {
        ManipulationAction *tree = join->fromAction1();
        join->setFromAction1(join->fromAction2());
        join->setFromAction2(tree);
    }
}

QImage drawnWorm(const Morphology &worm)
{
    MorphologyItem item(worm, nullptr, false);
    return drawn(&item, window);
}

QImage drawnProduct(const Manipulation &manipulation)
{
    return drawnProduct(manipulation, window);
}

/// What a filled outline covers.
QImage drawnOutline(const QPainterPath &outline)
{
    QImage image(window.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(-window.topLeft());
    painter.fillPath(outline, Qt::black);
    return image;
}

QPainterPath outlineOf(const Morphology &worm)
{
    return MorphologyItem(worm, nullptr, false).shape();
}

QPainterPath pathOf(const QPolygonF &corners)
{
    QPainterPath path;
    path.addPolygon(corners);
    return path;
}

QColor pixel(const QImage &image, const QPointF &point)
{
    return image.pixelColor((point - window.topLeft()).toPoint());
}

/// Row by row @p count points or less of a square.
QPolygonF fewCorners(int count)
{
    return rectangle(-50.0, -50.0, 100.0, 100.0).first(count);
}

/// The only item right below @p item, as one of class @p Item.
template <typename Item> Item *onlyChild(const QGraphicsItem *item)
{
    const QList<QGraphicsItem *> children = item->childItems();
    return children.size() == 1 ? dynamic_cast<Item *>(children.first()) : nullptr;
}

struct DrawnArea
{
    const char *name;
    AreaAction *(*add)(Manipulation *manipulation);
};

template <typename Action, Action *(Manipulation::*add)(ManipulationAction *)>
AreaAction *addAtTheRoot(Manipulation *manipulation)
{
    return (manipulation->*add)(manipulation->rootAction());
}

constexpr std::array areaActions{
    DrawnArea{"remove", addAtTheRoot<RemoveAction, &Manipulation::addRemoveAction>},
    DrawnArea{"crop", addAtTheRoot<CropAction, &Manipulation::addCropAction>},
    DrawnArea{"irradiation", addAtTheRoot<IrradiationAction, &Manipulation::addIrradiationAction>},
};

/// The levels of a tree that are loaded from a file.
constexpr int deepest = 500;

/// A tree of so many @p levels, the leaf included. Of joins, @p kind "join" is one graft after the
/// other on the same body; "graft" grafts all that is done onto a new body each time.
std::unique_ptr<Manipulation> chainOf(const QString &kind, int levels)
{
    auto manipulation = manipulationOf(wildType());
    manipulation->setName("chain");
    for (int level = 1; level < levels; ++level) {
        ManipulationAction *root = manipulation->rootAction();
        const double shift = level % 5;
        if (kind == "remove")
            setArea(manipulation->addRemoveAction(root),
                    rectangle(-100.0, 20.0 + shift, 200.0, 20.0));
        else if (kind == "crop")
            setArea(manipulation->addCropAction(root),
                    rectangle(-100.0 + shift, 50.0, 200.0, 100.0));
        else if (kind == "irradiation")
            setArea(manipulation->addIrradiationAction(root),
                    rectangle(-100.0, 20.0 + shift, 200.0, 20.0));
        else
            addHead(manipulation.get(), kind == "graft");
    }
    return manipulation;
}

} // namespace

class ManipulationItemTest final : public QObject
{
    Q_OBJECT

private slots:
    void leafIsThePlainWorm();
    void removeLeavesWhatLiesOutside();
    void cropLeavesWhatLiesInside();
    void areaWithoutExtentHoldsNothing_data();
    void areaWithoutExtentHoldsNothing();
    void overlappingCutsTakeTheirUnion();
    void cutBesideTheWormTakesNothing();
    void whatIsGoneStaysGone();

    void graftWithoutShiftLiesOnTheBody();
    void graftTurnsAboutItsOwnOrigin();
    void graftIsShiftedAndTurnedWithAllThatWasDoneToIt();
    void cutBehindAJoinCutsBothWorms();

    void irradiationMarksTheWormAlone();
    void irradiationBehindAGroupMarksItsRectangle_data();
    void irradiationBehindAGroupMarksItsRectangle();
    void cutTakesTheMarkAlong();

    void itemsNestAsTheActionsDo();
    void clippingItemDrawsNothingItself();
    void joinedItemsAreStackedInOrder();
    void boundsAreThoseOfItsContent();
    void irradiationColourIsYellowThatShowsTheWorm();

    void nothingIsDrawnOfNothing();
    void gapsInTheTreeAreDrawnAsNothing();
    void numbersThatCannotBeDrawnDoNoHarm();
    void drawsTheDeepestTreeThatIsLoaded();
    void drawsTreesAsDeepAsTheyAreLoaded_data();
    void drawsTreesAsDeepAsTheyAreLoaded();
    void isBuiltBelowAnItemThatIsShown();
    void needsItsTreeNoMore();
};

// --- Cuts ---

void ManipulationItemTest::leafIsThePlainWorm()
{
    const auto worm = wildType();
    const auto manipulation = manipulationOf(wildType());
    QCOMPARE(drawnProduct(*manipulation), drawnWorm(*worm));

    const ManipulationItem item(manipulation->rootAction());
    QCOMPARE(item.shape(), outlineOf(*worm));
    QVERIFY(onlyChild<MorphologyItem>(&item));
}

void ManipulationItemTest::removeLeavesWhatLiesOutside()
{
    const auto manipulation = manipulationOf(wildType());
    const QPolygonF corners = rectangle(-100.0, 40.0, 100.0, 280.0);
    setArea(manipulation->addRemoveAction(manipulation->rootAction()), corners);

    const QImage image = drawnProduct(*manipulation);
    const QImage expected = drawnOutline(outlineOf(*wildType()).subtracted(pathOf(corners)));
    QCOMPARE(pixelsOffTheEdges(image, expected), 0);
    QVERIFY(inkedPixels(image) < inkedPixels(drawnWorm(*wildType())) - 10000);
    QCOMPARE(pixel(image, {20.0, 100.0}), pixel(drawnWorm(*wildType()), {20.0, 100.0}));
}

void ManipulationItemTest::cropLeavesWhatLiesInside()
{
    const auto manipulation = manipulationOf(wildType());
    const QPolygonF corners = rectangle(-100.0, 40.0, 100.0, 280.0);
    setArea(manipulation->addCropAction(manipulation->rootAction()), corners);

    const QImage image = drawnProduct(*manipulation);
    const QImage expected = drawnOutline(outlineOf(*wildType()).intersected(pathOf(corners)));
    QCOMPARE(pixelsOffTheEdges(image, expected), 0);
    QVERIFY(inkedPixels(image) > 10000);
    QCOMPARE(pixel(image, {-20.0, 100.0}), pixel(drawnWorm(*wildType()), {-20.0, 100.0}));
}

void ManipulationItemTest::areaWithoutExtentHoldsNothing_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("corners");
    for (int action = 0; action < static_cast<int>(areaActions.size()); ++action) {
        for (int corners = 0; corners < 3; ++corners)
            QTest::addRow("%s, %d corners", areaActions[action].name, corners) << action << corners;
    }
}

void ManipulationItemTest::areaWithoutExtentHoldsNothing()
{
    QFETCH(int, action);
    QFETCH(int, corners);
    const auto manipulation = manipulationOf(wildType());
    setArea(areaActions[action].add(manipulation.get()), fewCorners(corners));

    const QImage image = drawnProduct(*manipulation);
    if (qstrcmp(areaActions[action].name, "crop") == 0)
        QCOMPARE(inkedPixels(image), 0);
    else if (qstrcmp(areaActions[action].name, "remove") == 0)
        QCOMPARE(coloursOffTheEdges(image, drawnWorm(*wildType())), 0);
    else
        QCOMPARE(image, drawnWorm(*wildType()));
}

void ManipulationItemTest::overlappingCutsTakeTheirUnion()
{
    const auto manipulation = manipulationOf(wildType());
    const QPolygonF first = rectangle(-70.0, 0.0, 140.0, 60.0);
    const QPolygonF second = rectangle(-30.0, 20.0, 130.0, 100.0);
    setArea(manipulation->addRemoveAction(manipulation->rootAction()), first);
    setArea(manipulation->addRemoveAction(manipulation->rootAction()), second);

    const QPainterPath both = pathOf(first).united(pathOf(second));
    const QImage image = drawnProduct(*manipulation);
    QCOMPARE(pixelsOffTheEdges(image, drawnOutline(outlineOf(*wildType()).subtracted(both))), 0);
    for (const QPointF &gone : {QPointF(-50.0, 30.0), {0.0, 40.0}, {0.0, 100.0}})
        QCOMPARE(pixel(image, gone).alpha(), 0);
    QCOMPARE(pixel(image, {-45.0, 90.0}).alpha(), 255);
}

void ManipulationItemTest::cutBesideTheWormTakesNothing()
{
    const auto manipulation = manipulationOf(wildType());
    setArea(manipulation->addRemoveAction(manipulation->rootAction()),
            rectangle(100.0, -50.0, 100.0, 100.0));
    QCOMPARE(coloursOffTheEdges(drawnProduct(*manipulation), drawnWorm(*wildType())), 0);
}

void ManipulationItemTest::whatIsGoneStaysGone()
{
    const auto manipulation = manipulationOf(wildType());
    setArea(manipulation->addRemoveAction(manipulation->rootAction()),
            rectangle(-30.0, -30.0, 60.0, 60.0));
    setArea(manipulation->addCropAction(manipulation->rootAction()),
            rectangle(-50.0, -50.0, 100.0, 100.0));
    manipulation->addJoinAction(manipulation->rootAction(),
                                std::make_unique<Morphology>().release());
    setArea(manipulation->addCropAction(manipulation->rootAction()),
            rectangle(-50.0, -50.0, 100.0, 100.0));

    const QImage image = drawnProduct(*manipulation);
    QCOMPARE(pixel(image, {0.0, 0.0}).alpha(), 0);
    QCOMPARE(pixel(image, {0.0, 60.0}).alpha(), 0);
    QCOMPARE(pixel(image, {0.0, 40.0}).alpha(), 255);
}

// --- Grafts ---

void ManipulationItemTest::graftWithoutShiftLiesOnTheBody()
{
    const auto manipulation = manipulationOf(wildType());
    manipulation->addJoinAction(manipulation->rootAction(), lopsidedHead().release());

    QImage expected = drawnWorm(*wildType());
    QPainter(&expected).drawImage(0, 0, drawnWorm(*lopsidedHead()));
    QCOMPARE(drawnProduct(*manipulation), expected);
}

void ManipulationItemTest::graftTurnsAboutItsOwnOrigin()
{
    const auto manipulation = manipulationOf(std::make_unique<Morphology>());
    JoinAction *join =
        manipulation->addJoinAction(manipulation->rootAction(), lopsidedHead().release());
    join->setVectX(150.0);
    join->setVectY(-50.0);
    join->setRot(std::numbers::pi);

    MorphologyItem turned(*lopsidedHead(), nullptr, false);
    turned.setPos(150.0, -50.0);
    turned.setRotation(180.0);
    const QImage image = drawnProduct(*manipulation);
    QCOMPARE(image, drawn(&turned, window));
    // The long right side points to the left now.
    QCOMPARE(pixel(image, {150.0 - 70.0, -50.0}).alpha(), 255);
    QCOMPARE(pixel(image, {150.0 + 120.0, -50.0}).alpha(), 0);
}

void ManipulationItemTest::graftIsShiftedAndTurnedWithAllThatWasDoneToIt()
{
    const auto manipulation = manipulationOf(std::make_unique<Morphology>());
    JoinAction *join =
        manipulation->addJoinAction(manipulation->rootAction(), wildType().release());
    const QPolygonF corners = rectangle(-100.0, 100.0, 200.0, 200.0);
    setArea(manipulation->addCropAction(join->fromAction2()), corners);
    join->setVectX(-80.0);
    join->setVectY(60.0);
    join->setRot(0.8);

    QTransform place;
    place.translate(-80.0, 60.0);
    place.rotateRadians(0.8);
    const QPainterPath outline = outlineOf(*wildType()).intersected(pathOf(corners));
    const QImage image = drawnProduct(*manipulation);
    QCOMPARE(pixelsOffTheEdges(image, drawnOutline(place.map(outline))), 0);
    QVERIFY(inkedPixels(image) > 10000);
}

void ManipulationItemTest::cutBehindAJoinCutsBothWorms()
{
    const auto manipulation = manipulationOf(wildType());
    manipulation->addJoinAction(manipulation->rootAction(), wildType().release())->setVectX(150.0);
    const QPolygonF corners = rectangle(-200.0, -50.0, 600.0, 100.0);
    setArea(manipulation->addRemoveAction(manipulation->rootAction()), corners);

    const QPainterPath worm = outlineOf(*wildType());
    const QPainterPath both = worm.united(worm.translated(150.0, 0.0));
    QCOMPARE(pixelsOffTheEdges(drawnProduct(*manipulation),
                               drawnOutline(both.subtracted(pathOf(corners)))),
             0);
}

// --- Irradiation ---

void ManipulationItemTest::irradiationMarksTheWormAlone()
{
    const auto manipulation = manipulationOf(wildType());
    const QPolygonF corners = rectangle(-100.0, -100.0, 200.0, 60.0);
    setArea(manipulation->addIrradiationAction(manipulation->rootAction()), corners);

    const QImage plain = drawnWorm(*wildType());
    const QImage image = drawnProduct(*manipulation);
    QCOMPARE(pixelsOffTheEdges(image, plain), 0);
    const QImage marks = differenceOf(image, plain);
    const QPainterPath place = outlineOf(*wildType()).intersected(pathOf(corners));
    QCOMPARE(pixelsOffTheEdges(marks, drawnOutline(place)), 0);
    QVERIFY(inkedPixels(marks) > 5000);
    const QColor marked = pixel(image, {20.0, -70.0});
    QVERIFY(marked != pixel(plain, {20.0, -70.0}));
    QVERIFY(marked.blue() < marked.red());
    QVERIFY(marked.blue() < marked.green());
}

void ManipulationItemTest::irradiationBehindAGroupMarksItsRectangle_data()
{
    QTest::addColumn<bool>("isJoin");
    QTest::newRow("join") << true;
    QTest::newRow("irradiation") << false;
}

void ManipulationItemTest::irradiationBehindAGroupMarksItsRectangle()
{
    QFETCH(bool, isJoin);
    const auto manipulation = manipulationOf(wildType());
    if (isJoin)
        manipulation->addJoinAction(manipulation->rootAction(), wildType().release())
            ->setVectX(200.0);
    else
        manipulation->addIrradiationAction(manipulation->rootAction());
    setArea(manipulation->addIrradiationAction(manipulation->rootAction()),
            rectangle(-400.0, 240.0, 800.0, 100.0));

    // Beside the head, which is round, within the extent of the worms, and out of it.
    const QImage image = drawnProduct(*manipulation);
    QCOMPARE(pixel(drawnWorm(*wildType()), {-55.0, 275.0}).alpha(), 0);
    QCOMPARE(pixel(image, {-55.0, 275.0}).alpha(), 150);
    QCOMPARE(pixel(image, {-55.0, 300.0}).alpha(), 0);
    QCOMPARE(pixel(image, {-70.0, 275.0}).alpha(), 0);
    QCOMPARE(pixel(image, {100.0, 275.0}).alpha(), isJoin ? 150 : 0);
}

void ManipulationItemTest::cutTakesTheMarkAlong()
{
    const auto manipulation = manipulationOf(wildType());
    setArea(manipulation->addIrradiationAction(manipulation->rootAction()),
            rectangle(-100.0, -50.0, 200.0, 100.0));
    setArea(manipulation->addRemoveAction(manipulation->rootAction()),
            rectangle(-100.0, -20.0, 200.0, 40.0));

    const QImage image = drawnProduct(*manipulation);
    QCOMPARE(pixel(image, {20.0, 0.0}).alpha(), 0);
    QVERIFY(pixel(image, {20.0, 35.0}) != pixel(drawnWorm(*wildType()), {20.0, 35.0}));
}

// --- Items ---

void ManipulationItemTest::itemsNestAsTheActionsDo()
{
    const auto manipulation = manipulationOf(wildType());
    setArea(manipulation->addRemoveAction(manipulation->rootAction()),
            rectangle(-100.0, 40.0, 100.0, 280.0));
    setArea(manipulation->addCropAction(manipulation->rootAction()),
            rectangle(-50.0, -50.0, 100.0, 200.0));

    const ManipulationItem item(manipulation->rootAction());
    const auto *crop = onlyChild<ClipPathItem>(&item);
    QVERIFY(crop);
    const auto *remove = onlyChild<ClipPathItem>(crop);
    QVERIFY(remove);
    QVERIFY(onlyChild<MorphologyItem>(remove));
    QCOMPARE(remove->shape(),
             outlineOf(*wildType()).subtracted(pathOf(rectangle(-100.0, 40.0, 100.0, 280.0))));
    QCOMPARE(crop->shape(),
             remove->shape().intersected(pathOf(rectangle(-50.0, -50.0, 100.0, 200.0))));
}

void ManipulationItemTest::clippingItemDrawsNothingItself()
{
    auto *child = new QGraphicsRectItem(0.0, 0.0, 100.0, 100.0);
    child->setBrush(Qt::red);
    QPainterPath outline;
    outline.addEllipse(10.0, 20.0, 30.0, 40.0);
    ClipPathItem item(outline, child, nullptr);

    QCOMPARE(child->parentItem(), &item);
    QCOMPARE(item.shape(), outline);
    QCOMPARE(item.boundingRect(), outline.boundingRect());
    QVERIFY(item.path().isEmpty());
    QVERIFY(item.flags() & QGraphicsItem::ItemClipsChildrenToShape);
    QCOMPARE(item.pen().style(), Qt::NoPen);
    QCOMPARE(item.brush().style(), Qt::NoBrush);
    QCOMPARE(pixelsOffTheEdges(drawn(&item, window), drawnOutline(outline)), 0);
}

void ManipulationItemTest::joinedItemsAreStackedInOrder()
{
    const auto manipulation = manipulationOf(wildType());
    JoinAction *join =
        manipulation->addJoinAction(manipulation->rootAction(), wildType().release());
    setArea(manipulation->addCropAction(join->fromAction2()), rectangle(0.0, 0.0, 50.0, 50.0));
    setArea(manipulation->addIrradiationAction(join), rectangle(0.0, 0.0, 50.0, 50.0));

    const ManipulationItem item(manipulation->rootAction());
    const auto *marked = onlyChild<QGraphicsItemGroup>(&item);
    QVERIFY(marked);
    QCOMPARE(marked->childItems().size(), 2);
    const auto *joined = dynamic_cast<QGraphicsItemGroup *>(marked->childItems().first());
    QVERIFY(joined);
    QCOMPARE(joined->childItems().size(), 2);
    QVERIFY(dynamic_cast<MorphologyItem *>(joined->childItems().first()));
    QVERIFY(dynamic_cast<ClipPathItem *>(joined->childItems().last()));

    const auto *mark = dynamic_cast<QGraphicsPathItem *>(marked->childItems().last());
    QVERIFY(mark);
    QCOMPARE(mark->pen().style(), Qt::NoPen);
    QCOMPARE(mark->brush(), QBrush(GuiConfig::radiationColor()));
}

void ManipulationItemTest::boundsAreThoseOfItsContent()
{
    const auto manipulation = manipulationOf(wildType());
    setArea(manipulation->addCropAction(manipulation->rootAction()),
            rectangle(-20.0, -30.0, 40.0, 50.0));
    const ManipulationItem cropped(manipulation->rootAction());
    QCOMPARE(cropped.boundingRect(), QRectF(-20.0, -30.0, 40.0, 50.0));
    QCOMPARE(cropped.shape().boundingRect(), cropped.boundingRect());

    manipulation->addJoinAction(manipulation->rootAction(), wildType().release());
    const ManipulationItem joined(manipulation->rootAction());
    QPainterPath rectangle;
    rectangle.addRect(joined.boundingRect());
    QCOMPARE(joined.shape(), rectangle);
}

void ManipulationItemTest::irradiationColourIsYellowThatShowsTheWorm()
{
    QCOMPARE(GuiConfig::radiationColor(), QColor(255, 254, 2, 150));
    QCOMPARE(&GuiConfig::radiationColor(), &GuiConfig::radiationColor());
}

// --- Damage ---

void ManipulationItemTest::nothingIsDrawnOfNothing()
{
    ManipulationItem item(nullptr);
    QVERIFY(item.shape().isEmpty());
    QVERIFY(item.boundingRect().isEmpty());
    QCOMPARE(inkedPixels(drawn(&item, window)), 0);
}

void ManipulationItemTest::gapsInTheTreeAreDrawnAsNothing()
{
    const auto manipulation = manipulationOf(wildType());
    auto *remove = manipulation->addRemoveAction(manipulation->rootAction());
    JoinAction *join = manipulation->addJoinAction(remove, lopsidedHead().release());
    setArea(manipulation->addIrradiationAction(join->fromAction2()), fewCorners(3));
    QVERIFY(inkedPixels(drawnProduct(*manipulation)) > inkedPixels(drawnWorm(*wildType())));

    remove->setFromAction(nullptr);
    QCOMPARE(inkedRect(drawnProduct(*manipulation)), inkedRect(drawnWorm(*lopsidedHead())));
    join->setFromAction1(nullptr);
    QCOMPARE(inkedRect(drawnProduct(*manipulation)), inkedRect(drawnWorm(*lopsidedHead())));
    join->setFromAction2(nullptr);
    QCOMPARE(inkedPixels(drawnProduct(*manipulation)), 0);
    QCOMPARE(inkedPixels(drawnProduct(*manipulationOf(nullptr))), 0);
}

void ManipulationItemTest::numbersThatCannotBeDrawnDoNoHarm()
{
    for (const double number : {infinite, -infinite, notANumber, 1e300, -1e300}) {
        const auto manipulation = manipulationOf(wildType());
        JoinAction *join =
            manipulation->addJoinAction(manipulation->rootAction(), wildType().release());
        join->setVectX(number);
        join->setVectY(number);
        join->setRot(number);
        for (const DrawnArea &area : areaActions)
            setArea(area.add(manipulation.get()),
                    {{number, 0.0}, {200.0, number}, {100.0, 100.0}, {number, number}});

        ManipulationItem item(manipulation->rootAction());
        QVERIFY(isFinite(&item));
        QVERIFY(isFinite(item.shape()));
        drawn(&item, window);
    }
}

void ManipulationItemTest::drawsTheDeepestTreeThatIsLoaded()
{
    // A small hole at each step, so that the outline grows all the time.
    const auto manipulation = manipulationOf(wildType());
    for (int depth = 1; depth < 500; ++depth) {
        const double x = -45.0 + 10.0 * (depth % 10);
        const double y = -250.0 + depth;
        setArea(manipulation->addRemoveAction(manipulation->rootAction()),
                rectangle(x, y, 3.0, 4.0));
    }
    const qsizetype left = inkedPixels(drawnProduct(*manipulation));
    const qsizetype whole = inkedPixels(drawnWorm(*wildType()));
    QVERIFY(left < whole - 3000);
    QVERIFY(left > whole - 9000);
}

void ManipulationItemTest::drawsTreesAsDeepAsTheyAreLoaded_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("levels");
    for (const char *kind : {"remove", "crop", "irradiation", "graft"})
        QTest::addRow("%s", kind) << kind << deepest;
    for (const char *kind : {"remove", "crop", "irradiation", "join"})
        QTest::addRow("%s, too many", kind) << kind << deepest + 100;
}

void ManipulationItemTest::drawsTreesAsDeepAsTheyAreLoaded()
{
    QFETCH(QString, kind);
    QFETCH(int, levels);
    TemporaryLibrary library;
    library.run("PRAGMA synchronous = OFF");
    QCOMPARE(chainOf(kind, levels)->submit(library.db()), 1);
    const Manipulation manipulation(1, library.db());
    QVERIFY(manipulation.actions().size() >= deepest);

    ManipulationItem item(manipulation.rootAction());
    const QImage image = drawn(&item, window);
    if (levels == deepest)
        QCOMPARE(pixel(image, {20.0, 100.0}).alpha(), 255); // of the worm at the far end
    // Without that worm there is nothing to cut or to mark; what is joined is there.
    const bool isJoin = kind == "join" || kind == "graft";
    QCOMPARE(inkedPixels(image) > 0, isJoin || levels == deepest);
    QCOMPARE(item.shape().isEmpty(), item.boundingRect().isEmpty());
    if (!isJoin && kind != "irradiation")
        QCOMPARE(pixel(image, {20.0, 30.0}).alpha(), 0);
}

void ManipulationItemTest::isBuiltBelowAnItemThatIsShown()
{
    QGraphicsScene scene;
    QGraphicsItem *shown = scene.addRect(0.0, 0.0, 10.0, 10.0);
    const auto manipulation = manipulationOf(wildType());
    manipulation->addJoinAction(manipulation->rootAction(), lopsidedHead().release());
    manipulation->addRemoveAction(manipulation->rootAction());

    const auto *item = new ManipulationItem(manipulation->rootAction(), shown);
    QCOMPARE(item->parentItem(), shown);
    QCOMPARE(item->scene(), &scene);
    QVERIFY(scene.itemsBoundingRect().contains(item->boundingRect()));
    QCOMPARE(scene.items(QPointF(100.0, 0.0)).isEmpty(), false);
}

void ManipulationItemTest::needsItsTreeNoMore()
{
    auto manipulation = manipulationOf(wildType());
    setArea(manipulation->addCropAction(manipulation->rootAction()), fewCorners(4));
    const QImage before = drawnProduct(*manipulation);
    ManipulationItem item(manipulation->rootAction());
    manipulation.reset();
    QCOMPARE(drawn(&item, window), before);
}

QTEST_MAIN(ManipulationItemTest)
#include "ManipulationItemTest.moc"
