#include "manipulation/MorphologyActionDesigner.h"

#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/MorphologyAction.h"
#include "model/Shorthand.h"
#include "morphology/ChooserParts.h"
#include "support/TemporaryLibrary.h"

#include <QLayout>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace Planaria;

/// Works on a leaf that shows "Two heads", one of three worms in the file, unless a test says
/// otherwise.
class MorphologyActionDesignerTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void fillsItselfWithTheChoice();
    void listsAllWormsByName();
    void keepsItsWidthWhateverTheNames();
    void startsWithoutAnAction();

    void showsTheWormOfItsAction();
    void showsOneActionAfterAnother();
    void showsAWormThatIsNotInTheFile();
    void bearsAnActionWithoutAWorm();

    void givesTheChosenWormToItsAction();
    void keepsTheWormThatItsActionHolds();
    void choosesNothingWithoutARow();
    void choosesNothingWithoutAnAction();

    void storesWhatTheUserMakes_data();
    void storesWhatTheUserMakes();
    void choosesACopyUnderItsNewName();
    void followsARenamedWormToItsPlace();
    void leavesAllAsItWasWhenTheUserCancels_data();
    void leavesAllAsItWasWhenTheUserCancels();
    void opensNoEditorWithoutAnAction();
    void keepsToItsWormWhateverElseIsInTheFile();

    void letsNoOtherLeafWriteBackWhatWasEdited();
    void leavesLeavesOfOtherWormsAlone();

    void clearsTheDrawingOnly();
    void goesBeforeOrAfterItsAction();

private:
    int store(const QString &name);
    [[nodiscard]] QString storedNames();
    void press(const QString &button, const QString &name);
    [[nodiscard]] QString shownName() const { return action->morphology()->name(); }

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<Manipulation> manipulation;
    MorphologyAction *action = nullptr;
    std::unique_ptr<MorphologyActionDesigner> designer;
    std::unique_ptr<ChooserParts> parts;
    std::unique_ptr<QSignalSpy> stored;
    std::unique_ptr<QSignalSpy> chosen;
};

void MorphologyActionDesignerTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
    const int id = store("Two heads");
    store("Cyclops");
    store("Wild type");
    manipulation = std::make_unique<Manipulation>(
        std::make_unique<Morphology>(id, library->db(), false).release());
    action = static_cast<MorphologyAction *>(manipulation->rootAction());

    designer = std::make_unique<MorphologyActionDesigner>(library->db());
    stored =
        std::make_unique<QSignalSpy>(designer.get(), &MorphologyActionDesigner::morphologyChanged);
    chosen = std::make_unique<QSignalSpy>(designer.get(),
                                          &MorphologyActionDesigner::morphologySelectedChanged);
    parts = std::make_unique<ChooserParts>(designer->findChild<MorphologyChooser *>());
    designer->show();
    designer->setMorphologyAction(action);
}

void MorphologyActionDesignerTest::cleanup()
{
    designer.reset();
    manipulation.reset();
    QCOMPARE(library->brokenReferences(), QStringList());
}

int MorphologyActionDesignerTest::store(const QString &name)
{
    Morphology worm;
    worm.setName(name);
    worm.addRegion(headType());
    return worm.submit(library->db());
}

QString MorphologyActionDesignerTest::storedNames()
{
    return library
        ->value("SELECT GROUP_CONCAT(Name, ', ') FROM (SELECT Name FROM Morphology ORDER BY Name)")
        .toString();
}

/// Presses @p button and answers the editor with @p name, or cancels it where that is empty.
void MorphologyActionDesignerTest::press(const QString &button, const QString &name)
{
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, name);
    parts->press(button);
    QCOMPARE(answerer.problems(), QStringList());
}

// --- The parts ---

