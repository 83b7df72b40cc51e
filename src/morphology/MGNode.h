#pragma once

#include "morphology/FocusLift.h"

#include <QColor>
#include <QGraphicsItem>
#include <QList>
#include <QPointer>

namespace Planaria {

class MGLink;
class MorphoGraphView;

/// A node of the graph: a circle with a caption. It deletes its links when it goes.
class MGNode : public QGraphicsItem
{
public:
    /// @param radius scene units
    MGNode(MorphoGraphView *graphView, double radius, MGNode *parent);
    ~MGNode() override;

    [[nodiscard]] const QString &text() const { return text_; }
    virtual void setText(const QString &text);
    [[nodiscard]] const QColor &getTextColor() const { return textColor; }
    void setTextColor(const QColor &color);
    [[nodiscard]] const QColor &getOutlineColor() const { return outlineColor; }
    void setOutlineColor(const QColor &color);
    [[nodiscard]] const QColor &getBackgroundColor() const { return backgroundColor; }
    void setBackgroundColor(const QColor &color);

    [[nodiscard]] const QList<MGLink *> &links() const { return links_; }
    virtual void addLink(MGLink *link);
    virtual void removeLink(MGLink *link);
    /// Draws the lines of all links anew.
    void updateLinks();

    [[nodiscard]] QRectF boundingRect() const override { return boundingRect_; }
    [[nodiscard]] QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    /// A double click does nothing.
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;

    /// Null once the view has gone; nodes of a list of worms stay on without one.
    [[nodiscard]] MorphoGraphView *view() const;

    QColor textColor = Qt::black;
    int fontPixelSize = 13;
    bool movesItself = false; // what moves then does not write back into the model

private:
    QPointer<MorphoGraphView> view_;
    QList<MGLink *> links_;
    QString text_;
    QColor backgroundColor = Qt::white;
    QColor outlineColor = Qt::darkBlue;
    FocusLift focusLift;
    QRectF boundingRect_;
    QRectF ellipseRect;
    QRectF textRect;
};

} // namespace Planaria
