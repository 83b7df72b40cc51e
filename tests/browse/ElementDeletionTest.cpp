#include "browse/ElementDeletion.h"

#include "model/Morphology.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"
#include "support/TestData.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <numeric>

namespace Planaria {

/// Which elements may be deleted, and the deletion of many of them at once.
class ElementDeletionTest final : public QObject
{
    Q_OBJECT

private slots:
    void refusesWhatIsInUse_data();
    void refusesWhatIsInUse();
    void looksAtManipulationsBeforeResults();
    void refusesNothingOfAnUnknownType();

    void deletesTheUnusedMorphologiesOfASelection_data();
    void deletesTheUnusedMorphologiesOfASelection();
    void deletesInOneTransactionAndInOrder();
    void commitsNothingForAnEmptySelection();
    void leavesTheStructureOfTheFileAsItWas();
    void makesNoIndexesForAFewElements();
    void takesBackAllAfterAFailure_data();
    void takesBackAllAfterAFailure();
    void takesBackWormsWithTheirParts();
    void deletesNothingAfterTheEndOfTheTransaction();
    void deletesNothingWithoutATransaction();
    void takesBackAllWhenToldToStop_data();
    void takesBackAllWhenToldToStop();
};

namespace {

struct Type
{
    int index;
    QString key;
    QString table;
    QString nameColumn;
};

const QList<Type> &types()
{
    static const QList<Type> all = {
        {0, "experiments", "Experiment", "Name"},
        {1, "manipulations", "Manipulation", "Name"},
        {2, "morphologies", "Morphology", "Name"},
        {3, "drugs", "Drug", "Name"},
        {4, "rnai", "RNAi", "Name"},
        {5, "species", "Species", "Name"},
        {6, "publications", "Publication", "Title"},
    };
    return all;
}

constexpr int morphologyType = 2;

using ElementDeletion::Outcome;

/// What a list of morphologies does with each of its selected rows.
class MorphologyList final
{
public:
    explicit MorphologyList(DB *database) : db(database) {}

    bool deleteAll(const QList<int> &ids)
    {
        return ElementDeletion::deleteElements(db, ids, [this](int id) { return deleteOne(id); });
    }

    QStringList refusals;

private:
    Outcome deleteOne(int id)
    {
        Morphology worm(id, db, false);
        const auto refusal = ElementDeletion::refusal(db, morphologyType, id, worm.name());
        if (!refusal)
            return worm.erase() ? Outcome::Done : Outcome::Failed;
        refusals += refusal->text;
        return Outcome::Refused;
    }

