#include "BenchLibrary.h"
#include "BenchWorms.h"
#include "experiment/ExperimentForm.h"
#include "model/Experiment.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/Publication.h"
#include "model/ResultSet.h"
#include "model/ResultantMorphology.h"
#include "model/Species.h"

#include <QApplication>
#include <QComboBox>

#include <benchmark/benchmark.h>

// How long it takes until the form of an experiment with 8 result sets of 6 worms each stands on
// the screen, in a library of so many worms, all of which each list of worms offers; and until all
// lists are read anew, as after each edit of a worm. Loading is what of it the experiment takes.

using namespace Planaria;

namespace {

constexpr int sets = 8;
constexpr int wormsOfASet = 6;

/// Stores the experiment. @return its row
int storeExperiment(DB *db)
{
    Experiment experiment;
    experiment.setName(QStringLiteral("bench"));
    experiment.setManipulation(
        std::make_unique<Manipulation>(std::make_unique<Morphology>(1, db, false).release())
            .release());
    experiment.manipulation()->setName(QStringLiteral("bench"));
    experiment.setPublication(std::make_unique<Publication>().release());
    experiment.publication()->setTitle(QStringLiteral("bench"));
    experiment.setSpecies(std::make_unique<Species>().release());
    experiment.species()->setName(QStringLiteral("bench"));
    for (int i = 0; i < sets; ++i) {
        ResultSet *set = experiment.addResultSet();
        set->setRegenPeriod(i);
        for (int worm = 1; worm <= wormsOfASet; ++worm) {
            auto morphology =
                std::make_unique<Morphology>((i * wormsOfASet) + worm, db, false).release();
            set->addResultantMorphology(morphology)->setFrequency(1.0 / wormsOfASet);
        }
    }
    return experiment.submit(db);
}

void loadExperiment(benchmark::State &state)
{
    BenchLibrary library(static_cast<int>(state.range(0)), BenchWorms::varied);
    const int id = storeExperiment(library.db());
    while (state.KeepRunning())
        benchmark::DoNotOptimize(std::make_unique<Experiment>(id, library.db()));
}

void openForm(benchmark::State &state)
{
    BenchLibrary library(static_cast<int>(state.range(0)), BenchWorms::varied);
    Experiment experiment(storeExperiment(library.db()), library.db());
    while (state.KeepRunning()) {
        auto form = std::make_unique<ExperimentForm>(&experiment, library.db(), nullptr);
        form->show();
        QApplication::processEvents();
        state.PauseTiming();
        form.reset();
        state.ResumeTiming();
    }
}

void readListsAnew(benchmark::State &state)
{
    BenchLibrary library(static_cast<int>(state.range(0)), BenchWorms::varied);
    Experiment experiment(storeExperiment(library.db()), library.db());
    ExperimentForm form(&experiment, library.db(), nullptr);
    form.show();
    QApplication::processEvents();
    QSqlQueryModel *worms = nullptr;
    for (const auto *box : form.findChildren<QComboBox *>()) {
        if (box->count() == state.range(0))
            worms = qobject_cast<QSqlQueryModel *>(box->model());
    }
    if (!worms) {
        state.SkipWithError("no list of all worms");
        return;
    }
    while (state.KeepRunning())
        library.db()->updateModel(worms);
}

BENCHMARK(loadExperiment)->Arg(100)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(openForm)->Arg(100)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(readListsAnew)->Arg(100)->Arg(5000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    application.setOrganizationName(QStringLiteral("ExperimentFormBench"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
