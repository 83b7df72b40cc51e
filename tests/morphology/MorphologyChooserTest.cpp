#include "morphology/MorphologyChooser.h"

#include "db/ExperimentFactory.h"
#include "model/Region.h"
#include "morphology/ChooserParts.h"
#include "support/TemporaryLibrary.h"

#include <QLayout>
#include <QSettings>
#include <QSignalSpy>
#include <QSqlQueryModel>

using namespace Planaria;

namespace {
const ModalAnswerer::Box cannotStore = {"Cannot store morphology",
                                        "The morphology could not be written to the file.",
                                        QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Critical};
}

/// A chooser in a form that makes each wish of the user come true.
class MorphologyChooserTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void putsListButtonsAndDrawingBelowEachOther();
    void leadsThroughItsPartsByTab();
    void tellsWhatItsControlsAreFor();
    void leavesEnterToTheFormAround();

    void choosesTheFirstByName();
    void showsWhatIsChosen();
    void loadsWhatIsShownNotAgain();
    void showsNothingWithoutMorphologies();
    void offersNothingToEditWithoutMorphologies();

    void editsTheStoredRow();
    void staysAtItsRowWhateverTheNameBecomes();
    void copiesUnderANewName();
    void makesANewOne();
    void choosesTheFirstThatIsMade();
    void leavesAllAsItWasWhenTheUserCancels_data();
    void leavesAllAsItWasWhenTheUserCancels();
    void startsFromTheRowAsItStandsInTheFile();
    void showsNothingThatTheFileDoesNotHold_data();
    void showsNothingThatTheFileDoesNotHold();
    void writesNothingOfAWormThatIsGone();

    void showsAMorphologyOfSomebodyElse();
    void showsNothingInPlaceOfAMorphology();
    void keepsWhatItOwnsItself();
    void goesOnShowingWhatItHandsOver();
    void takesTheDrawingAwayAndKeepsTheChoice();
    void followsItsWormToItsNewRow();

    void keepsToItsWormWhenTheListIsReadAnew_data();
    void keepsToItsWormWhenTheListIsReadAnew();
    void saysNothingWhenTheListIsReadAnew();
    void choosesNothingWhereItsWormIsGone();

private:
    int store(const QString &name);
    void deleteWorm(int id);
    void open();

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<QSqlQueryModel> model;
    std::unique_ptr<Morphology> foreign; // outlives the chooser
    std::unique_ptr<QWidget> form;
    std::unique_ptr<ChooserParts> parts;
    QList<bool> changes; // what the wishes came to
};

void MorphologyChooserTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
}

void MorphologyChooserTest::cleanup()
{
    parts.reset();
    form.reset();
    foreign.reset();
    model.reset();
    QCOMPARE(library->brokenReferences(), QStringList());
}

int MorphologyChooserTest::store(const QString &name)
{
    Morphology worm;
    worm.setName(name);
    worm.addRegion(ExperimentFactory::instance(nullptr)->regionType(1));
    return worm.submit(library->db());
}

void MorphologyChooserTest::deleteWorm(int id)
{
    library->run(QStringLiteral("DELETE FROM RegionParam WHERE Region IN "
                                "(SELECT Id FROM Region WHERE Morphology=%1)")
                     .arg(id));
    library->run(QStringLiteral("DELETE FROM Region WHERE Morphology=%1").arg(id));
    library->run(QStringLiteral("DELETE FROM Morphology WHERE Id=%1").arg(id));
}

void MorphologyChooserTest::open()
{
    model = library->db()->newTableModel("Morphology", "Name");
    form = std::make_unique<QWidget>();
    auto *chooser = new MorphologyChooser("Morphology to test", library->db(), form.get());
    connect(chooser, &MorphologyChooser::rowChosen, this,
            [this, chooser](int row) { changes += chooser->showRow(row); });
    connect(chooser, &MorphologyChooser::editClicked, this,
            [this, chooser] { changes += chooser->edit(); });
    connect(chooser, &MorphologyChooser::copyClicked, this,
            [this, chooser] { changes += chooser->copy(); });
    connect(chooser, &MorphologyChooser::newClicked, this,
            [this, chooser] { changes += chooser->create(); });
    chooser->setModel(model.get());
    changes.clear();
    parts = std::make_unique<ChooserParts>(chooser);
    form->show();
}

