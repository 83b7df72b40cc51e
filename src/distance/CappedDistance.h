#pragma once

#include <cstddef>

namespace Planaria {

class Morphology;

namespace DistAlgo {

/// dist() with another cap of open paths, in the search over regions as in those over organs. Under
/// a small one, worms of few regions already show what becomes of a search that gives paths up.
/// @param mostOpenPaths more than a worm has regions and a region organs
double cappedDist(const Morphology &first, const Morphology &second, std::size_t mostOpenPaths);

} // namespace DistAlgo

} // namespace Planaria
