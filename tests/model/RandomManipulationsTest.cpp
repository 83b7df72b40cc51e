#include "db/BulkRead.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/ManipulationLines.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "model/SmallTrees.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <vector>

using namespace Planaria;

namespace {

constexpr int wormCount = 5;
constexpr int mostActions = 40;
// No column that refers to a row has an index: large libraries would make the test slow.
constexpr quint32 treesPerLibrary = 20;

/// Makes manipulations and edits them at random, the same way for the same seed.
class RandomTrees final
{
public:
    RandomTrees(quint32 seed, DB *database) : generator(seed), db(database) {}

    std::unique_ptr<Manipulation> manipulation(const QString &name);
    /// One change of anything, or none where the action picked has nothing to change.
    void edit(Manipulation *manipulation);

private:
    void insertAction(Manipulation *manipulation);
    void removeAction(Manipulation *manipulation);
    void removeJoin(Manipulation *manipulation);
    void changeArea(Manipulation *manipulation);
    void changeJoin(Manipulation *manipulation);
    void changeWorm(Manipulation *manipulation);

    int number(qsizetype end) { return generator.bounded(static_cast<int>(end)); }
    double coordinate() { return 1000.0 * generator.generateDouble() - 500.0; }
    QPointF point()
    {
        const double x = coordinate();
        return {x, coordinate()};
    }
    Morphology *worm() { return new Morphology(1 + number(wormCount), db, false); }
    /// An action of this class, or null where there is none.
    template <typename Action> Action *anyOf(const Manipulation &manipulation)
    {
        QList<Action *> found;
        for (ManipulationAction *each : manipulation.actions()) {
            if (auto *action = dynamic_cast<Action *>(each))
                found += action;
        }
        return found.isEmpty() ? nullptr : found.at(number(found.size()));
    }

    QRandomGenerator generator;
    DB *db;
};

std::unique_ptr<Manipulation> RandomTrees::manipulation(const QString &name)
{
    auto manipulation = std::make_unique<Manipulation>(worm());
    manipulation->setName(name);
    const int size = 1 + number(mostActions);
    while (manipulation->actions().size() < size) {
        insertAction(manipulation.get());
        changeArea(manipulation.get());
    }
    return manipulation;
}

void RandomTrees::edit(Manipulation *manipulation)
{
    static constexpr std::array edits{
        &RandomTrees::insertAction, &RandomTrees::insertAction, &RandomTrees::removeAction,
        &RandomTrees::removeJoin,   &RandomTrees::changeArea,   &RandomTrees::changeArea,
        &RandomTrees::changeArea,   &RandomTrees::changeJoin,   &RandomTrees::changeWorm,
    };
    (this->*edits[number(edits.size())])(manipulation);
}

void RandomTrees::insertAction(Manipulation *manipulation)
{
    const qsizetype room = mostActions - manipulation->actions().size();
    if (room < 1)
        return;
    auto *action = anyOf<ManipulationAction>(*manipulation);
    switch (number(room < 2 ? 3 : 5)) { // a join brings a leaf along
    case 0:
        manipulation->addRemoveAction(action);
        break;
    case 1:
        manipulation->addCropAction(action);
        break;
    case 2:
        manipulation->addIrradiationAction(action);
        break;
    default:
        manipulation->addJoinAction(action, worm());
    }
}

void RandomTrees::removeAction(Manipulation *manipulation)
{
    manipulation->removeAction(anyOf<ManipulationAction>(*manipulation));
}

void RandomTrees::removeJoin(Manipulation *manipulation)
{
    manipulation->removeAction(anyOf<JoinAction>(*manipulation));
}

void RandomTrees::changeArea(Manipulation *manipulation)
{
    auto *action = anyOf<AreaAction>(*manipulation);
    if (!action)
        return;
    for (int changes = number(5); changes > 0; --changes) {
        const qsizetype size = action->area().size();
        if (size == 0 || number(2) == 0)
            action->addAreaPoint(point(), number(size + 2) - 1);
        else if (number(2) == 0)
            action->setAreaPoint(number(size), point());
        else
            action->removeAreaPoint(number(size));
    }
}

void RandomTrees::changeJoin(Manipulation *manipulation)
{
    auto *join = anyOf<JoinAction>(*manipulation);
    if (!join)
        return;
    join->setVectX(coordinate());
    join->setVectY(coordinate());
    join->setRot(coordinate());
}

void RandomTrees::changeWorm(Manipulation *manipulation)
{
    anyOf<MorphologyAction>(*manipulation)->setMorphology(worm());
}

using Manipulations = std::vector<std::unique_ptr<Manipulation>>;

QList<const Manipulation *> pointers(const Manipulations &manipulations)
{
    QList<const Manipulation *> pointers;
    for (const std::unique_ptr<Manipulation> &manipulation : manipulations)
        pointers += manipulation.get();
    return pointers;
}

/// What is wrong with @p statements as those of one write; empty where nothing is.
QString transactionFault(const QStringList &statements)
{
    if (!statements.value(0).startsWith("BEGIN") ||
        statements.value(statements.size() - 1) != "COMMIT;")
        return QStringLiteral("no transaction from end to end");
    for (const QString &statement : statements.mid(1, statements.size() - 2)) {
        if (statement.startsWith("BEGIN") || statement.startsWith("COMMIT") ||
            statement.startsWith("ROLLBACK"))
            return QStringLiteral("%1 amid the write").arg(statement);
    }
    return {};
}

} // namespace

class RandomManipulationsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void treesComeBackAsTheyWereWritten_data();
    void treesComeBackAsTheyWereWritten();

private:
    /// Writes @p manipulation and says what went wrong.
    QString writeFault(Manipulation *manipulation);
    QString readFault(const Manipulations &manipulations, quint32 firstSeed);

    StatementLog log; // before any connection opens
    std::unique_ptr<TemporaryLibrary> library;
};

void RandomManipulationsTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    library->run(QStringLiteral("PRAGMA synchronous = OFF"));
    for (int worm = 1; worm <= wormCount; ++worm)
        named(QStringLiteral("worm %1").arg(worm))->submit(library->db());
}

QString RandomManipulationsTest::writeFault(Manipulation *manipulation)
{
    const QStringList broken = brokenLinks(*manipulation);
    if (!broken.isEmpty())
        return broken.join("; ");
    log.take();
    const int id = manipulation->submit(library->db());
    const QString fault = transactionFault(log.take());
    return fault.isEmpty() ? firstDifference(Manipulation(id, library->db()), *manipulation)
                           : fault;
}

QString RandomManipulationsTest::readFault(const Manipulations &manipulations, quint32 firstSeed)
{
    DB fresh;
    if (fresh.connect(library->fileName(), false) != DB::Opened)
        return QStringLiteral("no connection");
    const BulkRead job(&fresh);
    quint32 seed = firstSeed;
    for (const std::unique_ptr<Manipulation> &written : manipulations) {
        const Manipulation read(written->id(), &fresh);
        QString fault = firstDifference(read, *written) + brokenLinks(read).join("; ");
        if (fault.isEmpty() && !(read == *written))
            fault = QStringLiteral("not equal");
        if (!fault.isEmpty())
            return QStringLiteral("seed %1: %2").arg(seed).arg(fault);
        ++seed;
    }
    return {};
}

void RandomManipulationsTest::treesComeBackAsTheyWereWritten_data()
{
    QTest::addColumn<quint32>("firstSeed");
    for (quint32 firstSeed = 1; firstSeed <= 1000; firstSeed += treesPerLibrary)
        QTest::addRow("seeds %u to %u", firstSeed, firstSeed + treesPerLibrary - 1) << firstSeed;
}

void RandomManipulationsTest::treesComeBackAsTheyWereWritten()
{
    QFETCH(quint32, firstSeed);
    Manipulations manipulations;
    for (quint32 seed = firstSeed; seed < firstSeed + treesPerLibrary; ++seed) {
        RandomTrees random(seed, library->db());
        manipulations.push_back(random.manipulation(QStringLiteral("tree %1").arg(seed)));
        for (int round = 0; round < 2; ++round) {
            Manipulation *manipulation = manipulations.back().get();
            const QString fault = writeFault(manipulation);
            QVERIFY2(fault.isEmpty(),
                     qPrintable(
                         QStringLiteral("seed %1, round %2: %3").arg(seed).arg(round).arg(fault)));
            if (round == 0 && seed % 2 == 0)
                manipulations.back() =
                    std::make_unique<Manipulation>(manipulation->id(), library->db());
            for (int edits = 0; round == 0 && edits < 8; ++edits)
                random.edit(manipulations.back().get());
        }
    }
    QCOMPARE(readFault(manipulations, firstSeed), QString());
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf(pointers(manipulations)));
    QCOMPARE(library->brokenReferences(), QStringList());

    for (const std::unique_ptr<Manipulation> &manipulation : manipulations)
        QVERIFY2(manipulation->erase(), qPrintable(manipulation->name()));
    QCOMPARE(rowsIn(library.get()), QStringList{QStringLiteral("Morphology: %1").arg(wormCount)});
    QCOMPARE(library->brokenReferences(), QStringList());
}

QTEST_GUILESS_MAIN(RandomManipulationsTest)
#include "RandomManipulationsTest.moc"
