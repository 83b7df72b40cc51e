#include "browse/ExperimentsWidget.h"

#include "browse/ElementEditor.h"
#include "browse/ElementTable.h"
#include "experiment/ExperimentForm.h"
#include "model/Experiment.h"

namespace Planaria {

ExperimentsWidget::ExperimentsWidget(DB *database, QWidget *parent)
    : QWidget(parent),
      table(std::make_unique<ElementTable>(ElementKind::Experiments,
                                           std::make_unique<FormEditor<Experiment, ExperimentForm>>(
                                               ElementKind::Experiments, database, this),
                                           database, this))
{
    table->tellThrough(this);
}

ExperimentsWidget::~ExperimentsWidget() = default;

void ExperimentsWidget::updateModel(int id)
{
    table->updateModel(id);
}

void ExperimentsWidget::clear()
{
    table->clear();
}

void ExperimentsWidget::newExperiment()
{
    table->createElement();
}

int ExperimentsWidget::copyExperiment(int id)
{
    return table->copyElement(id);
}

void ExperimentsWidget::editExperiment(int id)
{
    table->editElement(id);
}

void ExperimentsWidget::deleteExperiment(int id)
{
    table->deleteElement(id);
}

} // namespace Planaria
