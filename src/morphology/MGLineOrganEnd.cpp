#include "morphology/MGLineOrganEnd.h"

#include "morphology/Clearance.h"
#include "morphology/DrawableNumbers.h"
#include "morphology/MGLineOrgan.h"
#include "widgets/GuiConfig.h"

namespace Planaria {

using namespace Angles;

MGLineOrganEnd::MGLineOrganEnd(MGLineOrgan *organNode, int endNumber)
    : MGLever(3.5, GuiConfig::MGLineOrganEndColor(), organNode), parent(organNode), end(endNumber)
{
    addLine(-1.0);
    updatePos();
}

QPointF MGLineOrganEnd::modelPos()
{
    const QPointF vector = Drawable::point(parent->end(end));
    const QPointF noDirection(0.0, end == 1 ? minDist_ : -minDist_);
    const QPointF handle = Clearance::shownAt(vector, minDist_, noDirection);
    updateLine(handle);
    return handle;
}

QPointF MGLineOrganEnd::dragged(const QPointF &proposed)
{
    const auto [handle, vector] = Clearance::draggedTo(proposed, minDist_);
    parent->setEnd(end, vector);
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
    setLine(MGOrgan::radius * unit(handle), handle);
}

} // namespace Planaria
