#pragma once

#include "morphology/MGNode.h"

#include <QGraphicsLineItem>

namespace Planaria {

class MGLinkLever;
class MGRegion;
class RegionsLink;

/// The line between two region nodes, which stands for a link of the model, or between a region
/// node and the node of one of its organs. It lists itself with both nodes.
class MGLink final : public QGraphicsLineItem
{
public:
    /// @param modelLink null for the line to an organ
    MGLink(MGNode *from, MGNode *to, MorphoGraphView *graphView, RegionsLink *modelLink);
    ~MGLink() override;

    [[nodiscard]] MGNode *fromNode() const { return from_; }
    [[nodiscard]] MGNode *toNode() const { return to_; }
    MGNode *otherNode(const MGNode *node) const { return node == from_ ? to_ : from_; }
    [[nodiscard]] RegionsLink *regionsLink() const { return regionsLink_; }
    [[nodiscard]] bool isRegionsLink() const { return regionsLink_ != nullptr; }
    [[nodiscard]] MGLinkLever *lever() const { return lever_; }

    /// Draws the line from rim to rim; none between nodes that are too close.
    void updateLinkLine();
    /// Writes distance and angle of the nodes into the model after @p moved was moved.
    void regionMoved(MGRegion *moved);
    void linkLeverChanged(MGLinkLever *lever);

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    MGNode *from_;
    MGNode *to_;
    QPointer<MorphoGraphView> view;
    RegionsLink *regionsLink_;
    MGLinkLever *lever_ = nullptr; // a child; null for the line to an organ
    FocusLift focusLift;
};

} // namespace Planaria
