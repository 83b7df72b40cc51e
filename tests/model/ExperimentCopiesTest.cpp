#include "model/ExperimentLines.h"
#include "model/SmallExperiments.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

using namespace Planaria;

namespace {

/// The tables of what experiments refer to.
const QStringList referredTables{"Manipulation", "Publication", "Species",
                                 "RNAi",         "Drug",        "Morphology"};

} // namespace

/// Identity and rows of copied and assigned experiments, in one file and between two.
class ExperimentCopiesTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void copyWithoutIdsIsANewExperimentOnTheSameReferences();
    void copyOfANewExperimentSharesWhatIsStored();
    void copyWithIdsWritesIntoTheSameRows();
    void erasingACopyWithoutIdsErasesNothing();
    void copiedSetIsANewOneOnTheSameWorms();
    void assignmentTakesOverTheIdentity();
    void assignmentKeepsWhatWaitsToBeErased();
    void copyingIntoAnExperimentKeepsItsIdentityAndReplacesItsRows();
    void copyingIntoAnExperimentIsUndoneByDroppingIt();
    void selfAssignmentAndSelfCopyKeepTheRows();

    void anotherFileGetsAllOfAnExperiment_data();
    void anotherFileGetsAllOfAnExperiment();
    void anotherFileKeepsItsOwnElementsOfTheSameNames();
    void anotherFileTakesNothingThatItsNamesRefuse();
    void experimentOfAnotherFileCanBeCopiedIntoAStoredOne();

private:
    std::unique_ptr<Experiment> loaded(int id = 1)
    {
        return std::make_unique<Experiment>(id, library->db());
    }
    QStringList experimentRows() { return experimentRowsIn(library.get()); }
    static QList<int> referredRows(TemporaryLibrary *file)
    {
        QList<int> counts;
        for (const QString &table : referredTables)
            counts += file->count(table);
        return counts;
    }

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<TemporaryLibrary> otherLibrary;
};

/// The library starts with the full experiment "first".
void ExperimentCopiesTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    otherLibrary = std::make_unique<TemporaryLibrary>();
    QCOMPARE(fullExperiment("first")->submit(library->db()), 1);
}

void ExperimentCopiesTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
    QCOMPARE(otherLibrary->brokenReferences(), QStringList());
}

void ExperimentCopiesTest::copyWithoutIdsIsANewExperimentOnTheSameReferences()
{
    const QList<int> referred = referredRows(library.get());
    const std::unique_ptr<Experiment> source = loaded();
    Experiment copy(*source, false);
    QCOMPARE(copy.id(), 0);
    QCOMPARE(copy.manipulation()->id(), 1);
    QCOMPARE(copy.experimentDrugs().last()->drug()->id(), 2);
    QCOMPARE(copy.experimentDrugs().last()->id(), 0);

    copy.setName("first - copy");
    QCOMPARE(copy.submit(library->db()), 2);
    QCOMPARE(experimentRows(), experimentRowsOf({source.get(), &copy}));
    QCOMPARE(referredRows(library.get()), referred);
    QCOMPARE(firstDifference(*loaded(1), *source), QString());
    QCOMPARE(firstDifference(*loaded(2), copy), QString());
    QCOMPARE(
        experimentLines(copy, Ids::With),
        QStringList({"first - copy #2", "manipulation cut of 2 actions #1",
                     "publication paper, https://paper.example, 1901 #1", "species species #1",
                     "RNAi #3 gene A #1", "RNAi #4 gene B #2", "day 1 to 2.5 #3 drug A #1",
                     "day 0.25 to 7 #4 drug B #2", "12 worms after 7 days #3", "0.75 #4 worm A #2",
                     "0.25 #5 worm B #3", "9 worms after 14.5 days #4", "1 #6 worm C #4"}));
}

void ExperimentCopiesTest::copyOfANewExperimentSharesWhatIsStored()
{
    std::unique_ptr<Experiment> experiment = loaded();
    experiment = std::make_unique<Experiment>(*experiment, false);
    experiment = std::make_unique<Experiment>(*experiment, false);
    experiment->setName("second");
    const QList<int> referred = referredRows(library.get());
    QCOMPARE(experiment->submit(library->db()), 2);
    QCOMPARE(referredRows(library.get()), referred);
}

