#pragma once

#include "model/AreaAction.h"
#include "morphology/DrawableNumbers.h"

#include <QPainterPath>
#include <QPolygonF>

/// The area of an action as it can be drawn, whatever numbers a file holds.
namespace Planaria::Drawable {

inline QPolygonF areaPolygon(const AreaAction &action)
{
    QPolygonF polygon = action.calcAreaVector();
    for (QPointF &corner : polygon)
        corner = point(corner);
    return polygon;
}

/// Open; taken as closed wherever it meets another path.
inline QPainterPath areaPath(const AreaAction &action)
{
    QPainterPath path;
    path.addPolygon(areaPolygon(action));
    return path;
}

} // namespace Planaria::Drawable
