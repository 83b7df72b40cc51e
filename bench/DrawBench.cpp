#include "BenchWorms.h"
#include "model/Morphology.h"
#include "morphology/MorphologyItem.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

// How long a worm in memory takes to become a drawing, and the drawing pixels at its natural size.

using namespace Planaria;

namespace {

void buildDrawing(benchmark::State &state, std::unique_ptr<Morphology> (*make)())
{
    const std::unique_ptr<Morphology> worm = make();
    while (state.KeepRunning()) {
        const MorphologyItem item(*worm, nullptr, false);
        benchmark::DoNotOptimize(&item);
    }
}

void paintDrawing(benchmark::State &state, std::unique_ptr<Morphology> (*make)())
{
    QGraphicsScene scene;
    auto *item = new MorphologyItem(*make(), nullptr, false);
    scene.addItem(item);
    const QRectF extent = item->boundingRect();
    QImage image(extent.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    while (state.KeepRunning())
        scene.render(&painter, image.rect(), extent);
}

BENCHMARK_CAPTURE(buildDrawing, wildType, BenchWorms::wildType)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(buildDrawing, large, BenchWorms::large)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paintDrawing, wildType, BenchWorms::wildType)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paintDrawing, large, BenchWorms::large)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
