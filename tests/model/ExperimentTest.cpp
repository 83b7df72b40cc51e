#include "model/ExperimentLines.h"
#include "model/SmallExperiments.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

#include <algorithm>
#include <functional>

using namespace Planaria;

namespace {

/// One way to remove a child that was just added. @return what the parent's operation said; true
/// where the child began
using Removal = std::function<bool(Experiment *)>;

QList<const DBElement *> membersOf(const Experiment &experiment)
{
    QList<const DBElement *> all;
    for (const ExperimentRNAi *treatment : experiment.experimentRNAis())
        all += treatment;
    for (const ExperimentDrug *treatment : experiment.experimentDrugs())
        all += treatment;
    for (const ResultSet *set : experiment.resultSets())
        all += set;
    return all;
}

QList<const DBElement *> queue(const Experiment &experiment)
{
    return queued<DBElement>(&experiment);
}

const ResultantMorphology *firstResult(const Experiment &experiment)
{
    return experiment.resultSets().first()->resultantMorphologies().first();
}

} // namespace

/// Experiments in memory.
class ExperimentTest final : public QObject
{
    Q_OBJECT

private slots:
    void newExperimentHasNothing();
    void newChildrenHaveTheirDefaults();
    void settersReplaceWhatIsReferredTo();
    void childrenAreAddedAtTheEndAndKnowTheirOwner();
    void addedSetIsACopyOfAnother();

    void removedChildIsQueuedOnce_data();
    void removedChildIsQueuedOnce();
    void childOfAnotherExperimentIsNotRemoved();
    void resultIsRemovedFromItsSet();
    void clearingAnEmptyListDoesNothing();
    void clearingQueuesFromTheLastToTheFirst_data();
    void clearingQueuesFromTheLastToTheFirst();
    void removingAllLeavesNothing();
    void nothingIsErasedOfWhatWasNeverStored();

    void equalityLooksAtNamesNumbersAndOrder_data();
    void equalityLooksAtNamesNumbersAndOrder();
    void equalityNeedsAllReferences_data();
    void equalityNeedsAllReferences();
    void elementsOfAListAreComparedOneByOne();

    void copyHasAllFieldsAndObjectsOfItsOwn();
    void copyOfAnEmptyExperimentIsEmpty();
    void copyingIntoAnExperimentQueuesItsChildren();
    void copyOfAResultShowsThePictures();
};

void ExperimentTest::newExperimentHasNothing()
{
    const Experiment experiment;
    QVERIFY(experiment.name().isNull());
    QCOMPARE(experiment.id(), 0);
    QVERIFY(!experiment.manipulation());
    QVERIFY(!experiment.publication());
    QVERIFY(!experiment.species());
    QCOMPARE(membersOf(experiment), QList<const DBElement *>());
}

void ExperimentTest::newChildrenHaveTheirDefaults()
{
    Experiment experiment;
    const ResultSet *set = experiment.addResultSet();
    QCOMPARE(set->num(), 0);
    QCOMPARE(set->regenPeriod(), 0.0);
    QCOMPARE(set->resultantMorphologies().size(), 0);

    const ExperimentDrug *treatment = experiment.addExperimentDrug(newWord<Drug>("colchicine"));
    QCOMPARE(treatment->startTime(), 0.0);
    QCOMPARE(treatment->endTime(), 0.0);

    const auto *result = experiment.resultSets().first()->addResultantMorphology(newWorm("worm"));
    QCOMPARE(result->frequency(), 0.0);
    for (const DBElement *element : membersOf(experiment))
        QCOMPARE(element->id(), 0);
}

void ExperimentTest::settersReplaceWhatIsReferredTo()
{
    Experiment experiment;
    for (const QString name : {"former", "latter"}) {
        experiment.setName(name);
        experiment.setManipulation(newManipulation(name));
        experiment.setPublication(newPublication(name));
        experiment.setSpecies(newWord<Species>(name));
        QCOMPARE(experiment.name(), name);
        QCOMPARE(experiment.manipulation()->name(), name);
        QCOMPARE(experiment.publication()->title(), name);
        QCOMPARE(experiment.species()->name(), name);
    }

    ExperimentDrug *drug = addDrug(&experiment, "former", 1.0, 2.0);
    drug->setDrug(newWord<Drug>("latter"));
    QCOMPARE(drug->drug()->name(), QStringLiteral("latter"));
    QCOMPARE(drug->startTime(), 1.0);
    ExperimentRNAi *rnai = experiment.addExperimentRNAi(newWord<RNAi>("former"));
    rnai->setRNAi(newWord<RNAi>("latter"));
    QCOMPARE(rnai->rnai()->name(), QStringLiteral("latter"));
    ResultantMorphology *result =
        experiment.addResultSet()->addResultantMorphology(newWorm("former"));
    result->setMorphology(newWorm("latter"));
    QCOMPARE(result->morphology()->name(), QStringLiteral("latter"));

    experiment.setManipulation(nullptr);
    QVERIFY(!experiment.manipulation());
}

