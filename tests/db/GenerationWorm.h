#pragma once

#include <QString>

#include <memory>

namespace Planaria {

class Morphology;

// A big worm all of whose numbers are those of one generation, so that a mixture of two, or a part
// of one, can be told from a whole worm.

/// A chain of regions with organs.
std::unique_ptr<Morphology> newGenerationWorm(int generation);

/// Edits the worm into one of another generation: takes off its first region, puts on a new last
/// one, replaces the picture and changes every number.
void turnIntoGeneration(Morphology *worm, int generation);

/// Names the worm by its generation and, as there may be several, by a @p prefix.
void nameByGeneration(Morphology *worm, const QString &prefix, int generation);
int generationOf(const Morphology &worm);

/// What is wrong with a worm that was loaded; empty for a whole one of one generation.
QString generationFault(const Morphology &worm);

} // namespace Planaria
