#include "PlainSqlite.h"
#include "Record.h"
#include "WriteSteps.h"
#include "db/ExperimentFactory.h"
#include "main/Log.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "model/Organ.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

#include <functional>
#include <memory>
#include <optional>

using namespace Planaria;

namespace {

using Values = DBElementData::Values;
using Parent = DBElementData::Parent;
using References = DBElementData::References;

const QString submitError = "DBElementData:endSubmit: error: ";
const QString eraseError = "DBElementData:endErase: error";
const QString logName = "out.log";

/// The lines of the log without their times and the mark of its start.
QStringList loggedLines()
{
    QFile file(logName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    for (QString &line : lines)
        line.remove(0, line.indexOf(" : ") + 3);
    return lines.mid(1);
}

void emptyLog()
{
    Log::closeLog();
    QFile::remove(logName);
}

/// What a stored row of this id is bound to fail on.
void spoil(Record *record)
{
    record->values.insert("Id", "no number");
}

/// What the elements of the tests refer to: row 1 of each table, and a second drug.
void addBackground(TemporaryLibrary *library)
{
    library->db()->beginTransaction();
    library->run("INSERT INTO Morphology VALUES(1, 'a worm')");
    library->run("INSERT INTO MorphologyAction VALUES(1, 1)");
    library->run("INSERT INTO ManipulationAction(Id, MorphologyAction) VALUES(1, 1)");
    library->run("INSERT INTO Manipulation VALUES(1, 'a cut', 1)");
    library->run("INSERT INTO Species VALUES(1, 'a species')");
    library->run("INSERT INTO Drug VALUES(1, 'a drug'), (2, 'another drug')");
    library->run("INSERT INTO RNAi VALUES(1, 'an RNAi', NULL)");
    library->db()->endTransaction();
}

/// Column 0 of all references that are left.
QList<int> referenceIds(DBElementData *data)
{
    QList<int> ids;
    while (data->nextReference())
        ids += data->loadRefValue(0).toInt();
    return ids;
}

/// A worm of two regions, with an organ in each, one link and one picture.
std::unique_ptr<Morphology> smallWorm(const QString &name)
{
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    auto worm = std::make_unique<Morphology>();
    worm->setName(name);
    Region *head = worm->addRegion(factory->regionType(1));
    Region *tail = worm->addRegion(factory->regionType(3));
    worm->addRegionsLink(head, tail, 100.0, 1.0, 0.5);
    head->addSpotOrgan(factory->spotOrganType(1), {1.0, 2.0}, 0.5);
    tail->addLineOrgan(factory->lineOrganType(1), {3.0, 4.0}, {5.0, 6.0}, {7.0, 8.0});
    worm->addImage("picture");
    return worm;
}

/// The ids of a worm and of all its members, in order.
QList<int> idsOf(const Morphology &worm)
{
    QList<int> ids{worm.id()};
    for (const Region *region : worm.regions()) {
        ids += region->id();
        for (const RegionParam *param : region->params())
            ids += param->id();
        for (const Organ *organ : region->organs())
            ids += organ->id();
    }
    for (const RegionsLink *link : worm.links())
        ids += link->id();
    for (const MorphologyImage *image : worm.getImages())
        ids += image->id();
    return ids;
}

/// An experiment with two treatments and two sets of results, on the stored manipulation 1.
class ExperimentTree final
{
public:
    ExperimentTree()
        : experiment("Experiment", {{"Name", "an experiment"}, {"Manipulation", 1}, {"Species", 1}})
    {
        experiment.refer("Publication", new Record("Publication", {{"Title", "a book"}}));
        experiment.add(new Record("ExperimentRNAi", {{"RNAi", 1}}), 0);
        experiment.add(new Record("ExperimentDrug", {{"Drug", 1}}), 1);
        experiment.add(new Record("ExperimentDrug", {{"Drug", 2}}), 1);
        addSet({0.25, 0.75});
        addSet({1.0});
    }

    Record *set(int index) { return experiment.children[2].at(index); }
    Record *result(int setIndex, int index) { return set(setIndex)->children[0].at(index); }

    Record experiment;

private:
    void addSet(const QList<double> &frequencies)
    {
        Record *set = experiment.add(new Record("ResultSet", {{"Num", 10}}), 2);
        for (const double frequency : frequencies) {
            set->add(
                new Record("ResultantMorphology", {{"Morphology", 1}, {"Frequency", frequency}}));
        }
    }
};

} // namespace

class DBElementDataTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsWithNeitherRowNorFile();
    void takesARowAndItsFile();
    void copiesTheRowOnlyWhereTold();
    void assignmentTakesRowAndFileButKeepsTableAndQueue();

    void readsNullsWithoutARowAndAsksNothing();
    void readsItsRowOnceAtTheFirstColumn();
    void readsNullsWhereTheRowIsMissing();
    void walksOverReferences_data();
    void walksOverReferences();
    void passesOverRowsWhoseIdsNoElementCanHold();
    void startsAnewWithEachListOfReferences();
    void makesAChildAtTheRowOfItsParent();
    void grandchildrenLeaveTheCursorOfTheirGrandparentAlone();
    void readsARowOfAnotherTable();
    void holdsNoStatementOpenOnceLoaded();

    void insertsFirstAndUpdatesAfterwards();
    void writesInEveryForm_data();
    void writesInEveryForm();
    void writesATreeInOneTransaction();
    void writesAWormInItsOrder();
    void writesReferencesAgainEachTime();
    void joinsAnOuterTransaction();
    void writesNothingWhereItStandsForARow();
    void becomesNewInASecondFileWithChildrenAndReferences();
    void aWormBecomesNewInASecondFileAndTakesItsPicturesAlong();

    void erasesRemovedChildrenBeforeItWritesItself();
    void aRemovedChildStaysInTheFileWhereItsParentFails();
    void aRemovedChildThatWasNeverStoredIsOnlyDeleted();
    void aDestroyedParentLeavesTheRowsOfRemovedChildren();
    void eitherSideOfARemovalQueuesTheChildOnce_data();
    void eitherSideOfARemovalQueuesTheChildOnce();

    void aFailureTakesTheTreeBackAndIsLoggedAtEachLevelThatSeesIt_data();
    void aFailureTakesTheTreeBackAndIsLoggedAtEachLevelThatSeesIt();
    void logsTheErrorOfTheFile();
    void aFailureDoesNotStopTheOtherChildren();
    void theChildOfAFailedParentNamesRowZero();
    void aFailedUpdateKeepsTheRowAndItsId();
    void aFailureInsideEndsTheOuterTransaction();
    void aFailedCommitIsLogged();
    void anErrorIsNotLoggedWhereNothingFailed();

