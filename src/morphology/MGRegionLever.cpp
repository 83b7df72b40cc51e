#include "morphology/MGRegionLever.h"

#include "morphology/DrawableNumbers.h"
#include "morphology/MGRegion.h"
#include "widgets/GuiConfig.h"

namespace Planaria {

using namespace Angles;

MGRegionLever::MGRegionLever(MGRegion *regionNode, int paramIndex)
    : MGLever(5.0, GuiConfig::regionLeverColor(), regionNode), parent(regionNode),
      region(regionNode->region()), index(paramIndex)
{
    setZValue(-1.0);
    addLine(-2.0);
    updatePos();
}

QPointF MGRegionLever::modelPos()
{
    value_ = Drawable::param(region, index);
    ang_ = modelAng();
    updateLine();
    return handlePos();
}

double MGRegionLever::modelAng() const
{
    const QList<RegionsLink *> &links = region->links();
    const qsizetype n = links.size();
    if (n == 0)
        return index * quarterTurn;
    if (n == 1)
        return Drawable::ang(links.first(), region) + (index + 1) * quarterTurn;
    const double before = Drawable::ang(links.at(index % n), region);
    const double behind = Drawable::ang(links.at((index + 1) % n), region);
    return before + 0.5 * sweep(before, behind);
}

QPointF MGRegionLever::dragged(const QPointF &proposed)
{
    const double projection = std::cos(angleOf(proposed) - ang_) * length(proposed);
    value_ = std::max(projection, minDist_) - minDist_;
    updateLine();
    region->setParam(index, value_);
    parent->regionLeverChanged(this);
    return handlePos();
}

void MGRegionLever::selectionChanged(bool selected)
{
    parent->regionLeverSelectionChanged(selected);
}

QPointF MGRegionLever::handlePos() const
{
    return (value_ + minDist_) * direction(ang_);
}

void MGRegionLever::updateLine()
{
    setLine(MGRegion::radius * direction(ang_), handlePos());
}

} // namespace Planaria
