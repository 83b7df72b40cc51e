#include "db/ExperimentFactory.h"
#include "main/OrdinaryUser.h"
#include "main/ProgramRun.h"
#include "model/RegionType.h"
#include "support/TemporaryLibrary.h"

#include <QLineEdit>
#include <QSettings>
#include <QSqlDatabase>
#include <QTabWidget>

#include <csignal>
#include <sys/resource.h>

namespace Planaria {

/// The commands that create, open, copy, close and compact files, each through its menu entry and
/// its dialogs.
class MainWindowFilesTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    // New
    void createsALibraryWithTheWildType();
    void createsNothingButDefaultRowsAndTheWildType();
    void replacesAnExistingFileByANewOne();
    void startsAnewInTheOpenFile();
    void tellsThatAFileCannotBeCreated();

    // Open
    void opensAnotherFileInPlaceOfTheOpenOne();
    void opensTheOpenFileAnew();
    void closesTheOpenFileWhereTheNextFails_data();
    void closesTheOpenFileWhereTheNextFails();
    void addsTheExtensionToAMissingName();
    void readsTheVocabularyOfTheFile();

    // Save as
    void continuesOnTheCopy();
    void copiesOverAnExistingFile();
    void copiesOverAFileThatALinkNames();
    void takesNoUnfinishedWriteForItsOwn_data();
    void takesNoUnfinishedWriteForItsOwn();
    void keepsAFileThatIsSavedOntoItself_data();
    void keepsAFileThatIsSavedOntoItself();
    void keepsAFileThatIsSavedOntoTheTargetOfItsLink();
    void keepsAFileOfARelativeNameThatIsSavedOntoItself();
    void returnsToTheOldFileWhereTheCopyFails_data();
    void returnsToTheOldFileWhereTheCopyFails();
    void returnsToTheOldFileWhereTheDiskIsFull_data();
    void returnsToTheOldFileWhereTheDiskIsFull();
    void keepsTheTargetWhereTheDiskIsFull();
    void saysWhenTheFileToCopyIsGone();

    // Names
    void addsTheExtension_data();
    void addsTheExtension();
    void keepsTheExtensionOfAnExistingFile();
    void asksBeforeTheAddedExtensionMeetsAFile_data();
    void asksBeforeTheAddedExtensionMeetsAFile();
    void replacesAFileMetByTheAddedExtension_data();
    void replacesAFileMetByTheAddedExtension();
    void remembersTheFolder();
    void remembersTheFolderOfEachDialog_data();
    void remembersTheFolderOfEachDialog();

    // Cancel, close, vacuum
    void changesNothingOnCancel_data();
    void changesNothingOnCancel();
    void keepsTheFileWhereItsReplacementIsRefused();
    void closesTheFile();
    void doesNothingWithoutAFile();
    void vacuumsTheFile();
    void tellsThatTheVacuumFailed();
};

void MainWindowFilesTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("QSql")));
    forgetSettings();
}

namespace {

QVariant lastFolder()
{
    return QSettings().value("MainWindow/lastDBDir");
}

/// A program in which a library with one drug is open, and the tab of drugs in front.
class OpenLibrary final
{
public:
    OpenLibrary() : OpenLibrary(QString()) {}
    /// @param name by which the library is opened; empty for its usual one
    explicit OpenLibrary(const QString &name) : run({name.isEmpty() ? library.fileName() : name})
    {
        library.run("INSERT INTO Drug (Name) VALUES('Octanol')");
        run.start();
        run.tabs()->setCurrentIndex(3);
    }

    [[nodiscard]] QString folder() const { return QFileInfo(library.fileName()).absolutePath(); }
    [[nodiscard]] QString path(const QString &name) const { return library.filePath(name); }
    [[nodiscard]] QStringList files() const
    {
        return QDir(folder()).entryList(QDir::Files | QDir::Hidden);
    }

