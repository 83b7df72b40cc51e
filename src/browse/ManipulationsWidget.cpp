#include "browse/ManipulationsWidget.h"

#include "browse/ElementEditor.h"
#include "browse/ElementTable.h"
#include "manipulation/ManipulationForm.h"
#include "model/Manipulation.h"

namespace Planaria {

ManipulationsWidget::ManipulationsWidget(DB *database, QWidget *parent)
    : QWidget(parent), table(std::make_unique<ElementTable>(
                           ElementKind::Manipulations,
                           std::make_unique<FormEditor<Manipulation, ManipulationForm>>(
                               ElementKind::Manipulations, database, this),
                           database, this))
{
    table->tellThrough(this);
}

ManipulationsWidget::~ManipulationsWidget() = default;

void ManipulationsWidget::updateModel(int id)
{
    table->updateModel(id);
}

void ManipulationsWidget::clear()
{
    table->clear();
}

void ManipulationsWidget::newManipulation()
{
    table->createElement();
}

int ManipulationsWidget::copyManipulation(int id)
{
    return table->copyElement(id);
}

void ManipulationsWidget::editManipulation(int id)
{
    table->editElement(id);
}

void ManipulationsWidget::deleteManipulation(int id)
{
    table->deleteElement(id);
}

} // namespace Planaria
