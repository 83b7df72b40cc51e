#include "BenchLibrary.h"
#include "BenchWorms.h"
#include "db/BulkRead.h"
#include "model/Morphology.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>
#include <optional>
#include <vector>

// How long worms take from an open file into memory. "perWorm" is the time for one of them; with a
// bulk read it is to stay level, however many there are.

using namespace Planaria;

namespace {

void loadWorm(benchmark::State &state, std::unique_ptr<Morphology> (*make)())
{
    BenchLibrary library(make().get());
    while (state.KeepRunning()) {
        const Morphology worm(1, library.db(), false);
        benchmark::DoNotOptimize(&worm);
    }
}

/// Loads all worms and lets go of them at the end, as a list of worms does.
void loadLibrary(benchmark::State &state, bool bulk)
{
    const int count = static_cast<int>(state.range(0));
    BenchLibrary library(count);
    while (state.KeepRunning()) {
        std::optional<BulkRead> job;
        if (bulk)
            job.emplace(library.db());
        std::vector<std::unique_ptr<Morphology>> worms;
        for (int id = 1; id <= count; ++id)
            worms.push_back(std::make_unique<Morphology>(id, library.db(), false));
    }
    using benchmark::Counter;
    state.counters["perWorm"] =
        Counter(count, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

BENCHMARK_CAPTURE(loadWorm, wildType, BenchWorms::wildType)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(loadWorm, large, BenchWorms::large)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(loadLibrary, bulk, true)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loadLibrary, oneByOne, false)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv); // the database drivers are plugins
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
