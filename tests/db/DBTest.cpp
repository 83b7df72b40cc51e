#include "db/DB.h"

#include "PlainSqlite.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace Planaria;

namespace {

using MakeQuery = std::function<std::unique_ptr<QSqlQuery>()>;
using MakeModel = std::function<std::unique_ptr<QSqlQueryModel>()>;
using MakeCursor = std::function<std::shared_ptr<RowCursor>()>;
using Values = QHash<QString, QVariant>;
using Joins = QHash<QString, QString>;

QList<int> ids(QSqlQuery *query)
{
    QList<int> all;
    while (query->next())
        all += query->value(0).toInt();
    return all;
}

QList<int> ids(const QSqlQueryModel *model)
{
    QList<int> all;
    for (int row = 0; row < model->rowCount(); ++row)
        all += model->data(model->index(row, 0)).toInt();
    return all;
}

QStringList headers(const QSqlQueryModel *model)
{
    QStringList all;
    for (int column = 0; column < model->columnCount(); ++column)
        all += model->headerData(column, Qt::Horizontal).toString();
    return all;
}

} // namespace

class DBTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Connection
    void opensAFile();
    void makesNoFileOfAMissingOne();
    void tellsOfAFileThatCannotBeOpened();
    void closesTheFormerFileBeforeItOpensAnother();
    void closesTheFormerFileAlsoWhereTheNewOneIsMissing();
    void closesTheFileWithItsObject();
    void setsThePragmasOfItsMode_data();
    void setsThePragmasOfItsMode();
    void enforcesReferencesInNormalModeOnly();
    void worksOnTwoFilesSideBySide();
    void startsEachConnectionOutsideOfATransaction();
    void makesAnEmptyFileOfAnyFile();
    void saysWhereNoEmptyFileCanBeMade();
    void saysThatAFileCannotBeEmptiedThoughItOpens();
    void vacuumsTheFile();
    void vacuumsInNoTransaction();

    // Transactions
    void commitsAtTheOutermostEnd();
    void showsNothingToOthersBeforeTheCommit();
    void endsNoTransactionThatDidNotBegin();
    void rollsBackAllLevelsAtOnce();
    void rollsBackNothingWhereNothingIsOpen();
    void commitsEachStatementByItselfAfterAnInnerRollback();
    void rollsBackACommitThatFails();
    void tellsOfABeginThatFails();
    void tellsOfARollbackThatFails();

    // Queries and models
    void runsTheStatementOfAQuery_data();
    void runsTheStatementOfAQuery();
    void givesAnIdleQuery();
    void givesNoRowsForAStatementThatFails();
    void runsTheStatementOfAModel_data();
    void runsTheStatementOfAModel();
    void runsTheStatementOfACursor_data();
    void runsTheStatementOfACursor();
    void joinsTablesThatATableReferences();
    void leavesOutRowsWithoutTheirJoinedRow();
    void readsModelsToTheirEnd();
    void bringsAModelUpToDate();
    void findsTheRowOfAnId();

    // Rows
    void insertsARow();
    void tellsNoIdThatDoesNotFitAnElement();
    void insertsValuesUnderTheirColumns();
    void insertsValuesUnchanged_data();
    void insertsValuesUnchanged();
    void insertsARowOfDefaults();
    void insertsNoDefaultsWhereAColumnHasNone();
    void givesNoIdForAnInsertThatFails();
    void ignoresARowThatIsThereWhereAsked();
    void updatesARow();
    void updatesSeveralColumns();
    void updatesNothingWithoutValues();
    void tellsOfAnUpdateThatFails();
    void removesARow();
    void removesNoRowThatIsReferenced();
    void keepsTheErrorOfTheLastFailure();

    // Inspection
    void knowsItsTables();
    void looksForAValue_data();
    void looksForAValue();
    void countsRows();

    // Bulk deletion
    void emptiesTablesInTheirOrder();
    void keepsRowsThatAreReferenced();
    void emptiesTablesThatReferenceEachOther();

private:
    static int count(DB *db) { return db->getNumRows("Drug"); }

    StatementLog log;
    std::unique_ptr<TemporaryLibrary> library;
    DB *db = nullptr;
};

void DBTest::init()
{
    QTest::failOnWarning(QRegularExpression("."));
    library = std::make_unique<TemporaryLibrary>();
    db = library->db();
    log.take();
}

void DBTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
    QVERIFY(!db->inTransaction());
    library.reset();
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
}

// --- Connection ---

void DBTest::opensAFile()
{
    DB other;
    QVERIFY(!other.isConnected());
    QCOMPARE(other.connect(library->fileName(), false), 0);
    QVERIFY(other.isConnected());
    QVERIFY(other.exist("Drug"));

    other.disconnect();
    QVERIFY(!other.isConnected());
    other.disconnect();
    QVERIFY(!other.isConnected());
}

void DBTest::makesNoFileOfAMissingOne()
{
    const QString name = library->filePath("missing.edb");
    DB other;
    QCOMPARE(other.connect(name, false), 2);
    QVERIFY(!other.isConnected());
    QVERIFY(!QFileInfo::exists(name));
}

