#pragma once

class QGraphicsItem;

namespace Planaria {

/// Lifts an item above all others while it has the focus.
class FocusLift final
{
public:
    void lift(QGraphicsItem *item);
    void restore(QGraphicsItem *item) const;

private:
    int savedZ = 0;
};

} // namespace Planaria
