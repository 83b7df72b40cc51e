#include "db/BulkRead.h"
#include "db/PlainSqlite.h"
#include "model/ExperimentLines.h"
#include "model/SmallExperiments.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

#include <functional>

using namespace Planaria;

namespace {

/// The word with which each statement begins.
QStringList firstWords(const QStringList &statements)
{
    QStringList words;
    for (const QString &statement : statements)
        words += statement.section(' ', 0, 0).remove(';');
    return words;
}

} // namespace

/// Experiments in the file.
class ExperimentStorageTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void writesEachValueIntoItsColumn();
    void writesTimesNeverSetAsDayZero();
    void givesEachObjectTheIdOfItsRow();
    void readsWhatWasWritten_data();
    void readsWhatWasWritten();
    void readsChildrenInTheOrderOfTheirRows();
    void readsEmptyColumnsAsZero();
    void writesAgainIntoTheSameRows();
    void writesWhatItRefersTo();
    void leavesPicturesOfResultsInTheFile();
    void startsAResultFromTheDefaultWorm();

    void erasesRemovedChildrenAtTheNextSubmit();
    void erasesResultsOfARemovedSetAndKeepsTheirWorms();
    void leavesRowsOfRemovedChildrenOfAnExperimentThatIsDropped();
    void erasesTheExperimentAndLeavesWhatItRefersTo();
    void erasesWhatWaitsToBeErased();
    void writesAnErasedExperimentAsANewOne();

    void eachWriteIsOneTransaction_data();
    void eachWriteIsOneTransaction();
    void erasesRemovedChildrenBeforeItWrites();
    void writesNothingOfAnExperimentThatIsRefused_data();
    void writesNothingOfAnExperimentThatIsRefused();
    void writesNoSecondExperimentOfAName();

private:
    std::unique_ptr<Experiment> loaded(int id = 1)
    {
        return std::make_unique<Experiment>(id, library->db());
    }
    /// The rows of @p table as another program sees them.
    QStringList rows(const QString &table) { return PlainSqlite(library->fileName()).dump(table); }

    std::unique_ptr<StatementLog> log;
    std::unique_ptr<TemporaryLibrary> library;
};

/// The library starts with the full experiment "first".
void ExperimentStorageTest::init()
{
    log = std::make_unique<StatementLog>();
    library = std::make_unique<TemporaryLibrary>();
    QCOMPARE(fullExperiment("first")->submit(library->db()), 1);
    log->take();
}

void ExperimentStorageTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
    library.reset();
    log.reset();
}

void ExperimentStorageTest::writesEachValueIntoItsColumn()
{
    QCOMPARE(rows("Experiment"), QStringList("1 'first' 1 1 1"));
    QCOMPARE(rows("Manipulation").size(), 1);
    QCOMPARE(rows("Publication"), QStringList("1 'paper' 'https://paper.example' 1901"));
    QCOMPARE(rows("Species"), QStringList("1 'species'"));
    QCOMPARE(rows("RNAi"), QStringList({"1 'gene A' NULL", "2 'gene B' NULL"}));
    QCOMPARE(rows("ExperimentRNAi"), QStringList({"1 1 1", "2 1 2"}));
    QCOMPARE(rows("Drug"), QStringList({"1 'drug A'", "2 'drug B'"}));
    QCOMPARE(rows("ExperimentDrug"), QStringList({"1 1 1 1.0 2.5", "2 1 2 0.25 7.0"}));
    QCOMPARE(rows("ResultSet"), QStringList({"1 1 12 7.0", "2 1 9 14.5"}));
    QCOMPARE(rows("Morphology"),
             QStringList({"1 'body'", "2 'worm A'", "3 'worm B'", "4 'worm C'"}));
    QCOMPARE(rows("ResultantMorphology"), QStringList({"1 1 2 0.75", "2 1 3 0.25", "3 2 4 1.0"}));
}

