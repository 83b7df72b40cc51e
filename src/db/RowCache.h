#pragma once

#include "db/RowCursor.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

namespace Planaria {

class DB;

/// The rows of whole tables in memory, grouped by the value that elements look them up by: each
/// table is read once, however many elements ask for their part of it.
///
/// Tables with a BLOB column stay in the file: of them only the row ids are held, and each row is
/// read when a cursor comes to it.
class RowCache final
{
public:
    /// @param database must outlive the cache and its cursors
    explicit RowCache(DB *database);

    /// The rows of @p table whose @p column holds @p id, by row id or, where @p orderBy is given,
    /// by that column.
    std::shared_ptr<RowCursor> rows(const QString &table, const QString &column, int id,
                                    const QString &orderBy = QString());

    /// The rows of @p table, by row id, whose @p column names a row of @p joinTable in which
    /// @p joinColumn holds @p id.
    std::shared_ptr<RowCursor> joinedRows(const QString &table, const QString &column,
                                          const QString &joinTable, const QString &joinColumn,
                                          int id);

private:
    /// What one statement gave: rows laid end to end, and the rows of each key in the order read.
    struct Rows
    {
        int columns = 0;
        std::vector<QVariant> values;
        QHash<qint64, QList<qsizetype>> rowsOfKey;
    };

    class MemoryCursor;
    class StoredRowsCursor;

    std::shared_ptr<RowCursor> cursor(const QString &table, const QString &sql, int id);
    [[nodiscard]] std::shared_ptr<const Rows> read(const QString &sql) const;
    bool hasBlob(const QString &table);

    /// The columns to keep of @p table: all of them, or the id alone.
    QString columnsOf(const QString &table);

    DB *db;
    QHash<QString, std::shared_ptr<const Rows>> rowsOfStatement;
    QHash<QString, bool> blobTables;
};

} // namespace Planaria
