#pragma once

#include "morphology/MGOrgan.h"

namespace Planaria {

class MGSpotOrganLever;
class SpotOrgan;

/// The node of a spot organ, with the lever that turns it.
class MGSpotOrgan final : public MGOrgan
{
public:
    MGSpotOrgan(MorphoGraphView *graphView, SpotOrgan *modelOrgan, MGRegion *parentNode);

    [[nodiscard]] SpotOrgan *spotOrgan() const { return spotOrgan_; }
    [[nodiscard]] MGSpotOrganLever *lever() const { return lever_; }

    /// Keeps the organs showing while the lever is selected.
    void spotOrganLeverSelectionChanged(bool selected);

private:
    SpotOrgan *spotOrgan_;
    MGSpotOrganLever *lever_; // a child
};

} // namespace Planaria
