#include "db/ExperimentFactory.h"
#include "model/Angles.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "morphology/MGRegion.h"
#include "morphology/MorphoGraphView.h"
#include "morphology/MorphologyView.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QSplitter>

#include <benchmark/benchmark.h>

// How long one step of a drag takes in the graph editor with the drawing beside it: the numbers of
// the model, the graph, and the new drawing; with "painted" the pixels of both views too. To feel
// immediate it has to stay well under a frame, 16 ms.

using namespace Planaria;

namespace {

ExperimentFactory *vocabulary()
{
    return ExperimentFactory::instance(nullptr);
}

/// Two eyes, a brain lobe and a cord.
void addFourOrgans(Region *region)
{
    for (int i = 0; i < 3; ++i) {
        const double angle = i * Angles::fullTurn / 3.0;
        region->addSpotOrgan(vocabulary()->spotOrganType(i < 2 ? 1 : 2),
                             25.0 * Angles::direction(angle), angle);
    }
    region->addLineOrgan(vocabulary()->lineOrganType(1), {10.0, 0.0}, {4.0, 40.0}, {-4.0, -40.0});
}

/// Eight heads around a trunk, with forty organs: eight in the trunk, four in each head.
std::unique_ptr<Morphology> makeWorm()
{
    auto worm = std::make_unique<Morphology>();
    Region *trunk = worm->addRegion(vocabulary()->regionType(2));
    addFourOrgans(trunk);
    addFourOrgans(trunk);
    for (int i = 0; i < 8; ++i) {
        Region *head = worm->addRegion(vocabulary()->regionType(1));
        trunk->addLink(head, 260.0, i * Angles::fullTurn / 8.0, 0.5);
        addFourOrgans(head);
    }
    return worm;
}

/// The editor as the dialog has it.
struct Editor
{
    Editor()
    {
        QObject::connect(graph, &MorphoGraphView::signMorphologyChanged, drawing,
                         &MorphologyView::morphologyChanged);
        window.resize(800, 600);
        window.show();
        QApplication::processEvents();
    }

    [[nodiscard]] qsizetype items() const
    {
        return graph->scene()->items().size() + drawing->scene()->items().size();
    }

    void paint() const
    {
        graph->viewport()->repaint();
        drawing->viewport()->repaint();
    }

    std::unique_ptr<Morphology> worm = makeWorm();
    QSplitter window;
    MorphoGraphView *graph = new MorphoGraphView(worm.get(), &window);
    MorphologyView *drawing = new MorphologyView(worm.get(), &window);
};

/// Drags the region with the place @p index around in a circle, which ends where it starts.
void dragStep(benchmark::State &state, int index, bool allParameters, bool painted)
{
    const Editor editor;
    editor.graph->updateParamsVisibility(allParameters);
    MGRegion *node = editor.graph->regionNodes().value(editor.worm->regions().at(index));
    const QPointF centre = node->pos();
    const qsizetype items = editor.items();
    int step = 0;
    while (state.KeepRunning()) {
        node->setPos(centre + 30.0 * Angles::direction(++step * Angles::fullTurn / 32.0));
        if (painted)
            editor.paint();
    }
    if (editor.items() != items)
        state.SkipWithError("the steps left items behind, or took some away");
    state.counters["items"] = static_cast<double>(items);
}

BENCHMARK_CAPTURE(dragStep, head, 1, false, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dragStep, trunk, 0, false, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dragStep, trunkAllParameters, 0, true, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dragStep, headPainted, 1, false, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dragStep, trunkPaintedAllParameters, 0, true, true)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
