#include "browse/DrugsWidget.h"

#include "browse/ElementEditor.h"
#include "browse/ElementTable.h"
#include "model/Drug.h"

namespace Planaria {

DrugsWidget::DrugsWidget(DB *database, QWidget *parent)
    : QWidget(parent),
      table(std::make_unique<ElementTable>(
          ElementKind::Drugs,
          std::make_unique<NameEditor<Drug>>(ElementKind::Drugs, database, this), database, this))
{
    table->tellThrough(this);
}

DrugsWidget::~DrugsWidget() = default;

void DrugsWidget::updateModel(int id)
{
    table->updateModel(id);
}

void DrugsWidget::clear()
{
    table->clear();
}

void DrugsWidget::newDrug()
{
    table->createElement();
}

int DrugsWidget::copyDrug(int id)
{
    return table->copyElement(id);
}

void DrugsWidget::editDrug(int id)
{
    table->editElement(id);
}

void DrugsWidget::deleteDrug(int id)
{
    table->deleteElement(id);
}

} // namespace Planaria
