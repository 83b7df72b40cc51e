#include "db/DBExp.h"

#include "PlainSqlite.h"
#include "db/DB.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QSqlError>
#include <QTest>

using namespace Planaria;

namespace {

// What a file of today has and a file of version 1 has not.
const QStringList newTables{"Meta", "MorphologyImage"};

/// @p table without its Id; the columns of @p replaced by what they are to hold.
QString copyStatement(TemporaryLibrary &library, const QString &table,
                      const QHash<QString, QString> &replaced)
{
    QStringList columns;
    QStringList values;
    const auto query = library.db()->newQuery(
        QStringLiteral("SELECT name FROM pragma_table_info('%1')").arg(table));
    while (query->next()) {
        const QString column = query->value(0).toString();
        if (column == "Id")
            continue;
        columns += column;
        values += replaced.value(column, column);
    }
    return QStringLiteral("INSERT INTO %1(%2) SELECT %3 FROM %1 WHERE Id = 1")
        .arg(table, columns.join(", "), values.join(", "));
}

/// The error of @p sql; empty where it succeeds.
QString errorOf(DB *db, const QString &sql)
{
    return db->newQuery(sql)->lastError().databaseText();
}

} // namespace

class DBExpTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void buildsAFileInOneTransaction();
    void buildsTheRestWhereAStatementFails();

    void takesAFileWithoutMetaForVersion1();
    void readsTheVersionOutOfMeta_data();
    void readsTheVersionOutOfMeta();
    void knowsNoVersionWhereMetaIsEmpty();

    void upgradesAVersion1FileWithItsRows();
    void upgradesInOneTransactionAndTheseSteps();
    void makesTheTablesOfAnUpgradeLikeThoseOfANewFile();
    void leavesAnyOtherVersionAsItIs_data();
    void leavesAnyOtherVersionAsItIs();
    void upgradesAForeignFileAsFarAsItCan();
    void failsToUpgradeWhatIsNoDatabase();

    void refusesARowWithoutItsOneOf_data();
    void refusesARowWithoutItsOneOf();
    void checksTheRootOfAManipulationAtCommit();
    void refusesANameThatIsThere_data();
    void refusesANameThatIsThere();
    void givesTheIdOfADeletedRowAgainExceptToRegions_data();
    void givesTheIdOfADeletedRowAgainExceptToRegions();

private:
    void makeVersion1();

    StatementLog log;
    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<PlainSqlite> outside;
    DB *db = nullptr;
};

void DBExpTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    outside = std::make_unique<PlainSqlite>(library->fileName());
    db = library->db();
    log.take();
}

void DBExpTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
    QVERIFY(!db->inTransaction());
    outside.reset();
    library.reset();
}

/// A file of version 1 with a row in every table.
void DBExpTest::makeVersion1()
{
    for (const QString &table : newTables)
        library->run("DROP TABLE " + table);
    outside->fillEmptyTables();
    log.take();
}

// --- Building ---

void DBExpTest::buildsAFileInOneTransaction()
{
    DB other;
    QVERIFY(other.createEmptyDB(library->filePath("other.edb")));
    log.take();
    QVERIFY(DBExp::buildDB(&other));

    const QStringList statements = log.take();
    QCOMPARE(statements.size(), 1 + 39 + 1);
    QCOMPARE(statements.first(), QString("BEGIN TRANSACTION;"));
    QCOMPARE(statements.last(), QString("COMMIT;"));

    QStringList steps; // a table, with a plus sign for each row that follows at once
    for (const QString &statement : statements.mid(1, 39)) {
        const QString text = statement.trimmed();
        if (text.startsWith("CREATE TABLE ["))
            steps += text.section('[', 1).section(']', 0, 0);
        else
            steps.last() += text.section(' ', 0, 1) == "INSERT INTO" ? "+" : text;
    }
    QCOMPARE(steps.join(' '),
             QString("Meta+ Drug Species LineOrganType+ SpotOrganType+++ Organ MorphologyAction "
                     "ExperimentDrug ExperimentRNAi Region RegionsLink RegionParam "
                     "CropActionAreaPoint RemoveActionAreaPoint SpotOrgan LineOrgan ResultSet "
                     "RemoveAction CropAction JoinAction Manipulation Morphology Publication RNAi "
                     "Experiment ResultantMorphology RegionType+++ IrradiationAction "
                     "IrradiationActionAreaPoint ManipulationAction MorphologyImage"));
}

void DBExpTest::buildsTheRestWhereAStatementFails()
{
    DB other;
    QVERIFY(other.createEmptyDB(library->filePath("other.edb")));
    other.newQuery("CREATE TABLE SpotOrgan (Foreigner)");
    QVERIFY(!DBExp::buildDB(&other));
    QVERIFY(!other.inTransaction());

    PlainSqlite file(library->filePath("other.edb"));
    QCOMPARE(file.tables().size(), 31);
    QCOMPARE(file.dump(QString("RegionType")).size(), 3);
    QCOMPARE(file.texts("SELECT name FROM pragma_table_info('SpotOrgan')"),
             QStringList("Foreigner"));
}

