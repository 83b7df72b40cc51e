#pragma once

#include <QGraphicsPathItem>

namespace Planaria {

/// Shows its child only where it lies within an outline; draws nothing itself. Since items like
/// this nest, what one has cut away never comes back through another.
class ClipPathItem final : public QGraphicsPathItem
{
public:
    /// @param path the outline, in the coordinates of the item
    ClipPathItem(const QPainterPath &path, QGraphicsItem *child, QGraphicsItem *parent);

    [[nodiscard]] QRectF boundingRect() const override { return clipRect; }
    [[nodiscard]] QPainterPath shape() const override { return clipPath; }

private:
    QPainterPath clipPath;
    QRectF clipRect;
};

} // namespace Planaria
