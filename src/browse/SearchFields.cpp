#include "browse/SearchFields.h"

#include <array>

namespace Planaria {

using namespace Qt::StringLiterals;

namespace {

// --- The ways between the tables ---

constexpr MatchTarget experimentName{"Experiment.Name"_L1, "ExperimentName"_L1,
                                     "Experiment names"_L1, ""_L1};

constexpr MatchTarget manipulationName{
    "Manipulation.Name"_L1, "ManipulationName"_L1, "Manipulation names"_L1,
    "INNER JOIN Manipulation ON Manipulation.Id = Experiment.Manipulation "_L1};

constexpr MatchTarget morphologyName{
    "Morphology.Name"_L1, "MorphologyName"_L1, "Morphology names"_L1,
    "INNER JOIN ResultSet ON ResultSet.Experiment = Experiment.Id "
    "INNER JOIN ResultantMorphology ON ResultantMorphology.ResultSet = ResultSet.Id "
    "INNER JOIN Morphology ON ResultantMorphology.Morphology = Morphology.Id "_L1};

constexpr MatchTarget drugName{
    "Drug.Name"_L1, "DrugName"_L1, "Drug names"_L1,
    "INNER JOIN ExperimentDrug ON ExperimentDrug.Experiment = Experiment.Id "
    "INNER JOIN Drug ON ExperimentDrug.Drug = Drug.Id "_L1};

constexpr MatchTarget rnaiName{
    "RNAi.Name"_L1, "RNAiName"_L1, "RNAi names"_L1,
    "INNER JOIN ExperimentRNAi ON ExperimentRNAi.Experiment = Experiment.Id "
    "INNER JOIN RNAi ON ExperimentRNAi.RNAi = RNAi.Id "_L1};

constexpr MatchTarget speciesName{"Species.Name"_L1, "SpeciesName"_L1, "Species names"_L1,
                                  "INNER JOIN Species ON Experiment.Species = Species.Id "_L1};

constexpr MatchTarget publicationTitle{
    "Publication.Title"_L1, "PublicationTitle"_L1, "Publication titles"_L1,
    "INNER JOIN Publication ON Experiment.Publication = Publication.Id "_L1};

constexpr MatchTarget publicationYear{
    "Publication.Year"_L1, "PublicationYear"_L1, "Publication years"_L1,
    "INNER JOIN Publication ON Experiment.Publication = Publication.Id "_L1};

constexpr auto manipulationChain =
    "INNER JOIN Experiment ON Experiment.Manipulation = Manipulation.Id "_L1;

constexpr auto morphologyChain =
    "INNER JOIN ResultantMorphology ON ResultantMorphology.Morphology = Morphology.Id "
    "INNER JOIN ResultSet ON ResultantMorphology.ResultSet = ResultSet.Id "
    "INNER JOIN Experiment ON ResultSet.Experiment = Experiment.Id "_L1;

constexpr auto drugChain = "INNER JOIN ExperimentDrug ON ExperimentDrug.Drug = Drug.Id "
                           "INNER JOIN Experiment ON Experiment.Id = ExperimentDrug.Experiment "_L1;

constexpr auto rnaiChain = "INNER JOIN ExperimentRNAi ON ExperimentRNAi.RNAi = RNAi.Id "
                           "INNER JOIN Experiment ON Experiment.Id = ExperimentRNAi.Experiment "_L1;

constexpr auto speciesChain = "INNER JOIN Experiment ON Experiment.Species = Species.Id "_L1;

constexpr auto publicationChain =
    "INNER JOIN Experiment ON Experiment.Publication = Publication.Id "_L1;

// --- The parts of a morphology; an inner join leaves out one without regions ---

constexpr auto regions = "INNER JOIN Region ON Region.Morphology = Morphology.Id "_L1;

constexpr auto spotOrgans = "INNER JOIN Region ON Region.Morphology = Morphology.Id "
                            "LEFT OUTER JOIN Organ ON Organ.Region = Region.Id "
                            "LEFT OUTER JOIN SpotOrgan ON Organ.SpotOrgan = SpotOrgan.Id "_L1;

constexpr auto lineOrgans = "INNER JOIN Region ON Region.Morphology = Morphology.Id "
                            "LEFT OUTER JOIN Organ ON Organ.Region = Region.Id "
                            "LEFT OUTER JOIN LineOrgan ON Organ.LineOrgan = LineOrgan.Id "_L1;

// --- The fields of each type, in the order in which they are offered ---

constexpr SearchField own(QLatin1String label, QLatin1String tail)
{
    return {label, PlainField{""_L1, tail}};
}

constexpr SearchField joined(QLatin1String label, QLatin1String columns, QLatin1String tail)
{
    return {label, PlainField{columns, tail}};
}

constexpr SearchField matches(QLatin1String label, const MatchTarget &target,
                              QLatin1String moreColumns = ""_L1)
{
    return {label, MatchField{&target, moreColumns}};
}

constexpr SearchField sum(QLatin1String label, QLatin1String column, QLatin1String condition,
                          QLatin1String joins)
{
    return {label, SumField{column, condition, joins}};
}

constexpr std::array experimentFields{
    own("Name"_L1, "WHERE Experiment.Name "_L1),
    joined("Manipulation name"_L1, ", Manipulation.Name AS 'Manipulation'"_L1,
           "INNER JOIN Manipulation ON Experiment.Manipulation = Manipulation.Id "
           "WHERE Manipulation.Name "_L1),
    matches("Results morphology name"_L1, morphologyName),
    matches("Drug name"_L1, drugName),
    matches("RNAi name"_L1, rnaiName, ", RNAi.Name AS 'RNAi'"_L1), // read by no outer column
    joined("Species name"_L1, ", Species.Name AS 'Species'"_L1,
           "INNER JOIN Species ON Experiment.Species = Species.Id WHERE Species.Name "_L1),
    joined("Publication title"_L1,
           ", Publication.Title AS 'Publication title', Publication.Year AS 'Publication year'"_L1,
           "INNER JOIN Publication ON Experiment.Publication = Publication.Id "
           "WHERE Publication.Title "_L1),
    joined("Publication year"_L1,
           ", Publication.Year AS 'Publication year', Publication.Title AS 'Publication title'"_L1,
           "INNER JOIN Publication ON Experiment.Publication = Publication.Id "
           "WHERE Publication.Year "_L1),
};

constexpr std::array manipulationFields{
    own("Name"_L1, "WHERE Manipulation.Name "_L1),
    joined("Experiment name"_L1, ", Experiment.Name AS 'Experiment'"_L1,
           "INNER JOIN Experiment ON Experiment.Manipulation = Manipulation.Id "
           "WHERE Experiment.Name "_L1),
    SearchField{"Morphology name"_L1,
                TreeField{false, "ManipulationId"_L1, "MorphologyName"_L1, "Morphology"_L1}},
    matches("Results morphology name"_L1, morphologyName),
    matches("Drug name"_L1, drugName),
    matches("RNAi name"_L1, rnaiName),
    matches("Species name"_L1, speciesName),
    matches("Publication title"_L1, publicationTitle),
    matches("Publication year"_L1, publicationYear),
};

constexpr std::array morphologyFields{
    own("Name"_L1, "WHERE Morphology.Name "_L1),
    joined("Num. regions"_L1, ", COUNT(Morphology.Id) AS 'Num regions'"_L1,
           "INNER JOIN Region ON Region.Morphology = Morphology.Id "
           "GROUP BY Morphology.Id HAVING COUNT(Morphology.Id) "_L1),
    joined("Num. links"_L1, ", COUNT(Morphology.Id) AS 'Num links'"_L1,
           "INNER JOIN Region ON Region.Morphology = Morphology.Id "
           "INNER JOIN RegionsLink ON RegionsLink.FromRegion = Region.Id "
           "GROUP BY Morphology.Id HAVING COUNT(Morphology.Id) "_L1),
    sum("Num. heads"_L1, "Num heads"_L1, "Region.Type = 1"_L1, regions),
    sum("Num. trunks"_L1, "Num trunks"_L1, "Region.Type = 2"_L1, regions),
    sum("Num. tails"_L1, "Num tails"_L1, "Region.Type = 3"_L1, regions),
    sum("Num. eyes"_L1, "Num eyes"_L1, "SpotOrgan.Type = 1"_L1, spotOrgans),
    sum("Num. brain lobes"_L1, "Num brain lobes"_L1, "SpotOrgan.Type = 2"_L1, spotOrgans),
    sum("Num. pharynxes"_L1, "Num pharynxes"_L1, "SpotOrgan.Type = 3"_L1, spotOrgans),
    sum("Num. nerve cords"_L1, "Num nerve cords"_L1, "LineOrgan.Type = 1"_L1, lineOrgans),
    matches("Experiment name"_L1, experimentName),
    SearchField{"Manipulation name"_L1,
                TreeField{true, "MorphologyId"_L1, "ManipulationName"_L1, "Manipulation"_L1}},
    matches("Drug name"_L1, drugName),
    matches("RNAi name"_L1, rnaiName),
    matches("Species name"_L1, speciesName),
    matches("Publication title"_L1, publicationTitle),
    matches("Publication year"_L1, publicationYear),
};

constexpr std::array drugFields{
    own("Name"_L1, "WHERE Drug.Name "_L1),
    matches("Experiment name"_L1, experimentName),
    matches("Manipulation name"_L1, manipulationName),
    matches("Morphology name"_L1, morphologyName),
    matches("RNAi name"_L1, rnaiName),
    matches("Species name"_L1, speciesName),
    matches("Publication title"_L1, publicationTitle),
    matches("Publication year"_L1, publicationYear),
};

constexpr std::array rnaiFields{
    own("Name"_L1, "WHERE RNAi.Name "_L1),
    matches("Experiment name"_L1, experimentName),
    matches("Manipulation name"_L1, manipulationName),
    matches("Morphology name"_L1, morphologyName),
    matches("Drug name"_L1, drugName),
    matches("Species name"_L1, speciesName),
    matches("Publication title"_L1, publicationTitle),
    matches("Publication year"_L1, publicationYear),
};

constexpr std::array speciesFields{
    own("Name"_L1, "WHERE Species.Name "_L1),
    matches("Experiment name"_L1, experimentName),
    matches("Manipulation name"_L1, manipulationName),
    matches("Morphology name"_L1, morphologyName),
    matches("Drug name"_L1, drugName),
    matches("RNAi name"_L1, rnaiName),
    matches("Publication title"_L1, publicationTitle),
    matches("Publication year"_L1, publicationYear),
};

constexpr std::array publicationFields{
    own("Title"_L1, "WHERE Publication.Title "_L1),
    own("Year"_L1, "WHERE Publication.Year "_L1),
    matches("Experiment name"_L1, experimentName),
    matches("Manipulation name"_L1, manipulationName),
    matches("Morphology name"_L1, morphologyName),
    matches("Drug name"_L1, drugName),
    matches("RNAi name"_L1, rnaiName),
    matches("Species name"_L1, speciesName),
};

constexpr std::array types{
    SearchType{"Experiments"_L1, "experiment"_L1, "experiments"_L1, "Experiment"_L1, "Name"_L1,
               ""_L1, ""_L1, experimentFields},
    SearchType{"Manipulations"_L1, "manipulation"_L1, "manipulations"_L1, "Manipulation"_L1,
               "Name"_L1, ""_L1, manipulationChain, manipulationFields},
    SearchType{"Morphologies"_L1, "morphology"_L1, "morphologies"_L1, "Morphology"_L1, "Name"_L1,
               ""_L1, morphologyChain, morphologyFields},
    SearchType{"Drugs"_L1, "drug"_L1, "drugs"_L1, "Drug"_L1, "Name"_L1, ""_L1, drugChain,
               drugFields},
    SearchType{"RNAi"_L1, "RNAi"_L1, "RNAi"_L1, "RNAi"_L1, "Name"_L1, ""_L1, rnaiChain, rnaiFields},
    SearchType{"Species"_L1, "species"_L1, "species"_L1, "Species"_L1, "Name"_L1, ""_L1,
               speciesChain, speciesFields},
    SearchType{"Publications"_L1, "publication"_L1, "publications"_L1, "Publication"_L1, "Title"_L1,
               ", Publication.Year AS Year"_L1, publicationChain, publicationFields},
};

constexpr std::array operators{"containing"_L1, "equal to"_L1, "less than"_L1, "greater than"_L1};

} // namespace

std::span<const SearchType> searchTypes()
{
    return types;
}

std::span<const QLatin1String> searchOperators()
{
    return operators;
}

} // namespace Planaria
