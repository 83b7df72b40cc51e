#pragma once

#include "model/NamedElement.h"

namespace Planaria {

/// A substance that is given to worms.
class Drug final : public NamedElement<Drug>
{
public:
    static constexpr auto table = "Drug";

    using NamedElement::NamedElement;
};

} // namespace Planaria
