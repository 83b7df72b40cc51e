#include "support/StatementLog.h"

#include <QRegularExpression>

#include <sqlite3.h>
#include <utility>

namespace Planaria {

namespace {

QStringList statements; // outlives the connections, which go on recording

int record(unsigned /*event*/, void * /*context*/, void *statement, void * /*text*/)
{
    // Qt gives names to the question marks of a prepared statement.
    static const QRegularExpression placeholder(QStringLiteral(":\\d+"));
    statements += QString::fromUtf8(sqlite3_sql(static_cast<sqlite3_stmt *>(statement)))
                      .replace(placeholder, QStringLiteral("?"));
    return 0;
}

int watch(sqlite3 *database, char ** /*error*/, const sqlite3_api_routines * /*routines*/)
{
    return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, record, nullptr);
}

// SQLite's type for the function that it calls for each connection as it opens.
void (*const watchEach)() = reinterpret_cast<void (*)()>(watch);

} // namespace

StatementLog::StatementLog()
{
    statements.clear();
    sqlite3_auto_extension(watchEach);
}

StatementLog::~StatementLog()
{
    sqlite3_cancel_auto_extension(watchEach);
}

QStringList StatementLog::take()
{
    return std::exchange(statements, {});
}

} // namespace Planaria
