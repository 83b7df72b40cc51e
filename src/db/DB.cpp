#include "db/DB.h"

#include "db/RowCache.h"

#include <QFile>
#include <QSqlError>
#include <QUuid>

namespace Planaria {

namespace {

constexpr int busyCode = 5; // SQLITE_BUSY
constexpr auto shortWait = "PRAGMA busy_timeout = 300";
constexpr auto usualWait = "PRAGMA busy_timeout = 5000";

/// QVariant::isNull() alone does not see that a text in it is null.
bool isNull(const QVariant &value)
{
    return value.isNull() || (value.typeId() == QMetaType::QString && value.toString().isNull());
}

QString whereNull(const QString &column)
{
    return QStringLiteral(" WHERE %1 IS null").arg(column);
}

QString whereEqual(const QString &column)
{
    return QStringLiteral(" WHERE %1=?").arg(column);
}

/// SQLite's code of the error at which @p query ended, without the details; 0 without an error.
int errorCode(const QSqlQuery &query)
{
    constexpr int primaryCode = 0xFF; // the rest of an extended code tells more of the reason
    return query.lastError().nativeErrorCode().toInt() & primaryCode;
}

/// Reads its rows to their end. Views hear of one reset, and not of each portion that is fetched.
class WholeModel final : public QSqlQueryModel
{
public:
    void read(QSqlQuery &&query)
    {
        beginResetModel();
        setQuery(std::move(query));
        DB::fetchAllData(this);
        endResetModel();
    }
};

} // namespace

DB::DB() = default;

DB::~DB()
{
    disconnect();
}

// --- Connection ---

int DB::connect(const QString &fileName, bool fastMode)
{
    if (database.isOpen())
        disconnect();
    if (!QFile::exists(fileName))
        return FileMissing;

    disconnect(); // a connection that failed to open is still registered
    transactionDepth = 0;
    lastWriteError.clear();
    database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QUuid::createUuid().toString());
    database.setDatabaseName(fileName);
    if (!database.open())
        return CannotOpen;

    QSqlQuery query(database);
    if (fastMode) {
        query.exec(QStringLiteral("PRAGMA foreign_keys = false;"));
        query.exec(QStringLiteral("PRAGMA temp_store = 2;"));
        query.exec(QStringLiteral("PRAGMA synchronous = 0;"));
    } else {
        query.exec(QStringLiteral("PRAGMA foreign_keys = true;"));
    }
    return Opened;
}

void DB::disconnect()
{
    rowCache.reset();
    const QString name = database.connectionName();
    database = QSqlDatabase();
    if (!name.isEmpty())
        QSqlDatabase::removeDatabase(name);
}

bool DB::isConnected() const
{
    return database.isOpen();
}

