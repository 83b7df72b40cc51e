#pragma once

#include <memory>
#include <vector>

namespace Planaria {

class DB;
class Manipulation;

/// The manipulations of the sample library: cuts, grafts and irradiations as the literature knows
/// them, all on the wild type.
namespace SampleManipulations {

/// All of them. New elements, on the worm in row 1 of @p db, which is the wild type.
std::vector<std::unique_ptr<Manipulation>> all(DB *db);

} // namespace SampleManipulations

} // namespace Planaria