    void erasingANewElementAsksNothing();
    void isNewAgainOnceErased();
    void erasesInEveryForm_data();
    void erasesInEveryForm();
    void erasesAWormInItsOrder();
    void skipsMissingElementsThatGoAfterTheRow();
    void aPlainEraseThatFailsOnlySaysSo();
    void aPlainEraseGoesOnAfterAFailure();
    void aRemovedChildThatCannotGoDoesNotKeepTheRow();
    void anEraseOfATreeThatFailsTakesAllBack();

    void aCopyWithIdsWritesTheSameRows();
    void aCopyWithoutIdsIsNew();
    void assignmentReplacesContentAndIdentity();
    void copyingIntoAnElementKeepsItsIdentity();

private:
    DB *db() { return library->db(); }
    QStringList takeSteps() { return writeSteps(statements.take()); }
    /// To be called before the test makes elements.
    void openSecondFile()
    {
        second.emplace();
        addBackground(&*second);
    }
    /// All that is stored in the file of @p database, seen from outside.
    static QStringList content(const TemporaryLibrary &database);

    StatementLog statements;
    std::optional<TemporaryLibrary> library;
    std::optional<TemporaryLibrary> second;
};

void DBElementDataTest::init()
{
    emptyLog();
    library.emplace();
    addBackground(&*library);
    statements.take();
}

void DBElementDataTest::cleanup()
{
    QVERIFY(!db()->inTransaction());
    QCOMPARE(library->brokenReferences(), QStringList());
    if (second)
        QCOMPARE(second->brokenReferences(), QStringList());
    second.reset();
    QCOMPARE(Record::alive(), 0);
}

QStringList DBElementDataTest::content(const TemporaryLibrary &database)
{
    PlainSqlite file(database.fileName());
    return file.dump(file.tables());
}

// --- Construction ---

void DBElementDataTest::startsWithNeitherRowNorFile()
{
    DBElementData data("Drug");
    QCOMPARE(data.id(), 0);
    QCOMPARE(data.db(), nullptr);
    QVERIFY(data.removedReferences().isEmpty());
    QVERIFY(!data.loadValue(0).isValid());
    QVERIFY(!data.nextReference());
    QVERIFY(!data.loadRefValue(0).isValid());
    QVERIFY(!data.loadExtValue(0).isValid());
}

void DBElementDataTest::takesARowAndItsFile()
{
    const DBElementData data("Drug", 2, db());
    QCOMPARE(data.id(), 2);
    QCOMPARE(data.db(), db());
    QVERIFY(data.removedReferences().isEmpty());
}

void DBElementDataTest::copiesTheRowOnlyWhereTold()
{
    DBElementData source("Drug", 2, db());
    source.removeReference(new Record("Drug"));

    DBElementData same(source, true);
    QCOMPARE(same.id(), 2);
    QCOMPARE(same.db(), db());
    QCOMPARE(same.loadValue(1), QVariant("another drug"));
    QVERIFY(same.removedReferences().isEmpty());

    const DBElementData fresh(source, false);
    QCOMPARE(fresh.id(), 0);
    QCOMPARE(fresh.db(), db());
    QVERIFY(fresh.removedReferences().isEmpty());
}

void DBElementDataTest::assignmentTakesRowAndFileButKeepsTableAndQueue()
{
    openSecondFile();
    DBElementData data("Drug", 1, db());
    auto *removed = new Record("Drug");
    data.removeReference(removed);
    QCOMPARE(data.loadValue(1), QVariant("a drug"));
    second->run("UPDATE Drug SET Name = 'of the second file' WHERE Id = 2");

    DBElementData other("Species", 2, second->db());
    other.removeReference(new Record("Species"));
    data = other;
    QCOMPARE(data.id(), 2);
    QCOMPARE(data.db(), second->db());
    QCOMPARE(data.loadValue(1), QVariant("of the second file"));
    QCOMPARE(data.removedReferences(), QList<DBElement *>{removed});
}

// --- Loading ---

void DBElementDataTest::readsNullsWithoutARowAndAsksNothing()
{
    library->run("INSERT INTO Drug VALUES(0, 'row zero')");
    statements.take();

    DBElementData data("Drug", 0, db());
    QVERIFY(!data.loadValue(1).isValid());
    QCOMPARE(statements.take(), QStringList());
}

void DBElementDataTest::readsItsRowOnceAtTheFirstColumn()
{
    DBElementData data("Drug", 2, db());
    QCOMPARE(statements.take(), QStringList());

    QCOMPARE(data.loadValue(0), QVariant(2));
    QCOMPARE(data.loadValue(1), QVariant("another drug"));
    QCOMPARE(statements.take(), QStringList{"SELECT * FROM Drug WHERE Id = 2"});

    data.loadFinished();
    QCOMPARE(data.loadValue(0), QVariant(2));
    QCOMPARE(statements.take(), QStringList{"SELECT * FROM Drug WHERE Id = 2"});
}

void DBElementDataTest::readsNullsWhereTheRowIsMissing()
{
    DBElementData data("Drug", 77, db());
    QVERIFY(data.loadValue(1).isNull());
    QCOMPARE(data.id(), 77);
    data.loadReferences("ExperimentDrug");
    QVERIFY(!data.nextReference());
    QVERIFY(data.loadRefValue(0).isNull());
    data.loadExtElement("Species", 77);
    QVERIFY(data.loadExtValue(1).isNull());
}

using Load = void (*)(DBElementData *);

void DBElementDataTest::walksOverReferences_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<Load>("load");
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QList<int>>("ids");

    const auto row = [](const char *tag, const char *table, Load load, const char *statement,
                        const QList<int> &ids) {
        QTest::newRow(tag) << QByteArray(table) << load << QString(statement) << ids;
    };
    row("by row id", "Experiment", [](DBElementData *data) { data->loadReferences("ResultSet"); },
        "SELECT * FROM ResultSet WHERE ResultSet.Experiment = 1", {1, 2, 4});
    row("in an order", "Experiment",
        [](DBElementData *data) { data->loadReferences("ResultSet", "Num"); },
        "SELECT * FROM ResultSet WHERE ResultSet.Experiment = 1 ORDER BY Num", {4, 1, 2});
    row("through a table between", "Experiment",
        [](DBElementData *data) {
            data->loadReferences("ResultantMorphology", "ResultSet", "ResultSet");
        },
        "SELECT DISTINCT ResultantMorphology.* FROM ResultantMorphology INNER JOIN ResultSet "
        "ON ResultantMorphology.ResultSet = ResultSet.Id WHERE ResultSet.Experiment = 1;",
        {1, 2, 4});
    row("through a table of links", "Experiment",
        [](DBElementData *data) {
            data->loadReferencesIndirect("Morphology", "ResultantMorphology", "ResultSet");
        },
        "SELECT DISTINCT Morphology.* FROM Morphology INNER JOIN ResultantMorphology "
        "ON ResultantMorphology.Morphology = Morphology.Id INNER JOIN ResultSet "
        "ON ResultSet.Id = ResultantMorphology.ResultSet WHERE ResultSet.Experiment = 1;",
        {1, 2});
    row("none", "Manipulation", [](DBElementData *data) { data->loadReferences("Experiment"); },
        "SELECT * FROM Experiment WHERE Experiment.Manipulation = 1", {1, 2});
}

