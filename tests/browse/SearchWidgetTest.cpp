#include "SearchTab.h"
#include "support/TestData.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>
#include <QtTest>

namespace Planaria {

/// The search tab: its controls, when it searches, and what it shows of the answer.
class SearchWidgetTest final : public QObject
{
    Q_OBJECT

private slots:
    // Controls
    void standsInThreeRows();
    void offersTheFieldsOfTheTypeThatIsChosen();
    void startsWithTheNamesOfExperiments();
    void namesItsControls();
    void leadsTheKeyboardFromTheTypeToTheButtons();
    void keepsOperatorAndValueWhenTheTypeChanges();
    void offersNoFieldsOfATypeThatThereIsNot();

    // Searching
    void showsTheWorkedAnswers_data();
    void showsTheWorkedAnswers();
    void findsAllThatTakesPartForAnEmptyValue();
    void searchesTwiceOnReturn_data();
    void searchesTwiceOnReturn();
    void searchesOnReturnFromTheTable();
    void leavesOtherKeysToTheirOwn();
    void sortsByTheNameAndHidesTheId();
    void setsItsControlsForASearchFromOutside();
    void showsNothingOfARefusedStatement();
    void saysThatItDoesNotKnowAField();
    void saysThatItDoesNotKnowAType();
    void keepsItsQuestionWhenItDoesNotKnowTheNext();
    void bindsTheValueForAQuestionMarkInAFoundName();

    // Counting
    void countsWhatItFound_data();
    void countsWhatItFound();