void MorphologyActionDesignerTest::fillsItselfWithTheChoice()
{
    QCOMPARE(designer->layout()->contentsMargins(), QMargins());
    QCOMPARE(designer->layout()->count(), 1);
    QCOMPARE(designer->layout()->itemAt(0)->widget(), parts->chooser);

    const QLayout *rows = parts->chooser->layout();
    QCOMPARE(rows->contentsMargins(), QMargins());
    QCOMPARE(rows->count(), 3);
    QCOMPARE(rows->itemAt(0)->widget(), parts->list());
    const QLayout *buttons = rows->itemAt(1)->layout();
    QCOMPARE(buttons->count(), 3);
    QCOMPARE(buttons->itemAt(0)->widget(), parts->button("Edit"));
    QCOMPARE(buttons->itemAt(1)->widget(), parts->button("Copy"));
    QCOMPARE(buttons->itemAt(2)->widget(), parts->button("New"));
    QCOMPARE(rows->itemAt(2)->widget(), parts->view());
}

void MorphologyActionDesignerTest::listsAllWormsByName()
{
    QCOMPARE(parts->names(), QStringList({"Cyclops", "Two heads", "Wild type"}));
}

void MorphologyActionDesignerTest::keepsItsWidthWhateverTheNames()
{
    QCOMPARE(parts->list()->sizeAdjustPolicy(), QComboBox::AdjustToMinimumContentsLengthWithIcon);
    const int width = designer->minimumSizeHint().width();
    store(QString(500, 'w'));
    const MorphologyActionDesigner wide(library->db());
    QCOMPARE(wide.minimumSizeHint().width(), width);
}

void MorphologyActionDesignerTest::startsWithoutAnAction()
{
    const MorphologyActionDesigner fresh(library->db());
    const ChooserParts freshParts(fresh.findChild<MorphologyChooser *>());
    QCOMPARE(freshParts.view()->morphology(), nullptr);
    QVERIFY(!freshParts.button("Edit")->isEnabled());
}

// --- What it shows ---

void MorphologyActionDesignerTest::showsTheWormOfItsAction()
{
    QCOMPARE(parts->chosenName(), "Two heads");
    QCOMPARE(parts->view()->morphology(), action->morphology());
    QVERIFY(parts->button("Edit")->isEnabled());
    QCOMPARE(stored->size(), 0);
    QCOMPARE(chosen->size(), 0);
}

void MorphologyActionDesignerTest::showsOneActionAfterAnother()
{
    auto *join = manipulation->addJoinAction(
        action, std::make_unique<Morphology>(store("Last"), library->db(), false).release());
    auto *second = static_cast<MorphologyAction *>(join->fromAction2());
    designer->setMorphologyAction(second);
    QCOMPARE(parts->view()->morphology(), second->morphology());
    designer->setMorphologyAction(action);
    QCOMPARE(parts->chosenName(), "Two heads");
    parts->choose("Cyclops");
    QCOMPARE(shownName(), "Cyclops");
    QCOMPARE(second->morphology()->name(), "Last");
    designer->setMorphologyAction(nullptr);
    QCOMPARE(parts->view()->morphology(), nullptr);
}

void MorphologyActionDesignerTest::showsAWormThatIsNotInTheFile()
{
    auto worm = std::make_unique<Morphology>();
    worm->setName("Not stored");
    action->setMorphology(worm.release());
    designer->setMorphologyAction(action);
    QCOMPARE(parts->list()->currentIndex(), -1);
    QCOMPARE(parts->view()->morphology(), action->morphology());
    parts->choose("Cyclops");
    QCOMPARE(shownName(), "Cyclops");
}

void MorphologyActionDesignerTest::bearsAnActionWithoutAWorm()
{
    designer->clear();
    action->setMorphology(nullptr);
    designer->setMorphologyAction(action);
    QCOMPARE(parts->list()->currentIndex(), -1);
    QCOMPARE(parts->view()->morphology(), nullptr);
    designer->editMorphology();
    designer->copyMorphology();
    QCOMPARE(action->morphology(), nullptr);
    press("New", "The first");
    QCOMPARE(shownName(), "The first");
    QCOMPARE(parts->chosenName(), "The first");
}

// --- Choosing ---

