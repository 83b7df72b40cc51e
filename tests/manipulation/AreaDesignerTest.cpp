#include "manipulation/AreaDesigner.h"

#include "manipulation/AreaPoint.h"
#include "manipulation/CropDesigner.h"
#include "manipulation/IrradiationDesigner.h"
#include "manipulation/ManipulationItem.h"
#include "manipulation/Pointer.h"
#include "manipulation/RemoveDesigner.h"
#include "manipulation/SingleRegionWorm.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/Manipulation.h"
#include "model/RemoveAction.h"
#include "support/DrawnWorm.h"

#include <QAction>
#include <QDialog>
#include <QGraphicsScene>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <limits>

namespace Planaria {

namespace {

const QList<QPointF> square{{50.0, 50.0}, {-50.0, 50.0}, {-50.0, -50.0}, {50.0, -50.0}};
const QList<QPointF> triangle{{0.0, 60.0}, {-80.0, -40.0}, {80.0, -40.0}};

/// One of the three designers under the names that its form knows, and what it has of its own.
struct Kind
{
    std::function<AreaAction *(Manipulation *)> addAction;
    std::function<AreaDesigner *(QWidget *)> create;
    std::function<void(AreaDesigner *, AreaAction *)> setAction;
    std::function<void(AreaDesigner *)> createSquare;
    std::function<void(AreaDesigner *)> areaPointChanged;
    std::function<std::unique_ptr<QSignalSpy>(AreaDesigner *)> spy;
    QString squareText;
    QString removePointsText;
    bool shadowsOutside = false;
    QColor shadowColor;
    QString accessibleName;
};

template <typename Designer, typename Action> struct Names
{
    Action *(Manipulation::*add)(ManipulationAction *);
    void (Designer::*set)(Action *);
    void (Designer::*square)();
    void (Designer::*pointChanged)();
    void (Designer::*changed)();
};

template <typename Designer, typename Action> Kind kindOf(const Names<Designer, Action> &names)
{
    const auto own = [](AreaDesigner *view) { return static_cast<Designer *>(view); };
    Kind kind;
    kind.addAction = [=](Manipulation *tree) { return (tree->*names.add)(tree->rootAction()); };
    kind.create = [](QWidget *parent) { return new Designer(parent); };
    kind.setAction = [=](AreaDesigner *view, AreaAction *action) {
        (own(view)->*names.set)(static_cast<Action *>(action));
    };
    kind.createSquare = [=](AreaDesigner *view) { (own(view)->*names.square)(); };
    kind.areaPointChanged = [=](AreaDesigner *view) { (own(view)->*names.pointChanged)(); };
    kind.spy = [=](AreaDesigner *view) {
        return std::make_unique<QSignalSpy>(own(view), names.changed);
    };
    return kind;
}

Kind removing()
{
    Kind kind = kindOf<RemoveDesigner, RemoveAction>(
        {&Manipulation::addRemoveAction, &RemoveDesigner::setRemoveAction,
         &RemoveDesigner::createSquareRemove, &RemoveDesigner::removeAreaPointChanged,
         &RemoveDesigner::removeChanged});
    kind.squareText = "Create &square cut";
    kind.removePointsText = "&Remove points";
    kind.shadowColor = QColor(255, 255, 255, 200);
    kind.accessibleName = "Area to cut away: 4 points";
    return kind;
}

Kind cropping()
{
    Kind kind = kindOf<CropDesigner, CropAction>(
        {&Manipulation::addCropAction, &CropDesigner::setCropAction,
         &CropDesigner::createSquareCrop, &CropDesigner::cropAreaPointChanged,
         &CropDesigner::cropChanged});
    kind.squareText = "Create &square crop";
    kind.removePointsText = "Remove points";
    kind.shadowsOutside = true;
    kind.shadowColor = QColor(255, 255, 255, 200);
    kind.accessibleName = "Area to keep: 4 points";
    return kind;
}

Kind irradiating()
{
    Kind kind = kindOf<IrradiationDesigner, IrradiationAction>(
        {&Manipulation::addIrradiationAction, &IrradiationDesigner::setIrradiationAction,
         &IrradiationDesigner::createSquareIrradiation,
         &IrradiationDesigner::irradiationAreaPointChanged,
         &IrradiationDesigner::irradiationChanged});
    kind.squareText = "Create &square irradiation";
    kind.removePointsText = "Remove points";
    kind.shadowColor = QColor(255, 254, 2, 150);
    kind.accessibleName = "Area to irradiate: 4 points";
    return kind;
}

/// A designer on an action with the corners of an area, on top of a worm, in a dialog.
class Desk final
{
public:
    explicit Desk(Kind shown, const QList<QPointF> &corners = square)
        : kind(std::move(shown)), manipulation(singleRegionWorm().release()),
          action(kind.addAction(&manipulation)), view(kind.create(&dialog)), pointer(view),
          changes(kind.spy(view))
    {
        for (const QPointF &corner : corners)
            action->addAreaPoint(corner);
        auto *layout = new QVBoxLayout(&dialog);
        layout->addWidget(view);
        dialog.resize(500, 500);
        dialog.show();
        QApplication::processEvents();
        kind.setAction(view, action);
    }

