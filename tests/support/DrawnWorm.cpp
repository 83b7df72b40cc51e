#include "support/DrawnWorm.h"

#include "morphology/MorphologyItem.h"

#include <QGraphicsScene>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Planaria {

namespace {

QList<QGraphicsPathItem *> itemsInLayer(const MorphologyItem &worm, double z)
{
    QList<QGraphicsPathItem *> items;
    for (QGraphicsItem *child : worm.childItems()) {
        auto *path = qgraphicsitem_cast<QGraphicsPathItem *>(child);
        if (path != nullptr && path->zValue() == z)
            items += path;
    }
    return items;
}

bool isEmpty(const QPolygonF &segment)
{
    const QRectF extent = segment.boundingRect();
    return extent.width() < 1e-9 && extent.height() < 1e-9;
}

} // namespace

QList<QGraphicsPathItem *> regionItems(const MorphologyItem &worm)
{
    return itemsInLayer(worm, -5.0);
}

QList<QGraphicsPathItem *> cordItems(const MorphologyItem &worm)
{
    return itemsInLayer(worm, 5.0);
}

QList<QPointF> positions(const QList<QGraphicsPathItem *> &items)
{
    QList<QPointF> all;
    for (const QGraphicsPathItem *item : items)
        all += item->pos();
    return all;
}

bool isFinite(const QPointF &point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

bool isFinite(const QPainterPath &path)
{
    for (int i = 0; i < path.elementCount(); ++i) {
        if (!isFinite(QPointF(path.elementAt(i))))
            return false;
    }
    return true;
}

bool isFinite(const QGraphicsItem *item)
{
    const auto *path = dynamic_cast<const QGraphicsPathItem *>(item);
    const QList<QGraphicsItem *> children = item->childItems();
    return isFinite(item->pos()) && std::isfinite(item->rotation()) &&
           (path == nullptr || isFinite(path->path())) &&
           std::all_of(children.cbegin(), children.cend(),
                       [](const QGraphicsItem *child) { return isFinite(child); });
}

QPainterPath withoutEmptySegments(const QPainterPath &path)
{
    QPainterPath result;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo()) {
            result.moveTo(element);
            continue;
        }
        QPolygonF segment{{result.currentPosition(), element}};
        if (element.isCurveTo()) {
            segment << path.elementAt(i + 1) << path.elementAt(i + 2);
            i += 2;
        }
        if (isEmpty(segment))
            continue;
        if (element.isCurveTo())
            result.cubicTo(segment[1], segment[2], segment[3]);
        else
            result.lineTo(element);
    }
    return result;
}

QImage rendered(QGraphicsScene *scene, const QRectF &window)
{
    QImage image(window.size().toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    scene->render(&painter, QRectF(image.rect()), window);
    return image;
}

QImage thumbnail(QGraphicsScene *scene)
{
    QImage image(200, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    scene->render(&painter, image.rect(), scene->itemsBoundingRect());
    return image;
}

QString tintAt(QGraphicsScene *scene, const QPointF &point)
{
    const QRectF window(point - QPointF(2.5, 2.5), QSizeF(5.0, 5.0));
    const QColor color = rendered(scene, window).pixelColor(2, 2);
    if (color.hsvSaturation() < 20)
        return color.value() > 240 ? "white" : color.value() < 60 ? "black" : "grey";
    static constexpr const char *hues[] = {"red", "yellow", "green", "cyan", "blue", "purple"};
    return hues[(color.hsvHue() + 30) / 60 % 6];
}

} // namespace Planaria
