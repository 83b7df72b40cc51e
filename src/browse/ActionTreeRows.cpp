#include "browse/ActionTreeRows.h"

#include "db/DB.h"
#include "db/RowCursor.h"

namespace Planaria {

namespace {

void takeAll(QSqlQuery *query, const std::function<void(const QSqlQuery &)> &take)
{
    while (query->next())
        take(*query);
}

} // namespace

void ActionTreeRows::read(DB *db, const QString &sql,
                          const std::function<void(const QSqlQuery &)> &take)
{
    takeAll(db->newQuery(sql).get(), take);
}

void ActionTreeRows::read(DB *db, const QString &sql, const QString &value,
                          const std::function<void(const QSqlQuery &)> &take)
{
    takeAll(db->newQuery(sql, QVariant(value)).get(), take);
}

int ActionTreeRows::id(const QSqlQuery &row, int column)
{
    const QVariant value = row.value(column);
    return value.typeId() == QMetaType::LongLong ? rowId(value) : 0;
}

} // namespace Planaria