void ExperimentTest::childrenAreAddedAtTheEndAndKnowTheirOwner()
{
    Experiment experiment;
    for (int count = 1; count <= 3; ++count) {
        Drug *drug = newWord<Drug>("drug");
        const ExperimentDrug *treatment = experiment.addExperimentDrug(drug);
        QCOMPARE(treatment->drug(), drug);
        QCOMPARE(treatment->getExperiment(), &experiment);
        QCOMPARE(experiment.experimentDrugs().last(), treatment);

        RNAi *rnai = newWord<RNAi>("gene");
        const ExperimentRNAi *injection = experiment.addExperimentRNAi(rnai);
        QCOMPARE(injection->rnai(), rnai);
        QCOMPARE(injection->experiment(), &experiment);
        QCOMPARE(experiment.experimentRNAis().last(), injection);

        ResultSet *set = experiment.addResultSet();
        QCOMPARE(set->experiment(), &experiment);
        QCOMPARE(experiment.resultSets().last(), set);
        Morphology *worm = newWorm("worm");
        ResultantMorphology *result = set->addResultantMorphology(worm);
        QCOMPARE(result->morphology(), worm);
        QCOMPARE(result->resultSet(), set);
        QCOMPARE(set->resultantMorphologies(), QList{result});
        QCOMPARE(membersOf(experiment).size(), 3 * count);
    }
}

void ExperimentTest::addedSetIsACopyOfAnother()
{
    const std::unique_ptr<Experiment> source = fullExperiment("source");
    const std::unique_ptr<Experiment> experiment = bareExperiment("experiment");
    const ResultSet &set = *source->resultSets().first();
    ResultSet *added = experiment->addResultSet(set);

    QCOMPARE(experiment->resultSets(), QList{added});
    QCOMPARE(added->experiment(), experiment.get());
    QCOMPARE(added->num(), 12);
    QVERIFY(*added == set);
    for (int i = 0; i < 2; ++i) {
        const ResultantMorphology *result = added->resultantMorphologies().at(i);
        QCOMPARE(result->resultSet(), added);
        QVERIFY(result->morphology() != set.resultantMorphologies().at(i)->morphology());
    }
}

// --- Removing ---

void ExperimentTest::removedChildIsQueuedOnce_data()
{
    QTest::addColumn<Removal>("removal");

    QTest::newRow("RNAi, by the experiment") << Removal([](Experiment *experiment) {
        ExperimentRNAi *treatment = experiment->experimentRNAis().first();
        return experiment->removeExperimentRNAi(treatment) && !treatment->experiment();
    });
    QTest::newRow("RNAi, by itself") << Removal([](Experiment *experiment) {
        ExperimentRNAi *treatment = experiment->experimentRNAis().first();
        treatment->removeFromExperiment();
        return !treatment->experiment();
    });
    QTest::newRow("drug, by the experiment") << Removal([](Experiment *experiment) {
        ExperimentDrug *treatment = experiment->experimentDrugs().first();
        return experiment->removeExperimentDrug(treatment) && !treatment->getExperiment();
    });
    QTest::newRow("drug, by itself") << Removal([](Experiment *experiment) {
        ExperimentDrug *treatment = experiment->experimentDrugs().first();
        treatment->removeFromExperiment();
        return !treatment->getExperiment();
    });
    QTest::newRow("set, by the experiment") << Removal([](Experiment *experiment) {
        ResultSet *set = experiment->resultSets().first();
        return experiment->removeResultSet(set) && !set->experiment();
    });
    QTest::newRow("set, by itself, twice") << Removal([](Experiment *experiment) {
        ResultSet *set = experiment->resultSets().first();
        set->removeFromExperiment();
        set->removeFromExperiment();
        return !set->experiment() && !experiment->removeResultSet(set);
    });
}

