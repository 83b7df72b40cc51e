#include "model/Manipulation.h"

#include "db/ExperimentFactory.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/ManipulationLines.h"
#include "model/Morphology.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "model/SmallTrees.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

using namespace Planaria;

namespace {

/// Adds one of the actions with an area; @p kind as kindOf() tells it.
AreaAction *addAreaAction(Manipulation *manipulation, ManipulationAction *action,
                          const QString &kind)
{
    if (kind == "remove")
        return manipulation->addRemoveAction(action);
    if (kind == "crop")
        return manipulation->addCropAction(action);
    return manipulation->addIrradiationAction(action);
}

void addAreaKinds()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"remove", "crop", "irradiation"})
        QTest::newRow(kind) << kind;
}

void addPlaces()
{
    QTest::addColumn<bool>("isRoot");
    QTest::newRow("at the root") << true;
    QTest::newRow("in the middle") << false;
}

QStringList linesOf(const Manipulation &manipulation)
{
    return manipulationLines(manipulation, Ids::Without).mid(1);
}

/// What @p manipulation holds back for its next submit, in order.
QStringList queuedKinds(const Manipulation &manipulation)
{
    QStringList kinds;
    for (const DBElement *element : manipulation.record().removedReferences())
        kinds += kindOf(dynamic_cast<const ManipulationAction *>(element));
    return kinds;
}

QList<int> pointNumbers(const AreaAction *action)
{
    QList<int> numbers;
    for (const ActionAreaPoint *point : action->area())
        numbers += point->pointInd();
    return numbers;
}

QStringList wormNames(const Manipulation &manipulation)
{
    QStringList names;
    for (const Morphology *worm : manipulation.calcMorphologiesList())
        names += worm->name();
    return names;
}

} // namespace

class ManipulationTest final : public QObject
{
    Q_OBJECT

private slots:
    void startsAsTheWormThatItIsGiven();
    void startsAsTheDefaultWormOfALibrary();
    void startsAsAStoredWormWhereRowOneIsGone();
    void eachStartHasAWormOfItsOwn();

    void putsAnActionBehindTheRoot_data() { addAreaKinds(); }
    void putsAnActionBehindTheRoot();
    void putsAnActionBetweenTwoOthers_data() { addAreaKinds(); }
    void putsAnActionBetweenTwoOthers();
    void putsAnActionBehindEitherInputOfAJoin_data() { addAreaKinds(); }
    void putsAnActionBehindEitherInputOfAJoin();
    void joinsAFreshWormWithoutShiftAndRotation();
    void putsAJoinBetweenTwoOthers();
    void addsNothingBehindAnActionThatIsNotItsOwn();

    void removingTheRootMakesItsInputTheRoot_data() { addAreaKinds(); }
    void removingTheRootMakesItsInputTheRoot();
    void removingAnActionTiesItsNeighbours_data() { addAreaKinds(); }
    void removingAnActionTiesItsNeighbours();
    void removingAJoinKeepsItsFirstBranchAlone_data();
    void removingAJoinKeepsItsFirstBranchAlone();
    void removingAnActionOfTheSecondBranchKeepsTheJoin();
    void keepsALeaf();
    void keepsAnActionWithoutAnInput_data();
    void keepsAnActionWithoutAnInput();
    void removingAJoinWithoutABodyKeepsTheGraft_data();
    void removingAJoinWithoutABodyKeepsTheGraft();
    void removesNothingThatIsNotItsOwn();
    void anActionRemovesItself();
    void removedBranchHasNoLinkLeft();
    void removingAllLeavesNoRoot();

    void pointsGoToTheEndUnlessTold();
    void insertedPointMovesTheOthersOn();
    void removedPointClosesTheGap();
    void movesAPoint();

    void listsWormsFromTheFirstInputToTheLast();
    void tellsAVisitorEachClass();
    void takesAnotherWorm();
    void sampleGivesItsLastPointsToTheCrop();
};

// --- Start ---

