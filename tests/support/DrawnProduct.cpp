#include "support/DrawnProduct.h"

#include "manipulation/ManipulationItem.h"
#include "model/Manipulation.h"

#include <QGraphicsScene>
#include <QPainter>

#include <algorithm>

namespace Planaria {

namespace {

bool hasInk(const QImage &image, int x, int y)
{
    return qAlpha(image.pixel(x, y)) > 0;
}

/// Whether @p image changes from ink to none within two pixels of a place.
bool hasEdgeNear(const QImage &image, int x, int y)
{
    const bool here = hasInk(image, x, y);
    const QRect near = QRect(x - 2, y - 2, 5, 5) & image.rect();
    for (int row = near.top(); row <= near.bottom(); ++row) {
        for (int column = near.left(); column <= near.right(); ++column) {
            if (hasInk(image, column, row) != here)
                return true;
        }
    }
    return false;
}

template <typename Differs>
qsizetype countOffTheEdges(const QImage &one, const QImage &other, const Differs &differs)
{
    qsizetype count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (differs(x, y) && !hasEdgeNear(one, x, y) && !hasEdgeNear(other, x, y))
                ++count;
        }
    }
    return count;
}

} // namespace

QImage drawn(QGraphicsItem *item, const QRectF &window, double scale)
{
    QGraphicsScene scene;
    scene.addItem(item);
    QImage image((window.size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    scene.render(&painter, QRectF(image.rect()), window, Qt::IgnoreAspectRatio);
    painter.end();
    scene.removeItem(item);
    return image;
}

QImage drawnProduct(const Manipulation &manipulation, const QRectF &window, double scale)
{
    ManipulationItem item(manipulation.rootAction());
    return drawn(&item, window, scale);
}

qsizetype inkedPixels(const QImage &image)
{
    qsizetype count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += hasInk(image, x, y) ? 1 : 0;
    }
    return count;
}

QRect inkedRect(const QImage &image)
{
    QRect rect;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (hasInk(image, x, y))
                rect |= QRect(x, y, 1, 1);
        }
    }
    return rect;
}

qsizetype pixelsOffTheEdges(const QImage &one, const QImage &other)
{
    return countOffTheEdges(one, other,
                            [&](int x, int y) { return hasInk(one, x, y) != hasInk(other, x, y); });
}

qsizetype coloursOffTheEdges(const QImage &one, const QImage &other)
{
    return countOffTheEdges(one, other,
                            [&](int x, int y) { return one.pixel(x, y) != other.pixel(x, y); });
}

QImage differenceOf(const QImage &one, const QImage &other)
{
    QImage difference(one.size(), QImage::Format_ARGB32_Premultiplied);
    difference.fill(Qt::transparent);
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (one.pixel(x, y) != other.pixel(x, y))
                difference.setPixelColor(x, y, Qt::black);
        }
    }
    return difference;
}

} // namespace Planaria