    TemporaryLibrary library;
    ProgramRun run;
};

/// The frame of a library with one drug.
QStringList drugFrame(const QString &name = QStringLiteral("library.edb"))
{
    return ProgramRun::openFrame(name + QStringLiteral(" - Vermidex"), "1 drug in the database");
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qUtf8Printable(path));
}

/// How many rows the tables hold that hold any.
QMap<QString, int> rowCounts(const QString &path)
{
    QMap<QString, int> counts;
    for (const QString &row : allRows(path))
        ++counts[row.section(QLatin1Char(':'), 0, 0)];
    return counts;
}

} // namespace

// --- New ---

void MainWindowFilesTest::createsALibraryWithTheWildType()
{
    OpenLibrary open;
    open.run.tabs()->setCurrentIndex(2);
    open.run.createFile(open.path("new.edb"));
    QCOMPARE(open.run.frame(),
             ProgramRun::openFrame("new.edb - Vermidex", "1 morphology in the database"));
    QCOMPARE(open.run.problems(), QString());
    QVERIFY(allRows(open.path("new.edb")).contains(QStringLiteral("Morphology: 1, Wild type")));
    QVERIFY(allRows(open.library.fileName()).contains(QStringLiteral("Drug: 1, Octanol")));
}

void MainWindowFilesTest::createsNothingButDefaultRowsAndTheWildType()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("new.edb");
    ProgramRun run;
    run.start();
    run.createFile(path);
    QCOMPARE(run.problems(), QString());

    const QMap<QString, int> expected = {
        {"LineOrgan", 2},   {"LineOrganType", 1}, {"Meta", 1},          {"Morphology", 1},
        {"Organ", 7},       {"Region", 3},        {"RegionParam", 8},   {"RegionType", 3},
        {"RegionsLink", 2}, {"SpotOrgan", 5},     {"SpotOrganType", 3}, {"sqlite_sequence", 1},
    };
    QCOMPARE(rowCounts(path), expected);
    const QStringList rows = allRows(path);
    const QStringList defaults = {"Meta: 2",
                                  "RegionType: 1, Head",
                                  "RegionType: 2, Trunk",
                                  "RegionType: 3, Tail",
                                  "SpotOrganType: 1, Eye",
                                  "SpotOrganType: 2, Brain",
                                  "SpotOrganType: 3, Phar.",
                                  "LineOrganType: 1, VNC"};
    for (const QString &row : defaults)
        QVERIFY2(rows.contains(row), qPrintable(row));
}

void MainWindowFilesTest::replacesAnExistingFileByANewOne()
{
    OpenLibrary open;
    writeFile(open.path("old.edb"), QByteArray("a text").repeated(10000));
    open.run.createFile(open.path("old.edb"));
    QCOMPARE(open.run.window.windowTitle(), "old.edb - Vermidex");
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(rowCounts(open.path("old.edb")).value("Morphology"), 1);
}

void MainWindowFilesTest::startsAnewInTheOpenFile()
{
    OpenLibrary open;
    open.run.createFile(open.library.fileName());
    QCOMPARE(open.run.frame(),
             ProgramRun::openFrame("library.edb - Vermidex", "No drugs in the database"));
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(rowCounts(open.library.fileName()).value("Morphology"), 1);
}

void MainWindowFilesTest::tellsThatAFileCannotBeCreated()
{
    OpenLibrary open;
    open.run.createFile(
        open.path("no folder/new.edb"),
        {{refusal("Cannot create new database file", "Unable to create a new database file."),
          QMessageBox::Cancel}});
    QCOMPARE(open.run.frame(), ProgramRun::closedFrame());
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.files(), QStringList("library.edb"));
}

// --- Open ---

void MainWindowFilesTest::opensAnotherFileInPlaceOfTheOpenOne()
{
    OpenLibrary open;
    TemporaryLibrary other;
    open.run.openFile(other.fileName());
    QCOMPARE(open.run.frame(),
             ProgramRun::openFrame("library.edb - Vermidex", "No drugs in the database"));
    QCOMPARE(open.run.problems(), QString());
}

