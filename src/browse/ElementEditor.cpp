#include "browse/ElementEditor.h"

#include "browse/ElementDeletion.h"
#include "browse/SearchFields.h"
#include "widgets/ElementStore.h"

#include <QMessageBox>

namespace Planaria {

ElementEditor::ElementEditor(ElementKind::Type kind, DB *database, QWidget *owner)
    : db(database), widget(owner), type(kind)
{
}

ElementEditor::~ElementEditor() = default;

QString ElementEditor::table() const
{
    return searchTypes()[type].table;
}

QString ElementEditor::word() const
{
    return searchTypes()[type].singular;
}

int ElementEditor::store(DBElement *element)
{
    return ElementStore::store(element, table(), word(), db, widget) ? element->id() : 0;
}

bool ElementEditor::removeUnused(DBElement *element, const QString &name)
{
    const auto refusal = ElementDeletion::refusal(db, type, element->id(), name);
    if (!refusal)
        return element->erase();
    QMessageBox::critical(widget, refusal->title, refusal->text, QMessageBox::Cancel);
    return true;
}

} // namespace Planaria