    // Updates
    void forgetsTheQuestionWithTheType();
    void staysSilentAsLongAsNobodySearched();
    void searchesAgainByWhatTheControlsHold();
    void selectsAnElementById();
    void letsGoOfTheRowsButNotOfTheQuestion();
    void searchesInTheFileThatWasOpenedNext();
};

namespace {

constexpr int drugs = 3;
constexpr int containing = 0;
constexpr int equalTo = 1;
constexpr int lessThan = 2;

const SearchQuestion allDrugs{drugs, 0, containing, ""};

} // namespace

// --- Controls ---

void SearchWidgetTest::standsInThreeRows()
{
    const SearchTab tab;
    const auto *column = qobject_cast<QVBoxLayout *>(tab.widget.layout());
    QVERIFY(column);
    QCOMPARE(column->count(), 3);

    const auto *row = qobject_cast<QHBoxLayout *>(column->itemAt(0)->layout());
    QVERIFY(row);
    QStringList items;
    for (int i = 0; i < row->count(); ++i) {
        const QWidget *item = row->itemAt(i)->widget();
        items += QStringLiteral("%1 %2").arg(item->metaObject()->className()).arg(row->stretch(i));
    }
    QCOMPARE(items, QStringList({"QComboBox 0", "QLabel 0", "QComboBox 0", "QComboBox 0",
                                 "QLineEdit 1", "QPushButton 0"}));
    QCOMPARE(qobject_cast<QLabel *>(row->itemAt(1)->widget())->text(), "with");
    QVERIFY(tab.button("Search")->isDefault());

    QCOMPARE(column->itemAt(1)->widget(), tab.view);
    const auto *box = qobject_cast<QDialogButtonBox *>(column->itemAt(2)->widget());
    QVERIFY(box);
    for (const char *text : {"&New", "&Copy", "&Edit", "&Delete"})
        QCOMPARE(box->buttonRole(tab.button(text)), QDialogButtonBox::ActionRole);
    QCOMPARE(tab.enabledButtons(), QStringList({"New"}));
}

void SearchWidgetTest::offersTheFieldsOfTheTypeThatIsChosen()
{
    const SearchTab tab;
    QCOMPARE(tab.type->count(), 7);
    for (int type = 6; type >= 0; --type) {
        tab.type->setCurrentIndex(type);
        QCOMPARE(tab.type->currentText(), SearchStatement::typeLabels()[type]);
        QCOMPARE(tab.fields(), SearchStatement::fieldLabels(type));
        QCOMPARE(tab.field->currentIndex(), 0);
    }
}

void SearchWidgetTest::startsWithTheNamesOfExperiments()
{
    const SearchTab tab;
    QCOMPARE(tab.question(), "Experiments with Name containing ");
    QCOMPARE(tab.view->model()->rowCount(), 0);
    QCOMPARE(tab.told.size(), 0);
}

void SearchWidgetTest::namesItsControls()
{
    const SearchTab tab;
    QStringList names;
    for (const QWidget *control :
         {static_cast<QWidget *>(tab.type), static_cast<QWidget *>(tab.field),
          static_cast<QWidget *>(tab.op), static_cast<QWidget *>(tab.value),
          static_cast<QWidget *>(tab.view)})
        names += control->accessibleName();
    QCOMPARE(names,
             QStringList({"Type of element", "Field", "Operator", "Value", "Elements found"}));
}

void SearchWidgetTest::leadsTheKeyboardFromTheTypeToTheButtons()
{
    const SearchTab tab;
    const QList<const QWidget *> order{tab.type,
                                       tab.field,
                                       tab.op,
                                       tab.value,
                                       tab.button("Search"),
                                       tab.view,
                                       tab.button("&New"),
                                       tab.button("&Copy"),
                                       tab.button("&Edit"),
                                       tab.button("&Delete")};
    QList<const QWidget *> found;
    const QWidget *next = &tab.widget;
    while ((next = next->nextInFocusChain()) != &tab.widget)
        if (order.contains(next))
            found += next;
    QCOMPARE(found, order);
}

void SearchWidgetTest::keepsOperatorAndValueWhenTheTypeChanges()
{
    const SearchTab tab;
    tab.op->setCurrentIndex(lessThan);
    tab.value->setText("abc");
    tab.type->setCurrentIndex(drugs);
    QCOMPARE(tab.question(), "Drugs with Name less than abc");
}

void SearchWidgetTest::offersNoFieldsOfATypeThatThereIsNot()
{
    const SearchTab tab;
    tab.type->setCurrentIndex(-1);
    QCOMPARE(tab.fields(), QStringList());
}

// --- Searching ---

namespace {

QString cells(const QJsonArray &row)
{
    QStringList texts;
    for (const auto &cell : row)
        texts += cell.toVariant().toString();
    return texts.join(" | ");
}

} // namespace

void SearchWidgetTest::showsTheWorkedAnswers_data()
{
    QTest::addColumn<QJsonObject>("worked");
    for (const auto &worked : QJsonDocument::fromJson(readTestData("searches.json")).array()) {
        const QJsonObject object = worked.toObject();
        QTest::addRow("%s %s", qUtf8Printable(object["says"].toString()),
                      qUtf8Printable(object["question"].toArray()[3].toString()))
            << object;
    }
}

void SearchWidgetTest::showsTheWorkedAnswers()
{
    QFETCH(const QJsonObject, worked);
    SearchTab tab;
    const QJsonArray asked = worked["question"].toArray();
    tab.ask({asked[0].toInt(), asked[1].toInt(), asked[2].toInt(), asked[3].toString()});
    QStringList rows;
    for (const auto &row : worked["rows"].toArray())
        rows += cells(row.toArray());
    rows.sort();
    QCOMPARE(tab.rows(), rows);
    QCOMPARE(tab.told.size(), 1);
    QCOMPARE(tab.told.first().first(), QVariant(rows.size()));
    QCOMPARE(tab.corrupted.size(), 0);
}

void SearchWidgetTest::findsAllThatTakesPartForAnEmptyValue()
{
    SearchTab tab;
    tab.ask(allDrugs);
    QCOMPARE(tab.shown().size(), tab.library.count("Drug"));
    constexpr int experimentName = 1;
    tab.ask({drugs, experimentName, containing, ""});
    QCOMPARE(tab.shown().size(),
             tab.library.value("SELECT COUNT(DISTINCT Drug) FROM ExperimentDrug").toInt());
}

void SearchWidgetTest::searchesTwiceOnReturn_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter of the number block") << Qt::Key_Enter;
}

void SearchWidgetTest::searchesTwiceOnReturn()
{
    QFETCH(const Qt::Key, key);
    SearchTab tab;
    tab.type->setCurrentIndex(drugs);
    QTest::keyClicks(tab.value, "octanol");
    QTest::keyClick(tab.value, key);
    QCOMPARE(tab.told.size(), 1);
    QCOMPARE(tab.shown(), QStringList({"octanol"}));
    QVERIFY(tab.button("Search")->isDown());
    QTRY_COMPARE(tab.told.size(), 2);
    QCOMPARE(tab.told[0], tab.told[1]);
    QVERIFY(!tab.button("Search")->isDown());
    QCOMPARE(tab.shown(), QStringList({"octanol"}));
}

void SearchWidgetTest::searchesOnReturnFromTheTable()
{
    SearchTab tab;
    tab.ask(allDrugs);
    tab.click("octanol");
    QTest::keyClick(tab.view, Qt::Key_Return);
    QCOMPARE(tab.told.size(), 2);
}