    DB *db;
};

QStringList namesOf(DB *db, const QString &table)
{
    QStringList names;
    const auto query = db->newQuery("SELECT Name FROM " + table + " ORDER BY Id");
    while (query->next())
        names += query->value(0).toString();
    return names;
}

QStringList structureOf(DB *db)
{
    QStringList entries;
    const auto query = db->newQuery("SELECT type, name, tbl_name, sql FROM sqlite_master");
    while (query->next())
        entries += query->value(0).toString() + u' ' + query->value(1).toString() + u' ' +
                   query->value(2).toString() + u' ' + query->value(3).toString();
    return entries;
}

/// Removes a drug.
Outcome removed(TemporaryLibrary *library, int id)
{
    return library->db()->removeRow("Drug", id) ? Outcome::Done : Outcome::Failed;
}

QList<int> upTo(int last)
{
    QList<int> ids(last);
    std::iota(ids.begin(), ids.end(), 1);
    return ids;
}

void addDrugs(TemporaryLibrary *library, int count)
{
    for (int i = 1; i <= count; ++i)
        library->run(QStringLiteral("INSERT INTO Drug VALUES(%1, 'drug %1')").arg(i));
}

} // namespace

// --- Uses ---

void ElementDeletionTest::refusesWhatIsInUse_data()
{
    QTest::addColumn<int>("type");
    for (const Type &type : types())
        QTest::newRow(qUtf8Printable(type.key)) << type.index;
}

void ElementDeletionTest::refusesWhatIsInUse()
{
    QFETCH(const int, type);
    const Type &tested = types()[type];
    const QJsonObject worked =
        QJsonDocument::fromJson(readTestData("in_use.json")).object()[tested.key].toObject();
    QJsonObject expected = worked["refused"].toObject();
    int free = 0;

    TemporaryLibrary library("library.edb");
    const auto rows = library.db()->newQuery(
        QStringLiteral("SELECT Id, %1 FROM %2").arg(tested.nameColumn, tested.table));
    while (rows->next()) {
        const QString name = rows->value(1).toString();
        const auto refusal =
            ElementDeletion::refusal(library.db(), type, rows->value(0).toInt(), name);
        free += refusal ? 0 : 1;
        QCOMPARE(refusal ? refusal->text : QString(), expected.take(name).toString());
        if (refusal)
            QCOMPARE(refusal->title, worked["title"].toString());
    }
    QCOMPARE(free, worked["free"].toInt());
    QCOMPARE(expected.keys(), QStringList());
}

void ElementDeletionTest::looksAtManipulationsBeforeResults()
{
    TemporaryLibrary library("library.edb");
    const int inBoth = library
                           .value("SELECT Morphology FROM MorphologyAction WHERE Morphology IN "
                                  "(SELECT Morphology FROM ResultantMorphology)")
                           .toInt();
    QVERIFY(inBoth > 0);
    QCOMPARE(ElementDeletion::refusal(library.db(), morphologyType, inBoth, "W")->text,
             QStringLiteral("The morphology \"W\" cannot be deleted because it is part of an "
                            "experiment manipulation."));
}

void ElementDeletionTest::refusesNothingOfAnUnknownType()
{
    TemporaryLibrary library("library.edb");
    QVERIFY(!ElementDeletion::refusal(library.db(), 7, 1, "a"));
    QVERIFY(!ElementDeletion::refusal(library.db(), -1, 1, "a"));
}

// --- Deletion ---

void ElementDeletionTest::deletesTheUnusedMorphologiesOfASelection_data()
{
    QTest::addColumn<int>("first");
    QTest::newRow("all") << 1;
    QTest::newRow("a few") << 51;
}

void ElementDeletionTest::deletesTheUnusedMorphologiesOfASelection()
{
    QFETCH(const int, first);
    TemporaryLibrary library("library.edb");
    const QList<int> ids = upTo(60).mid(first - 1);
    const QJsonObject used = QJsonDocument::fromJson(readTestData("in_use.json"))
                                 .object()["morphologies"]
                                 .toObject()["refused"]
                                 .toObject();
    const QStringList selected = namesOf(library.db(), "Morphology").mid(first - 1);
    QStringList kept = namesOf(library.db(), "Morphology");
    QStringList refusals;
    for (const QString &name : selected) {
        if (used.contains(name))
            refusals += used[name].toString();
        else
            kept.removeOne(name);
    }

    MorphologyList list(library.db());
    QVERIFY(list.deleteAll(ids));
    QVERIFY(refusals.size() < ids.size());
    QCOMPARE(list.refusals, refusals);
    QCOMPARE(namesOf(library.db(), "Morphology"), kept);
    QCOMPARE(library
                 .value("SELECT COUNT(*) FROM SpotOrgan WHERE Id NOT IN "
                        "(SELECT SpotOrgan FROM Organ WHERE SpotOrgan IS NOT NULL)")
                 .toInt(),
             0);
    QCOMPARE(library.brokenReferences(), QStringList());
}

void ElementDeletionTest::deletesInOneTransactionAndInOrder()
{
    StatementLog log;
    TemporaryLibrary library;
    addDrugs(&library, 30);
    QList<int> selected = upTo(30);
    std::reverse(selected.begin(), selected.end());
    log.take();
    QList<int> deleted;
    QVERIFY(ElementDeletion::deleteElements(library.db(), selected, [&](int id) {
        deleted += id;
        return removed(&library, id);
    }));
    const QStringList statements = log.take();
    QCOMPARE(deleted, selected);
    QCOMPARE(statements.filter("BEGIN").size(), 1);
    QCOMPARE(statements.filter("COMMIT").size(), 1);
    QCOMPARE(statements.first(), QStringLiteral("BEGIN TRANSACTION;"));
    QCOMPARE(statements.last(), QStringLiteral("COMMIT;"));
    QCOMPARE(library.count("Drug"), 0);
}

void ElementDeletionTest::commitsNothingForAnEmptySelection()
{
    TemporaryLibrary library;
    int called = 0;
    QVERIFY(ElementDeletion::deleteElements(library.db(), {}, [&](int) {
        ++called;
        return Outcome::Done;
    }));
    QCOMPARE(called, 0);
    QVERIFY(!library.db()->inTransaction());
}

void ElementDeletionTest::leavesTheStructureOfTheFileAsItWas()
{
    TemporaryLibrary library("library.edb");
    const QStringList before = structureOf(library.db());
    QStringList during;
    QVERIFY(ElementDeletion::deleteElements(library.db(), upTo(60), [&](int) {
        during = structureOf(library.db());
        return Outcome::Done;
    }));
    QVERIFY(during.size() > before.size());
    QCOMPARE(structureOf(library.db()), before);
    QCOMPARE(library.value("PRAGMA integrity_check").toString(), QStringLiteral("ok"));
}

void ElementDeletionTest::makesNoIndexesForAFewElements()
{
    TemporaryLibrary library("library.edb");
    const QStringList before = structureOf(library.db());
    QStringList during;
    QVERIFY(ElementDeletion::deleteElements(library.db(), upTo(3), [&](int) {
        during = structureOf(library.db());
        return Outcome::Done;
    }));
    QCOMPARE(during, before);
}

void ElementDeletionTest::takesBackAllAfterAFailure_data()
{
    QTest::addColumn<int>("failing");
    QTest::newRow("first") << 1;
    QTest::newRow("in the midst") << 30;
    QTest::newRow("last") << 40;
}

void ElementDeletionTest::takesBackAllAfterAFailure()
{
    QFETCH(const int, failing);
    TemporaryLibrary library;
    addDrugs(&library, 40);
    library.run("CREATE TABLE Note (Drug INTEGER REFERENCES Drug(Id))");
    library.run(QStringLiteral("INSERT INTO Note VALUES(%1)").arg(failing));
    const QStringList structure = structureOf(library.db());
    QList<int> tried;
    QVERIFY(!ElementDeletion::deleteElements(library.db(), upTo(40), [&](int id) {
        tried += id;
        return removed(&library, id);
    }));
    QCOMPARE(tried, upTo(failing));
    QCOMPARE(library.count("Drug"), 40);
    QVERIFY(!library.db()->inTransaction());
    QCOMPARE(structureOf(library.db()), structure);
    QCOMPARE(library.brokenReferences(), QStringList());
}

// What a worm owns stands in several tables; its own erasure ends the transaction.
void ElementDeletionTest::takesBackWormsWithTheirParts()
{
    TemporaryLibrary library("library.edb");
    library.run("DELETE FROM MorphologyAction WHERE Morphology = 55");
    library.run("DELETE FROM ResultantMorphology WHERE Morphology = 55");
    library.run("CREATE TRIGGER stay BEFORE DELETE ON Region WHEN OLD.Morphology = 55 BEGIN SELECT "
                "RAISE(ABORT, 'stays'); END");
    const QMap<QString, int> before = library.counts();
    MorphologyList list(library.db());
    QVERIFY(!list.deleteAll(upTo(60)));
    QCOMPARE(library.counts(), before);
    QVERIFY(!library.db()->inTransaction());
    QCOMPARE(library.value("PRAGMA integrity_check").toString(), QStringLiteral("ok"));
}

void ElementDeletionTest::deletesNothingAfterTheEndOfTheTransaction()
{
    TemporaryLibrary library;
    addDrugs(&library, 40);
    QVERIFY(!ElementDeletion::deleteElements(library.db(), upTo(40), [&](int id) {
        if (id != 30)
            return removed(&library, id);
        library.db()->rollbackTransaction();
        return Outcome::Done;
    }));
    QCOMPARE(library.count("Drug"), 40);
}

void ElementDeletionTest::deletesNothingWithoutATransaction()
{
    TemporaryLibrary library;
    addDrugs(&library, 5);
    library.run("BEGIN"); // a second one cannot begin
    QVERIFY(!ElementDeletion::deleteElements(library.db(), upTo(5),
                                             [&](int id) { return removed(&library, id); }));
    QVERIFY(!library.db()->inTransaction());
    QCOMPARE(library.count("Drug"), 5);
    QVERIFY(library.db()->beginTransaction()); // nothing was left open
    QVERIFY(library.db()->endTransaction());
}

void ElementDeletionTest::takesBackAllWhenToldToStop_data()
{
    QTest::addColumn<int>("last");
    QTest::newRow("before the first") << 0;
    QTest::newRow("in the midst") << 3;
    QTest::newRow("after the last") << 5;
}

void ElementDeletionTest::takesBackAllWhenToldToStop()
{
    QFETCH(const int, last);
    TemporaryLibrary library;
    addDrugs(&library, 5);
    QList<int> tried;
    const auto deleteOne = [&](int id) {
        tried += id;
        return removed(&library, id);
    };
    QVERIFY(!ElementDeletion::deleteElements(library.db(), upTo(5), deleteOne,
                                             [last](int done) { return done < last; }));
    QCOMPARE(tried, upTo(last));
    QCOMPARE(library.count("Drug"), 5);
    QVERIFY(!library.db()->inTransaction());
}

} // namespace Planaria

QTEST_GUILESS_MAIN(Planaria::ElementDeletionTest)
#include "ElementDeletionTest.moc"
