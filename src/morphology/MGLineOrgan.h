#pragma once

#include "morphology/MGOrgan.h"

namespace Planaria {

class LineOrgan;
class MGLineOrganEnd;

/// The node of a line organ, with a lever for each end. Moving it leaves the ends in place.
class MGLineOrgan final : public MGOrgan
{
public:
    MGLineOrgan(MorphoGraphView *graphView, LineOrgan *modelOrgan, MGRegion *parentNode);
    ~MGLineOrgan() override;

    [[nodiscard]] LineOrgan *lineOrgan() const { return lineOrgan_; }
    /// The levers of end 1 and end 2.
    [[nodiscard]] const QList<MGLineOrganEnd *> &ends() const { return ends_; }

    // An end of the organ by its number, 1 or 2.

    [[nodiscard]] const QPointF &end(int number) const;
    void setEnd(int number, const QPointF &vector);

    /// Keeps the organs showing while an end is selected.
    void lineOrganEndSelectionChanged(bool selected);

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    LineOrgan *lineOrgan_;
    QList<MGLineOrganEnd *> ends_; // children
};

} // namespace Planaria
