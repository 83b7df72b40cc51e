#include "BenchLibrary.h"
#include "import/ImportProgress.h"
#include "import/LibraryImporter.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

#include <benchmark/benchmark.h>
#include <map>

// How long a library takes to be merged into another of the same size: one that has none of its
// elements, and one that has all of them in another version. Beside the time: the longest wait
// between two questions whether the user wants to go on.

using namespace Planaria;

namespace {

class TimedProgress final : public ImportProgress
{
public:
    TimedProgress() { timer.start(); }

    void start(const QString & /*label*/, int /*maximum*/) override {}
    void setLabel(const QString & /*label*/) override {}
    void advance() override {}
    [[nodiscard]] bool wasCanceled() const override
    {
        longest = std::max(longest, timer.restart());
        return false;
    }

    [[nodiscard]] double longestWait() const { return static_cast<double>(longest); }

private:
    mutable QElapsedTimer timer;
    mutable qint64 longest = 0;
};

enum Destination { Others, Versions };

/// The libraries of all runs by their number of experiments, each made when it is first asked for.
std::map<int, BenchLibrary> libraries;

/// Experiments with a quarter of their number of manipulations, and as many morphologies.
BenchLibrary &sourceOf(int experiments)
{
    const LibrarySize size{experiments, experiments / 4 + 1, experiments / 4 + 1};
    return libraries.try_emplace(experiments, size).first->second;
}

void run(DB *db, const QString &sql)
{
    if (!db->newQuery(sql)->isActive())
        qFatal("%s: %s", qUtf8Printable(sql), qUtf8Printable(db->lastError()));
}

/// Renames all elements, or changes a number in each that has one.
void turnInto(DB *db, Destination destination)
{
    if (!db->beginTransaction())
        qFatal("cannot begin");
    if (destination == Others) {
        for (const QString &table : {QStringLiteral("Drug"), QStringLiteral("RNAi"),
                                     QStringLiteral("Species"), QStringLiteral("Morphology"),
                                     QStringLiteral("Manipulation"), QStringLiteral("Experiment")})
            run(db, QStringLiteral("UPDATE %1 SET Name = 'Other ' || Name").arg(table));
        run(db, QStringLiteral("UPDATE Publication SET Title = 'Other ' || Title"));
    } else {
        run(db, QStringLiteral("UPDATE Publication SET Year = Year + 1"));
        run(db, QStringLiteral("UPDATE RegionParam SET Value = Value + 1"));
        run(db, QStringLiteral("UPDATE JoinAction SET Rot = Rot + 1"));
        run(db, QStringLiteral("UPDATE ResultSet SET RegenPeriod = RegenPeriod + 1"));
    }
    if (!db->endTransaction())
        qFatal("cannot change the library");
}

void openCopy(DB *db, const QString &fileName, const QString &copy, Destination destination)
{
    QFile::remove(copy);
    if (!QFile::copy(fileName, copy) || db->connect(copy, false) != DB::Opened)
        qFatal("cannot copy %s", qUtf8Printable(fileName));
    turnInto(db, destination);
}

void compare(LibraryImporter *importer, TimedProgress *progress)
{
    if (!importer->populateElements(*progress, [](ImportKind) {}))
        qFatal("cannot compare");
}

void merge(LibraryImporter *importer, TimedProgress *progress)
{
    if (importer->importElements(*progress) != LibraryImporter::Outcome::Done)
        qFatal("cannot merge");
}

void compareLibraries(benchmark::State &state, Destination destination)
{
    BenchLibrary &source = sourceOf(static_cast<int>(state.range(0)));
    const QString copy = source.fileName() + QStringLiteral(".copy");
    DB db;
    openCopy(&db, source.fileName(), copy, destination);
    TimedProgress progress;
    while (state.KeepRunning()) {
        LibraryImporter importer(source.db(), &db);
        compare(&importer, &progress);
    }
    state.counters["longest wait, ms"] = progress.longestWait();
}

void mergeLibraries(benchmark::State &state, Destination destination)
{
    BenchLibrary &source = sourceOf(static_cast<int>(state.range(0)));
    const QString copy = source.fileName() + QStringLiteral(".copy");
    double longest = 0.0;
    while (state.KeepRunning()) {
        state.PauseTiming();
        DB db;
        openCopy(&db, source.fileName(), copy, destination);
        LibraryImporter importer(source.db(), &db);
        TimedProgress comparing;
        compare(&importer, &comparing);
        TimedProgress progress;
        state.ResumeTiming();
        merge(&importer, &progress);
        longest = std::max(longest, progress.longestWait());
    }
    state.counters["longest wait, ms"] = longest;
}

/// Deletes all that the destination has more than a source of one experiment.
void deleteTheRest(benchmark::State &state)
{
    BenchLibrary &full = sourceOf(static_cast<int>(state.range(0)));
    BenchLibrary &source = sourceOf(1);
    const QString copy = full.fileName() + QStringLiteral(".copy");
    double longest = 0.0;
    while (state.KeepRunning()) {
        state.PauseTiming();
        DB db;
        openCopy(&db, full.fileName(), copy, Others);
        LibraryImporter importer(source.db(), &db);
        TimedProgress comparing;
        compare(&importer, &comparing);
        for (int kind = 0; kind < importKindCount; ++kind) {
            for (ImportRow &row : importer.lists(static_cast<ImportKind>(kind)).deleted)
                row.checked = true;
        }
        TimedProgress progress;
        state.ResumeTiming();
        merge(&importer, &progress);
        longest = std::max(longest, progress.longestWait());
    }
    state.counters["longest wait, ms"] = longest;
}

void sized(benchmark::internal::Benchmark *bench)
{
    bench->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(compareLibraries, others, Others)->Apply(sized);
BENCHMARK_CAPTURE(compareLibraries, versions, Versions)->Apply(sized);
BENCHMARK_CAPTURE(mergeLibraries, others, Others)->Apply(sized);
BENCHMARK_CAPTURE(mergeLibraries, versions, Versions)->Apply(sized);
BENCHMARK(deleteTheRest)->Apply(sized);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv); // the database drivers are plugins
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    libraries.clear(); // while there are database drivers
}
