#pragma once

#include <QImage>
#include <QRectF>

class QGraphicsItem;

/// What a test sees of the drawn product of an action.
namespace Planaria {

class Manipulation;

/// The part @p window of the drawing of @p item alone, @p scale pixels a unit, not smoothed, +y
/// downwards. Where nothing is drawn it is transparent.
QImage drawn(QGraphicsItem *item, const QRectF &window, double scale = 1.0);

/// The same of the final product of @p manipulation.
QImage drawnProduct(const Manipulation &manipulation, const QRectF &window, double scale = 1.0);

/// The number of pixels on which anything is drawn.
qsizetype inkedPixels(const QImage &image);

/// The smallest rectangle around all pixels on which anything is drawn.
QRect inkedRect(const QImage &image);

/// The number of pixels in which one of two images of equal size has ink and the other has none,
/// though no edge is near: neither image changes from ink to none within two pixels of it.
qsizetype pixelsOffTheEdges(const QImage &one, const QImage &other);

/// The same for pixels that differ at all, in ink or in colour.
qsizetype coloursOffTheEdges(const QImage &one, const QImage &other);

/// Ink where two images of equal size differ at all.
QImage differenceOf(const QImage &one, const QImage &other);

} // namespace Planaria
