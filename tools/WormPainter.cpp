#include "WormPainter.h"

#include "morphology/MorphologyItem.h"

#include <QBuffer>
#include <QGraphicsScene>
#include <QPainter>

#include <algorithm>
#include <memory>

namespace Planaria::WormPainter {

namespace {

using Item = std::unique_ptr<MorphologyItem>;

Item centredItem(const Morphology &worm)
{
    auto item = std::make_unique<MorphologyItem>(worm, nullptr, false);
    item->centerAtZero();
    return item;
}

/// Draws @p worm around the origin of @p painter, whose y axis points down as that of all images.
void draw(QPainter *painter, Item worm)
{
    QGraphicsScene scene;
    const QRectF extent = worm->mapRectToScene(worm->boundingRect());
    scene.addItem(worm.release());
    painter->scale(1.0, -1.0);
    scene.render(painter, extent, extent);
}

} // namespace

QImage icon(const Morphology &worm, int side)
{
    constexpr int oversampling = 8; // many lines are thinner than a pixel of a small icon
    QImage image(oversampling * side, oversampling * side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);

    Item item = centredItem(worm);
    const QRectF extent = item->boundingRect();
    const double scale = image.width() / std::max(extent.width(), extent.height());
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(image.rect()).center());
    painter.scale(scale, scale);
    draw(&painter, std::move(item));
    painter.end();
    return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QByteArray photo(const Morphology &worm, double degrees)
{
    constexpr int side = 600;
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(QColor(72, 74, 78));

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(image.rect()).center());
    painter.setPen(QPen(QColor(150, 158, 160), 0.015 * side));
    painter.setBrush(QColor(226, 231, 228));
    painter.drawEllipse(QPointF(), 0.48 * side, 0.48 * side);

    Item item = centredItem(worm);
    item->setRotation(degrees);
    painter.scale(0.85, 0.85);
    draw(&painter, std::move(item));
    painter.end();

    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

} // namespace Planaria::WormPainter
