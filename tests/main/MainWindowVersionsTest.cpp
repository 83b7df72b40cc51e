#include "BuildConfig.h"
#include "db/ExperimentFactory.h"
#include "main/OrdinaryUser.h"
#include "main/ProgramRun.h"
#include "model/Morphology.h"
#include "support/TemporaryLibrary.h"

#include <QSettings>
#include <QTabWidget>

namespace Planaria {

/// What becomes of files of other versions, of other programs, and of no kind at all.
class MainWindowVersionsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void asksAboutEveryOtherVersion_data();
    void asksAboutEveryOtherVersion();
    void leavesARefusedFileAsItIs_data() { asksAboutEveryOtherVersion_data(); }
    void leavesARefusedFileAsItIs();
    void upgradesVersion1ForGood();
    void asksAgainAboutAVersionThatItCannotMend_data();
    void asksAgainAboutAVersionThatItCannotMend();
    void showsNoFileWhileItAsks();
    void opensTheNextFileAfterARefusedOne();

    void doesNotUpgradeAReadOnlyFile_data();
    void doesNotUpgradeAReadOnlyFile();
    void opensAReadOnlyFile_data();
    void opensAReadOnlyFile();
    void forgetsReadOnlyWithTheNextFile();

    void takesInAForeignSqliteFile();
    void leavesAForeignTableOfPicturesAlone();
    void distrustsAForeignTableMeta();
    void showsNothingOfAFileThatIsNoDatabase_data();
    void showsNothingOfAFileThatIsNoDatabase();
    void leavesAFileThatIsNoDatabaseOnCancel_data() { showsNothingOfAFileThatIsNoDatabase_data(); }
    void leavesAFileThatIsNoDatabaseOnCancel();
    void makesALibraryOfSortsOfAnEmptyFile();
    void cannotOpenAFolder();
    void cannotOpenAFileThatItMayNotRead();
};

void MainWindowVersionsTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("QSql")));
    forgetSettings();
}

namespace {

ModalAnswerer::Box oldBox(int version)
{
    return question(
        "DB version old",
        QStringLiteral("The database contains an old structure (version %1). I need to update the "
                       "database structure (to version 2) to continue. No data will be lost. Do "
                       "you want to update the database?")
            .arg(version));
}

ModalAnswerer::Box oldReadOnlyBox(int version)
{
    return {"Read-only DB and version old",
            QStringLiteral("The database contains an old structure (version %1). I need to update "
                           "the database structure (to version 2) to continue. However, the "
                           "database is read only and cannot be updated. Please,  make the "
                           "database writable and try again.")
                .arg(version),
            QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Critical};
}

ModalAnswerer::Box newBox(int version)
{
    return question(
        "DB version too new",
        QStringLiteral(
            "The database contains a new structure that I may not understand (version %1). I "
            "recommend to use a new version of the program to open this database. You can download "
            "a new version of this program from <a href='%2/download'>this link</a>. The program "
            "can crash and data may become currupted if I open this database. Do you want to "
            "continue opening the database?")
            .arg(version)
            .arg(QLatin1String(BuildConfig::website)));
}

ModalAnswerer::Box corruptBox()
{
    return question("DB version error",
                    "The database version is corrupt. The program may encounter errors using this "
                    "database. Do you want to continue?");
}

/// A library with a worm and a drug in it, made to look like another version's.
class OtherVersion final
{
public:
    explicit OtherVersion(const QStringList &statements)
    {
        ExperimentFactory::instance(nullptr)->createAndSaveWildMorphology(library.db());
        library.run("INSERT INTO Drug (Name) VALUES('Octanol')");
        for (const QString &statement : statements)
            library.run(statement);
        // Whoever the test runs as may look into the folder.
        setMode(QFileInfo(fileName()).absolutePath(), 0755);
    }

    void makeReadOnly() const { setMode(fileName(), 0444); }
    [[nodiscard]] QString fileName() const { return library.fileName(); }
    [[nodiscard]] QStringList rows() const { return allRows(library.fileName()); }

    TemporaryLibrary library;
};

const QStringList toVersion1 = {QStringLiteral("DROP TABLE Meta"),
                                QStringLiteral("DROP TABLE MorphologyImage")};

QStringList toVersion(const QString &version)
{
    return {QStringLiteral("UPDATE Meta SET DBStructVer = ") + version};
}

/// What the window shows of an OtherVersion that was opened on the tab of morphologies.
QStringList openedFrame()
{
    return ProgramRun::openFrame("library.edb - Vermidex", "1 morphology in the database");
}

QString writeFile(const QTemporaryDir &folder, const QByteArray &content)
{
    QFile file(folder.filePath("library.edb"));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qUtf8Printable(file.fileName()));
    return file.fileName();
}

