#pragma once

#include <QHash>
#include <QList>

#include <memory>

namespace Planaria {

class DB;
class LineOrganType;
class Manipulation;
class Morphology;
class Region;
class RegionType;
class SpotOrganType;

/// The one holder of the fixed vocabularies, at which regions and organs point, and the maker of
/// the wild-type worm.
///
/// It holds the vocabulary of the file loaded last: each load replaces all words, and elements
/// loaded before must be gone by then.
class ExperimentFactory final
{
public:
    /// The registry of the process. Only the first call looks at @p db: null for the built-in
    /// vocabulary.
    static ExperimentFactory *instance(DB *db);

    ~ExperimentFactory();

    ExperimentFactory(const ExperimentFactory &) = delete;
    ExperimentFactory &operator=(const ExperimentFactory &) = delete;

    /// Takes the vocabulary of @p db in place of the present one.
    void load(DB *db);
    /// Takes the built-in vocabulary, which every new file holds too.
    void load();
    void unload();

    // The word with an id, which stands at position id - 1 of its list. For an id that is not there
    // (a damaged file) a word without a name stands in; it bears the id, and an element that is
    // written again leaves the id in the file as it is. All belong to the registry.

    RegionType *regionType(int id);
    SpotOrganType *spotOrganType(int id);
    LineOrganType *lineOrganType(int id);

    /// A new wild-type worm: head, trunk and tail with eyes, brain, pharynx and nerve cords.
    std::unique_ptr<Morphology> createWildMorphology();
    /// The same, written to @p db. Where that fails, it is not stored.
    std::unique_ptr<Morphology> createAndSaveWildMorphology(DB *db);
    /// The worm to start from: row 1, whatever its name has become, or a new wild type.
    std::unique_ptr<Morphology> loadDefaultMorphology(DB *db);
    /// The same for an element that will refer to it: where the name of the new wild type is taken,
    /// the worm that bears it. Unsaved only where nothing can be written.
    std::unique_ptr<Morphology> loadStoredDefaultMorphology(DB *db);
    /// A new manipulation to look at: a crop, a graft and a cut on wild types.
    std::unique_ptr<Manipulation> createWildManipulation();
    /// Kept empty.
    void addRandomOrgans(Region *region);

    QList<RegionType *> regionTypes;
    QList<SpotOrganType *> spotOrganTypes;
    QList<LineOrganType *> lineOrganTypes;

private:
    explicit ExperimentFactory(DB *db);

    QHash<int, RegionType *> unknownRegionTypes;
    QHash<int, SpotOrganType *> unknownSpotOrganTypes;
    QHash<int, LineOrganType *> unknownLineOrganTypes;
};

} // namespace Planaria