// --- Version ---

void DBExpTest::takesAFileWithoutMetaForVersion1()
{
    QCOMPARE(DBExp::getDBVersion(db), 2);
    makeVersion1();
    QCOMPARE(DBExp::getDBVersion(db), 1);

    DB empty;
    QVERIFY(empty.createEmptyDB(library->filePath("empty.edb")));
    QCOMPARE(DBExp::getDBVersion(&empty), 1);
}

void DBExpTest::readsTheVersionOutOfMeta_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("version");

    QTest::newRow("the first") << "1" << 1;
    QTest::newRow("the present one") << "2" << 2;
    QTest::newRow("a newer one") << "37" << 37;
    QTest::newRow("none of ours") << "-5" << -5;
    QTest::newRow("digits") << "'3'" << 3;
    QTest::newRow("no number") << "'two'" << 0;
    QTest::newRow("nothing") << "NULL" << 0;
}

void DBExpTest::readsTheVersionOutOfMeta()
{
    QFETCH(const QString, stored);
    library->run("UPDATE Meta SET DBStructVer = " + stored);
    log.take();
    QTEST(DBExp::getDBVersion(db), "version");
    QCOMPARE(log.take().last(), QString("SELECT DBStructVer FROM Meta"));
}

void DBExpTest::knowsNoVersionWhereMetaIsEmpty()
{
    library->run("DELETE FROM Meta");
    QCOMPARE(DBExp::getDBVersion(db), -1);
}

// --- Upgrade ---

void DBExpTest::upgradesAVersion1FileWithItsRows()
{
    makeVersion1();
    const QStringList oldTables = outside->tables();
    const QStringList rows = outside->dump(oldTables);
    QCOMPARE(oldTables.size(), 29);
    QVERIFY(rows.size() > 29);

    QVERIFY(DBExp::upgradeDB(db, 1));

    QCOMPARE(DBExp::getDBVersion(db), 2);
    QCOMPARE(outside->tables(), oldTables + newTables);
    QCOMPARE(outside->dump(oldTables), rows);
    QCOMPARE(outside->dump(newTables), QStringList("Meta 2"));
}

void DBExpTest::upgradesInOneTransactionAndTheseSteps()
{
    makeVersion1();
    QVERIFY(DBExp::upgradeDB(db, 1));
    const QString pictures = "CREATE TABLE [MorphologyImage] ([Id] INTEGER NOT NULL PRIMARY KEY, "
                             "[Morphology] INTEGER NOT NULL REFERENCES [Morphology]([Id]), "
                             "[Data] BLOB NOT NULL);";
    QCOMPARE(log.take(),
             QStringList({"BEGIN TRANSACTION;", "CREATE TABLE [Meta] ([DBStructVer] INTEGER);",
                          "INSERT INTO 'Meta' VALUES(2);", pictures, "COMMIT;"}));
}

void DBExpTest::makesTheTablesOfAnUpgradeLikeThoseOfANewFile()
{
    const auto columns = [this] {
        QStringList all;
        for (const QString &table : newTables) {
            for (const char *pragma : {"table_info", "foreign_key_list", "index_list"}) {
                for (const QVariantList &row :
                     outside->rows(QStringLiteral("PRAGMA %1(%2)").arg(pragma, table)))
                    all += QVariant(row).toStringList().join(' ');
            }
        }
        return all;
    };
    const QStringList ofANewFile = columns();
    QCOMPARE(ofANewFile.size(), 1 + 3 + 1);

    makeVersion1();
    QVERIFY(DBExp::upgradeDB(db, 1));
    QCOMPARE(columns(), ofANewFile);
}

void DBExpTest::leavesAnyOtherVersionAsItIs_data()
{
    QTest::addColumn<int>("version");
    for (const int version : {-1, 0, 2, 3})
        QTest::addRow("%d", version) << version;
}

void DBExpTest::leavesAnyOtherVersionAsItIs()
{
    QFETCH(const int, version);
    library->run(QStringLiteral("UPDATE Meta SET DBStructVer = %1").arg(version));
    const QStringList rows = outside->dump(outside->tables());
    log.take();

    QVERIFY(DBExp::upgradeDB(db, version));
    QCOMPARE(log.take(), QStringList({"BEGIN TRANSACTION;", "COMMIT;"}));
    QCOMPARE(outside->dump(outside->tables()), rows);
    QCOMPARE(DBExp::getDBVersion(db), version);
}

void DBExpTest::upgradesAForeignFileAsFarAsItCan()
{
    library->run("DROP TABLE Meta");
    library->run("INSERT INTO Morphology VALUES(1, 'worm')");
    library->run("INSERT INTO MorphologyImage VALUES(1, 1, x'ff')");

    QVERIFY(!DBExp::upgradeDB(db, 1));
    QCOMPARE(DBExp::getDBVersion(db), 2);
    QCOMPARE(outside->dump(newTables), QStringList({"Meta 2", "MorphologyImage 1 1 x'ff'"}));
}

