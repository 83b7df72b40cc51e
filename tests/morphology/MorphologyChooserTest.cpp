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

    void keepsToItsWormWhenTheListIsReadAnew_data();
    void keepsToItsWormWhenTheListIsReadAnew();
    void saysNothingWhenTheListIsReadAnew();
    void choosesNothingWhereItsWormIsGone();

private:
    int store(const QString &name);
    void open();

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<QSqlQueryModel> model;
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
    store("Worm");
    open();
    parts->choose("Worm");
    library->run("DELETE FROM RegionParam");
    library->run("DELETE FROM Region");
    library->run("DELETE FROM Morphology WHERE Name='Worm'");
    library->db()->updateModel(model.get());
    QCOMPARE(parts->names(), QStringList({"Cyclops"}));
    QCOMPARE(parts->list()->currentIndex(), -1);
    QCOMPARE(parts->shownName(), "Worm");
    parts->choose("Cyclops");
    QCOMPARE(parts->shownName(), "Cyclops");
}

QTEST_MAIN(MorphologyChooserTest)
#include "MorphologyChooserTest.moc"
