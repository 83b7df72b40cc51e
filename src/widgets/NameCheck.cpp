#include "widgets/NameCheck.h"

#include "db/DB.h"

#include <QLineEdit>
#include <QMessageBox>

namespace Planaria {

bool NameCheck::passes(QLineEdit *edit, const QString &ownName, DB *db) const
{
    const QString name = edit->text();
    const bool isEmpty = name.isEmpty();
    if (!isEmpty && (name == ownName || !db->exist(table, column, name)))
        return true;
    const Warning &warning = isEmpty ? empty : taken;
    QMessageBox::warning(edit->window(), warning.title, warning.text);
    edit->setFocus();
    return false;
}

} // namespace Planaria
