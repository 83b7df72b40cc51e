#include "BenchLibrary.h"
#include "browse/DataTableView.h"
#include "browse/DrugsWidget.h"
#include "browse/ExperimentsWidget.h"
#include "browse/ManipulationsWidget.h"
#include "browse/MorphologiesWidget.h"
#include "browse/PublicationsWidget.h"
#include "browse/RNAiWidget.h"
#include "browse/SpeciesWidget.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QItemSelectionModel>
#include <QMessageBox>
#include <QSqlQueryModel>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>
#include <map>

// How long the tables of a full library take to show their rows, to be sorted by another column, to
// come up to date, and to let go of rows. The last argument is the number of experiments; there are
// a quarter as many manipulations and worms.

using namespace Planaria;

namespace {

/// By the number of experiments.
std::map<int64_t, BenchLibrary> &libraries()
{
    static std::map<int64_t, BenchLibrary> made;
    return made;
}

/// The library with so many experiments, made at the first of its runs.
BenchLibrary &library(int64_t experiments)
{
    const int n = static_cast<int>(experiments);
    return libraries().try_emplace(experiments, LibrarySize{n, n / 4, n / 4}).first->second;
}

/// A tab as it stands in the window.
template <typename Widget> class Tab final
{
public:
    explicit Tab(DB *db) : widget(db, nullptr)
    {
        widget.resize(800, 600);
        widget.show();
        QApplication::processEvents();
    }

    void update()
    {
        widget.updateModel(0);
        QApplication::processEvents();
    }

    DataTableView *view() { return widget.template findChild<DataTableView *>(); }

    Widget widget;
};

/// The first time of a tab, which is the opening of the file for that of the experiments.
template <typename Widget> void showTab(benchmark::State &state)
{
    DB *db = library(state.range(0)).db();
    Tab<Widget> tab(db);
    while (state.KeepRunning()) {
        tab.widget.clear();
        tab.update();
    }
    state.counters["rows"] = tab.view()->model()->rowCount();
}

/// Each further time.
template <typename Widget> void switchToTab(benchmark::State &state)
{
    Tab<Widget> tab(library(state.range(0)).db());
    tab.update();
    while (state.KeepRunning())
        tab.update();
}

template <typename Widget> void sortTab(benchmark::State &state)
{
    Tab<Widget> tab(library(state.range(1)).db());
    tab.update();
    const int column = static_cast<int>(state.range(0));
    while (state.KeepRunning()) {
        tab.view()->sortByColumn(column, Qt::DescendingOrder);
        QApplication::processEvents();
        state.PauseTiming();
        tab.view()->sortByColumn(1, Qt::AscendingOrder);
        state.ResumeTiming();
    }
}

void updateSortedRows(benchmark::State &state)
{
    Tab<ExperimentsWidget> tab(library(state.range(1)).db());
    tab.update();
    tab.view()->sortByColumn(static_cast<int>(state.range(0)), Qt::AscendingOrder);
    while (state.KeepRunning())
        tab.update();
}

void selectAll(benchmark::State &state)
{
    Tab<ExperimentsWidget> tab(library(state.range(0)).db());
    tab.update();
    while (state.KeepRunning()) {
        tab.view()->selectAll();
        QApplication::processEvents();
        state.PauseTiming();
        tab.view()->clearSelection();
        state.ResumeTiming();
    }
}

/// Presses Yes as soon as it is asked.
void sayYes()
{
    if (const auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
        box->button(QMessageBox::Yes)->click();
    else
        QTimer::singleShot(0, &sayYes);
}

/// Some of the experiments of a copy of the library, by the button.
void deleteExperiments(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("copy.edb"));
    if (!QFile::copy(library(state.range(1)).fileName(), copy))
        qFatal("cannot copy the library");
    DB db;
    if (db.connect(copy, false) != DB::Opened)
        qFatal("cannot open the copy");
    Tab<ExperimentsWidget> tab(&db);
    tab.update();
    const int count = static_cast<int>(state.range(0));
    while (state.KeepRunning()) {
        state.PauseTiming();
        const QAbstractItemModel *model = tab.view()->model();
        tab.view()->selectionModel()->select(
            QItemSelection(model->index(0, 1), model->index(count - 1, 1)),
            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        const int before = model->rowCount();
        QTimer::singleShot(0, &sayYes);
        state.ResumeTiming();
        QMetaObject::invokeMethod(tab.view()->window()->findChildren<QAbstractButton *>().last(),
                                  "click");
        if (model->rowCount() != before - count)
            qFatal("%d rows are left of %d", model->rowCount(), before);
    }
}

void sizes(benchmark::internal::Benchmark *bench)
{
    for (const int experiments : {5000, 10000, 20000})
        bench->Arg(experiments);
}

BENCHMARK(showTab<ExperimentsWidget>)->Apply(sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(showTab<MorphologiesWidget>)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(switchToTab<ExperimentsWidget>)->Apply(sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(switchToTab<ManipulationsWidget>)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(switchToTab<MorphologiesWidget>)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(switchToTab<DrugsWidget>)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(switchToTab<RNAiWidget>)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(switchToTab<SpeciesWidget>)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(switchToTab<PublicationsWidget>)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(sortTab<ExperimentsWidget>)
    ->ArgsProduct({{1, 5, 6, 7}, {5000, 10000, 20000}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(sortTab<ManipulationsWidget>)->Args({1, 20000})->Unit(benchmark::kMillisecond);
BENCHMARK(sortTab<MorphologiesWidget>)->Args({1, 20000})->Unit(benchmark::kMillisecond);
BENCHMARK(sortTab<PublicationsWidget>)
    ->ArgsProduct({{1, 2, 3}, {20000}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(updateSortedRows)->Args({5, 20000})->Unit(benchmark::kMillisecond);
BENCHMARK(selectAll)->Apply(sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(deleteExperiments)
    ->ArgsProduct({{1, 3, 4, 20, 1000}, {5000, 10000, 20000}})
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    libraries().clear(); // while there are database drivers
}
