#pragma once

#include <memory>
#include <vector>

namespace Planaria {

class Morphology;

/// The worms of the sample library: the wild type, pieces that a cut leaves, stages of
/// regeneration, and what experiments have made of worms.
namespace SampleWorms {

/// All of them, the wild type first. New elements, of the vocabulary that is loaded.
std::vector<std::unique_ptr<Morphology>> all();

/// Also the worm of the program's icon.
std::unique_ptr<Morphology> fourHeaded();

} // namespace SampleWorms

} // namespace Planaria
