#include "morphology/MGNode.h"

#include "morphology/MGLink.h"
#include "morphology/MorphoGraphView.h"

#include <QPainter>
#include <QStyleOption>

namespace Planaria {

MGNode::MGNode(MorphoGraphView *graphView, double radius, MGNode *parent)
    : QGraphicsItem(parent), view_(graphView),
      boundingRect_(-radius - 0.5, -radius - 0.5, 2.0 * radius + 1.0, 2.0 * radius + 1.0),
      ellipseRect(-radius, -radius, 2.0 * radius, 2.0 * radius),
      textRect(2.5 - radius, 2.5 - radius, 2.0 * radius - 5.0, 2.0 * radius - 5.0)
{
    setFlags(ItemIsMovable | ItemIsSelectable | ItemIsFocusable | ItemSendsGeometryChanges);
    setZValue(0.0);
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

void MGNode::setText(const QString &text)
{
    prepareGeometryChange();
    text_ = text;
    update();
}

void MGNode::setTextColor(const QColor &color)
{
    textColor = color;
    update();
}

void MGNode::setOutlineColor(const QColor &color)
{
    outlineColor = color;
    update();
}

void MGNode::setBackgroundColor(const QColor &color)
{
    backgroundColor = color;
    update();
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

QPainterPath MGNode::shape() const
{
    QPainterPath path;
    path.addEllipse(ellipseRect);
    return path;
}

void MGNode::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget * /*widget*/)
{
    painter->scale(1.0, -1.0); // the view shows +y upwards, and text has to stand upright
    QPen pen(outlineColor, 1.0);
    if (option->state & QStyle::State_Selected) {
        pen.setStyle(Qt::DotLine);
        pen.setWidth(2);
    }
    painter->setPen(pen);
    painter->setBrush(backgroundColor);
    painter->drawEllipse(ellipseRect);

    QFont font = painter->font();
    font.setPixelSize(fontPixelSize);
    painter->setFont(font);
    painter->setPen(textColor);
    painter->drawText(textRect, Qt::AlignHCenter | Qt::AlignVCenter, text_);
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
