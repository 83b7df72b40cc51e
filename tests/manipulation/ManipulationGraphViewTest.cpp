#include "manipulation/ManipulationGraphView.h"

#include "db/ExperimentFactory.h"
#include "manipulation/EDGAction.h"
#include "manipulation/Pointer.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/ManipulationLines.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "model/SmallTrees.h"
#include "support/JsonManipulation.h"
#include "support/PaintedItem.h"
#include "support/TemporaryLibrary.h"
#include "support/TestData.h"

#include <QAction>
#include <QDialog>
#include <QGraphicsLineItem>
#include <QGraphicsScene>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace Planaria;

namespace {

const QStringList oneNodeMenu{"Add crop action", "Add remove action", "Add join action",
                              "Add irradiation action", "Delete selection"};
const QPolygonF startSquare({{50, 50}, {-50, 50}, {-50, -50}, {50, -50}});

QString text(const QPointF &point)
{
    return QStringLiteral("(%1, %2)").arg(point.x()).arg(point.y());
}

QImage pixels(const QIcon &icon)
{
    return icon.pixmap(16, 16).toImage();
}

/// What a signal of the view said, told by the label of the node.
using Log = QStringList;

} // namespace

/// Works on the tree of a new manipulation unless a test says otherwise.
class ManipulationGraphViewTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { view.reset(); }

    void showsANewManipulationAsOneRedNode();
    void labelsEachKindOfAction_data();
    void labelsEachKindOfAction();
    void aNodeIsACircleWithAnUprightCaption();
    void aWideCaptionShowsWhole();
    void aNodeTakesItsColors();
    void aNodeIsDottedWhileItIsSelected();
    void putsInputsAboveTheActionToBothSides_data();
    void putsInputsAboveTheActionToBothSides();
    void drawsLinesBehindTheNodes();
    void showsTheProductAtTheBottomAndTheFirstInputAtTheLeft();
    void placesWorkedTreesByTheirLeaves_data();
    void placesWorkedTreesByTheirLeaves();

    void offersOnlySavingWithoutASelection();
    void offersAllAdditionsOnEachKindOfNode_data();
    void offersAllAdditionsOnEachKindOfNode();
    void offersOnlyDeletionOfSeveralNodes();
    void commandsBearTheirIcons_data();
    void commandsBearTheirIcons();
    void takesTheNextClickAfterAMenuWhereItIs();

    void selectsWhenTheButtonIsReleased();
    void movesNoNode();
    void tellsTheOneSelectedActionOrNone();
    void selectsAndUnselectsOnRequest();

    void addsAnAreaActionBehindTheSelectedOne_data();
    void addsAnAreaActionBehindTheSelectedOne();
    void addsAnActionInTheMiddle();
    void joinsTheDefaultWorm();
    void joinsAStoredWormWhereRowOneIsGone();
    void deletesTheRedNodeAndPassesTheColorOn();
    void deletesAJoinWithItsGraft();
    void deletesSeveralNodesOfWhichSomeGoAnyway();
    void staysAsItIsWhereALeafIsDeletedAndTellsAllTheSame();
    void tellsNothingWhereNothingIsDeleted();
    void unselectsDuringAnEditBeforeItTells();
    void commandsDoNothingWithoutOneSelectedNode();
    void keepsTheWholeTreeInSight();

    void showsNothingUntilItIsGivenAManipulation();
    void showsAnotherManipulation();
    void tellsOfNoActionOfAFormerTree();
    void forgetsWhatItShowed();
    void isSilentWhenItGoes();
    void namesWhatItShows();
    void keepsItsDialogOpenOnEscape();

    void showsATreeWithoutARoot();
    void showsTreesWithoutInputs_data();
    void showsTreesWithoutInputs();
    void showsAndEditsTreesOfThousandsOfActions_data();
    void showsAndEditsTreesOfThousandsOfActions();

