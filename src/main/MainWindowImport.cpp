#include "db/DB.h"
#include "import/LibraryImporterForm.h"
#include "main/MainWindow.h"

#include <QSqlError>

// The command of MainWindow that merges another library into the open one.

namespace Planaria {

namespace {

/// Whether another program keeps the file of @p db from being read, for longer than a commit takes.
bool isLocked(DB *db)
{
    constexpr int busy = 5; // SQLITE_BUSY
    db->newQuery(QStringLiteral("PRAGMA busy_timeout = 300"));
    const auto query = db->newQuery(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"));
    db->newQuery(QStringLiteral("PRAGMA busy_timeout = 5000"));
    return query->lastError().nativeErrorCode().toInt() == busy;
}

} // namespace

void MainWindow::tellLocked(const QString &name)
{
    refuse(tr("Database is locked"),
           QStringLiteral("Another program is using the database file (%1). Please, try again "
                          "later.")
               .arg(name));
}

void MainWindow::importDB()
{
    const QString name = getDBFileName(QStringLiteral("Open database to import"), true);
    if (name.isEmpty())
        return;
    auto source = std::make_unique<DB>();
    const int result = source->connect(name, false);
    if (result != DB::Opened) {
        tellConnectFailure(result, name);
        return;
    }
    // Everything in a file that cannot be read would seem to be missing.
    if (isLocked(source.get())) {
        tellLocked(name);
        return;
    }
    if (isLocked(db.get())) {
        tellLocked(fileName);
        return;
    }
    if (!checkDBVersion(source.get(), false))
        return;
    LibraryImporterForm(source.get(), db.get(), this).exec();
    source.reset();
    updateStatus();
}

} // namespace Planaria
