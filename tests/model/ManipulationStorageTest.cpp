#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/ManipulationLines.h"
#include "model/MorphologyAction.h"
#include "model/Region.h"
#include "model/RemoveAction.h"
#include "model/Shorthand.h"
#include "model/SmallTrees.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

#include <array>
#include <limits>

using namespace Planaria;

namespace {

/// A body that is cut and takes a cropped graft, irradiated in the end: rows of all kinds.
std::unique_ptr<Manipulation> plainManipulation(const QString &name = "plain")
{
    auto manipulation = std::make_unique<Manipulation>(named(name + " body").release());
    manipulation->setName(name);
    RemoveAction *cut = manipulation->addRemoveAction(manipulation->rootAction());
    cut->addAreaPoint({1.0, 2.0});
    cut->addAreaPoint({3.0, 4.0});
    JoinAction *join = manipulation->addJoinAction(cut, named(name + " graft").release());
    join->setVectX(5.0);
    join->setVectY(6.0);
    join->setRot(7.0);
    manipulation->addCropAction(join->fromAction2())->addAreaPoint({8.0, 9.0});
    manipulation->addIrradiationAction(join)->addAreaPoint({10.0, 11.0});
    return manipulation;
}

template <typename Action> Action *firstOf(const Manipulation &manipulation)
{
    for (ManipulationAction *action : manipulation.actions()) {
        if (auto *found = dynamic_cast<Action *>(action))
            return found;
    }
    return nullptr;
}

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// The stored worm of name "plain graft", changed so that writing it fails after its own row.
std::unique_ptr<Morphology> graftThatCannotBeWritten(DB *db)
{
    auto worm =
        std::make_unique<Morphology>(db->existId("Morphology", "Name", "plain graft"), db, false);
    worm->addRegion(headType())->setParams({notANumber, 1.0, 1.0, 1.0});
    return worm;
}

/// Changes of a stored plainManipulation() that cannot be written, along with others that could.
struct Failure
{
    const char *name;
    void (*apply)(Manipulation *manipulation, DB *db);
};

constexpr std::array failures{
    Failure{"number of a join",
            [](Manipulation *manipulation, DB *) {
                manipulation->removeAction(firstOf<CropAction>(*manipulation));
                manipulation->addCropAction(manipulation->rootAction());
                firstOf<JoinAction>(*manipulation)->setRot(notANumber);
            }},
    Failure{"first point of an area",
            [](Manipulation *manipulation, DB *) {
                auto *cut = firstOf<RemoveAction>(*manipulation);
                cut->setAreaPoint(0, {notANumber, 0.0});
                cut->setAreaPoint(1, {30.0, 40.0});
                cut->addAreaPoint({50.0, 60.0});
            }},
    Failure{"input of an area",
            [](Manipulation *manipulation, DB *) {
                firstOf<JoinAction>(*manipulation)->setRot(notANumber);
                auto *irradiation = firstOf<IrradiationAction>(*manipulation);
                irradiation->setAreaPoint(0, {30.0, 40.0});
                irradiation->addAreaPoint({50.0, 60.0}, 0);
            }},
    Failure{"worm of a new leaf",
            [](Manipulation *manipulation, DB *db) {
                manipulation->addJoinAction(manipulation->rootAction(),
                                            graftThatCannotBeWritten(db).release());
            }},
    Failure{"other worm of a leaf",
            [](Manipulation *manipulation, DB *db) {
                dynamic_cast<MorphologyAction *>(firstOf<RemoveAction>(*manipulation)->fromAction())
                    ->setMorphology(graftThatCannotBeWritten(db).release());
            }},
};

/// The tables into which @p statements insert, in order.
QStringList insertedInto(const QStringList &statements)
{
    QStringList tables;
    for (const QString &statement : statements) {
        if (statement.startsWith("INSERT INTO"))
            tables += statement.section(' ', 2, 2);
    }
    return tables;
}

/// Whether @p statements are one transaction from the first to the last.
bool isOneTransaction(const QStringList &statements)
{
    return statements.value(0) == "BEGIN TRANSACTION;" && statements.last() == "COMMIT;" &&
           statements.filter("TRANSACTION").size() == 1 &&
           statements.filter("COMMIT").size() == 1 && statements.filter("ROLLBACK").isEmpty();
}

} // namespace

class ManipulationStorageTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void writesEachValueIntoItsColumn();
    void tellsRowsOfBothTablesApart();
    void writesInputsBeforeWhatTakesThem();
    void writesAndErasesInOneTransaction();
    void readsActionsFromTheRootUp();
    void readsPointsInTheOrderOfTheirNumbers();
    void readsEachLeafWithAWormOfItsOwn();
    void writesAgainIntoTheSameRows();
    void writesTheWormsOfItsLeaves();
    void findsNothingWhereThereIsNone();

    void erasesRemovedActionsAtTheNextSubmit_data();
    void erasesRemovedActionsAtTheNextSubmit();
    void erasesRemovedPointsAtTheNextSubmit();
    void erasesPointsOfARemovedAction();
    void leavesRowsOfRemovedActionsOfAManipulationThatIsDropped();

    void erasingLeavesTheWorms();
    void erasesWhatWaitsToBeErasedToo();
    void erasesNothingThatAnExperimentUses();
    void writesAnErasedManipulationAnew();

    void writesNothingOfATreeThatFails_data();
    void writesNothingOfATreeThatFails();
    void writesNoLeafBesideABranchThatFails();
    void failedRewriteLeavesTheFileAsItWas_data();
    void failedRewriteLeavesTheFileAsItWas();
    void writesNothingWithoutARoot();

private:
    std::unique_ptr<Manipulation> loaded(int id)
    {
        return std::make_unique<Manipulation>(id, library->db());
    }

    QStringList stored(const QString &sql) { return rows(library.get(), sql); }

    StatementLog log; // before any connection opens
    std::unique_ptr<TemporaryLibrary> library;
};

void ManipulationStorageTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    library->run(QStringLiteral("PRAGMA synchronous = OFF"));
}

void ManipulationStorageTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
}

// --- Writing and reading ---

void ManipulationStorageTest::writesEachValueIntoItsColumn()
{
    Manipulation chain(named("worm").release());
    chain.setName("chain");
    chain.addRemoveAction(chain.rootAction())->addAreaPoint({1.0, 2.0});
    chain.addCropAction(chain.rootAction())->addAreaPoint({3.0, 4.0});
    AreaAction *irradiation = chain.addIrradiationAction(chain.rootAction());
    irradiation->addAreaPoint({5.0, 6.0});
    irradiation->addAreaPoint({7.0, 8.0});
    QCOMPARE(chain.submit(library->db()), 1);

    QCOMPARE(stored("SELECT Name, RootAction FROM Manipulation"), QStringList{"chain 4"});
    QCOMPARE(stored("SELECT * FROM ManipulationAction"),
             (QStringList{"1 1 NULL NULL NULL NULL", "2 NULL 1 NULL NULL NULL",
                          "3 NULL NULL 1 NULL NULL", "4 NULL NULL NULL NULL 1"}));
    QCOMPARE(stored("SELECT * FROM MorphologyAction"), QStringList{"1 1"});
    QCOMPARE(stored("SELECT * FROM RemoveAction"), QStringList{"1 1"});
    QCOMPARE(stored("SELECT * FROM CropAction"), QStringList{"1 2"});
    QCOMPARE(stored("SELECT * FROM IrradiationAction"), QStringList{"1 3"});
    QCOMPARE(stored("SELECT * FROM RemoveActionAreaPoint"), QStringList{"1 1 0 1 2"});
    QCOMPARE(stored("SELECT * FROM CropActionAreaPoint"), QStringList{"1 1 0 3 4"});
    QCOMPARE(stored("SELECT * FROM IrradiationActionAreaPoint"),
             (QStringList{"1 1 0 5 6", "2 1 1 7 8"}));
}

