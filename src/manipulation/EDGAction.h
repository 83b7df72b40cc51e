#pragma once

#include "widgets/CircleNode.h"

namespace Planaria {

class ManipulationAction;
class ManipulationGraphView;

/// The node of an action in the diagram of its tree. It cannot be moved, and a click selects it
/// when the button is released.
class EDGAction final : public CircleNode
{
public:
    /// @param action must stay while it is shown
    EDGAction(ManipulationAction *action, ManipulationGraphView *view, QGraphicsItem *parent);

    [[nodiscard]] ManipulationAction *action() const { return action_; }
    [[nodiscard]] ManipulationGraphView *view() const { return view_; }

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;

private:
    ManipulationAction *action_;
    ManipulationGraphView *view_;
};

} // namespace Planaria
