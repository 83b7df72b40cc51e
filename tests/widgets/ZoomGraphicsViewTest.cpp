#include "widgets/ZoomGraphicsView.h"

#include "FileDialogAnswer.h"
#include "TurnWheel.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

using namespace Planaria;

namespace {

constexpr double step = 1.15;

QTransform upwards(double scale)
{
    return QTransform::fromScale(scale, -scale);
}

/// A view in a window, beside an edit that can take the focus.
class ViewWindow final
{
public:
    ViewWindow(bool fitLarge, bool yUp, const QSize &size = QSize(400, 300))
        : view(new ZoomGraphicsView(&window, fitLarge, yUp)), edit(new QLineEdit(&window))
    {
        view->resize(size);
        edit->setGeometry(0, size.height(), 50, 20);
        window.show();
        view->setFocus();
    }

    void add(const QRectF &rect) { view->scene()->addRect(rect, Qt::NoPen, Qt::red); }

    QWidget window;
    ZoomGraphicsView *view;
    QLineEdit *edit;
};

const QRectF small(-30.0, -20.0, 100.0, 50.0);
const QRectF wide(-500.0, 0.0, 2000.0, 100.0);
const QRectF high(0.0, 300.0, 100.0, 2000.0);

} // namespace

class ZoomGraphicsViewTest final : public QObject
{
    Q_OBJECT

private slots:
    void startsWithASceneOfItsOwn();
    void showsYInTheDirectionAskedFor_data();
    void showsYInTheDirectionAskedFor();
    void drawsSmoothly();
    void deletesItsScene();
    void keepsItsPaperWhiteAndTheSceneClear();

    void scrollsByTheWheel();
    void zoomsByTheWheelWhileControlIsHeld();
    void zoomsByOneStepHoweverFarTheWheelTurns();
    void zoomsWithoutLimits();
    void zoomsNeitherInNorOutByAWheelTurnedSideways();
    void zoomsByControlAlone();
    void endsZoomingWhenItLosesTheFocus();
    void passesNoKeyToTheItems();
    void itsMenuCanBeReadAloudEachTime();
    void leavesEscapeToTheDialogAroundIt();
    void keepsOtherKeysFromTheDialogAroundIt();

    void fitsOnlyScenesLargerThanItself_data();
    void fitsOnlyScenesLargerThanItself();
    void showsTheWholeOfASceneThatItFits();
    void takesTheItemsExtentAsTheScenes();
    void hasANullSceneRectangleForAnEmptyScene();
    void fitsAgainWhenItIsResized();
    void keepsTheZoomOfAHeldControlWhenItIsResized();
    void staysCalmWhereScrollBarsComeAndGo();

    void offersToSaveItsScene();
    void savesItsSceneAsItIsSeen_data();
    void savesItsSceneAsItIsSeen();
};

// --- The view itself ---

void ZoomGraphicsViewTest::startsWithASceneOfItsOwn()
{
    const ZoomGraphicsView view(nullptr, true, true);
    QCOMPARE(view.scene()->parent(), &view);
    QCOMPARE(view.scene()->sceneRect(), QRectF(1.0, 1.0, 1.0, 1.0));
    QVERIFY(view.scene()->items().isEmpty());
}

void ZoomGraphicsViewTest::showsYInTheDirectionAskedFor_data()
{
    QTest::addColumn<bool>("yUp");
    QTest::addColumn<QTransform>("transform");
    QTest::newRow("up") << true << QTransform(1.0, 0.0, 0.0, -1.0, 0.0, 0.0);
    QTest::newRow("down") << false << QTransform();
}

void ZoomGraphicsViewTest::showsYInTheDirectionAskedFor()
{
    QFETCH(const bool, yUp);
    QFETCH(const QTransform, transform);
    ZoomGraphicsView view(nullptr, true, yUp);
    QCOMPARE(view.transform(), transform);
    view.fitView();
    QCOMPARE(view.transform(), transform);
}

