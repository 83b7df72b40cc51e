#pragma once

#include "morphology/MGLever.h"

namespace Planaria {

class MGRegion;
class Region;

/// The lever of one param of a region. It slides along a ray from the region's centre.
class MGRegionLever final : public MGLever
{
public:
    /// Distance from the centre at which a param of 0 sits, scene units.
    static constexpr double minDist_ = 25.0;

    /// @param paramIndex of the param in its region
    MGRegionLever(MGRegion *regionNode, int paramIndex);

    /// The direction of the ray, radians.
    [[nodiscard]] double ang() const { return ang_; }
    /// The param's value when the lever was placed last.
    [[nodiscard]] double value() const { return value_; }

protected:
    QPointF modelPos() override;
    QPointF dragged(const QPointF &proposed) override;
    void selectionChanged(bool selected) override;

private:
    [[nodiscard]] double modelAng() const;
    [[nodiscard]] QPointF handlePos() const;
    void updateLine();

    MGRegion *parent;
    Region *region;
    int index;
    double value_ = 0.0;
    double ang_ = 0.0;
};

} // namespace Planaria