/// An SQLite file of another program.
QString makeForeignFile(const QTemporaryDir &folder, const QStringList &statements)
{
    const QString path = folder.filePath("library.edb");
    DB db;
    if (!db.createEmptyDB(path))
        qFatal("cannot make %s", qUtf8Printable(path));
    for (const QString &statement : statements) {
        if (!db.newQuery()->exec(statement))
            qFatal("cannot run %s", qUtf8Printable(statement));
    }
    return path;
}

} // namespace

// --- Other versions ---
void MainWindowVersionsTest::asksAboutEveryOtherVersion_data()
{
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<ModalAnswerer::Box>("box");
    QTest::addColumn<QStringList>("upgrade");

    QTest::newRow("1") << toVersion1 << oldBox(1) << QStringList("Meta: 2");
    QTest::newRow("1 by its number") << toVersion("1") << oldBox(1) << QStringList("Meta: 2");
    QTest::newRow("0") << toVersion("0") << oldBox(0) << QStringList();
    QTest::newRow("-5") << toVersion("-5") << oldBox(-5) << QStringList();
    QTest::newRow("no number") << toVersion("'two'") << oldBox(0) << QStringList();
    QTest::newRow("3") << toVersion("3") << newBox(3) << QStringList();
    QTest::newRow("1000") << toVersion("1000") << newBox(1000) << QStringList();
    QTest::newRow("-1") << toVersion("-1") << corruptBox() << QStringList();
    QTest::newRow("none") << QStringList("DELETE FROM Meta") << corruptBox() << QStringList();
}

void MainWindowVersionsTest::asksAboutEveryOtherVersion()
{
    QFETCH(QStringList, statements);
    QFETCH(ModalAnswerer::Box, box);
    QFETCH(QStringList, upgrade);

    OtherVersion file(statements);
    QStringList expected = file.rows() + upgrade;
    expected.sort();

    ProgramRun run;
    run.start();
    run.tabs()->setCurrentIndex(2);
    run.openFile(file.fileName(), {{box, QMessageBox::Yes}});
    QCOMPARE(run.frame(), openedFrame());
    QCOMPARE(run.problems(), QString());
    QCOMPARE(file.rows(), expected);
    QCOMPARE(file.library.brokenReferences(), QStringList());
}

void MainWindowVersionsTest::leavesARefusedFileAsItIs()
{
    QFETCH(QStringList, statements);
    QFETCH(ModalAnswerer::Box, box);

    const OtherVersion file(statements);
    const QByteArray before = fileContent(file.fileName());
    {
        ProgramRun run;
        run.start();
        run.openFile(file.fileName(), {{box, QMessageBox::Cancel}});
        QCOMPARE(run.frame(), ProgramRun::closedFrame());
        QCOMPARE(run.problems(), QString());
    }
    QCOMPARE(fileContent(file.fileName()), before);
    QCOMPARE(QSettings().value("DB/lastFile"), "");
}

void MainWindowVersionsTest::upgradesVersion1ForGood()
{
    OtherVersion file(toVersion1);
    {
        ProgramRun run({file.fileName()});
        run.start({{oldBox(1), QMessageBox::Yes}});
        QCOMPARE(run.problems(), QString());
    }
    QCOMPARE(file.library.value("SELECT DBStructVer FROM Meta").toInt(), 2);
    QCOMPARE(file.library.count("MorphologyImage"), 0);

    ProgramRun next;
    next.start();
    QCOMPARE(next.window.windowTitle(), "library.edb - Vermidex");
    QCOMPARE(next.problems(), QString());
}

void MainWindowVersionsTest::asksAgainAboutAVersionThatItCannotMend_data()
{
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<ModalAnswerer::Box>("box");

    QTest::newRow("none") << QStringList("DELETE FROM Meta") << corruptBox();
    QTest::newRow("0") << toVersion("0") << oldBox(0);
    QTest::newRow("3") << toVersion("3") << newBox(3);
}

void MainWindowVersionsTest::asksAgainAboutAVersionThatItCannotMend()
{
    QFETCH(QStringList, statements);
    QFETCH(ModalAnswerer::Box, box);

    const OtherVersion file(statements);
    for (int i = 0; i < 2; ++i) {
        ProgramRun run({file.fileName()});
        run.start({{box, QMessageBox::Yes}});
        QCOMPARE(run.window.windowTitle(), "library.edb - Vermidex");
        QCOMPARE(run.problems(), QString());
    }
}