    [[nodiscard]] bool activate() { return QTest::qWaitForWindowActive(&dialog); }

    // --- What is to be seen ---

    template <typename Item> [[nodiscard]] QList<Item *> items() const
    {
        QList<Item *> found;
        for (QGraphicsItem *item : view->scene()->items(Qt::AscendingOrder)) {
            if (auto *wanted = dynamic_cast<Item *>(item); wanted && !item->parentItem())
                found += wanted;
        }
        return found;
    }
    template <typename Item> [[nodiscard]] Item *item() const { return items<Item>().value(0); }

    [[nodiscard]] AreaPoint *handleAt(const QPointF &place) const
    {
        for (AreaPoint *handle : items<AreaPoint>()) {
            if (handle->pos() == place)
                return handle;
        }
        return nullptr;
    }
    [[nodiscard]] QList<QPointF> handles() const
    {
        QList<QPointF> places;
        for (const AreaPoint *handle : items<AreaPoint>())
            places += handle->pos();
        return places;
    }
    [[nodiscard]] QList<QPointF> polygon() const { return item<QGraphicsPolygonItem>()->polygon(); }
    [[nodiscard]] QPainterPath shadow() const { return item<QGraphicsPathItem>()->path(); }
    [[nodiscard]] QStringList menu() const
    {
        QStringList texts;
        for (const QAction *entry : view->actions())
            texts += entry->text();
        return texts;
    }
    [[nodiscard]] QList<int> cornerIndices() const
    {
        QList<int> indices;
        for (const ActionAreaPoint *corner : action->area())
            indices += corner->pointInd();
        return indices;
    }

    // --- What the user does ---

    void select(const QList<QPointF> &places) const
    {
        pointer.click({-220.0, 220.0});
        for (const QPointF &place : places)
            pointer.click(place, Qt::ControlModifier);
    }
    /// Draws a rubber band around everything.
    void selectAll() const { pointer.drag({{-220.0, 220.0}, {220.0, -220.0}}); }
    void choose(const QString &text) const
    {
        for (QAction *entry : view->actions()) {
            if (entry->text() == text) {
                entry->trigger();
                return;
            }
        }
        qFatal("no entry \"%s\"", qUtf8Printable(text));
    }

    Kind kind;
    Manipulation manipulation;
    AreaAction *action;
    QDialog dialog;
    AreaDesigner *view; // owned by the dialog
    Pointer pointer;
    std::unique_ptr<QSignalSpy> changes;
};

QImage silkPixels(const QString &name)
{
    const QIcon icon(QStringLiteral(":/Images/famfamfam_silk_icons/%1.png").arg(name));
    return icon.pixmap(16, 16).toImage();
}

} // namespace

} // namespace Planaria

using namespace Planaria;

Q_DECLARE_METATYPE(Planaria::Kind)

/// Each test that bears a kind runs on all three designers.
class AreaDesignerTest final : public QObject
{
    Q_OBJECT

private slots:
    void looksLikeItsKind_data() { addKinds(); }
    void looksLikeItsKind();
    void showsTheWormBeforeItsAction();
    void showsAWormInItsNaturalSize();
    void namesWhatItShows_data() { addKinds(); }
    void namesWhatItShows();