void DBTest::tellsOfAFileThatCannotBeOpened()
{
    DB other;
    const QString folder = library->filePath(".");
    QCOMPARE(other.connect(folder, false), 1);
    QVERIFY(!other.isConnected());
    QVERIFY2(other.lastError().contains("unable to open"), qPrintable(other.lastError()));

    QCOMPARE(other.connect(folder, false), 1);
    QCOMPARE(other.connect(library->fileName(), false), 0);
    QCOMPARE(QSqlDatabase::connectionNames().size(), 2);
}

void DBTest::closesTheFormerFileBeforeItOpensAnother()
{
    DB other;
    QVERIFY(other.createEmptyDB(library->filePath("other.edb")));
    const QStringList before = QSqlDatabase::connectionNames();
    QCOMPARE(other.connect(library->fileName(), false), 0);

    QVERIFY(other.exist("Drug"));
    QCOMPARE(QSqlDatabase::connectionNames().size(), 2);
    QVERIFY(QSqlDatabase::connectionNames() != before);
}

void DBTest::closesTheFormerFileAlsoWhereTheNewOneIsMissing()
{
    DB other;
    QCOMPARE(other.connect(library->fileName(), false), 0);
    QCOMPARE(other.connect(library->filePath("missing.edb"), false), 2);
    QVERIFY(!other.isConnected());
    QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
}

void DBTest::closesTheFileWithItsObject()
{
    auto other = std::make_unique<DB>();
    QCOMPARE(other->connect(library->fileName(), false), 0);
    QCOMPARE(QSqlDatabase::connectionNames().size(), 2);
    other.reset();
    QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
}

void DBTest::setsThePragmasOfItsMode_data()
{
    QTest::addColumn<bool>("fastMode");
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<QList<int>>("settings"); // foreign_keys, temp_store, synchronous

    QTest::newRow("fast") << true
                          << QStringList({"PRAGMA foreign_keys = false;", "PRAGMA temp_store = 2;",
                                          "PRAGMA synchronous = 0;"})
                          << QList<int>({0, 2, 0});
    QTest::newRow("normal") << false << QStringList("PRAGMA foreign_keys = true;")
                            << QList<int>({1, 0, 2});
}

void DBTest::setsThePragmasOfItsMode()
{
    QFETCH(const bool, fastMode);
    DB other;
    QCOMPARE(other.connect(library->fileName(), fastMode), 0);
    QTEST(log.take(), "statements");

    QList<int> settings;
    for (const char *pragma : {"foreign_keys", "temp_store", "synchronous"})
        settings += ids(other.newQuery(QStringLiteral("PRAGMA ") + pragma).get());
    QTEST(settings, "settings");
}

void DBTest::enforcesReferencesInNormalModeOnly()
{
    const Values nowhere{{"Morphology", 7}};
    QCOMPARE(db->insertRow("MorphologyAction", nowhere, false), 0);

    DB other;
    QCOMPARE(other.connect(library->fileName(), true), 0);
    QCOMPARE(other.insertRow("MorphologyAction", nowhere, false), 1);
    QVERIFY(other.removeRow("MorphologyAction", 1));
}

void DBTest::worksOnTwoFilesSideBySide()
{
    TemporaryLibrary second;
    QVERIFY(db->beginTransaction());
    QVERIFY(second.db()->beginTransaction());
    QCOMPARE(db->insertRow("Drug", {{"Name", "praziquantel"}}, false), 1);
    QCOMPARE(second.db()->insertRow("Drug", {{"Name", "octanol"}}, false), 1);
    QVERIFY(second.db()->rollbackTransaction());
    QVERIFY(db->endTransaction());

    QCOMPARE(PlainSqlite(library->fileName()).dump(QString("Drug")),
             QStringList("1 'praziquantel'"));
    QCOMPARE(PlainSqlite(second.fileName()).dump(QString("Drug")), QStringList());
}

void DBTest::startsEachConnectionOutsideOfATransaction()
{
    DB other;
    QCOMPARE(other.connect(library->fileName(), false), 0);
    QVERIFY(other.beginTransaction());
    QCOMPARE(other.insertRow("Drug", {{"Name", "lost"}}, false), 1);
    QCOMPARE(other.connect(library->fileName(), false), 0);

    QVERIFY(!other.inTransaction());
    QCOMPARE(count(&other), 0);
    QVERIFY(other.beginTransaction());
    QVERIFY(other.endTransaction());
}

void DBTest::makesAnEmptyFileOfAnyFile()
{
    DB other;
    const QString name = library->filePath("other.edb");
    QVERIFY(other.createEmptyDB(name));
    QCOMPARE(QFileInfo(name).size(), 0);
    other.newQuery("CREATE TABLE Old (Id)");
    QVERIFY(QFileInfo(name).size() > 0);

    QVERIFY(other.createEmptyDB(name));
    QCOMPARE(QFileInfo(name).size(), 0);
    QVERIFY(other.isConnected());
    QVERIFY(!other.exist("Old"));
    QCOMPARE(ids(other.newQuery("PRAGMA foreign_keys").get()), QList<int>({1}));
}

void DBTest::saysWhereNoEmptyFileCanBeMade()
{
    DB other;
    QVERIFY(!other.createEmptyDB(library->filePath("missing/other.edb")));
    QVERIFY(!other.isConnected());
    QVERIFY(!other.createEmptyDB(library->filePath(".")));
    QVERIFY(!other.isConnected());
}

