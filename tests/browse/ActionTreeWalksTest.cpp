#include "ActionTrees.h"
#include "StepwiseWalks.h"
#include "browse/GatheredNames.h"
#include "browse/ManipulationNameWalk.h"
#include "browse/MorphologyNameWalk.h"
#include "support/StatementLog.h"

#include <QRandomGenerator>
#include <QtTest>

namespace Planaria {

/// The walks over action trees, from morphologies up to manipulations and down again.
class ActionTreeWalksTest final : public QObject
{
    Q_OBJECT

private slots:
    // Up
    void climbsThroughCropsRemovesAndJoins();
    void climbsFromBothSidesOfAJoin();
    void climbsThroughNoIrradiation();
    void findsAManipulationThatIsALeafAlone();
    void gathersAllManipulationsOfAMorphology();
    void namesAManipulationOnceHoweverOftenItUsesTheMorphology();
    void comparesTheNamesOfManipulations_data();
    void comparesTheNamesOfManipulations();
    void findsNothingForANumberInTheStatement();

    // Down
    void gathersTheMorphologiesBelowAnAction();
    void descendsThroughNoIrradiation();
    void takesTheFirstKindOfAnActionOfTwo();
    void tellsOfNoMorphologyWhateverItFinds();

    // Both
    void agreesWithStepwiseWalks_data();
    void agreesWithStepwiseWalks();
    void readsEachTableOnce();

    // Damaged trees
    void comesBackFromATreeThatRunsIntoItself_data();
    void comesBackFromATreeThatRunsIntoItself();
    void comesBackFromProductsThatAreUsedTwiceAgainAndAgain();
    void goesThroughALongChain();
    void passesOverRowsThatAreMissing();
};

namespace {

const auto containing = QStringLiteral("LIKE '%' || ? || '%'");

/// A library with one morphology, "Worm".
class Trees final
{
public:
    TemporaryLibrary library;
    Trees() { library.run("PRAGMA synchronous = 0"); }

    ActionTrees trees{&library};
    int worm = trees.morphology("Worm");

    QHash<int, QString> up(const QString &text = QString(""), const QString &op = containing)
    {
        return ManipulationNameWalk(library.db(), op, text).morphologiesWithManipulationName();
    }