// --- The parts ---

void MorphologyChooserTest::putsListButtonsAndDrawingBelowEachOther()
{
    open();
    const QLayout *layout = parts->chooser->layout();
    QCOMPARE(layout->count(), 3);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->itemAt(0)->widget(), parts->list());
    QCOMPARE(layout->itemAt(2)->widget(), parts->view());
    const QLayout *row = layout->itemAt(1)->layout();
    QCOMPARE(row->count(), 3);
    QCOMPARE(row->itemAt(0)->widget(), parts->button("Edit"));
    QCOMPARE(row->itemAt(1)->widget(), parts->button("Copy"));
    QCOMPARE(row->itemAt(2)->widget(), parts->button("New"));
}

void MorphologyChooserTest::leadsThroughItsPartsByTab()
{
    store("Cyclops");
    open();
    parts->list()->setFocus();
    for (QWidget *next : QList<QWidget *>{parts->button("Edit"), parts->button("Copy"),
                                          parts->button("New"), parts->view()}) {
        QTest::keyClick(form->focusWidget(), Qt::Key_Tab);
        QCOMPARE(form->focusWidget(), next);
    }
}

void MorphologyChooserTest::tellsWhatItsControlsAreFor()
{
    store("Cyclops");
    open();
    QCOMPARE(parts->list()->accessibleName(), "Morphology to test");
    QCOMPARE(parts->list()->accessibleDescription(), "Morphology to test");
    for (const char *text : {"Edit", "Copy", "New"})
        QCOMPARE(parts->button(text)->accessibleDescription(), "Morphology to test");
    QCOMPARE(parts->view()->accessibleName(), "Drawing of morphology Cyclops");
}

void MorphologyChooserTest::leavesEnterToTheFormAround()
{
    open();
    for (const char *text : {"Edit", "Copy", "New"})
        QVERIFY(!parts->button(text)->autoDefault());
}

// --- Choosing ---

void MorphologyChooserTest::choosesTheFirstByName()
{
    store("Two heads");
    store("Cyclops");
    open();
    QCOMPARE(parts->names(), QStringList({"Cyclops", "Two heads"}));
    QCOMPARE(parts->chosenName(), "Cyclops");
    QCOMPARE(parts->shownName(), "Cyclops");
}

void MorphologyChooserTest::showsWhatIsChosen()
{
    store("Cyclops");
    store("Two heads");
    open();
    parts->list()->setFocus();
    QTest::keyClick(parts->list(), Qt::Key_Down);
    QCOMPARE(parts->shownName(), "Two heads");
    QCOMPARE(parts->view()->morphology(), parts->chooser->morphology());
    QCOMPARE(changes, QList<bool>({true}));
}

void MorphologyChooserTest::loadsWhatIsShownNotAgain()
{
    store("Cyclops");
    open();
    const Morphology *shown = parts->chooser->morphology();
    QVERIFY(!parts->chooser->showRow(0));
    QCOMPARE(parts->chooser->morphology(), shown);
}

void MorphologyChooserTest::showsNothingWithoutMorphologies()
{
    open();
    QCOMPARE(parts->list()->currentIndex(), -1);
    QCOMPARE(parts->chooser->morphology(), nullptr);
    QVERIFY(!parts->chooser->showRow(-1));
    QCOMPARE(parts->view()->accessibleName(), "No morphology");
}

void MorphologyChooserTest::offersNothingToEditWithoutMorphologies()
{
    open();
    QVERIFY(!parts->button("Edit")->isEnabled());
    QVERIFY(!parts->button("Copy")->isEnabled());
    QVERIFY(parts->button("New")->isEnabled());
}

// --- Editing ---

