#include "import/LibraryImporter.h"

#include "db/BulkRead.h"
#include "db/DB.h"
#include "db/ReferenceIndexes.h"
#include "db/WholeWrite.h"
#include "import/ImportProgress.h"
#include "model/Drug.h"
#include "model/Experiment.h"
#include "model/ExperimentDrug.h"
#include "model/ExperimentRNAi.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/Publication.h"
#include "model/RNAi.h"
#include "model/ResultSet.h"
#include "model/ResultantMorphology.h"
#include "model/Species.h"

#include <QFileInfo>

#include <algorithm>
#include <memory>
#include <optional>

namespace Planaria {

using namespace Qt::StringLiterals;

namespace {

constexpr int nameColumn = 1;

/// From this many elements on, making indexes takes less time than it saves.
constexpr qsizetype manyElements = 20;

template <typename T> constexpr ImportKind kindOfElement = ImportKind::Experiments;
template <> constexpr ImportKind kindOfElement<Manipulation> = ImportKind::Manipulations;
template <> constexpr ImportKind kindOfElement<Morphology> = ImportKind::Morphologies;
template <> constexpr ImportKind kindOfElement<Drug> = ImportKind::Drugs;
template <> constexpr ImportKind kindOfElement<RNAi> = ImportKind::RNAi;
template <> constexpr ImportKind kindOfElement<Species> = ImportKind::Species;
template <> constexpr ImportKind kindOfElement<Publication> = ImportKind::Publications;

template <typename T> constexpr size_t indexOf = static_cast<size_t>(kindOfElement<T>);

/// A column that may name an element.
struct Use
{
    QLatin1String table;
    QLatin1String column;
};

template <typename T> std::unique_ptr<T> loaded(int id, DB *db)
{
    if constexpr (std::is_same_v<T, Morphology>)
        return std::make_unique<T>(id, db, false);
    else
        return std::make_unique<T>(id, db);
}

template <typename T> const QString &nameOf(const T &element)
{
    if constexpr (std::is_same_v<T, Publication>)
        return element.title();
    else
        return element.name();
}

QString fileOf(DB *db)
{
    const std::unique_ptr<QSqlQuery> query = db->newQuery(QStringLiteral("PRAGMA database_list"));
    return query->next() ? query->value(2).toString() : QString();
}

bool areSameFile(DB *one, DB *other)
{
    return QFileInfo(fileOf(one)) == QFileInfo(fileOf(other));
}

/// Reads a library as it is at one moment: nobody can write to it in the meantime, and nothing is
/// read twice.
class SteadyRead final
{
public:
    explicit SteadyRead(DB *library) : db(library)
    {
        db->beginTransaction();
        readable = db->newQuery(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"))->isActive();
        memory.emplace(db);
    }
    ~SteadyRead()
    {
        memory.reset();
        db->endTransaction();
    }

    SteadyRead(const SteadyRead &) = delete;
    SteadyRead &operator=(const SteadyRead &) = delete;

    [[nodiscard]] bool isReadable() const { return readable; }

private:
    DB *db;
    bool readable;
    std::optional<BulkRead> memory;
};

} // namespace

int ImportLists::total() const
{
    return complete ? static_cast<int>(modified.size() + added.size() + deleted.size()) : 0;
}

/// What there is to know of a kind; the operations are those for its class.
struct LibraryImporter::Kind
{
    QLatin1String table;
    QLatin1String comparing;
    QLatin1String importing;
    QList<Use> uses; ///< in the order in which they are looked at
    int (LibraryImporter::*populate)(ImportProgress &);
    void (LibraryImporter::*import)(ImportProgress &, WholeWrite &);
    void (LibraryImporter::*remove)(ImportProgress &, WholeWrite &);
};

const std::array<LibraryImporter::Kind, importKindCount> &LibraryImporter::kinds()
{
    using I = LibraryImporter;

    static const std::array<Kind, importKindCount> all{{
        {"Experiment"_L1,
         "Comparing experiments..."_L1,
         "Importing experiments..."_L1,
         {}, // nothing refers to an experiment
         &I::populateElement<Experiment>,
         &I::importElement<Experiment>,
         &I::deleteElement<Experiment>},
        {"Manipulation"_L1,
         "Comparing manipulations..."_L1,
         "Importing manipulations..."_L1,
         {{"Experiment"_L1, "Manipulation"_L1}},
         &I::populateElement<Manipulation>,
         &I::importElement<Manipulation>,
         &I::deleteElement<Manipulation>},
        {"Morphology"_L1,
         "Comparing morphologies..."_L1,
         "Importing morphologies..."_L1,
         {{"MorphologyAction"_L1, "Morphology"_L1}, {"ResultantMorphology"_L1, "Morphology"_L1}},
         &I::populateElement<Morphology>,
         &I::importElement<Morphology>,
         &I::deleteElement<Morphology>},
        {"Drug"_L1,
         "Comparing drugs..."_L1,
         "Importing drugs..."_L1,
         {{"ExperimentDrug"_L1, "Drug"_L1}},
         &I::populateElement<Drug>,
         &I::importElement<Drug>,
         &I::deleteElement<Drug>},
        {"RNAi"_L1,
         "Comparing RNAis..."_L1,
         "Importing RNAi..."_L1,
         {{"ExperimentRNAi"_L1, "RNAi"_L1}},
         &I::populateElement<RNAi>,
         &I::importElement<RNAi>,
         &I::deleteElement<RNAi>},
        {"Species"_L1,
         "Comparing species..."_L1,
         "Importing species..."_L1,
         {{"Experiment"_L1, "Species"_L1}},
         &I::populateElement<Species>,
         &I::importElement<Species>,
         &I::deleteElement<Species>},
        {"Publication"_L1,
         "Comparing publications..."_L1,
         "Importing publications..."_L1,
         {{"Experiment"_L1, "Publication"_L1}},
         &I::populateElement<Publication>,
         &I::importElement<Publication>,
         &I::deleteElement<Publication>},
    }};
    return all;
}

const LibraryImporter::Kind &LibraryImporter::kindOf(ImportKind kind)
{
    return kinds().at(static_cast<size_t>(kind));
}

LibraryImporter::LibraryImporter(DB *sourceLibrary, DB *destinationLibrary)
    : source(areSameFile(sourceLibrary, destinationLibrary) ? destinationLibrary : sourceLibrary),
      destination(destinationLibrary)
{
}

const ImportLists &LibraryImporter::lists(ImportKind kind) const
{
    return lists_.at(static_cast<size_t>(kind));
}

ImportLists &LibraryImporter::lists(ImportKind kind)
{
    return lists_.at(static_cast<size_t>(kind));
}

// --- Comparison ---

bool LibraryImporter::populateElements(ImportProgress &progress,
                                       const std::function<void(ImportKind)> &compared)
{
    startReading();
    const SteadyRead sourceRead(source);
    const SteadyRead destinationRead(destination);
    forgetComparison();
    if (!sourceRead.isReadable() || !destinationRead.isReadable())
        return false; // compared with nothing, everything would look new
    int maximum = 0;
    for (const Kind &kind : kinds())
        maximum += source->getNumRows(kind.table);
    progress.start(kinds().front().comparing, maximum);

    for (size_t i = 0; i < kinds().size(); ++i) {
        if (i > 0) {
            progress.setLabel(kinds().at(i).comparing);
            if (progress.wasCanceled())
                return false;
        }
        total_ += (this->*kinds().at(i).populate)(progress);
        if (isReadFailed()) {
            forgetComparison(); // what could not be read would look modified or deleted
            return false;
        }
        compared(static_cast<ImportKind>(i));
    }
    return true;
}

void LibraryImporter::startReading()
{
    source->forgetReadError();
    destination->forgetReadError();
}

bool LibraryImporter::isReadFailed() const
{
    return source->hasReadError() || destination->hasReadError();
}

void LibraryImporter::forgetComparison()
{
    total_ = 0;
    lists_ = {};
    idMaps = {};
    namesakes = {};
    sourceRows = {};
    destinationRows = {};
}

template <typename T> int LibraryImporter::populateElement(ImportProgress &progress)
{
    const QString table = kindOf(kindOfElement<T>).table;
    ImportLists &lists = lists_[indexOf<T>];
    const IdMap &ids = idMaps[indexOf<T>];
    QHash<QString, int> sourceNames;
    QHash<QString, int> destinationNames;
    const std::vector<ImportRow> &rows = sourceRows[indexOf<T>] =
        tableItems(source, table, nameColumn, sourceNames);
    std::vector<ImportRow> rest = destinationRows[indexOf<T>] =
        tableItems(destination, table, nameColumn, destinationNames);

    // All pairs first: an import after a comparison that was cut short has to know them.
    pairByName<T>(rows, sourceNames, destinationNames);
    for (const ImportRow &row : rows) {
        if (progress.wasCanceled())
            return 0;
        if (!namesakes[indexOf<T>].contains(row.id))
            compareElement<T>(row, ids.value(row.id));
        progress.advance();
    }
    if (progress.wasCanceled())
        return 0;

    std::erase_if(rest, [&](const ImportRow &row) {
        return sourceNames.contains(row.name) && destinationNames.value(row.name) == row.id;
    });
    lists.deleted = std::move(rest);
    lists.complete = true;
    return lists.total();
}

std::vector<ImportRow> LibraryImporter::tableItems(DB *db, const QString &table, int nameColumn,
                                                   QHash<QString, int> &names)
{
    std::vector<ImportRow> rows;
    const std::unique_ptr<QSqlQuery> query = db->newTableQuery(table);
    while (db->nextRow(query.get())) {
        const ImportRow row{query->value(nameColumn).toString(), rowId(query->value(0))};
        // Without a name it is nothing that elements could refer to (a damaged file).
        if (row.id < 1 || row.name.isNull())
            continue;
        rows.push_back(row);
        names.insert(row.name, row.id);
    }
    return rows;
}

template <typename T>
void LibraryImporter::pairByName(const std::vector<ImportRow> &rows,
                                 const QHash<QString, int> &sourceNames,
                                 const QHash<QString, int> &destinationNames)
{
    for (const ImportRow &row : rows) {
        if (const int destinationId = destinationNames.value(row.name))
            idMaps[indexOf<T>].insert(row.id, destinationId);
        if (const int representative = sourceNames.value(row.name); representative != row.id)
            namesakes[indexOf<T>].insert(row.id, representative);
    }
}

template <typename T> void LibraryImporter::compareElement(const ImportRow &row, int destinationId)
{
    ImportLists &lists = lists_[indexOf<T>];
    if (destinationId == 0)
        lists.added.push_back({row.name, row.id, true});
    else if (!(*loaded<T>(row.id, source) == *loaded<T>(destinationId, destination)))
        lists.modified.push_back({row.name, row.id, true});
}

// --- Import ---

LibraryImporter::Outcome LibraryImporter::importElements(ImportProgress &progress)
{
    failedElement_.clear();
    progress.start(kindOf(ImportKind::Publications).importing, total_);
    WholeWrite write(destination);
    if (write.state() == WholeWrite::State::Locked)
        return Outcome::Locked;
    if (write.state() != WholeWrite::State::Open)
        return Outcome::Failed;

    startReading();
    const auto knownBefore = idMaps;
    const Outcome outcome = carryOut(progress, write);
    // What was taken back is in the file no more; a second attempt must not refer to it.
    if (outcome != Outcome::Done)
        idMaps = knownBefore;
    return outcome;
}

LibraryImporter::Outcome LibraryImporter::carryOut(ImportProgress &progress, WholeWrite &write)
{
    bool finished = false;
    {
        const SteadyRead sourceRead(source);
        if (!sourceRead.isReadable() || !areAsCompared())
            return Outcome::Failed;
        std::optional<ReferenceIndexes> indexes;
        if (ticked() >= manyElements)
            indexes.emplace(destination);
        if (write.state() != WholeWrite::State::Open) // the indexes may have filled the disk
            return Outcome::Failed;
        finished = runSteps(progress, write);
    }
    if (write.state() != WholeWrite::State::Open || isReadFailed())
        return Outcome::Failed;
    if (!finished)
        return Outcome::Canceled;
    return write.commit() ? Outcome::Done : Outcome::Failed;
}

bool LibraryImporter::areAsCompared() const
{
    for (size_t i = 0; i < kinds().size(); ++i) {
        const QString table = kinds().at(i).table;
        QHash<QString, int> names;
        if (tableItems(source, table, nameColumn, names) != sourceRows.at(i) ||
            tableItems(destination, table, nameColumn, names) != destinationRows.at(i))
            return false;
    }
    return true;
}

bool LibraryImporter::runSteps(ImportProgress &progress, WholeWrite &write)
{
    // What others refer to goes before them, and is deleted after them.
    constexpr std::array order{ImportKind::Publications, ImportKind::Species,
                               ImportKind::Drugs,        ImportKind::RNAi,
                               ImportKind::Morphologies, ImportKind::Manipulations,
                               ImportKind::Experiments};
    for (size_t i = 0; i < order.size(); ++i) {
        (this->*kindOf(order.at(i)).import)(progress, write);
        if (i + 1 < order.size())
            progress.setLabel(kindOf(order.at(i + 1)).importing);
        if (isOver(progress))
            return false;
    }
    progress.setLabel(QStringLiteral("Deleting elements..."));
    for (const Kind &kind : kinds()) {
        (this->*kind.remove)(progress, write);
        if (isOver(progress))
            return false;
    }
    return true;
}

bool LibraryImporter::isOver(const ImportProgress &progress) const
{
    return progress.wasCanceled() || !failedElement_.isNull() || isReadFailed();
}

template <typename Action>
void LibraryImporter::forEachTicked(const std::vector<ImportRow> &rows, ImportProgress &progress,
                                    WholeWrite &write, const Action &action)
{
    for (const ImportRow &row : rows) {
        if (isOver(progress))
            return;
        if (row.checked) {
            action(row.id);
            if (write.state() != WholeWrite::State::Open)
                failedElement_ = row.name;
        }
        progress.advance();
    }
}

template <typename T>
void LibraryImporter::importElement(ImportProgress &progress, WholeWrite &write)
{
    const ImportLists &lists = lists_[indexOf<T>];
    forEachTicked(lists.added, progress, write, [this](int id) { addElement<T>(id); });
    forEachTicked(lists.modified, progress, write, [this](int id) { updateElement<T>(id); });
}

template <typename T> void LibraryImporter::addElement(int sourceId)
{
    const std::unique_ptr<T> element = loaded<T>(sourceId, source);
    applyChanges(*element);
    if (const int id = element->submit(destination); id > 0)
        idMaps[indexOf<T>].insert(sourceId, id);
}

template <typename T> void LibraryImporter::updateElement(int sourceId)
{
    const std::unique_ptr<T> element = loaded<T>(sourceId, source);
    applyChanges(*element);
    const std::unique_ptr<T> former = loaded<T>(idMaps[indexOf<T>].value(sourceId), destination);
    former->copy(*element);
    former->submit(destination);
}

qsizetype LibraryImporter::ticked() const
{
    const auto count = [](const std::vector<ImportRow> &rows) {
        return std::count_if(rows.cbegin(), rows.cend(),
                             [](const ImportRow &row) { return row.checked; });
    };
    qsizetype sum = 0;
    for (const ImportLists &lists : lists_)
        sum += count(lists.modified) + count(lists.added) + count(lists.deleted);
    return sum;
}

// --- References ---

template <typename T> void LibraryImporter::applyChanges(T & /*element*/)
{
    // It refers to nothing.
}

void LibraryImporter::applyChanges(Manipulation &manipulation)
{
    for (Morphology *morphology : manipulation.calcMorphologiesList())
        rebind(morphology);
}

void LibraryImporter::applyChanges(Experiment &experiment)
{
    rebind(experiment.publication());
    rebind(experiment.species());
    for (const ExperimentDrug *treatment : experiment.experimentDrugs())
        rebind(treatment->drug());
    for (const ExperimentRNAi *treatment : experiment.experimentRNAis())
        rebind(treatment->rnai());
    rebind(experiment.manipulation());
    for (const ResultSet *set : experiment.resultSets()) {
        for (const ResultantMorphology *result : set->resultantMorphologies())
            rebind(result->morphology());
    }
}

template <typename T> void LibraryImporter::rebind(T *element)
{
    if (!element || nameOf(*element).isNull())
        return; // lost in a damaged file: it is left out, or its owner is refused
    const int sourceId = namesakes[indexOf<T>].value(element->id(), element->id());
    int id = idMaps[indexOf<T>].value(sourceId);
    if (id == 0) {
        applyChanges(*element);
        id = element->submit(destination);
        if (id < 1)
            return;
        idMaps[indexOf<T>].insert(sourceId, id);
    }
    // As it stands there: what is not ticked is not written.
    element->referTo(id, destination);
}

// --- Deletion ---

template <typename T>
void LibraryImporter::deleteElement(ImportProgress &progress, WholeWrite &write)
{
    forEachTicked(lists_[indexOf<T>].deleted, progress, write, [this](int id) {
        const std::unique_ptr<T> element = loaded<T>(id, destination);
        if (!isUsed(*element))
            element->erase();
    });
}

template <typename T> bool LibraryImporter::isUsed(const T &element) const
{
    const QList<Use> &uses = kindOf(kindOfElement<T>).uses;
    return std::any_of(uses.cbegin(), uses.cend(), [&](const Use &use) {
        return destination->exist(use.table, use.column, element.id());
    });
}

} // namespace Planaria
