#include "db/RowCursor.h"

#include "db/DB.h"

#include <cmath>
#include <limits>

namespace Planaria {

RowCursor::~RowCursor() = default;

int rowId(const QVariant &value)
{
    const qint64 id = value.toLongLong();
    return id >= 1 && id <= std::numeric_limits<int>::max() ? static_cast<int>(id) : 0;
}

double finiteNumber(const QVariant &value)
{
    const double number = value.toDouble();
    return std::isfinite(number) ? number : 0.0;
}

QueryCursor::QueryCursor(DB *database, std::unique_ptr<QSqlQuery> executed)
    : db(database), query(std::move(executed))
{
}

bool QueryCursor::next()
{
    return db->nextRow(query.get());
}

QVariant QueryCursor::value(int column) const
{
    // A row that is missing (a damaged file) reads as nulls, without the driver's warning.
    return query->isValid() ? query->value(column) : QVariant();
}

} // namespace Planaria