void ExperimentStorageTest::writesTimesNeverSetAsDayZero()
{
    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->addExperimentDrug(newWord<Drug>("colchicine"));
    experiment->addResultSet();
    experiment->submit(library->db());
    QCOMPARE(rows("ExperimentDrug").last(), QStringLiteral("3 1 3 0.0 0.0"));
    QCOMPARE(rows("ResultSet").last(), QStringLiteral("3 1 0 0.0"));
}

void ExperimentStorageTest::givesEachObjectTheIdOfItsRow()
{
    const std::unique_ptr<Experiment> second = fullExperiment("second");
    // The worms and words are those of the first.
    library->run("UPDATE Manipulation SET Name = Name || ' 1'");
    for (const QString table : {"Drug", "RNAi", "Species", "Morphology"})
        library->run(QStringLiteral("UPDATE %1 SET Name = Name || ' 1'").arg(table));
    library->run("UPDATE Publication SET Title = 'paper 1'");

    QCOMPARE(second->submit(library->db()), 2);
    const QStringList expected{"second #2",
                               "manipulation cut of 2 actions #2",
                               "publication paper, https://paper.example, 1901 #2",
                               "species species #2",
                               "RNAi #3 gene A #3",
                               "RNAi #4 gene B #4",
                               "day 1 to 2.5 #3 drug A #3",
                               "day 0.25 to 7 #4 drug B #4",
                               "12 worms after 7 days #3",
                               "0.75 #4 worm A #6",
                               "0.25 #5 worm B #7",
                               "9 worms after 14.5 days #4",
                               "1 #6 worm C #8"};
    QCOMPARE(experimentLines(*second, Ids::With), expected);
}

void ExperimentStorageTest::readsWhatWasWritten_data()
{
    QTest::addColumn<bool>("inBulk");
    QTest::newRow("by statements") << false;
    QTest::newRow("in bulk") << true;
}

void ExperimentStorageTest::readsWhatWasWritten()
{
    QFETCH(const bool, inBulk);
    DB fresh;
    QCOMPARE(fresh.connect(library->fileName(), false), int(DB::Opened));
    const auto job = inBulk ? std::make_unique<BulkRead>(&fresh) : nullptr;

    const Experiment experiment(1, &fresh);
    const std::unique_ptr<Experiment> written = fullExperiment("first");
    QCOMPARE(experimentLines(experiment, Ids::Without), experimentLines(*written, Ids::Without));
    QVERIFY(experiment == *written);
    QVERIFY(*experiment.manipulation() == *written->manipulation());
    QCOMPARE(experiment.experimentRNAis().first()->experiment(), &experiment);
    QCOMPARE(experiment.experimentDrugs().first()->getExperiment(), &experiment);
    const ResultSet *set = experiment.resultSets().first();
    QCOMPARE(set->experiment(), &experiment);
    QCOMPARE(set->resultantMorphologies().first()->resultSet(), set);
    QCOMPARE(set->resultantMorphologies().first()->morphology()->regions().size(), 1);
}

void ExperimentStorageTest::readsChildrenInTheOrderOfTheirRows()
{
    // Neither by period nor by name.
    std::unique_ptr<Experiment> experiment = loaded();
    addSet(experiment.get(), 1, 2.0);
    addDrug(experiment.get(), "a drug", 0.0, 0.0);
    experiment->submit(library->db());

    experiment = loaded();
    QList<double> periods;
    for (const ResultSet *set : experiment->resultSets())
        periods += set->regenPeriod();
    QCOMPARE(periods, QList<double>({7.0, 14.5, 2.0}));
    QCOMPARE(experiment->experimentDrugs().last()->drug()->name(), QStringLiteral("a drug"));
}

void ExperimentStorageTest::readsEmptyColumnsAsZero()
{
    library->run("UPDATE ExperimentDrug SET StartTime = NULL, EndTime = NULL");
    library->run("UPDATE ResultSet SET Num = NULL, RegenPeriod = NULL");
    const std::unique_ptr<Experiment> experiment = loaded();
    QCOMPARE(experiment->experimentDrugs().first()->startTime(), 0.0);
    QCOMPARE(experiment->experimentDrugs().first()->endTime(), 0.0);
    QCOMPARE(experiment->resultSets().first()->num(), 0);
    QCOMPARE(experiment->resultSets().first()->regenPeriod(), 0.0);
}

