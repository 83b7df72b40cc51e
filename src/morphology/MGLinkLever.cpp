#include "morphology/MGLinkLever.h"

#include "morphology/DrawableNumbers.h"
#include "morphology/MGLink.h"
#include "widgets/GuiConfig.h"

namespace Planaria {

using namespace Angles;

MGLinkLever::MGLinkLever(MGLink *parentLink)
    : MGLever(5.0, GuiConfig::linkLeverColor(), parentLink), link(parentLink),
      regionsLink(parentLink->regionsLink())
{
    setFlag(ItemIsFocusable);
    setFlag(ItemIgnoresParentOpacity);
    setZValue(1.0);
    updatePos();
}

QPointF MGLinkLever::modelPos()
{
    return axisPoint(Drawable::dist(regionsLink, regionsLink->from()));
}

QPointF MGLinkLever::dragged(const QPointF &proposed)
{
    const QPointF vector = proposed - link->fromNode()->scenePos();
    const double axis = Drawable::ang(regionsLink, regionsLink->from());
    const double totalDist = Drawable::totalDist(regionsLink);
    const double projection = std::cos(angleOf(vector) - axis) * length(vector);
    const double distance = std::max(0.0, std::min(projection, totalDist));
    regionsLink->setFromRatio(distance / totalDist);
    link->linkLeverChanged(this);
    return axisPoint(distance);
}

QPointF MGLinkLever::axisPoint(double distance) const
{
    return link->fromNode()->scenePos() +
           distance * direction(Drawable::ang(regionsLink, regionsLink->from()));
}

void MGLinkLever::focusInEvent(QFocusEvent *event)
{
    linkLift.lift(link);
    MGLever::focusInEvent(event);
}

void MGLinkLever::focusOutEvent(QFocusEvent *event)
{
    linkLift.restore(link);
    MGLever::focusOutEvent(event);
}

} // namespace Planaria
