#include "BenchLibrary.h"
#include "BenchWorms.h"
#include "db/BulkRead.h"
#include "distance/DistAlgo.h"
#include "distance/MorphologyDistCompForm.h"
#include "distance/MorphologyDistSearchForm.h"
#include "model/Morphology.h"

#include <QApplication>

#include <benchmark/benchmark.h>
#include <chrono>
#include <malloc.h>
#include <vector>

// How long it takes until the worms of a library stand on the screen by their distance from one,
// and what of that are loading, computing and the rest: drawing and progress. "whileOpen" is the
// memory that the open form holds, "afterClose" what is left of it.

using namespace Planaria;

namespace {

double seconds()
{
    return 1e-9 * static_cast<double>(std::chrono::steady_clock::now().time_since_epoch() /
                                      std::chrono::nanoseconds(1));
}

double allocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Opens the comparator, which compares with the first worm.
std::unique_ptr<QDialog> openComparator(DB *db)
{
    return std::make_unique<MorphologyDistCompForm>(db);
}

/// Opens the graphical search, and searches for the wild type.
std::unique_ptr<QDialog> openSearch(DB *db)
{
    auto form = std::make_unique<MorphologyDistSearchForm>(db);
    form->updateComparator();
    return form;
}

struct Shares
{
    double loading = 0.0;
    double computing = 0.0;
};

/// The work that each form has to do, by itself.
Shares measureShares(DB *db, int count)
{
    Shares shares;
    const double start = seconds();
    std::vector<std::unique_ptr<Morphology>> worms;
    {
        const BulkRead job(db);
        for (int id = 1; id <= count; ++id)
            worms.push_back(std::make_unique<Morphology>(id, db, false));
    }
    const double loaded = seconds();
    for (const auto &worm : worms)
        benchmark::DoNotOptimize(DistAlgo::dist(*worms.front(), *worm));
    shares.loading = loaded - start;
    shares.computing = seconds() - loaded;
    return shares;
}

void openForm(benchmark::State &state, std::unique_ptr<QDialog> (*open)(DB *))
{
    const int count = static_cast<int>(state.range(0));
    BenchLibrary library(count, BenchWorms::varied);
    open(library.db())->show(); // what is kept for good is there now
    QApplication::processEvents();

    Shares sum;
    double whole = 0.0;
    const double before = allocatedBytes();
    double whileOpen = 0.0;
    while (state.KeepRunning()) {
        const double start = seconds();
        const std::unique_ptr<QDialog> form = open(library.db());
        form->show();
        QApplication::processEvents();
        const double time = seconds() - start;
        state.SetIterationTime(time);
        whole += time;
        whileOpen = allocatedBytes() - before;
        const Shares shares = measureShares(library.db(), count);
        sum.loading += shares.loading;
        sum.computing += shares.computing;
    }
    state.counters["loading%"] = 100.0 * sum.loading / whole;
    state.counters["computing%"] = 100.0 * sum.computing / whole;
    state.counters["drawing%"] = 100.0 * (1.0 - (sum.loading + sum.computing) / whole);
    using benchmark::Counter;
    state.counters["whileOpen"] = Counter(whileOpen, Counter::kDefaults, Counter::kIs1024);
    state.counters["afterClose"] =
        Counter(allocatedBytes() - before, Counter::kDefaults, Counter::kIs1024);
}

BENCHMARK_CAPTURE(openForm, comparator, openComparator)
    ->Arg(100)
    ->Arg(1000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(openForm, search, openSearch)
    ->Arg(100)
    ->Arg(1000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    application.setOrganizationName(QStringLiteral("CompareBench"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
