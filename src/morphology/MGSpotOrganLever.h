#pragma once

#include "morphology/MGLever.h"

namespace Planaria {

class MGSpotOrgan;

/// The lever that turns a spot organ. It runs around the rim of the organ's node.
class MGSpotOrganLever final : public MGLever
{
public:
    explicit MGSpotOrganLever(MGSpotOrgan *organNode);

    [[nodiscard]] MGSpotOrgan *organNode() const { return parent; }

protected:
    QPointF modelPos() override;
    QPointF dragged(const QPointF &proposed) override;
    void selectionChanged(bool selected) override;

private:
    MGSpotOrgan *parent;
};

} // namespace Planaria
