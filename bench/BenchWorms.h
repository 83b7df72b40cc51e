#pragma once

#include <memory>

namespace Planaria {

class Morphology;

namespace BenchWorms {

std::unique_ptr<Morphology> wildType();

/// A worm of nine regions, eight of them around one, with twelve organs each.
std::unique_ptr<Morphology> large();

/// One of the many shapes of a library: one to five regions with up to six organs each, and
/// numbers of its own. @param number the same number gives the same worm
std::unique_ptr<Morphology> varied(int number);

} // namespace BenchWorms

} // namespace Planaria
