#include "manipulation/ManipulationGraphView.h"

#include "db/ExperimentFactory.h"
#include "manipulation/EDGAction.h"
#include "manipulation/StartSquare.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/RemoveAction.h"
#include "widgets/GuiConfig.h"
#include "widgets/SilkIcon.h"

#include <QAction>
#include <QGraphicsLineItem>
#include <QGraphicsScene>
#include <QPen>

#include <algorithm>

namespace Planaria {

namespace {

QString labelOf(const ManipulationAction *action)
{
    if (dynamic_cast<const RemoveAction *>(action))
        return QStringLiteral("Remov");
    if (dynamic_cast<const CropAction *>(action))
        return QStringLiteral("Crop");
    if (dynamic_cast<const JoinAction *>(action))
        return QStringLiteral("Join");
    if (dynamic_cast<const IrradiationAction *>(action))
        return QStringLiteral("Irrad");
    return QStringLiteral("Morph");
}

/// In the order of the drawing, from left to right; without those that a damaged file has lost.
QList<ManipulationAction *> inputsOf(const ManipulationAction *action)
{
    QList<ManipulationAction *> inputs;
    if (const auto *area = dynamic_cast<const AreaAction *>(action))
        inputs = {area->fromAction()};
    else if (const auto *join = dynamic_cast<const JoinAction *>(action))
        inputs = {join->fromAction1(), join->fromAction2()};
    inputs.removeAll(nullptr);
    return inputs;
}

} // namespace

ManipulationGraphView::ManipulationGraphView(Manipulation *shown, DB *database, QWidget *parent)
    : ZoomGraphicsView(parent, true, true), manipulation(shown), db(database)
{
    initWidget();
    buildFullManipulation();
}

ManipulationGraphView::ManipulationGraphView(DB *database, QWidget *parent)
    : ZoomGraphicsView(parent, true, true), db(database)
{
    initWidget();
}

ManipulationGraphView::~ManipulationGraphView()
{
    scene()->disconnect(this); // whoever listens may be half gone by now
}

void ManipulationGraphView::initWidget()
{
    keepEscape();
    createActions();
    updateAccessibleName();
    connect(scene(), &QGraphicsScene::selectionChanged, this,
            &ManipulationGraphView::updateActions);
}

// --- The context menu ---

void ManipulationGraphView::createActions()
{
    addRemoveAction = createAction(QStringLiteral("Add remove action"), "shape_square_delete",
                                   &ManipulationGraphView::addRemoveAction2SelecNode);
    addCropAction = createAction(QStringLiteral("Add crop action"), "shape_square",
                                 &ManipulationGraphView::addCropAction2SelecNode);
    addJoinAction = createAction(QStringLiteral("Add join action"), "shape_move_backwards",
                                 &ManipulationGraphView::addJoinAction2SelecNode);
    addIrradiationAction = createAction(QStringLiteral("Add irradiation action"), "transmit",
                                        &ManipulationGraphView::addIrradiationAction2SelecNode);
    deleteAction = createAction(QStringLiteral("Delete selection"), "delete",
                                &ManipulationGraphView::deleteSelection);
}

QAction *ManipulationGraphView::createAction(const QString &text, const QString &icon,
                                             void (ManipulationGraphView::*command)())
{
    auto *action = new QAction(silkIcon(icon), text, this);
    connect(action, &QAction::triggered, this, command);
    return action;
}

void ManipulationGraphView::updateActions()
{
    const qsizetype selected = scene()->selectedItems().size();
    clearActions();
    if (selected == 0) {
        addAction(saveImageAction);
        emit signActionSelecChanged(nullptr);
    } else if (selected == 1) {
        addActions(
            {addCropAction, addRemoveAction, addJoinAction, addIrradiationAction, deleteAction});
        emit signActionSelecChanged(selectedAction()->action());
    } else {
        addAction(deleteAction);
    }
}

// --- The selection ---

EDGAction *ManipulationGraphView::selectedAction() const
{
    const QList<QGraphicsItem *> selected = scene()->selectedItems();
    return selected.size() == 1 ? dynamic_cast<EDGAction *>(selected.first()) : nullptr;
}

void ManipulationGraphView::selectAction(ManipulationAction *action)
{
    if (EDGAction *item = node(action))
        item->setSelected(true);
}

void ManipulationGraphView::clearSelection()
{
    scene()->clearSelection();
}

// --- The commands ---

template <typename Action>
void ManipulationGraphView::addAreaAction(Action *(Manipulation::*addBehind)(ManipulationAction *))
{
    const EDGAction *selected = selectedAction();
    if (!selected)
        return;
    Action *added = (manipulation->*addBehind)(selected->action());
    addStartSquare(added);
    showAdded(added);
}

void ManipulationGraphView::addRemoveAction2SelecNode()
{
    addAreaAction(&Manipulation::addRemoveAction);
}

void ManipulationGraphView::addCropAction2SelecNode()
{
    addAreaAction(&Manipulation::addCropAction);
}

void ManipulationGraphView::addIrradiationAction2SelecNode()
{
    addAreaAction(&Manipulation::addIrradiationAction);
}

void ManipulationGraphView::addJoinAction2SelecNode()
{
    const EDGAction *selected = selectedAction();
    if (!selected)
        return;
    auto graft = ExperimentFactory::instance(nullptr)->loadStoredDefaultMorphology(db);
    showAdded(manipulation->addJoinAction(selected->action(), graft.release()));
}

void ManipulationGraphView::showAdded(ManipulationAction *added)
{
    buildFullManipulation();
    emit signManipulationGraphChanged();
    selectAction(added);
}

void ManipulationGraphView::deleteSelection()
{
    QList<ManipulationAction *> selected;
    for (const QGraphicsItem *item : scene()->selectedItems()) {
        if (const auto *actionItem = dynamic_cast<const EDGAction *>(item))
            selected.append(actionItem->action());
    }
    if (selected.isEmpty())
        return;
    clearSelection();
    for (ManipulationAction *action : std::as_const(selected))
        manipulation->removeAction(action); // leaves stay, and of a join's graft nothing is left
    buildFullManipulation();
    emit signManipulationGraphChanged();
}

// --- What is shown ---

void ManipulationGraphView::clear()
{
    clearScene();
    manipulation = nullptr;
    updateAccessibleName();
}

void ManipulationGraphView::setManipulation(Manipulation *shown)
{
    clear();
    manipulation = shown;
    buildFullManipulation();
    updateAccessibleName();
}

void ManipulationGraphView::updateAccessibleName()
{
    setAccessibleName(
        manipulation ? QStringLiteral("Tree of manipulation %1").arg(manipulation->name()).trimmed()
                     : QStringLiteral("No manipulation"));
}

void ManipulationGraphView::clearScene()
{
    clearSelection(); // else the last of several would be told of in passing
    items_.clear();
    scene()->clear();
}

void ManipulationGraphView::buildFullManipulation()
{
    clearScene();
    if (!manipulation || !manipulation->rootAction())
        return;
    const QList<ManipulationAction *> tree = buildActionTree(manipulation->rootAction());
    node(manipulation->rootAction())->setOutlineColor(Qt::red);
    locateActionTree(tree, calcWeighMap(tree));
    fitView();
}

// No recursion: a tree may be deeper than the call stack.

QList<ManipulationAction *> ManipulationGraphView::buildActionTree(ManipulationAction *root)
{
    QList<ManipulationAction *> tree;
    QList<ManipulationAction *> waiting{root};
    while (!waiting.isEmpty()) {
        ManipulationAction *action = waiting.takeLast();
        buildNode(action);
        tree.append(action);
        QList<ManipulationAction *> inputs = inputsOf(action);
        std::reverse(inputs.begin(), inputs.end());
        waiting += inputs;
    }
    return tree;
}

void ManipulationGraphView::buildNode(ManipulationAction *action)
{
    auto *item = new EDGAction(action, this, nullptr);
    item->setText(labelOf(action));
    items_.insert(action, item);
    scene()->addItem(item);
}

ManipulationGraphView::WeighMap
ManipulationGraphView::calcWeighMap(const QList<ManipulationAction *> &tree)
{
    WeighMap weights;
    std::for_each(tree.crbegin(), tree.crend(), [&weights](const ManipulationAction *action) {
        int leaves = 0;
        for (const ManipulationAction *input : inputsOf(action))
            leaves += weights.value(input);
        weights.insert(action, std::max(leaves, 1));
    });
    return weights;
}

void ManipulationGraphView::locateActionTree(const QList<ManipulationAction *> &tree,
                                             const WeighMap &weights)
{
    for (ManipulationAction *action : tree) {
        if (const auto *area = dynamic_cast<const AreaAction *>(action)) {
            locateInput(action, area->fromAction(), 0);
        } else if (const auto *join = dynamic_cast<const JoinAction *>(action)) {
            locateInput(action, join->fromAction1(), -weights.value(join->fromAction1()));
            locateInput(action, join->fromAction2(), weights.value(join->fromAction2()));
        }
    }
}

void ManipulationGraphView::locateInput(ManipulationAction *action, ManipulationAction *input,
                                        int side)
{
    EDGAction *item = node(input);
    if (!item)
        return;
    const QPointF position = node(action)->pos();
    item->setPos(position + GuiConfig::actionNodeYDisp() + side * GuiConfig::actionNodeXDisp());
    createLink(position, item->pos());
}

void ManipulationGraphView::createLink(const QPointF &from, const QPointF &to)
{
    auto *link = new QGraphicsLineItem(QLineF(from, to));
    link->setZValue(-1.0);
    link->setPen(QPen(Qt::black, 1.0));
    scene()->addItem(link);
}

} // namespace Planaria