void ManipulationStorageTest::tellsRowsOfBothTablesApart()
{
    plainManipulation("first")->submit(library->db());
    const auto manipulation = plainManipulation("second");
    QCOMPARE(manipulation->submit(library->db()), 2);

    const auto *join = firstOf<JoinAction>(*manipulation);
    const auto *cut = firstOf<RemoveAction>(*manipulation);
    QCOMPARE(join->id(), 2);
    QCOMPARE(cut->id(), 2);
    QVERIFY(join->actionRecord().id() > 6);
    QCOMPARE(cut->area().last()->id(), 4);
    QCOMPARE(stored("SELECT FromAction1, FromAction2, VectX, VectY, Rot FROM JoinAction "
                    "WHERE Id = 2"),
             QStringList{QStringLiteral("%1 %2 5 6 7")
                             .arg(cut->actionRecord().id())
                             .arg(join->fromAction2()->actionRecord().id())});
    QCOMPARE(library->value("SELECT RootAction FROM Manipulation WHERE Id = 2").toInt(),
             manipulation->rootAction()->actionRecord().id());
    QCOMPARE(library->value("SELECT Id FROM ManipulationAction WHERE JoinAction = 2").toInt(),
             join->actionRecord().id());
}

void ManipulationStorageTest::writesInputsBeforeWhatTakesThem()
{
    named("body")->submit(library->db());
    const Morphology body(1, library->db(), false);
    Manipulation manipulation(new Morphology(body, true));
    manipulation.setName("order");
    RemoveAction *cut = manipulation.addRemoveAction(manipulation.rootAction());
    cut->addAreaPoint({});
    cut->addAreaPoint({});
    manipulation.addJoinAction(cut, new Morphology(body, true));

    log.take();
    manipulation.submit(library->db());
    QStringList tables = insertedInto(log.take());
    const QStringList cutBranch{"MorphologyAction",      "ManipulationAction",
                                "RemoveAction",          "RemoveActionAreaPoint",
                                "RemoveActionAreaPoint", "ManipulationAction"};
    const QStringList leafBranch{"MorphologyAction", "ManipulationAction"};
    const QStringList top{"JoinAction", "ManipulationAction", "Manipulation"};
    // Either input of a join may come first.
    if (tables.mid(0, 6) == cutBranch)
        QCOMPARE(tables, cutBranch + leafBranch + top);
    else
        QCOMPARE(tables, leafBranch + cutBranch + top);
}

void ManipulationStorageTest::writesAndErasesInOneTransaction()
{
    const auto manipulation = plainManipulation();
    log.take();
    manipulation->submit(library->db());
    QVERIFY(isOneTransaction(log.take()));

    manipulation->removeAction(firstOf<JoinAction>(*manipulation));
    firstOf<RemoveAction>(*manipulation)->removeAreaPoint(0);
    manipulation->submit(library->db());
    const QStringList rewrite = log.take();
    QVERIFY(isOneTransaction(rewrite));
    QCOMPARE(rewrite.filter("DELETE FROM JoinAction ").size(), 1);
    QCOMPARE(rewrite.filter("DELETE FROM RemoveActionAreaPoint ").size(), 1);

    manipulation->erase();
    QVERIFY(isOneTransaction(log.take()));
}

void ManipulationStorageTest::readsActionsFromTheRootUp()
{
    const auto written = plainManipulation();
    written->submit(library->db());

    const auto read = loaded(1);
    QCOMPARE(manipulationLines(*read, Ids::With), manipulationLines(*written, Ids::With));
    QCOMPARE(brokenLinks(*read), QStringList());
    QStringList kinds;
    for (const ManipulationAction *action : read->actions())
        kinds += kindOf(action);
    QCOMPARE(kinds,
             (QStringList{"irradiation", "join", "remove", "morphology", "crop", "morphology"}));
    QVERIFY(*read == *written);
}

