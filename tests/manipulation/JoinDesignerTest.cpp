#include "manipulation/JoinDesigner.h"

#include "manipulation/ManipulationItem.h"
#include "manipulation/Pointer.h"
#include "manipulation/SingleRegionWorm.h"
#include "model/Angles.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"

#include <QAction>
#include <QDialog>
#include <QGraphicsScene>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <limits>
#include <numbers>

using namespace Planaria;

namespace {

constexpr double pi = std::numbers::pi;
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Where an item lies, x and y, and how it is turned, degrees.
using Place = QList<double>;

Place placeOf(const QGraphicsItem *item)
{
    return {item->x(), item->y(), item->rotation()};
}

/// 80 wide and 60 high.
std::unique_ptr<Morphology> smallWorm()
{
    auto worm = std::make_unique<Morphology>();
    worm->addRegion(headType())->setParams({40.0, 30.0, 40.0, 30.0});
    return worm;
}

/// The turn from @p from to @p to around @p centre, radians, less than half of a full one.
double swept(const QPointF &centre, const QPointF &from, const QPointF &to)
{
    const QPointF a = from - centre;
    const QPointF b = to - centre;
    return std::atan2(a.x() * b.y() - a.y() * b.x(), QPointF::dotProduct(a, b));
}

} // namespace

/// Works on a small graft whose origin lies at (100, 150), above a body around (0, 0), unless a
/// test says otherwise.
class JoinDesignerTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void putsTheGraftWhereItsActionSays_data();
    void putsTheGraftWhereItsActionSays();
    void drawsTheGraftOverItsBody();
    void showsAGraftUpsideDown();
    void leavesTheActionAsItWasWhenItIsSet_data();
    void leavesTheActionAsItWasWhenItIsSet();
    void offersItsImageOnly();
    void namesWhatItShows();

    void movesTheGraftThatIsDragged();
    void movesATurnedGraftThatIsDragged();
    void movesAGraftOfSeveralParts();
    void leavesTheGraftAtAClick();
    void turnsTheGraftByADragElsewhere_data();
    void turnsTheGraftByADragElsewhere();
    void turnsByEachStep();
    void turnsWithoutALimit();
    void turnsBackAllTheWayAcrossTheZeroDirection();
    void endsATurnByTheNextPress();
    void endsATurnByTheRightButton();
    void endsATurnWhereTheMenuComesUp();
    void takesASecondQuickPressForAPress();
    void tellsOfAChange();
    void writesAtOnce();
    void writesWhateverMovesTheGraft();

    void clearsItself();
    void showsOneActionAfterAnother();
    void keepsItsDialogOpenAtEscapeInTheMidstOfADrag_data();
    void keepsItsDialogOpenAtEscapeInTheMidstOfADrag();
    void keepsNumbersThatCannotBeDrawn_data();
    void keepsNumbersThatCannotBeDrawn();
    void replacesThemWhereTheUserDoes();
    void bearsMissingInputs();
    void bearsAMouseWithoutAnAction();

private:
    void place(double x, double y, double rot);
    /// An event of the left button, without the loop in which the scene tells of its changes.
    void send(QEvent::Type type, const QPointF &point) const;
    [[nodiscard]] QGraphicsItem *body() const { return products().first(); }
    [[nodiscard]] QGraphicsItem *graft() const { return products().last(); }
    [[nodiscard]] QList<QGraphicsItem *> products() const;

    static constexpr QPointF origin{100.0, 150.0}; // of the graft
    static constexpr QPointF offGraft{200.0, 150.0};

    std::unique_ptr<Manipulation> manipulation;
    JoinAction *action = nullptr;
    std::unique_ptr<QDialog> dialog;
    JoinDesigner *view = nullptr; // owned by the dialog
    std::unique_ptr<Pointer> pointer;
    std::unique_ptr<QSignalSpy> changes;
};

void JoinDesignerTest::init()
{
    manipulation = std::make_unique<Manipulation>(singleRegionWorm().release());
    action = manipulation->addJoinAction(manipulation->rootAction(), smallWorm().release());

    dialog = std::make_unique<QDialog>();
    view = new JoinDesigner(dialog.get());
    (new QVBoxLayout(dialog.get()))->addWidget(view);
    pointer = std::make_unique<Pointer>(view);
    changes = std::make_unique<QSignalSpy>(view, &JoinDesigner::joinChanged);
    dialog->resize(600, 600);
    dialog->show();
    QApplication::processEvents();
    place(origin.x(), origin.y(), 0.0);
}

