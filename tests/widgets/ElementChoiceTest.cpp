#include "widgets/ElementChoice.h"

#include "support/TemporaryLibrary.h"

#include <QComboBox>
#include <QSignalSpy>
#include <QTest>

using namespace Planaria;

/// Chooses among "beta" (row 1 of the file), "alpha" (2) and "gamma" (3), which two boxes list by
/// name.
class ElementChoiceTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void listsTheNamesAndChoosesNothing();
    void movesTheBoxAndSaysNothing();
    void choosesNothingForAnIdThatIsNotListed_data();
    void choosesNothingForAnIdThatIsNotListed();
    void tellsWhatTheUserChooses();
    void saysNothingOfABoxThatLosesItsChoice();
    void keepsToItsElementWhenTheRowsAreReadAnew_data();
    void keepsToItsElementWhenTheRowsAreReadAnew();
    void staysEmptyWhenTheRowsAreReadAnew();
    void letsGoOfAnElementThatIsGone();
    void readsTheRowsAnewForAnotherElement();
    void keepsTheRowsAsLongAsABoxShowsThem();
    void showsTheWholeNameInItsToolTip();

private:
    std::unique_ptr<TemporaryLibrary> library;
    std::weak_ptr<QSqlQueryModel> model;
    std::unique_ptr<QComboBox> box;
    std::unique_ptr<QComboBox> otherBox;
    ElementChoice *choice = nullptr;
    ElementChoice *other = nullptr;
    std::unique_ptr<QSignalSpy> chosen;
};

void ElementChoiceTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    library->run("INSERT INTO Drug VALUES(1, 'beta'), (2, 'alpha'), (3, 'gamma')");
    const std::shared_ptr<QSqlQueryModel> rows = library->db()->newTableModel("Drug", "Name");
    model = rows;
    box = std::make_unique<QComboBox>();
    otherBox = std::make_unique<QComboBox>();
    choice = new ElementChoice(box.get(), rows);
    other = new ElementChoice(otherBox.get(), rows);
    chosen = std::make_unique<QSignalSpy>(choice, &ElementChoice::chosen);
}

void ElementChoiceTest::cleanup()
{
    box.reset();
    otherBox.reset();
}

void ElementChoiceTest::listsTheNamesAndChoosesNothing()
{
    QCOMPARE(box->count(), 3);
    QCOMPARE(box->itemText(0), "alpha");
    QCOMPARE(box->itemText(2), "gamma");
    QCOMPARE(box->currentIndex(), -1);
    QCOMPARE(choice->id(), 0);
    QCOMPARE(choice->idAt(0), 2);
    QCOMPARE(choice->idAt(3), 0);
}

void ElementChoiceTest::movesTheBoxAndSaysNothing()
{
    choice->choose(3);
    QCOMPARE(box->currentText(), "gamma");
    QCOMPARE(choice->id(), 3);
    QCOMPARE(chosen->size(), 0);
}

void ElementChoiceTest::choosesNothingForAnIdThatIsNotListed_data()
{
    QTest::addColumn<int>("id");
    for (const int id : {0, -1, 4})
        QTest::addRow("%d", id) << id;
}

void ElementChoiceTest::choosesNothingForAnIdThatIsNotListed()
{
    QFETCH(const int, id);
    choice->choose(3);
    choice->choose(id);
    QCOMPARE(box->currentIndex(), -1);
    QCOMPARE(choice->id(), 0);
}

void ElementChoiceTest::tellsWhatTheUserChooses()
{
    choice->choose(2);
    QTest::keyClick(box.get(), Qt::Key_Down);
    QCOMPARE(chosen->size(), 1);
    QCOMPARE(chosen->at(0).at(0).toInt(), 1);
    QCOMPARE(choice->id(), 1);
}

void ElementChoiceTest::saysNothingOfABoxThatLosesItsChoice()
{
    choice->choose(2);
    box->setCurrentIndex(-1);
    QCOMPARE(chosen->size(), 0);
    QCOMPARE(choice->id(), 0);
}

void ElementChoiceTest::keepsToItsElementWhenTheRowsAreReadAnew_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("nothing new") << "UPDATE Drug SET Name='beta' WHERE Id=1";
    QTest::newRow("another before it") << "INSERT INTO Drug VALUES(4, 'aardvark')";
    QTest::newRow("another name, another place") << "UPDATE Drug SET Name='zeta' WHERE Id=1";
    QTest::newRow("many before it")
        << "WITH RECURSIVE n(i) AS (SELECT 10 UNION SELECT i + 1 FROM "
           "n WHERE i < 700) INSERT INTO Drug SELECT i, 'a' || i FROM n";
}

void ElementChoiceTest::keepsToItsElementWhenTheRowsAreReadAnew()
{
    QFETCH(const QString, change);
    choice->choose(2);
    QTest::keyClick(box.get(), Qt::Key_Down); // at the user's hand as well as at the program's
    other->choose(3);
    chosen->clear();
    const QSignalSpy otherChosen(other, &ElementChoice::chosen);

    library->run(change);
    library->db()->updateModel(model.lock().get());
    QCOMPARE(choice->id(), 1);
    QCOMPARE(box->currentText(), library->value("SELECT Name FROM Drug WHERE Id=1").toString());
    QCOMPARE(otherBox->currentText(), "gamma");
    QCOMPARE(chosen->size(), 0);
    QCOMPARE(otherChosen.size(), 0);
}

void ElementChoiceTest::staysEmptyWhenTheRowsAreReadAnew()
{
    library->db()->updateModel(model.lock().get());
    QCOMPARE(box->currentIndex(), -1);
    QCOMPARE(chosen->size(), 0);
}

void ElementChoiceTest::letsGoOfAnElementThatIsGone()
{
    choice->choose(1);
    library->run("DELETE FROM Drug WHERE Id=1");
    library->db()->updateModel(model.lock().get());
    QCOMPARE(box->currentIndex(), -1);
    QCOMPARE(chosen->size(), 0);
}

void ElementChoiceTest::readsTheRowsAnewForAnotherElement()
{
    choice->choose(1);
    other->choose(3);
    library->run("INSERT INTO Drug VALUES(4, 'aardvark')");
    choice->update(library->db(), 4);
    QCOMPARE(box->currentText(), "aardvark");
    QCOMPARE(otherBox->currentText(), "gamma");
    QCOMPARE(chosen->size(), 0);
}

void ElementChoiceTest::keepsTheRowsAsLongAsABoxShowsThem()
{
    box.reset();
    QVERIFY(!model.expired());
    QCOMPARE(otherBox->count(), 3);
    otherBox.reset();
    QVERIFY(model.expired());
}

void ElementChoiceTest::showsTheWholeNameInItsToolTip()
{
    QCOMPARE(box->toolTip(), "");
    choice->choose(3);
    QCOMPARE(box->toolTip(), "<p>gamma</p>");
    library->run("UPDATE Drug SET Name='<b> of a & b' WHERE Id=3");
    library->db()->updateModel(model.lock().get());
    QCOMPARE(box->toolTip(), "<p>&lt;b&gt; of a &amp; b</p>");
    choice->choose(0);
    QCOMPARE(box->toolTip(), "");
}

QTEST_MAIN(ElementChoiceTest)
#include "ElementChoiceTest.moc"
