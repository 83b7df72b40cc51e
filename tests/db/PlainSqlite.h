#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

struct sqlite3;

namespace Planaria {

/// A file as any program with the plain SQLite library sees it, through a connection of its own.
/// References are not enforced on it, unless a statement asks for that.
class PlainSqlite final
{
public:
    explicit PlainSqlite(const QString &fileName);
    ~PlainSqlite();

    PlainSqlite(const PlainSqlite &) = delete;
    PlainSqlite &operator=(const PlainSqlite &) = delete;

    /// @return SQLite's extended result code
    int run(const QString &sql);

    /// Fails the test by qFatal where the statement cannot be read to its end.
    QList<QVariantList> rows(const QString &sql);
    /// The first column.
    QStringList texts(const QString &sql);
    int count(const QString &table);

    /// In order of creation, without those that SQLite makes for itself.
    QStringList tables();

    /// The rows of @p table by row id, each as its values in SQL, with a blank between. A real
    /// number has the fewest digits that read back to the same.
    QStringList dump(const QString &table);
    /// All rows of @p tables, each after its table's name.
    QStringList dump(const QStringList &tables);

    /// Puts one row into each empty table. Its numbers are 1, so that all these rows and the first
    /// ones of the other tables reference each other.
    void fillEmptyTables();

private:
    sqlite3 *database = nullptr;
};

} // namespace Planaria
