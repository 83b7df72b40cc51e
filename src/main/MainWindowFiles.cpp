#include "BuildConfig.h"
#include "db/DB.h"
#include "db/DBExp.h"
#include "db/ExperimentFactory.h"
#include "main/MainWindow.h"
#include "model/Morphology.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QSaveFile>
#include <QSettings>

#include <filesystem>

// The commands of MainWindow that open, create, copy, compact and close database files.

namespace Planaria {

namespace {

/// Whether both names lead to one file, by whatever links. A name without a file leads nowhere.
bool isSameFile(const QString &a, const QString &b)
{
    std::error_code error;
    return std::filesystem::equivalent(QFileInfo(a).filesystemFilePath(),
                                       QFileInfo(b).filesystemFilePath(), error);
}

} // namespace

bool MainWindow::confirm(const QString &title, const QString &text)
{
    return QMessageBox::warning(this, title, text, QMessageBox::Yes | QMessageBox::Cancel,
                                QMessageBox::Cancel) == QMessageBox::Yes;
}

void MainWindow::refuse(const QString &title, const QString &text)
{
    QMessageBox::critical(this, title, text, QMessageBox::Cancel);
}

QString MainWindow::getDBFileName(const QString &caption, bool open)
{
    QSettings settings;
    settings.beginGroup(QStringLiteral("MainWindow"));
    const QString dir = settings.value(QStringLiteral("lastDBDir")).toString();

    QString name = open ? QFileDialog::getOpenFileName(
                              this, caption, dir, QStringLiteral("Experiment databases (*.edb)"))
                        : QFileDialog::getSaveFileName(
                              this, caption, dir, QStringLiteral("Experiment Databases (*.edb)"));
    if (name.isEmpty())
        return name;

    const QString path = QFileInfo(name).absolutePath();
    if (path != dir)
        settings.setValue(QStringLiteral("lastDBDir"), path);

    const QString extension = QStringLiteral(".edb");
    if (!QFile::exists(name) && !name.toLower().endsWith(extension)) {
        name += extension;
        // The file dialog asked about the name as it was typed only.
        const bool replaces = !open && QFile::exists(name);
        if (replaces &&
            !confirm(tr("Replace database file"),
                     tr("The file %1 already exists. Do you want to replace it?").arg(name)))
            return {};
    }
    return name;
}

// --- Opening ---

void MainWindow::connectDB(bool quiet)
{
    const QString name = fileName;
    // Until the file is accepted, the frame shows none, so that no tab reads it.
    fileName.clear();
    updateStatus();

    readOnly = !QFileInfo(name).isWritable();
    const int result = db->connect(name, false);
    if (result != DB::Opened) {
        if (!quiet)
            tellConnectFailure(result, name);
        return;
    }
    if (!checkDBVersion(db.get(), quiet)) {
        closeDB(); // nothing to close: the connection stays, idle, until the next one
        return;
    }
    fileName = name;
    ExperimentFactory::instance(nullptr)->load(db.get());
    updateStatus();
}

void MainWindow::tellConnectFailure(int result, const QString &name)
{
    if (result == DB::FileMissing)
        refuse(tr("Cannot find database file"),
               QStringLiteral("Unable to find the database file (%1).").arg(name));
    else
        refuse(tr("Cannot open database"), tr("Unable to establish a database connection."));
}

bool MainWindow::checkDBVersion(DB *file, bool quiet)
{
    const int version = DBExp::getDBVersion(file);
    if (version == DBExp::currentVersion)
        return true;
    if (quiet)
        return false;
    if (version == -1)
        return confirm(QStringLiteral("DB version error"),
                       QStringLiteral("The database version is corrupt. The program may encounter "
                                      "errors using this database. Do you want to continue?"));
    if (version > DBExp::currentVersion)
        return confirm(
            QStringLiteral("DB version too new"),
            QStringLiteral(
                "The database contains a new structure that I may not understand (version %1). I "
                "recommend to use a new version of the program to open this database. You can "
                "download a new version of this program from <a href='%2/download'>this link</a>. "
                "The program can crash and data may become currupted if I open this database. Do "
                "you want to continue opening the database?")
                .arg(version)
                .arg(QLatin1String(BuildConfig::website)));
    return upgradeOldVersion(file, version);
}

bool MainWindow::upgradeOldVersion(DB *file, int version)
{
    if (readOnly) {
        QMessageBox::critical(
            this, QStringLiteral("Read-only DB and version old"),
            QStringLiteral("The database contains an old structure (version %1). I need to update "
                           "the database structure (to version %2) to continue. However, the "
                           "database is read only and cannot be updated. Please,  make the "
                           "database writable and try again.")
                .arg(version)
                .arg(DBExp::currentVersion),
            QMessageBox::Ok);
        return false;
    }
    if (!confirm(QStringLiteral("DB version old"),
                 QStringLiteral("The database contains an old structure (version %1). I need to "
                                "update the database structure (to version %2) to continue. No "
                                "data will be lost. Do you want to update the database?")
                     .arg(version)
                     .arg(DBExp::currentVersion)))
        return false;
    DBExp::upgradeDB(file, version);
    return true;
}

void MainWindow::initDataBase()
{
    if (QFile::exists(fileName))
        connectDB(false);
    else
        fileName.clear(); // gone since the last run: forgotten without a word
    updateStatus();
}

void MainWindow::openDB(const QString &name)
{
    fileName = name;
    connectDB(false);
}

// --- Commands ---

void MainWindow::newDB()
{
    const QString name = getDBFileName(QStringLiteral("New database"), false);
    if (name.isEmpty())
        return;
    closeDB();

    if (!db->createEmptyDB(name)) {
        db->disconnect();
        refuse(tr("Cannot create new database file"), tr("Unable to create a new database file."));
        return;
    }
    DBExp::buildDB(db.get());
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    factory->load(db.get());
    factory->createWildMorphology()->submit(db.get());
    db->disconnect();

    openDB(name); // a new file is opened like any other
}

void MainWindow::openDB()
{
    const QString name = getDBFileName(QStringLiteral("Open database"), true);
    if (!name.isEmpty())
        openDB(name);
}

void MainWindow::saveAsDB()
{
    if (fileName.isEmpty())
        return;
    const QString name = getDBFileName(QStringLiteral("Save database"), false);
    if (name.isEmpty())
        return;

    const QString old = fileName;
    closeDB();
    if (isSameFile(old, name) || copyFile(old, name)) {
        openDB(name);
        return;
    }
    refuse(tr("Cannot save database"),
           tr("Unable to copy the database to %1. The database stays as it was.").arg(name));
    openDB(old);
}

bool MainWindow::copyFile(const QString &from, const QString &to)
{
    QFile source(from);
    QSaveFile target(to); // written beside its place, and put there once it is complete
    if (!source.open(QIODevice::ReadOnly) || !target.open(QIODevice::WriteOnly))
        return false;
    while (!source.atEnd()) {
        const QByteArray block = source.read(16000);
        if (block.isEmpty() || target.write(block) != block.size())
            return false;
    }
    // commit() alone does not see that the last block did not fit.
    if (!target.flush() || !target.commit())
        return false;
    // What a crash left beside the file that was replaced would be taken for the copy's.
    const QString place = QFileInfo(to).canonicalFilePath();
    QFile::remove(place + QStringLiteral("-journal"));
    QFile::remove(place + QStringLiteral("-wal"));
    return true;
}

void MainWindow::closeDB()
{
    if (fileName.isEmpty())
        return;
    fileName.clear();
    updateStatus(); // the tabs let go of the connection before it goes
    db->disconnect();
}

void MainWindow::databaseCorrupted()
{
    refuse(tr("Database file corrupted"), tr("The database file is corrupted."));
    closeDB();
}

void MainWindow::vacuumDB()
{
    if (fileName.isEmpty())
        return;
    if (db->vacuum())
        QMessageBox::information(this, QStringLiteral("Vacuum database"),
                                 QStringLiteral("Database vacuumed successfully."),
                                 QMessageBox::Ok);
    else
        refuse(tr("Vacuum error"), tr("Error during vacuum operation."));
}

} // namespace Planaria