private:
    void show(Manipulation *shown);
    ManipulationAction *root() const { return manipulation->rootAction(); }
    EDGAction *rootNode() const { return view->node(root()); }
    /// Label, place, and "red" for a red outline; from the bottom to the top, from left to right.
    QStringList nodes() const;
    QStringList links() const;
    QPoint placeOf(ManipulationAction *action) const
    {
        return pointer().placeOf(view->node(action)->pos());
    }
    void click(ManipulationAction *action, Qt::KeyboardModifiers keys = Qt::NoModifier);
    /// A place without nodes.
    QPointF nowhere() const { return view->mapToScene(QPoint(5, 5)); }
    /// What the menu on the node of @p action offers; then chooses @p command.
    QStringList menuOn(ManipulationAction *action, const QString &command = {}) const
    {
        return pointer().menuAt(view->node(action)->pos(), command);
    }
    Pointer pointer() const { return Pointer(view.get()); }
    void choose(ManipulationAction *action, const QString &command);
    QString label(ManipulationAction *action) const;
    void expectPlaces(ManipulationAction *action);

    TemporaryLibrary library;
    std::unique_ptr<Manipulation> manipulation;
    std::unique_ptr<ManipulationGraphView> view;
    Log log; // of both signals
};

void ManipulationGraphViewTest::init()
{
    manipulation = std::make_unique<Manipulation>(named("Worm").release());
    show(manipulation.get());
}

void ManipulationGraphViewTest::show(Manipulation *shown)
{
    view = std::make_unique<ManipulationGraphView>(shown, library.db());
    view->resize(600, 800);
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    log.clear();
    connect(view.get(), &ManipulationGraphView::signActionSelecChanged, this,
            [this](ManipulationAction *action) { log += label(action); });
    connect(view.get(), &ManipulationGraphView::signManipulationGraphChanged, this,
            [this] { log += "changed"; });
}

QString ManipulationGraphViewTest::label(ManipulationAction *action) const
{
    return action ? "selected " + view->node(action)->text() : QStringLiteral("none selected");
}

QStringList ManipulationGraphViewTest::nodes() const
{
    QList<const EDGAction *> found;
    for (const QGraphicsItem *item : view->scene()->items()) {
        if (const auto *node = dynamic_cast<const EDGAction *>(item))
            found += node;
    }
    std::sort(found.begin(), found.end(), [](const EDGAction *a, const EDGAction *b) {
        return std::pair(a->y(), a->x()) < std::pair(b->y(), b->x());
    });
    QStringList texts;
    for (const EDGAction *node : std::as_const(found)) {
        const bool red = node->outlineColor() == QColor(Qt::red);
        texts += node->text() + ' ' + text(node->pos()) + (red ? " red" : "");
    }
    return texts;
}

QStringList ManipulationGraphViewTest::links() const
{
    QStringList texts;
    for (const QGraphicsItem *item : view->scene()->items(Qt::AscendingOrder)) {
        if (const auto *link = qgraphicsitem_cast<const QGraphicsLineItem *>(item))
            texts += text(link->line().p1()) + " to " + text(link->line().p2());
    }
    return texts;
}

void ManipulationGraphViewTest::click(ManipulationAction *action, Qt::KeyboardModifiers keys)
{
    pointer().click(view->node(action)->pos(), keys);
}

void ManipulationGraphViewTest::choose(ManipulationAction *action, const QString &command)
{
    click(action);
    log.clear();
    QVERIFY(menuOn(action, command).contains(command));
}

// --- What is shown ---

void ManipulationGraphViewTest::showsANewManipulationAsOneRedNode()
{
    QCOMPARE(nodes(), QStringList("Morph (0, 0) red"));
    QCOMPARE(view->scene()->items().size(), 1);
    QCOMPARE(rootNode()->action(), root());
    QCOMPARE(rootNode()->view(), view.get());
}

void ManipulationGraphViewTest::labelsEachKindOfAction_data()
{
    using Add = std::function<ManipulationAction *(Manipulation *)>;
    QTest::addColumn<Add>("add");
    QTest::addColumn<QString>("label");
    QTest::newRow("morphology") << Add([](Manipulation *m) { return m->rootAction(); }) << "Morph";
    QTest::newRow("remove") << Add([](Manipulation *m) {
        return m->addRemoveAction(m->rootAction());
    }) << "Remov";
    QTest::newRow("crop") << Add([](Manipulation *m) { return m->addCropAction(m->rootAction()); })
                          << "Crop";
    QTest::newRow("join") << Add([](Manipulation *m) {
        return m->addJoinAction(m->rootAction(), named("Graft").release());
    }) << "Join";
    QTest::newRow("irradiation") << Add([](Manipulation *m) {
        return m->addIrradiationAction(m->rootAction());
    }) << "Irrad";
}