bool DB::isLocked()
{
    QSqlQuery query(database);
    query.exec(QLatin1String(shortWait));
    query.exec(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"));
    const bool locked = errorCode(query) == busyCode;
    query.exec(QLatin1String(usualWait));
    return locked;
}

QString DB::fileName() const
{
    return database.databaseName();
}

bool DB::createEmptyDB(const QString &fileName)
{
    if (database.isOpen())
        disconnect();

    QFile file(fileName);
    const bool truncated = file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.close();
    return connect(fileName, false) == Opened && truncated;
}

bool DB::vacuum()
{
    return execute(QStringLiteral("VACUUM"));
}

QString DB::lastError() const
{
    return lastWriteError.isEmpty() ? database.lastError().text() : lastWriteError;
}

// --- Transactions ---

bool DB::beginTransaction()
{
    if (transactionDepth > 0) {
        ++transactionDepth;
        return true;
    }
    transactionDepth = 1;
    if (wholeWrite == WholeWriteState::None)
        lastWriteError.clear();
    return execute(QStringLiteral("BEGIN TRANSACTION;"));
}

bool DB::endTransaction()
{
    if (transactionDepth == 0)
        return false;
    if (--transactionDepth > 0)
        return true;
    if (execute(QStringLiteral("COMMIT;")))
        return true;
    // Left open, it would take in all that is written from now on, and lose it at the end.
    rollBack();
    return false;
}

bool DB::rollbackTransaction()
{
    if (transactionDepth == 0)
        return true;
    transactionDepth = 0;
    return rollBack();
}

bool DB::rollBack()
{
    if (wholeWrite == WholeWriteState::TakenBack)
        return true;
    const bool ok = execute(QStringLiteral("ROLLBACK;"));
    if (wholeWrite == WholeWriteState::Open)
        wholeWrite = WholeWriteState::TakenBack;
    return ok;
}

// --- Whole writes ---

bool DB::startWholeWrite(bool *locked)
{
    // Readers have to be out too: they would hold up the commit, or the first write that does not
    // fit into memory, each time for as long as SQLite is told to wait.
    if (!isConnected() || transactionDepth > 0 || wholeWrite != WholeWriteState::None)
        return false;
    rowCache.reset();
    lastWriteError.clear();
    QSqlQuery query(database);
    query.exec(QLatin1String(shortWait));
    const bool ok = query.exec(QStringLiteral("BEGIN EXCLUSIVE"));
    if (!ok) {
        lastWriteError = query.lastError().text();
        *locked = errorCode(query) == busyCode;
    }
    query.exec(QLatin1String(usualWait));
    if (ok) {
        transactionDepth = 1;
        wholeWrite = WholeWriteState::Open;
    }
    return ok;
}

bool DB::isWholeWriteAlive()
{
    // Within a transaction a second one cannot begin.
    if (wholeWrite == WholeWriteState::Open &&
        QSqlQuery(database).exec(QStringLiteral("BEGIN TRANSACTION;"))) {
        transactionDepth = 0;
        rollBack();
    }
    return wholeWrite == WholeWriteState::Open;
}

bool DB::commitWholeWrite()
{
    transactionDepth = 1;
    const bool ok = endTransaction();
    wholeWrite = ok ? WholeWriteState::None : WholeWriteState::TakenBack;
    return ok;
}

void DB::endWholeWrite()
{
    if (wholeWrite == WholeWriteState::Open)
        rollBack();
    transactionDepth = 0;
    wholeWrite = WholeWriteState::None;
}

// --- Queries ---

std::unique_ptr<QSqlQuery> DB::newQuery()
{
    rowCache.reset(); // what the caller will execute may write
    return std::make_unique<QSqlQuery>(database);
}

std::unique_ptr<QSqlQuery> DB::newQuery(const QString &sql)
{
    return newQuery(sql, QList<QVariant>());
}

std::unique_ptr<QSqlQuery> DB::newQuery(const QString &sql, const QVariant &value)
{
    return newQuery(sql, QList<QVariant>{value});
}

std::unique_ptr<QSqlQuery> DB::newQuery(const QString &sql, const QList<QVariant> &values)
{
    auto query = std::make_unique<QSqlQuery>(database);
    if (values.isEmpty()) {
        query->exec(sql);
    } else {
        query->prepare(sql);
        noteReadError(*query); // executed all the same, it hides its error behind another
        for (const QVariant &value : values)
            query->addBindValue(value);
        query->exec();
    }
    noteReadError(*query);
    if (query->isActive() && !query->isSelect())
        rowCache.reset();
    return query;
}

bool DB::nextRow(QSqlQuery *query)
{
    if (query->next())
        return true;
    noteReadError(*query);
    return false;
}

void DB::noteReadError(const QSqlQuery &query)
{
    constexpr int wrongStatement = 1; // something that it names is missing
    if (errorCode(query) > wrongStatement)
        readError = true;
}

std::unique_ptr<QSqlQuery> DB::newTableQuery(const QString &table)
{
    return newQuery(QStringLiteral("SELECT * FROM ") + table);
}

std::unique_ptr<QSqlQuery> DB::newTableQuery(const QString &table, int id)
{
    return newQuery(QStringLiteral("SELECT * FROM %1 WHERE Id = %2").arg(table).arg(id));
}

std::unique_ptr<QSqlQuery> DB::newTableQuery(const QString &table, const QString &column, int id)
{
    return newQuery(QStringLiteral("SELECT * FROM %1 WHERE %1.%2 = %3").arg(table, column).arg(id));
}

std::unique_ptr<QSqlQuery> DB::newTableQuery(const QString &table, const QString &column, int id,
                                             const QString &orderBy)
{
    return newQuery(QStringLiteral("SELECT * FROM %1 WHERE %1.%2 = %3 ORDER BY %4")
                        .arg(table, column)
                        .arg(id)
                        .arg(orderBy));
}

// --- Models ---

std::unique_ptr<QSqlQueryModel> DB::newTableModel(const QString &table)
{
    return newModel(QStringLiteral("SELECT * FROM ") + table);
}

std::unique_ptr<QSqlQueryModel> DB::newTableModel(const QString &table, const QString &orderBy)
{
    return newModel(QStringLiteral("SELECT * FROM %1 ORDER BY %2").arg(table, orderBy));
}

std::unique_ptr<QSqlQueryModel> DB::newTableModel(const QString &table, int id)
{
    return newModel(QStringLiteral("SELECT * FROM %1 WHERE %1.Id = %2").arg(table).arg(id));
}

std::unique_ptr<QSqlQueryModel> DB::newTableModel(const QString &table, const QString &column,
                                                  int id)
{
    return newModel(QStringLiteral("SELECT * FROM %1 WHERE %1.%2 = %3").arg(table, column).arg(id));
}

std::unique_ptr<QSqlQueryModel> DB::newTableModel(const QString &table, const QString &column,
                                                  int id, const QString &orderBy)
{
    return newModel(QStringLiteral("SELECT * FROM %1 WHERE %1.%2 = %3 ORDER BY %4")
                        .arg(table, column)
                        .arg(id)
                        .arg(orderBy));
}

std::unique_ptr<QSqlQueryModel> DB::newTableModel(const QString &table,
                                                  const QHash<QString, QString> &joins)
{
    QString columns = QStringLiteral("SELECT %1.*").arg(table);
    QString tables = QStringLiteral(" FROM ") + table;
    QStringList joined = joins.keys(); // in no order, another one in each run
    joined.sort();
    for (const QString &other : std::as_const(joined)) {
        columns += QStringLiteral(", %1.%2 AS '%1 %2'").arg(other, joins.value(other));
        tables += QStringLiteral(" INNER JOIN %2 ON %1.%2 = %2.Id").arg(table, other);
    }
    return newModel(columns + tables);
}

std::unique_ptr<QSqlQueryModel> DB::newModel(const QString &sql)
{
    return newModel(sql, QList<QVariant>());
}

std::unique_ptr<QSqlQueryModel> DB::newModel(const QString &sql, const QVariant &value)
{
    return newModel(sql, QList<QVariant>{value});
}

std::unique_ptr<QSqlQueryModel> DB::newModel(const QString &sql, const QList<QVariant> &values)
{
    auto model = std::make_unique<WholeModel>();
    model->read(std::move(*newQuery(sql, values)));
    return model;
}

void DB::fetchAllData(QSqlQueryModel *model)
{
    while (model->canFetchMore())
        model->fetchMore();
}

void DB::updateModel(QSqlQueryModel *model) const
{
    QSqlQuery query(model->query().lastQuery(), database);
    if (auto *whole = dynamic_cast<WholeModel *>(model)) {
        whole->read(std::move(query));
    } else {
        model->setQuery(std::move(query));
        fetchAllData(model);
    }
}

int DB::getModelIdRow(const QSqlQueryModel *model, int id)
{
    const QModelIndexList hits =
        model->match(model->index(0, 0), Qt::DisplayRole, id, 1, Qt::MatchExactly | Qt::MatchWrap);
    return hits.isEmpty() ? -1 : hits.first().row();
}

// --- Cursors ---

std::shared_ptr<RowCursor> DB::rowCursor(const QString &table, int id)
{
    if (rowCache)
        return rowCache->rows(table, QStringLiteral("Id"), id);
    return std::make_shared<QueryCursor>(this, newTableQuery(table, id));
}

std::shared_ptr<RowCursor> DB::childCursor(const QString &table, const QString &column, int id,
                                           const QString &orderBy)
{
    if (rowCache)
        return rowCache->rows(table, column, id, orderBy);
    return std::make_shared<QueryCursor>(this, orderBy.isEmpty()
                                                   ? newTableQuery(table, column, id)
                                                   : newTableQuery(table, column, id, orderBy));
}

std::shared_ptr<RowCursor> DB::joinCursor(const QString &table, const QString &column,
                                          const QString &joinTable, const QString &joinColumn,
                                          int id)
{
    if (rowCache)
        return rowCache->joinedRows(table, column, joinTable, joinColumn, id);
    return std::make_shared<QueryCursor>(
        this, newQuery(QStringLiteral("SELECT DISTINCT %1.* FROM %1 INNER JOIN %3 ON %1.%2 = %3.Id "
                                      "WHERE %3.%4 = %5;")
                           .arg(table, column, joinTable, joinColumn)
                           .arg(id)));
}

std::shared_ptr<RowCursor> DB::indirectCursor(const QString &table, const QString &linkTable,
                                              const QString &joinTable, const QString &joinColumn,
                                              int id)
{
    return std::make_shared<QueryCursor>(
        this, newQuery(QStringLiteral("SELECT DISTINCT %1.* FROM %1 INNER JOIN %2 ON %2.%1 = %1.Id "
                                      "INNER JOIN %3 ON %3.Id = %2.%3 WHERE %3.%4 = %5;")
                           .arg(table, linkTable, joinTable, joinColumn)
                           .arg(id)));
}

// --- Rows ---

int DB::insertRow(const QString &table, const QHash<QString, QVariant> &values, bool orIgnore)
{
    QString sql = QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(table);
    if (!values.isEmpty()) {
        const QStringList columns = values.keys();
        const QStringList marks(columns.size(), QStringLiteral("?"));
        sql = QStringLiteral("INSERT %1INTO %2 (%3) VALUES (%4) ")
                  .arg(orIgnore ? QStringLiteral("OR IGNORE ") : QString(), table,
                       columns.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
    }
    QSqlQuery query(database);
    // SQLite keeps the id of the last row that went in, so it says nothing after a failure.
    if (!execute(query, sql, values.values()) || query.numRowsAffected() < 1)
        return 0;
    return rowId(query.lastInsertId());
}

bool DB::updateRow(const QString &table, int id, const QHash<QString, QVariant> &values)
{
    if (values.isEmpty())
        return true;

    QSqlQuery query(database);
    const QString columns = values.keys().join(QStringLiteral("=?, "));
    return execute(query,
                   QStringLiteral("UPDATE %1 SET %2=? WHERE Id=%3").arg(table, columns).arg(id),
                   values.values());
}

bool DB::removeRow(const QString &table, int id)
{
    return execute(QStringLiteral("DELETE FROM %1 WHERE Id=%2").arg(table).arg(id));
}

// --- Inspection ---

bool DB::exist(const QString &table)
{
    return newQuery(
               QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' AND name='%1'")
                   .arg(table))
        ->next();
}

bool DB::exist(const QString &table, const QString &column, const QVariant &value)
{
    const std::unique_ptr<QSqlQuery> query =
        isNull(value)
            ? newQuery(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table) + whereNull(column))
            : newQuery(QStringLiteral("SELECT COUNT(%2) FROM %1").arg(table, column) +
                           whereEqual(column),
                       value);
    return query->next() && query->value(0).toInt() >= 1;
}

int DB::existId(const QString &table, const QString &column, const QVariant &value)
{
    const QString select = QStringLiteral("SELECT %1.Id FROM %1").arg(table);
    const std::unique_ptr<QSqlQuery> query = isNull(value)
                                                 ? newQuery(select + whereNull(column))
                                                 : newQuery(select + whereEqual(column), value);
    return query->next() ? rowId(query->value(0)) : 0;
}

int DB::getNumRows(const QString &table)
{
    const std::unique_ptr<QSqlQuery> query =
        newQuery(QStringLiteral("SELECT COUNT(*) FROM ") + table);
    return query->next() ? query->value(0).toInt() : 0;
}

// --- Bulk deletion ---

void DB::emptyTables(const QList<QString> &tables)
{
    for (const QString &table : tables)
        execute(QStringLiteral("DELETE FROM ") + table);
}

void DB::emptyTablesNoKeys(const QList<QString> &tables)
{
    execute(QStringLiteral("PRAGMA foreign_keys = false;"));
    emptyTables(tables);
    execute(QStringLiteral("PRAGMA foreign_keys = true;"));
}

// --- Bulk reading ---

void DB::startBulkRead()
{
    if (bulkReads++ == 0)
        rowCache = std::make_unique<RowCache>(this);
}

void DB::endBulkRead()
{
    if (--bulkReads == 0)
        rowCache.reset();
}

bool DB::execute(const QString &sql)
{
    QSqlQuery query(database);
    return execute(query, sql, {});
}

bool DB::execute(QSqlQuery &query, const QString &sql, const QList<QVariant> &values)
{
    rowCache.reset();
    if (wholeWrite == WholeWriteState::TakenBack)
        return false;
    bool ok = query.prepare(sql);
    if (ok) { // executed all the same, it would hide its error behind another
        for (const QVariant &value : values)
            query.addBindValue(value);
        ok = query.exec();
    }
    if (!ok) {
        lastWriteError = query.lastError().text();
        if (wholeWrite == WholeWriteState::Open) {
            wholeWrite = WholeWriteState::TakenBack;
            QSqlQuery(database).exec(QStringLiteral("ROLLBACK;"));
        }
    }
    return ok;
}

} // namespace Planaria
