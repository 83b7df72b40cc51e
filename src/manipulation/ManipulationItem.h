#pragma once

#include <QGraphicsItem>
#include <QPainterPath>

namespace Planaria {

class AreaAction;
class JoinAction;
class ManipulationAction;

/// Draws the product of an action: the worms at the leaves of its tree, nested in items that clip,
/// shift and mark them. Its shape() is the outline of the product; behind a join or an irradiation
/// it is the rectangle around what is drawn.
///
/// Built once, from the tree as it is then; it keeps no link to it. Missing inputs (a damaged file)
/// draw nothing, and numbers that cannot be drawn are taken for ones that can.
class ManipulationItem final : public QGraphicsItem
{
public:
    /// @param action may be null: then nothing is drawn
    explicit ManipulationItem(const ManipulationAction *action, QGraphicsItem *parent = nullptr);

    [[nodiscard]] QRectF boundingRect() const override;
    [[nodiscard]] QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    // All items are children of this one, or of one another.

    QGraphicsItem *buildItem(const ManipulationAction *action);
    QGraphicsItem *buildRemoveItem(const AreaAction *action);
    QGraphicsItem *buildCropItem(const AreaAction *action);
    QGraphicsItem *buildJoinItem(const JoinAction *action);
    QGraphicsItem *buildIrradiationItem(const AreaAction *action);
    QGraphicsItem *buildMorphologyItem(const ManipulationAction *action);

    /// @p upper lies on top of @p lower.
    QGraphicsItem *grouped(QGraphicsItem *lower, QGraphicsItem *upper);

    QGraphicsItem *item = nullptr; // null while it is being built
};

} // namespace Planaria
