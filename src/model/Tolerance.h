#pragma once

#include <cmath>

namespace Planaria {

/// Whether two numbers agree to 1e-12. An infinity agrees with itself, though it has no distance
/// to itself.
inline bool areClose(double a, double b)
{
    return a == b || std::abs(a - b) <= 1e-12;
}

} // namespace Planaria
