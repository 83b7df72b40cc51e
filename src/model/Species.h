#pragma once

#include "model/NamedElement.h"

namespace Planaria {

/// A species of worms.
class Species final : public NamedElement<Species>
{
public:
    static constexpr auto table = "Species";

    using NamedElement::NamedElement;
};

} // namespace Planaria
