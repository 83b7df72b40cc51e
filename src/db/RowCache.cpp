#include "db/RowCache.h"

#include "db/DB.h"

#include <QSqlRecord>

namespace Planaria {

/// Walks over the rows of one key, which stay alive with the cursor.
class RowCache::MemoryCursor final : public RowCursor
{
public:
    MemoryCursor(std::shared_ptr<const Rows> allRows, int key)
        : rows(std::move(allRows)), rowsOfKey(rows->rowsOfKey.value(key))
    {
    }

    bool next() override { return ++position < rowsOfKey.size(); }

    [[nodiscard]] QVariant value(int column) const override
    {
        if (position < 0 || position >= rowsOfKey.size() || column < 0 || column >= rows->columns)
            return {};
        return rows->values[static_cast<size_t>(rowsOfKey[position] * rows->columns + column)];
    }

private:
    std::shared_ptr<const Rows> rows;
    QList<qsizetype> rowsOfKey;
    qsizetype position = -1;
};

/// Walks over row ids in memory and reads each row from the file as it comes to it.
class RowCache::StoredRowsCursor final : public RowCursor
{
public:
    StoredRowsCursor(DB *database, QString tableName, std::shared_ptr<const Rows> allIds, int key)
        : db(database), table(std::move(tableName)), ids(std::move(allIds), key)
    {
    }

    bool next() override
    {
        row.reset();
        while (ids.next()) {
            row = db->newTableQuery(table, ids.value(0).toInt());
            if (db->nextRow(row.get())) // it may be gone by now, at the hand of another program
                return true;
        }
        return false;
    }

    [[nodiscard]] QVariant value(int column) const override
    {
        return row && row->isValid() ? row->value(column) : QVariant();
    }

private:
    DB *db;
    QString table;
    MemoryCursor ids;
    std::unique_ptr<QSqlQuery> row;
};

namespace {

/// The id that a comparison of @p column with a number finds equal to it. Of a damaged file, text
/// or a fraction that equals none gives null: such a row belongs to no element.
QString keyOf(const QString &table, const QString &column)
{
    return QStringLiteral("CASE WHEN %1.%2 = CAST(%1.%2 AS INTEGER) + 0 "
                          "THEN CAST(%1.%2 AS INTEGER) END")
        .arg(table, column);
}

} // namespace

RowCache::RowCache(DB *database) : db(database) {}

// The key is put behind the columns, where it does not disturb their positions.

std::shared_ptr<RowCursor> RowCache::rows(const QString &table, const QString &column, int id,
                                          const QString &orderBy)
{
    QString sql = QStringLiteral("SELECT %1, %3 FROM %2 ORDER BY ")
                      .arg(columnsOf(table), table, keyOf(table, column));
    if (!orderBy.isEmpty())
        sql += orderBy + QStringLiteral(", ");
    return cursor(table, sql + QStringLiteral("rowid"), id);
}

std::shared_ptr<RowCursor> RowCache::joinedRows(const QString &table, const QString &column,
                                                const QString &joinTable, const QString &joinColumn,
                                                int id)
{
    // The order is spelled out: SQLite may otherwise walk the other table first.
    return cursor(
        table,
        QStringLiteral("SELECT DISTINCT %1, %5 FROM %2 INNER JOIN %4 ON %2.%3 = %4.Id "
                       "ORDER BY %2.rowid")
            .arg(columnsOf(table), table, column, joinTable, keyOf(joinTable, joinColumn)),
        id);
}

std::shared_ptr<RowCursor> RowCache::cursor(const QString &table, const QString &sql, int id)
{
    std::shared_ptr<const Rows> &found = rowsOfStatement[sql];
    if (!found)
        found = read(sql);
    if (hasBlob(table))
        return std::make_shared<StoredRowsCursor>(db, table, found, id);
    return std::make_shared<MemoryCursor>(found, id);
}

std::shared_ptr<const RowCache::Rows> RowCache::read(const QString &sql) const
{
    auto result = std::make_shared<Rows>();
    const std::unique_ptr<QSqlQuery> query = db->newQuery(sql);
    result->columns = std::max(query->record().count() - 1, 0);
    for (qsizetype row = 0; db->nextRow(query.get()); ++row) {
        for (int column = 0; column < result->columns; ++column)
            result->values.push_back(query->value(column));
        const QVariant key = query->value(result->columns);
        if (!key.isNull())
            result->rowsOfKey[key.toLongLong()].append(row);
    }
    return result;
}

bool RowCache::hasBlob(const QString &table)
{
    const auto known = blobTables.constFind(table);
    if (known != blobTables.cend())
        return *known;

    bool blob = false;
    const std::unique_ptr<QSqlQuery> query =
        db->newQuery(QStringLiteral("PRAGMA table_info(%1)").arg(table));
    while (db->nextRow(query.get()))
        blob |= query->value(QStringLiteral("type")).toString() == QLatin1String("BLOB");
    blobTables.insert(table, blob);
    return blob;
}

QString RowCache::columnsOf(const QString &table)
{
    return table + (hasBlob(table) ? QStringLiteral(".Id") : QStringLiteral(".*"));
}

} // namespace Planaria
