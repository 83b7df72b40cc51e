#pragma once

namespace Planaria {

class Morphology;

/// The graph edit distance between two worms: the cost of the cheapest edit that turns the regions
/// of one into those of the other. A region may be deleted, inserted, or changed into another one
/// in its type, params, organs (an edit distance within) and links to regions placed before.
///
/// For large graphs the search keeps only the 5000 best of its open paths, and gives a good
/// distance without proof of the smallest. Order of regions and organs then matters.
namespace DistAlgo {

/// What the single edits cost.
namespace Costs {

inline constexpr double insertDeleteRegion = 1500.0;
inline constexpr double changeRegionType = 1000.0;
inline constexpr double changeRegionParameter = 0.1; // per scene unit
inline constexpr double insertDeleteOrgan = 50.0;    // also for each organ of a region that goes
inline constexpr double moveOrgan = 0.1;             // per scene unit
inline constexpr double changeSpotLineOrganType = 30.0;
inline constexpr double changeSpotOrganType = 20.0;
inline constexpr double changeSpotOrganRotation = 5.0; // for half a turn
inline constexpr double moveLineOrganEnd = 0.1;        // per scene unit
inline constexpr double insertDeleteLink = 1000.0;
inline constexpr double changeLinkDistance = 0.1;             // per scene unit
inline constexpr double changeLinkAngle = 100.0;              // for opposite directions
inline constexpr double changeLinkAngleMore90Penalty = 750.0; // beyond a quarter of a turn

} // namespace Costs

/// Cost units, not negative and not normalised by size. Reads both worms and changes nothing;
/// keeps nothing between calls.
double dist(const Morphology &first, const Morphology &second);

} // namespace DistAlgo

} // namespace Planaria
