#include "browse/SearchWidget.h"

namespace Planaria {

SearchWidget::SearchWidget(DB * /*database*/, QWidget *parent) : QWidget(parent) {}

void SearchWidget::updateModel(int /*id*/) {}

void SearchWidget::clear() {}

} // namespace Planaria