void MainWindowFilesTest::opensTheOpenFileAnew()
{
    OpenLibrary open;
    open.library.run("INSERT INTO Drug (Name) VALUES('Praziquantel')");
    open.run.openFile(open.library.fileName());
    QCOMPARE(open.run.frame(),
             ProgramRun::openFrame("library.edb - Vermidex", "2 drugs in the database"));
    QCOMPARE(open.run.problems(), QString());
}

void MainWindowFilesTest::closesTheOpenFileWhereTheNextFails_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("gone") << false;
    QTest::newRow("no file") << true;
}

void MainWindowFilesTest::closesTheOpenFileWhereTheNextFails()
{
    QFETCH(bool, isFolder);

    OpenLibrary open;
    const QString path = open.path("next.edb");
    writeFile(path, {});
    open.run.afterFileDialog([&] {
        QFile::remove(path);
        if (isFolder)
            QDir().mkdir(path);
    });
    const auto missing =
        refusal("Cannot find database file",
                QStringLiteral("Unable to find the database file (%1).").arg(path));
    const auto noFile =
        refusal("Cannot open database", "Unable to establish a database connection.");
    open.run.openFile(path, {{isFolder ? noFile : missing, QMessageBox::Cancel}});
    QCOMPARE(open.run.frame(), ProgramRun::closedFrame());
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(QFileInfo(path).exists(), isFolder);
    QCOMPARE(open.library.count("Drug"), 1);
}

void MainWindowFilesTest::addsTheExtensionToAMissingName()
{
    OpenLibrary open;
    const QString path = open.path("worms");
    writeFile(path, {});
    QVERIFY(QFile::copy(open.library.fileName(), path + ".edb"));
    open.run.afterFileDialog([&path] { QFile::remove(path); });
    open.run.openFile(path);
    QCOMPARE(open.run.frame(), drugFrame("worms.edb"));
    QCOMPARE(open.run.problems(), QString());
}

void MainWindowFilesTest::readsTheVocabularyOfTheFile()
{
    const ExperimentFactory *vocabulary = ExperimentFactory::instance(nullptr);
    TemporaryLibrary other;
    other.run("INSERT INTO RegionType VALUES(4, 'Neck')");
    OpenLibrary open;
    QCOMPARE(vocabulary->regionTypes.size(), 3);
    open.run.openFile(other.fileName());
    QCOMPARE(vocabulary->regionTypes.size(), 4);
    QCOMPARE(vocabulary->regionTypes.last()->name(), "Neck");
    QCOMPARE(open.run.problems(), QString());
}

// --- Save as ---

void MainWindowFilesTest::continuesOnTheCopy()
{
    QByteArray before;
    QString copy;
    {
        OpenLibrary open;
        before = fileContent(open.library.fileName());
        copy = open.path("copy.edb");
        open.run.saveFileAs(copy);
        QCOMPARE(open.run.frame(), drugFrame("copy.edb"));
        QCOMPARE(open.run.problems(), QString());
        QCOMPARE(fileContent(copy), before);
        QCOMPARE(fileContent(open.library.fileName()), before);
        QCOMPARE(open.files(), QStringList({"copy.edb", "library.edb"}));

        open.library.run("DELETE FROM Drug");
        open.run.window.updateTab();
        QCOMPARE(open.run.frame(), drugFrame("copy.edb"));
    }
    QCOMPARE(QSettings().value("DB/lastFile"), copy);
}

void MainWindowFilesTest::copiesOverAnExistingFile()
{
    OpenLibrary open;
    writeFile(open.path("old.edb"), QByteArray("a text").repeated(100000));
    open.run.saveFileAs(open.path("old.edb"));
    QCOMPARE(open.run.frame(), drugFrame("old.edb"));
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(fileContent(open.path("old.edb")), fileContent(open.library.fileName()));
}