    QString below(int action, const QString &text = QString(""), const QString &op = containing)
    {
        GatheredNames names;
        MorphologyNameWalk(library.db(), op, text).actionHasMorphologyName(action, &names);
        return names.text();
    }
};

using Names = QHash<int, QString>;

} // namespace

// --- Up ---

void ActionTreeWalksTest::climbsThroughCropsRemovesAndJoins()
{
    Trees t;
    const int other = t.trees.morphology("Other");
    const int cut = t.trees.crop(t.trees.remove(t.trees.leaf(t.worm)));
    t.trees.manipulation("Long way", t.trees.remove(t.trees.join(cut, t.trees.leaf(other))));
    QCOMPARE(t.up(), Names({{t.worm, "Long way"}, {other, "Long way"}}));
}

void ActionTreeWalksTest::climbsFromBothSidesOfAJoin()
{
    Trees t;
    const int other = t.trees.morphology("Other");
    t.trees.manipulation("Joined", t.trees.join(t.trees.leaf(other), t.trees.leaf(t.worm)));
    QCOMPARE(t.up(), Names({{t.worm, "Joined"}, {other, "Joined"}}));
}

void ActionTreeWalksTest::climbsThroughNoIrradiation()
{
    Trees t;
    t.trees.manipulation("Irradiated", t.trees.crop(t.trees.irradiate(t.trees.leaf(t.worm))));
    QCOMPARE(t.up(), Names());
}

void ActionTreeWalksTest::findsAManipulationThatIsALeafAlone()
{
    Trees t;
    t.trees.manipulation("Untouched", t.trees.leaf(t.worm));
    QCOMPARE(t.up(), Names({{t.worm, "Untouched"}}));
}

void ActionTreeWalksTest::gathersAllManipulationsOfAMorphology()
{
    Trees t;
    t.trees.cutOf(t.worm, "Second name");
    t.trees.cutOf(t.trees.morphology("Other"), "Other name");
    t.trees.cutOf(t.worm, "First name");
    QCOMPARE(t.up().value(t.worm), QStringLiteral("Second name; First name"));
}

void ActionTreeWalksTest::namesAManipulationOnceHoweverOftenItUsesTheMorphology()
{
    Trees t;
    t.trees.cutOf(t.worm, "Before");
    t.trees.manipulation("Twice", t.trees.join(t.trees.leaf(t.worm), t.trees.leaf(t.worm)));
    QCOMPARE(t.up(), Names({{t.worm, "Before; Twice"}}));
}

void ActionTreeWalksTest::comparesTheNamesOfManipulations_data()
{
    QTest::addColumn<QString>("op");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("names");
    QTest::newRow("containing") << containing << "CUT"
                                << "Cut 1; Cut 2";
    QTest::newRow("equal to") << "LIKE ?"
                              << "cut _"
                              << "Cut 1; Cut 2";
    QTest::newRow("less than") << "< ?"
                               << "Cut 2"
                               << "Cut 1";
    QTest::newRow("greater than") << "> ?"
                                  << "Cut 2"
                                  << "Join";
}

void ActionTreeWalksTest::comparesTheNamesOfManipulations()
{
    QFETCH(const QString, op);
    QFETCH(const QString, text);
    Trees t;
    for (const char *name : {"Cut 1", "Cut 2", "Join"})
        t.trees.cutOf(t.worm, name);
    QTEST(t.up(text, op).value(t.worm), "names");
}

void ActionTreeWalksTest::findsNothingForANumberInTheStatement()
{
    Trees t;
    const int root = t.trees.leaf(t.worm);
    t.trees.manipulation("1", root);
    t.library.run("UPDATE Morphology SET Name = '1'");
    QCOMPARE(t.up("5", "< 5"), Names());
    QCOMPARE(t.up("5", ""), Names());
    QCOMPARE(t.below(root, "5", "< 5"), QString());
    QCOMPARE(t.up("5", "< ?"), Names({{t.worm, "1"}}));
    QCOMPARE(t.below(root, "5", "< ?"), QStringLiteral("1"));
}

// --- Down ---

void ActionTreeWalksTest::gathersTheMorphologiesBelowAnAction()
{
    Trees t;
    const int cut = t.trees.remove(t.trees.crop(t.trees.leaf(t.worm)));
    const int other = t.trees.leaf(t.trees.morphology("Other"));
    QCOMPARE(t.below(t.trees.join(cut, other)), QStringLiteral("Worm; Other"));
    QCOMPARE(t.below(t.trees.join(other, cut)), QStringLiteral("Other; Worm"));
    QCOMPARE(t.below(t.trees.join(other, cut), "w", "LIKE ? || '%'"), QStringLiteral("Worm"));
}

void ActionTreeWalksTest::descendsThroughNoIrradiation()
{
    Trees t;
    QCOMPARE(t.below(t.trees.crop(t.trees.irradiate(t.trees.leaf(t.worm)))), QString());
}

void ActionTreeWalksTest::takesTheFirstKindOfAnActionOfTwo()
{
    Trees t;
    const int crop = t.trees.crop(t.trees.leaf(t.worm));
    const int remove = t.trees.remove(t.trees.leaf(t.trees.morphology("Other")));
    t.library.run(QStringLiteral("UPDATE ManipulationAction SET RemoveAction = (SELECT "
                                 "RemoveAction FROM ManipulationAction WHERE Id = %1) "
                                 "WHERE Id = %2")
                      .arg(remove)
                      .arg(crop));
    QCOMPARE(t.below(crop), QStringLiteral("Other"));
}

void ActionTreeWalksTest::tellsOfNoMorphologyWhateverItFinds()
{
    Trees t;
    const int root = t.trees.leaf(t.worm);
    t.trees.manipulation("Untouched", root);
    const MorphologyNameWalk walk(t.library.db(), containing, "");
    GatheredNames names;
    QVERIFY(!walk.actionHasMorphologyName(root, &names));
    QCOMPARE(names.text(), QStringLiteral("Worm"));
    QCOMPARE(walk.manipulationsWithMorphologyName(), Names());
}

// --- Both ---

void ActionTreeWalksTest::agreesWithStepwiseWalks_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<bool>("shared");
    for (quint32 seed = 1; seed <= 20; ++seed) {
        QTest::addRow("trees, seed %u", seed) << seed << false;
        QTest::addRow("shared products, seed %u", seed) << seed << true;
    }
}