void ManipulationGraphViewTest::labelsEachKindOfAction()
{
    QFETCH(std::function<ManipulationAction *(Manipulation *)>, add);
    QFETCH(QString, label);
    ManipulationAction *action = add(manipulation.get());
    view->setManipulation(manipulation.get());
    QCOMPARE(view->node(action)->text(), label);
    QCOMPARE(view->node(action)->action(), action);
}

void ManipulationGraphViewTest::aNodeIsACircleWithAnUprightCaption()
{
    const EDGAction *node = rootNode();
    QCOMPARE(node->flags(), QGraphicsItem::ItemIsSelectable | QGraphicsItem::ItemIsFocusable);
    QCOMPARE(node->zValue(), 0.0);
    QCOMPARE(node->boundingRect(), QRectF(-22.5, -22.5, 45.0, 45.0));
    QPainterPath ellipse;
    ellipse.addEllipse(-22.0, -22.0, 44.0, 44.0);
    QCOMPARE(node->shape(), ellipse);

    QVERIFY(view->transform().m22() < 0.0); // the view shows +y upwards
    QCOMPARE(painted(rootNode()),
             circle({22.0, QPen(Qt::red, 1.0), Qt::white, Qt::black, 13}, "Morph"));
}

void ManipulationGraphViewTest::aWideCaptionShowsWhole()
{
    rootNode()->setTextColor(Qt::magenta);
    rootNode()->setText("MMMMM");
    const QImage image = painted(rootNode());
    int inked = 0; // to the left of the circle
    for (int y = 0; y < image.height(); ++y)
        inked += image.pixelColor(4, y).green() < 150 ? 1 : 0;
    QVERIFY2(inked > 0, "cut off");
}

void ManipulationGraphViewTest::aNodeTakesItsColors()
{
    EDGAction node(root(), view.get(), nullptr);
    QCOMPARE(node.text(), QString());
    QVERIFY(!node.textColor().isValid());
    QCOMPARE(node.backgroundColor(), QColor(Qt::white));
    QCOMPARE(node.outlineColor(), QColor(Qt::darkBlue));

    node.setText("X1");
    node.setTextColor(Qt::magenta);
    node.setBackgroundColor(Qt::cyan);
    node.setOutlineColor(Qt::green);
    QCOMPARE(node.textColor(), QColor(Qt::magenta));
    QCOMPARE(painted(&node), circle({22.0, QPen(Qt::green, 1.0), Qt::cyan, Qt::magenta, 13}, "X1"));
}

void ManipulationGraphViewTest::aNodeIsDottedWhileItIsSelected()
{
    const QPen dotted(Qt::red, 2.0, Qt::DotLine);
    QCOMPARE(painted(rootNode(), QStyle::State_Selected),
             circle({22.0, dotted, Qt::white, Qt::black, 13}, "Morph"));
    const QImage solid = view->viewport()->grab().toImage();
    click(root());
    QVERIFY(view->viewport()->grab().toImage() != solid);
}

void ManipulationGraphViewTest::putsInputsAboveTheActionToBothSides_data()
{
    using Edit = std::function<void(Manipulation *)>;
    const auto join = [](Manipulation *m, ManipulationAction *action) {
        return m->addJoinAction(action, named("Graft").release());
    };
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("area action") << Edit([](Manipulation *m) {
        m->addRemoveAction(m->rootAction());
    }) << QStringList{"Remov (0, 0) red", "Morph (0, 75)"};
    QTest::newRow("join of two worms")
        << Edit([join](Manipulation *m) { join(m, m->rootAction()); })
        << QStringList{"Join (0, 0) red", "Morph (-50, 75)", "Morph (50, 75)"};
    QTest::newRow("two worms joined with a third")
        << Edit([join](Manipulation *m) { join(m, join(m, m->rootAction())); })
        << QStringList{"Join (0, 0) red", "Join (-100, 75)", "Morph (50, 75)", "Morph (-150, 150)",
                       "Morph (-50, 150)"};
    QTest::newRow("a worm joined with two")
        << Edit([join](Manipulation *m) { join(m, join(m, m->rootAction())->fromAction2()); })
        << QStringList{"Join (0, 0) red", "Morph (-50, 75)", "Join (100, 75)", "Morph (50, 150)",
                       "Morph (150, 150)"};
    QTest::newRow("cuts before a join") << Edit([join](Manipulation *m) {
        JoinAction *joined = join(m, join(m, m->rootAction()));
        m->addCropAction(joined->fromAction1());
        m->addIrradiationAction(joined->fromAction2());
    }) << QStringList{"Join (0, 0) red", "Crop (-100, 75)",   "Irrad (50, 75)",  "Join (-100, 150)",
                      "Morph (50, 150)", "Morph (-150, 225)", "Morph (-50, 225)"};
    QTest::newRow("branches that overlap") << Edit([join](Manipulation *m) {
        JoinAction *joined = join(m, m->rootAction());
        join(m, joined->fromAction1());
        join(m, joined->fromAction2());
        join(m, static_cast<JoinAction *>(joined->fromAction1())->fromAction2());
        join(m, static_cast<JoinAction *>(joined->fromAction2())->fromAction1());
    }) << QStringList{"Join (0, 0) red", "Join (-150, 75)", "Join (150, 75)",   "Morph (-200, 150)",
                      "Join (-50, 150)", "Join (50, 150)",  "Morph (200, 150)", "Morph (-100, 225)",
                      "Morph (0, 225)",  "Morph (0, 225)",  "Morph (100, 225)"};
}