void ExperimentTest::removedChildIsQueuedOnce()
{
    QFETCH(const Removal, removal);
    const std::unique_ptr<Experiment> experiment = fullExperiment("experiment");
    const QList<const DBElement *> before = membersOf(*experiment);

    QVERIFY(removal(experiment.get()));
    QCOMPARE(queue(*experiment).size(), 1);
    QList<const DBElement *> expected = before;
    expected.removeOne(queue(*experiment).first());
    QCOMPARE(expected.size(), before.size() - 1);
    QCOMPARE(membersOf(*experiment), expected);
}

void ExperimentTest::childOfAnotherExperimentIsNotRemoved()
{
    const std::unique_ptr<Experiment> experiment = fullExperiment("experiment");
    const std::unique_ptr<Experiment> other = fullExperiment("other");

    QVERIFY(!experiment->removeExperimentRNAi(other->experimentRNAis().first()));
    QVERIFY(!experiment->removeExperimentDrug(other->experimentDrugs().first()));
    QVERIFY(!experiment->removeResultSet(other->resultSets().first()));
    QVERIFY(!experiment->removeResultSet(nullptr));
    const ResultSet *otherSet = experiment->resultSets().last();
    QVERIFY(!experiment->resultSets().first()->removeResultantMorphology(
        otherSet->resultantMorphologies().first()));
    for (const Experiment *each : {experiment.get(), other.get()}) {
        QCOMPARE(membersOf(*each).size(), 6);
        QCOMPARE(queue(*each).size(), 0);
    }
}

void ExperimentTest::resultIsRemovedFromItsSet()
{
    const std::unique_ptr<Experiment> experiment = fullExperiment("experiment");
    ResultSet *set = experiment->resultSets().first();
    ResultantMorphology *first = set->resultantMorphologies().first();
    ResultantMorphology *second = set->resultantMorphologies().last();

    QVERIFY(set->removeResultantMorphology(first));
    QVERIFY(!first->resultSet());
    QVERIFY(!set->removeResultantMorphology(first));
    QCOMPARE(set->resultantMorphologies(), QList{second});
    second->removeFromResultSet();
    second->removeFromResultSet();
    QVERIFY(!second->resultSet());
    QCOMPARE(set->resultantMorphologies().size(), 0);
    QCOMPARE(queued<DBElement>(set), QList<const DBElement *>({first, second}));
    QCOMPARE(queue(*experiment).size(), 0);
}

void ExperimentTest::clearingAnEmptyListDoesNothing()
{
    Experiment experiment;
    experiment.clearResultSets();
    experiment.clearExperimentDrugs();
    experiment.clearExperimentRNAis();
    experiment.removeAndDeleteAll();
    QCOMPARE(queue(experiment).size(), 0);
    QCOMPARE(membersOf(experiment).size(), 0);
}

void ExperimentTest::clearingQueuesFromTheLastToTheFirst_data()
{
    using Clear = void (Experiment::*)();
    QTest::addColumn<Clear>("clear");
    QTest::addColumn<int>("first");

    QTest::newRow("RNAi") << &Experiment::clearExperimentRNAis << 0;
    QTest::newRow("drugs") << &Experiment::clearExperimentDrugs << 2;
    QTest::newRow("result sets") << &Experiment::clearResultSets << 4;
}

void ExperimentTest::clearingQueuesFromTheLastToTheFirst()
{
    using Clear = void (Experiment::*)();
    QFETCH(const Clear, clear);
    QFETCH(const int, first);
    const std::unique_ptr<Experiment> experiment = fullExperiment("experiment");
    QList<const DBElement *> expected = membersOf(*experiment);

    (experiment.get()->*clear)();
    QCOMPARE(queue(*experiment), QList({expected.at(first + 1), expected.at(first)}));
    expected.remove(first, 2);
    QCOMPARE(membersOf(*experiment), expected);
}

void ExperimentTest::removingAllLeavesNothing()
{
    const std::unique_ptr<Experiment> experiment = fullExperiment("experiment");
    experiment->removeAndDeleteAll();
    QCOMPARE(membersOf(*experiment).size(), 0);
    QCOMPARE(queue(*experiment).size(), 6);
    QVERIFY(!experiment->manipulation());
    QVERIFY(!experiment->publication());
    QVERIFY(!experiment->species());
    QCOMPARE(experiment->name(), QStringLiteral("experiment"));
}

