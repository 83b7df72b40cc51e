#pragma once

#include "db/RowCursor.h"

#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QString>
#include <QVariant>

#include <memory>

namespace Planaria {

class RowCache;

/// The gateway to one open `.edb` file: queries, models, row operations, nested transactions.
///
/// Failure is a return value; no operation shows a dialog or writes to the log. Table and column
/// names are put into the statements as they are, so callers pass fixed names only; values that a
/// user typed travel as bound parameters. Several objects may be open side by side.
class DB
{
public:
    /// What connect() returns.
    enum ConnectResult { Opened = 0, CannotOpen = 1, FileMissing = 2 };

    DB();
    virtual ~DB();

    DB(const DB &) = delete;
    DB &operator=(const DB &) = delete;

    /// Opens @p fileName for reading and writing, and closes what was open before. A missing file
    /// is not created. SQLite reads nothing yet: a file of another kind is opened all the same.
    /// @param fastMode without foreign keys and synchronous writing, for bulk loading
    [[nodiscard]] int connect(const QString &fileName, bool fastMode);
    void disconnect();
    [[nodiscard]] bool isConnected() const;
    /// Whether another program keeps the file from being read, for longer than a commit takes.
    [[nodiscard]] bool isLocked();
    /// As it was given to connect(); empty where nothing is open.
    [[nodiscard]] QString fileName() const;

    /// Makes @p fileName an empty file, whatever it held, and opens it.
    [[nodiscard]] bool createEmptyDB(const QString &fileName);

    /// Rebuilds the file without the room that deleted rows left.
    [[nodiscard]] bool vacuum();

    /// The text of the last statement that failed to write, or of the connection's last error.
    [[nodiscard]] QString lastError() const;

    // Transactions nest: only the outermost pair speaks to the file, and a rollback at any level
    // ends the whole. After that, each endTransaction() that is still to come returns false.

    bool beginTransaction();
    /// A commit that fails is rolled back, so that no transaction is left hanging unseen.
    bool endTransaction();
    bool rollbackTransaction();
    [[nodiscard]] bool inTransaction() const { return transactionDepth > 0; }

    // Queries are executed and stand before their first row. A failed one has no rows.

    /// An idle query for the caller's own statements.
    std::unique_ptr<QSqlQuery> newQuery();
    std::unique_ptr<QSqlQuery> newQuery(const QString &sql);
    std::unique_ptr<QSqlQuery> newQuery(const QString &sql, const QVariant &value);
    std::unique_ptr<QSqlQuery> newQuery(const QString &sql, const QList<QVariant> &values);
    std::unique_ptr<QSqlQuery> newTableQuery(const QString &table);
    std::unique_ptr<QSqlQuery> newTableQuery(const QString &table, int id);
    std::unique_ptr<QSqlQuery> newTableQuery(const QString &table, const QString &column, int id);
    std::unique_ptr<QSqlQuery> newTableQuery(const QString &table, const QString &column, int id,
                                             const QString &orderBy);

    /// Steps to the next row of @p query, and keeps in mind where an error ends the rows early.
    bool nextRow(QSqlQuery *query);

    /// Whether the file could not be read (it is damaged, locked, or the disk fails) since
    /// forgetReadError(): then what came as the last row of a query or cursor may not be the last.
    /// A statement about a table or column that the file lacks does not count.
    [[nodiscard]] bool hasReadError() const { return readError; }
    void forgetReadError() { readError = false; }

    // Models are read to their end, so that row numbers and counts can be relied on. updateModel()
    // resets them once.

