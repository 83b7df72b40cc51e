#pragma once

#include "model/ExperimentTreatment.h"

namespace Planaria {

/// A drug in an experiment, with the time for which it was given.
class ExperimentDrug final : public ExperimentTreatment<Drug>
{
public:
    /// From day 0 to day 0. Takes ownership of @p drug.
    ExperimentDrug(Experiment *experiment, Drug *drug);
    ExperimentDrug(Experiment *experiment, const DBElementData &parentData);
    /// Of the same drug, also where @p keepIds is false.
    ExperimentDrug(const ExperimentDrug &other, Experiment *experiment, bool keepIds);

    /// Null once the treatment is removed.
    [[nodiscard]] Experiment *getExperiment() const { return owner(); }
    [[nodiscard]] Drug *drug() const { return given(); }
    /// Takes ownership; the former drug is deleted.
    void setDrug(Drug *drug) { setGiven(drug); }

    // Days.

    [[nodiscard]] double startTime() const { return startTime_; }
    [[nodiscard]] double endTime() const { return endTime_; }
    void setStartTime(double time) { startTime_ = time; }
    void setEndTime(double time) { endTime_ = time; }

    /// Takes the treatment out of its experiment, which then owns it until its next submit.
    void removeFromExperiment();

    /// Compares the names of the drugs, and the times.
    bool operator==(const ExperimentDrug &other) const;

    int submit(DB *db) override;

private:
    double startTime_ = 0.0;
    double endTime_ = 0.0;
};

} // namespace Planaria