void ManipulationGraphViewTest::putsInputsAboveTheActionToBothSides()
{
    QFETCH(std::function<void(Manipulation *)>, edit);
    QFETCH(QStringList, expected);
    edit(manipulation.get());
    view->setManipulation(manipulation.get());
    QCOMPARE(nodes(), expected);
}

void ManipulationGraphViewTest::drawsLinesBehindTheNodes()
{
    JoinAction *join = manipulation->addJoinAction(root(), named("Graft").release());
    manipulation->addCropAction(join->fromAction2());
    view->setManipulation(manipulation.get());
    QCOMPARE(links(),
             QStringList({"(0, 0) to (-50, 75)", "(0, 0) to (50, 75)", "(50, 75) to (50, 150)"}));
    for (const QGraphicsItem *item : view->scene()->items()) {
        if (const auto *link = qgraphicsitem_cast<const QGraphicsLineItem *>(item)) {
            QCOMPARE(link->pen(), QPen(Qt::black, 1.0));
            QCOMPARE(link->zValue(), -1.0);
        }
    }
}

void ManipulationGraphViewTest::showsTheProductAtTheBottomAndTheFirstInputAtTheLeft()
{
    const JoinAction *join = manipulation->addJoinAction(root(), named("Graft").release());
    view->setManipulation(manipulation.get());
    QVERIFY(placeOf(join->fromAction1()).y() < placeOf(root()).y());
    QVERIFY(placeOf(join->fromAction1()).x() < placeOf(join->fromAction2()).x());
}

void ManipulationGraphViewTest::placesWorkedTreesByTheirLeaves_data()
{
    QTest::addColumn<QJsonObject>("tree");
    const QJsonValue worked = QJsonDocument::fromJson(readTestData("manipulations.json")).object();
    for (const QJsonValue &given : worked["cases"].toArray())
        QTest::addRow("%s", qUtf8Printable(given["id"].toString())) << given["start"].toObject();
}

void ManipulationGraphViewTest::placesWorkedTreesByTheirLeaves()
{
    QFETCH(QJsonObject, tree);
    manipulation = manipulationFromJson(tree, named);
    view->setManipulation(manipulation.get());
    QCOMPARE(nodes().size(), manipulation->actions().size());
    QCOMPARE(links().size(), manipulation->actions().size() - 1);
    QCOMPARE(rootNode()->pos(), QPointF());
    expectPlaces(root());
}

void ManipulationGraphViewTest::expectPlaces(ManipulationAction *action)
{
    const QList<ManipulationAction *> inputs = inputsOf(action);
    for (ManipulationAction *input : inputs) {
        const auto leaves = double(input->calcMorphologiesList().size());
        const double side = inputs.size() == 1 ? 0.0 : input == inputs.first() ? -leaves : leaves;
        const QPointF step = view->node(input)->pos() - view->node(action)->pos();
        QCOMPARE(step, QPointF(50.0 * side, 75.0));
        expectPlaces(input);
    }
}

// --- The context menu ---

void ManipulationGraphViewTest::offersOnlySavingWithoutASelection()
{
    QCOMPARE(pointer().menuAt(nowhere()), QStringList("Save image..."));
    click(root());
    pointer().click(nowhere());
    QCOMPARE(pointer().menuAt(nowhere()), QStringList("Save image..."));
}

void ManipulationGraphViewTest::offersAllAdditionsOnEachKindOfNode_data()
{
    labelsEachKindOfAction_data();
}

