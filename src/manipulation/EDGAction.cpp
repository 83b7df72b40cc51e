#include "manipulation/EDGAction.h"

namespace Planaria {

EDGAction::EDGAction(ManipulationAction *action, ManipulationGraphView *view, QGraphicsItem *parent)
    : CircleNode(22.0, parent), action_(action), view_(view)
{
    setFlags(ItemIsSelectable | ItemIsFocusable);
    setZValue(0.0);
}

void EDGAction::mousePressEvent(QGraphicsSceneMouseEvent * /*event*/) {}

} // namespace Planaria