void ZoomGraphicsViewTest::drawsSmoothly()
{
    const ZoomGraphicsView view(nullptr, true, true);
    QCOMPARE(view.renderHints(),
             QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
}

void ZoomGraphicsViewTest::deletesItsScene()
{
    auto view = std::make_unique<ZoomGraphicsView>(nullptr, true, true);
    const QPointer<QGraphicsScene> scene = view->scene();
    view.reset();
    QVERIFY(scene.isNull());
}

void ZoomGraphicsViewTest::keepsItsPaperWhiteAndTheSceneClear()
{
    const QPalette light = QApplication::palette();
    QApplication::setPalette(QPalette(Qt::black));
    ViewWindow shown(true, true);
    shown.add(small);
    shown.view->fitView();
    const QImage image = shown.view->viewport()->grab().toImage();
    QApplication::setPalette(light);

    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    QCOMPARE(image.pixelColor(image.rect().center()), QColor(Qt::red));
    QCOMPARE(shown.view->scene()->backgroundBrush(), QBrush(Qt::NoBrush));
}

// --- Wheel and keys ---

void ZoomGraphicsViewTest::scrollsByTheWheel()
{
    ViewWindow shown(false, true);
    shown.add(high);
    shown.view->fitView();
    QScrollBar *bar = shown.view->verticalScrollBar();
    bar->setValue((bar->minimum() + bar->maximum()) / 2);
    const int middle = bar->value();

    turnWheel(shown.view->viewport(), wheelDown);
    const int below = bar->value();
    QVERIFY(below > middle);
    turnWheel(shown.view->viewport(), wheelUp);
    QVERIFY(bar->value() < below);
    QCOMPARE(shown.view->transform(), upwards(1.0));
}

void ZoomGraphicsViewTest::zoomsByTheWheelWhileControlIsHeld()
{
    ViewWindow shown(true, true);
    shown.add(small);

    QTest::keyPress(shown.view, Qt::Key_Control);
    turnWheel(shown.view->viewport(), wheelUp);
    QCOMPARE(shown.view->transform(), upwards(step));
    turnWheel(shown.view->viewport(), wheelDown);
    QCOMPARE(shown.view->transform(), upwards(1.0));
    turnWheel(shown.view->viewport(), wheelDown);
    QCOMPARE(shown.view->transform(), upwards(0.8695652173913044));

    QTest::keyRelease(shown.view, Qt::Key_Control);
    turnWheel(shown.view->viewport(), wheelUp);
    QCOMPARE(shown.view->transform(), upwards(0.8695652173913044));
}

void ZoomGraphicsViewTest::zoomsByOneStepHoweverFarTheWheelTurns()
{
    ViewWindow shown(true, true);
    QTest::keyPress(shown.view, Qt::Key_Control);
    turnWheel(shown.view->viewport(), QPoint(0, 1));
    QCOMPARE(shown.view->transform(), upwards(step));
    turnWheel(shown.view->viewport(), QPoint(0, 1200));
    QCOMPARE(shown.view->transform(), upwards(step * step));
    turnWheel(shown.view->viewport(), QPoint(0, -1));
    QCOMPARE(shown.view->transform(), upwards(step));
}

void ZoomGraphicsViewTest::zoomsWithoutLimits()
{
    ViewWindow shown(true, true);
    QTest::keyPress(shown.view, Qt::Key_Control);
    double expected = 1.0;
    for (int i = 0; i < 60; ++i, expected *= step)
        turnWheel(shown.view->viewport(), wheelUp);
    QVERIFY(expected > 4000.0);
    QCOMPARE(shown.view->transform().m11(), expected);
    for (int i = 0; i < 120; ++i, expected /= step)
        turnWheel(shown.view->viewport(), wheelDown);
    QVERIFY(expected < 1.0 / 4000.0);
    QCOMPARE(shown.view->transform().m11(), expected);
}

void ZoomGraphicsViewTest::zoomsNeitherInNorOutByAWheelTurnedSideways()
{
    ViewWindow shown(true, true);
    QTest::keyPress(shown.view, Qt::Key_Control);
    turnWheel(shown.view->viewport(), wheelSideways);
    turnWheel(shown.view->viewport(), -wheelSideways);
    turnWheel(shown.view->viewport(), -wheelSideways);
    QCOMPARE(shown.view->transform(), upwards(1.0));
}

void ZoomGraphicsViewTest::zoomsByControlAlone()
{
    ViewWindow shown(true, true);
    QTest::keyPress(shown.view, Qt::Key_Shift);
    turnWheel(shown.view->viewport(), wheelUp);
    QCOMPARE(shown.view->transform(), upwards(1.0));

    QTest::keyPress(shown.view, Qt::Key_Control);
    QTest::keyRelease(shown.view, Qt::Key_Shift);
    turnWheel(shown.view->viewport(), wheelUp);
    QCOMPARE(shown.view->transform(), upwards(step));
}

void ZoomGraphicsViewTest::endsZoomingWhenItLosesTheFocus()
{
    ViewWindow shown(true, true);
    QVERIFY(QTest::qWaitForWindowActive(&shown.window));
    QVERIFY(shown.view->hasFocus());
    QTest::keyPress(shown.view, Qt::Key_Control);
    shown.edit->setFocus();
    QVERIFY(!shown.view->hasFocus());

    turnWheel(shown.view->viewport(), wheelUp);
    QCOMPARE(shown.view->transform(), upwards(1.0));
    shown.view->setFocus();
    turnWheel(shown.view->viewport(), wheelUp);
    QCOMPARE(shown.view->transform(), upwards(1.0));
}

void ZoomGraphicsViewTest::passesNoKeyToTheItems()
{
    ViewWindow shown(true, true);
    QVERIFY(QTest::qWaitForWindowActive(&shown.window));
    QGraphicsTextItem *text = shown.view->scene()->addText("Worm");
    text->setTextInteractionFlags(Qt::TextEditorInteraction);
    text->setFocus();
    QVERIFY(text->hasFocus());

    QTest::keyClicks(shown.view, "abc");
    QTest::keyClick(shown.view, Qt::Key_Delete);
    QTest::keyClick(shown.view, Qt::Key_Control);
    QCOMPARE(text->toPlainText(), "Worm");
}

void ZoomGraphicsViewTest::itsMenuCanBeReadAloudEachTime()
{
    ViewWindow shown(true, true);
    QVERIFY(QTest::qWaitForWindowExposed(&shown.window));
    QStringList readAloud;
    QTimer timer;
    timer.callOnTimeout([&readAloud] {
        QWidget *menu = QApplication::activePopupWidget();
        if (!menu)
            return;
        const QAccessibleInterface *entry = QAccessible::queryAccessibleInterface(menu)->child(0);
        readAloud += entry && entry->isValid() ? entry->text(QAccessible::Name) : "nothing";
        menu->close();
    });
    timer.start(10);
    for (int i = 0; i < 2; ++i)
        QTest::mouseClick(shown.window.windowHandle(), Qt::RightButton, {}, QPoint(20, 20));
    QCOMPARE(readAloud, QStringList({"Save image...", "Save image..."}));
}

void ZoomGraphicsViewTest::leavesEscapeToTheDialogAroundIt()
{
    QDialog dialog;
    auto *view = new ZoomGraphicsView(&dialog, true, true);
    dialog.show();
    QVERIFY(dialog.isVisible());
    QTest::keyClick(view, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

void ZoomGraphicsViewTest::keepsOtherKeysFromTheDialogAroundIt()
{
    QDialog dialog;
    auto *view = new ZoomGraphicsView(&dialog, true, true);
    auto *button = new QPushButton(&dialog);
    button->setDefault(true);
    const QSignalSpy clicked(button, &QPushButton::clicked);
    dialog.show();
    view->setFocus();

    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Left,
                              Qt::Key_Right, Qt::Key_Up, Qt::Key_Down})
        QTest::keyClick(view, key);
    QCOMPARE(clicked.size(), 0);
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.focusWidget(), view);

    QTest::keyClick(&dialog, Qt::Key_Return); // is what would press the button
    QCOMPARE(clicked.size(), 1);
}