void MorphologyChooserTest::editsTheStoredRow()
{
    const int id = store("Cyclops");
    open();
    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "Cyclops with a hat");
    parts->press("Edit");
    QCOMPARE(answerer.problems(), QStringList());

    QCOMPARE(seen->title, "Edit morphology");
    QCOMPARE(seen->name, "Cyclops");
    QCOMPARE(seen->parent, form.get());
    QCOMPARE(changes, QList<bool>({true}));
    QCOMPARE(library->count("Morphology"), 1);
    QCOMPARE(library->value("SELECT Name FROM Morphology"), "Cyclops with a hat");
    QCOMPARE(parts->chooser->morphology()->id(), id);
    QCOMPARE(parts->shownName(), "Cyclops with a hat");
    QCOMPARE(parts->chosenName(), "Cyclops with a hat");
}

void MorphologyChooserTest::staysAtItsRowWhateverTheNameBecomes()
{
    store("Cyclops");
    store("Two heads");
    open();
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "Without eyes");
    parts->press("Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(parts->names(), QStringList({"Two heads", "Without eyes"}));
    QCOMPARE(parts->list()->currentIndex(), 0);
    QCOMPARE(parts->shownName(), "Without eyes");
}

void MorphologyChooserTest::copiesUnderANewName()
{
    const int id = store("Cyclops");
    store("Two heads");
    open();
    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "Without eyes");
    parts->press("Copy");
    QCOMPARE(answerer.problems(), QStringList());

    QCOMPARE(seen->title, "New morphology");
    QCOMPARE(seen->name, "Cyclops - copy");
    QCOMPARE(seen->parent, form.get());
    QCOMPARE(changes, QList<bool>({true}));
    QCOMPARE(parts->names(), QStringList({"Cyclops", "Two heads", "Without eyes"}));
    QCOMPARE(parts->chosenName(), "Without eyes");
    QCOMPARE(parts->shownName(), "Without eyes");
    QVERIFY(parts->chooser->morphology()->id() != id);
    QCOMPARE(parts->chooser->morphology()->regions().size(), 1);
    QCOMPARE(library->count("Region"), 3);
}

void MorphologyChooserTest::makesANewOne()
{
    store("Cyclops");
    store("Two heads");
    open();
    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "Nothing");
    parts->press("New");
    QCOMPARE(answerer.problems(), QStringList());

    QCOMPARE(seen->title, "New morphology");
    QCOMPARE(seen->name, QString());
    QCOMPARE(seen->parent, form.get());
    QCOMPARE(changes, QList<bool>({true}));
    QCOMPARE(parts->names(), QStringList({"Cyclops", "Nothing", "Two heads"}));
    QCOMPARE(parts->chosenName(), "Nothing");
    QCOMPARE(parts->shownName(), "Nothing");
    QVERIFY(parts->chooser->morphology()->regions().isEmpty());
}

void MorphologyChooserTest::choosesTheFirstThatIsMade()
{
    open();
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "First");
    parts->press("New");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(parts->chosenName(), "First");
    QCOMPARE(parts->shownName(), "First");
    QVERIFY(parts->button("Edit")->isEnabled());
    QVERIFY(parts->button("Copy")->isEnabled());
    QCOMPARE(changes, QList<bool>({true}));
}

void MorphologyChooserTest::leavesAllAsItWasWhenTheUserCancels_data()
{
    QTest::addColumn<QString>("button");
    for (const char *button : {"Edit", "Copy", "New"})
        QTest::newRow(button) << button;
}

void MorphologyChooserTest::leavesAllAsItWasWhenTheUserCancels()
{
    QFETCH(const QString, button);
    store("Cyclops");
    store("Two heads");
    open();
    parts->choose("Two heads");
    const Morphology *shown = parts->chooser->morphology();
    changes.clear();
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, QString());
    parts->press(button);
    QCOMPARE(answerer.problems(), QStringList());

    QCOMPARE(changes, QList<bool>({false}));
    QCOMPARE(parts->chooser->morphology(), shown);
    QCOMPARE(parts->chosenName(), "Two heads");
    QCOMPARE(parts->names(), QStringList({"Cyclops", "Two heads"}));
    QCOMPARE(library->count("Morphology"), 2);
}