void ExperimentCopiesTest::copyWithIdsWritesIntoTheSameRows()
{
    const std::unique_ptr<Experiment> source = loaded();
    Experiment copy(*source, true);
    QCOMPARE(firstDifference(copy, *source), QString());

    copy.setName("renamed");
    copy.removeExperimentDrug(copy.experimentDrugs().first());
    copy.resultSets().first()->setNum(1);
    QCOMPARE(copy.submit(library->db()), 1);
    QCOMPARE(experimentRows(), experimentRowsOf({&copy}));
    QCOMPARE(firstDifference(*loaded(), copy), QString());
}

void ExperimentCopiesTest::erasingACopyWithoutIdsErasesNothing()
{
    const QStringList before = rowsIn(library.get());
    QVERIFY(Experiment(*loaded(), false).erase());
    QCOMPARE(rowsIn(library.get()), before);
}

void ExperimentCopiesTest::copiedSetIsANewOneOnTheSameWorms()
{
    const std::unique_ptr<Experiment> experiment = loaded();
    ResultSet *set = experiment->addResultSet(*experiment->resultSets().first());
    set->setRegenPeriod(21.0);
    QCOMPARE(set->id(), 0);
    QCOMPARE(set->resultantMorphologies().first()->id(), 0);
    experiment->submit(library->db());

    QCOMPARE(library->count("Morphology"), 4);
    QCOMPARE(experimentRows(), experimentRowsOf({experiment.get()}));
    const std::unique_ptr<Experiment> read = loaded();
    QCOMPARE(read->resultSets().last()->id(), 3);
    QCOMPARE(read->resultSets().last()->num(), 12);
    QCOMPARE(read->resultSets().last()->resultantMorphologies().first()->morphology()->id(), 2);
}

void ExperimentCopiesTest::assignmentTakesOverTheIdentity()
{
    Experiment second(*loaded(), false);
    second.setName("second");
    second.clearExperimentDrugs();
    second.submit(library->db());
    const std::unique_ptr<Experiment> former = loaded();

    const std::unique_ptr<Experiment> experiment = loaded();
    *experiment = second;
    QCOMPARE(firstDifference(*experiment, second), QString());
    QCOMPARE(experiment->submit(library->db()), 2);
    QCOMPARE(experimentRows(), experimentRowsOf({former.get(), &second}));
    QCOMPARE(firstDifference(*loaded(), *former), QString());
}

void ExperimentCopiesTest::assignmentKeepsWhatWaitsToBeErased()
{
    Experiment second(*loaded(), false);
    second.setName("second");
    second.submit(library->db());

    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->removeExperimentRNAi(experiment->experimentRNAis().first());
    const QList<DBElement *> queue = experiment->record().removedReferences();
    *experiment = second;
    QCOMPARE(experiment->record().removedReferences(), queue);

    QCOMPARE(experiment->submit(library->db()), 2);
    QCOMPARE(loaded(1)->experimentRNAis().size(), 1);
    QCOMPARE(loaded(2)->experimentRNAis().size(), 2);
}

void ExperimentCopiesTest::copyingIntoAnExperimentKeepsItsIdentityAndReplacesItsRows()
{
    Experiment second(*loaded(), false);
    second.setName("second");
    second.clearExperimentDrugs();
    second.setSpecies(newWord<Species>("another"));
    second.submit(library->db());

    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->copy(second);
    experiment->setName("third");
    QCOMPARE(experiment->id(), 1);
    QCOMPARE(experiment->species()->id(), 2);
    QCOMPARE(experiment->resultSets().first()->id(), 0);

    QCOMPARE(experiment->submit(library->db()), 1);
    QCOMPARE(experimentRows(), experimentRowsOf({experiment.get(), &second}));
    QCOMPARE(firstDifference(*loaded(1), *experiment), QString());
    QCOMPARE(firstDifference(*loaded(2), second), QString());
    QCOMPARE(library->count("Species"), 2);
}

void ExperimentCopiesTest::copyingIntoAnExperimentIsUndoneByDroppingIt()
{
    const QStringList before = experimentLines(*loaded(), Ids::With);
    loaded()->copy(*bareExperiment("other"));
    QCOMPARE(experimentLines(*loaded(), Ids::With), before);
}

void ExperimentCopiesTest::selfAssignmentAndSelfCopyKeepTheRows()
{
    const QStringList before = experimentLines(*loaded(), Ids::With);
    const std::unique_ptr<Experiment> experiment = loaded();
    Experiment &self = *experiment;

    *experiment = self;
    experiment->copy(self);
    QCOMPARE(experiment->submit(library->db()), 1);
    QCOMPARE(experimentLines(*loaded(), Ids::With), before);
}

