#pragma once

#include <QSqlQuery>
#include <QVariant>

#include <memory>

namespace Planaria {

class DB;

/// A walk over rows of the file, forwards only. It starts before the first row. A parent and the
/// children that it makes share one cursor, so that each child reads the row the parent stands on.
class RowCursor
{
public:
    virtual ~RowCursor();

    RowCursor(const RowCursor &) = delete;
    RowCursor &operator=(const RowCursor &) = delete;

    /// Steps to the next row; false behind the last one.
    virtual bool next() = 0;

    /// The value at position @p column of the current row; a null variant where there is none.
    [[nodiscard]] virtual QVariant value(int column) const = 0;

protected:
    RowCursor() = default;
};

/// The row id in @p value; 0 where it holds none that fits an element (a damaged file).
int rowId(const QVariant &value);

/// The number in @p value; 0 where it holds none, or none that is finite (a damaged file).
double finiteNumber(const QVariant &value);

/// The cursor over the rows of one executed statement.
class QueryCursor final : public RowCursor
{
public:
    /// @param database outlives the cursor
    QueryCursor(DB *database, std::unique_ptr<QSqlQuery> executed);

    bool next() override;
    [[nodiscard]] QVariant value(int column) const override;

private:
    DB *db;
    std::unique_ptr<QSqlQuery> query;
};

} // namespace Planaria