    void startsASquareAroundTheOrigin_data() { addKinds(); }
    void startsASquareAroundTheOrigin();
    void startsNoSquareWhereThereAreCorners();
    void coversWhatItsActionIsAbout_data() { addKinds(); }
    void coversWhatItsActionIsAbout();
    void paintsItsPreview_data();
    void paintsItsPreview();

    void followsAHandleAtEachStep_data() { addKinds(); }
    void followsAHandleAtEachStep();
    void dragsSelectedHandlesTogether();
    void movesTheShadowWithAHandle_data() { addKinds(); }
    void movesTheShadowWithAHandle();
    void followsItsSlotForAMovedPoint_data() { addKinds(); }
    void followsItsSlotForAMovedPoint();

    void offersWhatTheSelectionAllows_data() { addKinds(); }
    void offersWhatTheSelectionAllows();
    void opensItsMenuAtARightClick();
    void showsIconsAndKeysBesideItsCommands_data();
    void showsIconsAndKeysBesideItsCommands();
    void obeysItsKeys_data() { addKinds(); }
    void obeysItsKeys();

    void addsACornerBehindTheSelectedOne_data();
    void addsACornerBehindTheSelectedOne();
    void makesAnAddedCornerDraggable();
    void leavesTheShadowWhenACornerIsAdded();
    void removesTheSelectedCorner_data() { addKinds(); }
    void removesTheSelectedCorner();
    void removesSelectedCornersAtOnce_data() { addKinds(); }
    void removesSelectedCornersAtOnce();
    void offersTheSquareAgainWithoutCorners_data() { addKinds(); }
    void offersTheSquareAgainWithoutCorners();
    void doesNothingWithoutASelection();

    void saysNothingWhenAnActionIsSet_data() { addKinds(); }
    void saysNothingWhenAnActionIsSet();
    void forgetsWhatItClears_data() { addKinds(); }
    void forgetsWhatItClears();
    void clearsSelectedHandlesToo();
    void showsOneActionAfterAnother();

    void keepsItsDialogOpenAtEscapeInTheMidstOfADrag();
    void endsADragWhereTheMenuComesUp();
    void bearsAMissingInput_data() { addKinds(); }
    void bearsAMissingInput();
    void bearsNumbersThatCannotBeDrawn_data() { addKinds(); }
    void bearsNumbersThatCannotBeDrawn();
    void bearsGapsInTheNumbersOfItsCorners();

private:
    static void addKinds();
};

void AreaDesignerTest::addKinds()
{
    QTest::addColumn<Kind>("kind");
    QTest::newRow("remove") << removing();
    QTest::newRow("crop") << cropping();
    QTest::newRow("irradiation") << irradiating();
}

// --- What it shows ---

void AreaDesignerTest::looksLikeItsKind()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    QCOMPARE(desk.view->dragMode(), QGraphicsView::RubberBandDrag);
    QCOMPARE(desk.view->contextMenuPolicy(), Qt::ActionsContextMenu);
    QVERIFY(desk.view->transform().m22() < 0.0); // +y upwards

    const auto *polygon = desk.item<QGraphicsPolygonItem>();
    QCOMPARE(polygon->zValue(), 1.0);
    QCOMPARE(polygon->pen(), QPen(Qt::black, 1.0, Qt::DashLine));
    QCOMPARE(polygon->brush(), QBrush(Qt::NoBrush));
    const auto *shadow = desk.item<QGraphicsPathItem>();
    QCOMPARE(shadow->zValue(), 0.0);
    QCOMPARE(shadow->pen(), QPen(Qt::NoPen));
    QCOMPARE(shadow->brush(), QBrush(kind.shadowColor, Qt::SolidPattern));
    QCOMPARE(desk.item<ManipulationItem>()->zValue(), -1.0);
}

void AreaDesignerTest::showsTheWormBeforeItsAction()
{
    Desk desk(removing());
    desk.action->removeFromManipulation();
    AreaAction *before = desk.manipulation.addCropAction(desk.manipulation.rootAction());
    for (const QPointF &corner : triangle)
        before->addAreaPoint(corner);
    AreaAction *shown = desk.manipulation.addRemoveAction(before);
    for (const QPointF &corner : square)
        shown->addAreaPoint(corner);
    desk.manipulation.addCropAction(shown);

    desk.kind.setAction(desk.view, shown);
    QCOMPARE(desk.items<ManipulationItem>().size(), 1);
    QCOMPARE(desk.item<ManipulationItem>()->shape(), ManipulationItem(before).shape());
    QCOMPARE(desk.item<ManipulationItem>()->boundingRect(), QPolygonF(triangle).boundingRect());
}

