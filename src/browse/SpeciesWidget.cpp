#include "browse/SpeciesWidget.h"

#include "browse/ElementEditor.h"
#include "browse/ElementTable.h"
#include "model/Species.h"

namespace Planaria {

SpeciesWidget::SpeciesWidget(DB *database, QWidget *parent)
    : QWidget(parent),
      table(std::make_unique<ElementTable>(
          ElementKind::Species,
          std::make_unique<NameEditor<Species>>(ElementKind::Species, database, this), database,
          this))
{
    table->tellThrough(this);
}

SpeciesWidget::~SpeciesWidget() = default;

void SpeciesWidget::updateModel(int id)
{
    table->updateModel(id);
}

void SpeciesWidget::clear()
{
    table->clear();
}

void SpeciesWidget::newSpecies()
{
    table->createElement();
}

int SpeciesWidget::copySpecies(int id)
{
    return table->copyElement(id);
}

void SpeciesWidget::editSpecies(int id)
{
    table->editElement(id);
}

void SpeciesWidget::deleteSpecies(int id)
{
    table->deleteElement(id);
}

} // namespace Planaria
