#pragma once

namespace Planaria {

class Morphology;

/// The distance of two worms by a search that is written down as plainly as it can be told: each
/// open path has lists of its own, and every cost is computed anew whenever it is asked for. It is
/// what DistAlgo is measured and checked against, and no part of the program.
namespace PlainDistance {

struct Outcome
{
    double dist = 0.0;
    int givenUp = 0; // paths that fell out because too many were open, over all searches
};

Outcome dist(const Morphology &first, const Morphology &second, int mostOpenPaths = 5000);

} // namespace PlainDistance

} // namespace Planaria