void ExperimentTest::nothingIsErasedOfWhatWasNeverStored()
{
    const std::unique_ptr<Experiment> experiment = fullExperiment("experiment");
    experiment->clearResultSets();
    QVERIFY(experiment->erase());
    QCOMPARE(experiment->id(), 0);
    QCOMPARE(queue(*experiment).size(), 0);
}

// --- Equality ---

void ExperimentTest::equalityLooksAtNamesNumbersAndOrder_data()
{
    using Change = std::function<void(Experiment *)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("equal");
    const auto differs = [](const char *what, const Change &change) {
        QTest::newRow(what) << change << false;
    };
    const auto isEqual = [](const char *what, const Change &change) {
        QTest::newRow(what) << change << true;
    };

    isEqual("nothing", [](Experiment *) {});
    differs("name", [](Experiment *other) { other->setName("Experiment"); });
    differs("manipulation", [](Experiment *other) { other->manipulation()->setName("x"); });
    isEqual("actions", [](Experiment *other) {
        other->manipulation()->removeAction(other->manipulation()->rootAction());
    });
    differs("title", [](Experiment *other) { other->publication()->setTitle("x"); });
    isEqual("address and year",
            [](Experiment *other) { other->setPublication(newPublication("paper", "x", 1)); });
    differs("species", [](Experiment *other) { other->species()->setName("x"); });

    differs("RNAi",
            [](Experiment *other) { other->experimentRNAis().last()->rnai()->setName("x"); });
    differs("one RNAi more",
            [](Experiment *other) { other->addExperimentRNAi(newWord<RNAi>("gene B")); });
    differs("order of RNAi", [](Experiment *other) {
        other->removeExperimentRNAi(other->experimentRNAis().first());
        other->addExperimentRNAi(newWord<RNAi>("gene A"));
    });
    differs("drug",
            [](Experiment *other) { other->experimentDrugs().first()->drug()->setName("x"); });
    differs("start",
            [](Experiment *other) { other->experimentDrugs().first()->setStartTime(1.5); });
    differs("end", [](Experiment *other) { other->experimentDrugs().last()->setEndTime(7.25); });
    differs("order of drugs", [](Experiment *other) {
        other->removeExperimentDrug(other->experimentDrugs().first());
        addDrug(other, "drug A", 1.0, 2.5);
    });
    differs("one drug less", [](Experiment *other) {
        other->removeExperimentDrug(other->experimentDrugs().last());
    });

    isEqual("number of worms", [](Experiment *other) { other->resultSets().first()->setNum(1); });
    differs("period",
            [](Experiment *other) { other->resultSets().first()->setRegenPeriod(7.125); });
    differs("one set more", [](Experiment *other) { other->addResultSet(); });
    differs("order of sets", [](Experiment *other) {
        other->addResultSet(*other->resultSets().first());
        other->removeResultSet(other->resultSets().first());
    });
    differs("worm", [](Experiment *other) {
        other->resultSets().last()->resultantMorphologies().first()->morphology()->setName("x");
    });
    isEqual("body",
            [](Experiment *other) { firstResult(*other)->morphology()->addRegion(tailType()); });
    differs("frequency", [](Experiment *other) {
        other->resultSets().first()->resultantMorphologies().last()->setFrequency(0.5);
    });
    differs("one result less", [](Experiment *other) {
        other->resultSets().last()->resultantMorphologies().first()->removeFromResultSet();
    });
    differs("order of results", [](Experiment *other) {
        ResultSet *set = other->resultSets().first();
        set->removeResultantMorphology(set->resultantMorphologies().first());
        set->addResultantMorphology(newWorm("worm A"))->setFrequency(0.75);
    });
}

void ExperimentTest::equalityLooksAtNamesNumbersAndOrder()
{
    using Change = std::function<void(Experiment *)>;
    QFETCH(const Change, change);
    QFETCH(const bool, equal);

    const std::unique_ptr<Experiment> experiment = fullExperiment("experiment");
    const std::unique_ptr<Experiment> other = fullExperiment("experiment");
    change(other.get());
    QCOMPARE(*experiment == *other, equal);
    QCOMPARE(*other == *experiment, equal);
}

