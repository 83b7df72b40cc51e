#include "db/WholeWrite.h"

#include "PlainSqlite.h"
#include "support/TemporaryLibrary.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Planaria;

namespace {

bool addDrug(DB *db, const QString &name)
{
    return db->insertRow("Drug", {{"Name", name}}, false) > 0;
}

QStringList drugs(const TemporaryLibrary &library)
{
    return PlainSqlite(library.fileName()).texts("SELECT Name FROM Drug ORDER BY Id");
}

} // namespace

class WholeWriteTest final : public QObject
{
    Q_OBJECT

private slots:
    void keepsWhatIsCommitted();
    void takesBackWhatIsNotCommitted();
    void doesNotStartWhileAnotherProgramUsesTheFile_data();
    void doesNotStartWhileAnotherProgramUsesTheFile();
    void doesNotWaitLongForAnotherProgram();
    void writesNothingMoreAfterAFailure();
    void writesNothingMoreAfterAnInnerRollback();
    void noticesATransactionThatHasEndedByItself();
    void takesEverythingBackWhereTheCommitFails();
    void takesEverythingBackWhereTheDiskIsFull();
    void doesNotStartInsideOfATransaction();
};

void WholeWriteTest::keepsWhatIsCommitted()
{
    TemporaryLibrary library;
    WholeWrite write(library.db());
    QCOMPARE(write.state(), WholeWrite::State::Open);
    QVERIFY(library.db()->beginTransaction());
    QVERIFY(addDrug(library.db(), "one"));
    QVERIFY(library.db()->endTransaction());
    QCOMPARE(write.state(), WholeWrite::State::Open);
    QVERIFY(write.commit());
    QCOMPARE(write.state(), WholeWrite::State::Ended);
    QVERIFY(!write.commit());
    QCOMPARE(drugs(library), QStringList("one"));
    QVERIFY(!library.db()->inTransaction());
}

void WholeWriteTest::takesBackWhatIsNotCommitted()
{
    TemporaryLibrary library;
    {
        const WholeWrite write(library.db());
        QVERIFY(addDrug(library.db(), "one"));
        library.db()->beginTransaction(); // a level that is left open
    }
    QVERIFY(!library.db()->inTransaction());
    QVERIFY(addDrug(library.db(), "two"));
    QCOMPARE(drugs(library), QStringList("two"));
}

void WholeWriteTest::doesNotStartWhileAnotherProgramUsesTheFile_data()
{
    QTest::addColumn<QString>("statement");
    QTest::newRow("reads") << "BEGIN; SELECT * FROM Drug";
    QTest::newRow("is about to write") << "BEGIN IMMEDIATE";
    QTest::newRow("writes") << "BEGIN EXCLUSIVE";
}

void WholeWriteTest::doesNotStartWhileAnotherProgramUsesTheFile()
{
    QFETCH(const QString, statement);
    TemporaryLibrary library;
    PlainSqlite other(library.fileName());
    QCOMPARE(other.run(statement), 0);
    {
        WholeWrite write(library.db());
        QCOMPARE(write.state(), WholeWrite::State::Locked);
        QVERIFY(!write.commit());
    }
    QVERIFY(!library.db()->lastError().isEmpty());
    QCOMPARE(other.run("ROLLBACK"), 0);
    WholeWrite write(library.db());
    QCOMPARE(write.state(), WholeWrite::State::Open);
}

void WholeWriteTest::doesNotWaitLongForAnotherProgram()
{
    TemporaryLibrary library;
    PlainSqlite other(library.fileName());
    QCOMPARE(other.run("BEGIN EXCLUSIVE"), 0);
    const int before = library.value("PRAGMA busy_timeout").toInt();
    QCOMPARE(before, 5000);
    QElapsedTimer timer;
    timer.start();
    const WholeWrite write(library.db());
    QVERIFY(timer.elapsed() < before);
    QCOMPARE(library.value("PRAGMA busy_timeout").toInt(), before);
}