void MorphologyChooserTest::startsFromTheRowAsItStandsInTheFile()
{
    const int id = store("Cyclops");
    open();
    Morphology elsewhere(id, library->db(), true);
    elsewhere.setName("Without eyes");
    elsewhere.removeRegion(elsewhere.regions().first());
    elsewhere.addImage("a picture");
    elsewhere.submit(library->db());

    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "Without anything");
    parts->press("Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->name, "Without eyes");
    QCOMPARE(parts->shownName(), "Without anything");
    QVERIFY(parts->chooser->morphology()->regions().isEmpty());
    QCOMPARE(library->count("Region"), 0);
    QCOMPARE(library->count("MorphologyImage"), 1);
}

void MorphologyChooserTest::showsNothingThatTheFileDoesNotHold_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("obstacle");
    const QString readOnly = "PRAGMA query_only = true";
    const QString refused = "CREATE TRIGGER Refused BEFORE %1 ON Region "
                            "BEGIN SELECT RAISE(ABORT, 'refused'); END";
    for (const char *button : {"Edit", "Copy", "New"})
        QTest::addRow("%s, read only", button) << button << readOnly;
    QTest::newRow("Edit, a part is refused") << "Edit" << refused.arg("UPDATE");
    QTest::newRow("Copy, a part is refused") << "Copy" << refused.arg("INSERT");
}

void MorphologyChooserTest::showsNothingThatTheFileDoesNotHold()
{
    QFETCH(const QString, button);
    QFETCH(const QString, obstacle);
    store("Cyclops");
    open();
    const Morphology *shown = parts->chooser->morphology();
    library->run(obstacle);
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "Another name");
    answerer.expectBox(cannotStore, QMessageBox::Ok);
    parts->press(button);
    QCOMPARE(answerer.problems(), QStringList());

    QCOMPARE(changes, QList<bool>({false}));
    QCOMPARE(parts->chooser->morphology(), shown);
    QCOMPARE(parts->shownName(), "Cyclops");
    QCOMPARE(parts->names(), QStringList({"Cyclops"}));
    QCOMPARE(library->count("Morphology"), 1);
    QCOMPARE(library->value("SELECT Name FROM Morphology"), "Cyclops");
    QCOMPARE(library->count("Region"), 1);
    QVERIFY(!library->db()->inTransaction());
}

void MorphologyChooserTest::writesNothingOfAWormThatIsGone()
{
    const int id = store("Cyclops");
    open();
    deleteWorm(id);
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "Another name");
    answerer.expectBox(cannotStore, QMessageBox::Ok);
    parts->press("Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(changes, QList<bool>({false}));
    QCOMPARE(parts->shownName(), "Cyclops");
    for (const char *table : {"Morphology", "Region", "RegionParam"})
        QCOMPARE(library->count(table), 0);
    QVERIFY(!library->db()->inTransaction());
}

// --- Morphologies of the form around ---

void MorphologyChooserTest::showsAMorphologyOfSomebodyElse()
{
    store("Cyclops");
    foreign = std::make_unique<Morphology>(store("Two heads"), library->db(), false);
    open();
    parts->chooser->setMorphology(foreign.get());
    QCOMPARE(parts->chooser->morphology(), foreign.get());
    QCOMPARE(parts->view()->morphology(), foreign.get());
    QCOMPARE(parts->chosenName(), "Two heads");
    QCOMPARE(parts->chooser->release(), nullptr);
    QCOMPARE(changes, QList<bool>());

    parts->choose("Cyclops");
    QCOMPARE(parts->shownName(), "Cyclops");
    QCOMPARE(foreign->name(), "Two heads");
}

void MorphologyChooserTest::showsNothingInPlaceOfAMorphology()
{
    store("Cyclops");
    open();
    parts->chooser->setMorphology(nullptr);
    QCOMPARE(parts->chooser->morphology(), nullptr);
    QCOMPARE(parts->view()->morphology(), nullptr);
    QCOMPARE(parts->list()->currentIndex(), -1);
    QVERIFY(!parts->button("Edit")->isEnabled());
    QVERIFY(!parts->button("Copy")->isEnabled());
    QCOMPARE(changes, QList<bool>());
}

void MorphologyChooserTest::keepsWhatItOwnsItself()
{
    store("Cyclops");
    open();
    auto *own = const_cast<Morphology *>(parts->chooser->morphology());
    parts->chooser->setMorphology(own);
    QCOMPARE(parts->shownName(), "Cyclops");
    QCOMPARE(parts->view()->morphology(), own);
    QCOMPARE(parts->chosenName(), "Cyclops");
    foreign = parts->chooser->release();
    QCOMPARE(foreign.get(), own);
}

