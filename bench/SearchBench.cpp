#include "BenchLibrary.h"
#include "browse/SearchStatement.h"

#include <QCoreApplication>

#include <array>
#include <benchmark/benchmark.h>

// How long a full library takes to answer each question of the search tab, from the question to all
// rows.

using namespace Planaria;

namespace {

/// The library of all runs, made at the first of them.
BenchLibrary &library()
{
    static BenchLibrary full(BenchLibrary::full());
    return full;
}

void search(benchmark::State &state, const SearchQuestion &question)
{
    BenchLibrary &full = library();
    qsizetype rows = 0;
    while (state.KeepRunning())
        rows = SearchStatement(question, full.db()).newModel(full.db())->rowCount();
    state.counters["rows"] = static_cast<double>(rows);
}

/// Each question with all four operators, by values that let every element through.
void registerSearches()
{
    const std::array<QString, 4> values{QStringLiteral(""), QStringLiteral("%"),
                                        QStringLiteral("~"), QStringLiteral("")};
    const QStringList types = SearchStatement::typeLabels();
    const QStringList operators = SearchStatement::operatorLabels();
    for (int type = 0; type < types.size(); ++type) {
        const QStringList fields = SearchStatement::fieldLabels(type);
        for (int field = 0; field < fields.size(); ++field) {
            for (int op = 0; op < operators.size(); ++op) {
                const QStringList name{types[type], fields[field], operators[op]};
                benchmark::RegisterBenchmark(qUtf8Printable(name.join(QLatin1Char('/'))), search,
                                             SearchQuestion{type, field, op, values.at(op)})
                    ->Unit(benchmark::kMillisecond);
            }
        }
    }
}

/// All manipulations start from one worm, whose names make one long text.
void searchManipulationsOfOneWorm(benchmark::State &state)
{
    BenchLibrary one(LibrarySize{1, static_cast<int>(state.range(0)), 1});
    const SearchQuestion question{2, 11, 0, QString()};
    while (state.KeepRunning())
        benchmark::DoNotOptimize(SearchStatement(question, one.db()).newModel(one.db()));
}

BENCHMARK(searchManipulationsOfOneWorm)
    ->RangeMultiplier(2)
    ->Range(1250, 20000)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv); // the database drivers are plugins
    registerSearches();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
