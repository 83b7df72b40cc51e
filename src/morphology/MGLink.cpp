#include "morphology/MGLink.h"

#include "model/Angles.h"
#include "model/RegionsLink.h"
#include "morphology/DrawableNumbers.h"
#include "morphology/MGLinkLever.h"
#include "morphology/MGRegion.h"
#include "morphology/MorphoGraphView.h"
#include "widgets/GuiConfig.h"

#include <QPainter>
#include <QStyleOption>

namespace Planaria {

using namespace Angles;

MGLink::MGLink(MGNode *from, MGNode *to, MorphoGraphView *graphView, RegionsLink *modelLink)
    : from_(from), to_(to), view(graphView), regionsLink_(modelLink)
{
    from_->addLink(this);
    to_->addLink(this);
    if (isRegionsLink()) {
        // Movable, though it never moves: a click with the right button must not end a selection.
        setFlags(ItemIsMovable | ItemIsSelectable | ItemIsFocusable | ItemSendsGeometryChanges);
        setPen(QPen(GuiConfig::graphLinkColor(), 1.5, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
        lever_ = new MGLinkLever(this);
    } else {
        setPen(QPen(Qt::black, 1.0));
    }
    setZValue(-1.0);
    updateLinkLine();
}

MGLink::~MGLink()
{
    from_->removeLink(this);
    to_->removeLink(this);
}

void MGLink::updateLinkLine()
{
    constexpr double fromRim = 21.0;
    const double toRim = lever_ ? 21.0 : 16.0;
    const QPointF a = from_->scenePos();
    const QPointF b = to_->scenePos();
    const double dist = length(b - a);
    if (dist <= fromRim + toRim) {
        setLine(QLineF());
        setOpacity(0.0);
        return;
    }
    const QPointF along = unit(b - a);
    setLine(QLineF(a + fromRim * along, a + (dist - toRim) * along));
    setOpacity(1.0);
}

void MGLink::regionMoved(MGRegion *moved)
{
    const bool joinsTwo = from_ != to_; // a damaged file may link a region with itself
    if (isRegionsLink() && joinsTwo) {
        auto *other = static_cast<MGRegion *>(otherNode(moved));
        const QPointF vector = other->pos() - moved->pos();
        const double ang = angleOf(vector);
        const double delta = Drawable::ang(regionsLink_, moved->region()) - ang;
        regionsLink_->setTotalDist(length(vector));
        regionsLink_->setAng(ang, moved->region());
        lever_->updatePos();
        moved->adjustOrgansRot(delta);
        other->adjustOrgansRot(delta);
        other->adjustLevers();
    }
    updateLinkLine();
}

void MGLink::linkLeverChanged(MGLinkLever * /*lever*/)
{
    if (view)
        view->graphItemChanged();
}

void MGLink::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    if (line().isNull())
        return; // the painter would make a dot of it
    if (!(option->state & QStyle::State_Selected)) {
        QGraphicsLineItem::paint(painter, option, widget);
        return;
    }
    QPen selectedPen = pen();
    selectedPen.setStyle(Qt::DashLine);
    selectedPen.setWidth(2);
    painter->setPen(selectedPen);
    painter->drawLine(line());
}

QVariant MGLink::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemPositionChange)
        return pos();
    return QGraphicsLineItem::itemChange(change, value);
}

void MGLink::focusInEvent(QFocusEvent *event)
{
    focusLift.lift(this);
    QGraphicsLineItem::focusInEvent(event);
}

void MGLink::focusOutEvent(QFocusEvent *event)
{
    focusLift.restore(this);
    QGraphicsLineItem::focusOutEvent(event);
}

} // namespace Planaria