void AreaDesignerTest::showsAWormInItsNaturalSize()
{
    const Desk desk(removing(), {});
    QCOMPARE(desk.view->transform(), QTransform::fromScale(1.0, -1.0));
    QVERIFY(desk.view->sceneRect().contains(QRectF(-150.0, -100.0, 300.0, 200.0)));
    desk.action->addAreaPoint({0.0, 3000.0});
    desk.kind.setAction(desk.view, desk.action);
    QVERIFY(desk.view->transform().m11() < 0.2);
}

void AreaDesignerTest::namesWhatItShows()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    QCOMPARE(desk.view->accessibleName(), kind.accessibleName);
    desk.select({square[0]});
    desk.choose("&Add point");
    QString more = kind.accessibleName;
    QCOMPARE(desk.view->accessibleName(), more.replace('4', '5'));
    desk.view->clear();
    QCOMPARE(desk.view->accessibleName(), "No area");
}

// --- The area ---

void AreaDesignerTest::startsASquareAroundTheOrigin()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind, {});
    QCOMPARE(desk.menu(), QStringList{kind.squareText});
    QCOMPARE(desk.handles(), QList<QPointF>());
    desk.choose(kind.squareText);

    QCOMPARE(desk.action->calcAreaVector(), square);
    QCOMPARE(desk.handles(), square);
    QCOMPARE(desk.polygon(), square);
    QCOMPARE(QPolygonF(desk.polygon()).boundingRect(), QRectF(-50.0, -50.0, 100.0, 100.0));
    QCOMPARE(desk.menu(), QStringList{"Save image..."});
    QVERIFY(!desk.shadow().isEmpty());
    QCOMPARE(desk.items<ManipulationItem>().size(), 1);

    kind.setAction(desk.view, desk.action);
    QCOMPARE(desk.handles(), square);
    QCOMPARE(desk.polygon(), square);
}

void AreaDesignerTest::startsNoSquareWhereThereAreCorners()
{
    const Desk desk(removing(), triangle);
    desk.kind.createSquare(desk.view);
    QCOMPARE(desk.action->calcAreaVector(), triangle);
    QCOMPARE(desk.handles(), triangle);
}

void AreaDesignerTest::coversWhatItsActionIsAbout()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind, {{0.0, 0.0}, {0.0, 300.0}, {300.0, 300.0}, {300.0, 0.0}});
    const QPainterPath shadow = desk.shadow();
    QCOMPARE(shadow.contains(QPointF(60.0, 40.0)), !kind.shadowsOutside);  // worm in the area
    QCOMPARE(shadow.contains(QPointF(-60.0, -40.0)), kind.shadowsOutside); // worm beside it
    QVERIFY(!shadow.contains(QPointF(200.0, 200.0)));                      // the area alone
    QVERIFY(!shadow.contains(QPointF(-200.0, -200.0)));                    // neither
}

void AreaDesignerTest::paintsItsPreview_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<bool>("insideChanges");
    QTest::addColumn<bool>("outsideChanges");
    QTest::newRow("remove") << removing() << true << false;
    QTest::newRow("crop") << cropping() << false << true;
    QTest::newRow("irradiation") << irradiating() << true << false;
}

void AreaDesignerTest::paintsItsPreview()
{
    QFETCH(const Kind, kind);
    QFETCH(const bool, insideChanges);
    QFETCH(const bool, outsideChanges);
    const Desk desk(kind, {{10.0, -300.0}, {10.0, 300.0}, {300.0, 300.0}, {300.0, -300.0}});
    const auto colorAt = [&](int x) {
        return rendered(desk.view->scene(), QRectF(x, 0.0, 1.0, 1.0)).pixelColor(0, 0);
    };
    const QColor inside = colorAt(100);
    const QColor outside = colorAt(-100);
    desk.item<QGraphicsPathItem>()->hide();
    QCOMPARE(colorAt(100) != inside, insideChanges);
    QCOMPARE(colorAt(-100) != outside, outsideChanges);
}

// --- Dragging ---

