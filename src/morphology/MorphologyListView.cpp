#include "morphology/MorphologyListView.h"

#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "morphology/MorphoGraphView.h"
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
    scene()->setSceneRect(QRectF()); // nothing is left to scroll to
    morphologies.clear();
    setAccessibleName(QStringLiteral("No morphologies"));
    setAccessibleDescription(QString());
}

void MorphologyListView::setMorphologyList(const QList<Morphology *> &list)
{
    scene()->clear();
    morphologies = list;
    drawMorphologies();
    setAccessibleName(QStringLiteral("Drawings of morphologies: %1").arg(morphologies.size()));
    QStringList names;
    for (const Morphology *morphology : std::as_const(morphologies))
        names += morphology->name();
    setAccessibleDescription(names.join(QStringLiteral(", ")));
    scene()->setSceneRect(scene()->itemsBoundingRect()); // the zoom stays
}

void MorphologyListView::drawMorphologies()
{
    double y = 0.0;
    for (int i = 0; i < morphologies.size(); ++i) {
        Morphology *morphology = morphologies.at(i);
        addText(*morphology, y, i);

        const double top = y - textHeight;
        const QRectF graph = addGraph(morphology, top);
        const QRectF extent = addMorph(*morphology, top, graph);
        const double height = std::max(extent.height(), graph.height());
        addImages(*morphology, top, height, columnGap + graph.width() + extent.width());
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

QRectF MorphologyListView::addGraph(Morphology *morphology, double y)
{
    // One for each: until events run, a scene searches all items that it ever had.
    MorphoGraphView graphView(morphology, nullptr);
    QGraphicsScene *graphScene = graphView.scene();
    const QRectF graph = graphScene->itemsBoundingRect();
    const QPointF offset(-graph.left(), y - 0.5 * graph.height() - graph.center().y());

    // From the lowest up, so that they lie upon each other as in the editor.
    const QList<QGraphicsItem *> items = graphScene->items(Qt::AscendingOrder);
    for (QGraphicsItem *item : items)
        item->setFlags({});
    for (QGraphicsItem *item : items) {
        if (item->parentItem())
            continue;
        scene()->addItem(item);
        item->moveBy(offset.x(), offset.y());
    }
    return graph;
}

QRectF MorphologyListView::addMorph(const Morphology &morphology, double y, const QRectF &graph)
{
    auto *worm = new MorphologyItem(morphology, nullptr, false);
    worm->centerAtZero();
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