/// The system lets no one write to a program that runs, root included.
void DBTest::saysThatAFileCannotBeEmptiedThoughItOpens()
{
    const QString name = library->filePath("sleeper");
    QVERIFY(QFile::copy("/bin/sleep", name));
    QProcess sleeper;
    sleeper.start(name, {"60"});
    QVERIFY(sleeper.waitForStarted());

    DB other;
    QVERIFY(!other.createEmptyDB(name));
    QVERIFY(other.isConnected());
    QVERIFY(QFileInfo(name).size() > 0);
    sleeper.kill();
    QVERIFY(sleeper.waitForFinished());
}

void DBTest::vacuumsTheFile()
{
    library->run("INSERT INTO Drug VALUES(1, hex(zeroblob(100000)))");
    QVERIFY(db->removeRow("Drug", 1));
    const qint64 size = QFileInfo(library->fileName()).size();
    log.take();

    QVERIFY(db->vacuum());
    QCOMPARE(log.take().first(), QString("VACUUM"));
    QVERIFY(QFileInfo(library->fileName()).size() < size - 100000);
}

void DBTest::vacuumsInNoTransaction()
{
    QVERIFY(db->beginTransaction());
    QVERIFY(!db->vacuum());
    QVERIFY(db->rollbackTransaction());
}

// --- Transactions ---

void DBTest::commitsAtTheOutermostEnd()
{
    QVERIFY(db->beginTransaction());
    QVERIFY(db->beginTransaction());
    QCOMPARE(log.take(), QStringList("BEGIN TRANSACTION;"));
    QVERIFY(db->endTransaction());
    QVERIFY(db->inTransaction());
    QCOMPARE(log.take(), QStringList());
    QVERIFY(db->endTransaction());
    QVERIFY(!db->inTransaction());
    QCOMPARE(log.take(), QStringList("COMMIT;"));
}

void DBTest::showsNothingToOthersBeforeTheCommit()
{
    PlainSqlite outside(library->fileName());
    QVERIFY(db->beginTransaction());
    QVERIFY(db->beginTransaction());
    QCOMPARE(db->insertRow("Drug", {{"Name", "octanol"}}, false), 1);
    QVERIFY(db->endTransaction());
    QCOMPARE(count(db), 1);
    QCOMPARE(outside.count("Drug"), 0);

    QVERIFY(db->endTransaction());
    QCOMPARE(outside.count("Drug"), 1);
}

void DBTest::endsNoTransactionThatDidNotBegin()
{
    QVERIFY(!db->endTransaction());
    QVERIFY(!db->endTransaction());
    QVERIFY(!db->inTransaction());
    QCOMPARE(log.take(), QStringList());

    QVERIFY(db->beginTransaction());
    QVERIFY(db->endTransaction());
    QCOMPARE(log.take(), QStringList({"BEGIN TRANSACTION;", "COMMIT;"}));
}

void DBTest::rollsBackAllLevelsAtOnce()
{
    PlainSqlite outside(library->fileName());
    QVERIFY(db->beginTransaction());
    library->run("INSERT INTO Drug VALUES(1, 'octanol')");
    QVERIFY(db->beginTransaction());
    log.take();

    QVERIFY(db->rollbackTransaction());
    QVERIFY(!db->inTransaction());
    QVERIFY(!db->endTransaction());
    QVERIFY(db->rollbackTransaction());
    QCOMPARE(log.take(), QStringList("ROLLBACK;"));
    QCOMPARE(count(db), 0);
    QCOMPARE(outside.count("Drug"), 0);
}

void DBTest::rollsBackNothingWhereNothingIsOpen()
{
    QVERIFY(db->rollbackTransaction());
    QVERIFY(!db->inTransaction());
    QCOMPARE(log.take(), QStringList());
}

void DBTest::commitsEachStatementByItselfAfterAnInnerRollback()
{
    PlainSqlite outside(library->fileName());
    QVERIFY(db->beginTransaction());
    QVERIFY(db->beginTransaction());
    QVERIFY(db->rollbackTransaction());
    QCOMPARE(db->insertRow("Drug", {{"Name", "octanol"}}, false), 1);
    QCOMPARE(outside.count("Drug"), 1);
    QVERIFY(!db->endTransaction());
    QCOMPARE(outside.count("Drug"), 1);
}

void DBTest::rollsBackACommitThatFails()
{
    PlainSqlite outside(library->fileName());
    QVERIFY(db->beginTransaction());
    QCOMPARE(db->insertRow("RemoveAction", {{"FromAction", 7}}, false), 1);
    log.take();

    QVERIFY(!db->endTransaction());
    QCOMPARE(log.take(), QStringList({"COMMIT;", "ROLLBACK;"}));
    QVERIFY(!db->inTransaction());
    QVERIFY2(db->lastError().contains("FOREIGN KEY constraint failed"),
             qPrintable(db->lastError()));
    QCOMPARE(db->getNumRows("RemoveAction"), 0);

    QVERIFY(db->beginTransaction());
    QCOMPARE(db->insertRow("Drug", {{"Name", "octanol"}}, false), 1);
    QVERIFY(db->endTransaction());
    QCOMPARE(outside.count("Drug"), 1);
}