void MainWindowFilesTest::copiesOverAFileThatALinkNames()
{
    OpenLibrary open;
    writeFile(open.path("old.edb"), "a text");
    QVERIFY(QFile::link(open.path("old.edb"), open.path("link.edb")));
    open.run.saveFileAs(open.path("link.edb"));
    QCOMPARE(open.run.frame(), drugFrame("link.edb"));
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(QFile::symLinkTarget(open.path("link.edb")), open.path("old.edb"));
    QCOMPARE(fileContent(open.path("old.edb")), fileContent(open.library.fileName()));
}

namespace {

/// Makes a database at @p path, and leaves beside it what a crash in the middle of a write does.
/// @param mode journal mode of SQLite @param suffix of the file that it leaves
void leaveUnfinishedWrite(const QString &path, const QString &mode, const QString &suffix)
{
    DB db;
    if (!db.createEmptyDB(path))
        qFatal("cannot make %s", qUtf8Printable(path));
    const auto query = db.newQuery();
    const QStringList statements = {
        "PRAGMA journal_mode = " + mode,
        "PRAGMA cache_size = 1",
        "CREATE TABLE Old (Text)",
        "INSERT INTO Old WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < "
        "500) SELECT hex(randomblob(200)) FROM n",
        "BEGIN",
        "UPDATE Old SET Text = hex(randomblob(200))"};
    for (const QString &statement : statements) {
        if (!query->exec(statement))
            qFatal("cannot run %s", qUtf8Printable(statement));
    }
    const QByteArray content = fileContent(path + suffix);
    query->exec("ROLLBACK");
    query->clear();
    db.disconnect();
    writeFile(path + suffix, content);
}

} // namespace

void MainWindowFilesTest::takesNoUnfinishedWriteForItsOwn_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("name");

    QTest::newRow("journal") << "DELETE"
                             << "-journal"
                             << "old.edb";
    QTest::newRow("journal, by a link") << "DELETE"
                                        << "-journal"
                                        << "link.edb";
    QTest::newRow("log") << "WAL"
                         << "-wal"
                         << "old.edb";
    QTest::newRow("log, by a link") << "WAL"
                                    << "-wal"
                                    << "link.edb";
}

void MainWindowFilesTest::takesNoUnfinishedWriteForItsOwn()
{
    QFETCH(QString, mode);
    QFETCH(QString, suffix);
    QFETCH(QString, name);

    OpenLibrary open;
    QVERIFY(QFile::link(open.path("old.edb"), open.path("link.edb")));
    const QStringList rows = allRows(open.library.fileName());
    leaveUnfinishedWrite(open.path("old.edb"), mode, suffix);
    open.run.saveFileAs(open.path(name));
    QCOMPARE(open.run.frame(), drugFrame(name));
    QCOMPARE(allRows(open.path("old.edb")), rows);

    open.run.choose("&Close database");
    leaveUnfinishedWrite(open.path("old.edb"), mode, suffix);
    open.run.createFile(open.path(name));
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(rowCounts(open.path("old.edb")).value("Morphology"), 1);
    QCOMPARE(rowCounts(open.path("old.edb")).value("Old"), 0);
}

void MainWindowFilesTest::keepsAFileThatIsSavedOntoItself_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("the same name") << "library.edb";
    QTest::newRow("another spelling") << "sub/../library.edb";
    QTest::newRow("a symbolic link") << "symlink.edb";
    QTest::newRow("a hard link") << "hardlink.edb";
}

