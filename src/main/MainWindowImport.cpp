#include "db/DB.h"
#include "import/LibraryImporterForm.h"
#include "main/MainWindow.h"

// The command of MainWindow that merges another library into the open one.

namespace Planaria {

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
    if (source->isLocked()) {
        tellLocked(name);
        return;
    }
    if (db->isLocked()) {
        tellLocked(fileName);
        return;
    }
    if (!checkDBVersion(source.get(), false))
        return;
    // An update may have failed. Without this table every picture would seem to be deleted.
    if (!source->exist(QStringLiteral("MorphologyImage"))) {
        refuse(tr("Cannot update database"),
               QStringLiteral("Unable to update the structure of the database file (%1). Nothing "
                              "can be imported from it.")
                   .arg(name));
        return;
    }
    LibraryImporterForm(source.get(), db.get(), this).exec();
    source.reset();
    updateStatus();
}

} // namespace Planaria
