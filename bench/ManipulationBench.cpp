#include "BenchWorms.h"
#include "manipulation/AreaPoint.h"
#include "manipulation/ManipulationView.h"
#include "manipulation/RemoveDesigner.h"
#include "model/Angles.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/RemoveAction.h"

#include <QApplication>
#include <QGraphicsScene>

#include <benchmark/benchmark.h>

// How long one step of a drag takes over the product of a tree of actions, and the rebuilding of
// such a product; with "painted" the pixels of the view too. To feel immediate a step has to stay
// well under a frame, 16 ms.

using namespace Planaria;

namespace {

constexpr int corners = 8;

void addPolygon(AreaAction *action, const QPointF &centre, double radius)
{
    for (int i = 0; i < corners; ++i)
        action->addAreaPoint(centre + radius * Angles::direction(i * Angles::fullTurn / corners));
}

/// Cuts around the outline, each of which leaves a notch: every outline has more curves than the
/// one before.
void addCut(Manipulation *manipulation, int index)
{
    const QPointF place = 100.0 * Angles::direction(0.7 * index);
    addPolygon(manipulation->addRemoveAction(manipulation->rootAction()), place, 15.0 + index % 7);
}

/// By turns a graft, a cut, a crop and an irradiation.
void addAny(Manipulation *manipulation, int index)
{
    ManipulationAction *root = manipulation->rootAction();
    switch (index % 4) {
    case 0: {
        JoinAction *join = manipulation->addJoinAction(root, BenchWorms::wildType().release());
        join->setVectX(20.0 * index);
        join->setRot(0.3 * index);
        break;
    }
    case 1:
        addCut(manipulation, index);
        break;
    case 2:
        addPolygon(manipulation->addCropAction(root), {}, 400.0 - index);
        break;
    default:
        addPolygon(manipulation->addIrradiationAction(root), {0.0, 50.0}, 60.0);
    }
}

using Adder = void (*)(Manipulation *, int);

std::unique_ptr<Manipulation> makeManipulation(int actions, Adder add)
{
    auto manipulation = std::make_unique<Manipulation>(BenchWorms::wildType().release());
    for (int i = 0; i < actions; ++i)
        add(manipulation.get(), i);
    return manipulation;
}

void show(QWidget *view)
{
    view->resize(600, 600);
    view->show();
    QApplication::processEvents();
}

AreaPoint *firstHandle(const QGraphicsScene *scene)
{
    for (QGraphicsItem *item : scene->items()) {
        if (auto *handle = dynamic_cast<AreaPoint *>(item))
            return handle;
    }
    return nullptr;
}

/// Drags a corner of a further cut around in a circle, which ends where it starts.
void dragStep(benchmark::State &state, int actions, Adder add, bool painted)
{
    const auto manipulation = makeManipulation(actions, add);
    RemoveAction *action = manipulation->addRemoveAction(manipulation->rootAction());
    addPolygon(action, {}, 50.0);
    RemoveDesigner view;
    show(&view);
    view.setRemoveAction(action);
    AreaPoint *handle = firstHandle(view.scene());
    const QPointF centre = handle->pos();
    const qsizetype items = view.scene()->items().size();
    int step = 0;
    while (state.KeepRunning()) {
        handle->setPos(centre + 30.0 * Angles::direction(++step * Angles::fullTurn / 32.0));
        if (painted)
            view.viewport()->repaint();
    }
    if (view.scene()->items().size() != items)
        state.SkipWithError("the steps left items behind, or took some away");
    state.counters["items"] = static_cast<double>(items);
}

BENCHMARK_CAPTURE(dragStep, tenCuts, 10, addCut, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dragStep, tenActions, 10, addAny, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dragStep, tenCutsPainted, 10, addCut, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dragStep, tenActionsPainted, 10, addAny, true)->Unit(benchmark::kMillisecond);

void rebuild(benchmark::State &state, int actions, Adder add, bool painted)
{
    const auto manipulation = makeManipulation(actions, add);
    ManipulationView view;
    show(&view);
    view.setManipulation(manipulation.get());
    const qsizetype items = view.scene()->items().size();
    while (state.KeepRunning()) {
        view.updateManipulation();
        if (painted)
            view.viewport()->repaint();
    }
    if (view.scene()->items().size() != items)
        state.SkipWithError("the product has not come out the same");
    state.counters["items"] = static_cast<double>(items);
}

BENCHMARK_CAPTURE(rebuild, fortyCuts, 40, addCut, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rebuild, fortyActions, 40, addAny, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rebuild, fortyCutsPainted, 40, addCut, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rebuild, fortyActionsPainted, 40, addAny, true)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