void JoinDesignerTest::cleanup()
{
    dialog.reset();
}

void JoinDesignerTest::place(double x, double y, double rot)
{
    action->setVectX(x);
    action->setVectY(y);
    action->setRot(rot);
    view->setJoinAction(action);
    QApplication::processEvents();
    changes->clear();
}

void JoinDesignerTest::send(QEvent::Type type, const QPointF &point) const
{
    const QPoint pos = pointer->placeOf(point);
    QMouseEvent event(type, pos, view->viewport()->mapToGlobal(pos),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &event);
}

QList<QGraphicsItem *> JoinDesignerTest::products() const
{
    QList<QGraphicsItem *> found;
    for (QGraphicsItem *item : view->scene()->items(Qt::AscendingOrder)) {
        if (!item->parentItem() && dynamic_cast<ManipulationItem *>(item))
            found += item;
    }
    return found;
}

// --- What it shows ---

void JoinDesignerTest::putsTheGraftWhereItsActionSays_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("rot");
    QTest::addColumn<double>("degrees");
    QTest::newRow("new") << 0.0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("shifted") << 12.5 << -30.0 << 0.0 << 0.0;
    QTest::newRow("a quarter turn") << 0.0 << 10.0 << 0.5 * pi << 90.0;
    QTest::newRow("upside down") << 100.0 << 150.0 << pi << 180.0;
    QTest::newRow("more than a full turn") << 0.0 << 0.0 << 5.0 * pi << 900.0;
    QTest::newRow("backwards") << 0.0 << 0.0 << -0.25 * pi << -45.0;
}

void JoinDesignerTest::putsTheGraftWhereItsActionSays()
{
    QFETCH(const double, x);
    QFETCH(const double, y);
    QFETCH(const double, rot);
    QFETCH(const double, degrees);
    place(x, y, rot);
    QCOMPARE(placeOf(body()), Place({0.0, 0.0, 0.0}));
    QCOMPARE(placeOf(graft()), Place({x, y, degrees}));
}

void JoinDesignerTest::drawsTheGraftOverItsBody()
{
    QCOMPARE(products().size(), 2);
    QCOMPARE(body()->shape().boundingRect().size(), QSizeF(301.0, 201.0));
    QCOMPARE(graft()->shape().boundingRect().size(), QSizeF(81.0, 61.0));
    QCOMPARE(body()->flags() & QGraphicsItem::ItemIsMovable, QGraphicsItem::GraphicsItemFlags());
    QVERIFY(graft()->flags() & QGraphicsItem::ItemIsMovable);
    QVERIFY(view->transform().m22() < 0.0); // +y upwards
    QVERIFY(view->sceneRect().contains(QRectF(-150.0, -100.0, 290.0, 280.0)));
}

void JoinDesignerTest::showsAGraftUpsideDown()
{
    place(0.0, 150.0, pi);
    const QPointF top = graft()->mapToScene(0.0, 30.0);
    QVERIFY(Angles::length(top - QPointF(0.0, 120.0)) < 1e-9);
}

void JoinDesignerTest::leavesTheActionAsItWasWhenItIsSet_data()
{
    QTest::addColumn<double>("rot");
    for (const double rot : {0.0, 0.1, 1.0, 2.0, pi, 5.0, -0.7, 100.0})
        QTest::newRow(qPrintable(QString::number(rot))) << rot;
}

void JoinDesignerTest::leavesTheActionAsItWasWhenItIsSet()
{
    QFETCH(const double, rot);
    place(0.1, 0.2, rot);
    view->productChanged({});
    QVERIFY(action->vectX() == 0.1);
    QVERIFY(action->vectY() == 0.2);
    QVERIFY(action->rot() == rot);
}

void JoinDesignerTest::offersItsImageOnly()
{
    QCOMPARE(view->actions().size(), 1);
    QCOMPARE(view->actions().first()->text(), "Save image...");
    QCOMPARE(pointer->menuAt(origin), QStringList{"Save image..."});
}

void JoinDesignerTest::namesWhatItShows()
{
    QCOMPARE(view->accessibleName(), "Graft on its body");
    view->clear();
    QCOMPARE(view->accessibleName(), "No join");
}

// --- Moving ---