void DBTest::tellsOfABeginThatFails()
{
    library->run("BEGIN");
    QVERIFY(!db->beginTransaction());
    QVERIFY(db->inTransaction());
    QVERIFY(db->endTransaction());
    QVERIFY(!db->inTransaction());
}

void DBTest::tellsOfARollbackThatFails()
{
    QVERIFY(db->beginTransaction());
    library->run("COMMIT");
    QVERIFY(!db->rollbackTransaction());
    QVERIFY(!db->inTransaction());
}

// --- Queries and models ---

namespace {

void addPublications(TemporaryLibrary *library)
{
    library->run("INSERT INTO Publication(Title, Year) VALUES "
                 "('b', 1999), ('c', 2001), ('a', 1999), ('d', NULL)");
}

} // namespace

void DBTest::runsTheStatementOfAQuery_data()
{
    QTest::addColumn<MakeQuery>("make");
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QList<int>>("found");

    const auto row = [](const char *tag, const MakeQuery &make, const char *statement,
                        const QList<int> &found) {
        QTest::newRow(tag) << make << QString(statement) << found;
    };
    row("text", [this] { return db->newQuery("SELECT Id FROM Publication WHERE Year > 2000"); },
        "SELECT Id FROM Publication WHERE Year > 2000", {2});
    row("text and value",
        [this] { return db->newQuery("SELECT Id FROM Publication WHERE Title = ?", "c"); },
        "SELECT Id FROM Publication WHERE Title = ?", {2});
    row("text and values",
        [this] {
            return db->newQuery("SELECT Id FROM Publication WHERE Year = ? AND Title < ?",
                                QList<QVariant>({1999, "b"}));
        },
        "SELECT Id FROM Publication WHERE Year = ? AND Title < ?", {3});
    row("text and no values",
        [this] { return db->newQuery("SELECT * FROM Publication", QList<QVariant>()); },
        "SELECT * FROM Publication", {1, 2, 3, 4});
    row("table", [this] { return db->newTableQuery("Publication"); }, "SELECT * FROM Publication",
        {1, 2, 3, 4});
    row("row", [this] { return db->newTableQuery("Publication", 3); },
        "SELECT * FROM Publication WHERE Id = 3", {3});
    row("column", [this] { return db->newTableQuery("Publication", "Year", 1999); },
        "SELECT * FROM Publication WHERE Publication.Year = 1999", {1, 3});
    row("ordered column",
        [this] { return db->newTableQuery("Publication", "Year", 1999, "Title"); },
        "SELECT * FROM Publication WHERE Publication.Year = 1999 ORDER BY Title", {3, 1});
}

void DBTest::runsTheStatementOfAQuery()
{
    QFETCH(const MakeQuery, make);
    QFETCH(const QString, statement);
    addPublications(library.get());
    log.take();

    const auto query = make();
    QCOMPARE(query->lastQuery(), statement);
    QCOMPARE(log.take(), QStringList(statement));
    QVERIFY(query->isActive());
    QCOMPARE(query->at(), int(QSql::BeforeFirstRow));
    QTEST(ids(query.get()), "found");
}

void DBTest::givesAnIdleQuery()
{
    const auto query = db->newQuery();
    QVERIFY(!query->isActive());
    QCOMPARE(log.take(), QStringList());
    QVERIFY(query->exec("SELECT Id FROM SpotOrganType"));
    QCOMPARE(ids(query.get()), QList<int>({1, 2, 3}));
}

void DBTest::givesNoRowsForAStatementThatFails()
{
    QVERIFY(!db->newTableQuery("NoTable")->next());
    QVERIFY(!db->newQuery("SELECT * FROM NoTable WHERE Id = ?", 1)->next());
    const auto model = db->newTableModel("NoTable");
    QVERIFY(model);
    QCOMPARE(model->rowCount(), 0);
    QCOMPARE(db->getNumRows("NoTable"), 0);
    QVERIFY(!db->exist("NoTable", "Id", 1));
    QCOMPARE(db->existId("NoTable", "Id", 1), 0);
}

void DBTest::runsTheStatementOfAModel_data()
{
    QTest::addColumn<MakeModel>("make");
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QList<int>>("found");

    const auto row = [](const char *tag, const MakeModel &make, const char *statement,
                        const QList<int> &found) {
        QTest::newRow(tag) << make << QString(statement) << found;
    };
    row("table", [this] { return db->newTableModel("Publication"); }, "SELECT * FROM Publication",
        {1, 2, 3, 4});
    row("ordered table", [this] { return db->newTableModel("Publication", "Title DESC"); },
        "SELECT * FROM Publication ORDER BY Title DESC", {4, 2, 1, 3});
    row("row", [this] { return db->newTableModel("Publication", 3); },
        "SELECT * FROM Publication WHERE Publication.Id = 3", {3});
    row("column", [this] { return db->newTableModel("Publication", "Year", 1999); },
        "SELECT * FROM Publication WHERE Publication.Year = 1999", {1, 3});
    row("ordered column",
        [this] { return db->newTableModel("Publication", "Year", 1999, "Title"); },
        "SELECT * FROM Publication WHERE Publication.Year = 1999 ORDER BY Title", {3, 1});
    row("no joins", [this] { return db->newTableModel("Publication", Joins()); },
        "SELECT Publication.* FROM Publication", {1, 2, 3, 4});
    row("text", [this] { return db->newModel("SELECT Id FROM Publication WHERE Id < 3"); },
        "SELECT Id FROM Publication WHERE Id < 3", {1, 2});
    row("text and value",
        [this] { return db->newModel("SELECT Id FROM Publication WHERE Title = ?", "c"); },
        "SELECT Id FROM Publication WHERE Title = ?", {2});
    row("text and values",
        [this] {
            return db->newModel("SELECT Id FROM Publication WHERE Year = ? AND Title < ?",
                                QList<QVariant>({1999, "b"}));
        },
        "SELECT Id FROM Publication WHERE Year = ? AND Title < ?", {3});
}