void MainWindowFilesTest::keepsAFileThatIsSavedOntoItself()
{
    QFETCH(QString, name);

    OpenLibrary open;
    const QByteArray original = QFile::encodeName(open.library.fileName());
    QVERIFY(QDir().mkdir(open.path("sub")));
    QVERIFY(QFile::link(open.library.fileName(), open.path("symlink.edb")));
    QCOMPARE(link(original.constData(), QFile::encodeName(open.path("hardlink.edb")).constData()),
             0);
    const QByteArray before = fileContent(open.library.fileName());

    open.run.saveFileAs(open.path(name));
    QCOMPARE(open.run.frame(), drugFrame(name.section(QLatin1Char('/'), -1)));
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(fileContent(open.library.fileName()), before);
    QVERIFY(QFileInfo(open.path("symlink.edb")).isSymLink());
    // Still one file by all its names.
    open.library.run("INSERT INTO Drug (Name) VALUES('Praziquantel')");
    QCOMPARE(fileContent(open.path("hardlink.edb")), fileContent(open.library.fileName()));
    open.run.window.updateTab();
    QCOMPARE(open.run.status(), "2 drugs in the database");
}

void MainWindowFilesTest::keepsAFileThatIsSavedOntoTheTargetOfItsLink()
{
    TemporaryLibrary library;
    QVERIFY(QFile::link(library.fileName(), library.filePath("link.edb")));
    const QByteArray before = fileContent(library.fileName());
    ProgramRun run({library.filePath("link.edb")});
    run.start();
    run.saveFileAs(library.fileName());
    QCOMPARE(run.window.windowTitle(), "library.edb - Vermidex");
    QCOMPARE(run.problems(), QString());
    QCOMPARE(fileContent(library.fileName()), before);
}

void MainWindowFilesTest::keepsAFileOfARelativeNameThatIsSavedOntoItself()
{
    TemporaryLibrary library;
    const QByteArray before = fileContent(library.fileName());
    const QString folder = QDir::currentPath();
    QDir::setCurrent(QFileInfo(library.fileName()).absolutePath());
    ProgramRun run({"library.edb"});
    run.start();
    run.saveFileAs(library.fileName());
    QDir::setCurrent(folder);
    QCOMPARE(run.window.windowTitle(), "library.edb - Vermidex");
    QCOMPARE(run.problems(), QString());
    QCOMPARE(fileContent(library.fileName()), before);
}

namespace {

ModalAnswerer::Box cannotSaveBox(const QString &path)
{
    return refusal(
        "Cannot save database",
        QStringLiteral("Unable to copy the database to %1. The database stays as it was.")
            .arg(path));
}

/// As long as it lives, no file grows beyond some bytes, as on a disk that is full.
class FullDisk final
{
public:
    explicit FullDisk(qint64 room) : oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &oldLimit);
        const rlimit limit = {static_cast<rlim_t>(room), oldLimit.rlim_max};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
            qFatal("cannot limit the size of files");
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &oldLimit);
        std::signal(SIGXFSZ, oldHandler);
    }

    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    void (*oldHandler)(int);
    rlimit oldLimit = {};
};

} // namespace

void MainWindowFilesTest::returnsToTheOldFileWhereTheCopyFails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no such folder") << "no folder/copy.edb";
    QTest::newRow("a folder that cannot be written") << "copy.edb";
}

void MainWindowFilesTest::returnsToTheOldFileWhereTheCopyFails()
{
    QFETCH(QString, name);

    OpenLibrary open;
    const QByteArray before = fileContent(open.library.fileName());
    setMode(open.folder(), 0555);
    QSettings().setValue("MainWindow/lastDBDir", QFileInfo(open.path(name)).absolutePath());
    {
        const OrdinaryUser user;
        open.run.saveFileAs(open.path(name),
                            {{cannotSaveBox(open.path(name)), QMessageBox::Cancel}});
    }
    setMode(open.folder(), 0755);
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.status(), "1 drug in the database");
    QVERIFY(open.run.window.windowTitle().startsWith(QStringLiteral("library.edb")));
    QCOMPARE(open.files(), QStringList("library.edb"));
    QCOMPARE(fileContent(open.library.fileName()), before);
}

void MainWindowFilesTest::returnsToTheOldFileWhereTheDiskIsFull_data()
{
    QTest::addColumn<bool>("lacksOneByte");
    QTest::newRow("soon") << false;
    QTest::newRow("at the last byte") << true;
}