void JoinDesignerTest::movesTheGraftThatIsDragged()
{
    place(origin.x(), origin.y(), 1.0);
    pointer->drag({origin, origin + QPointF(-20.0, 5.0), origin + QPointF(-50.0, 30.0)});
    QCOMPARE(action->vectX(), 50.0);
    QCOMPARE(action->vectY(), 180.0);
    QVERIFY(action->rot() == 1.0);
    QApplication::processEvents();
    QVERIFY(action->rot() == 1.0);
    QCOMPARE(graft()->pos(), QPointF(50.0, 180.0));
    QCOMPARE(placeOf(body()), Place({0.0, 0.0, 0.0}));
}

void JoinDesignerTest::movesATurnedGraftThatIsDragged()
{
    place(origin.x(), origin.y(), 0.5 * pi);
    const QPointF side(100.0, 185.0); // on the graft only as it is turned
    pointer->drag({side, side + QPointF(10.0, 0.0)});
    QCOMPARE(action->vectX(), 110.0);
    QCOMPARE(action->vectY(), 150.0);
    QVERIFY(action->rot() == 0.5 * pi);
}

void JoinDesignerTest::movesAGraftOfSeveralParts()
{
    manipulation->addJoinAction(action->fromAction2(), smallWorm().release());
    AreaAction *mark = manipulation->addIrradiationAction(action->fromAction2());
    for (const QPointF &corner : {QPointF(-20.0, -20.0), QPointF(20.0, -20.0), QPointF(0.0, 20.0)})
        mark->addAreaPoint(corner);
    place(origin.x(), origin.y(), 0.0);
    pointer->drag({origin, origin + QPointF(7.0, 8.0)});
    QCOMPARE(QPointF(action->vectX(), action->vectY()), origin + QPointF(7.0, 8.0));
    QCOMPARE(action->rot(), 0.0);
}

void JoinDesignerTest::leavesTheGraftAtAClick()
{
    place(origin.x(), origin.y(), 0.3);
    pointer->click(origin);
    pointer->click(offGraft);
    QApplication::processEvents();
    QCOMPARE(QPointF(action->vectX(), action->vectY()), origin);
    QVERIFY(action->rot() == 0.3);
}

// --- Turning ---

void JoinDesignerTest::turnsTheGraftByADragElsewhere_data()
{
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("to");
    QTest::newRow("counter-clockwise, on the paper") << offGraft << origin + QPointF(60.0, 60.0);
    QTest::newRow("clockwise, on the paper")
        << origin + QPointF(0.0, 100.0) << origin + QPointF(80.0, 40.0);
    QTest::newRow("from the body") << QPointF(-50.0, 0.0) << QPointF(50.0, -20.0);
    QTest::newRow("to the graft") << offGraft << origin + QPointF(0.0, 10.0);
}

void JoinDesignerTest::turnsTheGraftByADragElsewhere()
{
    QFETCH(const QPointF, from);
    QFETCH(const QPointF, to);
    place(origin.x(), origin.y(), 0.25);
    pointer->drag({from, to});
    const double angle = swept(origin, pointer->at(from), pointer->at(to));
    QVERIFY(std::abs(angle) > 0.1);
    QVERIFY(std::abs(action->rot() - 0.25 - angle) < 1e-9);
    QVERIFY(std::abs(graft()->rotation() - (0.25 + angle) * 180.0 / pi) < 1e-9);
    QCOMPARE(graft()->pos(), origin);
    QCOMPARE(QPointF(action->vectX(), action->vectY()), origin);
    QCOMPARE(placeOf(body()), Place({0.0, 0.0, 0.0}));
}

void JoinDesignerTest::turnsByEachStep()
{
    const QPointF start = pointer->at(offGraft);
    pointer->press(offGraft);
    for (const double angle : {0.5, 1.0, 1.5, 2.0, 2.5}) {
        const QPointF place = origin + 80.0 * Angles::direction(angle);
        pointer->move(place);
        const double expected = swept(origin, start, pointer->at(place));
        QVERIFY(std::abs(action->rot() - expected) < 1e-9);
    }
    pointer->release(origin);
}

void JoinDesignerTest::turnsWithoutALimit()
{
    for (int turn = 0; turn < 3; ++turn)
        pointer->drag({origin + 80.0 * Angles::direction(0.2), origin + QPointF(-80.0, 0.0),
                       origin + 80.0 * Angles::direction(6.0)});
    QVERIFY(std::abs(action->rot() - 3.0 * 5.8) < 0.2);
    QCOMPARE(graft()->rotation(), action->rot() * 180.0 / pi);
}

