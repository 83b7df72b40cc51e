#include "browse/RNAiWidget.h"

#include "browse/ElementEditor.h"
#include "browse/ElementTable.h"
#include "model/RNAi.h"

namespace Planaria {

RNAiWidget::RNAiWidget(DB *database, QWidget *parent)
    : QWidget(parent),
      table(std::make_unique<ElementTable>(
          ElementKind::RNAi, std::make_unique<NameEditor<RNAi>>(ElementKind::RNAi, database, this),
          database, this))
{
    table->tellThrough(this);
}

RNAiWidget::~RNAiWidget() = default;

void RNAiWidget::updateModel(int id)
{
    table->updateModel(id);
}

void RNAiWidget::clear()
{
    table->clear();
}

void RNAiWidget::newRNAi()
{
    table->createElement();
}

int RNAiWidget::copyRNAi(int id)
{
    return table->copyElement(id);
}

void RNAiWidget::editRNAi(int id)
{
    table->editElement(id);
}

void RNAiWidget::deleteRNAi(int id)
{
    table->deleteElement(id);
}

} // namespace Planaria
