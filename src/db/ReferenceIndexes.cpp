#include "db/ReferenceIndexes.h"

#include "db/DB.h"

#include <QPair>
#include <QSqlError>

namespace Planaria {

namespace {

/// What SQLite answers to a name that is taken.
constexpr QLatin1String alreadyThere("1");

/// Table and column of all references in the file.
QList<QPair<QString, QString>> references(DB *db)
{
    QList<QPair<QString, QString>> found;
    const std::unique_ptr<QSqlQuery> query = db->newQuery(
        QStringLiteral("SELECT DISTINCT tables.name, keys.[from] FROM sqlite_master AS tables, "
                       "pragma_foreign_key_list(tables.name) AS keys WHERE tables.type = 'table'"));
    while (query->next())
        found.append({query->value(0).toString(), query->value(1).toString()});
    return found;
}

} // namespace

ReferenceIndexes::ReferenceIndexes(DB *database) : db(database)
{
    const std::unique_ptr<QSqlQuery> query = db->newQuery();
    for (const auto &[table, column] : references(db)) {
        const QString name = QStringLiteral("ReferenceIndex_%1_%2").arg(table, column);
        if (query->exec(
                QStringLiteral("CREATE INDEX [%1] ON [%2] ([%3])").arg(name, table, column)))
            names += name;
        // One of this name that is there already is not ours, and stays. Anything else, as a full
        // disk, may have ended the transaction: what followed would be in the file by itself.
        else if (query->lastError().nativeErrorCode() != alreadyThere)
            break;
    }
}

ReferenceIndexes::~ReferenceIndexes()
{
    const std::unique_ptr<QSqlQuery> query = db->newQuery();
    bool ok = true;
    for (const QString &name : std::as_const(names)) // a rollback has taken them along
        ok &= query->exec(QStringLiteral("DROP INDEX IF EXISTS [%1]").arg(name));
    if (!ok)
        db->rollbackTransaction();
}

} // namespace Planaria