void DBElementDataTest::walksOverReferences()
{
    QFETCH(const QByteArray, table);
    QFETCH(const Load, load);
    QFETCH(const QString, statement);
    QFETCH(const QList<int>, ids);
    library->run("INSERT INTO Morphology VALUES(2, 'a second worm'), (3, 'a third worm')");
    library->run("INSERT INTO Publication VALUES(1, 'a book', NULL, NULL)");
    library->run("INSERT INTO Experiment VALUES(1, 'first', 1, 1, 1), (2, 'second', 1, 1, 1)");
    library->run("INSERT INTO ResultSet(Id, Experiment, Num) "
                 "VALUES(1, 1, 20), (2, 1, 30), (3, 2, 5), (4, 1, 10)");
    library->run("INSERT INTO ResultantMorphology "
                 "VALUES(1, 1, 2, 0.1), (2, 4, 2, 0.2), (3, 3, 3, 0.3), (4, 2, 1, 0.4)");
    statements.take();

    DBElementData data(table.constData(), 1, db());
    load(&data);
    QCOMPARE(statements.take(), QStringList{statement});
    QList<int> found = referenceIds(&data);
    if (statement.contains("DISTINCT Morphology."))
        std::sort(found.begin(), found.end()); // the statement leaves the order open
    QCOMPARE(found, ids);
    QVERIFY(!data.nextReference());
}

void DBElementDataTest::passesOverRowsWhoseIdsNoElementCanHold()
{
    library->run("INSERT INTO Region VALUES(-9223372036854775808, 1, 1), (-1, 1, 1), (0, 1, 1), "
                 "(1, 1, 1), (2147483647, 1, 1), (2147483648, 1, 1), (4294967297, 1, 1)");
    DBElementData data("Morphology", 1, db());
    data.loadReferences("Region");
    QCOMPARE(referenceIds(&data), (QList<int>{1, 2147483647}));
}

void DBElementDataTest::startsAnewWithEachListOfReferences()
{
    library->run("INSERT INTO Region VALUES(1, 1, 1), (2, 1, 3)");
    DBElementData data("Morphology", 1, db());
    data.loadReferences("Region");
    QVERIFY(data.nextReference());
    QVERIFY(data.nextReference());
    QCOMPARE(data.loadRefValue(0), QVariant(2));

    data.loadReferences("MorphologyAction");
    QCOMPARE(referenceIds(&data), QList<int>{1});
    data.loadReferences("Region");
    QCOMPARE(referenceIds(&data), (QList<int>{1, 2}));
}

void DBElementDataTest::makesAChildAtTheRowOfItsParent()
{
    library->run("INSERT INTO Region VALUES(4, 1, 3), (7, 1, 2)");
    DBElementData parent("Morphology", 1, db());
    parent.loadReferences("Region");
    QVERIFY(parent.nextReference());
    statements.take();

    DBElementData child("Region", parent);
    QCOMPARE(child.id(), 4);
    QCOMPARE(child.db(), db());
    QCOMPARE(child.loadValue(2), QVariant(3));
    QCOMPARE(statements.take(), QStringList());

    // It looks through the cursor of its parent, which moves on; its own row stays what it was.
    QVERIFY(parent.nextReference());
    QCOMPARE(child.loadValue(2), QVariant(2));
    child.loadFinished();
    QCOMPARE(child.id(), 4);
    QCOMPARE(child.loadValue(2), QVariant(3));
    QCOMPARE(parent.loadRefValue(0), QVariant(7));
}

void DBElementDataTest::grandchildrenLeaveTheCursorOfTheirGrandparentAlone()
{
    library->run("INSERT INTO Region VALUES(1, 1, 1), (2, 1, 2)");
    library->run("INSERT INTO RegionParam VALUES(1, 1, 0, 1.5), (2, 2, 0, 2.5), (3, 1, 1, 3.5)");
    DBElementData worm("Morphology", 1, db());
    QMap<int, QList<int>> paramsOfRegion;
    worm.loadReferences("Region");
    while (worm.nextReference()) {
        DBElementData region("Region", worm);
        region.loadReferences("RegionParam", "ParamInd");
        paramsOfRegion.insert(region.loadValue(0).toInt(), referenceIds(&region));
    }
    QCOMPARE(paramsOfRegion, (QMap<int, QList<int>>{{1, {1, 3}}, {2, {2}}}));
}

void DBElementDataTest::readsARowOfAnotherTable()
{
    DBElementData data("Morphology", 1, db());
    data.loadReferences("MorphologyAction");
    statements.take();

    data.loadExtElement("Drug", 2);
    QCOMPARE(statements.take(), QStringList{"SELECT * FROM Drug WHERE Id = 2"});
    QCOMPARE(data.loadExtValue(1), QVariant("another drug"));
    data.loadExtElement("Species", 1);
    QCOMPARE(data.loadExtValue(1), QVariant("a species"));
    QCOMPARE(data.loadValue(1), QVariant("a worm"));
    QCOMPARE(referenceIds(&data), QList<int>{1});

    data.loadFinished();
    QVERIFY(!data.loadExtValue(1).isValid());
    QVERIFY(!data.loadRefValue(1).isValid());
    QVERIFY(!data.nextReference());
}

void DBElementDataTest::holdsNoStatementOpenOnceLoaded()
{
    DBElementData data("Drug", 1, db());
    data.loadValue(1);
    data.loadReferences("ExperimentDrug");
    data.loadExtElement("Species", 1);
    QVERIFY(!db()->vacuum()); // refused while a statement is open
    data.loadFinished();
    QVERIFY(db()->vacuum());

    const int id = smallWorm("small")->submit(db());
    const Morphology worm(id, db(), true);
    QVERIFY(db()->vacuum());
    const Morphology lazy(id, db(), false);
    QCOMPARE(lazy.nImages(), 1);
    QVERIFY(db()->vacuum());
}

// --- Writing ---

