#include "BenchWorms.h"
#include "PlainDistance.h"
#include "RandomBodies.h"
#include "distance/DistAlgo.h"
#include "model/Morphology.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <malloc.h>
#include <memory>
#include <new>
#include <vector>

// How long the distance of two worms takes, over some pairs of a kind. The plain search that the
// distance is checked against runs on the same pairs in the same run:
//
//   ratio     the plain search's time to ours, geometric mean over the pairs
//   hardest   the same for the pair that takes the plain search longest, which takes "plainMs"
//   cut       pairs in which paths are given up because too many are open
//   peakKiB   memory that our search holds at most for that pair
//
// At the end stands the ratio over all pairs with five regions and more.

using namespace Planaria;

// --- Memory ---

namespace {

std::size_t heldBytes = 0;
std::size_t peakBytes = 0;

} // namespace

void *operator new(std::size_t size)
{
    void *memory = std::malloc(size);
    if (!memory)
        std::abort();
    heldBytes += malloc_usable_size(memory);
    peakBytes = std::max(peakBytes, heldBytes);
    return memory;
}

void operator delete(void *memory) noexcept
{
    heldBytes -= memory ? malloc_usable_size(memory) : 0;
    std::free(memory);
}

void operator delete(void *memory, std::size_t /*size*/) noexcept
{
    operator delete(memory);
}

namespace {

// --- Pairs ---

using Kind = RandomBodies::Kind;

struct Pair
{
    std::unique_ptr<Morphology> a;
    std::unique_ptr<Morphology> b;

    [[nodiscard]] bool isLarge() const
    {
        return std::max(a->regions().size(), b->regions().size()) >= 5;
    }
};

/// Wild types and what a hand makes of them.
std::vector<Pair> wildTypes()
{
    std::vector<Pair> pairs;
    for (quint32 seed = 1; seed <= 8; ++seed) {
        auto worm = BenchWorms::wildType();
        auto other = RandomBodies(seed).variation(*worm, {3, 4});
        pairs.push_back({std::move(worm), std::move(other)});
    }
    return pairs;
}

std::vector<Pair> randomPairs(const Kind &first, const Kind &second, quint32 count)
{
    std::vector<Pair> pairs;
    for (quint32 seed = 1; seed <= count; ++seed) {
        RandomBodies random(seed);
        auto worm = random.worm(first);
        pairs.push_back({std::move(worm), random.worm(second)});
    }
    return pairs;
}

// --- Time ---

double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Seconds of the processor that @p call takes: the least of some tries, each of at least two
/// milliseconds.
template <typename Call> double secondsOf(const Call &call)
{
    double least = std::numeric_limits<double>::infinity();
    const double start = processorSeconds();
    for (int tries = 0; tries == 0 || (tries < 5 && processorSeconds() - start < 0.2); ++tries) {
        const double begin = processorSeconds();
        int calls = 0;
        do {
            call();
            ++calls;
        } while (processorSeconds() - begin < 0.002);
        least = std::min(least, (processorSeconds() - begin) / calls);
    }
    return least;
}

/// Geometric mean.
class Mean final
{
public:
    void add(double value)
    {
        sum += std::log(value);
        ++count_;
    }
    [[nodiscard]] double value() const { return count_ > 0 ? std::exp(sum / count_) : 0.0; }
    [[nodiscard]] int count() const { return count_; }

private:
    double sum = 0.0;
    int count_ = 0;
};

Mean largeRatio;

std::size_t peakOf(const Pair &pair)
{
    const std::size_t before = heldBytes;
    peakBytes = before;
    benchmark::DoNotOptimize(DistAlgo::dist(*pair.a, *pair.b));
    return peakBytes - before;
}

void compareWithPlain(benchmark::State &state, const std::vector<Pair> &pairs)
{
    Mean ratio;
    double longest = 0.0;
    int cut = 0;
    for (const Pair &pair : pairs) {
        PlainDistance::Outcome plain;
        double dist = 0.0;
        const double ours = secondsOf([&] { dist = DistAlgo::dist(*pair.a, *pair.b); });
        const double plains = secondsOf([&] { plain = PlainDistance::dist(*pair.a, *pair.b); });
        if (dist != plain.dist)
            state.SkipWithError("The distances differ.");
        ratio.add(plains / ours);
        if (pair.isLarge())
            largeRatio.add(plains / ours);
        if (plains > longest) {
            longest = plains;
            state.counters["hardest"] = plains / ours;
            state.counters["peakKiB"] = static_cast<double>(peakOf(pair)) / 1024.0;
        }
        cut += plain.givenUp > 0 ? 1 : 0;
    }
    state.counters["ratio"] = ratio.value();
    state.counters["plainMs"] = longest * 1000.0;
    state.counters["cut"] = cut;
}

/// The time is that of all pairs together.
void distances(benchmark::State &state, const std::vector<Pair> &pairs)
{
    while (state.KeepRunning()) {
        for (const Pair &pair : pairs)
            benchmark::DoNotOptimize(DistAlgo::dist(*pair.a, *pair.b));
    }
    compareWithPlain(state, pairs);
}

void addBenchmark(const char *name, std::vector<Pair> pairs)
{
    benchmark::RegisterBenchmark(name,
                                 [pairs = std::make_shared<std::vector<Pair>>(std::move(pairs))](
                                     benchmark::State &state) { distances(state, *pairs); })
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(5);
}

void addBenchmarks()
{
    constexpr int few = 1;
    constexpr int many = 5;
    addBenchmark("wildTypes", wildTypes());
    addBenchmark("fourRegions/fewOrgans", randomPairs({4, few}, {4, few}, 12));
    addBenchmark("fourRegions/manyOrgans", randomPairs({4, many}, {4, many}, 12));
    addBenchmark("fiveRegions/fewOrgans", randomPairs({5, few}, {5, few}, 12));
    addBenchmark("fiveRegions/manyOrgans", randomPairs({5, many}, {5, many}, 12));
    addBenchmark("sevenRegions/fewOrgans", randomPairs({7, few}, {6, few}, 8));
    addBenchmark("sevenRegions/manyOrgans", randomPairs({7, many}, {6, many}, 8));
    addBenchmark("nineRegions/noOrgans", randomPairs({9, 0}, {9, 0}, 6));
    addBenchmark("nineRegions/fewOrgans", randomPairs({9, few}, {9, few}, 6));
    addBenchmark("nineRegions/manyOrgans", randomPairs({9, many}, {9, many}, 3));
    addBenchmark("nineRegions/equalCosts",
                 randomPairs({9, few, false, true}, {9, few, false, true}, 6));
    addBenchmark("oneRegion/tenOrgans", randomPairs({1, 10}, {1, 10}, 12));
}

} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    addBenchmarks();
    benchmark::RunSpecifiedBenchmarks();
    std::printf("%d pairs of five regions and more: ratio %.1f\n", largeRatio.count(),
                largeRatio.value());
}
