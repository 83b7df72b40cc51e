#pragma once

#include <QColor>
#include <QGraphicsItem>
#include <QString>

namespace Planaria {

/// A node of a diagram: a circle with a caption, dotted while it is selected. It belongs into a
/// view that shows +y upwards.
class CircleNode : public QGraphicsItem
{
public:
    /// @param radius scene units
    CircleNode(double radius, QGraphicsItem *parent);

    [[nodiscard]] const QString &text() const { return text_; }
    virtual void setText(const QString &text);
    /// Invalid by default, which is painted black.
    [[nodiscard]] const QColor &textColor() const { return textColor_; }
    void setTextColor(const QColor &color);
    [[nodiscard]] const QColor &outlineColor() const { return outlineColor_; }
    void setOutlineColor(const QColor &color);
    [[nodiscard]] const QColor &backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(const QColor &color);

    [[nodiscard]] QRectF boundingRect() const override { return boundingRect_; }
    [[nodiscard]] QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

protected:
    int fontPixelSize = 13;

private:
    QString text_;
    QColor textColor_;
    QColor backgroundColor_ = Qt::white;
    QColor outlineColor_ = Qt::darkBlue;
    QRectF boundingRect_;
    QRectF ellipseRect;
    QRectF textRect;
};

} // namespace Planaria
