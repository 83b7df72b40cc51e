#include "db/BulkRead.h"
#include "model/ExperimentLines.h"
#include "model/SmallExperiments.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <vector>

using namespace Planaria;

namespace {

constexpr quint32 seeds = 500;
// No column that refers to a row has an index: large libraries would make the test slow.
constexpr quint32 seedsPerLibrary = 50;
/// Of each kind of element that experiments refer to.
constexpr int poolSize = 4;

void fillPool(TemporaryLibrary *library)
{
    DB *db = library->db();
    for (int i = 1; i <= poolSize; ++i) {
        const QString name = QStringLiteral("element %1").arg(i);
        std::unique_ptr<Morphology>(newWorm(name))->submit(db);
        std::unique_ptr<Drug>(newWord<Drug>(name))->submit(db);
        std::unique_ptr<RNAi>(newWord<RNAi>(name))->submit(db);
        std::unique_ptr<Species>(newWord<Species>(name))->submit(db);
        std::unique_ptr<Publication>(newPublication(name, name, 1900 + i))->submit(db);

        auto manipulation = std::make_unique<Manipulation>(new Morphology(i, db, false));
        manipulation->setName(name);
        for (int cuts = 0; cuts < i; ++cuts)
            manipulation->addRemoveAction(manipulation->rootAction())->addAreaPoint({1.0, 2.0});
        manipulation->submit(db);
    }
}

/// Makes experiments on stored elements and edits them, the same way for the same seed.
class RandomExperiments final
{
public:
    RandomExperiments(quint32 seed, DB *database) : generator(seed), db(database) {}

    std::unique_ptr<Experiment> experiment();
    /// One change of anything, or none where there is nothing to change.
    void edit(Experiment *experiment);
    int number(qsizetype end) { return generator.bounded(static_cast<int>(end)); }

private:
    void rename(Experiment *experiment);
    void refer(Experiment *experiment);
    void addTreatment(Experiment *experiment);
    void changeTreatment(Experiment *experiment);
    void removeTreatment(Experiment *experiment);
    void addSet(Experiment *experiment);
    void changeSet(Experiment *experiment);
    void removeSet(Experiment *experiment);
    void addResult(Experiment *experiment);
    void changeResult(Experiment *experiment);
    void removeResult(Experiment *experiment);
    void clear(Experiment *experiment);
    void copyWhole(Experiment *experiment);

    int poolId() { return 1 + number(poolSize); }
    template <typename Element> Element *stored() { return new Element(poolId(), db); }
    Morphology *storedWorm() { return new Morphology(poolId(), db, false); }
    /// One of @p list, or null of an empty one.
    template <typename Child> Child *anyOf(const QList<Child *> &list)
    {
        return list.isEmpty() ? nullptr : list.at(number(list.size()));
    }