void JoinDesignerTest::turnsBackAllTheWayAcrossTheZeroDirection()
{
    const QPointF above = origin + QPointF(80.0, 20.0);
    const QPointF below = origin + QPointF(80.0, -20.0);
    pointer->drag({above, below});
    const double angle = swept(origin, pointer->at(above), pointer->at(below));
    QVERIFY(angle < 0.0);
    QVERIFY(std::abs(action->rot() - (Angles::fullTurn + angle)) < 1e-9);
}

void JoinDesignerTest::endsATurnByTheNextPress()
{
    pointer->drag({offGraft, origin + QPointF(60.0, 60.0)});
    const double rot = action->rot();
    QVERIFY(rot > 0.0);
    pointer->drag({origin, origin + QPointF(0.0, 20.0)});
    QCOMPARE(action->rot(), rot);
    QCOMPARE(action->vectY(), 170.0);
}

void JoinDesignerTest::endsATurnByTheRightButton()
{
    pointer->press(offGraft);
    pointer->move(origin + QPointF(60.0, 60.0));
    const double rot = action->rot();
    QVERIFY(rot > 0.0);
    pointer->press(origin + QPointF(60.0, 60.0), Qt::RightButton);
    pointer->move(origin + QPointF(0.0, 80.0));
    QCOMPARE(action->rot(), rot);
    QCOMPARE(QPointF(action->vectX(), action->vectY()), origin);
}

void JoinDesignerTest::endsATurnWhereTheMenuComesUp()
{
    QCOMPARE(pointer->menuAt(origin).size(), 1);
    pointer->drag({offGraft, origin + QPointF(60.0, 60.0)}); // the graft is not held any more
    QVERIFY(action->rot() > 0.0);
    QCOMPARE(QPointF(action->vectX(), action->vectY()), origin);
    pointer->drag({origin, origin + QPointF(5.0, 0.0)});
    QCOMPARE(action->vectX(), 105.0);
}

void JoinDesignerTest::takesASecondQuickPressForAPress()
{
    pointer->click(offGraft);
    send(QEvent::MouseButtonDblClick, origin);
    send(QEvent::MouseMove, origin + QPointF(0.0, 10.0));
    pointer->release(origin);
    QCOMPARE(action->rot(), 0.0);
    QCOMPARE(action->vectY(), 160.0);

    send(QEvent::MouseButtonDblClick, offGraft + QPointF(0.0, 20.0));
    send(QEvent::MouseMove, origin + QPointF(60.0, 60.0));
    pointer->release(origin);
    QVERIFY(action->rot() > 0.5);
    QCOMPARE(action->vectY(), 160.0);
}

void JoinDesignerTest::tellsOfAChange()
{
    QCOMPARE(changes->size(), 0);
    pointer->drag({origin, origin + QPointF(10.0, 0.0)});
    QTRY_VERIFY(!changes->isEmpty());
    changes->clear();
    pointer->drag({offGraft, origin + QPointF(60.0, 60.0)});
    QTRY_VERIFY(!changes->isEmpty());
    view->clear();
    changes->clear();
    view->productChanged({});
    QCOMPARE(changes->size(), 0);
}

void JoinDesignerTest::writesAtOnce()
{
    // As when the next action is shown before the scene has told of the change.
    send(QEvent::MouseButtonPress, origin);
    send(QEvent::MouseMove, origin + QPointF(25.0, 0.0));
    view->clear();
    QCOMPARE(action->vectX(), 125.0);
}

void JoinDesignerTest::writesWhateverMovesTheGraft()
{
    graft()->setPos(-10.0, -20.0);
    graft()->setRotation(-90.0);
    QTRY_VERIFY(!changes->isEmpty());
    QCOMPARE(QPointF(action->vectX(), action->vectY()), QPointF(-10.0, -20.0));
    QCOMPARE(action->rot(), -0.5 * pi);
}

// --- One action after another ---

void JoinDesignerTest::clearsItself()
{
    view->clear();
    QCOMPARE(view->scene()->items().size(), 0);
    QApplication::processEvents();
    QCOMPARE(changes->size(), 0);
    QCOMPARE(QPointF(action->vectX(), action->vectY()), origin);
    view->setJoinAction(action);
    QCOMPARE(products().size(), 2);
    view->setJoinAction(nullptr);
    QCOMPARE(view->scene()->items().size(), 0);
}

