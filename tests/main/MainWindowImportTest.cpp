#include "BuildConfig.h"
#include "import/OpenImporter.h"
#include "main/OrdinaryUser.h"
#include "main/ProgramRun.h"
#include "support/TemporaryLibrary.h"

#include <QSettings>

namespace Planaria {

/// The command that merges another library into the open one.
class MainWindowImportTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void opensTheImporterOverTheWindow();
    void importsTheChosenFile();
    void countsWhatIsNewInTheTabInFront();
    void importsOneFileAfterAnother();
    void changesNothingOnCancel_data();
    void changesNothingOnCancel();
    void remembersTheFolder();

    void tellsThatTheFileIsMissing();
    void tellsThatTheFileCannotBeOpened();
    void tellsThatAFileIsLocked_data();
    void tellsThatAFileIsLocked();
    void readsAFileThatAnotherProgramReads();

    void asksAboutOtherVersions_data();
    void asksAboutOtherVersions();
    void leavesARefusedFileAsItIs_data() { asksAboutOtherVersions_data(); }
    void leavesARefusedFileAsItIs();
    void upgradesAnOldFileAndImportsIt();
    void upgradesNothingFromAReadOnlyLibrary();
    void importsNothingFromAFileThatCannotBeUpgraded();

    void findsNothingToImportInTheOpenFile();
    void tellsThatAFileIsNoDatabase_data();
    void tellsThatAFileIsNoDatabase();
    void findsEverythingMissingInAnEmptyFile();
    void tellsThatAReadOnlyLibraryTakesNothingIn();
};

void MainWindowImportTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("QSql")));
    forgetSettings();
}

namespace {

/// A program with a library that holds one drug, on the tab of drugs, and another library with two
/// drugs more.
class OpenLibrary final
{
public:
    OpenLibrary()
    {
        library.run("INSERT INTO Drug (Name) VALUES('Octanol')");
        other.run("INSERT INTO Drug (Name) VALUES('Heptanol'), ('Hexanol'), ('Octanol')");
        run.start();
        run.tabs()->setCurrentIndex(3);
    }

    [[nodiscard]] QStringList rows() const { return allRows(library.fileName()); }

    TemporaryLibrary library;
    TemporaryLibrary other;
    ProgramRun run{{library.fileName()}};
};

QStringList drugFrame(const QString &status)
{
    return ProgramRun::openFrame("library.edb - Vermidex", status);
}

void pressOk(QDialog *dialog)
{
    ImporterParts(dialog).press(QDialogButtonBox::Ok);
}

void pressCancel(QDialog *dialog)
{
    ImporterParts(dialog).press(QDialogButtonBox::Cancel);
}

} // namespace

// --- The command ---

void MainWindowImportTest::opensTheImporterOverTheWindow()
{
    OpenLibrary open;
    QStringList seen;
    open.run.importFile(open.other.fileName(), {}, [&](QDialog *dialog) {
        seen = {QLatin1String(dialog->metaObject()->className()), dialog->windowTitle()};
        seen += ImporterParts(dialog).rows();
        if (dialog->parentWidget() != &open.run.window || !dialog->isModal())
            seen += "elsewhere";
        pressCancel(dialog);
    });
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(seen, QStringList({"Planaria::LibraryImporterForm",
                                "Import data: library.edb -> library.edb", "3, 1: +Heptanol",
                                "3, 1: +Hexanol"}));
}

void MainWindowImportTest::importsTheChosenFile()
{
    OpenLibrary open;
    const QStringList source = allRows(open.other.fileName());
    open.run.importFile(open.other.fileName(), {}, [](QDialog *dialog) {
        ImporterParts(dialog).click(ImportKind::Drugs, ImportList::Added, "Hexanol");
        pressOk(dialog);
    });
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("2 drugs in the database"));
    QCOMPARE(open.rows().filter(QRegularExpression("^Drug:")),
             QStringList({"Drug: 1, Octanol", "Drug: 2, Heptanol"}));
    QCOMPARE(allRows(open.other.fileName()), source);
    QCOMPARE(open.library.brokenReferences(), QStringList());
}