void ManipulationTest::startsAsTheWormThatItIsGiven()
{
    Morphology *worm = named("worm").release();
    const Manipulation manipulation(worm);

    const auto *leaf = dynamic_cast<MorphologyAction *>(manipulation.rootAction());
    QVERIFY(leaf);
    QCOMPARE(leaf->morphology(), worm);
    QCOMPARE(leaf->manipulation(), &manipulation);
    QCOMPARE(manipulation.actions().size(), 1);
    QCOMPARE(brokenLinks(manipulation), QStringList());
    QCOMPARE(manipulation.name(), QString());
    QCOMPARE(manipulation.id(), 0);
    QCOMPARE(leaf->id(), 0);
    QCOMPARE(leaf->actionRecord().id(), 0);
}

void ManipulationTest::startsAsTheDefaultWormOfALibrary()
{
    TemporaryLibrary library;
    named("default")->submit(library.db());
    named("other")->submit(library.db());

    const Manipulation manipulation(library.db());
    QCOMPARE(linesOf(manipulation), QStringList{"morphology default"});
    QCOMPARE(manipulation.calcMorphologiesList().first()->id(), 1);
    QCOMPARE(library.count("MorphologyAction"), 0);
}

void ManipulationTest::startsAsAStoredWormWhereRowOneIsGone()
{
    TemporaryLibrary library;
    library.run("INSERT INTO Morphology VALUES(2, 'Wild type')");
    const Manipulation manipulation(library.db());
    QCOMPARE(manipulation.calcMorphologiesList().first()->id(), 2);
}

void ManipulationTest::eachStartHasAWormOfItsOwn()
{
    TemporaryLibrary library;
    const Manipulation one(library.db());
    const Manipulation other(library.db());

    QCOMPARE(wormNames(one), QStringList{"Wild type"});
    QCOMPARE(wormNames(other), QStringList{"Wild type"});
    QVERIFY(one.calcMorphologiesList().first() != other.calcMorphologiesList().first());
    QCOMPARE(library.count("Morphology"), 1);
}

// --- Adding ---

void ManipulationTest::putsAnActionBehindTheRoot()
{
    QFETCH(QString, kind);
    Manipulation manipulation(named("worm").release());

    const AreaAction *added = addAreaAction(&manipulation, manipulation.rootAction(), kind);
    QCOMPARE(manipulation.rootAction(), added);
    QCOMPARE(linesOf(manipulation), (QStringList{kind, " morphology worm"}));
    QCOMPARE(brokenLinks(manipulation), QStringList());
    QCOMPARE(manipulation.actions().last(), added);
}

void ManipulationTest::putsAnActionBetweenTwoOthers()
{
    QFETCH(QString, kind);
    Manipulation manipulation(named("worm").release());
    ManipulationAction *leaf = manipulation.rootAction();
    ManipulationAction *root = manipulation.addCropAction(leaf);

    addAreaAction(&manipulation, leaf, kind);
    QCOMPARE(manipulation.rootAction(), root);
    QCOMPARE(linesOf(manipulation), (QStringList{"crop", ' ' + kind, "  morphology worm"}));
    QCOMPARE(brokenLinks(manipulation), QStringList());
}

void ManipulationTest::putsAnActionBehindEitherInputOfAJoin()
{
    QFETCH(QString, kind);
    Manipulation manipulation(named("body").release());
    const JoinAction *join =
        manipulation.addJoinAction(manipulation.rootAction(), named("graft").release());

    addAreaAction(&manipulation, join->fromAction2(), kind);
    const QString nothing = joinLine();
    QCOMPARE(linesOf(manipulation),
             (QStringList{nothing, " morphology body", ' ' + kind, "  morphology graft"}));
    addAreaAction(&manipulation, join->fromAction1(), kind);
    QCOMPARE(linesOf(manipulation), (QStringList{nothing, ' ' + kind, "  morphology body",
                                                 ' ' + kind, "  morphology graft"}));
    QCOMPARE(brokenLinks(manipulation), QStringList());
}