void JoinDesignerTest::showsOneActionAfterAnother()
{
    JoinAction *second = manipulation->addJoinAction(action, smallWorm().release());
    second->setVectX(-100.0);
    second->setVectY(-150.0);
    view->setJoinAction(second);
    QCOMPARE(products().size(), 2);
    QCOMPARE(graft()->pos(), QPointF(-100.0, -150.0));
    pointer->drag({{-100.0, -150.0}, {-120.0, -150.0}});
    QCOMPARE(second->vectX(), -120.0);
    QCOMPARE(QPointF(action->vectX(), action->vectY()), origin);
}

// --- Hard use ---

void JoinDesignerTest::keepsItsDialogOpenAtEscapeInTheMidstOfADrag_data()
{
    QTest::addColumn<QPointF>("start");
    QTest::newRow("moving") << origin;
    QTest::newRow("turning") << offGraft;
}

void JoinDesignerTest::keepsItsDialogOpenAtEscapeInTheMidstOfADrag()
{
    QFETCH(const QPointF, start);
    pointer->press(start);
    pointer->move(start + QPointF(0.0, 10.0));
    QTest::keyClick(view, Qt::Key_Escape);
    QVERIFY(dialog->isVisible());
    pointer->move(start + QPointF(0.0, 20.0));
    pointer->release(start + QPointF(0.0, 20.0));
    QVERIFY(action->vectY() == 170.0 || action->rot() > 0.1);
}

void JoinDesignerTest::keepsNumbersThatCannotBeDrawn_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("rot");
    QTest::addColumn<Place>("shown");
    QTest::newRow("no shift") << notANumber << infinite << 0.5 * pi << Place({0.0, 0.0, 90.0});
    QTest::newRow("no rotation") << 10.0 << 20.0 << notANumber << Place({10.0, 20.0, 0.0});
    QTest::newRow("infinite rotation") << 10.0 << 20.0 << -infinite << Place({10.0, 20.0, 0.0});
    QTest::newRow("far away") << 1e300 << -1e300 << 0.0 << Place({1e6, -1e6, 0.0});
}

void JoinDesignerTest::keepsNumbersThatCannotBeDrawn()
{
    QFETCH(const double, x);
    QFETCH(const double, y);
    QFETCH(const double, rot);
    QFETCH(const Place, shown);
    place(x, y, rot);
    QCOMPARE(placeOf(graft()), shown);
    QVERIFY(!view->grab().isNull());
    view->productChanged({});
    QCOMPARE(action->vectX(), x);
    QCOMPARE(action->vectY(), y);
    QCOMPARE(action->rot(), rot);
}

void JoinDesignerTest::replacesThemWhereTheUserDoes()
{
    place(notANumber, 150.0, notANumber);
    pointer->drag({{0.0, 150.0}, {30.0, 150.0}});
    QCOMPARE(action->vectX(), 30.0);
    QCOMPARE(action->vectY(), 150.0);
    QCOMPARE(action->rot(), notANumber);
    pointer->drag({{130.0, 150.0}, {100.0, 220.0}});
    QVERIFY(std::abs(action->rot() - Angles::quarterTurn / 2.0) < 0.1);
}

void JoinDesignerTest::bearsMissingInputs()
{
    view->clear();
    ManipulationAction *first = action->fromAction1();
    ManipulationAction *second = action->fromAction2();
    action->setFromAction2(nullptr);
    view->setJoinAction(action);
    pointer->drag({{0.0, 0.0}, {50.0, 50.0}});
    action->setFromAction1(nullptr);
    view->setJoinAction(action);
    pointer->drag({{0.0, 0.0}, {50.0, 50.0}});
    QCOMPARE(QPointF(action->vectX(), action->vectY()), origin);
    view->clear();
    action->setFromAction1(first);
    action->setFromAction2(second);
}

void JoinDesignerTest::bearsAMouseWithoutAnAction()
{
    view->clear();
    pointer->drag({{0.0, 0.0}, {50.0, 50.0}});
    QTest::mouseDClick(view->viewport(), Qt::LeftButton);
    QCOMPARE(QPointF(action->vectX(), action->vectY()), origin);
    QCOMPARE(changes->size(), 0);

    JoinDesigner fresh;
    QTest::mouseClick(fresh.viewport(), Qt::LeftButton);
    QCOMPARE(fresh.scene()->items().size(), 0);
}

QTEST_MAIN(JoinDesignerTest)
#include "JoinDesignerTest.moc"