void SearchWidgetTest::leavesOtherKeysToTheirOwn()
{
    SearchTab tab;
    QTest::keyClick(tab.value, Qt::Key_A);
    QCOMPARE(tab.value->text(), "a");
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&tab.widget, &escape);
    QVERIFY(!escape.isAccepted());
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&tab.widget, &enter);
    QVERIFY(enter.isAccepted());
    QCOMPARE(tab.told.size(), 1);
}

void SearchWidgetTest::sortsByTheNameAndHidesTheId()
{
    SearchTab tab;
    tab.ask({2, 0, containing, "collapsed"});
    QCOMPARE(tab.shown(),
             QStringList({"Collapsed head", "Collapsed head 1", "Collapsed head 2",
                          "Collapsed head (variant 3)", "Collapsed head (variant 13)"}));
    QVERIFY(tab.view->isColumnHidden(0));
    QVERIFY(!tab.view->isColumnHidden(1));
}

void SearchWidgetTest::setsItsControlsForASearchFromOutside()
{
    SearchTab tab;
    tab.widget.search(4, 4, equalTo, "octanol");
    QCOMPARE(tab.question(), "RNAi with Drug name equal to octanol");
    QCOMPARE(tab.told.size(), 1);
    tab.widget.search(drugs, 0, containing, "hept");
    QCOMPARE(tab.shown(), QStringList({"heptanol"}));
    tab.widget.search(drugs, 0, lessThan, "colchicine");
    QCOMPARE(tab.question(), "Drugs with Name less than colchicine");
    QCOMPARE(tab.shown(), QStringList({"chloretone", "cobalt chloride", "SCH-28080"}));
}

void SearchWidgetTest::showsNothingOfARefusedStatement()
{
    SearchTab tab;
    tab.ask({drugs, 0, lessThan, "inf"}); // a number for Qt, but none for SQLite
    QCOMPARE(tab.shown(), QStringList());
    QCOMPARE(tab.lastTold(), "0 drug found/drugs found");
    QCOMPARE(tab.corrupted.size(), 0);
}

namespace {

const ModalAnswerer::Box notImplemented{
    "Not implemented", "Sorry, this type of search is not implemented yet.", QMessageBox::Cancel,
    QMessageBox::Cancel, QMessageBox::Information};

} // namespace

void SearchWidgetTest::saysThatItDoesNotKnowAField()
{
    SearchTab tab;
    tab.answerer.expectBox(notImplemented, QMessageBox::Cancel);
    tab.widget.search(drugs, 99, equalTo, "octanol");
    QCOMPARE(tab.answerer.problems(), QStringList());
    QCOMPARE(tab.field->currentIndex(), -1);
    QCOMPARE(tab.told.size(), 0);
}

void SearchWidgetTest::saysThatItDoesNotKnowAType()
{
    SearchTab tab;
    tab.answerer.expectBox(notImplemented, QMessageBox::Cancel);
    tab.widget.search(7, 0, equalTo, "octanol");
    QCOMPARE(tab.answerer.problems(), QStringList());
    QCOMPARE(tab.fields(), QStringList());
    QCOMPARE(tab.told.size(), 0);
}

void SearchWidgetTest::keepsItsQuestionWhenItDoesNotKnowTheNext()
{
    SearchTab tab;
    tab.ask(allDrugs);
    tab.answerer.expectBox(notImplemented, QMessageBox::Cancel);
    tab.widget.search(drugs, -1, equalTo, "octanol");
    QCOMPARE(tab.shown(), QStringList());
    QCOMPARE(tab.told.size(), 1);

    tab.field->setCurrentIndex(0);
    tab.widget.updateModel(0);
    QCOMPARE(tab.shown(), QStringList({"octanol"}));
    QCOMPARE(tab.answerer.problems(), QStringList());
}

void SearchWidgetTest::bindsTheValueForAQuestionMarkInAFoundName()
{
    constexpr int manipulationName = 11;
    SearchTab tab;
    tab.ask({2, manipulationName, containing, "Double cut"});
    const qsizetype found = tab.shown().size();
    QVERIFY(found > 0);
    tab.library.run("UPDATE Manipulation SET Name = 'Double cut?' WHERE Name = 'Double cut'");
    tab.press("Search");
    // SQLite sees no placeholder in the name, and refuses a value for nothing.
    QCOMPARE(tab.shown(), QStringList());
    QCOMPARE(tab.lastTold(), "0 morphology found/morphologies found");
}

// --- Counting ---