void ManipulationGraphViewTest::offersAllAdditionsOnEachKindOfNode()
{
    QFETCH(std::function<ManipulationAction *(Manipulation *)>, add);
    ManipulationAction *action = add(manipulation.get());
    view->setManipulation(manipulation.get());
    click(action);
    QCOMPARE(menuOn(action), oneNodeMenu);
}

void ManipulationGraphViewTest::offersOnlyDeletionOfSeveralNodes()
{
    manipulation->addCropAction(root());
    view->setManipulation(manipulation.get());
    click(root());
    click(manipulation->actions().first(), Qt::ControlModifier);
    QCOMPARE(menuOn(root()), QStringList("Delete selection"));
    click(root(), Qt::ControlModifier);
    QCOMPARE(menuOn(root()), oneNodeMenu);
}

void ManipulationGraphViewTest::commandsBearTheirIcons_data()
{
    QTest::addColumn<QString>("icon");
    QTest::newRow("Add remove action") << "shape_square_delete";
    QTest::newRow("Add crop action") << "shape_square";
    QTest::newRow("Add join action") << "shape_move_backwards";
    QTest::newRow("Add irradiation action") << "transmit";
    QTest::newRow("Delete selection") << "delete";
    QTest::newRow("Save image...") << "picture_save";
}

void ManipulationGraphViewTest::commandsBearTheirIcons()
{
    QFETCH(QString, icon);
    if (qstrcmp(QTest::currentDataTag(), "Save image...") != 0)
        click(root());
    const QIcon expected(":/Images/famfamfam_silk_icons/" + icon + ".png");
    QVERIFY(!pixels(expected).isNull());
    for (const QAction *action : view->actions()) {
        if (action->text() == QTest::currentDataTag()) {
            QCOMPARE(pixels(action->icon()), pixels(expected));
            return;
        }
    }
    QFAIL("not in the menu");
}

void ManipulationGraphViewTest::takesTheNextClickAfterAMenuWhereItIs()
{
    manipulation->addCropAction(root());
    view->setManipulation(manipulation.get());
    ManipulationAction *leaf = manipulation->actions().first();
    menuOn(leaf);
    click(root());
    QCOMPARE(view->selectedAction(), rootNode());
}

// --- The selection ---

void ManipulationGraphViewTest::selectsWhenTheButtonIsReleased()
{
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, placeOf(root()));
    QVERIFY(!rootNode()->isSelected());
    QCOMPARE(log, Log());
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, placeOf(root()));
    QVERIFY(rootNode()->isSelected());
    QCOMPARE(log, Log("selected Morph"));
}

void ManipulationGraphViewTest::movesNoNode()
{
    const QPoint start = placeOf(root());
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, start);
    QTest::mouseMove(view->viewport(), start + QPoint(40, 40));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, start + QPoint(40, 40));
    QCOMPARE(nodes(), QStringList("Morph (0, 0) red"));
}

void ManipulationGraphViewTest::tellsTheOneSelectedActionOrNone()
{
    manipulation->addCropAction(root());
    view->setManipulation(manipulation.get());
    ManipulationAction *leaf = manipulation->actions().first();
    log.clear();
    click(root());
    click(leaf);
    QCOMPARE(log, Log({"selected Crop", "selected Morph"}));
    QCOMPARE(view->selectedAction(), view->node(leaf));

    click(root(), Qt::ControlModifier); // two
    QCOMPARE(log.size(), 2);
    QCOMPARE(view->selectedAction(), nullptr);

    pointer().click(nowhere());
    QCOMPARE(log.mid(2), Log("none selected"));
    QCOMPARE(view->selectedAction(), nullptr);
}

void ManipulationGraphViewTest::selectsAndUnselectsOnRequest()
{
    view->selectAction(root());
    QCOMPARE(view->selectedAction(), rootNode());
    view->clearSelection();
    QCOMPARE(view->selectedAction(), nullptr);
    const Manipulation other(named("Other").release());
    view->selectAction(other.rootAction());
    view->selectAction(nullptr);
    QCOMPARE(log, Log({"selected Morph", "none selected"}));
}

// --- Edits ---

void ManipulationGraphViewTest::addsAnAreaActionBehindTheSelectedOne_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("label");
    QTest::newRow("Add remove action") << "remove"
                                       << "Remov";
    QTest::newRow("Add crop action") << "crop"
                                     << "Crop";
    QTest::newRow("Add irradiation action") << "irradiation"
                                            << "Irrad";
}

