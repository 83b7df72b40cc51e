#pragma once

#include "model/NamedElement.h"

namespace Planaria {

/// A gene that is silenced by RNA interference. What the silencing blocks stands in a column of the
/// file that is left as it is.
class RNAi final : public NamedElement<RNAi>
{
public:
    static constexpr auto table = "RNAi";

    using NamedElement::NamedElement;
};

} // namespace Planaria
