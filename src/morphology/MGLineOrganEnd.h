#pragma once

#include "morphology/MGLever.h"

namespace Planaria {

class MGLineOrgan;

/// The lever of one end of a line organ.
class MGLineOrganEnd final : public MGLever
{
public:
    /// Distance from the organ node's centre at which an end vector of length 0 sits, scene units.
    static constexpr double minDist_ = 18.5;

    /// @param endNumber 1 or 2
    MGLineOrganEnd(MGLineOrgan *organNode, int endNumber);

protected:
    QPointF modelPos() override;
    QPointF dragged(const QPointF &proposed) override;
    void selectionChanged(bool selected) override;

private:
    /// Draws the line from the rim of the node to @p handle.
    void updateLine(const QPointF &handle);

    MGLineOrgan *parent;
    int end;
};

} // namespace Planaria
