#include "morphology/MorphologyView.h"

#include "model/Morphology.h"
#include "morphology/MorphologyItem.h"

#include <QGraphicsScene>

namespace Planaria {

MorphologyView::MorphologyView(QWidget *parent) : MorphologyView(nullptr, parent) {}

MorphologyView::MorphologyView(Morphology *morphology, QWidget *parent)
    : ZoomGraphicsView(parent, true, true), morphology_(morphology)
{
    initWidget();
}

void MorphologyView::initWidget()
{
    if (morphology_)
        drawMorphology();
    else
        clear();
    buildScaleLine();
}

void MorphologyView::clear()
{
    scene()->clear();
    morphology_ = nullptr;
    item = nullptr;
    updateAccessibleName();
}

void MorphologyView::setMorphology(Morphology *morphology)
{
    scene()->clear();
    morphology_ = morphology;
    drawMorphology();
    fitView();
}

void MorphologyView::morphologyChanged()
{
    if (morphology_)
        setMorphology(morphology_);
}

void MorphologyView::drawMorphology()
{
    item = new MorphologyItem(*morphology_, nullptr, false);
    scene()->addItem(item);
    updateAccessibleName();
}

void MorphologyView::updateAccessibleName()
{
    setAccessibleName(
        morphology_ ? QStringLiteral("Drawing of morphology %1").arg(morphology_->name()).trimmed()
                    : QStringLiteral("No morphology"));
}

void MorphologyView::buildScaleLine() {}

} // namespace Planaria