void MainWindowFilesTest::returnsToTheOldFileWhereTheDiskIsFull()
{
    QFETCH(bool, lacksOneByte);

    OpenLibrary open;
    const QByteArray before = fileContent(open.library.fileName());
    {
        const FullDisk disk(lacksOneByte ? before.size() - 1 : 20000);
        open.run.saveFileAs(open.path("copy.edb"),
                            {{cannotSaveBox(open.path("copy.edb")), QMessageBox::Cancel}});
    }
    QCOMPARE(open.run.frame(), drugFrame());
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.files(), QStringList("library.edb"));
    QCOMPARE(fileContent(open.library.fileName()), before);
}

void MainWindowFilesTest::keepsTheTargetWhereTheDiskIsFull()
{
    OpenLibrary open;
    writeFile(open.path("old.edb"), "a text");
    {
        const FullDisk disk(20000);
        open.run.saveFileAs(open.path("old.edb"),
                            {{cannotSaveBox(open.path("old.edb")), QMessageBox::Cancel}});
    }
    QCOMPARE(open.run.frame(), drugFrame());
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.files(), QStringList({"library.edb", "old.edb"}));
    QCOMPARE(fileContent(open.path("old.edb")), QByteArray("a text"));
}

void MainWindowFilesTest::saysWhenTheFileToCopyIsGone()
{
    OpenLibrary open;
    QVERIFY(QFile::remove(open.library.fileName()));
    open.run.saveFileAs(open.path("copy.edb"),
                        {{cannotSaveBox(open.path("copy.edb")), QMessageBox::Cancel},
                         {refusal("Cannot find database file",
                                  QStringLiteral("Unable to find the database file (%1).")
                                      .arg(open.library.fileName())),
                          QMessageBox::Cancel}});
    QCOMPARE(open.run.frame(), ProgramRun::closedFrame());
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.files(), QStringList());
}

// --- Names ---

void MainWindowFilesTest::addsTheExtension_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("made");

    QTest::newRow("none") << "worms"
                          << "worms.edb";
    QTest::newRow("another") << "worms.2024"
                             << "worms.2024.edb";
    QTest::newRow("no point before it") << "wormsedb"
                                        << "wormsedb.edb";
    QTest::newRow("its own") << "worms.edb"
                             << "worms.edb";
    QTest::newRow("capitals") << "worms.EDB"
                              << "worms.EDB";
    QTest::newRow("mixed") << "worms.Edb"
                           << "worms.Edb";
}

void MainWindowFilesTest::addsTheExtension()
{
    QFETCH(QString, typed);
    QFETCH(QString, made);

    {
        OpenLibrary open;
        open.run.saveFileAs(open.path(typed));
        QCOMPARE(open.run.frame(), drugFrame(made));
        QCOMPARE(open.run.problems(), QString());
        QVERIFY(QFile::exists(open.path(made)));
        QCOMPARE(open.files().size(), 2);
    }
    const QTemporaryDir folder;
    ProgramRun run;
    run.start();
    run.createFile(folder.filePath(typed));
    QCOMPARE(run.window.windowTitle(), made + QStringLiteral(" - Vermidex"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList(made));
}

void MainWindowFilesTest::keepsTheExtensionOfAnExistingFile()
{
    OpenLibrary open;
    QVERIFY(QFile::copy(open.library.fileName(), open.path("worms.sqlite")));
    writeFile(open.path("other"), {});
    open.run.openFile(open.path("worms.sqlite"));
    QCOMPARE(open.run.frame(), drugFrame("worms.sqlite"));
    open.run.saveFileAs(open.path("other"));
    QCOMPARE(open.run.frame(), drugFrame("other"));
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.files(), QStringList({"library.edb", "other", "worms.sqlite"}));
}

