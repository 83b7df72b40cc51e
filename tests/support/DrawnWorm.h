#pragma once

#include <QList>
#include <QPointF>
#include <QString>

class QGraphicsItem;
class QGraphicsPathItem;
class QGraphicsScene;
class QImage;
class QPainterPath;
class QRectF;

/// What a test sees of a drawn worm: its items, by the layer they stand in, and its pixels.
namespace Planaria {

class MorphologyItem;

/// In the order of the regions.
QList<QGraphicsPathItem *> regionItems(const MorphologyItem &worm);
QList<QGraphicsPathItem *> cordItems(const MorphologyItem &worm);

QList<QPointF> positions(const QList<QGraphicsPathItem *> &items);

bool isFinite(const QPointF &point);
bool isFinite(const QPainterPath &path);
/// Whether all numbers of @p item and its parts can be drawn.
bool isFinite(const QGraphicsItem *item);

/// @p path without segments that have no extent: how many of them are left in a drawing depends on
/// how the last digits of their points were rounded.
QPainterPath withoutEmptySegments(const QPainterPath &path);

/// The part @p window of a scene on white paper, one pixel a unit, not smoothed.
QImage rendered(QGraphicsScene *scene, const QRectF &window);

/// The whole scene, small and smoothed.
QImage thumbnail(QGraphicsScene *scene);

/// The colour of a scene at @p point in one word: white, grey, black, or the hue.
QString tintAt(QGraphicsScene *scene, const QPointF &point);

} // namespace Planaria
