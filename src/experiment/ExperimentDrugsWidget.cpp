#include "experiment/ExperimentDrugsWidget.h"

#include "model/Drug.h"
#include "model/Experiment.h"
#include "model/ExperimentDrug.h"

namespace Planaria {

ExperimentDrugsWidget::ExperimentDrugsWidget(Experiment *edited, DB *database, QWidget *parent)
    : TreatmentsWidget(
          {tr("Drugs"),
           {{tr("Start (d)"), &ExperimentDrug::startTime, &ExperimentDrug::setStartTime},
            {tr("End (d)"), &ExperimentDrug::endTime, &ExperimentDrug::setEndTime}},
           tr("No drugs found in the database"),
           tr("The database contains no drugs. Please, create a new drug first."),
           tr("New drug"),
           tr("Edit drug"),
           tr("Drug name:"),
           tr("Drug with same name found"),
           tr("The database already contains a drug with the same name. Please, specify a "
              "different name for this drug."),
           &Experiment::experimentDrugs,
           &Experiment::addExperimentDrug,
           &Experiment::removeExperimentDrug,
           &ExperimentDrug::drug,
           &ExperimentDrug::setDrug},
          edited, database, parent)
{
}

} // namespace Planaria
