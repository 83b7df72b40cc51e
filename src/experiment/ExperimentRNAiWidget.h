#pragma once

#include "experiment/TreatmentsWidget.h"

namespace Planaria {

/// The RNAi injections of an experiment.
class ExperimentRNAiWidget final : public TreatmentsWidget<ExperimentRNAi, RNAi>
{
    Q_OBJECT

public:
    /// @param edited must outlive the widget
    ExperimentRNAiWidget(Experiment *edited, DB *database, QWidget *parent);
};

} // namespace Planaria
