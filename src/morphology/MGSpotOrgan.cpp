#include "morphology/MGSpotOrgan.h"

#include "model/SpotOrgan.h"
#include "morphology/MGSpotOrganLever.h"

namespace Planaria {

MGSpotOrgan::MGSpotOrgan(MorphoGraphView *graphView, SpotOrgan *modelOrgan, MGRegion *parentNode)
    : MGOrgan(graphView, modelOrgan, parentNode), spotOrgan_(modelOrgan),
      lever_(new MGSpotOrganLever(this))
{
}

void MGSpotOrgan::spotOrganLeverSelectionChanged(bool selected)
{
    tellSelection(selected);
}

} // namespace Planaria