void ManipulationGraphViewTest::addsAnAreaActionBehindTheSelectedOne()
{
    QFETCH(QString, kind);
    QFETCH(QString, label);
    ManipulationAction *leaf = root();
    choose(leaf, QTest::currentDataTag());

    QCOMPARE(kindOf(root()), kind);
    const auto *added = dynamic_cast<AreaAction *>(root());
    QVERIFY(added);
    QCOMPARE(QPolygonF(added->calcAreaVector()), startSquare);
    QCOMPARE(added->fromAction(), leaf);
    QCOMPARE(brokenLinks(*manipulation), QStringList());
    QCOMPARE(nodes(), QStringList({label + " (0, 0) red", "Morph (0, 75)"}));
    QCOMPARE(view->selectedAction(), rootNode());
}

void ManipulationGraphViewTest::addsAnActionInTheMiddle()
{
    ManipulationAction *leaf = root();
    manipulation->addCropAction(leaf);
    view->setManipulation(manipulation.get());
    choose(leaf, "Add remove action");
    QCOMPARE(nodes(), QStringList({"Crop (0, 0) red", "Remov (0, 75)", "Morph (0, 150)"}));
    QCOMPARE(view->selectedAction(), view->node(leaf->toAction()));
    QCOMPARE(brokenLinks(*manipulation), QStringList());
}

void ManipulationGraphViewTest::joinsTheDefaultWorm()
{
    const auto inFile =
        ExperimentFactory::instance(nullptr)->createAndSaveWildMorphology(library.db());
    inFile->setName("Worm to start from");
    inFile->submit(library.db());
    QCOMPARE(inFile->id(), 1);
    ManipulationAction *leaf = root();
    choose(leaf, "Add join action");

    const auto *join = dynamic_cast<JoinAction *>(root());
    QVERIFY(join);
    QCOMPARE(join->fromAction1(), leaf);
    const auto *graft = dynamic_cast<MorphologyAction *>(join->fromAction2());
    QVERIFY(graft);
    QCOMPARE(graft->morphology()->name(), "Worm to start from");
    QCOMPARE(graft->morphology()->id(), 1);
    QCOMPARE(QPointF(join->vectX(), join->vectY()), QPointF());
    QCOMPARE(join->rot(), 0.0);
    QCOMPARE(brokenLinks(*manipulation), QStringList());
    QCOMPARE(nodes(), QStringList({"Join (0, 0) red", "Morph (-50, 75)", "Morph (50, 75)"}));
    QCOMPARE(log, Log({"none selected", "changed", "selected Join"}));
}

void ManipulationGraphViewTest::joinsAStoredWormWhereRowOneIsGone()
{
    library.run("INSERT INTO Morphology VALUES(2, 'Wild type')");
    QVERIFY(Morphology(1, library.db(), false).erase());
    choose(root(), "Add join action");
    const auto *join = dynamic_cast<JoinAction *>(root());
    const auto *graft = dynamic_cast<MorphologyAction *>(join->fromAction2());
    QCOMPARE(graft->morphology()->id(), 2);
}

void ManipulationGraphViewTest::deletesTheRedNodeAndPassesTheColorOn()
{
    choose(root(), "Add remove action");
    choose(root(), "Delete selection");
    QCOMPARE(nodes(), QStringList("Morph (0, 0) red"));
    QCOMPARE(view->scene()->items().size(), 1);
    QCOMPARE(kindOf(root()), "morphology");
    QCOMPARE(root()->toAction(), nullptr);
    QCOMPARE(log, Log({"none selected", "changed"}));
}

void ManipulationGraphViewTest::deletesAJoinWithItsGraft()
{
    JoinAction *join = manipulation->addJoinAction(root(), named("Graft").release());
    manipulation->addIrradiationAction(join->fromAction2());
    manipulation->addCropAction(join);
    view->setManipulation(manipulation.get());
    choose(join, "Delete selection");
    QCOMPARE(nodes(), QStringList({"Crop (0, 0) red", "Morph (0, 75)"}));
    QCOMPARE(brokenLinks(*manipulation), QStringList());
}

