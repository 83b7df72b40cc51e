#include "manipulation/AreaDesigner.h"

#include "manipulation/AreaPoint.h"
#include "manipulation/DrawableArea.h"
#include "manipulation/ManipulationItem.h"
#include "manipulation/StartSquare.h"
#include "widgets/SilkIcon.h"

#include <QAction>
#include <QGraphicsScene>
#include <QPen>

#include <algorithm>
#include <memory>
#include <utility>

namespace Planaria {

AreaDesigner::AreaDesigner(Traits ownTraits, QWidget *parent)
    : ZoomGraphicsView(parent, true, true), traits(std::move(ownTraits))
{
    keepEscape();
    setDragMode(QGraphicsView::RubberBandDrag);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    createItems();
    createActions();
    connect(scene(), &QGraphicsScene::selectionChanged, this, &AreaDesigner::updateActions);
    clear();
}

AreaDesigner::~AreaDesigner()
{
    clearScene();
}

void AreaDesigner::createItems()
{
    polygonItem = scene()->addPolygon(QPolygonF(), QPen(Qt::DashLine));
    polygonItem->setZValue(1.0);
    shadowItem = scene()->addPath(QPainterPath(), QPen(Qt::NoPen), traits.shadowColor);
}

void AreaDesigner::createActions()
{
    const QString remove = QStringLiteral("bullet_delete");
    const QString removeKey = QStringLiteral("Ctrl+R");
    squareAction = createAction(traits.squareText, QStringLiteral("Ctrl+S"),
                                QStringLiteral("shape_handles"), &AreaDesigner::createSquare);
    addPointAction = createAction(tr("&Add point"), QStringLiteral("Ctrl+A"),
                                  QStringLiteral("bullet_add"), &AreaDesigner::addPoint);
    removePointAction =
        createAction(tr("&Remove point"), removeKey, remove, &AreaDesigner::removeSelectedPoint);
    removePointsAction = createAction(traits.removePointsText, removeKey, remove,
                                      &AreaDesigner::removeSelectedPoints);
}

QAction *AreaDesigner::createAction(const QString &text, const QString &shortcut,
                                    const QString &icon, Command command)
{
    auto *created = new QAction(silkIcon(icon), text, this);
    created->setShortcut(QKeySequence(shortcut));
    connect(created, &QAction::triggered, this, command);
    return created;
}

void AreaDesigner::updateActions()
{
    clearActions();
    const qsizetype selected = selectedPoints().size();
    if (selected > 1)
        addAction(removePointsAction);
    else if (selected == 1)
        addActions({addPointAction, removePointAction});
    else if (action && action->area().isEmpty())
        addAction(squareAction);
    else
        addAction(saveImageAction);
    setAccessibleName(action ? traits.accessibleName.arg(action->area().size())
                             : QStringLiteral("No area"));
}

// --- What is shown ---

void AreaDesigner::setAction(AreaAction *newAction)
{
    clearScene();
    action = newAction;
    if (action) {
        manipulationItem = new ManipulationItem(action->fromAction());
        manipulationItem->setZValue(-1.0);
        scene()->addItem(manipulationItem);
        setupScene();
    }
    updateActions();
}

void AreaDesigner::clear()
{
    setAction(nullptr);
}

void AreaDesigner::clearScene()
{
    action = nullptr;
    qDeleteAll(std::exchange(points, {}));
    polygonItem->setPolygon(QPolygonF());
    shadowItem->setPath(QPainterPath());
    delete std::exchange(manipulationItem, nullptr);
}

void AreaDesigner::setupScene()
{
    updateShadow();
    for (qsizetype i = points.size(); i < action->area().size(); ++i)
        insertHandle(i);
    updatePolygonItem();
    fitView();
}

void AreaDesigner::insertHandle(qsizetype index)
{
    auto *handle = new AreaPoint(action->area().at(index));
    connect(handle, &AreaPoint::pointChanged, this, &AreaDesigner::areaPointChanged);
    scene()->addItem(handle);
    points.insert(index, handle);
}

void AreaDesigner::updateShadow()
{
    const QPainterPath worm = manipulationItem->shape();
    const QPainterPath area = Drawable::areaPath(*action);
    shadowItem->setPath(traits.shadow == Traits::Shadow::Inside ? worm.intersected(area)
                                                                : worm.subtracted(area));
}

void AreaDesigner::updatePolygonItem()
{
    polygonItem->setPolygon(Drawable::areaPolygon(*action));
}

void AreaDesigner::areaPointChanged()
{
    if (!action)
        return;
    updatePolygonItem();
    updateShadow();
    emitChanged();
}

// --- The commands ---

void AreaDesigner::createSquare()
{
    if (!action || !action->area().isEmpty())
        return;
    addStartSquare(action);
    setupScene();
    updateActions();
}

QList<AreaPoint *> AreaDesigner::selectedPoints() const
{
    QList<AreaPoint *> selected;
    std::copy_if(points.cbegin(), points.cend(), std::back_inserter(selected),
                 [](const AreaPoint *handle) { return handle->isSelected(); });
    return selected;
}

void AreaDesigner::addPoint()
{
    const QList<AreaPoint *> selected = selectedPoints();
    if (selected.isEmpty())
        return;
    // Positions count, not what the corners say of them: a damaged file may have left gaps.
    const qsizetype index = points.indexOf(selected.first());
    const QPointF corner = calcNewPointPos(selected.first()->pos(), index);
    action->addAreaPoint(corner, static_cast<int>(index + 1));
    insertHandle(index + 1);
    updatePolygonItem(); // the preview stays: the corner lies on the outline
    updateActions();
    emitChanged();
}

QPointF AreaDesigner::calcNewPointPos(const QPointF &pos, qsizetype index) const
{
    if (points.size() == 1)
        return pos + QPointF(25.0, 25.0);
    const AreaPoint *next = points.at((index + 1) % points.size());
    return (pos + next->pos()) / 2.0;
}

void AreaDesigner::removePoint(AreaPoint *handle)
{
    const qsizetype index = points.indexOf(handle);
    points.removeAt(index);
    action->removeAreaPoint(static_cast<int>(index));
    scene()->removeItem(handle);
    updatePolygonItem();
}

void AreaDesigner::removeSelectedPoint()
{
    const QList<AreaPoint *> selected = selectedPoints();
    if (selected.isEmpty())
        return;
    const std::unique_ptr<AreaPoint> handle(selected.first());
    removePoint(handle.get());
    updateActions();
    updateShadow();
    emitChanged();
}

void AreaDesigner::removeSelectedPoints()
{
    const QList<AreaPoint *> selected = selectedPoints();
    if (selected.isEmpty())
        return;
    for (AreaPoint *handle : selected) {
        removePoint(handle);
        delete handle;
    }
    updateActions();
    updateShadow();
    emitChanged();
}

} // namespace Planaria
