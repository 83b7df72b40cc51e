#include "morphology/MGOrgan.h"

#include "model/Organ.h"
#include "morphology/Clearance.h"
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
    setPos(Clearance::shownAt(Drawable::point(organ_->pos()), minDist, QPointF(0.0, -minDist)));
    updateLinks();
}

void MGOrgan::organHasChanged()
{
    if (!movesItself && view())
        view()->graphItemChanged();
}

QVariant MGOrgan::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemPositionChange && !movesItself) {
        const auto [place, vector] = Clearance::draggedTo(value.toPointF(), minDist);
        organ_->setPos(vector);
        organHasChanged();
        return MGNode::itemChange(change, place);
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