void ManipulationGraphViewTest::deletesSeveralNodesOfWhichSomeGoAnyway()
{
    JoinAction *join = manipulation->addJoinAction(root(), named("Graft").release());
    ManipulationAction *graft = join->fromAction2();
    ManipulationAction *cut = manipulation->addRemoveAction(graft);
    manipulation->addCropAction(join);
    view->setManipulation(manipulation.get());
    click(join);
    for (ManipulationAction *more : {cut, graft})
        click(more, Qt::ControlModifier);
    log.clear();
    menuOn(cut, "Delete selection");
    QCOMPARE(nodes(), QStringList({"Crop (0, 0) red", "Morph (0, 75)"}));
    QCOMPARE(brokenLinks(*manipulation), QStringList());
    QCOMPARE(log, Log({"none selected", "changed"}));
}

void ManipulationGraphViewTest::staysAsItIsWhereALeafIsDeletedAndTellsAllTheSame()
{
    rootNode()->setOutlineColor(Qt::green); // until it is built anew
    choose(root(), "Delete selection");
    QCOMPARE(nodes(), QStringList("Morph (0, 0) red"));
    QCOMPARE(manipulation->actions().size(), 1);
    QCOMPARE(log, Log({"none selected", "changed"}));
    QVERIFY(!rootNode()->isSelected());
}

void ManipulationGraphViewTest::tellsNothingWhereNothingIsDeleted()
{
    view->deleteSelection();
    QCOMPARE(log, Log());
}

void ManipulationGraphViewTest::unselectsDuringAnEditBeforeItTells()
{
    qsizetype actionsWhenUnselected = 0;
    connect(view.get(), &ManipulationGraphView::signActionSelecChanged, this,
            [&](ManipulationAction *action) {
                if (!action)
                    actionsWhenUnselected = manipulation->actions().size();
            });
    choose(root(), "Add crop action");
    QCOMPARE(log, Log({"none selected", "changed", "selected Crop"}));
    QCOMPARE(actionsWhenUnselected, 2); // the new tree stands already
}

void ManipulationGraphViewTest::commandsDoNothingWithoutOneSelectedNode()
{
    for (const auto command : {&ManipulationGraphView::addRemoveAction2SelecNode,
                               &ManipulationGraphView::addCropAction2SelecNode,
                               &ManipulationGraphView::addJoinAction2SelecNode,
                               &ManipulationGraphView::addIrradiationAction2SelecNode})
        (view.get()->*command)();
    QCOMPARE(manipulation->actions().size(), 1);
    QCOMPARE(log, Log());
}

void ManipulationGraphViewTest::keepsTheWholeTreeInSight()
{
    for (int i = 0; i < 30; ++i) {
        view->selectAction(root());
        view->addCropAction2SelecNode();
    }
    for (ManipulationAction *action : manipulation->actions())
        QVERIFY(view->viewport()->rect().contains(placeOf(action)));
    click(manipulation->actions().first()); // small as it is
    QCOMPARE(view->selectedAction(), view->node(manipulation->actions().first()));
}

// --- Which manipulation ---

void ManipulationGraphViewTest::showsNothingUntilItIsGivenAManipulation()
{
    view = std::make_unique<ManipulationGraphView>(library.db());
    QVERIFY(view->scene()->items().isEmpty());
    QCOMPARE(view->actions().size(), 1);
    view->setManipulation(manipulation.get());
    QCOMPARE(nodes(), QStringList("Morph (0, 0) red"));
    QVERIFY(view->dragMode() == QGraphicsView::NoDrag);
}

void ManipulationGraphViewTest::showsAnotherManipulation()
{
    Manipulation other(named("Other").release());
    other.addCropAction(other.rootAction());
    click(root());
    view->setManipulation(&other);
    QCOMPARE(nodes(), QStringList({"Crop (0, 0) red", "Morph (0, 75)"}));
    QCOMPARE(log, Log({"selected Morph", "none selected"}));
    QCOMPARE(view->node(root()), nullptr);
    view.reset();
}

void ManipulationGraphViewTest::tellsOfNoActionOfAFormerTree()
{
    manipulation->addCropAction(root());
    view->setManipulation(manipulation.get());
    for (ManipulationAction *action : manipulation->actions())
        view->node(action)->setSelected(true);
    log.clear();
    view->clear();
    QCOMPARE(log, Log("none selected"));
}

void ManipulationGraphViewTest::forgetsWhatItShowed()
{
    ManipulationAction *former = root();
    view->clear();
    manipulation.reset();
    QVERIFY(view->scene()->items().isEmpty());
    view->selectAction(former);
    view->deleteSelection();
    view->updateActions();
    QCOMPARE(log, Log("none selected"));
}