void ManipulationStorageTest::readsPointsInTheOrderOfTheirNumbers()
{
    Manipulation manipulation(named("worm").release());
    manipulation.setName("points");
    AreaAction *crop = manipulation.addCropAction(manipulation.rootAction());
    for (const double x : {0.0, 1.0, 2.0})
        crop->addAreaPoint({x, 0.0});
    manipulation.submit(library->db());
    library->run("UPDATE CropActionAreaPoint SET PointInd = 2 - PointInd");

    const auto read = loaded(1);
    QCOMPARE(firstOf<CropAction>(*read)->calcAreaVector(),
             (QVector<QPointF>{{2.0, 0.0}, {1.0, 0.0}, {0.0, 0.0}}));
    QCOMPARE(brokenLinks(*read), QStringList());
}

void ManipulationStorageTest::readsEachLeafWithAWormOfItsOwn()
{
    named("worm")->submit(library->db());
    Manipulation manipulation(new Morphology(1, library->db(), false));
    manipulation.setName("two of one");
    manipulation.addJoinAction(manipulation.rootAction(), new Morphology(1, library->db(), false));
    manipulation.submit(library->db());

    const QList<Morphology *> worms = loaded(1)->calcMorphologiesList();
    QCOMPARE(worms.size(), 2);
    QVERIFY(worms.first() != worms.last());
    QCOMPARE(stored("SELECT * FROM MorphologyAction"), (QStringList{"1 1", "2 1"}));
    QCOMPARE(library->count("Morphology"), 1);
}

void ManipulationStorageTest::writesAgainIntoTheSameRows()
{
    const auto manipulation = plainManipulation();
    manipulation->submit(library->db());
    const QStringList before = manipulationLines(*manipulation, Ids::With);
    QCOMPARE(manipulation->submit(library->db()), 1);
    QCOMPARE(manipulationLines(*manipulation, Ids::With), before);

    manipulation->setName("renamed");
    firstOf<JoinAction>(*manipulation)->setRot(0.5);
    firstOf<RemoveAction>(*manipulation)->setAreaPoint(1, {-1.0, -2.0});
    manipulation->submit(library->db());
    QCOMPARE(firstDifference(*loaded(1), *manipulation), QString());
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({manipulation.get()}));
}

void ManipulationStorageTest::writesTheWormsOfItsLeaves()
{
    named("worm")->submit(library->db());
    Manipulation manipulation(new Morphology(1, library->db(), false));
    manipulation.setName("worms");
    manipulation.calcMorphologiesList().first()->addRegion(headType());
    manipulation.addJoinAction(manipulation.rootAction(), named("new").release());
    manipulation.submit(library->db());

    QCOMPARE(stored("SELECT * FROM Morphology"), (QStringList{"1 worm", "2 new"}));
    QCOMPARE(stored("SELECT Morphology, Type FROM Region"), QStringList{"1 1"});
}

void ManipulationStorageTest::findsNothingWhereThereIsNone()
{
    const auto manipulation = loaded(7);
    QCOMPARE(manipulation->name(), QString());
    QCOMPARE(manipulation->rootAction(), nullptr);
    QCOMPARE(manipulation->loadAction(1, nullptr), nullptr);
    QCOMPARE(manipulation->loadAction(0, nullptr), nullptr);
    QCOMPARE(Manipulation(named("worm").release()).loadAction(1, nullptr), nullptr);
}

// --- Removed members ---

void ManipulationStorageTest::erasesRemovedActionsAtTheNextSubmit_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("actionsLeft");
    QTest::newRow("above the leaf") << "remove" << 5;
    QTest::newRow("of the second branch") << "crop" << 5;
    QTest::newRow("a join in the middle") << "join" << 3;
    QTest::newRow("the root") << "irradiation" << 5;
}

void ManipulationStorageTest::erasesRemovedActionsAtTheNextSubmit()
{
    QFETCH(QString, kind);
    QFETCH(int, actionsLeft);
    const auto bystander = plainManipulation("bystander");
    bystander->submit(library->db());
    plainManipulation()->submit(library->db());
    const auto manipulation = loaded(2);
    const QStringList before = actionRowsIn(library.get());

    for (ManipulationAction *action : QList(manipulation->actions())) {
        if (kindOf(action) == kind)
            QVERIFY(manipulation->removeAction(action));
    }
    QCOMPARE(manipulation->actions().size(), actionsLeft);
    QCOMPARE(actionRowsIn(library.get()), before);

    QCOMPARE(manipulation->submit(library->db()), 2);
    QVERIFY(manipulation->record().removedReferences().isEmpty());
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({bystander.get(), manipulation.get()}));
    QCOMPARE(firstDifference(*loaded(2), *manipulation), QString());
    QCOMPARE(firstDifference(*loaded(1), *bystander), QString());
    QCOMPARE(library->count("Morphology"), 4);
}

