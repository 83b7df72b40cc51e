#include "widgets/CircleNode.h"

#include <QPainter>
#include <QStyleOption>

namespace Planaria {

CircleNode::CircleNode(double radius, QGraphicsItem *parent)
    : QGraphicsItem(parent),
      boundingRect_(-radius - 0.5, -radius - 0.5, 2.0 * radius + 1.0, 2.0 * radius + 1.0),
      ellipseRect(-radius, -radius, 2.0 * radius, 2.0 * radius),
      textRect(2.5 - radius, 2.5 - radius, 2.0 * radius - 5.0, 2.0 * radius - 5.0)
{
}

void CircleNode::setText(const QString &text)
{
    prepareGeometryChange();
    text_ = text;
    update();
}

void CircleNode::setTextColor(const QColor &color)
{
    textColor_ = color;
    update();
}

void CircleNode::setOutlineColor(const QColor &color)
{
    outlineColor_ = color;
    update();
}

void CircleNode::setBackgroundColor(const QColor &color)
{
    backgroundColor_ = color;
    update();
}

QPainterPath CircleNode::shape() const
{
    QPainterPath path;
    path.addEllipse(ellipseRect);
    return path;
}

void CircleNode::paint(QPainter *painter, const QStyleOptionGraphicsItem *option,
                       QWidget * /*widget*/)
{
    painter->scale(1.0, -1.0); // the view shows +y upwards, and text has to stand upright
    QPen pen(outlineColor_, 1.0);
    if (option->state & QStyle::State_Selected) {
        pen.setStyle(Qt::DotLine);
        pen.setWidth(2);
    }
    painter->setPen(pen);
    painter->setBrush(backgroundColor_);
    painter->drawEllipse(ellipseRect);

    QFont font = painter->font();
    font.setPixelSize(fontPixelSize);
    painter->setFont(font);
    painter->setPen(textColor_);
    // Fonts differ: a caption that is wider than its place shows whole.
    painter->drawText(textRect, Qt::AlignCenter | Qt::TextDontClip, text_);
}

} // namespace Planaria