void ManipulationGraphViewTest::isSilentWhenItGoes()
{
    click(root());
    log.clear();
    view.reset();
    QCOMPARE(log, Log());
}

void ManipulationGraphViewTest::namesWhatItShows()
{
    manipulation->setName("Two cuts");
    view->updateAccessibleName();
    QCOMPARE(view->accessibleName(), "Tree of manipulation Two cuts");
    view->clear();
    QCOMPARE(view->accessibleName(), "No manipulation");
    view->setManipulation(manipulation.get());
    QCOMPARE(view->accessibleName(), "Tree of manipulation Two cuts");
}

void ManipulationGraphViewTest::keepsItsDialogOpenOnEscape()
{
    QDialog dialog;
    auto *inDialog = new ManipulationGraphView(manipulation.get(), library.db(), &dialog);
    dialog.show();
    QTest::keyClick(inDialog, Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
}

// --- Damaged and huge trees ---

void ManipulationGraphViewTest::showsATreeWithoutARoot()
{
    manipulation->removeAndDeleteAll();
    view->setManipulation(manipulation.get());
    QVERIFY(view->scene()->items().isEmpty());
    QCOMPARE(pointer().menuAt(nowhere()), QStringList("Save image..."));
}

void ManipulationGraphViewTest::showsTreesWithoutInputs_data()
{
    using Damage = std::function<void(JoinAction *)>;
    QTest::addColumn<Damage>("damage");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("first lost") << Damage([](JoinAction *join) {
        join->setFromAction1(nullptr);
    }) << QStringList{"Join (0, 0) red", "Crop (50, 75)", "Morph (50, 150)"};
    QTest::newRow("second lost") << Damage([](JoinAction *join) { join->setFromAction2(nullptr); })
                                 << QStringList{"Join (0, 0) red", "Morph (-50, 75)"};
    QTest::newRow("both lost") << Damage([](JoinAction *join) {
        join->setFromAction1(nullptr);
        join->setFromAction2(nullptr);
    }) << QStringList{"Join (0, 0) red"};
    QTest::newRow("input of an area action lost") << Damage([](JoinAction *join) {
        static_cast<AreaAction *>(join->fromAction2())->setFromAction(nullptr);
    }) << QStringList{"Join (0, 0) red", "Morph (-50, 75)", "Crop (50, 75)"};
}

void ManipulationGraphViewTest::showsTreesWithoutInputs()
{
    QFETCH(std::function<void(JoinAction *)>, damage);
    QFETCH(QStringList, expected);
    JoinAction *join = manipulation->addJoinAction(root(), named("Graft").release());
    manipulation->addCropAction(join->fromAction2());
    damage(join);
    view->setManipulation(manipulation.get());
    QCOMPARE(nodes(), expected);

    choose(join, "Add remove action");
    choose(root(), "Delete selection");
    QCOMPARE(nodes(), expected);
}

void ManipulationGraphViewTest::showsAndEditsTreesOfThousandsOfActions_data()
{
    using Add = std::function<void(Manipulation *)>;
    QTest::addColumn<Add>("add");
    QTest::newRow("chain") << Add([](Manipulation *m) { m->addCropAction(m->rootAction()); });
    QTest::newRow("joins to the left")
        << Add([](Manipulation *m) { m->addJoinAction(m->rootAction(), named("").release()); });
    QTest::newRow("joins to the right") << Add([](Manipulation *m) {
        auto *join = dynamic_cast<JoinAction *>(m->actions().constLast());
        m->addJoinAction(join ? join->fromAction2() : m->rootAction(), named("").release());
    });
}

void ManipulationGraphViewTest::showsAndEditsTreesOfThousandsOfActions()
{
    QFETCH(std::function<void(Manipulation *)>, add);
    for (int i = 0; i < 3000; ++i)
        add(manipulation.get());
    view->setManipulation(manipulation.get());
    QCOMPARE(nodes().size(), manipulation->actions().size());
    QCOMPARE(links().size(), manipulation->actions().size() - 1);

    const qsizetype before = manipulation->actions().size();
    view->selectAction(manipulation->actions().at(before / 2));
    view->addRemoveAction2SelecNode();
    QCOMPARE(nodes().size(), before + 1);
    QVERIFY(!view->viewport()->grab().isNull());
}

QTEST_MAIN(ManipulationGraphViewTest)
#include "ManipulationGraphViewTest.moc"