void ManipulationStorageTest::erasesRemovedPointsAtTheNextSubmit()
{
    const auto manipulation = plainManipulation();
    manipulation->submit(library->db());

    firstOf<RemoveAction>(*manipulation)->removeAreaPoint(0);
    QCOMPARE(library->count("RemoveActionAreaPoint"), 2);
    manipulation->submit(library->db());
    QCOMPARE(stored("SELECT PointInd, PointX, PointY FROM RemoveActionAreaPoint"),
             QStringList{"0 3 4"});
}

void ManipulationStorageTest::erasesPointsOfARemovedAction()
{
    const auto manipulation = plainManipulation();
    manipulation->submit(library->db());

    // One point waits in the action, which waits in the manipulation.
    auto *cut = firstOf<RemoveAction>(*manipulation);
    cut->removeAreaPoint(0);
    manipulation->removeAction(cut);
    manipulation->submit(library->db());
    QCOMPARE(library->count("RemoveActionAreaPoint"), 0);
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({manipulation.get()}));
}

void ManipulationStorageTest::leavesRowsOfRemovedActionsOfAManipulationThatIsDropped()
{
    const auto manipulation = plainManipulation();
    manipulation->submit(library->db());

    loaded(1)->removeAndDeleteAll();
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({manipulation.get()}));
    QCOMPARE(firstDifference(*loaded(1), *manipulation), QString());
}

// --- Erasing ---

void ManipulationStorageTest::erasingLeavesTheWorms()
{
    const auto bystander = plainManipulation("bystander");
    bystander->submit(library->db());
    plainManipulation()->submit(library->db());

    const auto manipulation = loaded(2);
    QVERIFY(manipulation->erase());
    QCOMPARE(manipulation->id(), 0);
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({bystander.get()}));
    QCOMPARE(library->count("Morphology"), 4);

    QVERIFY(manipulation->erase());
    QVERIFY(plainManipulation("never written")->erase());
    QVERIFY(bystander->erase());
    QCOMPARE(rowsIn(library.get()), QStringList{"Morphology: 4"});
}

void ManipulationStorageTest::erasesWhatWaitsToBeErasedToo()
{
    const auto manipulation = plainManipulation();
    manipulation->submit(library->db());
    manipulation->removeAction(firstOf<JoinAction>(*manipulation));
    firstOf<RemoveAction>(*manipulation)->removeAreaPoint(0);
    manipulation->addCropAction(manipulation->rootAction());

    QVERIFY(manipulation->erase());
    QCOMPARE(rowsIn(library.get()), QStringList{"Morphology: 2"});
}

void ManipulationStorageTest::erasesNothingThatAnExperimentUses()
{
    const auto manipulation = plainManipulation();
    manipulation->submit(library->db());
    library->run("INSERT INTO Species VALUES (1, 'species')");
    library->run("INSERT INTO Publication (Id, Title) VALUES (1, 'title')");
    library->run("INSERT INTO Experiment VALUES (1, 'experiment', 1, 1, 1)");

    QVERIFY(!loaded(1)->erase());
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({manipulation.get()}));
    QCOMPARE(firstDifference(*loaded(1), *manipulation), QString());
}

void ManipulationStorageTest::writesAnErasedManipulationAnew()
{
    const auto manipulation = plainManipulation();
    manipulation->submit(library->db());
    QVERIFY(manipulation->erase());

    QVERIFY(manipulation->submit(library->db()) > 0);
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({manipulation.get()}));
    QCOMPARE(firstDifference(*loaded(manipulation->id()), *manipulation), QString());
}

// --- Failure ---