void MainWindowVersionsTest::showsNoFileWhileItAsks()
{
    const OtherVersion file({});
    const OtherVersion next(toVersion("3"));
    ProgramRun run({file.fileName()});
    run.start();
    QVERIFY(run.tabsHoldRows());
    QStringList frame;
    bool holdsRows = true;
    run.afterFileDialog([&] {
        run.answerer.expectDialog([&](QDialog *box) {
            frame = run.frame();
            holdsRows = run.tabsHoldRows();
            box->reject();
        });
    });
    run.openFile(next.fileName());
    QCOMPARE(frame, ProgramRun::closedFrame());
    QVERIFY(!holdsRows);
    QCOMPARE(run.problems(), QString());
}

void MainWindowVersionsTest::opensTheNextFileAfterARefusedOne()
{
    const OtherVersion refused(toVersion("3"));
    const OtherVersion file({});
    ProgramRun run({refused.fileName()});
    run.start({{newBox(3), QMessageBox::Cancel}});
    run.tabs()->setCurrentIndex(2);
    run.openFile(file.fileName());
    QCOMPARE(run.frame(), openedFrame());
    QCOMPARE(run.problems(), QString());
}

// --- Read-only files ---

void MainWindowVersionsTest::doesNotUpgradeAReadOnlyFile_data()
{
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<int>("version");

    QTest::newRow("1") << toVersion1 << 1;
    QTest::newRow("0") << toVersion("0") << 0;
    QTest::newRow("-5") << toVersion("-5") << -5;
}

void MainWindowVersionsTest::doesNotUpgradeAReadOnlyFile()
{
    QFETCH(QStringList, statements);
    QFETCH(int, version);

    const OtherVersion file(statements);
    file.makeReadOnly();
    const QByteArray before = fileContent(file.fileName());
    ProgramRun run({file.fileName()});
    {
        const OrdinaryUser user;
        run.start({{oldReadOnlyBox(version), QMessageBox::Ok}});
    }
    QCOMPARE(run.frame(), ProgramRun::closedFrame());
    QCOMPARE(run.problems(), QString());
    QCOMPARE(fileContent(file.fileName()), before);
}

void MainWindowVersionsTest::opensAReadOnlyFile_data()
{
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<ProgramRun::Answers>("answers");

    QTest::newRow("2") << QStringList() << ProgramRun::Answers();
    QTest::newRow("3") << toVersion("3") << ProgramRun::Answers{{newBox(3), QMessageBox::Yes}};
    QTest::newRow("none") << QStringList("DELETE FROM Meta")
                          << ProgramRun::Answers{{corruptBox(), QMessageBox::Yes}};
}

void MainWindowVersionsTest::opensAReadOnlyFile()
{
    QFETCH(QStringList, statements);
    QFETCH(ProgramRun::Answers, answers);

    const OtherVersion file(statements);
    file.makeReadOnly();
    ProgramRun run({file.fileName()});
    {
        const OrdinaryUser user;
        run.start(answers);
    }
    run.tabs()->setCurrentIndex(2);
    QCOMPARE(run.frame(), ProgramRun::openFrame("library.edb (read only) - Vermidex",
                                                "1 morphology in the database"));
    QCOMPARE(run.problems(), QString());
}

void MainWindowVersionsTest::forgetsReadOnlyWithTheNextFile()
{
    const OtherVersion readOnly({});
    readOnly.makeReadOnly();
    const OtherVersion file(toVersion1);
    ProgramRun run({readOnly.fileName()});
    {
        const OrdinaryUser user;
        run.start();
    }
    run.openFile(file.fileName(), {{oldBox(1), QMessageBox::Yes}});
    QCOMPARE(run.window.windowTitle(), "library.edb - Vermidex");
    QCOMPARE(run.problems(), QString());
}

// --- Other files ---

void MainWindowVersionsTest::takesInAForeignSqliteFile()
{
    const QTemporaryDir folder;
    const QString path =
        makeForeignFile(folder, {"CREATE TABLE Bill (Sum INTEGER)", "INSERT INTO Bill VALUES(12)"});
    {
        ProgramRun run({path});
        run.start({{oldBox(1), QMessageBox::Yes}});
        QCOMPARE(run.frame(),
                 ProgramRun::openFrame("library.edb - Vermidex", "No experiments in the database"));
        QCOMPARE(run.problems(), QString());
    }
    QCOMPARE(allRows(path), QStringList({"Bill: 12", "Meta: 2"}));
    DB db;
    QCOMPARE(db.connect(path, false), int(DB::Opened));
    QVERIFY(db.exist("MorphologyImage"));
}

void MainWindowVersionsTest::leavesAForeignTableOfPicturesAlone()
{
    const QTemporaryDir folder;
    const QString path =
        makeForeignFile(folder, {"CREATE TABLE MorphologyImage (Name TEXT, Size INTEGER)",
                                 "INSERT INTO MorphologyImage VALUES('cat', 7)"});
    ProgramRun run({path});
    run.start({{oldBox(1), QMessageBox::Yes}});
    QCOMPARE(run.window.windowTitle(), "library.edb - Vermidex");
    QCOMPARE(run.problems(), QString());
    QCOMPARE(allRows(path), QStringList({"Meta: 2", "MorphologyImage: cat, 7"}));
}