void ManipulationTest::joinsAFreshWormWithoutShiftAndRotation()
{
    Manipulation manipulation(named("body").release());
    ManipulationAction *body = manipulation.rootAction();
    Morphology *graft = named("graft").release();

    const JoinAction *join = manipulation.addJoinAction(body, graft);
    QCOMPARE(manipulation.rootAction(), join);
    QCOMPARE(join->fromAction1(), body);
    const auto *leaf = dynamic_cast<MorphologyAction *>(join->fromAction2());
    QVERIFY(leaf);
    QCOMPARE(leaf->morphology(), graft);
    QCOMPARE(join->vectX(), 0.0);
    QCOMPARE(join->vectY(), 0.0);
    QCOMPARE(join->rot(), 0.0);
    QCOMPARE(brokenLinks(manipulation), QStringList());
    QCOMPARE(manipulation.actions(),
             (QList<ManipulationAction *>{body, join->fromAction2(), manipulation.rootAction()}));
}

void ManipulationTest::putsAJoinBetweenTwoOthers()
{
    Manipulation manipulation(named("body").release());
    ManipulationAction *body = manipulation.rootAction();
    manipulation.addCropAction(body);

    manipulation.addJoinAction(body, named("graft").release());
    QCOMPARE(linesOf(manipulation),
             (QStringList{"crop", ' ' + joinLine(), "  morphology body", "  morphology graft"}));
    QCOMPARE(brokenLinks(manipulation), QStringList());
}

void ManipulationTest::addsNothingBehindAnActionThatIsNotItsOwn()
{
    Manipulation other(named("other").release());
    Manipulation manipulation(named("worm").release());
    ManipulationAction *removed = manipulation.addCropAction(manipulation.rootAction());
    QVERIFY(manipulation.removeAction(removed));
    const QStringList before = linesOf(manipulation);

    for (ManipulationAction *foreign : {other.rootAction(), removed, {}}) {
        QCOMPARE(manipulation.addRemoveAction(foreign), nullptr);
        QCOMPARE(manipulation.addCropAction(foreign), nullptr);
        QCOMPARE(manipulation.addIrradiationAction(foreign), nullptr);
        QCOMPARE(manipulation.addJoinAction(foreign, named("graft").release()), nullptr);
    }
    QCOMPARE(linesOf(manipulation), before);
    QCOMPARE(brokenLinks(manipulation), QStringList());
    QCOMPARE(brokenLinks(other), QStringList());
}

// --- Removing ---

void ManipulationTest::removingTheRootMakesItsInputTheRoot()
{
    QFETCH(QString, kind);
    Manipulation manipulation(named("worm").release());
    ManipulationAction *leaf = manipulation.rootAction();
    AreaAction *root = addAreaAction(&manipulation, leaf, kind);

    QVERIFY(manipulation.removeAction(root));
    QCOMPARE(manipulation.rootAction(), leaf);
    QCOMPARE(leaf->toAction(), nullptr);
    QCOMPARE(root->fromAction(), nullptr);
    QCOMPARE(root->manipulation(), nullptr);
    QCOMPARE(queuedKinds(manipulation), QStringList{kind});
    QCOMPARE(brokenLinks(manipulation), QStringList());
}

void ManipulationTest::removingAnActionTiesItsNeighbours()
{
    QFETCH(QString, kind);
    Manipulation manipulation(named("worm").release());
    AreaAction *below = manipulation.addRemoveAction(manipulation.rootAction());
    AreaAction *middle = addAreaAction(&manipulation, below, kind);
    manipulation.addCropAction(middle);

    QVERIFY(manipulation.removeAction(middle));
    QCOMPARE(linesOf(manipulation), (QStringList{"crop", " remove", "  morphology worm"}));
    QCOMPARE(brokenLinks(manipulation), QStringList());
    QCOMPARE(middle->fromAction(), nullptr);
    QCOMPARE(middle->toAction(), nullptr);
    QCOMPARE(queuedKinds(manipulation), QStringList{kind});
}

void ManipulationTest::removingAJoinKeepsItsFirstBranchAlone_data()
{
    addPlaces();
}

