#include "experiment/ExperimentRNAiWidget.h"

#include "model/Experiment.h"
#include "model/ExperimentRNAi.h"
#include "model/RNAi.h"

namespace Planaria {

ExperimentRNAiWidget::ExperimentRNAiWidget(Experiment *edited, DB *database, QWidget *parent)
    : TreatmentsWidget(
          {tr("RNAi injections"),
           {},
           tr("No RNAis found in the database"),
           tr("The database contains no RNAi. Please, create a new RNAi first."),
           tr("New RNAi"),
           tr("Edit RNAi"),
           tr("RNAi name:"),
           tr("RNAi with same name found"),
           tr("The database already contains a RNAi with the same name. Please, specify a "
              "different name for this RNAi."),
           &Experiment::experimentRNAis,
           &Experiment::addExperimentRNAi,
           &Experiment::removeExperimentRNAi,
           &ExperimentRNAi::rnai,
           &ExperimentRNAi::setRNAi},
          edited, database, parent)
{
}

} // namespace Planaria
