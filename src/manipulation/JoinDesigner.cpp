#include "manipulation/JoinDesigner.h"

#include "manipulation/ManipulationItem.h"
#include "model/Angles.h"
#include "model/JoinAction.h"
#include "morphology/DrawableNumbers.h"

#include <QGraphicsScene>
#include <QMouseEvent>

namespace Planaria {

namespace {

double degrees(double radians)
{
    return 180.0 * radians / Angles::halfTurn;
}

double radians(double degrees)
{
    return degrees * Angles::halfTurn / 180.0;
}

} // namespace

JoinDesigner::JoinDesigner(QWidget *parent) : ZoomGraphicsView(parent, true, true)
{
    keepEscape();
    createActions();
    connect(scene(), &QGraphicsScene::changed, this, &JoinDesigner::productChanged);
    connect(scene(), &QGraphicsScene::selectionChanged, this, &JoinDesigner::updateActions);
    clear();
}

JoinDesigner::~JoinDesigner()
{
    clear();
}

void JoinDesigner::createActions() {}

void JoinDesigner::updateActions() {}

void JoinDesigner::updatePointItem() {}

// --- What is shown ---

void JoinDesigner::setJoinAction(JoinAction *action)
{
    clear();
    if (!action)
        return;
    joinAction = action;
    item1 = new ManipulationItem(action->fromAction1());
    item2 = new ManipulationItem(action->fromAction2());
    item2->setFlag(QGraphicsItem::ItemIsMovable);
    setupScene();
    setAccessibleName(QStringLiteral("Graft on its body"));
}

void JoinDesigner::setupScene()
{
    scene()->addItem(item1);
    scene()->addItem(item2);
    item2->setPos(Drawable::point({joinAction->vectX(), joinAction->vectY()}));
    item2->setRotation(degrees(Drawable::number(joinAction->rot())));
    fitView();
}

void JoinDesigner::clear()
{
    clearScene();
    joinAction = nullptr;
    item1 = nullptr;
    item2 = nullptr;
    lastAngle.reset();
    setAccessibleName(QStringLiteral("No join"));
}

void JoinDesigner::clearScene()
{
    scene()->clear();
}

void JoinDesigner::productChanged(const QList<QRectF> & /*region*/)
{
    if (!joinAction)
        return;
    writeProduct();
    emit joinChanged();
}

void JoinDesigner::writeProduct()
{
    if (!joinAction)
        return;
    // What shows as it stands in the action is left alone: no last digit changes by itself, and no
    // number of a damaged file that cannot be drawn.
    if (item2->x() != Drawable::number(joinAction->vectX()))
        joinAction->setVectX(item2->x());
    if (item2->y() != Drawable::number(joinAction->vectY()))
        joinAction->setVectY(item2->y());
    if (item2->rotation() != degrees(Drawable::number(joinAction->rot())))
        joinAction->setRot(radians(item2->rotation()));
}

// --- The mouse ---

void JoinDesigner::startDrag(const QMouseEvent *event)
{
    lastAngle.reset();
    if (item2 && event->button() == Qt::LeftButton &&
        !item2->contains(item2->mapFromScene(mapToScene(event->pos()))))
        lastAngle = angleTo(event->pos());
}

double JoinDesigner::angleTo(const QPoint &pos) const
{
    return Angles::angleOf(mapToScene(pos) - item2->pos());
}

void JoinDesigner::mousePressEvent(QMouseEvent *event)
{
    startDrag(event);
    ZoomGraphicsView::mousePressEvent(event);
}

void JoinDesigner::mouseDoubleClickEvent(QMouseEvent *event)
{
    startDrag(event);
    ZoomGraphicsView::mouseDoubleClickEvent(event);
}

void JoinDesigner::mouseMoveEvent(QMouseEvent *event)
{
    if (!lastAngle) {
        ZoomGraphicsView::mouseMoveEvent(event);
    } else {
        const double angle = angleTo(event->pos());
        item2->setRotation(item2->rotation() + degrees(angle - *lastAngle));
        lastAngle = angle;
    }
    writeProduct(); // the scene tells of the change later, when another action may be shown
}

} // namespace Planaria
