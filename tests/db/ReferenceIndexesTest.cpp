#include "db/ReferenceIndexes.h"

#include "support/TemporaryLibrary.h"

#include <QtTest>

#include <optional>

namespace Planaria {

/// The indexes that a file has while much of it is deleted, and never else.
class ReferenceIndexesTest final : public QObject
{
    Q_OBJECT

private slots:
    void stayOutOfTheFile_data();
    void stayOutOfTheFile();
    void coverEveryReference();
    void areUsedByTheCheckOfReferences();
    void leaveAnIndexOfTheFileAlone();
    void goWithATransactionThatIsTakenBack();
    void takeTheTransactionBackWhereAQueryKeepsThem();
};

namespace {

QStringList structureOf(DB *db)
{
    QStringList entries;
    const auto query = db->newQuery("SELECT type || name || sql FROM sqlite_master ORDER BY 1");
    while (query->next())
        entries += query->value(0).toString();
    return entries;
}

/// The lines of SQLite's plan for @p sql.
QString planOf(DB *db, const QString &sql)
{
    QStringList lines;
    const auto query = db->newQuery("EXPLAIN QUERY PLAN " + sql);
    while (query->next())
        lines += query->value(3).toString();
    return lines.join('\n');
}

/// Column and table of every reference, "table.column", sorted.
QStringList referencesOf(DB *db)
{
    QStringList tables;
    const auto names = db->newQuery("SELECT name FROM sqlite_master WHERE type = 'table'");
    while (names->next())
        tables += names->value(0).toString();
    QStringList references;
    for (const QString &table : std::as_const(tables)) {
        const auto keys = db->newQuery("PRAGMA foreign_key_list(" + table + ")");
        while (keys->next())
            references += table + '.' + keys->value(3).toString();
    }
    references.sort();
    return references;
}

} // namespace

void ReferenceIndexesTest::stayOutOfTheFile_data()
{
    QTest::addColumn<bool>("commit");
    QTest::newRow("after a commit") << true;
    QTest::newRow("after a rollback") << false;
}

void ReferenceIndexesTest::stayOutOfTheFile()
{
    QFETCH(const bool, commit);
    TemporaryLibrary library("library.edb");
    const QStringList before = structureOf(library.db());
    const int rows = library.count("ExperimentDrug");
    QVERIFY(library.db()->beginTransaction());
    {
        const ReferenceIndexes indexes(library.db());
        QVERIFY(structureOf(library.db()) != before);
        library.run("DELETE FROM ExperimentDrug WHERE Id = 1");
    }
    QVERIFY(commit ? library.db()->endTransaction() : library.db()->rollbackTransaction());
    QCOMPARE(structureOf(library.db()), before);
    QCOMPARE(library.count("ExperimentDrug"), commit ? rows - 1 : rows);

    DB again;
    QCOMPARE(again.connect(library.fileName(), false), static_cast<int>(DB::Opened));
    QCOMPARE(structureOf(&again), before);
    QCOMPARE(library.value("PRAGMA integrity_check").toString(), QStringLiteral("ok"));
    QCOMPARE(library.brokenReferences(), QStringList());
}

void ReferenceIndexesTest::coverEveryReference()
{
    TemporaryLibrary library;
    const QStringList references = referencesOf(library.db());
    QVERIFY(references.contains("ResultantMorphology.ResultSet"));
    QVERIFY(library.db()->beginTransaction());
    const ReferenceIndexes indexes(library.db());
    for (const QString &reference : references) {
        const QString table = reference.section('.', 0, 0);
        const QString plan =
            planOf(library.db(), "SELECT * FROM " + table + " WHERE " + reference + " = 1");
        QVERIFY2(plan.startsWith("SEARCH " + table), qUtf8Printable(plan));
    }
}

void ReferenceIndexesTest::areUsedByTheCheckOfReferences()
{
    TemporaryLibrary library;
    const QString sql = "DELETE FROM Experiment WHERE Id = 1";
    const auto scans = [&] {
        int found = 0;
        const auto program = library.db()->newQuery("EXPLAIN " + sql);
        while (program->next())
            found += program->value(1).toString() == QLatin1String("Rewind") ? 1 : 0;
        return found;
    };
    QVERIFY(library.db()->beginTransaction());
    QCOMPARE(scans(), 3); // of ExperimentDrug, ExperimentRNAi and ResultSet, to their ends
    const ReferenceIndexes indexes(library.db());
    QCOMPARE(scans(), 0);
}

void ReferenceIndexesTest::leaveAnIndexOfTheFileAlone()
{
    TemporaryLibrary library;
    library.run("CREATE INDEX ReferenceIndex_Experiment_Species ON Experiment (Species)");
    const QStringList before = structureOf(library.db());
    QVERIFY(library.db()->beginTransaction());
    std::optional<ReferenceIndexes> indexes(library.db());
    indexes.reset();
    QVERIFY(library.db()->endTransaction());
    QCOMPARE(structureOf(library.db()), before);
}

void ReferenceIndexesTest::goWithATransactionThatIsTakenBack()
{
    TemporaryLibrary library;
    const QStringList before = structureOf(library.db());
    QVERIFY(library.db()->beginTransaction());
    {
        const ReferenceIndexes indexes(library.db());
        library.db()->rollbackTransaction();
    }
    QVERIFY(!library.db()->endTransaction());
    QCOMPARE(structureOf(library.db()), before);
}

void ReferenceIndexesTest::takeTheTransactionBackWhereAQueryKeepsThem()
{
    TemporaryLibrary library("library.edb");
    const QStringList before = structureOf(library.db());
    const int rows = library.count("ExperimentDrug");
    QVERIFY(library.db()->beginTransaction());
    const auto open = library.db()->newTableQuery("Experiment");
    QVERIFY(open->next());
    {
        const ReferenceIndexes indexes(library.db());
        library.run("DELETE FROM ExperimentDrug WHERE Id = 1");
    }
    QVERIFY(!library.db()->endTransaction());
    QCOMPARE(structureOf(library.db()), before);
    QCOMPARE(library.count("ExperimentDrug"), rows);
}

} // namespace Planaria

QTEST_GUILESS_MAIN(Planaria::ReferenceIndexesTest)
#include "ReferenceIndexesTest.moc"