void ExperimentStorageTest::writesAgainIntoTheSameRows()
{
    const QStringList before = rowsIn(library.get());
    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->setName("renamed");
    experiment->experimentDrugs().first()->setEndTime(3.0);
    experiment->resultSets().last()->setNum(10);
    experiment->resultSets().first()->resultantMorphologies().last()->setFrequency(0.125);

    QCOMPARE(experiment->submit(library->db()), 1);
    QCOMPARE(rowsIn(library.get()), before);
    QCOMPARE(firstDifference(*loaded(), *experiment), QString());
    QCOMPARE(rows("ExperimentDrug").first(), QStringLiteral("1 1 1 1.0 3.0"));
}

void ExperimentStorageTest::writesWhatItRefersTo()
{
    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->manipulation()->setName("renamed");
    experiment->publication()->setYear(1902);
    experiment->species()->setName("renamed");
    experiment->experimentRNAis().first()->rnai()->setName("renamed");
    experiment->experimentDrugs().last()->drug()->setName("renamed");
    Morphology *worm =
        experiment->resultSets().first()->resultantMorphologies().first()->morphology();
    worm->addRegion(tailType());
    experiment->submit(library->db());

    QCOMPARE(Manipulation(1, library->db()).name(), QStringLiteral("renamed"));
    QCOMPARE(Publication(1, library->db()).year(), 1902);
    QCOMPARE(Species(1, library->db()).name(), QStringLiteral("renamed"));
    QCOMPARE(RNAi(1, library->db()).name(), QStringLiteral("renamed"));
    QCOMPARE(Drug(2, library->db()).name(), QStringLiteral("renamed"));
    QCOMPARE(Morphology(2, library->db(), false).regions().size(), 2);
}

void ExperimentStorageTest::leavesPicturesOfResultsInTheFile()
{
    library->run("INSERT INTO MorphologyImage VALUES(1, 2, x'00ff')");
    for (const char *statement : {"INSERT", "UPDATE", "DELETE"}) {
        library->run(QStringLiteral("CREATE TRIGGER No%1 BEFORE %1 ON MorphologyImage BEGIN "
                                    "SELECT RAISE(ABORT, 'touched'); END")
                         .arg(QLatin1String(statement)));
    }
    log->take();
    const std::unique_ptr<Experiment> experiment = loaded();
    QCOMPARE(log->take().filter("MorphologyImage"), QStringList());
    QCOMPARE(experiment->submit(library->db()), 1);
    QCOMPARE(rows("MorphologyImage"), QStringList("1 2 x'00ff'"));
}

void ExperimentStorageTest::startsAResultFromTheDefaultWorm()
{
    ResultSet set(nullptr);
    const ResultantMorphology result(&set, library->db());
    QCOMPARE(result.morphology()->id(), 1);
    QCOMPARE(result.morphology()->name(), QStringLiteral("body"));
    QCOMPARE(result.resultSet(), &set);
    QCOMPARE(result.frequency(), 0.0);
    QCOMPARE(result.id(), 0);

    TemporaryLibrary empty;
    QCOMPARE(ResultantMorphology(&set, empty.db()).morphology()->name(),
             QStringLiteral("Wild type"));
    QCOMPARE(empty.count("Morphology"), 1);

    TemporaryLibrary withoutRowOne;
    withoutRowOne.run("INSERT INTO Morphology VALUES(2, 'Wild type')");
    QCOMPARE(ResultantMorphology(&set, withoutRowOne.db()).morphology()->id(), 2);
}

// --- Removing and erasing ---