// --- Two files ---

void ExperimentCopiesTest::anotherFileGetsAllOfAnExperiment_data()
{
    QTest::addColumn<bool>("byCopy");
    QTest::newRow("itself") << false;
    QTest::newRow("a copy with ids") << true;
}

void ExperimentCopiesTest::anotherFileGetsAllOfAnExperiment()
{
    QFETCH(const bool, byCopy);
    bareExperiment("there before")->submit(otherLibrary->db());
    for (const QString &table : referredTables) {
        const QString column = table == "Publication" ? "Title" : "Name";
        otherLibrary->run(QStringLiteral("UPDATE %1 SET %2 = %2 || ' before'").arg(table, column));
    }
    const QStringList before = rowsIn(library.get());

    std::unique_ptr<Experiment> experiment = loaded();
    if (byCopy)
        experiment = std::make_unique<Experiment>(*experiment, true);
    QCOMPARE(experiment->submit(otherLibrary->db()), 2);
    QCOMPARE(experiment->manipulation()->id(), 2);
    QCOMPARE(experiment->experimentDrugs().last()->drug()->id(), 2);

    const Experiment arrived(2, otherLibrary->db());
    QCOMPARE(firstDifference(arrived, *experiment), QString());
    QVERIFY(arrived == *loaded());
    QVERIFY(*arrived.manipulation() == *loaded()->manipulation());
    QCOMPARE(rowsIn(library.get()), before);

    // From now on it lives there.
    experiment->removeResultSet(experiment->resultSets().first());
    QCOMPARE(experiment->submit(otherLibrary->db()), 2);
    QCOMPARE(otherLibrary->count("ResultSet"), 1);
    QCOMPARE(library->count("ResultSet"), 2);
}

void ExperimentCopiesTest::anotherFileKeepsItsOwnElementsOfTheSameNames()
{
    // As it is done between two libraries: what the other has of a name takes the place.
    fullExperiment("there before")->submit(otherLibrary->db());
    const QList<int> referred = referredRows(otherLibrary.get());
    DB *other = otherLibrary->db();
    const std::unique_ptr<Experiment> experiment = loaded();
    *experiment->manipulation() = Manipulation(1, other);
    *experiment->publication() = Publication(1, other);
    *experiment->species() = Species(1, other);
    for (ExperimentDrug *treatment : experiment->experimentDrugs())
        *treatment->drug() = Drug(treatment->drug()->id(), other);
    for (ExperimentRNAi *treatment : experiment->experimentRNAis())
        *treatment->rnai() = RNAi(treatment->rnai()->id(), other);
    for (const ResultSet *set : experiment->resultSets()) {
        for (ResultantMorphology *result : set->resultantMorphologies())
            *result->morphology() = Morphology(result->morphology()->id(), other, false);
    }

    QCOMPARE(experiment->submit(other), 2);
    QCOMPARE(referredRows(otherLibrary.get()), referred);
    QVERIFY(Experiment(2, other) == *loaded());
}

void ExperimentCopiesTest::anotherFileTakesNothingThatItsNamesRefuse()
{
    // Each result has a worm of its own: written to a file that has not got it, the second of the
    // same name is refused.
    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->addResultSet(*experiment->resultSets().first());
    experiment->submit(otherLibrary->db());
    QVERIFY(!otherLibrary->db()->inTransaction());
    QCOMPARE(rowsIn(otherLibrary.get()), QStringList());
}

void ExperimentCopiesTest::experimentOfAnotherFileCanBeCopiedIntoAStoredOne()
{
    bareExperiment("there before")->submit(otherLibrary->db());
    for (const QString table : {"Manipulation", "Species", "Morphology"})
        otherLibrary->run(QStringLiteral("UPDATE %1 SET Name = Name || ' before'").arg(table));
    otherLibrary->run("UPDATE Publication SET Title = 'before'");
    Experiment experiment(1, otherLibrary->db());

    experiment.copy(*loaded());
    QCOMPARE(experiment.submit(otherLibrary->db()), 1);
    QVERIFY(Experiment(1, otherLibrary->db()) == *loaded());
    QCOMPARE(experimentRowsIn(otherLibrary.get()), experimentRowsOf({&experiment}));
    QCOMPARE(otherLibrary->count("Species"), 2);
}

QTEST_GUILESS_MAIN(ExperimentCopiesTest)
#include "ExperimentCopiesTest.moc"