void DBExpTest::failsToUpgradeWhatIsNoDatabase()
{
    QFile file(library->filePath("note.edb"));
    const QByteArray note("a note, and no database at all");
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(note), note.size());
    file.close();

    DB other;
    QCOMPARE(other.connect(file.fileName(), false), 0);
    QCOMPARE(DBExp::getDBVersion(&other), 1);
    QVERIFY(!DBExp::upgradeDB(&other, 1));
    other.disconnect();
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), note);
}

// --- Constraints ---

void DBExpTest::refusesARowWithoutItsOneOf_data()
{
    QTest::addColumn<QString>("insertion");
    QTest::addColumn<QString>("error");

    QTest::newRow("an organ of no kind")
        << "INSERT INTO Organ VALUES(NULL, 1, 0.0, 0.0, %1, NULL)"
        << "CHECK constraint failed: (SpotOrgan IS NOT NULL) OR (LineOrgan IS NOT NULL)";
    QTest::newRow("an action of no kind")
        << "INSERT INTO ManipulationAction VALUES(NULL, NULL, NULL, NULL, NULL, %1)"
        << "CHECK constraint failed: ( MorphologyAction IS NOT NULL ) OR ( RemoveAction IS NOT "
           "NULL ) OR ( CropAction IS NOT NULL ) OR ( JoinAction IS NOT NULL ) OR ( "
           "IrradiationAction IS NOT NULL )";
}

void DBExpTest::refusesARowWithoutItsOneOf()
{
    QFETCH(const QString, insertion);
    outside->fillEmptyTables();
    QTEST(errorOf(db, insertion.arg("NULL")), "error");
    QCOMPARE(errorOf(db, insertion.arg("1")), QString());
}

void DBExpTest::checksTheRootOfAManipulationAtCommit()
{
    const QHash<QString, QVariant> manipulation{{"Name", "cut"}, {"RootAction", 1}};
    QVERIFY(db->beginTransaction());
    QCOMPARE(db->insertRow("Manipulation", manipulation, false), 1);
    QVERIFY(!db->endTransaction());
    QCOMPARE(library->count("Manipulation"), 0);

    library->run("INSERT INTO Morphology VALUES(1, 'worm')");
    QVERIFY(db->beginTransaction());
    QCOMPARE(db->insertRow("Manipulation", manipulation, false), 1);
    QCOMPARE(db->insertRow("ManipulationAction", {{"MorphologyAction", 1}}, false), 1);
    QCOMPARE(db->insertRow("MorphologyAction", {{"Morphology", 1}}, false), 1);
    QVERIFY(db->endTransaction());
    QCOMPARE(outside->dump(QString("Manipulation")), QStringList("1 'cut' 1"));
}

void DBExpTest::refusesANameThatIsThere_data()
{
    QTest::addColumn<QString>("column");
    for (const char *table : {"RegionType", "SpotOrganType", "LineOrganType", "Drug", "RNAi",
                              "Species", "Morphology", "Manipulation", "Experiment"})
        QTest::newRow(table) << "Name";
    QTest::newRow("Publication") << "Title";
}

void DBExpTest::refusesANameThatIsThere()
{
    QFETCH(const QString, column);
    const QString table = QTest::currentDataTag();
    outside->fillEmptyTables();
    library->run(QStringLiteral("UPDATE %1 SET %2 = 'a name' WHERE Id = 1").arg(table, column));
    const auto errorOfACopyNamed = [&](const QString &name) {
        return errorOf(db, copyStatement(*library, table, {{column, name}}));
    };

    QCOMPARE(errorOfACopyNamed("'a name'"),
             QStringLiteral("UNIQUE constraint failed: %1.%2").arg(table, column));
    QCOMPARE(errorOfACopyNamed("NULL"),
             QStringLiteral("NOT NULL constraint failed: %1.%2").arg(table, column));
    for (const char *other : {"'A name'", "'a name '", "''"})
        QCOMPARE(errorOfACopyNamed(other), QString());
}

void DBExpTest::givesTheIdOfADeletedRowAgainExceptToRegions_data()
{
    QTest::addColumn<int>("step");
    TemporaryLibrary anew;
    for (const QString &table : PlainSqlite(anew.fileName()).tables()) {
        if (table != "Meta")
            QTest::newRow(qPrintable(table)) << (table == "Region" ? 1 : 0);
    }
}

void DBExpTest::givesTheIdOfADeletedRowAgainExceptToRegions()
{
    QFETCH(const int, step);
    const QString table = QTest::currentDataTag();
    outside->fillEmptyTables();
    const auto copyRow = [&] {
        const auto query = db->newQuery(
            copyStatement(*library, table, {{"Name", "'a copy'"}, {"Title", "'a copy'"}}));
        return query->lastInsertId().toInt();
    };

    const int id = copyRow();
    QVERIFY(id > 1);
    QVERIFY(db->removeRow(table, id));
    QCOMPARE(copyRow(), id + step);
}

QTEST_GUILESS_MAIN(DBExpTest)
#include "DBExpTest.moc"
