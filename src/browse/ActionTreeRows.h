#pragma once

#include <QSqlQuery>
#include <QString>

#include <functional>

namespace Planaria {

class DB;

/// What the walks over action trees share: tables that are read row by row.
namespace ActionTreeRows {

/// Calls @p take for each row that @p sql gives; with @p value bound to its placeholder, if given.
void read(DB *db, const QString &sql, const std::function<void(const QSqlQuery &)> &take);
void read(DB *db, const QString &sql, const QString &value,
          const std::function<void(const QSqlQuery &)> &take);

/// The row id in a column of the current row; 0 where it holds none (a damaged file).
int id(const QSqlQuery &row, int column);

} // namespace ActionTreeRows

} // namespace Planaria
