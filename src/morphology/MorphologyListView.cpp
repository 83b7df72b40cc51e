#include "morphology/MorphologyListView.h"

#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "morphology/MorphologyItem.h"
#include "morphology/PictureSize.h"

#include <QGraphicsScene>
#include <QGraphicsTextItem>

#include <algorithm>

namespace Planaria {

namespace {

constexpr double columnGap = 40.0;
constexpr double textHeight = 50.0;
constexpr double rowGap = 60.0;

/// Undoes the flip of the view, in which +y points up.
void setUpright(QGraphicsItem *item)
{
    item->setTransform(QTransform::fromScale(1.0, -1.0), true);
}

} // namespace

MorphologyListView::MorphologyListView(QWidget *parent) : ZoomGraphicsView(parent, false, true)
{
    clear();
}

void MorphologyListView::clear()
{
    scene()->clear();
    morphologies.clear();
    setAccessibleName(QStringLiteral("No morphologies"));
}

void MorphologyListView::setMorphologyList(const QList<Morphology *> &list)
{
    scene()->clear();
    morphologies = list;
    drawMorphologies();
    setAccessibleName(QStringLiteral("Drawings of morphologies: %1").arg(morphologies.size()));
    fitView();
}

void MorphologyListView::drawMorphologies()
{
    double y = 0.0;
    for (int i = 0; i < morphologies.size(); ++i) {
        const Morphology &morphology = *morphologies.at(i);
        addText(morphology, y, i);

        const double top = y - textHeight;
        auto *worm = new MorphologyItem(morphology, nullptr, false);
        worm->centerAtZero();
        const QRectF graph = addGraph(*worm, top);
        const QRectF extent = addMorph(worm, top, graph);
        const double height = std::max(extent.height(), graph.height());
        addImages(morphology, top, height, columnGap + graph.width() + extent.width());
        y = top - (height + rowGap);
    }
}

void MorphologyListView::addText(const Morphology &morphology, double y, int number)
{
    static const QFont font(QStringLiteral("Arial"), 16, QFont::Bold);
    QGraphicsTextItem *text =
        scene()->addText(QStringLiteral("%1. ").arg(number + 1) + morphology.name(), font);
    text->setDefaultTextColor(Qt::black); // the paper stays white in dark themes
    text->setPos(0.0, y);
    setUpright(text);
}

QRectF MorphologyListView::addGraph(const MorphologyItem &worm, double y)
{
    // Without an editor of graphs the column is empty: no wider than a line, and as high as the
    // worm, which so stands below its name.
    const double height = worm.boundingRect().height();
    return {0.0, y - height, 0.0, height};
}

QRectF MorphologyListView::addMorph(MorphologyItem *worm, double y, const QRectF &graph)
{
    const QRectF extent = worm->boundingRect();
    worm->setPos(columnGap + graph.width() + 0.5 * extent.width(), y - 0.5 * graph.height());
    scene()->addItem(worm);
    return extent;
}

void MorphologyListView::addImages(const Morphology &morphology, double y, double height, double x)
{
    for (const MorphologyImage *image : morphology.getImages()) {
        const QPixmap full = image->createPixmap();
        const QPixmap pixmap = full.scaledToHeight(PictureSize::heightWithin(height, full.size()),
                                                   Qt::FastTransformation)
                                   .transformed(QTransform::fromScale(1.0, -1.0));
        scene()->addPixmap(pixmap)->setPos(x + columnGap, y - height);
        x += columnGap + pixmap.width();
    }
}

} // namespace Planaria