void ManipulationTest::removingAJoinKeepsItsFirstBranchAlone()
{
    QFETCH(bool, isRoot);
    Manipulation manipulation(named("body").release());
    JoinAction *join = manipulation.addJoinAction(
        manipulation.addCropAction(manipulation.rootAction()), named("graft").release());
    manipulation.addIrradiationAction(
        manipulation.addJoinAction(join->fromAction2(), named("graft of it").release()));
    if (!isRoot)
        manipulation.addRemoveAction(join);

    QVERIFY(manipulation.removeAction(join));
    QStringList left{"crop", " morphology body"};
    if (!isRoot)
        left = QStringList{"remove", " crop", "  morphology body"};
    QCOMPARE(linesOf(manipulation), left);
    QCOMPARE(brokenLinks(manipulation), QStringList());
    QCOMPARE(queuedKinds(manipulation),
             (QStringList{"irradiation", "join", "morphology", "morphology", "join"}));
}

void ManipulationTest::removingAnActionOfTheSecondBranchKeepsTheJoin()
{
    Manipulation manipulation(named("body").release());
    const JoinAction *join =
        manipulation.addJoinAction(manipulation.rootAction(), named("graft").release());
    ManipulationAction *crop = manipulation.addCropAction(join->fromAction2());

    QVERIFY(manipulation.removeAction(crop));
    QCOMPARE(linesOf(manipulation),
             (QStringList{joinLine(), " morphology body", " morphology graft"}));
    QCOMPARE(brokenLinks(manipulation), QStringList());
}

void ManipulationTest::keepsALeaf()
{
    Manipulation manipulation(named("body").release());
    ManipulationAction *leaf = manipulation.rootAction();
    QVERIFY(!manipulation.removeAction(leaf));
    QVERIFY(!leaf->removeFromManipulation());
    QCOMPARE(linesOf(manipulation), QStringList{"morphology body"});

    const JoinAction *join = manipulation.addJoinAction(leaf, named("graft").release());
    QVERIFY(!manipulation.removeAction(join->fromAction1()));
    QVERIFY(!manipulation.removeAction(join->fromAction2()));
    QCOMPARE(linesOf(manipulation),
             (QStringList{joinLine(), " morphology body", " morphology graft"}));
    QCOMPARE(brokenLinks(manipulation), QStringList());
    QCOMPARE(queuedKinds(manipulation), QStringList());
}

void ManipulationTest::keepsAnActionWithoutAnInput_data()
{
    addPlaces();
}

void ManipulationTest::keepsAnActionWithoutAnInput()
{
    QFETCH(bool, isRoot);
    Manipulation manipulation(named("body").release());
    RemoveAction *cut = manipulation.addRemoveAction(manipulation.rootAction());
    JoinAction *join = manipulation.addJoinAction(cut, named("graft").release());
    if (!isRoot)
        manipulation.addCropAction(join);
    cut->setFromAction(nullptr);
    QVERIFY(!manipulation.removeAction(cut));
    join->setFromAction1(nullptr);
    join->setFromAction2(nullptr);
    const QStringList before = linesOf(manipulation);

    QVERIFY(!manipulation.removeAction(join));
    QCOMPARE(linesOf(manipulation), before);
    QCOMPARE(queuedKinds(manipulation), QStringList());
}

void ManipulationTest::removingAJoinWithoutABodyKeepsTheGraft_data()
{
    addPlaces();
}

void ManipulationTest::removingAJoinWithoutABodyKeepsTheGraft()
{
    QFETCH(bool, isRoot);
    Manipulation manipulation(named("body").release());
    JoinAction *join = manipulation.addJoinAction(
        manipulation.addCropAction(manipulation.rootAction()), named("graft").release());
    manipulation.addIrradiationAction(join->fromAction2());
    if (!isRoot)
        manipulation.addRemoveAction(join);
    join->setFromAction1(nullptr);

    QVERIFY(manipulation.removeAction(join));
    QStringList left{"irradiation", " morphology graft"};
    if (!isRoot)
        left = QStringList{"remove", " irradiation", "  morphology graft"};
    QCOMPARE(linesOf(manipulation), left);
    QCOMPARE(manipulation.rootAction()->toAction(), nullptr);
    QCOMPARE(join->fromAction2(), nullptr);
    QCOMPARE(queuedKinds(manipulation), QStringList{"join"});
}