void DBElementDataTest::insertsFirstAndUpdatesAfterwards()
{
    Record drug("Drug", {{"Name", "a new drug"}});
    QCOMPARE(drug.submit(db()), 3);
    QCOMPARE(drug.id(), 3);
    QCOMPARE(takeSteps(), (QStringList{"BEGIN", "INSERT Drug", "COMMIT"}));

    // The whole row is written again, also over what somebody else made of it.
    library->run("UPDATE Drug SET Name = 'of another hand' WHERE Id = 3");
    statements.take();
    QCOMPARE(drug.submit(db()), 3);
    QCOMPARE(takeSteps(), (QStringList{"BEGIN", "UPDATE Drug 3", "COMMIT"}));
    QCOMPARE(library->value("SELECT Name FROM Drug WHERE Id = 3"), QVariant("a new drug"));
    QCOMPARE(library->count("Drug"), 3);
}

namespace {

/// One region of worm 1, of type 3, which its test writes in one form or another.
struct WriteForm
{
    explicit WriteForm(DB *database)
        : db(database), worm("Morphology", 1, database),
          type("RegionType", 3, database, {{"Name", "Tail"}}), data("Region")
    {
    }

    DB *db;
    Record worm;
    Record type;
    Record drug{"Drug", {{"Name", "A"}}};
    Record otherDrug{"Drug", {{"Name", "B"}}};
    Record species{"Species", {{"Name", "A"}}};
    Record rnai{"RNAi", {{"Name", "A"}}};
    DBElementData data;

    Parent parent{"Morphology", &worm};
    References references{{"Type", &type}};
    QList<Record *> a{&drug, &otherDrug};
    QList<Record *> b{&species};
    QList<Record *> c{&rnai};
};

} // namespace

using WriteIn = int (*)(WriteForm *);

void DBElementDataTest::writesInEveryForm_data()
{
    QTest::addColumn<WriteIn>("write");
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");

    const auto row = [](const char *tag, WriteIn write, const QStringList &before,
                        const QStringList &after) {
        QTest::newRow(tag) << write << before << after;
    };
    row("values",
        [](WriteForm *form) {
            return form->data.submit(form->db, {{"Morphology", 1}, {"Type", 3}});
        },
        {}, {});
    row("parent",
        [](WriteForm *form) {
            return form->data.submit(form->db, form->parent, {{"Type", 3}});
        },
        {}, {});
    row("references",
        [](WriteForm *form) {
            return form->data.submit(form->db, form->references, Values{{"Morphology", 1}});
        },
        {"UPDATE RegionType 3"}, {});
    row("parent and references",
        [](WriteForm *form) {
            return form->data.submit(form->db, form->parent, form->references, {});
        },
        {"UPDATE RegionType 3"}, {});
    row("a parent without a column",
        [](WriteForm *form) {
            return form->data.submit(form->db, Parent("", &form->worm), form->references,
                                     {{"Morphology", 1}});
        },
        {"UPDATE RegionType 3"}, {});
    row("one list",
        [](WriteForm *form) {
            return form->data.submit(form->db, form->parent, form->references, {}, form->a);
        },
        {"UPDATE RegionType 3"}, {"INSERT Drug", "INSERT Drug"});
    row("two lists",
        [](WriteForm *form) {
            return form->data.submit(form->db, form->parent, form->references, {}, form->b,
                                     form->a);
        },
        {"UPDATE RegionType 3"}, {"INSERT Species", "INSERT Drug", "INSERT Drug"});
    row("three lists",
        [](WriteForm *form) {
            return form->data.submit(form->db, form->parent, form->references, {}, form->a, form->b,
                                     form->c);
        },
        {"UPDATE RegionType 3"}, {"INSERT Drug", "INSERT Drug", "INSERT Species", "INSERT RNAi"});
}

void DBElementDataTest::writesInEveryForm()
{
    QFETCH(const WriteIn, write);
    QFETCH(const QStringList, before);
    QFETCH(const QStringList, after);
    WriteForm form(db());

    QCOMPARE(write(&form), 1);
    QCOMPARE(takeSteps(), QStringList{"BEGIN"} + before + QStringList{"INSERT Region"} + after +
                              QStringList{"COMMIT"});
    QCOMPARE(PlainSqlite(library->fileName()).dump("Region"), QStringList{"1 1 3"});
    QCOMPARE(form.data.id(), 1);
    QCOMPARE(form.data.db(), db());
}

void DBElementDataTest::writesATreeInOneTransaction()
{
    ExperimentTree tree;
    QCOMPARE(tree.experiment.submit(db()), 1);
    QCOMPARE(
        takeSteps(),
        (QStringList{"BEGIN", "INSERT Publication", "INSERT Experiment", "INSERT ExperimentRNAi",
                     "INSERT ExperimentDrug", "INSERT ExperimentDrug", "INSERT ResultSet",
                     "INSERT ResultantMorphology", "INSERT ResultantMorphology", "INSERT ResultSet",
                     "INSERT ResultantMorphology", "COMMIT"}));

    PlainSqlite file(library->fileName());
    QCOMPARE(file.dump("Experiment"), QStringList{"1 'an experiment' 1 1 1"});
    QCOMPARE(file.dump("ExperimentDrug"), (QStringList{"1 1 1 NULL NULL", "2 1 2 NULL NULL"}));
    QCOMPARE(file.dump("ResultSet"), (QStringList{"1 1 10 NULL", "2 1 10 NULL"}));
    QCOMPARE(file.dump("ResultantMorphology"),
             (QStringList{"1 1 1 0.25", "2 1 1 0.75", "3 2 1 1.0"}));
}

void DBElementDataTest::writesAWormInItsOrder()
{
    QVERIFY(smallWorm("small")->submit(db()) > 0);
    QCOMPARE(takeSteps(), (QStringList{"BEGIN", "INSERT Morphology", "INSERT Region",
                                       "INSERT RegionParam", "INSERT RegionParam",
                                       "INSERT RegionParam", "INSERT SpotOrgan", "INSERT Organ",
                                       "INSERT Region", "INSERT RegionParam", "INSERT RegionParam",
                                       "INSERT RegionParam", "INSERT LineOrgan", "INSERT Organ",
                                       "INSERT RegionsLink", "INSERT MorphologyImage", "COMMIT"}));
}