void MainWindowVersionsTest::distrustsAForeignTableMeta()
{
    const QTemporaryDir folder;
    const QString path = makeForeignFile(
        folder, {"CREATE TABLE Meta (Word TEXT)", "INSERT INTO Meta VALUES('mine')"});
    ProgramRun run({path});
    run.start({{corruptBox(), QMessageBox::Yes}});
    QCOMPARE(run.window.windowTitle(), "library.edb - Vermidex");
    QCOMPARE(run.problems(), QString());
    QCOMPARE(allRows(path), QStringList("Meta: mine"));
}

void MainWindowVersionsTest::showsNothingOfAFileThatIsNoDatabase_data()
{
    QTest::addColumn<QByteArray>("content");

    const OtherVersion library({});
    const QByteArray whole = fileContent(library.fileName());
    QTest::newRow("a line of text") << QByteArray("no database\n");
    QTest::newRow("a long text") << QByteArray("no database\n").repeated(1000);
    QTest::newRow("half a library") << whole.left(whole.size() / 2);
    QTest::newRow("the first page of a library") << whole.left(4096);
    QTest::newRow("half a header") << whole.left(50);
}

void MainWindowVersionsTest::showsNothingOfAFileThatIsNoDatabase()
{
    QFETCH(QByteArray, content);

    const QTemporaryDir folder;
    const QString path = writeFile(folder, content);
    ProgramRun run({path});
    run.start({{oldBox(1), QMessageBox::Yes}});
    QCOMPARE(run.frame(),
             ProgramRun::openFrame("library.edb - Vermidex", "No experiments in the database"));
    run.tabs()->setCurrentIndex(2);
    QCOMPARE(run.status(), "No morphologies in the database");
    run.answerer.expectDialog([](QDialog *dialog) { dialog->reject(); });
    run.choose("Morphology list viewer");
    QCOMPARE(run.problems(), QString());
    QCOMPARE(fileContent(path), content);
}

void MainWindowVersionsTest::leavesAFileThatIsNoDatabaseOnCancel()
{
    QFETCH(QByteArray, content);

    const QTemporaryDir folder;
    const QString path = writeFile(folder, content);
    ProgramRun run({path});
    run.start({{oldBox(1), QMessageBox::Cancel}});
    QCOMPARE(run.frame(), ProgramRun::closedFrame());
    QCOMPARE(run.problems(), QString());
    QCOMPARE(fileContent(path), content);
}

void MainWindowVersionsTest::makesALibraryOfSortsOfAnEmptyFile()
{
    const QTemporaryDir folder;
    const QString path = writeFile(folder, {});
    {
        ProgramRun run({path});
        run.start({{oldBox(1), QMessageBox::Cancel}});
        QCOMPARE(run.frame(), ProgramRun::closedFrame());
        QCOMPARE(run.problems(), QString());
        QCOMPARE(fileContent(path), QByteArray());
    }
    ProgramRun run({path});
    run.start({{oldBox(1), QMessageBox::Yes}});
    QCOMPARE(run.frame(),
             ProgramRun::openFrame("library.edb - Vermidex", "No experiments in the database"));
    QCOMPARE(run.problems(), QString());
    QCOMPARE(allRows(path), QStringList("Meta: 2"));
}

namespace {

const ModalAnswerer::Box cannotOpenBox =
    refusal(QStringLiteral("Cannot open database"),
            QStringLiteral("Unable to establish a database connection."));

} // namespace

void MainWindowVersionsTest::cannotOpenAFolder()
{
    const QTemporaryDir folder;
    ProgramRun run({folder.path()});
    run.start({{cannotOpenBox, QMessageBox::Cancel}});
    QCOMPARE(run.frame(), ProgramRun::closedFrame());
    QCOMPARE(run.problems(), QString());
}

void MainWindowVersionsTest::cannotOpenAFileThatItMayNotRead()
{
    const OtherVersion file({});
    setMode(file.fileName(), 0);
    ProgramRun run({file.fileName()});
    {
        const OrdinaryUser user;
        run.start({{cannotOpenBox, QMessageBox::Cancel}});
    }
    QCOMPARE(run.frame(), ProgramRun::closedFrame());
    QCOMPARE(run.problems(), QString());
}

} // namespace Planaria

int main(int argc, char *argv[])
{
    return Planaria::runWindowTest<Planaria::MainWindowVersionsTest>(argc, argv);
}

#include "MainWindowVersionsTest.moc"
