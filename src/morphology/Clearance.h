#pragma once

#include "model/Angles.h"

#include <algorithm>

/// Nodes and levers that stand for a vector of the model keep clear of their centre: each is shown
/// further out than its vector by a fixed distance, scene units.
namespace Planaria::Clearance {

/// Where @p vector is shown; at @p noDirection where it is exactly (0, 0).
inline QPointF shownAt(const QPointF &vector, double distance, const QPointF &noDirection)
{
    const bool isZero = vector.x() == 0.0 && vector.y() == 0.0;
    return isZero ? noDirection : vector + distance * Angles::unit(vector);
}

struct Dragged
{
    QPointF place;  // not nearer than the distance
    QPointF vector; // what it stands for
};

/// What dragging to @p proposed comes to.
inline Dragged draggedTo(const QPointF &proposed, double distance)
{
    const QPointF along = Angles::direction(Angles::angleOf(proposed));
    const double reach = std::max(Angles::length(proposed), distance);
    return {reach > distance ? proposed : distance * along, (reach - distance) * along};
}

} // namespace Planaria::Clearance
