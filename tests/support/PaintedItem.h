#pragma once

#include <QGraphicsItem>
#include <QImage>
#include <QPainter>
#include <QPen>
#include <QStyleOption>

#include <functional>

/// The pixels of one graphics item, and of what it should look like.
namespace Planaria {

/// A small picture whose origin is its centre.
inline QImage drawn(const std::function<void(QPainter *)> &draw)
{
    QImage image(60, 60, QImage::Format_RGB32);
    image.fill(Qt::lightGray);
    QPainter painter(&image);
    painter.translate(30.0, 30.0);
    draw(&painter);
    return image;
}

/// What @p item paints around its centre in a view that flips y.
inline QImage painted(QGraphicsItem *item, QStyle::State state = QStyle::State_None)
{
    return drawn([item, state](QPainter *painter) {
        painter->scale(1.0, -1.0);
        QStyleOptionGraphicsItem option;
        option.state = state;
        item->paint(painter, &option, nullptr);
    });
}

/// Of the node of a graph.
struct CircleLook
{
    double radius;
    QPen outline;
    QColor background;
    QColor caption;
    int pixelSize;
};

inline QImage circle(const CircleLook &look, const QString &caption)
{
    return drawn([&](QPainter *painter) {
        painter->setPen(look.outline);
        painter->setBrush(look.background);
        painter->drawEllipse(QPointF(), look.radius, look.radius);
        QFont font;
        font.setPixelSize(look.pixelSize);
        painter->setFont(font);
        painter->setPen(look.caption);
        const double margin = look.radius - 2.5;
        painter->drawText(QRectF(-margin, -margin, 2.0 * margin, 2.0 * margin),
                          Qt::AlignCenter | Qt::TextDontClip, caption);
    });
}

} // namespace Planaria