void ManipulationTest::removesNothingThatIsNotItsOwn()
{
    Manipulation other(named("other").release());
    ManipulationAction *foreign = other.addCropAction(other.rootAction());
    Manipulation manipulation(named("worm").release());
    ManipulationAction *removed = manipulation.addCropAction(manipulation.rootAction());
    QVERIFY(manipulation.removeAction(removed));

    for (ManipulationAction *action : {foreign, removed, {}})
        QVERIFY(!manipulation.removeAction(action));
    QVERIFY(!removed->removeFromManipulation());
    QCOMPARE(linesOf(manipulation), QStringList{"morphology worm"});
    QCOMPARE(queuedKinds(manipulation), QStringList{"crop"});
    QCOMPARE(brokenLinks(other), QStringList());
}

void ManipulationTest::anActionRemovesItself()
{
    Manipulation manipulation(named("worm").release());
    manipulation.addCropAction(manipulation.rootAction());

    QVERIFY(manipulation.rootAction()->removeFromManipulation());
    QCOMPARE(linesOf(manipulation), QStringList{"morphology worm"});
    QCOMPARE(queuedKinds(manipulation), QStringList{"crop"});
}

void ManipulationTest::removedBranchHasNoLinkLeft()
{
    Manipulation manipulation(named("body").release());
    JoinAction *join =
        manipulation.addJoinAction(manipulation.rootAction(), named("graft").release());
    manipulation.addCropAction(
        manipulation.addJoinAction(join->fromAction2(), named("graft of it").release()));

    QVERIFY(manipulation.removeAction(join));
    const QList<DBElement *> queue = manipulation.record().removedReferences();
    QCOMPARE(queue.size(), 5);
    for (const DBElement *element : queue) {
        const auto *action = dynamic_cast<const ManipulationAction *>(element);
        QCOMPARE(action->manipulation(), nullptr);
        QCOMPARE(action->toAction(), nullptr);
        QCOMPARE(inputsOf(action).count(nullptr), inputsOf(action).size());
    }
}

void ManipulationTest::removingAllLeavesNoRoot()
{
    Manipulation manipulation(named("body").release());
    manipulation.addJoinAction(manipulation.addCropAction(manipulation.rootAction()),
                               named("graft").release());

    for (int times = 0; times < 2; ++times) {
        manipulation.removeAndDeleteAll();
        QCOMPARE(manipulation.rootAction(), nullptr);
        QVERIFY(manipulation.actions().isEmpty());
        QCOMPARE(queuedKinds(manipulation),
                 (QStringList{"join", "crop", "morphology", "morphology"}));
        QVERIFY(manipulation.calcMorphologiesList().isEmpty());
    }
}

// --- Areas ---

void ManipulationTest::pointsGoToTheEndUnlessTold()
{
    Manipulation manipulation(named("worm").release());
    AreaAction *crop = manipulation.addCropAction(manipulation.rootAction());
    QVERIFY(crop->calcAreaVector().isEmpty());

    for (const auto &[point, index] :
         {QPair(QPointF(1.0, 2.0), -1), {{3.0, 4.0}, -7}, {{5.0, 6.0}, 2}}) {
        const ActionAreaPoint *added = crop->addAreaPoint(point, index);
        QCOMPARE(crop->area().last(), added);
    }
    crop->addAreaPoint({7.0, 8.0});
    QCOMPARE(crop->calcAreaVector(),
             (QVector<QPointF>{{1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0}, {7.0, 8.0}}));
    QCOMPARE(pointNumbers(crop), (QList{0, 1, 2, 3}));
}

void ManipulationTest::insertedPointMovesTheOthersOn()
{
    Manipulation manipulation(named("worm").release());
    AreaAction *crop = manipulation.addCropAction(manipulation.rootAction());
    crop->addAreaPoint({1.0, 1.0});
    crop->addAreaPoint({2.0, 2.0});

    const ActionAreaPoint *added = crop->addAreaPoint({0.0, 0.0}, 0);
    QCOMPARE(crop->area().first(), added);
    QCOMPARE(crop->calcAreaVector(), (QVector<QPointF>{{0.0, 0.0}, {1.0, 1.0}, {2.0, 2.0}}));
    QCOMPARE(pointNumbers(crop), (QList{0, 1, 2}));
}