void AreaDesignerTest::followsAHandleAtEachStep()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    QList<QPointF> expected = square;
    desk.pointer.press(square[1]);
    QCOMPARE(desk.changes->size(), 0);
    for (int step = 1; step <= 4; ++step) {
        expected[1] = square[1] + step * QPointF(-10.0, 3.0);
        const QPainterPath before = desk.shadow();
        desk.pointer.move(expected[1]);
        QCOMPARE(desk.action->calcAreaVector(), expected);
        QCOMPARE(desk.polygon(), expected);
        QCOMPARE(desk.handles(), expected);
        QVERIFY(desk.shadow() != before);
        QCOMPARE(desk.changes->size(), step);
    }
    desk.pointer.release(expected[1]);
    QCOMPARE(desk.changes->size(), 4);
    QCOMPARE(desk.action->calcAreaVector(), expected);
}

void AreaDesignerTest::dragsSelectedHandlesTogether()
{
    const Desk desk(removing());
    desk.select({square[0], square[3]});
    desk.pointer.drag({square[0], square[0] + QPointF(30.0, 0.0)});
    const QList<QPointF> expected{{80.0, 50.0}, square[1], square[2], {80.0, -50.0}};
    QCOMPARE(desk.action->calcAreaVector(), expected);
    QCOMPARE(desk.polygon(), expected);
    QCOMPARE(desk.changes->size(), 2);
}

void AreaDesignerTest::movesTheShadowWithAHandle()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    const QPointF between(60.0, 35.0); // off the square, on the worm
    QCOMPARE(desk.shadow().contains(between), kind.shadowsOutside);
    desk.pointer.drag({square[0], {100.0, 50.0}});
    QCOMPARE(desk.shadow().contains(between), !kind.shadowsOutside);
}

void AreaDesignerTest::followsItsSlotForAMovedPoint()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    desk.action->setAreaPoint(0, {70.0, 70.0});
    kind.areaPointChanged(desk.view);
    QCOMPARE(desk.polygon().first(), QPointF(70.0, 70.0));
    QCOMPARE(desk.changes->size(), 1);
}

// --- The menu ---

void AreaDesignerTest::offersWhatTheSelectionAllows()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    QCOMPARE(desk.menu(), QStringList{"Save image..."});
    desk.select({square[2]});
    QCOMPARE(desk.menu(), QStringList({"&Add point", "&Remove point"}));
    desk.select({square[2], square[0]});
    QCOMPARE(desk.menu(), QStringList{kind.removePointsText});
    desk.selectAll();
    QCOMPARE(desk.view->scene()->selectedItems().size(), 4);
    QCOMPARE(desk.menu(), QStringList{kind.removePointsText});
    desk.select({});
    QCOMPARE(desk.menu(), QStringList{"Save image..."});
    desk.view->clear();
    QCOMPARE(desk.menu(), QStringList{"Save image..."});
}

void AreaDesignerTest::opensItsMenuAtARightClick()
{
    const Desk desk(removing());
    desk.select({square[2]});
    QCOMPARE(desk.pointer.menuAt(square[0]), QStringList({"&Add point", "&Remove point"}));
    QCOMPARE(desk.view->scene()->selectedItems(), QList<QGraphicsItem *>{desk.handleAt(square[2])});
    QCOMPARE(desk.pointer.menuAt({0.0, 0.0}), QStringList{"Save image..."});
}

void AreaDesignerTest::showsIconsAndKeysBesideItsCommands_data()
{
    QTest::addColumn<QList<QPointF>>("corners");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("key");
    QTest::newRow("square") << QList<QPointF>() << 0 << "Create &square cut"
                            << "shape_handles"
                            << "Ctrl+S";
    QTest::newRow("add") << square << 1 << "&Add point"
                         << "bullet_add"
                         << "Ctrl+A";
    QTest::newRow("remove one") << square << 1 << "&Remove point"
                                << "bullet_delete"
                                << "Ctrl+R";
    QTest::newRow("remove several") << square << 2 << "&Remove points"
                                    << "bullet_delete"
                                    << "Ctrl+R";
}