void DBElementDataTest::writesReferencesAgainEachTime()
{
    Record experiment("Experiment", {{"Name", "x"}, {"Manipulation", 1}, {"Species", 1}});
    Record *book = experiment.refer("Publication", new Record("Publication", {{"Title", "old"}}));
    experiment.submit(db());
    QCOMPARE(book->id(), 1);
    book->values["Title"] = "new";
    statements.take();

    experiment.submit(db());
    QCOMPARE(takeSteps(),
             (QStringList{"BEGIN", "UPDATE Publication 1", "UPDATE Experiment 1", "COMMIT"}));
    QCOMPARE(library->value("SELECT Title FROM Publication"), QVariant("new"));

    experiment.refer("Publication", new Record("Publication", {{"Title", "another"}}));
    delete book;
    experiment.submit(db());
    QCOMPARE(library->value("SELECT Publication FROM Experiment"), QVariant(2));
}

void DBElementDataTest::joinsAnOuterTransaction()
{
    const QStringList before = content(*library);
    db()->beginTransaction();
    Record first("Drug", {{"Name", "first"}});
    QVERIFY(first.submit(db()) > 0);
    ExperimentTree tree;
    QVERIFY(tree.experiment.submit(db()) > 0);
    QVERIFY(first.erase());
    QVERIFY(db()->inTransaction());
    QCOMPARE(takeSteps().filter(QRegularExpression("BEGIN|COMMIT")), QStringList{"BEGIN"});
    QVERIFY(db()->rollbackTransaction());
    QCOMPARE(content(*library), before);
    QVERIFY(tree.experiment.id() > 0);
}

void DBElementDataTest::writesNothingWhereItStandsForARow()
{
    openSecondFile();
    ExperimentTree tree;
    QCOMPARE(tree.experiment.submit(db()), 1);
    const QStringList before = content(*library);
    ExperimentTree other;
    other.experiment.values["Name"] = "another";
    other.experiment.data.referTo(1, db());
    statements.take();

    QCOMPARE(other.experiment.submit(db()), 1);
    QVERIFY(other.experiment.submit(second->db()) < 1);
    QCOMPARE(takeSteps(), QStringList());
    QCOMPARE(content(*library), before);
    QCOMPARE(other.experiment.data.loadValue(1), QVariant("an experiment"));
    other.experiment.data.loadFinished();

    // A copy of the same row stands for it too, and takes up an element that was written so far.
    const DBElementData::Values values{{"Name", "x"}};
    QCOMPARE(DBElementData(other.experiment.data, true).submit(db(), values), 1);
    tree.experiment.data = other.experiment.data;
    QCOMPARE(tree.experiment.submit(db()), 1);
    QCOMPARE(content(*library), before);
}

void DBElementDataTest::becomesNewInASecondFileWithChildrenAndReferences()
{
    openSecondFile();
    ExperimentTree other;
    other.experiment.values["Name"] = "another";
    other.experiment.references["Publication"]->submit(db());
    other.experiment.submit(db());
    ExperimentTree tree;
    auto *book = static_cast<Record *>(tree.experiment.references["Publication"]);
    book->values["Title"] = "a second book";
    QCOMPARE(tree.experiment.submit(db()), 2);
    QCOMPARE(book->id(), 2);
    QCOMPARE(tree.result(1, 0)->id(), 6);
    const QStringList before = content(*library);
    statements.take();

    QCOMPARE(tree.experiment.submit(second->db()), 1);
    QVERIFY(!takeSteps().join(' ').contains("UPDATE"));
    QCOMPARE(book->id(), 1);
    QCOMPARE(tree.set(1)->id(), 2);
    QCOMPARE(tree.result(1, 0)->id(), 3);
    QCOMPARE(content(*library), before);
    PlainSqlite file(second->fileName());
    QCOMPARE(file.dump("Experiment"), QStringList{"1 'an experiment' 1 1 1"});
    QCOMPARE(file.dump("Publication"), QStringList{"1 'a second book' NULL NULL"});
    QCOMPARE(file.dump("ResultantMorphology").size(), 3);

    tree.experiment.submit(second->db());
    QVERIFY(!takeSteps().join(' ').contains("INSERT"));
}

void DBElementDataTest::aWormBecomesNewInASecondFileAndTakesItsPicturesAlong()
{
    openSecondFile();
    smallWorm("first")->submit(db());
    const int id = smallWorm("second")->submit(db());
    const QStringList before = content(*library);
    Morphology worm(id, db(), false);
    const QList<int> ids = idsOf(Morphology(id, db(), true));

    QVERIFY(worm.submit(second->db()) > 0);
    const QList<int> newIds = idsOf(worm);
    QCOMPARE(newIds.size(), ids.size());
    for (int i = 0; i < ids.size(); ++i)
        QVERIFY2(newIds.at(i) > 0 && newIds.at(i) != ids.at(i), QByteArray::number(i).constData());
    QCOMPARE(content(*library), before);
    QCOMPARE(second->value("SELECT Data FROM MorphologyImage"), QVariant(QByteArray("picture")));
    QVERIFY(Morphology(worm.id(), second->db(), true) == Morphology(id, db(), true));
}

// --- Removed children ---

void DBElementDataTest::erasesRemovedChildrenBeforeItWritesItself()
{
    Record worm("Morphology", {{"Name", "x"}});
    worm.add(new Record("Region", {{"Type", 1}}));
    Record *removed = worm.add(new Record("Region", {{"Type", 2}}));
    removed->add(new Record("RegionParam", {{"ParamInd", 0}, {"Value", 1.0}}));
    worm.submit(db());
    worm.remove(removed);
    QCOMPARE(worm.data.removedReferences(), QList<DBElement *>{removed});
    QCOMPARE(library->count("Region"), 2);
    statements.take();

    QCOMPARE(Record::alive(), 4);
    worm.submit(db());
    QCOMPARE(takeSteps(), (QStringList{"BEGIN", "DELETE RegionParam 1", "DELETE Region 2",
                                       "UPDATE Morphology 2", "UPDATE Region 1", "COMMIT"}));
    QCOMPARE(Record::alive(), 2);
    QVERIFY(worm.data.removedReferences().isEmpty());
    QCOMPARE(PlainSqlite(library->fileName()).dump("Region"), QStringList{"1 2 1"});
}

void DBElementDataTest::aRemovedChildStaysInTheFileWhereItsParentFails()
{
    Record worm("Morphology", {{"Name", "x"}});
    Record *removed = worm.add(new Record("Region", {{"Type", 2}}));
    worm.submit(db());
    const QStringList before = content(*library);

    worm.remove(removed);
    worm.values["Name"] = "a worm"; // taken by row 1
    QCOMPARE(worm.submit(db()), 2);
    QCOMPARE(content(*library), before);
    QCOMPARE(loggedLines().size(), 1);
    QCOMPARE(Record::alive(), 1);
    QVERIFY(worm.data.removedReferences().isEmpty());
}