namespace {

ModalAnswerer::Box replaceBox(const QString &path)
{
    return question(
        "Replace database file",
        QStringLiteral("The file %1 already exists. Do you want to replace it?").arg(path));
}

/// Creates or copies a library by the name "old", while there is a file "old.edb".
void writeOver(OpenLibrary *open, bool creates, QMessageBox::StandardButton answer)
{
    const ProgramRun::Answers answers = {{replaceBox(open->path("old.edb")), answer}};
    if (creates)
        open->run.createFile(open->path("old"), answers);
    else
        open->run.saveFileAs(open->path("old"), answers);
}

} // namespace

void MainWindowFilesTest::asksBeforeTheAddedExtensionMeetsAFile_data()
{
    QTest::addColumn<bool>("creates");
    QTest::newRow("New") << true;
    QTest::newRow("Save as") << false;
}

void MainWindowFilesTest::asksBeforeTheAddedExtensionMeetsAFile()
{
    QFETCH(bool, creates);

    OpenLibrary open;
    writeFile(open.path("old.edb"), "a text");
    writeOver(&open, creates, QMessageBox::Cancel);
    QCOMPARE(open.run.frame(), drugFrame());
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(fileContent(open.path("old.edb")), QByteArray("a text"));
}

void MainWindowFilesTest::replacesAFileMetByTheAddedExtension_data()
{
    QTest::addColumn<bool>("creates");
    QTest::addColumn<QString>("status");
    QTest::addColumn<int>("worms");
    QTest::newRow("New") << true << "No drugs in the database" << 1;
    QTest::newRow("Save as") << false << "1 drug in the database" << 0;
}

void MainWindowFilesTest::replacesAFileMetByTheAddedExtension()
{
    QFETCH(bool, creates);
    QFETCH(QString, status);

    OpenLibrary open;
    writeFile(open.path("old.edb"), "a text");
    writeOver(&open, creates, QMessageBox::Yes);
    QCOMPARE(open.run.frame(), ProgramRun::openFrame("old.edb - Vermidex", status));
    QCOMPARE(open.run.problems(), QString());
    QTEST(rowCounts(open.path("old.edb")).value("Morphology"), "worms");
}

void MainWindowFilesTest::remembersTheFolder()
{
    OpenLibrary open;
    QVERIFY(QDir().mkdir(open.path("sub")));
    QVERIFY(lastFolder().isNull());
    open.run.saveFileAs(open.path("sub/copy.edb"));
    QCOMPARE(lastFolder(), open.path("sub"));

    // The dialogs show it again, and a name without a folder is meant to lie there.
    open.run.saveFileAs("relative");
    QCOMPARE(open.run.dialogFolder(), open.path("sub"));
    QCOMPARE(open.run.frame(), drugFrame("relative.edb"));
    QVERIFY(QFile::exists(open.path("sub/relative.edb")));
    QCOMPARE(open.run.problems(), QString());
}

void MainWindowFilesTest::remembersTheFolderOfEachDialog_data()
{
    QTest::addColumn<int>("command");
    QTest::newRow("New") << 0;
    QTest::newRow("Open") << 1;
    QTest::newRow("Save as") << 2;
}

void MainWindowFilesTest::remembersTheFolderOfEachDialog()
{
    QFETCH(int, command);

    OpenLibrary open;
    const QTemporaryDir shown;
    QSettings().setValue("MainWindow/lastDBDir", shown.path());
    if (command == 0)
        open.run.createFile(open.path("new.edb"));
    else if (command == 1)
        open.run.openFile(open.library.fileName());
    else
        open.run.saveFileAs(open.path("copy.edb"));
    QCOMPARE(open.run.dialogFolder(), shown.path());
    QCOMPARE(lastFolder(), open.folder());
    QCOMPARE(open.run.problems(), QString());
}

// --- Cancel, close, vacuum ---

void MainWindowFilesTest::changesNothingOnCancel_data()
{
    remembersTheFolderOfEachDialog_data();
}

