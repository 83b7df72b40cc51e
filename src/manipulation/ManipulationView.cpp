#include "manipulation/ManipulationView.h"

#include "manipulation/ManipulationItem.h"
#include "model/Manipulation.h"

#include <QGraphicsScene>

namespace Planaria {

ManipulationView::ManipulationView(QWidget *parent) : ZoomGraphicsView(parent, true, true)
{
    clear();
}

void ManipulationView::setManipulation(Manipulation *manipulation)
{
    clearScene();
    manipulation_ = manipulation;
    drawManipulation();
    fitView();
}

void ManipulationView::updateManipulation()
{
    if (!manipulation_)
        return;
    clearScene();
    drawManipulation();
}

void ManipulationView::clear()
{
    clearScene();
    manipulation_ = nullptr;
    updateAccessibleName();
}

void ManipulationView::drawManipulation()
{
    item = new ManipulationItem(manipulation_->rootAction());
    setupScene();
    updateAccessibleName();
}

void ManipulationView::updateAccessibleName()
{
    setAccessibleName(
        manipulation_
            ? QStringLiteral("Drawing of manipulation %1").arg(manipulation_->name()).trimmed()
            : QStringLiteral("No manipulation"));
}

void ManipulationView::setupScene()
{
    scene()->addItem(item);
    updatePointItem();
}

void ManipulationView::clearScene()
{
    scene()->clear();
    item = nullptr;
}

void ManipulationView::updatePointItem() {}

} // namespace Planaria
