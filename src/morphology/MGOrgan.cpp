#include "morphology/MGOrgan.h"

#include "model/Organ.h"
#include "morphology/DrawableNumbers.h"
#include "morphology/MGRegion.h"
#include "morphology/MorphoGraphView.h"

#include <QScopedValueRollback>

namespace Planaria {

using namespace Angles;

MGOrgan::MGOrgan(MorphoGraphView *graphView, Organ *modelOrgan, MGRegion *parentNode)
    : MGNode(graphView, radius, parentNode), organ_(modelOrgan)
{
    fontPixelSize = 11;
    updatePos();
}

MGRegion *MGOrgan::parent() const
{
    return dynamic_cast<MGRegion *>(parentItem());
}

void MGOrgan::updatePos()
{
    const QScopedValueRollback guard(movesItself, true);
    setPos(movedOut(Drawable::point(organ_->pos()), minDist, QPointF(0.0, -minDist)));
    updateLinks();
}

void MGOrgan::organHasChanged()
{
    if (!movesItself && view())
        view()->graphOrganChanged();
}

QPointF MGOrgan::movedOut(const QPointF &vector, double distance, const QPointF &noDirection)
{
    const bool isZero = vector.x() == 0.0 && vector.y() == 0.0;
    return isZero ? noDirection : vector + distance * unit(vector);
}

QVariant MGOrgan::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemPositionChange && !movesItself) {
        const QPointF proposed = value.toPointF();
        const double ang = angleOf(proposed);
        const double dist = length(proposed);
        const QPointF accepted = dist < minDist ? minDist * direction(ang) : proposed;
        organ_->setPos((std::max(dist, minDist) - minDist) * direction(ang));
        organHasChanged();
        return MGNode::itemChange(change, accepted);
    }
    if (change == ItemPositionHasChanged)
        updateLinks(); // now that the node is there
    if (change == ItemSelectedHasChanged)
        tellSelection(value.toBool());
    return MGNode::itemChange(change, value);
}

void MGOrgan::tellSelection(bool selected)
{
    if (view())
        view()->graphOrganSelectionChanged(this, selected);
}

} // namespace Planaria