void AreaDesignerTest::showsIconsAndKeysBesideItsCommands()
{
    QFETCH(const QList<QPointF>, corners);
    QFETCH(const int, selected);
    QFETCH(const QString, text);
    QFETCH(const QString, icon);
    QFETCH(const QString, key);
    const Desk desk(removing(), corners);
    desk.select(square.first(selected));
    const QList<QAction *> entries = desk.view->actions();
    const auto entry = std::find_if(entries.cbegin(), entries.cend(),
                                    [&](const QAction *each) { return each->text() == text; });
    QVERIFY(entry != entries.cend());
    QCOMPARE((*entry)->icon().pixmap(16, 16).toImage(), silkPixels(icon));
    QCOMPARE((*entry)->shortcut().toString(), key);
}

void AreaDesignerTest::obeysItsKeys()
{
    QFETCH(const Kind, kind);
    Desk desk(kind, {});
    QVERIFY(desk.activate());
    QTest::keyClick(desk.view, Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(desk.action->calcAreaVector(), square);
    desk.select({square[3]});
    QTest::keyClick(desk.view, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(desk.action->area().size(), 5);
    QTest::keyClick(desk.view, Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(desk.action->area().size(), 4);
    desk.selectAll();
    QTest::keyClick(desk.view, Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(desk.action->area().size(), 0);
}

// --- Adding and removing corners ---

void AreaDesignerTest::addsACornerBehindTheSelectedOne_data()
{
    QTest::addColumn<QList<QPointF>>("corners");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QPointF>("added");
    const QList<QPointF> line{{-40.0, 0.0}, {60.0, 20.0}};
    QTest::newRow("first") << square << 0 << QPointF(0.0, 50.0);
    QTest::newRow("last but one") << square << 2 << QPointF(0.0, -50.0);
    QTest::newRow("last") << square << 3 << QPointF(50.0, 0.0);
    QTest::newRow("last of a triangle") << triangle << 2 << QPointF(40.0, 10.0);
    QTest::newRow("first of two") << line << 0 << QPointF(10.0, 10.0);
    QTest::newRow("last of two") << line << 1 << QPointF(10.0, 10.0);
    QTest::newRow("the only one") << QList<QPointF>{{-40.0, 0.0}} << 0 << QPointF(-15.0, 25.0);
}

void AreaDesignerTest::addsACornerBehindTheSelectedOne()
{
    QFETCH(QList<QPointF>, corners);
    QFETCH(const int, selected);
    QFETCH(const QPointF, added);
    const Desk desk(removing(), corners);
    desk.select({corners.at(selected)});
    desk.choose("&Add point");

    QList<int> indices;
    corners.insert(selected + 1, added);
    for (int i = 0; i < corners.size(); ++i)
        indices += i;
    QCOMPARE(desk.action->calcAreaVector(), corners);
    QCOMPARE(desk.cornerIndices(), indices);
    QCOMPARE(desk.polygon(), corners);
    QVERIFY(desk.handleAt(added));
    QCOMPARE(desk.items<AreaPoint>().size(), corners.size());
    QCOMPARE(desk.changes->size(), 1);
    QCOMPARE(desk.menu(), QStringList({"&Add point", "&Remove point"}));
}

void AreaDesignerTest::makesAnAddedCornerDraggable()
{
    const Desk desk(removing());
    desk.select({square[3]});
    desk.choose("&Add point");
    desk.pointer.drag({{50.0, 0.0}, {90.0, 10.0}});
    QCOMPARE(desk.action->calcAreaVector().last(), QPointF(90.0, 10.0));
    QCOMPARE(desk.polygon(), desk.action->calcAreaVector());
    QCOMPARE(desk.changes->size(), 2);
    desk.choose("&Add point");
    QCOMPARE(desk.action->calcAreaVector().last(), QPointF(70.0, 30.0));
}

void AreaDesignerTest::leavesTheShadowWhenACornerIsAdded()
{
    const Desk desk(removing());
    const QPainterPath before = desk.shadow();
    desk.select({square[3]});
    desk.choose("&Add point");
    QCOMPARE(desk.shadow(), before);
}

void AreaDesignerTest::removesTheSelectedCorner()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    desk.select({square[1]});
    desk.choose("&Remove point");
    const QList<QPointF> left{square[0], square[2], square[3]};
    QCOMPARE(desk.action->calcAreaVector(), left);
    QCOMPARE(desk.cornerIndices(), QList<int>({0, 1, 2}));
    QCOMPARE(desk.polygon(), left);
    QCOMPARE(desk.handles(), left);
    QCOMPARE(desk.shadow().contains(QPointF(-30.0, 30.0)), kind.shadowsOutside);
    QCOMPARE(desk.menu(), QStringList{"Save image..."});
    QCOMPARE(desk.changes->size(), 1);
    desk.pointer.drag({square[3], {60.0, -60.0}});
    QCOMPARE(desk.action->calcAreaVector().last(), QPointF(60.0, -60.0));
}

void AreaDesignerTest::removesSelectedCornersAtOnce()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    desk.select({square[3], square[0]});
    desk.choose(kind.removePointsText);
    const QList<QPointF> left{square[1], square[2]};
    QCOMPARE(desk.action->calcAreaVector(), left);
    QCOMPARE(desk.cornerIndices(), QList<int>({0, 1}));
    QCOMPARE(desk.polygon(), left);
    QCOMPARE(desk.handles(), left);
    QCOMPARE(desk.shadow().contains(QPointF(20.0, 0.0)), kind.shadowsOutside);
    QCOMPARE(desk.menu(), QStringList{"Save image..."});
    QCOMPARE(desk.changes->size(), 1);
}

void AreaDesignerTest::offersTheSquareAgainWithoutCorners()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind, triangle);
    desk.selectAll();
    desk.choose(kind.removePointsText);
    QCOMPARE(desk.menu(), QStringList{kind.squareText});
    QCOMPARE(desk.handles(), QList<QPointF>());
    QCOMPARE(desk.polygon(), QList<QPointF>());
    desk.choose(kind.squareText);
    QCOMPARE(desk.handles(), square);

    for (const QPointF &corner : square) {
        desk.select({corner});
        desk.choose("&Remove point");
    }
    QCOMPARE(desk.menu(), QStringList{kind.squareText});
}

