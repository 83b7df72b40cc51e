#include "BenchLibrary.h"
#include "browse/DataTableView.h"

#include <QApplication>
#include <QSqlQueryModel>

#include <benchmark/benchmark.h>

// How long the table of a full library takes to show its rows, to be sorted by another column, and
// to come up to date.

using namespace Planaria;

namespace {

/// The library of all runs, made at the first of them.
BenchLibrary &library()
{
    static BenchLibrary full(BenchLibrary::full());
    return full;
}

std::unique_ptr<QSqlQueryModel> experiments()
{
    return library().db()->newTableModel(QStringLiteral("Experiment"),
                                         {{QStringLiteral("Manipulation"), QStringLiteral("Name")},
                                          {QStringLiteral("Publication"), QStringLiteral("Title")},
                                          {QStringLiteral("Species"), QStringLiteral("Name")}});
}

void showRows(benchmark::State &state)
{
    library();
    while (state.KeepRunning()) {
        DataTableView view(nullptr);
        view.setModel(experiments().release(), 1, Qt::AscendingOrder);
    }
}

void sortRows(benchmark::State &state)
{
    DataTableView view(nullptr);
    view.setModel(experiments().release(), 1, Qt::AscendingOrder);
    const int column = static_cast<int>(state.range(0));
    while (state.KeepRunning()) {
        view.sortByColumn(column, Qt::DescendingOrder);
        state.PauseTiming();
        view.sortByColumn(1, Qt::AscendingOrder);
        state.ResumeTiming();
    }
}

void updateRows(benchmark::State &state)
{
    DataTableView view(nullptr);
    QSqlQueryModel *model = experiments().release();
    view.setModel(model, 1, Qt::AscendingOrder);
    view.sortByColumn(static_cast<int>(state.range(0)), Qt::AscendingOrder);
    const QString sql = model->query().lastQuery();
    while (state.KeepRunning()) {
        model->setQuery(std::move(*library().db()->newQuery(sql)));
        view.modelUpdated();
    }
}

BENCHMARK(showRows)->Unit(benchmark::kMillisecond);
BENCHMARK(sortRows)->DenseRange(1, 7)->Unit(benchmark::kMillisecond);
BENCHMARK(updateRows)->Arg(1)->Arg(5)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
