#pragma once

#include <QLatin1String>

#include <span>
#include <variant>

namespace Planaria {

// What can be searched for, as data: the texts of the search tab, and of each field what its
// statement is made of. OP stands for the comparison with the value.

/// `SELECT base columns + columns FROM table tail OP`
struct PlainField
{
    QLatin1String columns;
    QLatin1String tail;
};

/// The way from an experiment to the values of another type, for lists of matches.
struct MatchTarget
{
    QLatin1String column;
    QLatin1String alias;
    QLatin1String label;
    QLatin1String chain;
};

/// One row for each element, with all its matches in one column.
struct MatchField
{
    const MatchTarget *target;
    QLatin1String moreColumns;
};

/// How many parts of a kind each morphology has.
struct SumField
{
    QLatin1String column;
    QLatin1String condition; // what a part fulfils that counts
    QLatin1String joins;
};

/// What stands at the other end of the action tree of a manipulation.
struct TreeField
{
    bool upwards; // from morphologies to the names of manipulations; else the other way
    QLatin1String idColumn;
    QLatin1String namesColumn;
    QLatin1String label;
};

struct SearchField
{
    QLatin1String label;
    std::variant<PlainField, MatchField, SumField, TreeField> form;
};

struct SearchType
{
    QLatin1String label;
    QLatin1String singular;
    QLatin1String plural;
    QLatin1String table;
    QLatin1String nameColumn;
    QLatin1String moreColumns; // base columns behind id and name
    QLatin1String chain;       // from the table to Experiment
    std::span<const SearchField> fields;
};

/// The types of elements; the position is the type index.
std::span<const SearchType> searchTypes();

/// The words for the comparisons; the position is the operator index.
std::span<const QLatin1String> searchOperators();

} // namespace Planaria
