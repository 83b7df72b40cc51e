#include "morphology/MGLineOrganEnd.h"

#include "morphology/DrawableNumbers.h"
#include "morphology/MGLineOrgan.h"
#include "widgets/GuiConfig.h"

#include <QPen>

namespace Planaria {

using namespace Angles;

MGLineOrganEnd::MGLineOrganEnd(MGLineOrgan *organNode, int endNumber)
    : MGLever(3.5, GuiConfig::MGLineOrganEndColor(), organNode), parent(organNode), end(endNumber),
      lineItem(new QGraphicsLineItem(organNode))
{
    lineItem->setZValue(-1.0);
    lineItem->setPen(QPen(Qt::black, 1.0));
    updatePos();
}

MGLineOrganEnd::~MGLineOrganEnd()
{
    delete lineItem;
}

QPointF MGLineOrganEnd::modelPos()
{
    const QPointF vector = Drawable::point(parent->end(end));
    const QPointF noDirection(0.0, end == 1 ? minDist_ : -minDist_);
    const QPointF handle = MGOrgan::movedOut(vector, minDist_, noDirection);
    updateLine(handle);
    return handle;
}

QPointF MGLineOrganEnd::dragged(const QPointF &proposed)
{
    const double ang = angleOf(proposed);
    const double dist = length(proposed);
    const QPointF handle = dist < minDist_ ? minDist_ * direction(ang) : proposed;
    parent->setEnd(end, (std::max(dist, minDist_) - minDist_) * direction(ang));
    updateLine(handle);
    parent->organHasChanged();
    return handle;
}

void MGLineOrganEnd::selectionChanged(bool selected)
{
    parent->lineOrganEndSelectionChanged(selected);
}

void MGLineOrganEnd::updateLine(const QPointF &handle)
{
    lineItem->setLine(QLineF(MGOrgan::radius * unit(handle), handle));
}

} // namespace Planaria