void DBTest::runsTheStatementOfAModel()
{
    QFETCH(const MakeModel, make);
    QFETCH(const QString, statement);
    addPublications(library.get());
    log.take();

    const auto model = make();
    QCOMPARE(model->query().lastQuery(), statement);
    QCOMPARE(log.take(), QStringList(statement));
    QCOMPARE(model->parent(), nullptr);
    QTEST(ids(model.get()), "found");
}

void DBTest::runsTheStatementOfACursor_data()
{
    QTest::addColumn<MakeCursor>("make");
    QTest::addColumn<QString>("statement");

    const auto row = [](const char *tag, const MakeCursor &make, const char *statement) {
        QTest::newRow(tag) << make << QString(statement);
    };
    row(
        "row", [this] { return db->rowCursor("Region", 3); }, "SELECT * FROM Region WHERE Id = 3");
    row(
        "children", [this] { return db->childCursor("Region", "Morphology", 7); },
        "SELECT * FROM Region WHERE Region.Morphology = 7");
    row(
        "ordered children",
        [this] { return db->childCursor("RegionParam", "Region", 7, "ParamInd"); },
        "SELECT * FROM RegionParam WHERE RegionParam.Region = 7 ORDER BY ParamInd");
    row(
        "children through a table between",
        [this] { return db->joinCursor("RegionsLink", "FromRegion", "Region", "Morphology", 7); },
        "SELECT DISTINCT RegionsLink.* FROM RegionsLink INNER JOIN Region ON "
        "RegionsLink.FromRegion = Region.Id WHERE Region.Morphology = 7;");
}

void DBTest::runsTheStatementOfACursor()
{
    QFETCH(const MakeCursor, make);
    QFETCH(const QString, statement);
    QVERIFY(!make()->next());
    QCOMPARE(log.take(), QStringList(statement));
}

void DBTest::joinsTablesThatATableReferences()
{
    PlainSqlite(library->fileName()).fillEmptyTables();
    library->run("UPDATE Species SET Name = 'Dugesia japonica'");

    const auto one = db->newTableModel("Experiment", Joins{{"Species", "Name"}});
    QCOMPARE(one->query().lastQuery(),
             QString("SELECT Experiment.*, Species.Name AS 'Species Name' FROM Experiment "
                     "INNER JOIN Species ON Experiment.Species = Species.Id"));
    QCOMPARE(headers(one.get()),
             QStringList({"Id", "Name", "Manipulation", "Publication", "Species", "Species Name"}));
    QCOMPARE(one->data(one->index(0, 5)).toString(), QString("Dugesia japonica"));

    const auto two =
        db->newTableModel("Experiment", Joins{{"Species", "Name"}, {"Publication", "Title"}});
    QCOMPARE(two->query().lastQuery(),
             QString("SELECT Experiment.*, Publication.Title AS 'Publication Title', "
                     "Species.Name AS 'Species Name' FROM Experiment "
                     "INNER JOIN Publication ON Experiment.Publication = Publication.Id "
                     "INNER JOIN Species ON Experiment.Species = Species.Id"));
    QCOMPARE(two->rowCount(), 1);
}

void DBTest::leavesOutRowsWithoutTheirJoinedRow()
{
    library->run("INSERT INTO Morphology VALUES(1, 'worm')");
    library->run("INSERT INTO MorphologyAction VALUES(1, 1), (2, 1)");
    library->run("PRAGMA foreign_keys = false");
    library->run("UPDATE MorphologyAction SET Morphology = 9 WHERE Id = 1");

    QCOMPARE(ids(db->newTableModel("MorphologyAction", Joins{{"Morphology", "Name"}}).get()),
             QList<int>({2}));
    QVERIFY(db->removeRow("MorphologyAction", 1));
}

void DBTest::readsModelsToTheirEnd()
{
    library->run("WITH RECURSIVE n(i) AS (SELECT 1 UNION SELECT i + 1 FROM n WHERE i < 1000) "
                 "INSERT INTO Drug SELECT i, 'drug ' || i FROM n");

    const std::unique_ptr<QSqlQueryModel> models[] = {
        db->newTableModel("Drug"),
        db->newModel("SELECT * FROM Drug"),
        db->newModel("SELECT * FROM Drug WHERE Id > ?", 0),
    };
    for (const auto &model : models) {
        QVERIFY(!model->canFetchMore());
        QCOMPARE(model->rowCount(), 1000);
    }

    QSqlQueryModel lazy;
    lazy.setQuery(std::move(*db->newTableQuery("Drug")));
    QVERIFY(lazy.rowCount() < 1000);
    DB::fetchAllData(&lazy);
    QCOMPARE(lazy.rowCount(), 1000);
}

