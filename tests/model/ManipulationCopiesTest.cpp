#include "model/CropAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/ManipulationLines.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "model/SmallTrees.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

using namespace Planaria;

namespace {

/// A cut body with a cropped graft, both of them stored, written to @p library.
std::unique_ptr<Manipulation> storedManipulation(TemporaryLibrary *library,
                                                 const QString &name = "stored")
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
    if (manipulation->submit(library->db()) < 1)
        qFatal("cannot write a manipulation");
    return manipulation;
}

QStringList linesOf(const Manipulation &manipulation)
{
    return manipulationLines(manipulation, Ids::Without);
}

/// The ids of all rows of the tree, without those of the worms.
QList<int> rowIds(const Manipulation &manipulation)
{
    QList<int> ids{manipulation.id()};
    for (const ManipulationAction *action : manipulation.actions()) {
        ids << action->id() << action->actionRecord().id();
        if (const auto *area = dynamic_cast<const AreaAction *>(action)) {
            for (const ActionAreaPoint *point : area->area())
                ids << point->id();
        }
    }
    return ids;
}

QList<int> wormIds(const Manipulation &manipulation)
{
    QList<int> ids;
    for (const Morphology *worm : manipulation.calcMorphologiesList())
        ids += worm->id();
    return ids;
}

bool shareAWorm(const Manipulation &one, const Manipulation &other)
{
    for (Morphology *worm : one.calcMorphologiesList()) {
        if (other.calcMorphologiesList().contains(worm))
            return true;
    }
    return false;
}

} // namespace

class ManipulationCopiesTest final : public QObject
{
    Q_OBJECT

private slots:
    void init() { library = std::make_unique<TemporaryLibrary>(); }
    void cleanup() { QCOMPARE(library->brokenReferences(), QStringList()); }

    void copyWithIdsIsOfTheSameRows();
    void copyWithoutIdsIsNewButForItsWorms();
    void copyListsItsActionsFromTheRootUp();
    void copyNeedsItsSourceNoMore();
    void copyLeavesBehindWhatWaitsToBeErased();
    void copyOfNothingIsNothing();

    void assignmentTakesContentAndIdentity();
    void assignmentLeavesTheOldTreeInTheFile();
    void assignmentToItselfChangesNothing();

    void replacedContentKeepsItsRow();
    void replacedContentMayComeFromAnotherLibrary();
    void replacingByItselfChangesNothing();

    void movesIntoAnotherLibraryAsANewOne_data();
    void movesIntoAnotherLibraryAsANewOne();
    void movesIntoAnotherLibraryOntoTheWormsThere();

private:
    std::unique_ptr<Manipulation> loaded(int id)
    {
        return std::make_unique<Manipulation>(id, library->db());
    }

    std::unique_ptr<TemporaryLibrary> library;
};

// --- Copies ---

void ManipulationCopiesTest::copyWithIdsIsOfTheSameRows()
{
    const auto source = storedManipulation(library.get());
    Manipulation copy(*source, true);
    QCOMPARE(manipulationLines(copy, Ids::With), manipulationLines(*source, Ids::With));
    QCOMPARE(brokenLinks(copy), QStringList());
    QVERIFY(!shareAWorm(copy, *source));

    copy.setName("renamed");
    QCOMPARE(copy.submit(library->db()), 1);
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({&copy}));
    QCOMPARE(firstDifference(*loaded(1), copy), QString());
}

void ManipulationCopiesTest::copyWithoutIdsIsNewButForItsWorms()
{
    const auto source = storedManipulation(library.get());
    Manipulation copy(*source, false);
    QCOMPARE(linesOf(copy), linesOf(*source));
    QCOMPARE(brokenLinks(copy), QStringList());
    QCOMPARE(rowIds(copy).count(0), rowIds(copy).size());
    QCOMPARE(wormIds(copy), wormIds(*source));
    QVERIFY(!shareAWorm(copy, *source));
    QVERIFY(copy == *source);

    copy.setName("copy");
    QCOMPARE(copy.submit(library->db()), 2);
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({source.get(), &copy}));
    QCOMPARE(library->count("Morphology"), 2);
    QCOMPARE(firstDifference(*loaded(1), *source), QString());
    QCOMPARE(firstDifference(*loaded(2), copy), QString());
}

void ManipulationCopiesTest::copyListsItsActionsFromTheRootUp()
{
    const auto source = storedManipulation(library.get());
    QStringList kinds;
    const Manipulation copy(*source, false);
    for (const ManipulationAction *action : copy.actions())
        kinds += kindOf(action);
    QCOMPARE(kinds, (QStringList{"join", "remove", "morphology", "crop", "morphology"}));
}

void ManipulationCopiesTest::copyNeedsItsSourceNoMore()
{
    auto source = storedManipulation(library.get());
    const QStringList lines = linesOf(*source);
    const Manipulation copy(*source, true);
    source.reset();
    QCOMPARE(linesOf(copy), lines);
}

void ManipulationCopiesTest::copyLeavesBehindWhatWaitsToBeErased()
{
    const auto source = storedManipulation(library.get());
    source->removeAction(source->rootAction());
    const Manipulation copy(*source, true);
    QVERIFY(copy.record().removedReferences().isEmpty());
    QCOMPARE(copy.actions().size(), 2);
}

void ManipulationCopiesTest::copyOfNothingIsNothing()
{
    Manipulation source(named("worm").release());
    source.removeAndDeleteAll();
    const Manipulation copy(source, false);
    QCOMPARE(copy.rootAction(), nullptr);
    QVERIFY(copy.actions().isEmpty());
}

// --- Assignment ---

