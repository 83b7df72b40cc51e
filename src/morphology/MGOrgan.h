#pragma once

#include "morphology/MGNode.h"

namespace Planaria {

class MGRegion;
class Organ;

/// The node of an organ, a child of its region's node. Moving it changes the organ's position.
class MGOrgan : public MGNode
{
public:
    static constexpr double radius = 15.0;
    /// Distance from the region's centre at which an organ at (0, 0) sits, scene units.
    static constexpr double minDist = 35.0;

    [[nodiscard]] Organ *organ() const { return organ_; }
    [[nodiscard]] MGRegion *parent() const;

    /// Places the node from the model.
    void updatePos();
    /// Tells the view, unless the node moved by itself.
    void organHasChanged();

protected:
    MGOrgan(MorphoGraphView *graphView, Organ *modelOrgan, MGRegion *parentNode);

    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;
    void tellSelection(bool selected);

private:
    Organ *organ_;
};

} // namespace Planaria