void MorphologyActionDesignerTest::givesTheChosenWormToItsAction()
{
    QTest::keyClick(parts->list(), Qt::Key_Down);
    QCOMPARE(parts->chosenName(), "Wild type");
    QCOMPARE(shownName(), "Wild type");
    QCOMPARE(action->morphology()->regions().size(), 1);
    QCOMPARE(parts->view()->morphology(), action->morphology());
    QCOMPARE(chosen->size(), 1);
    QCOMPARE(stored->size(), 0);
    QTest::keyClick(parts->list(), Qt::Key_Home);
    QCOMPARE(shownName(), "Cyclops");
    QCOMPARE(chosen->size(), 2);
    QCOMPARE(library->count("Morphology"), 3);
}

void MorphologyActionDesignerTest::keepsTheWormThatItsActionHolds()
{
    const Morphology *held = action->morphology();
    designer->morphologyComboBoxChanged(1);
    emit parts->chooser->rowChosen(1);
    QCOMPARE(action->morphology(), held);
    QCOMPARE(parts->view()->morphology(), held);
    QCOMPARE(chosen->size(), 0);
}

void MorphologyActionDesignerTest::choosesNothingWithoutARow()
{
    const Morphology *held = action->morphology();
    parts->list()->setCurrentIndex(-1);
    QCOMPARE(action->morphology(), held);
    QCOMPARE(chosen->size(), 0);
}

void MorphologyActionDesignerTest::choosesNothingWithoutAnAction()
{
    designer->setMorphologyAction(nullptr);
    parts->choose("Cyclops");
    QCOMPARE(parts->view()->morphology(), nullptr);
    QCOMPARE(shownName(), "Two heads");
    QCOMPARE(chosen->size(), 0);
}

// --- Editing ---

void MorphologyActionDesignerTest::storesWhatTheUserMakes_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("offeredName");
    QTest::addColumn<QString>("names");
    QTest::addColumn<bool>("sameRow");
    QTest::addColumn<int>("regions");
    QTest::newRow("Edit") << "Edit"
                          << "Edit morphology"
                          << "Two heads"
                          << "Cyclops, Mine, Wild type" << true << 1;
    QTest::newRow("Copy") << "Copy"
                          << "New morphology"
                          << "Two heads - copy"
                          << "Cyclops, Mine, Two heads, Wild type" << false << 1;
    QTest::newRow("New") << "New"
                         << "New morphology"
                         << ""
                         << "Cyclops, Mine, Two heads, Wild type" << false << 0;
}

void MorphologyActionDesignerTest::storesWhatTheUserMakes()
{
    QFETCH(const QString, button);
    QFETCH(const bool, sameRow);
    const int id = action->morphology()->id();
    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "Mine");
    parts->press(button);
    QCOMPARE(answerer.problems(), QStringList());

    QTEST(seen->title, "title");
    QTEST(seen->name, "offeredName");
    QCOMPARE(seen->parent, designer.get());
    QTEST(storedNames(), "names");
    QCOMPARE(parts->names().join(", "), storedNames());
    QCOMPARE(shownName(), "Mine");
    QCOMPARE(action->morphology()->id() == id, sameRow);
    QVERIFY(action->morphology()->id() > 0);
    QTEST(int(action->morphology()->regions().size()), "regions");
    QCOMPARE(parts->view()->morphology(), action->morphology());
    QCOMPARE(parts->chosenName(), "Mine");
    QCOMPARE(*stored, QList<QVariantList>({{action->morphology()->id()}}));
    QCOMPARE(chosen->size(), 0);
}

void MorphologyActionDesignerTest::choosesACopyUnderItsNewName()
{
    press("Copy", "Two heads - copy");
    QCOMPARE(parts->names(),
             QStringList({"Cyclops", "Two heads", "Two heads - copy", "Wild type"}));
    QCOMPARE(parts->chosenName(), "Two heads - copy");
    QCOMPARE(shownName(), "Two heads - copy");
    QCOMPARE(parts->view()->accessibleName(), "Drawing of morphology Two heads - copy");
}

void MorphologyActionDesignerTest::followsARenamedWormToItsPlace()
{
    press("Edit", "Zweikopf");
    QCOMPARE(parts->names(), QStringList({"Cyclops", "Wild type", "Zweikopf"}));
    QCOMPARE(parts->list()->currentIndex(), 2);
    QCOMPARE(shownName(), "Zweikopf");
    QCOMPARE(chosen->size(), 0);
}

