#include "widgets/QuickDialogs.h"

#include "db/DB.h"

#include <QInputDialog>
#include <QMessageBox>

namespace Planaria {

void QuickDialogs::getUniqueText(DB *db, QWidget *parent, const QString &title,
                                 const QString &table, const QString &column, QString &text)
{
    const QString tableLower = table.toLower();
    const QString columnLower = column.toLower();
    const QString prompt = QStringLiteral("%1 %2:").arg(table, columnLower);

    while (true) {
        bool ok = false;
        text = QInputDialog::getText(parent, title, prompt, QLineEdit::Normal, text, &ok);
        if (!ok || text.isEmpty()) {
            text.clear();
            return;
        }
        if (!db->exist(table, column, text))
            return;
        QMessageBox::warning(
            parent, QStringLiteral("%1 with same %2 found").arg(table, columnLower),
            QStringLiteral("The database already contains a %1 with the same %2. Please, specify "
                           "a different %2 for this %1.")
                .arg(tableLower, columnLower),
            QMessageBox::Ok);
    }
}

} // namespace Planaria
