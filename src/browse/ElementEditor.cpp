#include "browse/ElementEditor.h"

#include "browse/ElementCommands.h"
#include "browse/SearchFields.h"
#include "widgets/ElementStore.h"

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

ElementDeletion::Outcome ElementEditor::removeUnused(DBElement *element, const QString &name)
{
    using ElementDeletion::Outcome;
    const auto refusal = ElementDeletion::refusal(db, type, element->id(), name);
    if (!refusal)
        return element->erase() ? Outcome::Done : Outcome::Failed;
    ElementCommands::tellRefusal(*refusal, widget);
    return Outcome::Refused;
}

} // namespace Planaria