void MorphologyActionDesignerTest::leavesAllAsItWasWhenTheUserCancels_data()
{
    QTest::addColumn<QString>("button");
    for (const char *button : {"Edit", "Copy", "New"})
        QTest::newRow(button) << button;
}

void MorphologyActionDesignerTest::leavesAllAsItWasWhenTheUserCancels()
{
    QFETCH(const QString, button);
    const Morphology *held = action->morphology();
    press(button, QString());
    QCOMPARE(action->morphology(), held);
    QCOMPARE(parts->view()->morphology(), held);
    QCOMPARE(parts->chosenName(), "Two heads");
    QCOMPARE(parts->names(), QStringList({"Cyclops", "Two heads", "Wild type"}));
    QCOMPARE(storedNames(), "Cyclops, Two heads, Wild type");
    QCOMPARE(stored->size(), 0);
    QCOMPARE(chosen->size(), 0);
}

void MorphologyActionDesignerTest::opensNoEditorWithoutAnAction()
{
    designer->setMorphologyAction(nullptr);
    ModalAnswerer answerer;
    designer->editMorphology();
    designer->copyMorphology();
    parts->press("New");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(library->count("Morphology"), 3);
}

void MorphologyActionDesignerTest::keepsToItsWormWhateverElseIsInTheFile()
{
    const Morphology *held = action->morphology();
    store("A new one"); // behind the designer's back, and before all others
    store("Another one");
    press("Edit", "Two heads");
    QCOMPARE(parts->names(),
             QStringList({"A new one", "Another one", "Cyclops", "Two heads", "Wild type"}));
    QCOMPARE(parts->chosenName(), "Two heads");
    QCOMPARE(shownName(), "Two heads");
    QVERIFY(action->morphology() != held);
    QCOMPARE(chosen->size(), 0);
}

// --- The other leaves ---

void MorphologyActionDesignerTest::letsNoOtherLeafWriteBackWhatWasEdited()
{
    const int id = action->morphology()->id();
    auto *join = manipulation->addJoinAction(
        action, std::make_unique<Morphology>(id, library->db(), false).release());
    auto *other = static_cast<MorphologyAction *>(join->fromAction2());
    manipulation->setName("Grafted onto itself");

    press("Edit", "Two new heads");
    QCOMPARE(other->morphology()->name(), "Two new heads");
    QVERIFY(other->morphology() != action->morphology());
    QVERIFY(manipulation->submit(library->db()) > 0);
    QCOMPARE(storedNames(), "Cyclops, Two new heads, Wild type");
}

void MorphologyActionDesignerTest::leavesLeavesOfOtherWormsAlone()
{
    auto *join = manipulation->addJoinAction(
        action, std::make_unique<Morphology>(store("Last"), library->db(), false).release());
    const auto *other = static_cast<MorphologyAction *>(join->fromAction2());
    const Morphology *held = other->morphology();
    press("Edit", "Two new heads");
    QCOMPARE(other->morphology(), held);
    press("Copy", "A copy");
    QCOMPARE(other->morphology(), held);
}

// --- The end ---

void MorphologyActionDesignerTest::clearsTheDrawingOnly()
{
    designer->clear();
    QCOMPARE(parts->view()->morphology(), nullptr);
    QCOMPARE(parts->chosenName(), "Two heads");
    QCOMPARE(shownName(), "Two heads");
    parts->choose("Cyclops");
    QCOMPARE(shownName(), "Cyclops");
    QCOMPARE(parts->view()->morphology(), action->morphology());
}

void MorphologyActionDesignerTest::goesBeforeOrAfterItsAction()
{
    parts->choose("Cyclops");
    designer->clear();
    manipulation.reset();
    designer.reset();
    QCOMPARE(chosen->size(), 1);
}

QTEST_MAIN(MorphologyActionDesignerTest)
#include "MorphologyActionDesignerTest.moc"
