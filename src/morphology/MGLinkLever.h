#pragma once

#include "morphology/FocusLift.h"
#include "morphology/MGLever.h"

namespace Planaria {

class MGLink;
class RegionsLink;

/// The lever that sets where the border between two regions crosses their link.
class MGLinkLever final : public MGLever
{
public:
    explicit MGLinkLever(MGLink *parentLink);

protected:
    QPointF modelPos() override;
    QPointF dragged(const QPointF &proposed) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    /// The place on the link's axis at this distance from the from-node.
    [[nodiscard]] QPointF axisPoint(double distance) const;

    MGLink *link;
    RegionsLink *regionsLink;
    FocusLift linkLift;
};

} // namespace Planaria