void AreaDesignerTest::doesNothingWithoutASelection()
{
    const Desk desk(removing());
    desk.view->addPoint();
    desk.view->removeSelectedPoint();
    desk.view->removeSelectedPoints();
    QCOMPARE(desk.action->calcAreaVector(), square);
    QCOMPARE(desk.handles(), square);
    QCOMPARE(desk.changes->size(), 0);
}

// --- One action after another ---

void AreaDesignerTest::saysNothingWhenAnActionIsSet()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    kind.setAction(desk.view, desk.action);
    desk.view->clear();
    QCOMPARE(desk.changes->size(), 0);
    QCOMPARE(desk.action->calcAreaVector(), square);
}

void AreaDesignerTest::forgetsWhatItClears()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    const auto *polygon = desk.item<QGraphicsPolygonItem>();
    const auto *shadow = desk.item<QGraphicsPathItem>();
    desk.view->clear();
    QCOMPARE(desk.view->areaAction(), nullptr);
    QCOMPARE(desk.view->scene()->items().size(), 2);
    QCOMPARE(desk.item<QGraphicsPolygonItem>(), polygon);
    QCOMPARE(desk.item<QGraphicsPathItem>(), shadow);
    QCOMPARE(desk.polygon(), QList<QPointF>());
    QVERIFY(desk.shadow().isEmpty());

    kind.createSquare(desk.view);
    kind.areaPointChanged(desk.view);
    desk.view->clear();
    QCOMPARE(desk.action->calcAreaVector(), square);
    QCOMPARE(desk.changes->size(), 0);
    kind.setAction(desk.view, desk.action);
    QCOMPARE(desk.handles(), square);
}

void AreaDesignerTest::clearsSelectedHandlesToo()
{
    const Desk desk(removing());
    desk.selectAll();
    desk.view->clear();
    QCOMPARE(desk.handles(), QList<QPointF>());
    QCOMPARE(desk.menu(), QStringList{"Save image..."});
}

void AreaDesignerTest::showsOneActionAfterAnother()
{
    Desk desk(removing());
    AreaAction *second = desk.kind.addAction(&desk.manipulation);
    for (const QPointF &corner : triangle)
        second->addAreaPoint(corner);
    desk.select({square[0]});
    desk.kind.setAction(desk.view, second);
    QCOMPARE(desk.view->areaAction(), second);
    QCOMPARE(desk.handles(), triangle);
    QCOMPARE(desk.polygon(), triangle);
    QCOMPARE(desk.menu(), QStringList{"Save image..."});
    QCOMPARE(desk.items<ManipulationItem>().size(), 1);
    desk.pointer.drag({triangle[0], {0.0, 80.0}});
    QCOMPARE(desk.action->calcAreaVector(), square);
    QCOMPARE(second->calcAreaVector().first(), QPointF(0.0, 80.0));
    desk.kind.setAction(desk.view, nullptr);
    QCOMPARE(desk.handles(), QList<QPointF>());
}