    std::unique_ptr<QSqlQueryModel> newTableModel(const QString &table);
    std::unique_ptr<QSqlQueryModel> newTableModel(const QString &table, const QString &orderBy);
    std::unique_ptr<QSqlQueryModel> newTableModel(const QString &table, int id);
    std::unique_ptr<QSqlQueryModel> newTableModel(const QString &table, const QString &column,
                                                  int id);
    std::unique_ptr<QSqlQueryModel> newTableModel(const QString &table, const QString &column,
                                                  int id, const QString &orderBy);
    /// @p table with one more column for each entry of @p joins: the column named by the entry's
    /// value, out of the table named by its key, which @p table references by a column of that
    /// name, in the order of these. It is headed by both names with a blank between. Rows that
    /// reference nothing are left out.
    std::unique_ptr<QSqlQueryModel> newTableModel(const QString &table,
                                                  const QHash<QString, QString> &joins);
    std::unique_ptr<QSqlQueryModel> newModel(const QString &sql);
    std::unique_ptr<QSqlQueryModel> newModel(const QString &sql, const QVariant &value);
    std::unique_ptr<QSqlQueryModel> newModel(const QString &sql, const QList<QVariant> &values);

    static void fetchAllData(QSqlQueryModel *model);
    /// Runs the statement of @p model again.
    void updateModel(QSqlQueryModel *model) const;
    /// The row of @p model that holds @p id in column 0, or -1.
    static int getModelIdRow(const QSqlQueryModel *model, int id);

    // Cursors for loading elements: over the rows of the file or, during a BulkRead, over rows
    // already in memory.

    /// The row of @p table with this @p id.
    std::shared_ptr<RowCursor> rowCursor(const QString &table, int id);
    /// The rows of @p table whose @p column holds @p id.
    std::shared_ptr<RowCursor> childCursor(const QString &table, const QString &column, int id,
                                           const QString &orderBy = QString());
    /// The rows of @p table whose @p column names a row of @p joinTable in which @p joinColumn
    /// holds @p id.
    std::shared_ptr<RowCursor> joinCursor(const QString &table, const QString &column,
                                          const QString &joinTable, const QString &joinColumn,
                                          int id);

    /// The rows of @p table that @p linkTable joins with rows of @p joinTable in which
    /// @p joinColumn holds @p id.
    std::shared_ptr<RowCursor> indirectCursor(const QString &table, const QString &linkTable,
                                              const QString &joinTable, const QString &joinColumn,
                                              int id);

    /// @return the new row's id; below 1 after a failure
    [[nodiscard]] int insertRow(const QString &table, const QHash<QString, QVariant> &values,
                                bool orIgnore);
    /// True also when no row has this @p id.
    [[nodiscard]] bool updateRow(const QString &table, int id,
                                 const QHash<QString, QVariant> &values);
    [[nodiscard]] bool removeRow(const QString &table, int id);

    // A null value, a null text included, is looked for as NULL.

    bool exist(const QString &table);
    bool exist(const QString &table, const QString &column, const QVariant &value);
    /// The id of the first row of @p table whose @p column holds @p value, or 0.
    int existId(const QString &table, const QString &column, const QVariant &value);
    int getNumRows(const QString &table);

    /// Deletes all rows, table by table. A table whose rows are still referenced keeps them.
    void emptyTables(const QList<QString> &tables);
    /// The same with foreign keys off, for tables that reference each other in circles.
    void emptyTablesNoKeys(const QList<QString> &tables);

private:
    friend class BulkRead;
    friend class WholeWrite;

    void startBulkRead();
    void endBulkRead();

    enum class WholeWriteState { None, Open, TakenBack };

    /// @param locked set where it fails because of another program
    bool startWholeWrite(bool *locked);
    bool isWholeWriteAlive();
    bool commitWholeWrite();
    void endWholeWrite();
    /// Ends the transaction in the file, without the levels that are still open above it.
    bool rollBack();

    void noteReadError(const QSqlQuery &query);

    /// Executes @p sql; its error is kept for lastError().
    bool execute(const QString &sql);
    bool execute(QSqlQuery &query, const QString &sql, const QList<QVariant> &values);

    QSqlDatabase database;
    int transactionDepth = 0;
    QString lastWriteError;
    bool readError = false;
    WholeWriteState wholeWrite = WholeWriteState::None;

    std::unique_ptr<RowCache> rowCache; // null outside of bulk reading, and after a write in it
    int bulkReads = 0;
};

} // namespace Planaria
