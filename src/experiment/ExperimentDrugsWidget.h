#pragma once

#include "experiment/TreatmentsWidget.h"

namespace Planaria {

/// The drugs of an experiment, with the days on which each was given.
class ExperimentDrugsWidget final : public TreatmentsWidget<ExperimentDrug, Drug>
{
    Q_OBJECT

public:
    /// @param edited must outlive the widget
    ExperimentDrugsWidget(Experiment *edited, DB *database, QWidget *parent);
};

} // namespace Planaria
