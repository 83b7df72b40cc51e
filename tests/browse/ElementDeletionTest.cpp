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
    void takesBackWhatWasDeletedBeforeAFailure();
    void deletesWhatComesAfterAFailure();
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

/// What a list of morphologies does with each of its selected rows.
class MorphologyList final
{
public:
    explicit MorphologyList(DB *database) : db(database) {}

    bool deleteAll(const QList<int> &ids)
    {
        return ElementDeletion::deleteElements(db, ids, [this](int id) { deleteOne(id); });
    }

    QStringList refusals;

private:
    void deleteOne(int id)
    {
        Morphology worm(id, db, false);
        if (const auto refusal = ElementDeletion::refusal(db, morphologyType, id, worm.name()))
            refusals += refusal->text;
        else
            worm.erase();
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
        QVERIFY(library.db()->removeRow("Drug", id));
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
    QVERIFY(ElementDeletion::deleteElements(library.db(), {}, [](int) { QFAIL("called"); }));
    QVERIFY(!library.db()->inTransaction());
}

void ElementDeletionTest::leavesTheStructureOfTheFileAsItWas()
{
    TemporaryLibrary library("library.edb");
    const QStringList before = structureOf(library.db());
    QStringList during;
    QVERIFY(ElementDeletion::deleteElements(library.db(), upTo(60),
                                            [&](int) { during = structureOf(library.db()); }));
    QVERIFY(during.size() > before.size());
    QCOMPARE(structureOf(library.db()), before);
    QCOMPARE(library.value("PRAGMA integrity_check").toString(), QStringLiteral("ok"));
}

void ElementDeletionTest::makesNoIndexesForAFewElements()
{
    TemporaryLibrary library("library.edb");
    const QStringList before = structureOf(library.db());
    QVERIFY(ElementDeletion::deleteElements(
        library.db(), upTo(3), [&](int) { QCOMPARE(structureOf(library.db()), before); }));
}

// The drug on which deletion fails is the last one, so that nothing is deleted after it.
void ElementDeletionTest::takesBackWhatWasDeletedBeforeAFailure()
{
    TemporaryLibrary library;
    addDrugs(&library, 40);
    library.run("CREATE TABLE Note (Drug INTEGER REFERENCES Drug(Id))");
    library.run("INSERT INTO Note VALUES(40)");
    const QStringList structure = structureOf(library.db());
    QVERIFY(!ElementDeletion::deleteElements(library.db(), upTo(40), [&](int id) {
        if (!library.db()->removeRow("Drug", id)) // as a failed erasure does
            library.db()->rollbackTransaction();
    }));
    QCOMPARE(library.count("Drug"), 40);
    QVERIFY(!library.db()->inTransaction());
    QCOMPARE(structureOf(library.db()), structure);
    QCOMPARE(library.brokenReferences(), QStringList());
}

void ElementDeletionTest::deletesWhatComesAfterAFailure()
{
    TemporaryLibrary library;
    addDrugs(&library, 40);
    QVERIFY(!ElementDeletion::deleteElements(library.db(), upTo(40), [&](int id) {
        if (id == 30)
            library.db()->rollbackTransaction();
        else
            QVERIFY(library.db()->removeRow("Drug", id));
    }));
    QCOMPARE(library.count("Drug"), 30);
}

} // namespace Planaria

QTEST_GUILESS_MAIN(Planaria::ElementDeletionTest)
#include "ElementDeletionTest.moc"
