#include "morphology/MGRegion.h"

#include "model/Angles.h"
#include "model/LineOrgan.h"
#include "model/Region.h"
#include "model/RegionType.h"
#include "model/SpotOrgan.h"
#include "morphology/DrawableNumbers.h"
#include "morphology/MGLink.h"
#include "morphology/MGOrgan.h"
#include "morphology/MGRegionLever.h"
#include "morphology/MorphoGraphView.h"

namespace Planaria {

namespace {

QColor captionColor(int regionTypeId)
{
    switch (regionTypeId) {
    case 1: // head
        return Qt::darkRed;
    case 2: // trunk
        return Qt::darkGray;
    case 3: // tail
        return Qt::darkBlue;
    default:
        return Qt::yellow;
    }
}

double turned(double angle, double delta)
{
    return Angles::normalized(Drawable::number(angle) - delta);
}

QPointF turned(const QPointF &vector, double delta)
{
    const QPointF sound = Drawable::point(vector);
    return Angles::length(sound) * Angles::direction(turned(Angles::angleOf(sound), delta));
}

void turn(Organ &organ, double delta)
{
    if (auto *spot = dynamic_cast<SpotOrgan *>(&organ)) {
        spot->setRot(turned(spot->rot(), delta));
    } else if (auto *line = dynamic_cast<LineOrgan *>(&organ)) {
        line->setEnd1(turned(line->end1(), delta));
        line->setEnd2(turned(line->end2(), delta));
    }
    organ.setPos(turned(organ.pos(), delta));
}

} // namespace

MGRegion::MGRegion(MorphoGraphView *graphView, Region *modelRegion)
    : MGNode(graphView, radius, nullptr), region_(modelRegion)
{
    buildLevers();
}

MGRegion::~MGRegion()
{
    removeLevers(); // they own lines that are children of this node
}

void MGRegion::setText(const QString &text)
{
    MGNode::setText(text);
    setTextColor(captionColor(region_->type()->id()));
}

void MGRegion::addLink(MGLink *link)
{
    MGNode::addLink(link);
    buildLevers();
}

void MGRegion::removeLink(MGLink *link)
{
    MGNode::removeLink(link);
    // Where the whole scene goes, the region itself may be gone already.
    if (view() && !view()->isBuilding())
        buildLevers();
}

void MGRegion::buildLevers()
{
    removeLevers();
    for (int index = 0; index < region_->params().size(); ++index)
        levers_.append(new MGRegionLever(this, index));
}

void MGRegion::removeLevers()
{
    qDeleteAll(levers_);
    levers_.clear();
}

void MGRegion::adjustLevers()
{
    for (MGRegionLever *lever : std::as_const(levers_))
        lever->updatePos();
}

void MGRegion::adjustLinks()
{
    for (MGLink *link : links())
        link->regionMoved(this);
}

void MGRegion::adjustLinkedOrgans()
{
    for (MGLink *link : links()) {
        if (auto *organ = dynamic_cast<MGOrgan *>(link->otherNode(this)))
            organ->updatePos();
    }
}

void MGRegion::adjustOrgansRot(double delta)
{
    if (region_->links().size() != 1)
        return;
    for (MGLink *link : links()) {
        if (auto *organNode = dynamic_cast<MGOrgan *>(link->otherNode(this)))
            turn(*organNode->organ(), delta);
    }
    adjustLinkedOrgans();
}

void MGRegion::updatePos()
{
    updateLinks();
}

QVariant MGRegion::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (view() && change == ItemPositionHasChanged) {
        // Announced before the links follow: during a drag the drawing stays one step behind.
        view()->graphRegionChanged(this);
        adjustLevers();
        adjustLinks();
    } else if (view() && change == ItemSelectedHasChanged) {
        view()->graphRegionSelectionChanged(this, value.toBool());
    }
    return MGNode::itemChange(change, value);
}

void MGRegion::regionLeverChanged(MGRegionLever * /*lever*/)
{
    if (view())
        view()->graphRegionChanged(this);
}

void MGRegion::regionLeverSelectionChanged(bool /*selected*/) {}

} // namespace Planaria
