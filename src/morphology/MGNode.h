#pragma once

#include "morphology/FocusLift.h"
#include "widgets/CircleNode.h"

#include <QList>
#include <QPointer>

namespace Planaria {

class MGLink;
class MorphoGraphView;

/// A node of the graph. It deletes its links when it goes.
class MGNode : public CircleNode
{
public:
    /// @param radius scene units
    MGNode(MorphoGraphView *graphView, double radius, MGNode *parent);
    ~MGNode() override;

    [[nodiscard]] const QColor &getTextColor() const { return textColor(); }
    [[nodiscard]] const QColor &getOutlineColor() const { return outlineColor(); }
    [[nodiscard]] const QColor &getBackgroundColor() const { return backgroundColor(); }

    [[nodiscard]] const QList<MGLink *> &links() const { return links_; }
    virtual void addLink(MGLink *link);
    virtual void removeLink(MGLink *link);
    /// Draws the lines of all links anew.
    void updateLinks();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    /// A double click does nothing.
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;

    /// Null once the view has gone; nodes of a list of worms stay on without one.
    [[nodiscard]] MorphoGraphView *view() const;

    bool movesItself = false; // what moves then does not write back into the model

private:
    QPointer<MorphoGraphView> view_;
    QList<MGLink *> links_;
    FocusLift focusLift;
};

} // namespace Planaria