void ExperimentStorageTest::erasesRemovedChildrenAtTheNextSubmit()
{
    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->removeExperimentRNAi(experiment->experimentRNAis().first());
    experiment->experimentDrugs().last()->removeFromExperiment();
    ResultSet *set = experiment->resultSets().first();
    set->removeResultantMorphology(set->resultantMorphologies().first());
    QCOMPARE(experimentRowsIn(library.get()), experimentRowsOf({loaded().get()}));
    QCOMPARE(rows("ExperimentRNAi").size(), 2);

    experiment->submit(library->db());
    QCOMPARE(rows("ExperimentRNAi"), QStringList("2 1 2"));
    QCOMPARE(rows("ExperimentDrug"), QStringList("1 1 1 1.0 2.5"));
    QCOMPARE(rows("ResultantMorphology"), QStringList({"2 1 3 0.25", "3 2 4 1.0"}));
    QCOMPARE(rows("RNAi").size(), 2);
    QCOMPARE(rows("Drug").size(), 2);
    QCOMPARE(queued<DBElement>(experiment.get()).size(), 0);
    QCOMPARE(firstDifference(*loaded(), *experiment), QString());
}

void ExperimentStorageTest::erasesResultsOfARemovedSetAndKeepsTheirWorms()
{
    const std::unique_ptr<Experiment> experiment = loaded();
    ResultSet *set = experiment->resultSets().first();
    set->resultantMorphologies().first()->removeFromResultSet(); // waits in a queue of its own
    experiment->removeResultSet(set);
    experiment->submit(library->db());

    QCOMPARE(rows("ResultSet"), QStringList("2 1 9 14.5"));
    QCOMPARE(rows("ResultantMorphology"), QStringList("3 2 4 1.0"));
    QCOMPARE(rows("Morphology").size(), 4);
}

void ExperimentStorageTest::leavesRowsOfRemovedChildrenOfAnExperimentThatIsDropped()
{
    const QStringList before = experimentLines(*loaded(), Ids::With);
    loaded()->removeAndDeleteAll();
    QCOMPARE(experimentLines(*loaded(), Ids::With), before);
}

void ExperimentStorageTest::erasesTheExperimentAndLeavesWhatItRefersTo()
{
    QVERIFY(loaded()->erase());
    QCOMPARE(rowsIn(library.get()),
             QStringList({"Drug: 2", "Manipulation: 1", "ManipulationAction: 2", "Morphology: 4",
                          "MorphologyAction: 1", "Publication: 1", "RNAi: 2", "Region: 4",
                          "RegionParam: 16", "RemoveAction: 1", "RemoveActionAreaPoint: 1",
                          "Species: 1"}));
}

void ExperimentStorageTest::erasesWhatWaitsToBeErased()
{
    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->clearResultSets();
    experiment->clearExperimentDrugs();
    QVERIFY(experiment->erase());
    QCOMPARE(experiment->id(), 0);
    QCOMPARE(experimentRowsIn(library.get()), QStringList());
}

void ExperimentStorageTest::writesAnErasedExperimentAsANewOne()
{
    const std::unique_ptr<Experiment> experiment = loaded();
    const QStringList before = rowsIn(library.get());
    experiment->erase();
    QVERIFY(experiment->submit(library->db()) > 0);
    QCOMPARE(rowsIn(library.get()), before);
    QCOMPARE(firstDifference(*loaded(experiment->id()), *experiment), QString());
}

// --- Transactions ---

void ExperimentStorageTest::eachWriteIsOneTransaction_data()
{
    using Write = std::function<bool(DB *, Experiment *)>;
    QTest::addColumn<Write>("write");

    QTest::newRow("new") << Write([](DB *db, Experiment *experiment) {
        Experiment copy(*experiment, false);
        copy.setName("second");
        return copy.submit(db) == 2;
    });
    QTest::newRow("again") << Write(
        [](DB *db, Experiment *experiment) { return experiment->submit(db) == 1; });
    QTest::newRow("with removed children") << Write([](DB *db, Experiment *experiment) {
        experiment->clearExperimentRNAis();
        experiment->clearExperimentDrugs();
        experiment->clearResultSets();
        return experiment->submit(db) == 1;
    });
    QTest::newRow("with other content") << Write([](DB *db, Experiment *experiment) {
        const Experiment source(*experiment, false);
        experiment->copy(source);
        return experiment->submit(db) == 1;
    });
    QTest::newRow("erased") << Write(
        [](DB *, Experiment *experiment) { return experiment->erase(); });
}

