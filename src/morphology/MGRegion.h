#pragma once

#include "morphology/MGNode.h"

namespace Planaria {

class MGRegionLever;
class Region;

/// The node of a region. Moving it changes distance and angle of the region's links.
class MGRegion final : public MGNode
{
public:
    static constexpr double radius = 20.0;

    MGRegion(MorphoGraphView *graphView, Region *modelRegion);
    ~MGRegion() override;

    [[nodiscard]] Region *region() const { return region_; }
    /// One for each param, in index order.
    [[nodiscard]] const QList<MGRegionLever *> &levers() const { return levers_; }

    void setText(const QString &text) override;

    // A change in the number of links changes the number of params, so the levers are made anew.

    void addLink(MGLink *link) override;
    void removeLink(MGLink *link) override;

    void adjustLevers();
    void adjustLinks();
    void adjustLinkedOrgans();
    /// Turns the organs of a region with a single link by -@p delta radians: such a region turns
    /// with its link, and its organs stay in place on it.
    void adjustOrgansRot(double delta);
    void updatePos();

    void regionLeverChanged(MGRegionLever *lever);
    void regionLeverSelectionChanged(bool selected);

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    void buildLevers();
    void removeLevers();

    Region *region_;
    QList<MGRegionLever *> levers_;
};

} // namespace Planaria
