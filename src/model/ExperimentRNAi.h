#pragma once

#include "model/ExperimentTreatment.h"

namespace Planaria {

/// An RNAi in an experiment.
class ExperimentRNAi final : public ExperimentTreatment<RNAi>
{
public:
    /// Takes ownership of @p rnai.
    ExperimentRNAi(Experiment *experiment, RNAi *rnai);
    ExperimentRNAi(Experiment *experiment, const DBElementData &parentData);
    /// Of the same RNAi, also where @p keepIds is false.
    ExperimentRNAi(const ExperimentRNAi &other, Experiment *experiment, bool keepIds);

    /// Null once the treatment is removed.
    [[nodiscard]] Experiment *experiment() const { return owner(); }
    [[nodiscard]] RNAi *rnai() const { return given(); }
    /// Takes ownership; the former RNAi is deleted.
    void setRNAi(RNAi *rnai) { setGiven(rnai); }

    /// Takes the treatment out of its experiment, which then owns it until its next submit.
    void removeFromExperiment();

    /// Compares the names of the RNAi.
    bool operator==(const ExperimentRNAi &other) const { return isEqual(other); }

    int submit(DB *db) override;
};

} // namespace Planaria