void DBTest::bringsAModelUpToDate()
{
    const auto model = db->newTableModel("Drug", "Name");
    library->run("WITH RECURSIVE n(i) AS (SELECT 1 UNION SELECT i + 1 FROM n WHERE i < 600) "
                 "INSERT INTO Drug SELECT i, 'drug ' || (1000 - i) FROM n");
    QCOMPARE(model->rowCount(), 0);
    const QSignalSpy resets(model.get(), &QSqlQueryModel::modelReset);
    const QSignalSpy insertions(model.get(), &QSqlQueryModel::rowsInserted);
    log.take();

    db->updateModel(model.get());
    QCOMPARE(log.take(), QStringList("SELECT * FROM Drug ORDER BY Name"));
    QCOMPARE(resets.size(), 1); // and not a portion after the other
    QCOMPARE(insertions.size(), 0);
    QCOMPARE(model->rowCount(), 600);
    QCOMPARE(ids(model.get()).first(), 600);
}

void DBTest::findsTheRowOfAnId()
{
    library->run("INSERT INTO Drug VALUES(3, 'a'), (30, 'c'), (7, 'b')");
    const auto model = db->newTableModel("Drug", "Name");
    QCOMPARE(DB::getModelIdRow(model.get(), 3), 0);
    QCOMPARE(DB::getModelIdRow(model.get(), 7), 1);
    QCOMPARE(DB::getModelIdRow(model.get(), 30), 2);
    QCOMPARE(DB::getModelIdRow(model.get(), 4), -1);
    QCOMPARE(DB::getModelIdRow(db->newTableModel("Species").get(), 1), -1);
}

// --- Rows ---

void DBTest::insertsARow()
{
    QCOMPARE(db->insertRow("Drug", {{"Name", "octanol"}}, false), 1);
    QCOMPARE(log.take(), QStringList("INSERT INTO Drug (Name) VALUES (?) "));
    QCOMPARE(db->insertRow("Drug", {{"Name", "nocodazole"}}, true), 2);
    QCOMPARE(log.take(), QStringList("INSERT OR IGNORE INTO Drug (Name) VALUES (?) "));
    QCOMPARE(PlainSqlite(library->fileName()).dump(QString("Drug")),
             QStringList({"1 'octanol'", "2 'nocodazole'"}));
}

void DBTest::tellsNoIdThatDoesNotFitAnElement()
{
    library->run("INSERT INTO Drug VALUES(4294967296, 'far')");
    QCOMPARE(db->insertRow("Drug", {{"Name", "farther"}}, false), 0);
    QCOMPARE(db->existId("Drug", "Name", "far"), 0);
}

void DBTest::insertsValuesUnderTheirColumns()
{
    const Values values{{"Title", "A title"}, {"URL", "a://url"}, {"Year", 1999}};
    QCOMPARE(db->insertRow("Publication", values, false), 1);
    QCOMPARE(log.take(), QStringList("INSERT INTO Publication (" + values.keys().join(", ") +
                                     ") VALUES (?, ?, ?) "));
    QCOMPARE(PlainSqlite(library->fileName()).dump(QString("Publication")),
             QStringList("1 'A title' 'a://url' 1999"));
}

void DBTest::insertsValuesUnchanged_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("stored");

    QTest::newRow("statement") << QVariant("'); DROP TABLE Drug; --")
                               << "''); DROP TABLE Drug; --'";
    QTest::newRow("placeholders") << QVariant("? :a %1 %2") << "'? :a %1 %2'";
    QTest::newRow("letters of all kinds")
        << QVariant("Dugèsia \u03b2 \U0001f41b") << "'Dugèsia \u03b2 \U0001f41b'";
    QTest::newRow("empty text") << QVariant("") << "''";
    QTest::newRow("null text") << QVariant(QString()) << "NULL";
    QTest::newRow("nothing") << QVariant() << "NULL";
    QTest::newRow("digits") << QVariant("007") << "'007'";
}

void DBTest::insertsValuesUnchanged()
{
    QFETCH(const QVariant, value);
    QFETCH(const QString, stored);
    QCOMPARE(db->insertRow("RNAi", {{"Name", "a"}, {"BlockedMechanism", value}}, false), 1);
    QCOMPARE(PlainSqlite(library->fileName()).dump(QString("RNAi")),
             QStringList("1 'a' " + stored));
}

void DBTest::insertsARowOfDefaults()
{
    for (const bool orIgnore : {false, true}) {
        log.take();
        QVERIFY(db->insertRow("Meta", Values(), orIgnore) > 1);
        QCOMPARE(log.take(), QStringList("INSERT INTO Meta DEFAULT VALUES"));
    }
    QCOMPARE(PlainSqlite(library->fileName()).dump(QString("Meta")),
             QStringList({"2", "NULL", "NULL"}));
}