// --- Hard use ---

void AreaDesignerTest::keepsItsDialogOpenAtEscapeInTheMidstOfADrag()
{
    const Desk desk(removing());
    desk.pointer.press(square[0]);
    desk.pointer.move({60.0, 60.0});
    QTest::keyClick(desk.view, Qt::Key_Escape);
    QVERIFY(desk.dialog.isVisible());
    desk.pointer.move({80.0, 60.0});
    desk.pointer.release({80.0, 60.0});
    QCOMPARE(desk.action->calcAreaVector().first(), QPointF(80.0, 60.0));
}

void AreaDesignerTest::endsADragWhereTheMenuComesUp()
{
    const Desk desk(removing());
    QCOMPARE(desk.pointer.menuAt(square[0]).size(), 1);
    desk.pointer.drag({square[2], {-70.0, -50.0}}); // not the one under the menu
    QCOMPARE(desk.action->calcAreaVector(),
             QList<QPointF>({square[0], square[1], {-70.0, -50.0}, square[3]}));

    QCOMPARE(desk.pointer.menuAt({200.0, 200.0}).size(), 1);
    desk.pointer.press(square[3]);
    desk.pointer.move({60.0, -60.0});
    QVERIFY(desk.view->rubberBandRect().isNull());
    desk.pointer.release({60.0, -60.0});
    QCOMPARE(desk.action->calcAreaVector().last(), QPointF(60.0, -60.0));
}

void AreaDesignerTest::bearsAMissingInput()
{
    QFETCH(const Kind, kind);
    const Desk desk(kind);
    desk.view->clear();
    ManipulationAction *input = desk.action->fromAction();
    desk.action->setFromAction(nullptr);
    kind.setAction(desk.view, desk.action);
    QVERIFY(desk.shadow().isEmpty());
    desk.pointer.drag({square[0], {60.0, 60.0}});
    QCOMPARE(desk.action->calcAreaVector().first(), QPointF(60.0, 60.0));
    desk.selectAll();
    desk.choose(kind.removePointsText);
    QCOMPARE(desk.menu(), QStringList{kind.squareText});
    desk.action->setFromAction(input);
}

void AreaDesignerTest::bearsNumbersThatCannotBeDrawn()
{
    QFETCH(const Kind, kind);
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const Desk desk(kind, {{notANumber, 50.0}, {-50.0, infinite}, {-1e300, -50.0}, {50.0, -50.0}});
    QCOMPARE(desk.handles(),
             QList<QPointF>({{0.0, 50.0}, {-50.0, 0.0}, {-1e6, -50.0}, {50.0, -50.0}}));
    QCOMPARE(desk.polygon(), desk.handles());
    QVERIFY(isFinite(desk.shadow()));
    QVERIFY(!desk.view->grab().isNull());
    QVERIFY(std::isnan(desk.action->area().first()->x())); // nothing changes by itself
    desk.handleAt({-1e6, -50.0})->setPos(-60.0, -60.0);
    QCOMPARE(desk.polygon().at(2), QPointF(-60.0, -60.0));
    QCOMPARE(desk.action->area().at(2)->point(), QPointF(-60.0, -60.0));
}

void AreaDesignerTest::bearsGapsInTheNumbersOfItsCorners()
{
    const Desk desk(removing());
    for (ActionAreaPoint *corner : desk.action->area())
        corner->setPointInd(7 * corner->pointInd() + 3);
    desk.select({square[3]});
    desk.choose("&Add point");
    QCOMPARE(desk.action->calcAreaVector().last(), QPointF(50.0, 0.0));
    desk.choose("&Remove point");
    QCOMPARE(desk.action->calcAreaVector(),
             QList<QPointF>({square[0], square[1], square[2], {50.0, 0.0}}));
}

QTEST_MAIN(AreaDesignerTest)
#include "AreaDesignerTest.moc"