void DBElementDataTest::aRemovedChildThatWasNeverStoredIsOnlyDeleted()
{
    Record worm("Morphology", {{"Name", "x"}});
    worm.remove(worm.add(new Record("Region", {{"Type", 2}})));
    QCOMPARE(worm.submit(db()), 2);
    QCOMPARE(takeSteps(), (QStringList{"BEGIN", "INSERT Morphology", "COMMIT"}));
    QCOMPARE(Record::alive(), 1);
}

void DBElementDataTest::aDestroyedParentLeavesTheRowsOfRemovedChildren()
{
    auto worm = std::make_unique<Record>("Morphology", Values{{"Name", "x"}});
    worm->remove(worm->add(new Record("Region", {{"Type", 2}})));
    Record *removed = worm->add(new Record("Region", {{"Type", 2}}));
    worm->submit(db());
    worm->remove(removed);
    const QStringList before = content(*library);

    worm->data.deleteRemovedReferences();
    QVERIFY(worm->data.removedReferences().isEmpty());
    QCOMPARE(Record::alive(), 1);

    worm->remove(worm->add(new Record("Region", 1, db())));
    worm.reset();
    QCOMPARE(Record::alive(), 0);
    QCOMPARE(content(*library), before);
}

using Remove = void (*)(Morphology *);

void DBElementDataTest::eitherSideOfARemovalQueuesTheChildOnce_data()
{
    QTest::addColumn<Remove>("remove");
    QTest::newRow("from the parent") << Remove(
        [](Morphology *worm) { QVERIFY(worm->removeRegionsLink(worm->links().first())); });
    QTest::newRow("from the child")
        << Remove([](Morphology *worm) { worm->links().first()->removeFromMorphology(); });
}

void DBElementDataTest::eitherSideOfARemovalQueuesTheChildOnce()
{
    QFETCH(const Remove, remove);
    const std::unique_ptr<Morphology> worm = smallWorm("small");
    worm->submit(db());
    RegionsLink *link = worm->links().first();

    remove(worm.get());
    QVERIFY(worm->links().isEmpty());
    QCOMPARE(worm->record().removedReferences(), QList<DBElement *>{link});
    QVERIFY(!worm->removeRegionsLink(link));
    link->removeFromMorphology();
    QCOMPARE(worm->record().removedReferences(), QList<DBElement *>{link});
    QCOMPARE(library->count("RegionsLink"), 1);

    worm->submit(db());
    QCOMPARE(library->count("RegionsLink"), 0);
}

// --- Failure ---

using Pick = Record *(*)(ExperimentTree *);

void DBElementDataTest::aFailureTakesTheTreeBackAndIsLoggedAtEachLevelThatSeesIt_data()
{
    QTest::addColumn<Pick>("pick");
    QTest::addColumn<int>("lines");
    QTest::addColumn<bool>("rootHasId");

    const auto row = [](const char *tag, Pick pick, int lines, bool rootHasId) {
        QTest::newRow(tag) << pick << lines << rootHasId;
    };
    // The element itself, all that is written after it, since the rows they name are gone again,
    // and each parent of an element without an id.
    row(
        "root", [](ExperimentTree *tree) { return &tree->experiment; }, 9, false);
    row(
        "child of the first list",
        [](ExperimentTree *tree) { return tree->experiment.children[0].first(); }, 9, true);
    row(
        "child in the middle",
        [](ExperimentTree *tree) { return tree->experiment.children[1].last(); }, 7, true);
    row(
        "last child", [](ExperimentTree *tree) { return tree->set(1); }, 3, true);
    row(
        "grandchild", [](ExperimentTree *tree) { return tree->result(0, 1); }, 5, true);
    row(
        "last grandchild", [](ExperimentTree *tree) { return tree->result(1, 0); }, 2, true);
}

void DBElementDataTest::aFailureTakesTheTreeBackAndIsLoggedAtEachLevelThatSeesIt()
{
    QFETCH(const Pick, pick);
    QFETCH(const int, lines);
    QFETCH(const bool, rootHasId);
    library->run("INSERT INTO Publication VALUES(1, 'of the tree', NULL, NULL)");
    const QStringList before = content(*library);
    ExperimentTree tree;
    delete tree.experiment.references.take("Publication");
    tree.experiment.values.insert("Publication", 1);
    spoil(pick(&tree));

    QCOMPARE(tree.experiment.submit(db()) > 0, rootHasId);
    QCOMPARE(tree.experiment.id() > 0, rootHasId);
    QCOMPARE(pick(&tree)->id(), 0);
    QCOMPARE(content(*library), before);
    const QStringList logged = loggedLines();
    QCOMPARE(logged.size(), lines);
    QCOMPARE(logged.filter(QRegularExpression("^" + submitError)).size(), lines);
    QVERIFY(!db()->inTransaction());
}

void DBElementDataTest::logsTheErrorOfTheFile()
{
    Record drug("Drug", {{"Name", "a drug"}});
    QCOMPARE(drug.submit(db()), 0);
    QVERIFY(db()->lastError().contains("UNIQUE constraint failed: Drug.Name"));
    QCOMPARE(loggedLines(), QStringList{submitError + db()->lastError()});
    QCOMPARE(takeSteps(), (QStringList{"BEGIN", "INSERT Drug", "ROLLBACK"}));
}

void DBElementDataTest::aFailureDoesNotStopTheOtherChildren()
{
    Record parent("Species", {{"Name", "new"}});
    for (const char *name : {"first", "a drug", "third"})
        parent.children[0].append(new Record("Drug", {{"Name", name}}));

    QVERIFY(parent.submit(db()) > 0);
    QCOMPARE(takeSteps(), (QStringList{"BEGIN", "INSERT Species", "INSERT Drug", "INSERT Drug",
                                       "ROLLBACK", "BEGIN", "INSERT Drug", "COMMIT"}));
    // Parent and first child went with the second; what came later stands by itself.
    QCOMPARE(library->count("Species"), 1);
    QCOMPARE(PlainSqlite(library->fileName()).dump("Drug"),
             (QStringList{"1 'a drug'", "2 'another drug'", "3 'third'"}));
    QVERIFY(parent.children[0].at(0)->id() > 0);
    QCOMPARE(parent.children[0].at(1)->id(), 0);
    QCOMPARE(parent.children[0].at(2)->id(), 3);
    QCOMPARE(loggedLines().size(), 2);
}