void SearchWidgetTest::countsWhatItFound_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("words");
    const auto add = [](const char *name, int type, const char *one, const char *words) {
        QTest::newRow(name) << type << QString(one) << QString(words);
    };
    add("experiments", 0, "Series B 1938, tail graft", "experiment found/experiments found");
    add("manipulations", 1, "Head graft", "manipulation found/manipulations found");
    add("morphologies", 2, "Cyclops", "morphology found/morphologies found");
    add("drugs", 3, "octanol", "drug found/drugs found");
    add("RNAi", 4, "notum", "RNAi found/RNAi found");
    add("species", 5, "Dugesia sicula", "species found/species found");
    add("publications", 6, "Pbx during polarity", "publication found/publications found");
}

void SearchWidgetTest::countsWhatItFound()
{
    QFETCH(const int, type);
    QFETCH(const QString, one);
    QFETCH(const QString, words);
    SearchTab tab;
    tab.ask({type, 0, equalTo, one});
    QCOMPARE(tab.lastTold(), "1 " + words);
    tab.ask({type, 0, equalTo, "nothing of this name"});
    QCOMPARE(tab.lastTold(), "0 " + words);
    tab.ask({type, 0, containing, ""});
    QCOMPARE(tab.lastTold(), QString::number(tab.shown().size()) + u' ' + words);
    QCOMPARE(tab.told.size(), 3);
}

// --- Updates ---

void SearchWidgetTest::forgetsTheQuestionWithTheType()
{
    SearchTab tab;
    tab.ask(allDrugs);
    tab.click("octanol");
    QCOMPARE(tab.enabledButtons(), QStringList({"New", "Copy", "Edit", "Delete"}));
    tab.type->setCurrentIndex(4);
    QCOMPARE(tab.shown(), QStringList());
    QCOMPARE(tab.enabledButtons(), QStringList({"New"}));
    tab.widget.updateModel(0);
    QCOMPARE(tab.shown(), QStringList());
    QCOMPARE(tab.told.size(), 1);
    tab.press("Search");
    QCOMPARE(tab.shown().size(), tab.library.count("RNAi"));
}

void SearchWidgetTest::staysSilentAsLongAsNobodySearched()
{
    SearchTab tab;
    tab.widget.updateModel(1);
    QCOMPARE(tab.shown(), QStringList());
    QCOMPARE(tab.told.size(), 0);
}

void SearchWidgetTest::searchesAgainByWhatTheControlsHold()
{
    SearchTab tab;
    tab.ask(allDrugs);
    tab.value->setText("octanol");
    QCOMPARE(tab.shown().size(), tab.library.count("Drug"));
    tab.widget.updateModel(0);
    QCOMPARE(tab.shown(), QStringList({"octanol"}));
    QCOMPARE(tab.current(), QString());
}

void SearchWidgetTest::selectsAnElementById()
{
    SearchTab tab;
    tab.widget.selectId(1); // without rows
    tab.ask(allDrugs);
    tab.widget.selectId(tab.idOf("octanol"));
    QCOMPARE(tab.current(), "octanol");
    QCOMPARE(tab.enabledButtons(), QStringList({"New", "Copy", "Edit", "Delete"}));
    tab.widget.selectId(0);
    tab.widget.selectId(999);
    QCOMPARE(tab.current(), "octanol");
    tab.widget.updateModel(tab.idOf("heptanol"));
    QCOMPARE(tab.current(), "heptanol");
}

void SearchWidgetTest::letsGoOfTheRowsButNotOfTheQuestion()
{
    SearchTab tab;
    tab.ask({drugs, 0, equalTo, "octanol"});
    tab.click("octanol");
    tab.widget.clear();
    tab.widget.clear();
    QCOMPARE(tab.shown(), QStringList());
    QCOMPARE(tab.enabledButtons(), QStringList({"New"}));
    QCOMPARE(tab.told.size(), 1);
    tab.widget.updateModel(0);
    QCOMPARE(tab.shown(), QStringList({"octanol"}));
}

void SearchWidgetTest::searchesInTheFileThatWasOpenedNext()
{
    SearchTab tab;
    tab.ask({drugs, 0, equalTo, "octanol"});
    tab.widget.clear();
    const TemporaryLibrary other;
    QCOMPARE(tab.library.db()->connect(other.fileName(), false), DB::Opened);
    tab.widget.updateModel(0);
    QCOMPARE(tab.lastTold(), "0 drug found/drugs found");
}

} // namespace Planaria

QTEST_MAIN(Planaria::SearchWidgetTest)
#include "SearchWidgetTest.moc"