void DBTest::insertsNoDefaultsWhereAColumnHasNone()
{
    for (const QString &table : PlainSqlite(library->fileName()).tables()) {
        if (table == "Meta")
            continue;
        const int rows = db->getNumRows(table);
        QVERIFY2(db->insertRow(table, Values(), false) < 1, qPrintable(table));
        QCOMPARE(db->getNumRows(table), rows);
    }
}

void DBTest::givesNoIdForAnInsertThatFails()
{
    QCOMPARE(db->insertRow("Drug", {{"Name", "octanol"}}, false), 1);
    QCOMPARE(db->insertRow("Drug", {{"Name", "octanol"}}, false), 0);
    QCOMPARE(db->insertRow("Drug", {{"Name", QVariant()}}, false), 0);
    QCOMPARE(db->insertRow("Drug", {{"NoColumn", 1}}, false), 0);
    QCOMPARE(db->insertRow("NoTable", {{"Name", 1}}, false), 0);
    QCOMPARE(
        db->insertRow("RegionParam", {{"Region", 7}, {"ParamInd", 0}, {"Value", qQNaN()}}, false),
        0);
    QCOMPARE(count(db), 1);
}

void DBTest::ignoresARowThatIsThereWhereAsked()
{
    QCOMPARE(db->insertRow("Drug", {{"Name", "octanol"}}, true), 1);
    QCOMPARE(db->insertRow("Drug", {{"Name", "octanol"}}, true), 0);
    QCOMPARE(db->insertRow("Drug", {{"Name", "nocodazole"}}, true), 2);
}

void DBTest::updatesARow()
{
    library->run("INSERT INTO Drug VALUES(1, 'a'), (2, 'b')");
    log.take();
    QVERIFY(db->updateRow("Drug", 2, {{"Name", "c"}}));
    QCOMPARE(log.take(), QStringList("UPDATE Drug SET Name=? WHERE Id=2"));
    QVERIFY(db->updateRow("Drug", 7, {{"Name", "d"}}));
    QCOMPARE(PlainSqlite(library->fileName()).dump(QString("Drug")),
             QStringList({"1 'a'", "2 'c'"}));
}

void DBTest::updatesSeveralColumns()
{
    library->run("INSERT INTO Publication VALUES(1, 'a', NULL, NULL)");
    log.take();
    const Values values{{"Title", "A title"}, {"URL", "a://url"}, {"Year", 1999}};
    QVERIFY(db->updateRow("Publication", 1, values));
    QCOMPARE(log.take(),
             QStringList("UPDATE Publication SET " + values.keys().join("=?, ") + "=? WHERE Id=1"));
    QCOMPARE(PlainSqlite(library->fileName()).dump(QString("Publication")),
             QStringList("1 'A title' 'a://url' 1999"));
}

void DBTest::updatesNothingWithoutValues()
{
    QVERIFY(db->updateRow("Drug", 1, Values()));
    QVERIFY(db->updateRow("NoTable", 1, Values()));
    QCOMPARE(log.take(), QStringList());
}

void DBTest::tellsOfAnUpdateThatFails()
{
    library->run("INSERT INTO Drug VALUES(1, 'a'), (2, 'b')");
    QVERIFY(!db->updateRow("Drug", 2, {{"Name", "a"}}));
    QVERIFY(!db->updateRow("Drug", 2, {{"Name", QVariant()}}));
    QVERIFY(!db->updateRow("Drug", 2, {{"NoColumn", "c"}}));
    QVERIFY(!db->updateRow("NoTable", 2, {{"Name", "c"}}));
    QCOMPARE(PlainSqlite(library->fileName()).dump(QString("Drug")),
             QStringList({"1 'a'", "2 'b'"}));
}

void DBTest::removesARow()
{
    library->run("INSERT INTO Drug VALUES(1, 'a'), (2, 'b')");
    log.take();
    QVERIFY(db->removeRow("Drug", 1));
    QCOMPARE(log.take(), QStringList("DELETE FROM Drug WHERE Id=1"));
    QVERIFY(db->removeRow("Drug", 1));
    QCOMPARE(PlainSqlite(library->fileName()).dump(QString("Drug")), QStringList("2 'b'"));
}

void DBTest::removesNoRowThatIsReferenced()
{
    PlainSqlite(library->fileName()).fillEmptyTables();
    QVERIFY(!db->removeRow("Drug", 1));
    QCOMPARE(count(db), 1);
    QVERIFY(!db->removeRow("NoTable", 1));
}

void DBTest::keepsTheErrorOfTheLastFailure()
{
    const auto says = [this](const char *text) {
        return db->lastError().contains(QLatin1String(text));
    };
    library->run("INSERT INTO Drug VALUES(1, 'a')");
    QCOMPARE(db->insertRow("Drug", {{"Name", "a"}}, false), 0);
    QVERIFY2(says("UNIQUE constraint failed: Drug.Name"), qPrintable(db->lastError()));
    QVERIFY(!db->updateRow("Drug", 1, {{"NoColumn", "c"}}));
    QVERIFY2(says("no such column: NoColumn"), qPrintable(db->lastError()));
    QCOMPARE(db->insertRow("NoTable", {{"Name", "a"}}, false), 0);
    QVERIFY2(says("no such table: NoTable"), qPrintable(db->lastError()));
    QVERIFY(!db->removeRow("NoOtherTable", 1));
    QVERIFY2(says("no such table: NoOtherTable"), qPrintable(db->lastError()));
}

