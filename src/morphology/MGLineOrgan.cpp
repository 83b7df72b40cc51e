#include "morphology/MGLineOrgan.h"

#include "model/LineOrgan.h"
#include "morphology/DrawableNumbers.h"
#include "morphology/MGLineOrganEnd.h"

namespace Planaria {

MGLineOrgan::MGLineOrgan(MorphoGraphView *graphView, LineOrgan *modelOrgan, MGRegion *parentNode)
    : MGOrgan(graphView, modelOrgan, parentNode), lineOrgan_(modelOrgan)
{
    ends_ = {new MGLineOrganEnd(this, 1), new MGLineOrganEnd(this, 2)};
}

MGLineOrgan::~MGLineOrgan()
{
    qDeleteAll(ends_); // they own lines that are children of this node
}

const QPointF &MGLineOrgan::end(int number) const
{
    return number == 1 ? lineOrgan_->end1() : lineOrgan_->end2();
}

void MGLineOrgan::setEnd(int number, const QPointF &vector)
{
    if (number == 1)
        lineOrgan_->setEnd1(vector);
    else
        lineOrgan_->setEnd2(vector);
}

void MGLineOrgan::lineOrganEndSelectionChanged(bool selected)
{
    tellSelection(selected);
}

QVariant MGLineOrgan::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change != ItemPositionChange || movesItself)
        return MGOrgan::itemChange(change, value);

    const QPointF oldPos = Drawable::point(lineOrgan_->pos());
    QVariant accepted = MGOrgan::itemChange(change, value);
    const QPointF moved = lineOrgan_->pos() - oldPos;
    lineOrgan_->setEnd1(Drawable::point(lineOrgan_->end1()) - moved);
    lineOrgan_->setEnd2(Drawable::point(lineOrgan_->end2()) - moved);
    for (MGLineOrganEnd *lever : std::as_const(ends_))
        lever->updatePos();
    organHasChanged();
    return accepted;
}

} // namespace Planaria
