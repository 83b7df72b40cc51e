#pragma once

#include "model/Angles.h"
#include "model/LineOrgan.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionsLink.h"

#include <QPointF>

#include <algorithm>
#include <cmath>

/// The numbers of a worm as they can be drawn. A file may hold what no painter takes: an infinity,
/// a length beyond all scenes, too few params. No worm is a million units long.
namespace Planaria::Drawable {

inline constexpr double longest = 1e6;

inline double number(double value)
{
    return std::isfinite(value) ? std::clamp(value, -longest, longest) : 0.0;
}

inline QPointF point(const QPointF &point)
{
    return {number(point.x()), number(point.y())};
}

inline double param(const Region *region, qsizetype position)
{
    if (position < 0 || position >= region->params().size())
        return RegionParam::defaultValue;
    return number(region->params().at(position)->value());
}

/// Direction of @p link as seen from @p region; along +x and back where it has none.
inline double ang(const RegionsLink *link, const Region *region)
{
    const double angle = link->ang(region);
    if (std::isfinite(angle))
        return angle;
    return region == link->from() ? 0.0 : Angles::halfTurn;
}

/// Distance of the two centres.
inline double totalDist(const RegionsLink *link)
{
    return number(link->totalDist());
}

/// The share of @p region; the middle where two centres at one point left no ratio. The two shares
/// always make up the whole.
inline double ratio(const RegionsLink *link, const Region *region)
{
    const double from = std::isfinite(link->fromRatio()) ? number(link->fromRatio()) : 0.5;
    return region == link->from() ? from : 1.0 - from;
}

/// Distance from the centre of @p region to the border.
inline double dist(const RegionsLink *link, const Region *region)
{
    return number(totalDist(link) * ratio(link, region));
}

} // namespace Planaria::Drawable