void ManipulationStorageTest::writesNothingOfATreeThatFails_data()
{
    QTest::addColumn<QString>("failure");
    QTest::addColumn<bool>("hasInnerJoins");
    for (const char *failure :
         {"name is taken", "number in the first branch", "number in the second branch",
          "worm of the first branch", "worm of the second branch"}) {
        QTest::newRow(failure) << failure << false;
        QTest::addRow("%s, with inner joins", failure) << failure << true;
    }
}

void ManipulationStorageTest::writesNothingOfATreeThatFails()
{
    QFETCH(QString, failure);
    QFETCH(bool, hasInnerJoins);
    const auto present = plainManipulation("present");
    present->submit(library->db());
    const QStringList before = rowsIn(library.get());

    const auto manipulation = plainManipulation("new");
    const QList<Morphology *> worms = manipulation->calcMorphologiesList();
    const auto *join = firstOf<JoinAction>(*manipulation);
    if (hasInnerJoins) {
        manipulation->addJoinAction(join->fromAction1(), named("third").release());
        manipulation->addJoinAction(join->fromAction2(), named("fourth").release());
    }
    if (failure == "name is taken")
        manipulation->setName("present");
    worms.first()->setName("body");
    if (failure == "number in the first branch")
        firstOf<RemoveAction>(*manipulation)->setAreaPoint(1, {0.0, notANumber});
    if (failure == "number in the second branch")
        firstOf<CropAction>(*manipulation)->setAreaPoint(0, {notANumber, 0.0});
    if (failure == "worm of the first branch")
        worms.first()->setName("present body");
    if (failure == "worm of the second branch")
        worms.last()->setName("present graft");

    QVERIFY(manipulation->submit(library->db()) < 1);
    QCOMPARE(rowsIn(library.get()), before);
    QCOMPARE(firstDifference(*loaded(1), *present), QString());
}

void ManipulationStorageTest::writesNoLeafBesideABranchThatFails()
{
    // Which input is written first is open: in one of the two the leaf comes after the failure.
    for (const bool first : {true, false}) {
        Manipulation manipulation(named("body").release());
        manipulation.setName("broken");
        const JoinAction *join =
            manipulation.addJoinAction(manipulation.rootAction(), named("graft").release());
        manipulation.addCropAction(first ? join->fromAction1() : join->fromAction2())
            ->addAreaPoint({std::numeric_limits<double>::quiet_NaN(), 0.0});

        QVERIFY(manipulation.submit(library->db()) < 1);
        QCOMPARE(rowsIn(library.get()), QStringList());
    }
}

void ManipulationStorageTest::failedRewriteLeavesTheFileAsItWas_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < static_cast<int>(failures.size()); ++i)
        QTest::newRow(failures[i].name) << i;
}

void ManipulationStorageTest::failedRewriteLeavesTheFileAsItWas()
{
    QFETCH(int, index);
    const auto written = plainManipulation();
    written->submit(library->db());
    const QStringList before = rowsIn(library.get());

    const auto manipulation = loaded(1);
    manipulation->setName("renamed");
    failures[index].apply(manipulation.get(), library->db());
    log.take();
    QCOMPARE(manipulation->submit(library->db()), 1); // the row that it keeps
    QVERIFY(!log.take().filter("ROLLBACK").isEmpty());

    QCOMPARE(rowsIn(library.get()), before);
    QCOMPARE(firstDifference(*loaded(1), *written), QString());
}

void ManipulationStorageTest::writesNothingWithoutARoot()
{
    const auto written = plainManipulation();
    written->submit(library->db());

    const auto manipulation = loaded(1);
    manipulation->removeAndDeleteAll();
    manipulation->submit(library->db());
    QCOMPARE(firstDifference(*loaded(1), *written), QString());

    Manipulation unstored(named("worm").release());
    unstored.setName("rootless");
    unstored.removeAndDeleteAll();
    QVERIFY(unstored.submit(library->db()) < 1);
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({written.get()}));
}

QTEST_GUILESS_MAIN(ManipulationStorageTest)
#include "ManipulationStorageTest.moc"
