#pragma once

#include <QLatin1String>

#include <array>
#include <span>

namespace Planaria {

/// What tells the tab of one type of elements from those of the others, as data. Its table, and the
/// words for the elements themselves, are those of searchTypes().
struct ElementKind
{
    /// The type indexes, in the order of the tabs.
    enum Type { Experiments, Manipulations, Morphologies, Drugs, RNAi, Species, Publications };
    static constexpr int count = 7;

    struct Join
    {
        QLatin1String table;
        QLatin1String column;
    };

    // What the status line calls the elements.
    QLatin1String singular;
    QLatin1String plural;
    QLatin1String deletionQuestion;
    std::span<const Join> joins = {};        // columns of other tables that are shown too
    std::span<const int> hiddenColumns = {}; // besides the id
    bool showsNewRow = true;                 // a new element becomes the current row
    std::array<int, count> searchFields; // by type, the field that names this kind; -1 for itself

    static const ElementKind &of(Type type);
};

} // namespace Planaria
