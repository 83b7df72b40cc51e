#include "model/ExperimentDrug.h"

#include "model/Experiment.h"

namespace Planaria {

namespace {

constexpr auto table = "ExperimentDrug";

} // namespace

ExperimentDrug::ExperimentDrug(Experiment *experiment, Drug *drug)
    : ExperimentTreatment(table, experiment, drug)
{
}

ExperimentDrug::ExperimentDrug(Experiment *experiment, const DBElementData &parentData)
    : ExperimentTreatment(table, experiment, parentData),
      startTime_(finiteNumber(parentData.loadRefValue(3))),
      endTime_(finiteNumber(parentData.loadRefValue(4)))
{
}

ExperimentDrug::ExperimentDrug(const ExperimentDrug &other, Experiment *experiment, bool keepIds)
    : ExperimentTreatment(other, experiment, keepIds), startTime_(other.startTime_),
      endTime_(other.endTime_)
{
}

void ExperimentDrug::removeFromExperiment()
{
    if (Experiment *former = leave())
        former->removeExperimentDrug(this);
}

bool ExperimentDrug::operator==(const ExperimentDrug &other) const
{
    return isEqual(other) && startTime_ == other.startTime_ && endTime_ == other.endTime_;
}

int ExperimentDrug::submit(DB *db)
{
    return ExperimentTreatment::submit(db, {{"StartTime", startTime_}, {"EndTime", endTime_}});
}

} // namespace Planaria
