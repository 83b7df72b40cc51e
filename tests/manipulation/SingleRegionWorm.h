#pragma once

#include "model/Morphology.h"
#include "model/Shorthand.h"

#include <memory>

namespace Planaria {

/// An ellipse 300 wide and 200 high around the origin: large enough to aim at, small enough for a
/// view to show it in its natural size.
inline std::unique_ptr<Morphology> singleRegionWorm()
{
    auto worm = std::make_unique<Morphology>();
    worm->addRegion(trunkType())->setParams({150.0, 100.0, 150.0, 100.0});
    return worm;
}

} // namespace Planaria
