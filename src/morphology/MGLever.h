#pragma once

#include <QGraphicsEllipseItem>

namespace Planaria {

/// A round handle with which the user sets numbers of the model by dragging it. It is placed from
/// the model, and a drag is answered with the nearest place that the model allows.
class MGLever : public QGraphicsEllipseItem
{
public:
    /// @param radius scene units
    MGLever(double radius, const QColor &color, QGraphicsItem *parent);
    ~MGLever() override;

    /// From the rim of the node to the lever; null for a lever without a line.
    [[nodiscard]] QLineF line() const;

    /// Places the lever from the model's numbers.
    void updatePos();

protected:
    /// Where the model's numbers put the lever.
    virtual QPointF modelPos() = 0;
    /// Writes the model's numbers for a lever dragged to @p proposed.
    /// @return the place that they stand for
    virtual QPointF dragged(const QPointF &proposed) = 0;
    virtual void selectionChanged(bool selected);

    /// Gives the lever a line, a child of its node.
    void addLine(double zValue);
    void setLine(const QPointF &rim, const QPointF &handle);

    QVariant itemChange(GraphicsItemChange change, const QVariant &value) final;

private:
    QGraphicsLineItem *lineItem = nullptr; // a child of the lever's parent; owned
    bool movesItself = false;
};

} // namespace Planaria