// --- Fitting ---

void ZoomGraphicsViewTest::fitsOnlyScenesLargerThanItself_data()
{
    QTest::addColumn<bool>("fitLarge");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<bool>("fitted");
    QTest::newRow("small") << true << small << false;
    QTest::newRow("just as large") << true << QRectF(0.0, 0.0, 400.0, 300.0) << false;
    QTest::newRow("a little wider") << true << QRectF(0.0, 0.0, 401.0, 10.0) << true;
    QTest::newRow("a little higher") << true << QRectF(0.0, 0.0, 10.0, 301.0) << true;
    QTest::newRow("wide") << true << wide << true;
    QTest::newRow("high") << true << high << true;
    QTest::newRow("small, in a view that never fits") << false << small << false;
    QTest::newRow("wide, in a view that never fits") << false << wide << false;
}

void ZoomGraphicsViewTest::fitsOnlyScenesLargerThanItself()
{
    QFETCH(const bool, fitLarge);
    QFETCH(const QRectF, rect);
    QFETCH(const bool, fitted);
    ViewWindow shown(fitLarge, true);
    shown.add(rect);
    shown.view->fitView();

    const QTransform transform = shown.view->transform();
    QCOMPARE(transform.m22(), -transform.m11());
    if (fitted)
        QVERIFY(transform.m11() < 1.0);
    else
        QCOMPARE(transform, upwards(1.0));
}

void ZoomGraphicsViewTest::showsTheWholeOfASceneThatItFits()
{
    for (const QRectF &rect : {wide, high}) {
        ViewWindow shown(true, true);
        shown.add(rect);
        shown.view->fitView();

        const QRect seen = shown.view->mapFromScene(rect).boundingRect();
        const QRect viewport = shown.view->viewport()->rect();
        QVERIFY(viewport.contains(seen));
        QVERIFY(seen.width() > viewport.width() - 10 || seen.height() > viewport.height() - 10);
    }
}

void ZoomGraphicsViewTest::takesTheItemsExtentAsTheScenes()
{
    for (const bool fitLarge : {true, false}) {
        ViewWindow shown(fitLarge, true);
        shown.add(small);
        shown.add(wide);
        shown.view->fitView();
        QCOMPARE(shown.view->scene()->sceneRect(), small | wide);
        shown.view->scene()->clear();
        shown.add(small);
        shown.view->fitView();
        QCOMPARE(shown.view->scene()->sceneRect(), small);
    }
}

