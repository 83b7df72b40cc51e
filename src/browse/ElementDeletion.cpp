#include "browse/ElementDeletion.h"

#include "db/DB.h"
#include "db/ReferenceIndexes.h"

#include <array>

namespace Planaria {

using namespace Qt::StringLiterals;

namespace {

/// A column that may name the element, and how the refusal goes on where it does.
struct Use
{
    int typeIndex;
    QLatin1String table;
    QLatin1String column;
    QLatin1String element;
    QLatin1String reason;
    QLatin1String title;
};

// In the order in which they are looked at. Nothing refers to an experiment.
constexpr std::array uses{
    Use{1, "Experiment"_L1, "Manipulation"_L1, "manipulation"_L1, "it is part of an experiment."_L1,
        "Manipulation in use"_L1},
    Use{2, "MorphologyAction"_L1, "Morphology"_L1, "morphology"_L1,
        "it is part of an experiment manipulation."_L1, "Morphology in use"_L1},
    Use{2, "ResultantMorphology"_L1, "Morphology"_L1, "morphology"_L1,
        "it is part of an experiment."_L1, "Morphology in use"_L1},
    Use{3, "ExperimentDrug"_L1, "Drug"_L1, "drug"_L1, "it is part of an experiment."_L1,
        "Drug in use"_L1},
    Use{4, "ExperimentRNAi"_L1, "RNAi"_L1, "RNAi"_L1, "it is part of an experiment."_L1,
        "RNAi in use"_L1},
    Use{5, "Experiment"_L1, "Species"_L1, "species"_L1,
        "it is used in experiments included in the database."_L1, "Species in use"_L1},
    Use{6, "Experiment"_L1, "Publication"_L1, "publication"_L1,
        "it contains experiments included in the database."_L1, "Publication in use"_L1},
};

/// From this many elements on, making indexes takes less time than it saves.
constexpr qsizetype manyElements = 4;

} // namespace

std::optional<ElementDeletion::Refusal> ElementDeletion::refusal(DB *db, int typeIndex, int id,
                                                                 const QString &name)
{
    for (const Use &use : uses) {
        if (use.typeIndex == typeIndex && db->exist(use.table, use.column, QVariant(id)))
            return Refusal{use.title, "The "_L1 + use.element + R"( ")"_L1 + name +
                                          R"(" cannot be deleted because )"_L1 + use.reason};
    }
    return std::nullopt;
}

bool ElementDeletion::deleteElements(DB *db, const QList<int> &ids,
                                     const std::function<Outcome(int id)> &deleteOne,
                                     const std::function<bool(int done)> &goOn)
{
    bool ok = db->beginTransaction();
    if (ok) {
        std::optional<ReferenceIndexes> indexes;
        if (ids.size() >= manyElements)
            indexes.emplace(db);
        int done = 0;
        for (auto id = ids.cbegin(); ok && id != ids.cend(); ++id)
            // Without the transaction, what follows would be in the file by itself.
            ok = goOn(done++) && deleteOne(*id) != Outcome::Failed && db->inTransaction();
        ok = ok && goOn(done);
    }
    if (ok)
        return db->endTransaction();
    db->rollbackTransaction();
    return false;
}

} // namespace Planaria