    QRandomGenerator generator;
    DB *db;
};

std::unique_ptr<Experiment> RandomExperiments::experiment()
{
    auto experiment = std::make_unique<Experiment>();
    rename(experiment.get());
    experiment->setManipulation(stored<Manipulation>());
    experiment->setPublication(stored<Publication>());
    experiment->setSpecies(stored<Species>());
    for (int edits = number(30); edits > 0; --edits)
        edit(experiment.get());
    return experiment;
}

void RandomExperiments::edit(Experiment *experiment)
{
    using R = RandomExperiments;
    static constexpr std::array edits{
        &R::rename,          &R::refer,        &R::addTreatment,    &R::addTreatment,
        &R::addTreatment,    &R::addTreatment, &R::changeTreatment, &R::removeTreatment,
        &R::removeTreatment, &R::addSet,       &R::addSet,          &R::addSet,
        &R::changeSet,       &R::removeSet,    &R::addResult,       &R::addResult,
        &R::addResult,       &R::addResult,    &R::changeResult,    &R::removeResult,
        &R::removeResult,    &R::clear,        &R::copyWhole,
    };
    (this->*edits[number(edits.size())])(experiment);
}

void RandomExperiments::rename(Experiment *experiment)
{
    experiment->setName(QStringLiteral("experiment %1").arg(generator.generate64()));
}

void RandomExperiments::refer(Experiment *experiment)
{
    switch (number(3)) {
    case 0:
        experiment->setManipulation(stored<Manipulation>());
        break;
    case 1:
        experiment->setPublication(stored<Publication>());
        break;
    default:
        experiment->setSpecies(stored<Species>());
    }
}

// --- Treatments ---

void RandomExperiments::addTreatment(Experiment *experiment)
{
    if (number(2) == 0)
        experiment->addExperimentRNAi(stored<RNAi>());
    else
        experiment->addExperimentDrug(stored<Drug>());
}

void RandomExperiments::changeTreatment(Experiment *experiment)
{
    if (ExperimentDrug *drug = anyOf(experiment->experimentDrugs())) {
        drug->setStartTime(generator.generateDouble());
        drug->setEndTime(100.0 * generator.generateDouble());
        drug->setDrug(stored<Drug>());
    }
    if (ExperimentRNAi *rnai = anyOf(experiment->experimentRNAis()))
        rnai->setRNAi(stored<RNAi>());
}

void RandomExperiments::removeTreatment(Experiment *experiment)
{
    ExperimentDrug *drug = anyOf(experiment->experimentDrugs());
    ExperimentRNAi *rnai = anyOf(experiment->experimentRNAis());
    switch (number(4)) {
    case 0:
        experiment->removeExperimentDrug(drug);
        break;
    case 1:
        experiment->removeExperimentRNAi(rnai);
        break;
    case 2:
        if (drug)
            drug->removeFromExperiment();
        break;
    default:
        if (rnai)
            rnai->removeFromExperiment();
    }
}

// --- Results ---

void RandomExperiments::addSet(Experiment *experiment)
{
    const ResultSet *source = anyOf(experiment->resultSets());
    if (source && number(3) == 0)
        experiment->addResultSet(*source);
    else
        experiment->addResultSet();
}

void RandomExperiments::changeSet(Experiment *experiment)
{
    if (ResultSet *set = anyOf(experiment->resultSets())) {
        set->setNum(number(1000));
        set->setRegenPeriod(30.0 * generator.generateDouble());
    }
}

void RandomExperiments::removeSet(Experiment *experiment)
{
    ResultSet *set = anyOf(experiment->resultSets());
    if (set && number(2) == 0)
        set->removeFromExperiment();
    else
        experiment->removeResultSet(set);
}

void RandomExperiments::addResult(Experiment *experiment)
{
    if (ResultSet *set = anyOf(experiment->resultSets()))
        set->addResultantMorphology(storedWorm())->setFrequency(generator.generateDouble());
}

void RandomExperiments::changeResult(Experiment *experiment)
{
    const ResultSet *set = anyOf(experiment->resultSets());
    ResultantMorphology *result = set ? anyOf(set->resultantMorphologies()) : nullptr;
    if (!result)
        return;
    result->setMorphology(storedWorm());
    result->setFrequency(generator.generateDouble());
}

void RandomExperiments::removeResult(Experiment *experiment)
{
    ResultSet *set = anyOf(experiment->resultSets());
    ResultantMorphology *result = set ? anyOf(set->resultantMorphologies()) : nullptr;
    if (result && number(2) == 0)
        result->removeFromResultSet();
    else if (set)
        set->removeResultantMorphology(result);
}

// --- The whole ---

void RandomExperiments::clear(Experiment *experiment)
{
    static constexpr std::array clears{&Experiment::clearExperimentDrugs,
                                       &Experiment::clearExperimentRNAis,
                                       &Experiment::clearResultSets};
    (experiment->*clears[number(clears.size())])();
}

void RandomExperiments::copyWhole(Experiment *experiment)
{
    const Experiment source(*experiment, number(2) == 0);
    experiment->copy(source);
}

using Experiments = std::vector<std::unique_ptr<Experiment>>;

QList<const Experiment *> pointers(const Experiments &experiments)
{
    QList<const Experiment *> pointers;
    for (const std::unique_ptr<Experiment> &experiment : experiments)
        pointers += experiment.get();
    return pointers;
}

} // namespace

class RandomExperimentsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void comeBackAsTheyWereWritten_data();
    void comeBackAsTheyWereWritten();
    void leaveNoRowBehind();

private:
    /// Without the rows of experiments; as many of each as the pool has.
    QStringList referredRows()
    {
        QStringList rows = rowsIn(library.get());
        const QStringList ofExperiments = experimentRowsIn(library.get());
        rows.removeIf([&](const QString &row) { return ofExperiments.contains(row); });
        return rows;
    }
    /// Writes @p experiment and reads it through a connection of its own. @return what differs
    QString faultOfWriting(Experiment *experiment, bool inBulk);
    /// One experiment and its copy through writing, edits and reading. @return what went wrong
    QString faultOfLife(quint32 seed, Experiments *experiments);

    std::unique_ptr<StatementLog> log;
    std::unique_ptr<TemporaryLibrary> library;
    DB fresh;
    QStringList pool;
};

