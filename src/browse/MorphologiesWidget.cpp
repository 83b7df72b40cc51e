#include "browse/MorphologiesWidget.h"

#include "browse/ElementEditor.h"
#include "browse/ElementTable.h"
#include "model/Morphology.h"
#include "morphology/MorphologyForm.h"

namespace Planaria {

MorphologiesWidget::MorphologiesWidget(DB *database, QWidget *parent)
    : QWidget(parent),
      table(std::make_unique<ElementTable>(ElementKind::Morphologies,
                                           std::make_unique<FormEditor<Morphology, MorphologyForm>>(
                                               ElementKind::Morphologies, database, this),
                                           database, this))
{
    table->tellThrough(this);
}

MorphologiesWidget::~MorphologiesWidget() = default;

void MorphologiesWidget::updateModel(int id)
{
    table->updateModel(id);
}

void MorphologiesWidget::clear()
{
    table->clear();
}

void MorphologiesWidget::newMorphology()
{
    table->createElement();
}

int MorphologiesWidget::copyMorphology(int id)
{
    return table->copyElement(id);
}

void MorphologiesWidget::editMorphology(int id)
{
    table->editElement(id);
}

void MorphologiesWidget::deleteMorphology(int id)
{
    table->deleteElement(id);
}

} // namespace Planaria