void ExperimentTest::equalityNeedsAllReferences_data()
{
    using Change = std::function<void(Experiment *)>;
    QTest::addColumn<Change>("change");

    QTest::newRow("manipulation") << Change(
        [](Experiment *experiment) { experiment->setManipulation(nullptr); });
    QTest::newRow("publication") << Change(
        [](Experiment *experiment) { experiment->setPublication(nullptr); });
    QTest::newRow("species") << Change(
        [](Experiment *experiment) { experiment->setSpecies(nullptr); });
}

void ExperimentTest::equalityNeedsAllReferences()
{
    using Change = std::function<void(Experiment *)>;
    QFETCH(const Change, change);

    const std::unique_ptr<Experiment> whole = fullExperiment("experiment");
    const std::unique_ptr<Experiment> experiment = fullExperiment("experiment");
    change(experiment.get());
    QVERIFY(!(*experiment == *whole));
    QVERIFY(!(*whole == *experiment));
    QVERIFY(!(*experiment == Experiment(*experiment, true)));
}

void ExperimentTest::elementsOfAListAreComparedOneByOne()
{
    const std::unique_ptr<Experiment> a = fullExperiment("a");
    const std::unique_ptr<Experiment> b = fullExperiment("b");

    QVERIFY(*a->resultSets().first() == *b->resultSets().first());
    QVERIFY(!(*a->resultSets().first() == *b->resultSets().last()));
    QVERIFY(*firstResult(*a) == *firstResult(*b));
    QVERIFY(!(*firstResult(*a) == *b->resultSets().last()->resultantMorphologies().first()));
    QVERIFY(*a->experimentDrugs().first() == *b->experimentDrugs().first());
    QVERIFY(!(*a->experimentDrugs().first() == *b->experimentDrugs().last()));
    QVERIFY(*a->experimentRNAis().first() == *b->experimentRNAis().first());
    QVERIFY(!(*a->experimentRNAis().first() == *b->experimentRNAis().last()));
}

// --- Copies ---

void ExperimentTest::copyHasAllFieldsAndObjectsOfItsOwn()
{
    const std::unique_ptr<Experiment> source = fullExperiment("experiment");
    for (const bool keepIds : {false, true}) {
        const Experiment copy(*source, keepIds);
        QCOMPARE(firstDifference(copy, *source), QString());
        for (const DBElement *child : membersOf(copy))
            QVERIFY(!membersOf(*source).contains(child));
        QVERIFY(copy.manipulation() != source->manipulation());
        QVERIFY(*copy.manipulation() == *source->manipulation());
        QCOMPARE(copy.experimentDrugs().first()->getExperiment(), &copy);
        QCOMPARE(copy.experimentRNAis().first()->experiment(), &copy);
        QCOMPARE(copy.resultSets().first()->experiment(), &copy);
        QCOMPARE(firstResult(copy)->resultSet(), copy.resultSets().first());
    }
}

void ExperimentTest::copyOfAnEmptyExperimentIsEmpty()
{
    const std::unique_ptr<Experiment> former = fullExperiment("former");
    *former = Experiment();
    QCOMPARE(experimentLines(*former, Ids::With), experimentLines(Experiment(), Ids::With));
    QCOMPARE(queue(*former).size(), 0);
}

void ExperimentTest::copyingIntoAnExperimentQueuesItsChildren()
{
    const std::unique_ptr<Experiment> experiment = fullExperiment("former");
    const QList<const DBElement *> before = membersOf(*experiment);
    const std::unique_ptr<Experiment> source = fullExperiment("latter");
    source->clearExperimentDrugs();

    experiment->copy(*source);
    QCOMPARE(firstDifference(*experiment, *source), QString());
    QList<const DBElement *> waiting = queue(*experiment);
    QCOMPARE(waiting.size(), before.size());
    for (const DBElement *child : before)
        QVERIFY(waiting.contains(child));
}

void ExperimentTest::copyOfAResultShowsThePictures()
{
    const std::unique_ptr<Experiment> source = fullExperiment("experiment");
    firstResult(*source)->morphology()->addImage("photo");
    const Experiment copy(*source, false);
    QCOMPARE(firstResult(copy)->morphology()->nImages(), 1);
}

QTEST_GUILESS_MAIN(ExperimentTest)
#include "ExperimentTest.moc"
