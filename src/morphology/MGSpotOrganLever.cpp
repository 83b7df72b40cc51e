#include "morphology/MGSpotOrganLever.h"

#include "model/SpotOrgan.h"
#include "morphology/DrawableNumbers.h"
#include "morphology/MGSpotOrgan.h"
#include "widgets/GuiConfig.h"

namespace Planaria {

MGSpotOrganLever::MGSpotOrganLever(MGSpotOrgan *organNode)
    : MGLever(3.5, GuiConfig::organLeverColor(), organNode), parent(organNode)
{
    setZValue(1.0);
    updatePos();
}

QPointF MGSpotOrganLever::modelPos()
{
    return MGOrgan::radius * Angles::direction(Drawable::number(parent->spotOrgan()->rot()));
}

QPointF MGSpotOrganLever::dragged(const QPointF &proposed)
{
    const double ang = Angles::angleOf(proposed);
    parent->spotOrgan()->setRot(ang);
    parent->organHasChanged();
    return MGOrgan::radius * Angles::direction(ang);
}

void MGSpotOrganLever::selectionChanged(bool selected)
{
    parent->spotOrganLeverSelectionChanged(selected);
}

} // namespace Planaria
