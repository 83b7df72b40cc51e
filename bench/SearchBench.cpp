#include "BenchLibrary.h"
#include "browse/ElementDeletion.h"
#include "browse/SearchStatement.h"

#include <QCoreApplication>
#include <QFile>

#include <array>
#include <benchmark/benchmark.h>

// How long a full library takes to answer each question of the search tab, from the question to all
// rows, and to delete a selection of experiments.

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

/// Deletes one experiment with all its parts, each row by its id as an element does.
void deleteExperiment(DB *db, int id)
{
    const QString owned = QStringLiteral("SELECT Id FROM %1 WHERE %2 = %3");
    const auto rowsOf = [&](const QString &table, const QString &column, int owner) {
        QList<int> rows;
        const auto query = db->newQuery(owned.arg(table, column).arg(owner));
        while (query->next())
            rows += query->value(0).toInt();
        return rows;
    };
    bool ok = true;
    for (const QString &table :
         {QStringLiteral("ExperimentRNAi"), QStringLiteral("ExperimentDrug")})
        for (const int row : rowsOf(table, QStringLiteral("Experiment"), id))
            ok &= db->removeRow(table, row);
    for (const int set : rowsOf(QStringLiteral("ResultSet"), QStringLiteral("Experiment"), id)) {
        for (const int row :
             rowsOf(QStringLiteral("ResultantMorphology"), QStringLiteral("ResultSet"), set))
            ok &= db->removeRow(QStringLiteral("ResultantMorphology"), row);
        ok &= db->removeRow(QStringLiteral("ResultSet"), set);
    }
    if (!ok || !db->removeRow(QStringLiteral("Experiment"), id))
        qFatal("cannot delete experiment %d", id);
}

void deleteExperiments(benchmark::State &state)
{
    const QString copy = library().fileName() + QStringLiteral(".copy");
    while (state.KeepRunning()) {
        state.PauseTiming();
        QFile::remove(copy);
        QFile::copy(library().fileName(), copy);
        DB db;
        if (db.connect(copy, false) != DB::Opened)
            qFatal("cannot open the copy");
        QList<int> ids;
        for (int i = 0; i < state.range(0); ++i)
            ids += 1 + i * 20;
        state.ResumeTiming();
        if (!ElementDeletion::deleteElements(
                &db, ids, [&db](int experiment) { deleteExperiment(&db, experiment); }))
            qFatal("cannot delete");
    }
}

BENCHMARK(searchManipulationsOfOneWorm)
    ->RangeMultiplier(2)
    ->Range(1250, 20000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(deleteExperiments)
    ->Arg(1)
    ->Arg(3)
    ->Arg(4)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv); // the database drivers are plugins
    registerSearches();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