void ManipulationTest::removedPointClosesTheGap()
{
    Manipulation manipulation(named("worm").release());
    AreaAction *crop = manipulation.addCropAction(manipulation.rootAction());
    crop->addAreaPoint({1.0, 1.0});
    const DBElement *second = crop->addAreaPoint({2.0, 2.0});
    crop->addAreaPoint({3.0, 3.0});

    crop->removeAreaPoint(1);
    QCOMPARE(crop->calcAreaVector(), (QVector<QPointF>{{1.0, 1.0}, {3.0, 3.0}}));
    QCOMPARE(pointNumbers(crop), (QList{0, 1}));
    QCOMPARE(crop->record().removedReferences(),
             QList<DBElement *>{const_cast<DBElement *>(second)});
    QVERIFY(manipulation.record().removedReferences().isEmpty());
}

void ManipulationTest::movesAPoint()
{
    Manipulation manipulation(named("worm").release());
    AreaAction *crop = manipulation.addCropAction(manipulation.rootAction());
    crop->addAreaPoint({1.0, 1.0});
    crop->addAreaPoint({2.0, 2.0});

    crop->setAreaPoint(1, {-7.0, 8.0});
    QCOMPARE(crop->calcAreaVector(), (QVector<QPointF>{{1.0, 1.0}, {-7.0, 8.0}}));
    QCOMPARE(crop->area().last()->point(), QPointF(-7.0, 8.0));
}

// --- The rest ---

void ManipulationTest::listsWormsFromTheFirstInputToTheLast()
{
    Manipulation manipulation(named("first").release());
    manipulation.addJoinAction(manipulation.rootAction(), named("second").release());
    manipulation.addRemoveAction(manipulation.rootAction());
    const JoinAction *outer =
        manipulation.addJoinAction(manipulation.rootAction(), named("third").release());
    manipulation.addJoinAction(outer->fromAction2(), named("fourth").release());

    QCOMPARE(wormNames(manipulation), (QStringList{"first", "second", "third", "fourth"}));
    QCOMPARE(manipulation.calcMorphologiesList().first(),
             dynamic_cast<MorphologyAction *>(manipulation.actions().first())->morphology());
}

void ManipulationTest::tellsAVisitorEachClass()
{
    Manipulation manipulation(named("worm").release());
    manipulation.addRemoveAction(manipulation.rootAction());
    manipulation.addCropAction(manipulation.rootAction());
    manipulation.addIrradiationAction(manipulation.rootAction());
    manipulation.addJoinAction(manipulation.rootAction(), named("graft").release());

    QStringList kinds;
    for (const ManipulationAction *action : manipulation.actions())
        kinds += kindOf(action);
    QCOMPARE(kinds,
             (QStringList{"morphology", "remove", "crop", "irradiation", "morphology", "join"}));
}

void ManipulationTest::takesAnotherWorm()
{
    Manipulation manipulation(named("worm").release());
    auto *leaf = dynamic_cast<MorphologyAction *>(manipulation.rootAction());
    Morphology *other = named("other").release();

    leaf->setMorphology(other);
    QCOMPARE(leaf->morphology(), other);
    QCOMPARE(wormNames(manipulation), QStringList{"other"});
}

void ManipulationTest::sampleGivesItsLastPointsToTheCrop()
{
    const auto sample = ExperimentFactory::instance(nullptr)->createWildManipulation();

    QCOMPARE(linesOf(*sample),
             (QStringList{"remove 0:(50, 50)", ' ' + joinLine(),
                          "  crop 0:(50, 0) 1:(0, 50) 2:(-50, 0) 3:(0, -50) 4:(0, 100) "
                          "5:(-50, 50) 6:(0, 0)",
                          "   morphology Wild type", "  morphology Wild type"}));
    QCOMPARE(brokenLinks(*sample), QStringList());
    QCOMPARE(sample->calcMorphologiesList().first()->regions().size(), 3);
}

QTEST_GUILESS_MAIN(ManipulationTest)
#include "ManipulationTest.moc"