void ExperimentStorageTest::eachWriteIsOneTransaction()
{
    using Write = std::function<bool(DB *, Experiment *)>;
    QFETCH(const Write, write);

    const std::unique_ptr<Experiment> experiment = loaded();
    log->take();
    QVERIFY(write(library->db(), experiment.get()));
    QStringList words = firstWords(log->take());
    words.removeAll("SELECT"); // of pictures that a copy takes along
    QVERIFY(words.size() > 7);
    QCOMPARE(words.takeFirst(), QStringLiteral("BEGIN"));
    QCOMPARE(words.takeLast(), QStringLiteral("COMMIT"));
    for (const QString &word : words)
        QVERIFY2(QStringList({"INSERT", "UPDATE", "DELETE"}).contains(word), qPrintable(word));
}

void ExperimentStorageTest::erasesRemovedChildrenBeforeItWrites()
{
    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->clearResultSets();
    addSet(experiment.get(), 1, 1.0);
    log->take();
    experiment->submit(library->db());
    const QStringList words = firstWords(log->take());
    QVERIFY(words.lastIndexOf("DELETE") < words.indexOf("UPDATE"));
    QCOMPARE(words.count("DELETE"), 5);
    QCOMPARE(rows("ResultSet"), QStringList("1 1 1 1.0")); // SQLite uses the freed row
}

void ExperimentStorageTest::writesNothingOfAnExperimentThatIsRefused_data()
{
    using Change = std::function<void(Experiment *)>;
    QTest::addColumn<Change>("change");

    QTest::newRow("taken name") << Change([](Experiment *copy) { copy->setName("first"); });
    QTest::newRow("no name") << Change([](Experiment *copy) { copy->setName(QString()); });
    QTest::newRow("no manipulation")
        << Change([](Experiment *copy) { copy->setManipulation(nullptr); });
    QTest::newRow("no publication")
        << Change([](Experiment *copy) { copy->setPublication(nullptr); });
    QTest::newRow("no species") << Change([](Experiment *copy) { copy->setSpecies(nullptr); });
    QTest::newRow("new drug without a name")
        << Change([](Experiment *copy) { copy->addExperimentDrug(new Drug); });
    QTest::newRow("new RNAi of a taken name")
        << Change([](Experiment *copy) { copy->addExperimentRNAi(newWord<RNAi>("gene A")); });
    QTest::newRow("new worm without a name") << Change([](Experiment *copy) {
        copy->resultSets().last()->addResultantMorphology(new Morphology);
    });
    QTest::newRow("frequency that is no number") << Change([](Experiment *copy) {
        copy->resultSets().last()->resultantMorphologies().last()->setFrequency(qQNaN());
    });
}

void ExperimentStorageTest::writesNothingOfAnExperimentThatIsRefused()
{
    using Change = std::function<void(Experiment *)>;
    QFETCH(const Change, change);
    const QStringList before = rowsIn(library.get());
    const QStringList content = experimentLines(*loaded(), Ids::With);

    Experiment copy(*loaded(), false);
    copy.setName("second");
    change(&copy);
    copy.submit(library->db());
    QVERIFY(!library->db()->inTransaction());
    QCOMPARE(rowsIn(library.get()), before);
    QCOMPARE(experimentLines(*loaded(), Ids::With), content);
}

void ExperimentStorageTest::writesNoSecondExperimentOfAName()
{
    Experiment second(*loaded(), false);
    QVERIFY(second.submit(library->db()) < 1);
    second.setName("second");
    QCOMPARE(second.submit(library->db()), 2);
}

QTEST_GUILESS_MAIN(ExperimentStorageTest)
#include "ExperimentStorageTest.moc"