// --- Inspection ---

void DBTest::knowsItsTables()
{
    QVERIFY(db->exist("Drug"));
    QCOMPARE(log.take(),
             QStringList("SELECT name FROM sqlite_master WHERE type='table' AND name='Drug'"));
    QVERIFY(!db->exist("drug"));
    QVERIFY(!db->exist("NoTable"));
    library->run("CREATE VIEW Aview AS SELECT * FROM Drug");
    QVERIFY(!db->exist("Aview"));
}

void DBTest::looksForAValue_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("id");

    QTest::newRow("text") << QVariant("wnt") << 2;
    QTest::newRow("text in other letters") << QVariant("WNT") << 0;
    QTest::newRow("number") << QVariant(12) << 3;
    QTest::newRow("absent") << QVariant("notum") << 0;
    QTest::newRow("empty text") << QVariant(QString("")) << 5;
    QTest::newRow("nothing") << QVariant() << 4;
    QTest::newRow("null number") << QVariant(QMetaType::fromType<int>()) << 4;
    QTest::newRow("null text") << QVariant(QString()) << 4;
}

void DBTest::looksForAValue()
{
    QFETCH(const QVariant, value);
    QFETCH(const int, id);
    library->run("INSERT INTO RNAi VALUES(2, 'a', 'wnt'), (3, 'b', '12'), (4, 'c', NULL), "
                 "(5, 'd', ''), (6, 'e', 'wnt'), (7, 'f', NULL)");
    log.take();

    QCOMPARE(db->exist("RNAi", "BlockedMechanism", value), id > 0);
    QCOMPARE(db->existId("RNAi", "BlockedMechanism", value), id);

    const bool null = id == 4;
    QCOMPARE(log.take(),
             QStringList({null ? "SELECT COUNT(*) FROM RNAi WHERE BlockedMechanism IS null"
                               : "SELECT COUNT(BlockedMechanism) FROM RNAi WHERE "
                                 "BlockedMechanism=?",
                          null ? "SELECT RNAi.Id FROM RNAi WHERE BlockedMechanism IS null"
                               : "SELECT RNAi.Id FROM RNAi WHERE BlockedMechanism=?"}));

    library->run("DELETE FROM RNAi");
    QVERIFY(!db->exist("RNAi", "BlockedMechanism", value));
    QCOMPARE(db->existId("RNAi", "BlockedMechanism", value), 0);
}

void DBTest::countsRows()
{
    QCOMPARE(db->getNumRows("Drug"), 0);
    QCOMPARE(db->getNumRows("RegionType"), 3);
    QCOMPARE(log.take(),
             QStringList({"SELECT COUNT(*) FROM Drug", "SELECT COUNT(*) FROM RegionType"}));
}

// --- Bulk deletion ---

void DBTest::emptiesTablesInTheirOrder()
{
    PlainSqlite(library->fileName()).fillEmptyTables();
    db->emptyTables({"ExperimentDrug", "Drug"});
    QCOMPARE(log.take(), QStringList({"DELETE FROM ExperimentDrug", "DELETE FROM Drug"}));
    QCOMPARE(db->getNumRows("ExperimentDrug"), 0);
    QCOMPARE(db->getNumRows("Drug"), 0);
    QCOMPARE(db->getNumRows("ExperimentRNAi"), 1);
}

void DBTest::keepsRowsThatAreReferenced()
{
    PlainSqlite(library->fileName()).fillEmptyTables();
    db->emptyTables({"Drug", "NoTable", "ExperimentDrug"});
    QCOMPARE(db->getNumRows("Drug"), 1);
    QCOMPARE(db->getNumRows("ExperimentDrug"), 0);
}

void DBTest::emptiesTablesThatReferenceEachOther()
{
    PlainSqlite(library->fileName()).fillEmptyTables();
    db->emptyTables({"ResultantMorphology", "ResultSet", "ExperimentDrug", "ExperimentRNAi",
                     "Experiment", "Manipulation", "RemoveActionAreaPoint", "CropActionAreaPoint",
                     "IrradiationActionAreaPoint"});
    const QStringList circle{"ManipulationAction", "MorphologyAction", "RemoveAction",
                             "CropAction",         "JoinAction",       "IrradiationAction"};
    db->emptyTables(circle);
    QCOMPARE(db->getNumRows("ManipulationAction"), 1);
    log.take();

    db->emptyTablesNoKeys(circle);
    QStringList statements{"PRAGMA foreign_keys = false;"};
    for (const QString &table : circle)
        statements += "DELETE FROM " + table;
    QCOMPARE(log.take(), statements + QStringList("PRAGMA foreign_keys = true;"));
    for (const QString &table : circle)
        QCOMPARE(db->getNumRows(table), 0);
    QCOMPARE(db->insertRow("MorphologyAction", {{"Morphology", 7}}, false), 0);
}

QTEST_GUILESS_MAIN(DBTest)
#include "DBTest.moc"
