#include "browse/ElementKind.h"

namespace Planaria {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array experimentJoins{
    ElementKind::Join{"Manipulation"_L1, "Name"_L1},
    ElementKind::Join{"Publication"_L1, "Title"_L1},
    ElementKind::Join{"Species"_L1, "Name"_L1},
};
constexpr std::array experimentIdColumns{2, 3, 4};
constexpr std::array rootActionColumn{2};

constexpr std::array<ElementKind, ElementKind::count> kinds{{
    {.singular = "experiment"_L1,
     .plural = "experiments"_L1,
     .deletionQuestion = "This action will completely delete the selected experiments from the "
                         "database! Are you sure?"_L1,
     .joins = experimentJoins,
     .hiddenColumns = experimentIdColumns,
     .searchFields = {-1, 1, 10, 1, 1, 1, 2}},
    {.singular = "manipulation"_L1,
     .plural = "manipulations"_L1,
     .deletionQuestion = "This action will completely delete the selected menipulations from the "
                         "database! Are you sure?"_L1,
     .hiddenColumns = rootActionColumn,
     .searchFields = {1, -1, 11, 2, 2, 2, 3}},
    {.singular = "morphology"_L1,
     .plural = "morphologies"_L1,
     .deletionQuestion = "This action will completely delete the selected morphologies from the "
                         "database! Are you sure?"_L1,
     .searchFields = {2, 2, -1, 3, 3, 3, 4}},
    {.singular = "drug"_L1,
     .plural = "drugs"_L1,
     .deletionQuestion = "This action will completely delete the selected drugs from the "
                         "database! Are you sure?"_L1,
     .showsNewRow = false,
     .searchFields = {3, 4, 12, -1, 4, 4, 5}},
    {.singular = "RNAi"_L1,
     .plural = "RNAi"_L1,
     .deletionQuestion = "This action will completely delete the selected RNAis from the "
                         "database! Are you sure?"_L1,
     .showsNewRow = false,
     .searchFields = {4, 5, 13, 4, -1, 5, 6}},
    {.singular = "Species"_L1,
     .plural = "Species"_L1,
     .deletionQuestion = "This action will completely delete the selected species from the "
                         "database! Are you sure?"_L1,
     .showsNewRow = false,
     .searchFields = {5, 6, 14, 5, 5, -1, 7}},
    {.singular = "publication"_L1,
     .plural = "publications"_L1,
     .deletionQuestion = "This action will completely delete the selected publications from the "
                         "database! Are you sure?"_L1,
     .searchFields = {6, 7, 15, 6, 6, 6, -1}},
}};

} // namespace

const ElementKind &ElementKind::of(Type type)
{
    return kinds.at(type);
}

} // namespace Planaria