void MainWindowImportTest::countsWhatIsNewInTheTabInFront()
{
    OpenLibrary open;
    open.run.tabs()->setCurrentIndex(5);
    open.other.run("INSERT INTO Species (Name) VALUES('Dugesia')");
    open.run.importFile(open.other.fileName(), {}, pressOk);
    QCOMPARE(open.run.status(), "1 Species in the database");
    open.run.tabs()->setCurrentIndex(3);
    QCOMPARE(open.run.status(), "3 drugs in the database");
    QCOMPARE(open.run.problems(), QString());
}

void MainWindowImportTest::importsOneFileAfterAnother()
{
    OpenLibrary open;
    TemporaryLibrary third;
    third.run("INSERT INTO Drug (Name) VALUES('Colchicine')");
    open.run.importFile(open.other.fileName(), {}, pressOk);
    open.run.importFile(third.fileName(), {}, pressOk);
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("4 drugs in the database"));
}

void MainWindowImportTest::changesNothingOnCancel_data()
{
    QTest::addColumn<bool>("inFileDialog");
    QTest::newRow("file dialog") << true;
    QTest::newRow("importer") << false;
}

void MainWindowImportTest::changesNothingOnCancel()
{
    QFETCH(const bool, inFileDialog);
    OpenLibrary open;
    const QStringList before = open.rows();
    if (inFileDialog)
        open.run.importFile(QString());
    else
        open.run.importFile(open.other.fileName(), {}, pressCancel);
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("1 drug in the database"));
    QCOMPARE(open.rows(), before);
}

void MainWindowImportTest::remembersTheFolder()
{
    OpenLibrary open;
    open.run.importFile(open.other.fileName(), {}, pressCancel);
    QCOMPARE(QSettings().value("MainWindow/lastDBDir").toString(),
             QFileInfo(open.other.fileName()).absolutePath());
    open.run.importFile(QString());
    QCOMPARE(open.run.dialogFolder(), QFileInfo(open.other.fileName()).absolutePath());
}

// --- Files that cannot be read ---

void MainWindowImportTest::tellsThatTheFileIsMissing()
{
    OpenLibrary open;
    const QString path = open.library.filePath("gone.edb");
    QVERIFY(QFile::copy(open.other.fileName(), path));
    open.run.afterFileDialog([&] { QFile::remove(path); });
    open.run.importFile(
        path, {{refusal("Cannot find database file",
                        QStringLiteral("Unable to find the database file (%1).").arg(path)),
                QMessageBox::Cancel}});
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("1 drug in the database"));
    QVERIFY(!QFile::exists(path));
}

void MainWindowImportTest::tellsThatTheFileCannotBeOpened()
{
    OpenLibrary open;
    const QString path = open.other.fileName();
    setMode(QFileInfo(path).absolutePath(), 0755);
    {
        const OrdinaryUser user;
        open.run.afterFileDialog([&] {
            seteuid(0);
            setMode(path, 0);
            seteuid(65534);
        });
        open.run.importFile(
            path, {{refusal("Cannot open database", "Unable to establish a database connection."),
                    QMessageBox::Cancel}});
    }
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("1 drug in the database"));
}

void MainWindowImportTest::tellsThatAFileIsLocked_data()
{
    QTest::addColumn<bool>("other");
    QTest::newRow("the one to import") << true;
    QTest::newRow("the open one") << false;
}

void MainWindowImportTest::tellsThatAFileIsLocked()
{
    QFETCH(const bool, other);
    OpenLibrary open;
    TemporaryLibrary &locked = other ? open.other : open.library;
    locked.run("BEGIN EXCLUSIVE");
    open.run.importFile(
        open.other.fileName(),
        {{refusal("Database is locked",
                  QStringLiteral("Another program is using the database file (%1). Please, try "
                                 "again later.")
                      .arg(locked.fileName())),
          QMessageBox::Cancel}});
    locked.run("ROLLBACK");
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("1 drug in the database"));

    open.run.importFile(open.other.fileName(), {}, pressOk);
    QCOMPARE(open.run.frame(), drugFrame("3 drugs in the database"));
}

