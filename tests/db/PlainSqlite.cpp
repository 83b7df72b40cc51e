#include "PlainSqlite.h"

#include <QLocale>

#include <memory>
#include <sqlite3.h>

namespace Planaria {

namespace {

QVariant columnValue(sqlite3_stmt *statement, int column)
{
    const int size = sqlite3_column_bytes(statement, column);
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return sqlite3_column_int64(statement, column);
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    case SQLITE_TEXT:
        return QString::fromUtf8(static_cast<const char *>(sqlite3_column_blob(statement, column)),
                                 size);
    case SQLITE_BLOB:
        return QByteArray(static_cast<const char *>(sqlite3_column_blob(statement, column)), size);
    default:
        return {};
    }
}

QString realInSql(double number)
{
    const QString digits = QString::number(number, 'g', QLocale::FloatingPointShortest);
    return digits.contains(QLatin1Char('.')) ? digits : digits + QStringLiteral(".0");
}

QString inSql(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QStringLiteral("NULL");
    case QMetaType::Double:
        return realInSql(value.toDouble());
    case QMetaType::QString:
        return QStringLiteral("'%1'").arg(value.toString());
    case QMetaType::QByteArray:
        return QStringLiteral("x'%1'").arg(QString::fromLatin1(value.toByteArray().toHex()));
    default:
        return value.toString();
    }
}

QString fillingValue(const QString &declaredType)
{
    if (declaredType == QStringLiteral("INTEGER"))
        return QStringLiteral("1");
    if (declaredType == QStringLiteral("REAL"))
        return QStringLiteral("0.1");
    if (declaredType == QStringLiteral("BLOB"))
        return QStringLiteral("x'00ff'");
    return QStringLiteral("'a text'");
}

} // namespace

PlainSqlite::PlainSqlite(const QString &fileName)
{
    const int result =
        sqlite3_open_v2(fileName.toUtf8().constData(), &database, SQLITE_OPEN_READWRITE, nullptr);
    if (result != SQLITE_OK)
        qFatal("%s: %s", qUtf8Printable(fileName), sqlite3_errmsg(database));
    sqlite3_extended_result_codes(database, 1);
    sqlite3_trace_v2(database, 0, nullptr, nullptr); // a StatementLog is for the program's own
}

PlainSqlite::~PlainSqlite()
{
    sqlite3_close(database);
}

int PlainSqlite::run(const QString &sql)
{
    return sqlite3_exec(database, sql.toUtf8().constData(), nullptr, nullptr, nullptr);
}

QList<QVariantList> PlainSqlite::rows(const QString &sql)
{
    sqlite3_stmt *prepared = nullptr;
    sqlite3_prepare_v2(database, sql.toUtf8().constData(), -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(prepared,
                                                                               &sqlite3_finalize);
    QList<QVariantList> all;
    int result = sqlite3_step(prepared);
    for (; result == SQLITE_ROW; result = sqlite3_step(prepared)) {
        QVariantList row;
        for (int column = 0; column < sqlite3_column_count(prepared); ++column)
            row += columnValue(prepared, column);
        all += row;
    }
    if (result != SQLITE_DONE)
        qFatal("%s: %s", qUtf8Printable(sql), sqlite3_errmsg(database));
    return all;
}

QStringList PlainSqlite::texts(const QString &sql)
{
    QStringList all;
    for (const QVariantList &row : rows(sql))
        all += row.first().toString();
    return all;
}

int PlainSqlite::count(const QString &table)
{
    return texts(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)).first().toInt();
}

QStringList PlainSqlite::tables()
{
    return texts(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' "
                                "AND name NOT LIKE 'sqlite%' ORDER BY rowid"));
}

QStringList PlainSqlite::dump(const QString &table)
{
    QStringList all;
    for (const QVariantList &row :
         rows(QStringLiteral("SELECT * FROM %1 ORDER BY rowid").arg(table))) {
        QStringList values;
        for (const QVariant &value : row)
            values += inSql(value);
        all += values.join(QLatin1Char(' '));
    }
    return all;
}

QStringList PlainSqlite::dump(const QStringList &tables)
{
    QStringList all;
    for (const QString &table : tables) {
        for (const QString &row : dump(table))
            all += table + QLatin1Char(' ') + row;
    }
    return all;
}

void PlainSqlite::fillEmptyTables()
{
    run(QStringLiteral("BEGIN"));
    for (const QString &table : tables()) {
        QStringList values;
        for (const QString &type :
             texts(QStringLiteral("SELECT type FROM pragma_table_info('%1')").arg(table)))
            values += fillingValue(type);
        if (count(table) > 0)
            continue;
        const QString sql = QStringLiteral("INSERT INTO %1 VALUES(%2)")
                                .arg(table, values.join(QStringLiteral(", ")));
        if (run(sql) != SQLITE_OK)
            qFatal("%s: %s", qUtf8Printable(sql), sqlite3_errmsg(database));
    }
    run(QStringLiteral("COMMIT"));
}

} // namespace Planaria
