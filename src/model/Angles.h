#pragma once

#include <QPointF>

#include <algorithm>
#include <cmath>
#include <numbers>

/// Angles in radians: 0 along +x, growing towards +y. One room for what model, drawing, editor
/// and distance share.
namespace Planaria::Angles {

inline constexpr double halfTurn = std::numbers::pi;
inline constexpr double fullTurn = 2.0 * std::numbers::pi;
inline constexpr double quarterTurn = 0.5 * std::numbers::pi;

/// @p angle brought into [0, 2 pi).
inline double normalized(double angle)
{
    const double rest = angle - fullTurn * std::floor(angle / fullTurn);
    return rest >= fullTurn ? 0.0 : rest; // rounding takes a hair below 0 to a full turn
}

/// The angle between two directions, in [0, pi].
inline double between(double one, double other)
{
    const double angle = normalized(one - other);
    // Many turns leave rounding errors, which must not lead beyond either end.
    return std::clamp(angle > halfTurn ? fullTurn - angle : angle, 0.0, halfTurn);
}

/// The direction of one who looks back along @p angle; stays in [0, 2 pi) for an angle from there.
inline double opposite(double angle)
{
    return angle >= halfTurn ? angle - halfTurn : angle + halfTurn;
}

/// The arc from @p from to @p to in the direction of growing angle, in [0, 2 pi].
inline double sweep(double from, double to)
{
    const double arc = std::atan2(std::sin(to - from), std::cos(to - from));
    return arc < 0.0 ? arc + fullTurn : arc;
}

/// The angle of @p vector, in [0, 2 pi]; a full turn is what rounding makes of a hair below 0.
inline double angleOf(const QPointF &vector)
{
    const double angle = std::atan2(vector.y(), vector.x());
    return angle < 0.0 ? angle + fullTurn : angle;
}

/// The vector of length 1 in the direction of @p angle.
inline QPointF direction(double angle)
{
    return {std::cos(angle), std::sin(angle)};
}

inline double length(const QPointF &vector)
{
    return std::sqrt(QPointF::dotProduct(vector, vector));
}

/// @p vector scaled to length 1, or (0, 0) where it is too short to have a direction.
inline QPointF unit(const QPointF &vector)
{
    const double size = length(vector);
    return size > 0.0001 ? vector / size : QPointF();
}

} // namespace Planaria::Angles
