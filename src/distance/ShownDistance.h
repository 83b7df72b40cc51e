#pragma once

#include <QString>

namespace Planaria {

class Morphology;

/// The distance between two worms for those who read it or put worms in its order: infinite where
/// the numbers of a damaged file make none, so that others keep their order.
double shownDistance(const Morphology &a, const Morphology &b);

/// Two decimals; "inf" without a number.
QString distanceText(double distance);

} // namespace Planaria
