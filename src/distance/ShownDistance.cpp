#include "distance/ShownDistance.h"

#include "distance/DistAlgo.h"

#include <cmath>
#include <limits>

namespace Planaria {

namespace {

double farWithoutNumber(double distance)
{
    return std::isnan(distance) ? std::numeric_limits<double>::infinity() : distance;
}

} // namespace

double shownDistance(const Morphology &a, const Morphology &b)
{
    return farWithoutNumber(DistAlgo::dist(a, b));
}

QString distanceText(double distance)
{
    return QStringLiteral("%1").arg(farWithoutNumber(distance), 0, 'f', 2);
}

} // namespace Planaria
