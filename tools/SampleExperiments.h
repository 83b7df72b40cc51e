#pragma once

namespace Planaria {

class DB;

/// The experiments of the sample library: published ones, from the first planarian work to RNA
/// interference.
///
/// Authors, titles, journals and years are those of the publications, and so are species,
/// manipulations, treatments and the shapes that the worms took. Numbers of worms, periods, times
/// and shares are round figures, there to show what a record looks like; they are no data.
namespace SampleExperiments {

/// Writes all of them. Worms and manipulations are looked up in @p db by their names.
/// @return false where one is missing, or an experiment cannot be written
bool write(DB *db);

} // namespace SampleExperiments

} // namespace Planaria
