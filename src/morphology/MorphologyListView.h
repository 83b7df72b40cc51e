#pragma once

#include "widgets/ZoomGraphicsView.h"

#include <QList>

namespace Planaria {

class Morphology;

/// Shows many worms, one row each: number and name, and below them the graph, the worm and its
/// pictures.
class MorphologyListView final : public ZoomGraphicsView
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/Morphology.h")

public:
    explicit MorphologyListView(QWidget *parent);

public slots:
    void clear();
    /// The morphologies belong to somebody else and must stay while they are shown.
    void setMorphologyList(const QList<Morphology *> &list);

private:
    void drawMorphologies();

    // Each draws one column of a row; y is its top, in scene units that grow upwards.

    void addText(const Morphology &morphology, double y, int number);
    /// Builds the graph elsewhere and takes it over, with its left edge at 0 and nothing left to
    /// drag. @return its extent
    QRectF addGraph(Morphology *morphology, double y);
    /// Draws the worm to the right of the graph, level with its middle. @return its extent
    QRectF addMorph(const Morphology &morphology, double y, const QRectF &graph);
    void addImages(const Morphology &morphology, double y, double height, double x);

    QList<Morphology *> morphologies;
};

} // namespace Planaria