void MorphologyChooserTest::goesOnShowingWhatItHandsOver()
{
    store("Cyclops");
    store("Two heads");
    open();
    foreign = parts->chooser->release();
    QVERIFY(foreign);
    QCOMPARE(parts->chooser->morphology(), foreign.get());
    QCOMPARE(parts->view()->morphology(), foreign.get());
    QCOMPARE(parts->chooser->release(), nullptr);

    parts->choose("Two heads");
    QCOMPARE(parts->shownName(), "Two heads");
    QCOMPARE(foreign->name(), "Cyclops");
}

void MorphologyChooserTest::takesTheDrawingAwayAndKeepsTheChoice()
{
    store("Cyclops");
    open();
    const Morphology *shown = parts->chooser->morphology();
    parts->chooser->clearView();
    QCOMPARE(parts->view()->morphology(), nullptr);
    QCOMPARE(parts->chooser->morphology(), shown);
    QCOMPARE(parts->chosenName(), "Cyclops");
    QCOMPARE(changes, QList<bool>());
}

void MorphologyChooserTest::followsItsWormToItsNewRow()
{
    store("Cyclops");
    store("Two heads");
    open();
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "Without eyes");
    parts->press("Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(parts->chosenName(), "Two heads");
    changes.clear();
    parts->chooser->keepRow();
    QCOMPARE(parts->chosenName(), "Without eyes");
    QCOMPARE(parts->shownName(), "Without eyes");
    QCOMPARE(changes, QList<bool>());
}

// --- A list that is read anew ---

void MorphologyChooserTest::keepsToItsWormWhenTheListIsReadAnew_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<QString>("change");
    const QString insert = "INSERT INTO Morphology (Name) VALUES('A new one')";
    QTest::newRow("another comes before it") << 0 << insert;
    QTest::newRow("it is renamed") << 0 << "UPDATE Morphology SET Name='Abc' WHERE Name='Worm'";
    QTest::newRow("no change") << 0 << "SELECT 1";
    QTest::newRow("beyond what is read at once") << 700 << insert;
}

void MorphologyChooserTest::keepsToItsWormWhenTheListIsReadAnew()
{
    QFETCH(const int, before);
    QFETCH(const QString, change);
    library->db()->beginTransaction();
    for (int i = 0; i < before; ++i)
        library->run(QStringLiteral("INSERT INTO Morphology (Name) VALUES('Number %1')").arg(i));
    QVERIFY(library->db()->endTransaction());
    store("Worm");
    store("Cyclops");
    open();
    parts->choose("Worm");
    const Morphology *shown = parts->chooser->morphology();
    changes.clear();

    library->run(change);
    library->db()->updateModel(model.get());
    QCOMPARE(model->data(model->index(parts->list()->currentIndex(), 0)).toInt(), shown->id());
    QCOMPARE(parts->chooser->morphology(), shown);
    QCOMPARE(changes, QList<bool>());
}

void MorphologyChooserTest::saysNothingWhenTheListIsReadAnew()
{
    store("Worm");
    open();
    library->run("INSERT INTO Morphology (Name) VALUES('A new one')");
    const QSignalSpy chosen(parts->chooser, &MorphologyChooser::rowChosen);
    library->db()->updateModel(model.get());
    QCOMPARE(chosen.size(), 0);
    parts->choose("A new one");
    QCOMPARE(chosen.size(), 1);
}

void MorphologyChooserTest::choosesNothingWhereItsWormIsGone()
{
    store("Cyclops");
    const int id = store("Worm");
    open();
    parts->choose("Worm");
    deleteWorm(id);
    library->db()->updateModel(model.get());
    QCOMPARE(parts->names(), QStringList({"Cyclops"}));
    QCOMPARE(parts->list()->currentIndex(), -1);
    QCOMPARE(parts->shownName(), "Worm");
    parts->choose("Cyclops");
    QCOMPARE(parts->shownName(), "Cyclops");
}

QTEST_MAIN(MorphologyChooserTest)
#include "MorphologyChooserTest.moc"