void MainWindowFilesTest::changesNothingOnCancel()
{
    QFETCH(int, command);

    OpenLibrary open;
    const QByteArray before = fileContent(open.library.fileName());
    if (command == 0)
        open.run.createFile({});
    else if (command == 1)
        open.run.openFile({});
    else
        open.run.saveFileAs({});
    QCOMPARE(open.run.frame(), drugFrame());
    QCOMPARE(open.run.problems(), QString());
    QVERIFY(lastFolder().isNull());
    QCOMPARE(open.files(), QStringList("library.edb"));
    QCOMPARE(fileContent(open.library.fileName()), before);

    open.library.run("INSERT INTO Drug (Name) VALUES('Praziquantel')");
    open.run.window.updateTab();
    QCOMPARE(open.run.status(), "2 drugs in the database");
}

void MainWindowFilesTest::keepsTheFileWhereItsReplacementIsRefused()
{
    OpenLibrary open;
    writeFile(open.path("old.edb"), "a text");
    // The file dialog asks by itself, and stays when the answer is no.
    open.run.answerer.expectDialog([&open](QDialog *dialog) {
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(open.path("old.edb"));
        dialog->accept();
    });
    open.run.answerer.expectDialog([](QDialog *box) { box->reject(); });
    open.run.answerer.expectDialog([](QDialog *dialog) { dialog->reject(); });
    open.run.choose("&Save database as...");
    QCOMPARE(open.run.frame(), drugFrame());
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(fileContent(open.path("old.edb")), QByteArray("a text"));
}

void MainWindowFilesTest::closesTheFile()
{
    OpenLibrary open;
    for (int i = 0; i < open.run.tabs()->count(); ++i)
        open.run.tabs()->setCurrentIndex(i);
    QVERIFY(open.run.tabsHoldRows());
    const qsizetype connections = QSqlDatabase::connectionNames().size();
    open.run.choose("&Close database");
    QVERIFY(!open.run.tabsHoldRows());
    QCOMPARE(open.run.frame(), ProgramRun::closedFrame());
    QCOMPARE(QSqlDatabase::connectionNames().size(), connections - 1);
    QCOMPARE(open.run.problems(), QString());
}

void MainWindowFilesTest::doesNothingWithoutAFile()
{
    ProgramRun run;
    run.start();
    run.window.saveAsDB();
    run.window.closeDB();
    run.window.vacuumDB();
    QCOMPARE(run.frame(), ProgramRun::closedFrame());
    QCOMPARE(run.problems(), QString());
}

void MainWindowFilesTest::vacuumsTheFile()
{
    OpenLibrary open;
    for (int i = 0; i < 10; ++i)
        open.library.run("INSERT INTO Drug (Name) VALUES(hex(randomblob(20000)))");
    open.library.run("DELETE FROM Drug WHERE Id > 1");
    const qint64 before = QFileInfo(open.library.fileName()).size();
    const QStringList rows = allRows(open.library.fileName());

    open.run.choose("&Vacuum database",
                    {{{"Vacuum database", "Database vacuumed successfully.", QMessageBox::Ok,
                       QMessageBox::Ok, QMessageBox::Information},
                      QMessageBox::Ok}});
    QCOMPARE(open.run.problems(), QString());
    QVERIFY(QFileInfo(open.library.fileName()).size() < before / 2);
    QCOMPARE(allRows(open.library.fileName()), rows);
    open.run.window.updateTab();
    QCOMPARE(open.run.frame(), drugFrame());
}

void MainWindowFilesTest::tellsThatTheVacuumFailed()
{
    OpenLibrary open;
    writeFile(open.library.fileName(), QByteArray("a text").repeated(10000));
    open.run.choose("&Vacuum database", {{refusal("Vacuum error", "Error during vacuum operation."),
                                          QMessageBox::Cancel}});
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.window.windowTitle(), "library.edb - Vermidex");
}

} // namespace Planaria

int main(int argc, char *argv[])
{
    return Planaria::runWindowTest<Planaria::MainWindowFilesTest>(argc, argv);
}

#include "MainWindowFilesTest.moc"