void DBElementDataTest::theChildOfAFailedParentNamesRowZero()
{
    Record worm("Morphology", {{"Name", "a worm"}});
    Record *region = worm.add(new Record("Region", {{"Type", 1}}));
    QCOMPARE(worm.submit(db()), 0);
    QCOMPARE(region->id(), 0);
    QCOMPARE(library->count("Region"), 0);
    const QStringList logged = loggedLines();
    QCOMPARE(logged.size(), 2);
    QVERIFY(logged.first().contains("FOREIGN KEY constraint failed"));

    library->run("PRAGMA foreign_keys = false");
    db()->beginTransaction();
    QCOMPARE(region->submit(db()), 1);
    QCOMPARE(library->value("SELECT Morphology FROM Region"), QVariant(0));
    db()->rollbackTransaction();
}

void DBElementDataTest::aFailedUpdateKeepsTheRowAndItsId()
{
    Record drug("Drug", {{"Name", "new"}});
    drug.submit(db());
    const QStringList before = content(*library);
    drug.values["Name"] = "a drug";

    QCOMPARE(drug.submit(db()), 3);
    QCOMPARE(content(*library), before);
    QCOMPARE(loggedLines(), QStringList{submitError + db()->lastError()});

    drug.values["Name"] = "free";
    QCOMPARE(drug.submit(db()), 3);
    QCOMPARE(library->value("SELECT Name FROM Drug WHERE Id = 3"), QVariant("free"));
}

void DBElementDataTest::aFailureInsideEndsTheOuterTransaction()
{
    const QStringList before = content(*library);
    db()->beginTransaction();
    Record good("Drug", {{"Name", "good"}});
    QVERIFY(good.submit(db()) > 0);
    Record bad("Drug", {{"Name", "good"}});
    QCOMPARE(bad.submit(db()), 0);
    QVERIFY(!db()->inTransaction());
    QVERIFY(!db()->endTransaction());
    QCOMPARE(content(*library), before);
    QVERIFY(good.id() > 0);
}

void DBElementDataTest::aFailedCommitIsLogged()
{
    const QStringList before = content(*library);
    Record manipulation("Manipulation", {{"Name", "rootless"}, {"RootAction", 99}});
    manipulation.submit(db());
    QCOMPARE(content(*library), before);
    QCOMPARE(loggedLines(), QStringList{submitError + db()->lastError()});
    QVERIFY(db()->lastError().contains("FOREIGN KEY constraint failed"));

    QVERIFY(Record("Drug", {{"Name", "later"}}).submit(db()) > 0);
    QCOMPARE(PlainSqlite(library->fileName()).count("Drug"), 3);
}

void DBElementDataTest::anErrorIsNotLoggedWhereNothingFailed()
{
    ExperimentTree tree;
    tree.experiment.submit(db());
    tree.experiment.submit(db());
    QVERIFY(tree.experiment.erase());
    QVERIFY(!QFile::exists(logName));
}

// --- Erasing ---

void DBElementDataTest::erasingANewElementAsksNothing()
{
    library->run("INSERT INTO Drug VALUES(0, 'row zero')");
    statements.take();

    DBElementData data("Drug", 0, db());
    QVERIFY(data.erase());
    QVERIFY(data.erase({}));
    QCOMPARE(statements.take(), QStringList());
    QCOMPARE(library->count("Drug"), 3);

    Record withoutFile("Drug");
    QVERIFY(withoutFile.erase());
    QVERIFY(smallWorm("never stored")->erase());
}

void DBElementDataTest::isNewAgainOnceErased()
{
    Record drug("Drug", {{"Name", "x"}});
    drug.submit(db());
    QVERIFY(drug.erase());
    QCOMPARE(drug.id(), 0);
    QCOMPARE(library->count("Drug"), 2);
    statements.take();
    QVERIFY(drug.submit(db()) > 0);
    QCOMPARE(takeSteps(), (QStringList{"BEGIN", "INSERT Drug", "COMMIT"}));
}

namespace {

/// Seven stored drugs of the ids 11 to 17: the element, a removed child, four children, and one
/// that goes after it.
struct EraseForm
{
    explicit EraseForm(DB *database) : data("Drug", 11, database)
    {
        for (int id = 12; id <= 17; ++id)
            drugs.push_back(std::make_unique<Record>("Drug", id, database));
        data.removeReference(drugs[0].release());
        a = {drugs[1].get(), drugs[2].get()};
        b = {drugs[3].get()};
        c = {drugs[4].get()};
        after = {drugs[5].get()};
    }

    std::vector<std::unique_ptr<Record>> drugs;
    DBElementData data;
    QList<Record *> a, b, c;
    QList<DBElement *> after;
};

} // namespace

using EraseIn = bool (*)(EraseForm *);

void DBElementDataTest::erasesInEveryForm_data()
{
    QTest::addColumn<EraseIn>("erase");
    QTest::addColumn<QStringList>("steps");

    const auto row = [](const char *tag, EraseIn erase, const QStringList &steps) {
        QStringList spelled;
        for (const QString &step : steps)
            spelled += step.at(0).isDigit() ? "DELETE Drug " + step : step;
        QTest::newRow(tag) << erase << spelled;
    };
    row("alone", [](EraseForm *form) { return form->data.erase(); }, {"12", "11"});
    row("with elements after it", [](EraseForm *form) { return form->data.erase(form->after); },
        {"12", "11", "17"});
    row("one list", [](EraseForm *form) { return form->data.erase(form->after, form->a); },
        {"BEGIN", "12", "13", "14", "11", "17", "COMMIT"});
    row("two lists",
        [](EraseForm *form) { return form->data.erase(form->after, form->b, form->a); },
        {"BEGIN", "12", "15", "13", "14", "11", "17", "COMMIT"});
    row("three lists",
        [](EraseForm *form) { return form->data.erase(form->after, form->a, form->b, form->c); },
        {"BEGIN", "12", "13", "14", "15", "16", "11", "17", "COMMIT"});
}

void DBElementDataTest::erasesInEveryForm()
{
    QFETCH(const EraseIn, erase);
    QFETCH(const QStringList, steps);
    for (int id = 11; id <= 17; ++id)
        library->run(QStringLiteral("INSERT INTO Drug VALUES(%1, '%1')").arg(id));
    statements.take();

    EraseForm form(db());
    QVERIFY(erase(&form));
    QCOMPARE(takeSteps(), steps);
    QCOMPARE(form.data.id(), 0);
    QVERIFY(form.data.removedReferences().isEmpty());
    const QStringList deleted = steps.filter("DELETE");
    QCOMPARE(library->count("Drug"), 9 - deleted.size());
}