void WholeWriteTest::writesNothingMoreAfterAFailure()
{
    TemporaryLibrary library;
    DB *db = library.db();
    {
        WholeWrite write(db);
        db->beginTransaction();
        QVERIFY(addDrug(db, "one"));
        QVERIFY(!addDrug(db, "one"));
        QVERIFY(!addDrug(db, "two"));
        db->rollbackTransaction();
        db->beginTransaction();
        QVERIFY(!addDrug(db, "three"));
        QVERIFY(!db->updateRow("Drug", 1, {{"Name", "four"}}));
        QVERIFY(!db->endTransaction());
        QVERIFY(db->lastError().contains("UNIQUE"));
        QCOMPARE(write.state(), WholeWrite::State::Ended);
        QVERIFY(!write.commit());
    }
    QCOMPARE(drugs(library), QStringList());
    QVERIFY(addDrug(db, "five"));
    QCOMPARE(drugs(library), QStringList("five"));
}

void WholeWriteTest::writesNothingMoreAfterAnInnerRollback()
{
    TemporaryLibrary library;
    DB *db = library.db();
    {
        WholeWrite write(db);
        QVERIFY(addDrug(db, "one"));
        db->beginTransaction();
        QVERIFY(db->rollbackTransaction());
        QVERIFY(!addDrug(db, "two"));
        QCOMPARE(write.state(), WholeWrite::State::Ended);
    }
    QCOMPARE(drugs(library), QStringList());
}

void WholeWriteTest::noticesATransactionThatHasEndedByItself()
{
    TemporaryLibrary library;
    WholeWrite write(library.db());
    QVERIFY(addDrug(library.db(), "one"));
    library.run("ROLLBACK");
    QCOMPARE(write.state(), WholeWrite::State::Ended);
    QVERIFY(!addDrug(library.db(), "two"));
    QVERIFY(!write.commit());
    QCOMPARE(drugs(library), QStringList());
}

void WholeWriteTest::takesEverythingBackWhereTheCommitFails()
{
    TemporaryLibrary library;
    {
        WholeWrite write(library.db());
        QVERIFY(addDrug(library.db(), "one"));
        // The reference is looked at in the end.
        QVERIFY(library.db()->insertRow("RemoveAction", {{"FromAction", 77}}, false) > 0);
        QVERIFY(!write.commit());
        QVERIFY(!addDrug(library.db(), "two"));
    }
    QCOMPARE(drugs(library), QStringList());
    QVERIFY(addDrug(library.db(), "three"));
    QCOMPARE(drugs(library), QStringList("three"));
}

void WholeWriteTest::takesEverythingBackWhereTheDiskIsFull()
{
    TemporaryLibrary library;
    DB *db = library.db();
    const int pages = library.value("PRAGMA page_count").toInt();
    QCOMPARE(library.value(QStringLiteral("PRAGMA max_page_count = %1").arg(pages)).toInt(), pages);
    {
        WholeWrite write(db);
        int added = 0;
        while (added < 10000 && addDrug(db, QStringLiteral("a drug of number %1").arg(added)))
            ++added;
        QVERIFY(added > 0 && added < 10000);
        for (int i = 0; i < 10; ++i)
            QVERIFY(!addDrug(db, QString::number(i)));
        QVERIFY(!write.commit());
    }
    QCOMPARE(drugs(library), QStringList());
}

void WholeWriteTest::doesNotStartInsideOfATransaction()
{
    TemporaryLibrary library;
    QVERIFY(library.db()->beginTransaction());
    QVERIFY(addDrug(library.db(), "one"));
    {
        WholeWrite write(library.db());
        QCOMPARE(write.state(), WholeWrite::State::Ended);
        QVERIFY(!write.commit());
    }
    QVERIFY(library.db()->endTransaction());
    QCOMPARE(drugs(library), QStringList("one"));
}

QTEST_GUILESS_MAIN(WholeWriteTest)
#include "WholeWriteTest.moc"
