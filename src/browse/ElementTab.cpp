#include "browse/ElementTab.h"

#include "db/DB.h"

#include <utility>

namespace Planaria {

ElementTab::ElementTab(DB *database, QString tableName, QString singularWord, QString pluralWord,
                       QWidget *parent)
    : QWidget(parent), db(database), table(std::move(tableName)), singular(std::move(singularWord)),
      plural(std::move(pluralWord))
{
}

ElementTab::~ElementTab() = default;

void ElementTab::updateModel(int /*id*/)
{
    if (table.isEmpty())
        return;
    model = db->newTableModel(table);
    if (model)
        emit nEleChanged(model->rowCount(), singular, plural);
    else
        emit databaseCorrupted();
}

void ElementTab::clear()
{
    model.reset();
}

} // namespace Planaria
