#pragma once

#include "import/ImportProgress.h"
#include "import/LibraryImporter.h"
#include "support/TemporaryLibrary.h"

#include <QJsonObject>
#include <QStringList>

#include <limits>
#include <memory>

namespace Planaria {

/// Writes down what it hears, and cancels when it is told to.
class RecordedProgress final : public ImportProgress
{
public:
    /// Never canceled.
    RecordedProgress() = default;
    /// Canceled from the @p number-th question on, counted from 1.
    explicit RecordedProgress(int number) : lastQuestion(number - 1) {}

    void start(const QString &label, int newMaximum) override;
    void setLabel(const QString &label) override;
    void advance() override { ++rows; }
    [[nodiscard]] bool wasCanceled() const override { return ++questions > lastQuestion; }

    QStringList labels;
    int maximum = -1;
    int rows = 0;
    mutable int questions = 0;

private:
    int lastQuestion = std::numeric_limits<int>::max();
};

enum class ImportList { Modified, Added, Deleted };

inline constexpr std::array allImportLists{ImportList::Modified, ImportList::Added,
                                           ImportList::Deleted};

/// All kinds in order, and what test data calls them.
struct KindKey
{
    ImportKind kind;
    const char *key;
};

inline constexpr std::array allKinds{KindKey{ImportKind::Experiments, "experiments"},
                                     KindKey{ImportKind::Manipulations, "manipulations"},
                                     KindKey{ImportKind::Morphologies, "morphologies"},
                                     KindKey{ImportKind::Drugs, "drugs"},
                                     KindKey{ImportKind::RNAi, "rnai"},
                                     KindKey{ImportKind::Species, "species"},
                                     KindKey{ImportKind::Publications, "publications"}};

/// A library that is merged into another.
class LibraryPair final
{
public:
    /// Both without elements.
    LibraryPair();
    /// Copies of files of tests/data.
    LibraryPair(const QString &sourceName, const QString &destinationName);

    /// Compares from the start; fails the test by qFatal where it does not come to the end.
    void compare();
    LibraryImporter::Outcome import();
    /// Compares, keeps the ticks as they are, and imports.
    LibraryImporter::Outcome merge();

    std::vector<ImportRow> &rows(ImportKind kind, ImportList list);
    QStringList names(ImportKind kind, ImportList list);
    /// All rows of all lists, as "drugs new: heptanol, ticked".
    QStringList listed();
    void tickAll(bool checked);
    /// Fails the test by qFatal where there is no such row.
    void tick(ImportKind kind, ImportList list, const QString &name, bool checked = true);

    /// What is wrong with the file of the destination; empty for a sound one.
    QStringList faults();

    TemporaryLibrary source;
    TemporaryLibrary destination;
    std::unique_ptr<LibraryImporter> importer;
};

} // namespace Planaria