void ManipulationCopiesTest::assignmentTakesContentAndIdentity()
{
    const auto source = storedManipulation(library.get());
    Manipulation target(named("worm").release());
    target = *source;
    QCOMPARE(manipulationLines(target, Ids::With), manipulationLines(*source, Ids::With));
    QCOMPARE(brokenLinks(target), QStringList());
    QVERIFY(!shareAWorm(target, *source));

    target.submit(library->db());
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({source.get()}));
}

void ManipulationCopiesTest::assignmentLeavesTheOldTreeInTheFile()
{
    const auto source = storedManipulation(library.get());
    const auto target = storedManipulation(library.get(), "target");
    const Manipulation former(*target, true);

    *target = *source;
    target->submit(library->db());
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({source.get(), &former}));
    QCOMPARE(firstDifference(*loaded(2), former), QString());
}

void ManipulationCopiesTest::assignmentToItselfChangesNothing()
{
    const auto source = storedManipulation(library.get());
    const QStringList before = manipulationLines(*source, Ids::With);
    const Manipulation &same = *source;
    *source = same;
    QCOMPARE(manipulationLines(*source, Ids::With), before);
}

// --- Replaced content ---

void ManipulationCopiesTest::replacedContentKeepsItsRow()
{
    const auto source = storedManipulation(library.get());
    const auto target = storedManipulation(library.get(), "target");
    const qsizetype formerActions = target->actions().size();
    target->addCropAction(target->rootAction());

    target->copy(*source);
    QCOMPARE(target->id(), 2);
    QCOMPARE(linesOf(*target), linesOf(*source));
    QCOMPARE(brokenLinks(*target), QStringList());
    QCOMPARE(target->record().removedReferences().size(), formerActions + 1);

    target->setName("replaced");
    QCOMPARE(target->submit(library->db()), 2);
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({source.get(), target.get()}));
    QCOMPARE(firstDifference(*loaded(2), *target), QString());
    QCOMPARE(firstDifference(*loaded(1), *source), QString());
    QCOMPARE(library->count("Morphology"), 4);
}

void ManipulationCopiesTest::replacedContentMayComeFromAnotherLibrary()
{
    TemporaryLibrary elsewhere;
    const auto source = storedManipulation(&elsewhere);
    const auto target = storedManipulation(library.get(), "target");

    target->copy(*source);
    QCOMPARE(target->submit(library->db()), 1);
    QCOMPARE(actionRowsIn(library.get()), actionRowsOf({target.get()}));
    QCOMPARE(firstDifference(*loaded(1), *target), QString());
    QCOMPARE(linesOf(*loaded(1)), linesOf(*source));
    QCOMPARE(firstDifference(Manipulation(1, elsewhere.db()), *source), QString());
    QCOMPARE(actionRowsIn(&elsewhere), actionRowsOf({source.get()}));
}

void ManipulationCopiesTest::replacingByItselfChangesNothing()
{
    const auto source = storedManipulation(library.get());
    const QStringList before = manipulationLines(*source, Ids::With);
    source->copy(*source);
    QCOMPARE(manipulationLines(*source, Ids::With), before);
    QVERIFY(source->record().removedReferences().isEmpty());
}

// --- Another library ---

void ManipulationCopiesTest::movesIntoAnotherLibraryAsANewOne_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"itself", "copy with ids", "copy without ids"})
        QTest::newRow(way) << way;
}

void ManipulationCopiesTest::movesIntoAnotherLibraryAsANewOne()
{
    QFETCH(QString, way);
    const auto source = storedManipulation(library.get());
    const Manipulation before(*source, true);
    TemporaryLibrary elsewhere;
    const auto present = storedManipulation(&elsewhere, "present");

    std::unique_ptr<Manipulation> moved;
    if (way == "itself")
        moved = loaded(1);
    else
        moved = std::make_unique<Manipulation>(*source, way == "copy with ids");
    QCOMPARE(moved->submit(elsewhere.db()), 2);

    QCOMPARE(actionRowsIn(&elsewhere), actionRowsOf({present.get(), moved.get()}));
    QCOMPARE(firstDifference(Manipulation(2, elsewhere.db()), *moved), QString());
    QCOMPARE(firstDifference(Manipulation(1, elsewhere.db()), *present), QString());
    QCOMPARE(linesOf(*moved), linesOf(before));
    QList<int> newWorms = wormIds(*moved);
    std::sort(newWorms.begin(), newWorms.end());
    QCOMPARE(newWorms, (QList{3, 4}));
    QCOMPARE(firstDifference(*loaded(1), before), QString());
    QCOMPARE(elsewhere.brokenReferences(), QStringList());
}

void ManipulationCopiesTest::movesIntoAnotherLibraryOntoTheWormsThere()
{
    named("worm")->submit(library->db());
    Manipulation source(new Morphology(1, library->db(), false));
    source.setName("two of one");
    source.addJoinAction(source.rootAction(), new Morphology(1, library->db(), false));
    source.submit(library->db());

    TemporaryLibrary elsewhere;
    named("other")->submit(elsewhere.db());
    named("worm")->submit(elsewhere.db());
    const auto moved = loaded(1);
    for (Morphology *worm : moved->calcMorphologiesList())
        *worm = Morphology(2, elsewhere.db(), false);

    QCOMPARE(moved->submit(elsewhere.db()), 1);
    QCOMPARE(rows(&elsewhere, "SELECT Morphology FROM MorphologyAction"), (QStringList{"2", "2"}));
    QCOMPARE(elsewhere.count("Morphology"), 2);
    QCOMPARE(firstDifference(Manipulation(1, elsewhere.db()), *moved), QString());
    QCOMPARE(elsewhere.brokenReferences(), QStringList());
}

QTEST_GUILESS_MAIN(ManipulationCopiesTest)
#include "ManipulationCopiesTest.moc"
