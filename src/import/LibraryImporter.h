#pragma once

#include <QHash>
#include <QString>

#include <array>
#include <functional>
#include <vector>

namespace Planaria {

class DB;
class Experiment;
class ImportProgress;
class Manipulation;
class WholeWrite;

/// The kinds of elements that can be taken over, in the order in which users see them.
enum class ImportKind {
    Experiments,
    Manipulations,
    Morphologies,
    Drugs,
    RNAi,
    Species,
    Publications
};

constexpr int importKindCount = 7;

/// An element in which two libraries differ.
struct ImportRow
{
    QString name;
    int id = 0; ///< In the source; of a deleted element in the destination.
    bool checked = false;

    bool operator==(const ImportRow &) const = default;
};

/// How the elements of one kind differ.
struct ImportLists
{
    std::vector<ImportRow> modified;
    std::vector<ImportRow> added;
    std::vector<ImportRow> deleted;
    /// Whether the comparison came to the end of this kind.
    bool complete = false;

    /// The number of rows; 0 where the lists are not complete.
    [[nodiscard]] int total() const;
};

/// Takes over elements of one library, the source, into another, the destination.
///
/// Elements are the same where their names are: ids mean nothing across files. First the two are
/// compared, then what is ticked in the lists is carried out. What an element refers to comes
/// along, unless the destination has it already. The source is only read.
class LibraryImporter final
{
public:
    /// Neither is owned; both must be open, and outlive the importer.
    LibraryImporter(DB *sourceLibrary, DB *destinationLibrary);

    /// Compares the libraries kind by kind, and writes nothing.
    /// @param compared called after each kind, with its lists ready
    /// @return false where a file cannot be read, in whole or in part, or where it was cancelled
    /// before the last kind was begun. Cancelled within the last, it is done all the same, with
    /// lists that are not complete.
    [[nodiscard]] bool populateElements(ImportProgress &progress,
                                        const std::function<void(ImportKind)> &compared);

    [[nodiscard]] const ImportLists &lists(ImportKind kind) const;
    /// For setting the ticks between comparison and import.
    ImportLists &lists(ImportKind kind);
    /// The rows of all lists, ticked or not.
    [[nodiscard]] int total() const { return total_; }

    enum class Outcome {
        Done,
        Canceled,
        Locked, ///< Another program uses the destination.
        Failed  ///< See failedElement(); or a file cannot be read, or is not as it was compared.
    };

    /// Carries out what is ticked, in one transaction: unless it is done, the destination is as it
    /// was, and the importer may be asked again.
    [[nodiscard]] Outcome importElements(ImportProgress &progress);

    /// The name of the element that could not be written; empty where it was none of them.
    [[nodiscard]] QString failedElement() const { return failedElement_; }

private:
    /// Ids of the source to those in the destination.
    using IdMap = QHash<int, int>;
    struct Kind;

    static const std::array<Kind, importKindCount> &kinds();
    static const Kind &kindOf(ImportKind kind);

    // The operations on one kind. T is the class of its elements.

    template <typename T> int populateElement(ImportProgress &progress);
    template <typename T> void compareElement(const ImportRow &row, int destinationId);
    template <typename T> void importElement(ImportProgress &progress, WholeWrite &write);
    template <typename T> void addElement(int sourceId);
    template <typename T> void updateElement(int sourceId);
    template <typename T> void deleteElement(ImportProgress &progress, WholeWrite &write);
    template <typename T> [[nodiscard]] bool isUsed(const T &element) const;

    template <typename T>
    void pairByName(const std::vector<ImportRow> &rows, const QHash<QString, int> &sourceNames,
                    const QHash<QString, int> &destinationNames);
    /// All rows of @p table in their order; @p names gets the id of each name.
    static std::vector<ImportRow> tableItems(DB *db, const QString &table, int nameColumn,
                                             QHash<QString, int> &names);

    // Each replaces what an element of the source refers to by its counterpart in the destination;
    // what the destination lacks is written to it first.

    void applyChanges(Manipulation &manipulation);
    void applyChanges(Experiment &experiment);
    template <typename T> void applyChanges(T &element);
    template <typename T> void rebind(T *element);

    void startReading();
    /// Whether something could not be read since startReading().
    [[nodiscard]] bool isReadFailed() const;
    void forgetComparison();

    Outcome carryOut(ImportProgress &progress, WholeWrite &write);
    template <typename Action>
    void forEachTicked(const std::vector<ImportRow> &rows, ImportProgress &progress,
                       WholeWrite &write, const Action &action);
    [[nodiscard]] bool isOver(const ImportProgress &progress) const;
    bool runSteps(ImportProgress &progress, WholeWrite &write);
    [[nodiscard]] qsizetype ticked() const;
    /// Whether names and ids of all elements are those that were compared.
    [[nodiscard]] bool areAsCompared() const;

    DB *source;
    DB *destination;
    int total_ = 0;
    std::array<ImportLists, importKindCount> lists_;
    std::array<IdMap, importKindCount> idMaps;
    std::array<std::vector<ImportRow>, importKindCount> sourceRows;
    std::array<std::vector<ImportRow>, importKindCount> destinationRows;
    /// Rows of a damaged source that bear the name of another, which stands for them.
    std::array<IdMap, importKindCount> namesakes;
    QString failedElement_;
};

} // namespace Planaria
