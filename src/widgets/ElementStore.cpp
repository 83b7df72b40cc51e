#include "widgets/ElementStore.h"

#include "db/DB.h"
#include "db/DBElement.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace Planaria {

namespace {

[[nodiscard]] bool write(DBElement *element, const QString &table, DB *db)
{
    db->beginTransaction();
    element->submit(db);
    if (!db->inTransaction())
        return false; // a failure has ended it
    if (db->existId(table, QStringLiteral("Id"), element->id()) > 0)
        return db->endTransaction();
    db->rollbackTransaction(); // a row that is gone takes no update
    return false;
}

} // namespace

bool ElementStore::store(DBElement *element, const QString &table, const QString &word, DB *db,
                         QWidget *parent)
{
    if (write(element, table, db))
        return true;
    QMessageBox::critical(
        parent, QCoreApplication::translate("ElementStore", "Cannot store %1").arg(word),
        QCoreApplication::translate("ElementStore", "The %1 could not be written to the file.")
            .arg(word));
    return false;
}

} // namespace Planaria