void RandomExperimentsTest::init()
{
    log = std::make_unique<StatementLog>();
    library = std::make_unique<TemporaryLibrary>();
    library->run("PRAGMA synchronous = OFF"); // no test cuts the power
    library->run("PRAGMA journal_mode = MEMORY");
    fillPool(library.get());
    pool = referredRows();
    QCOMPARE(fresh.connect(library->fileName(), false), int(DB::Opened));
}

void RandomExperimentsTest::cleanup()
{
    fresh.disconnect();
    library.reset();
    log.reset();
}

QString RandomExperimentsTest::faultOfWriting(Experiment *experiment, bool inBulk)
{
    log->take();
    const int id = experiment->submit(library->db());
    const QStringList statements = log->take();
    if (statements.filter("BEGIN").size() != 1 || statements.filter("COMMIT").size() != 1 ||
        !statements.last().startsWith("COMMIT"))
        return "not one transaction";
    const auto job = inBulk ? std::make_unique<BulkRead>(&fresh) : nullptr;
    const Experiment read(id, &fresh);
    if (!(read == *experiment))
        return "read unequal";
    return firstDifference(read, *experiment);
}

QString RandomExperimentsTest::faultOfLife(quint32 seed, Experiments *experiments)
{
    RandomExperiments random(seed, library->db());
    experiments->push_back(random.experiment());
    QString fault = faultOfWriting(experiments->back().get(), false);
    for (int round = 0; round < 3 && fault.isEmpty(); ++round) {
        if (round == 1) {
            const Experiment &source = *experiments->back();
            experiments->push_back(std::make_unique<Experiment>(source, false));
            experiments->back()->setName(source.name() + " - copy");
        } else if (random.number(2) == 0) {
            const int id = experiments->back()->id();
            experiments->back() = std::make_unique<Experiment>(id, library->db());
        }
        for (int edits = round == 1 ? 0 : 10; edits > 0; --edits)
            random.edit(experiments->back().get());
        fault = faultOfWriting(experiments->back().get(), random.number(2) == 0);
        if (!fault.isEmpty())
            fault = QStringLiteral("round %1: %2").arg(round).arg(fault);
    }
    return fault;
}

void RandomExperimentsTest::comeBackAsTheyWereWritten_data()
{
    QTest::addColumn<quint32>("first");
    for (quint32 first = 1; first <= seeds; first += seedsPerLibrary)
        QTest::addRow("seeds from %u", first) << first;
}

void RandomExperimentsTest::comeBackAsTheyWereWritten()
{
    QFETCH(const quint32, first);
    Experiments experiments;
    for (quint32 seed = first; seed < first + seedsPerLibrary; ++seed) {
        const QString fault = faultOfLife(seed, &experiments);
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
    }
    for (const std::unique_ptr<Experiment> &experiment : experiments)
        QCOMPARE(firstDifference(Experiment(experiment->id(), &fresh), *experiment), QString());
    QCOMPARE(experimentRowsIn(library.get()), experimentRowsOf(pointers(experiments)));
    QCOMPARE(referredRows(), pool);
    QCOMPARE(library->brokenReferences(), QStringList());
}

void RandomExperimentsTest::leaveNoRowBehind()
{
    Experiments experiments;
    for (quint32 seed = 1; seed <= seedsPerLibrary; ++seed) {
        RandomExperiments random(seed, library->db());
        std::unique_ptr<Experiment> experiment = random.experiment();
        const int id = experiment->submit(library->db());
        if (seed % 3 == 0)
            experiment = std::make_unique<Experiment>(id, library->db());
        if (seed % 2 == 0) {
            experiments.push_back(std::move(experiment));
            continue;
        }
        // Erased with children that wait to be erased, and others that were never written.
        for (int edits = 0; edits < 10; ++edits)
            random.edit(experiment.get());
        QVERIFY2(experiment->erase(), qPrintable(QStringLiteral("seed %1").arg(seed)));
        QCOMPARE(experiment->id(), 0);
    }
    QCOMPARE(experimentRowsIn(library.get()), experimentRowsOf(pointers(experiments)));

    for (const std::unique_ptr<Experiment> &experiment : experiments)
        QVERIFY(experiment->erase());
    QCOMPARE(rowsIn(library.get()), pool);
    QCOMPARE(library->brokenReferences(), QStringList());
}

QTEST_GUILESS_MAIN(RandomExperimentsTest)
#include "RandomExperimentsTest.moc"
