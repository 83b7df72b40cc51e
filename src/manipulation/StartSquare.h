#pragma once

#include "model/AreaAction.h"

namespace Planaria {

/// Gives an action without corners the area with which a user begins.
inline void addStartSquare(AreaAction *action)
{
    constexpr double half = 50.0;
    for (const QPointF &corner :
         {QPointF(half, half), QPointF(-half, half), QPointF(-half, -half), QPointF(half, -half)})
        action->addAreaPoint(corner, -1);
}

} // namespace Planaria