// Names that are ends of each other, and products used once or, as in damaged files, several times.
void ActionTreeWalksTest::agreesWithStepwiseWalks()
{
    QFETCH(const quint32, seed);
    QFETCH(const bool, shared);
    QRandomGenerator random(seed);
    Trees t;
    t.library.run("BEGIN");
    QList<int> morphologies{t.worm};
    for (const char *name : {"", "m", "rm", "orm"})
        morphologies += t.trees.morphology(name);
    QList<int> products;
    const auto product = [&] {
        const auto at = random.bounded(static_cast<int>(products.size()));
        return shared ? products.at(at) : products.takeAt(at);
    };
    for (int step = 0; step < 30; ++step) {
        const int kind = products.size() < 2 ? 0 : random.bounded(7);
        int action = 0;
        if (kind < 3)
            action = t.trees.leaf(morphologies[random.bounded(5)]);
        else if (kind == 3)
            action = t.trees.crop(product());
        else if (kind == 4)
            action = t.trees.remove(product());
        else if (kind == 5)
            action = t.trees.irradiate(product());
        else
            action = t.trees.join(product(), product());
        products += action;
        if (random.bounded(3) == 0)
            t.trees.manipulation(QString("recut").right(random.bounded(6)) +
                                     QString(step, shared ? u'x' : u' '),
                                 action);
    }
    t.library.run("COMMIT");

    const QList<QPair<QString, QString>> comparisons = {
        {containing, ""}, {containing, "cut"}, {"LIKE ?", "%x"}, {"> ?", "d"}, {"< 5", "5"}};
    for (const auto &[op, text] : comparisons) {
        StepwiseWalks stepwise(t.library.db(), op, text);
        QCOMPARE(t.up(text, op), stepwise.morphologiesWithManipulationName());
        for (const int action : std::as_const(products))
            QCOMPARE(t.below(action, text, op), stepwise.namesBelow(action));
    }
}

void ActionTreeWalksTest::readsEachTableOnce()
{
    StatementLog log;
    Trees t;
    const auto statements = [&] {
        log.take();
        t.up();
        t.below(1);
        return log.take().size();
    };
    t.trees.cutOf(t.worm, "Cut 0");
    const qsizetype few = statements();
    for (int i = 1; i < 50; ++i)
        t.trees.cutOf(t.worm, QStringLiteral("Cut %1").arg(i));
    QCOMPARE(statements(), few);
    QVERIFY(few < 20);
}

// --- Damaged trees ---

void ActionTreeWalksTest::comesBackFromATreeThatRunsIntoItself_data()
{
    QTest::addColumn<QString>("damage");
    QTest::newRow("a crop of itself") << "UPDATE CropAction SET FromAction = 2";
    QTest::newRow("a crop of what is made of it") << "UPDATE CropAction SET FromAction = 3";
    QTest::newRow("a join with itself") << "UPDATE JoinAction SET FromAction2 = 5";
    QTest::newRow("all at once") << "UPDATE CropAction SET FromAction = 5";
}

void ActionTreeWalksTest::comesBackFromATreeThatRunsIntoItself()
{
    QFETCH(const QString, damage);
    Trees t;
    const int crop = t.trees.crop(t.trees.leaf(t.worm));
    const int join = t.trees.join(t.trees.remove(crop), t.trees.leaf(t.worm));
    QCOMPARE(join, 5);
    t.trees.manipulation("Round", join);
    t.library.run(damage);
    QCOMPARE(t.up(), Names({{t.worm, "Round"}}));
    t.below(join);
    t.below(crop);
}

void ActionTreeWalksTest::comesBackFromProductsThatAreUsedTwiceAgainAndAgain()
{
    Trees t;
    t.library.run("BEGIN");
    int product = t.trees.leaf(t.worm);
    for (int i = 0; i < 100; ++i)
        product = t.trees.join(t.trees.crop(product), t.trees.remove(product));
    t.trees.manipulation("Twice and twice", product);
    t.library.run("COMMIT");
    QCOMPARE(t.up(), Names({{t.worm, "Twice and twice"}}));
    QCOMPARE(t.below(product), QStringLiteral("Worm"));
}

void ActionTreeWalksTest::goesThroughALongChain()
{
    Trees t;
    t.library.run("BEGIN");
    int product = t.trees.leaf(t.worm);
    for (int i = 0; i < 20000; ++i)
        product = t.trees.crop(product);
    t.trees.manipulation("Long", product);
    t.library.run("COMMIT");
    QCOMPARE(t.up(), Names({{t.worm, "Long"}}));
    QCOMPARE(t.below(product), QStringLiteral("Worm"));
}

void ActionTreeWalksTest::passesOverRowsThatAreMissing()
{
    Trees t;
    const int root = t.trees.join(t.trees.crop(t.trees.leaf(t.worm)), t.trees.leaf(t.worm));
    t.trees.manipulation("Damaged", root);
    t.library.run("PRAGMA foreign_keys = false");
    t.library.run("DELETE FROM CropAction");
    QCOMPARE(t.up(), Names({{t.worm, "Damaged"}}));
    QCOMPARE(t.below(root), QStringLiteral("Worm"));
    t.library.run("DELETE FROM MorphologyAction");
    t.library.run("UPDATE Manipulation SET RootAction = 'nowhere'");
    QCOMPARE(t.up(), Names());
    QCOMPARE(t.below(root), QString());
    t.library.run("DELETE FROM ManipulationAction");
    QCOMPARE(t.below(root), QString());
}

} // namespace Planaria

QTEST_GUILESS_MAIN(Planaria::ActionTreeWalksTest)
#include "ActionTreeWalksTest.moc"