void DBElementDataTest::erasesAWormInItsOrder()
{
    const std::unique_ptr<Morphology> worm = smallWorm("small");
    worm->submit(db());
    statements.take();

    QVERIFY(worm->erase());
    QCOMPARE(takeSteps(),
             (QStringList{"BEGIN", "DELETE RegionsLink 1", "DELETE RegionParam 1",
                          "DELETE RegionParam 2", "DELETE RegionParam 3", "DELETE Organ 1",
                          "DELETE SpotOrgan 1", "DELETE Region 1", "DELETE RegionParam 4",
                          "DELETE RegionParam 5", "DELETE RegionParam 6", "DELETE Organ 2",
                          "DELETE LineOrgan 1", "DELETE Region 2", "DELETE MorphologyImage 1",
                          "DELETE Morphology 2", "COMMIT"}));
    QCOMPARE(idsOf(*worm), QList<int>(13, 0));
}

void DBElementDataTest::skipsMissingElementsThatGoAfterTheRow()
{
    DBElementData data("Drug", 1, db());
    Record other("Drug", 2, db());
    QVERIFY(data.erase({nullptr, &other, nullptr}));
    QCOMPARE(library->count("Drug"), 0);
    QVERIFY(data.erase({nullptr}, QList<Record *>()));
}

void DBElementDataTest::aPlainEraseThatFailsOnlySaysSo()
{
    const QStringList before = content(*library);
    DBElementData data("Morphology", 1, db()); // in use
    QVERIFY(!data.erase());
    QCOMPARE(data.id(), 0);
    QCOMPARE(content(*library), before);
    QVERIFY(!QFile::exists(logName));
    QCOMPARE(takeSteps(), QStringList{"DELETE Morphology 1"});
}

void DBElementDataTest::aPlainEraseGoesOnAfterAFailure()
{
    Record first("MorphologyAction", 1, db()); // in use
    Record last("Drug", 1, db());
    DBElementData data("Morphology", 1, db()); // in use
    QVERIFY(!data.erase({&first, &last}));
    QCOMPARE(library->count("Morphology"), 1);
    QCOMPARE(library->count("MorphologyAction"), 1);
    QCOMPARE(library->count("Drug"), 1);
}

void DBElementDataTest::aRemovedChildThatCannotGoDoesNotKeepTheRow()
{
    DBElementData data("Drug", 1, db());
    data.removeReference(new Record("Morphology", 1, db())); // in use
    data.removeReference(new Record("Drug", 2, db()));
    QVERIFY(!data.erase());
    QCOMPARE(library->count("Morphology"), 1);
    QCOMPARE(library->count("Drug"), 0);
    QVERIFY(data.removedReferences().isEmpty());
}

void DBElementDataTest::anEraseOfATreeThatFailsTakesAllBack()
{
    const std::unique_ptr<Morphology> worm = smallWorm("small");
    const int id = worm->submit(db());
    library->run(QStringLiteral("INSERT INTO MorphologyAction VALUES(2, %1)").arg(id));
    const QStringList before = content(*library);

    QVERIFY(!worm->erase());
    QCOMPARE(content(*library), before);
    QCOMPARE(idsOf(*worm), QList<int>(13, 0));
    QVERIFY(db()->lastError().contains("FOREIGN KEY constraint failed"));
    QCOMPARE(loggedLines(), QStringList{eraseError + db()->lastError()});
}

// --- Copying ---

void DBElementDataTest::aCopyWithIdsWritesTheSameRows()
{
    const std::unique_ptr<Morphology> worm = smallWorm("small");
    worm->submit(db());
    const QStringList before = content(*library);

    Morphology copy(*worm, true);
    QCOMPARE(idsOf(copy), idsOf(*worm));
    copy.submit(db());
    QCOMPARE(content(*library), before);

    copy.setName("renamed");
    copy.regions().first()->setParam(0, 1.25);
    copy.submit(db());
    QVERIFY(!takeSteps().contains("INSERT RegionParam 1"));
    QCOMPARE(library->value("SELECT Name FROM Morphology WHERE Id = 2"), QVariant("renamed"));
    QCOMPARE(library->value("SELECT Value FROM RegionParam WHERE Id = 1"), QVariant(1.25));
    QCOMPARE(content(*library).size(), before.size());
}

void DBElementDataTest::aCopyWithoutIdsIsNew()
{
    const std::unique_ptr<Morphology> worm = smallWorm("small");
    worm->submit(db());
    const QStringList before = content(*library);

    Morphology copy(*worm, false);
    QCOMPARE(idsOf(copy), QList<int>(13, 0));
    copy.setName("small - copy");
    QVERIFY(copy.submit(db()) > 0);
    for (const QString &row : before)
        QVERIFY2(content(*library).contains(row), qPrintable(row));
    for (const char *table : {"Region", "MorphologyImage"})
        QCOMPARE(library->count(table), 2 * (QByteArray(table) == "Region" ? 2 : 1));
}

void DBElementDataTest::assignmentReplacesContentAndIdentity()
{
    const std::unique_ptr<Morphology> target = smallWorm("target");
    const std::unique_ptr<Morphology> source = smallWorm("source");
    target->submit(db());
    source->submit(db());
    const QStringList before = content(*library);

    *target = *source;
    QCOMPARE(idsOf(*target), idsOf(*source));
    QCOMPARE(target->name(), "source");
    QVERIFY(target->record().removedReferences().isEmpty());
    target->submit(db());
    QCOMPARE(content(*library), before);

    target->setName("renamed");
    target->submit(db());
    QCOMPARE(PlainSqlite(library->fileName()).dump("Morphology"),
             (QStringList{"1 'a worm'", "2 'target'", "3 'renamed'"}));
}

void DBElementDataTest::copyingIntoAnElementKeepsItsIdentity()
{
    const std::unique_ptr<Morphology> target = smallWorm("target");
    Morphology source;
    source.setName("changed");
    source.addRegion(ExperimentFactory::instance(nullptr)->regionType(2));
    target->submit(db());
    const int id = target->id();
    const QStringList before = content(*library);

    target->copy(source);
    QCOMPARE(target->id(), id);
    QCOMPARE(idsOf(*target), (QList<int>{id, 0, 0, 0, 0, 0}));
    QCOMPARE(target->record().removedReferences().size(), 4); // link, two regions, picture
    QCOMPARE(content(*library), before);

    QCOMPARE(target->submit(db()), id);
    QVERIFY(target->record().removedReferences().isEmpty());
    PlainSqlite file(library->fileName());
    QCOMPARE(file.dump("Morphology"), (QStringList{"1 'a worm'", "2 'changed'"}));
    QCOMPARE(file.dump("Region"), QStringList{"3 2 2"});
    QCOMPARE(file.dump({"RegionsLink", "Organ", "SpotOrgan", "LineOrgan", "MorphologyImage"}),
             QStringList());
    QCOMPARE(file.dump("RegionParam").size(), 4);
}

QTEST_GUILESS_MAIN(DBElementDataTest)
#include "DBElementDataTest.moc"