void MainWindowImportTest::readsAFileThatAnotherProgramReads()
{
    OpenLibrary open;
    open.other.run("BEGIN");
    QCOMPARE(open.other.count("Drug"), 3);
    open.run.importFile(open.other.fileName(), {}, pressOk);
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("3 drugs in the database"));
}

// --- Other versions ---

namespace {

const QStringList toVersion1 = {QStringLiteral("DROP TABLE Meta"),
                                QStringLiteral("DROP TABLE MorphologyImage")};

ModalAnswerer::Box oldBox()
{
    return question("DB version old",
                    "The database contains an old structure (version 1). I need to update the "
                    "database structure (to version 2) to continue. No data will be lost. Do you "
                    "want to update the database?");
}

ModalAnswerer::Box notUpdated(const QString &path)
{
    return refusal("Cannot update database",
                   QStringLiteral("Unable to update the structure of the database file (%1). "
                                  "Nothing can be imported from it.")
                       .arg(path));
}

} // namespace

void MainWindowImportTest::asksAboutOtherVersions_data()
{
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<ModalAnswerer::Box>("box");
    QTest::newRow("old") << toVersion1 << oldBox();
    QTest::newRow("corrupt") << QStringList("DELETE FROM Meta")
                             << question("DB version error",
                                         "The database version is corrupt. The program may "
                                         "encounter errors using this database. Do you want to "
                                         "continue?");
    QTest::newRow("new")
        << QStringList("UPDATE Meta SET DBStructVer = 3")
        << question(
               "DB version too new",
               QStringLiteral(
                   "The database contains a new structure that I may not understand (version 3). I "
                   "recommend to use a new version of the program to open this database. You can "
                   "download a new version of this program from <a href='%1/download'>this "
                   "link</a>. The program can crash and data may become currupted if I open this "
                   "database. Do you want to continue opening the database?")
                   .arg(QLatin1String(BuildConfig::website)));
}

void MainWindowImportTest::asksAboutOtherVersions()
{
    QFETCH(QStringList, statements);
    QFETCH(ModalAnswerer::Box, box);
    OpenLibrary open;
    for (const QString &statement : statements)
        open.other.run(statement);
    open.run.importFile(open.other.fileName(), {{box, QMessageBox::Yes}}, pressOk);
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("3 drugs in the database"));
}

void MainWindowImportTest::leavesARefusedFileAsItIs()
{
    QFETCH(QStringList, statements);
    QFETCH(ModalAnswerer::Box, box);
    OpenLibrary open;
    for (const QString &statement : statements)
        open.other.run(statement);
    const QByteArray before = fileContent(open.other.fileName());
    open.run.importFile(open.other.fileName(), {{box, QMessageBox::Cancel}});
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("1 drug in the database"));
    QCOMPARE(fileContent(open.other.fileName()), before);
}

void MainWindowImportTest::upgradesAnOldFileAndImportsIt()
{
    OpenLibrary open;
    for (const QString &statement : toVersion1)
        open.other.run(statement);
    QStringList expected = allRows(open.other.fileName()) + QStringList("Meta: 2");
    expected.sort();
    open.run.importFile(open.other.fileName(), {{oldBox(), QMessageBox::Yes}}, pressOk);
    QCOMPARE(allRows(open.other.fileName()), expected);
    // The second time there is nothing to ask.
    open.run.importFile(open.other.fileName(), {}, pressOk);
    QCOMPARE(open.run.problems(), QString());
}

void MainWindowImportTest::upgradesNothingFromAReadOnlyLibrary()
{
    TemporaryLibrary library;
    TemporaryLibrary other;
    for (const QString &statement : toVersion1)
        other.run(statement);
    const QStringList before = allRows(other.fileName());
    for (const QString &file : {library.fileName(), other.fileName()})
        setMode(QFileInfo(file).absolutePath(), 0755);
    setMode(library.fileName(), 0444);
    ProgramRun run({library.fileName()});
    {
        const OrdinaryUser user;
        run.start();
        run.importFile(
            other.fileName(),
            {{{"Read-only DB and version old",
               "The database contains an old structure (version 1). I need to update the database "
               "structure (to version 2) to continue. However, the database is read only and "
               "cannot be updated. Please,  make the database writable and try again.",
               QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Critical},
              QMessageBox::Ok}});
    }
    QCOMPARE(run.problems(), QString());
    QCOMPARE(allRows(other.fileName()), before);
}