void ZoomGraphicsViewTest::hasANullSceneRectangleForAnEmptyScene()
{
    ZoomGraphicsView view(nullptr, true, true);
    view.fitView();
    QVERIFY(view.scene()->sceneRect().isNull());
    QCOMPARE(view.transform(), upwards(1.0));
}

void ZoomGraphicsViewTest::fitsAgainWhenItIsResized()
{
    ViewWindow shown(true, true);
    shown.add(QRectF(0.0, 0.0, 600.0, 600.0));
    shown.view->fitView();
    const double fitted = shown.view->transform().m11();

    QTest::keyPress(shown.view, Qt::Key_Control);
    turnWheel(shown.view->viewport(), wheelUp);
    QTest::keyRelease(shown.view, Qt::Key_Control);
    QCOMPARE(shown.view->transform().m11(), fitted * step);

    shown.view->resize(410, 300); // as high as before, so the scene fits as before
    QCOMPARE(shown.view->transform(), upwards(fitted));
    shown.view->resize(200, 200);
    QVERIFY(shown.view->transform().m11() < fitted);
    shown.view->resize(700, 700);
    QCOMPARE(shown.view->transform(), upwards(1.0));
}

void ZoomGraphicsViewTest::keepsTheZoomOfAHeldControlWhenItIsResized()
{
    ViewWindow shown(true, true);
    shown.add(small);
    shown.view->fitView();
    QTest::keyPress(shown.view, Qt::Key_Control);
    turnWheel(shown.view->viewport(), wheelUp);

    shown.view->resize(350, 280);
    QCOMPARE(shown.view->transform(), upwards(step));
    QTest::keyRelease(shown.view, Qt::Key_Control);
    QCOMPARE(shown.view->transform(), upwards(step));
    shown.view->resize(400, 300);
    QCOMPARE(shown.view->transform(), upwards(1.0));
}

void ZoomGraphicsViewTest::staysCalmWhereScrollBarsComeAndGo()
{
    for (const bool fitLarge : {true, false}) {
        ViewWindow shown(fitLarge, true);
        shown.view->setFrameShape(QFrame::NoFrame);
        shown.add(QRectF(0.0, 0.0, 300.0, 300.0));
        for (int side = 280; side < 330; ++side) {
            shown.view->resize(side, side);
            const double scale = shown.view->transform().m11();
            QCOMPARE(scale < 1.0, fitLarge && side < 300);
            QCOMPARE(shown.view->scene()->sceneRect(), QRectF(0.0, 0.0, 300.0, 300.0));
        }
    }
}

// --- Saving ---

void ZoomGraphicsViewTest::offersToSaveItsScene()
{
    const ZoomGraphicsView view(nullptr, true, true);
    QCOMPARE(view.contextMenuPolicy(), Qt::ActionsContextMenu);
    QCOMPARE(view.actions().size(), 1);
    const QAction *action = view.actions().constFirst();
    QCOMPARE(action->text(), "Save image...");
    const QPixmap icon(":/Images/famfamfam_silk_icons/picture_save.png");
    QVERIFY(!icon.isNull());
    QCOMPARE(action->icon().pixmap(icon.size()).toImage(), icon.toImage());
}

void ZoomGraphicsViewTest::savesItsSceneAsItIsSeen_data()
{
    QTest::addColumn<bool>("yUp");
    QTest::addColumn<QColor>("top");
    QTest::newRow("y points up") << true << QColor(Qt::blue);
    QTest::newRow("y points down") << false << QColor(Qt::red);
}

void ZoomGraphicsViewTest::savesItsSceneAsItIsSeen()
{
    QFETCH(const bool, yUp);
    QFETCH(const QColor, top);
    const QTemporaryDir folder;
    ViewWindow shown(true, yUp);
    shown.view->scene()->addRect(QRectF(0.0, 0.0, 20.0, 10.0), Qt::NoPen, Qt::red);
    shown.view->scene()->addRect(QRectF(0.0, 10.0, 20.0, 10.0), Qt::NoPen, Qt::blue);

    ModalAnswerer answerer;
    const auto seen = expectFileDialog(&answerer, folder.filePath("scene.png"));
    shown.view->actions().constFirst()->trigger();
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->parent, &shown.window);
    const QImage image(folder.filePath("scene.png"));
    QCOMPARE(image.size(), QSize(40, 40));
    QCOMPARE(image.pixelColor(20, 10), top);
}

QTEST_MAIN(ZoomGraphicsViewTest)
#include "ZoomGraphicsViewTest.moc"
