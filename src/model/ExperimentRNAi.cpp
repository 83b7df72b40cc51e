#include "model/ExperimentRNAi.h"

#include "model/Experiment.h"

namespace Planaria {

namespace {

constexpr auto table = "ExperimentRNAi";

} // namespace

ExperimentRNAi::ExperimentRNAi(Experiment *experiment, RNAi *rnai)
    : ExperimentTreatment(table, experiment, rnai)
{
}

ExperimentRNAi::ExperimentRNAi(Experiment *experiment, const DBElementData &parentData)
    : ExperimentTreatment(table, experiment, parentData)
{
}

ExperimentRNAi::ExperimentRNAi(const ExperimentRNAi &other, Experiment *experiment, bool keepIds)
    : ExperimentTreatment(other, experiment, keepIds)
{
}

void ExperimentRNAi::removeFromExperiment()
{
    if (Experiment *former = leave())
        former->removeExperimentRNAi(this);
}

int ExperimentRNAi::submit(DB *db)
{
    return ExperimentTreatment::submit(db, {});
}

} // namespace Planaria