void MainWindowImportTest::importsNothingFromAFileThatCannotBeUpgraded()
{
    OpenLibrary open;
    for (const QString &statement : toVersion1)
        open.other.run(statement);
    const QStringList before = open.rows();
    for (const QString &file : {open.library.fileName(), open.other.fileName()})
        setMode(QFileInfo(file).absolutePath(), 0755);
    setMode(open.library.fileName(), 0666);
    setMode(open.other.fileName(), 0444);
    {
        const OrdinaryUser user;
        open.run.importFile(open.other.fileName(),
                            {{oldBox(), QMessageBox::Yes},
                             {notUpdated(open.other.fileName()), QMessageBox::Cancel}});
    }
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("1 drug in the database"));
    QCOMPARE(open.rows(), before);
}

// --- Odd choices ---

void MainWindowImportTest::findsNothingToImportInTheOpenFile()
{
    OpenLibrary open;
    const QStringList before = open.rows();
    QStringList rows("not seen");
    open.run.importFile(open.library.fileName(), {}, [&](QDialog *dialog) {
        rows = ImporterParts(dialog).rows();
        pressOk(dialog);
    });
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(rows, QStringList());
    QCOMPARE(open.run.frame(), drugFrame("1 drug in the database"));
    QCOMPARE(open.rows(), before);
}

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qUtf8Printable(path));
}

} // namespace

void MainWindowImportTest::tellsThatAFileIsNoDatabase_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("text") << QByteArray("a text").repeated(10000);
    QTest::newRow("a header alone") << QByteArray("SQLite format 3\0", 16).repeated(99);
}

void MainWindowImportTest::tellsThatAFileIsNoDatabase()
{
    QFETCH(const QByteArray, content);
    OpenLibrary open;
    const QString path = open.library.filePath("text.edb");
    writeFile(path, content);
    const QStringList before = open.rows();
    open.run.importFile(path,
                        {{oldBox(), QMessageBox::Yes}, {notUpdated(path), QMessageBox::Cancel}});
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(open.run.frame(), drugFrame("1 drug in the database"));
    QCOMPARE(open.rows(), before);
    QCOMPARE(fileContent(path), content);
}

void MainWindowImportTest::findsEverythingMissingInAnEmptyFile()
{
    OpenLibrary open;
    const QString path = open.library.filePath("empty.edb");
    writeFile(path, {});
    const QStringList before = open.rows();
    QStringList rows;
    open.run.importFile(path, {{oldBox(), QMessageBox::Yes}}, [&](QDialog *dialog) {
        rows = ImporterParts(dialog).rows();
        pressOk(dialog);
    });
    QCOMPARE(open.run.problems(), QString());
    QCOMPARE(rows, QStringList("3, 2: -Octanol"));
    QCOMPARE(open.rows(), before);
}

void MainWindowImportTest::tellsThatAReadOnlyLibraryTakesNothingIn()
{
    TemporaryLibrary library;
    TemporaryLibrary other;
    other.run("INSERT INTO Drug (Name) VALUES('Heptanol')");
    for (const QString &file : {library.fileName(), other.fileName()})
        setMode(QFileInfo(file).absolutePath(), 0755);
    setMode(library.fileName(), 0444);
    ProgramRun run({library.fileName()});
    const OrdinaryUser user;
    run.start();
    run.tabs()->setCurrentIndex(3);
    run.importFile(other.fileName(), {}, [&](QDialog *dialog) {
        run.answerer.expectBox(
            {"Import error",
             "Unable to write \"Heptanol\" into the database file (library.edb). Nothing was "
             "imported.",
             QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::Critical},
            QMessageBox::Cancel);
        pressOk(dialog);
        pressCancel(dialog);
    });
    QCOMPARE(run.problems(), QString());
    QCOMPARE(run.status(), "No drugs in the database");
}

} // namespace Planaria

int main(int argc, char *argv[])
{
    return Planaria::runWindowTest<Planaria::MainWindowImportTest>(argc, argv);
}

#include "MainWindowImportTest.moc"
