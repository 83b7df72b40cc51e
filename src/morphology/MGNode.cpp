#include "morphology/MGNode.h"

#include "morphology/MGLink.h"
#include "morphology/MorphoGraphView.h"

namespace Planaria {

MGNode::MGNode(MorphoGraphView *graphView, double radius, MGNode *parent)
    : CircleNode(radius, parent), view_(graphView)
{
    setFlags(ItemIsMovable | ItemIsSelectable | ItemIsFocusable | ItemSendsGeometryChanges);
    setZValue(0.0);
    setTextColor(Qt::black);
}

MGNode::~MGNode()
{
    while (!links_.isEmpty())
        delete links_
            .constLast(); // takes itself out of the list, twice if it joins a node to itself
}

MorphoGraphView *MGNode::view() const
{
    return view_;
}

void MGNode::addLink(MGLink *link)
{
    links_.append(link);
}

void MGNode::removeLink(MGLink *link)
{
    links_.removeOne(link);
}

void MGNode::updateLinks()
{
    for (MGLink *link : std::as_const(links_))
        link->updateLinkLine();
}

void MGNode::focusInEvent(QFocusEvent *event)
{
    focusLift.lift(this);
    QGraphicsItem::focusInEvent(event);
}

void MGNode::focusOutEvent(QFocusEvent *event)
{
    focusLift.restore(this);
    QGraphicsItem::focusOutEvent(event);
}

void MGNode::mouseDoubleClickEvent(QGraphicsSceneMouseEvent * /*event*/) {}

} // namespace Planaria
