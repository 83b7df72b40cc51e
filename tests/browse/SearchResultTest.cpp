#include "SearchTab.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QtTest>

namespace Planaria {

/// What a user does with the rows that a search has found.
class SearchResultTest final : public QObject
{
    Q_OBJECT

private slots:
    // Commands
    void enablesWhatFitsTheSelection();
    void asksForEachCommandByTheType_data();
    void asksForEachCommandByTheType();
    void asksForNothingOfATypeThatThereIsNot();
    void asksForNothingWithoutARow();

    void searchesAgainAfterANewElement();
    void showsNothingAfterANewElementWhereNobodySearched();
    void staysWithTheElementThatWasEdited();
    void losesAnEditedElementThatFitsNoLonger();
    void editsOnADoubleClick();
    void staysWithTheElementThatWasCopied();
    void staysInTheColumnOfTheElementThatWasCopied();

    // Deletion
    void deletesAllSelectedElementsInOneTransaction();
    void deletesNothingUnlessToldTwice();
    void asksForTheElementOfEachSelectedRow();
    void goesOnBehindAnElementThatStays();

    // From a row to another type
    void offersTheOtherTypes_data();
    void offersTheOtherTypes();
    void opensNoMenuWithoutARow();
    void marksEachWayWithTheLens();
    void searchesTheOtherTypeForTheElement_data();
    void searchesTheOtherTypeForTheElement();
    void showsTheSpeciesOfAnExperiment();
    void goesOnFromWhatItFoundThere();
    void ignoresAWayToTheTypeItself();
};

namespace {

constexpr int drugs = 3;
constexpr int containing = 0;
constexpr int equalTo = 1;

const SearchQuestion allDrugs{drugs, 0, containing, ""};

const ModalAnswerer::Box deletion{
    "Warning",
    "This action will completely delete the selected elements from the database! Are you sure?",
    QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::Warning};

/// Adds drugs that no experiment has.
void addSpareDrugs(SearchTab *tab, const QStringList &names)
{
    for (const QString &name : names)
        tab->library.run(QStringLiteral("INSERT INTO Drug (Name) VALUES('%1')").arg(name));
}

} // namespace

// --- Commands ---

void SearchResultTest::enablesWhatFitsTheSelection()
{
    SearchTab tab;
    tab.ask(allDrugs);
    QCOMPARE(tab.enabledButtons(), QStringList({"New"}));
    tab.click("octanol");
    QCOMPARE(tab.enabledButtons(), QStringList({"New", "Copy", "Edit", "Delete"}));
    tab.click("heptanol", Qt::ControlModifier);
    QCOMPARE(tab.enabledButtons(), QStringList({"New", "Delete"}));
    tab.click("heptanol", Qt::ControlModifier);
    QCOMPARE(tab.enabledButtons(), QStringList({"New", "Copy", "Edit", "Delete"}));
    tab.click("octanol", Qt::ControlModifier);
    QCOMPARE(tab.enabledButtons(), QStringList({"New"}));
    tab.click("octanol");
    tab.press("Search");
    QCOMPARE(tab.enabledButtons(), QStringList({"New"}));
}

void SearchResultTest::asksForEachCommandByTheType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("element");
    int type = 0;
    for (const char *element :
         {"Experiment", "Manipulation", "Morphology", "Drug", "RNAi", "Species", "Publication"})
        QTest::newRow(element) << type++ << QString(element);
}

void SearchResultTest::asksForEachCommandByTheType()
{
    QFETCH(const int, type);
    QFETCH(const QString, element);
    SearchTab tab;
    tab.ask({type, 0, containing, ""});
    const QString name = tab.shown()[2];
    const QString call = QStringLiteral("%1(%2)").arg(element).arg(tab.idOf(name));
    QStringList expected{"new" + element};
    tab.press("&New");
    for (const char *command : {"Copy", "Edit", "Delete"}) {
        tab.click(name);
        if (command == QStringLiteral("Delete"))
            tab.answerer.expectBox(deletion, QMessageBox::Yes);
        tab.press(QLatin1Char('&') + QString(command));
        expected += QString(command).toLower() + call;
        QCOMPARE(tab.widget.focusWidget(), tab.view);
    }
    QCOMPARE(tab.takeSignals(), expected);
    QCOMPARE(tab.told.size(), 5); // a search first, and one after each command
    QCOMPARE(tab.answerer.problems(), QStringList());
}

void SearchResultTest::asksForNothingOfATypeThatThereIsNot()
{
    SearchTab tab;
    tab.type->setCurrentIndex(-1);
    tab.press("&New");
    QCOMPARE(tab.takeSignals(), QStringList());
}

void SearchResultTest::asksForNothingWithoutARow()
{
    SearchTab tab;
    tab.ask(allDrugs);
    for (const char *slot : {"copySelected", "editSelected", "deleteSelected"})
        QVERIFY(QMetaObject::invokeMethod(&tab.widget, slot));
    QCOMPARE(tab.takeSignals(), QStringList());
    QCOMPARE(tab.told.size(), 1);
    QCOMPARE(tab.answerer.problems(), QStringList());
}

void SearchResultTest::searchesAgainAfterANewElement()
{
    SearchTab tab;
    tab.ask({drugs, 0, containing, "octanol"});
    QObject::connect(&tab.widget, &SearchWidget::newDrug, &tab.widget,
                     [&tab] { addSpareDrugs(&tab, {"1-octanol"}); });
    tab.press("&New");
    QCOMPARE(tab.shown(), QStringList({"1-octanol", "octanol"}));
    QCOMPARE(tab.enabledButtons(), QStringList({"New"}));
    QCOMPARE(tab.lastTold(), "2 drug found/drugs found");
    QCOMPARE(tab.widget.focusWidget(), tab.view);
}

void SearchResultTest::showsNothingAfterANewElementWhereNobodySearched()
{
    SearchTab tab;
    tab.type->setCurrentIndex(drugs);
    tab.press("&New");
    QCOMPARE(tab.takeSignals(), QStringList({"newDrug"}));
    QCOMPARE(tab.shown(), QStringList());
    QCOMPARE(tab.told.size(), 0);
}

void SearchResultTest::staysWithTheElementThatWasEdited()
{
    SearchTab tab;
    tab.ask(allDrugs);
    QObject::connect(&tab.widget, &SearchWidget::editDrug, &tab.widget, [&tab](int id) {
        tab.library.run(QStringLiteral("UPDATE Drug SET Name = 'zinc' WHERE Id = %1").arg(id));
    });
    tab.click("heptanol");
    tab.press("&Edit");
    QCOMPARE(tab.current(), "zinc");
    QCOMPARE(tab.shown().last(), "zinc");
    QCOMPARE(tab.enabledButtons(), QStringList({"New", "Copy", "Edit", "Delete"}));
}

void SearchResultTest::losesAnEditedElementThatFitsNoLonger()
{
    SearchTab tab;
    tab.ask({drugs, 0, containing, "anol"});
    QObject::connect(&tab.widget, &SearchWidget::editDrug, &tab.widget, [&tab](int id) {
        tab.library.run(QStringLiteral("UPDATE Drug SET Name = 'zinc' WHERE Id = %1").arg(id));
    });
    tab.click("heptanol");
    tab.press("&Edit");
    QCOMPARE(tab.shown(), QStringList({"hexanol", "octanol"}));
    QCOMPARE(tab.enabledButtons(), QStringList({"New"}));
}

void SearchResultTest::editsOnADoubleClick()
{
    SearchTab tab;
    tab.ask(allDrugs);
    const int id = tab.idOf("nicotine");
    tab.doubleClick("nicotine");
    QCOMPARE(tab.takeSignals(), QStringList({QStringLiteral("editDrug(%1)").arg(id)}));
    QCOMPARE(tab.current(), "nicotine");
}

void SearchResultTest::staysWithTheElementThatWasCopied()
{
    SearchTab tab;
    tab.ask(allDrugs);
    QObject::connect(&tab.widget, &SearchWidget::copyDrug, &tab.widget,
                     [&tab] { addSpareDrugs(&tab, {"a copy"}); });
    tab.click("heptanol");
    tab.press("&Copy");
    QCOMPARE(tab.shown().first(), "a copy");
    QCOMPARE(tab.current(), "heptanol");
    QCOMPARE(tab.enabledButtons(), QStringList({"New", "Copy", "Edit", "Delete"}));
    QCOMPARE(tab.widget.focusWidget(), tab.view);
}

void SearchResultTest::staysInTheColumnOfTheElementThatWasCopied()
{
    constexpr int experimentName = 1;
    constexpr int names = 2;
    SearchTab tab;
    tab.ask({drugs, experimentName, containing, ""});
    const int row = static_cast<int>(tab.shown().indexOf("octanol"));
    const QModelIndex index = tab.view->model()->index(row, names);
    QTest::mouseClick(tab.view->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tab.view->visualRect(index).center());
    tab.press("&Copy");
    QCOMPARE(tab.current(), "octanol");
    QCOMPARE(tab.view->currentIndex().column(), names);
}

// --- Deletion ---

void SearchResultTest::deletesAllSelectedElementsInOneTransaction()
{
    SearchTab tab;
    addSpareDrugs(&tab, {"spare 1", "spare 2", "spare 3"});
    tab.ask({drugs, 0, containing, "spare"});
    int inTransaction = 0;
    QObject::connect(&tab.widget, &SearchWidget::deleteDrug, &tab.widget,
                     [&tab, &inTransaction](int id) {
                         inTransaction += tab.library.db()->inTransaction() ? 1 : 0;
                         QVERIFY(tab.library.db()->removeRow("Drug", id));
                         tab.widget.clear(); // the rows may go at once
                     });
    const int first = tab.idOf("spare 1");
    const int third = tab.idOf("spare 3");
    tab.click("spare 1");
    tab.click("spare 3", Qt::ControlModifier);
    tab.answerer.expectBox(deletion, QMessageBox::Yes);
    tab.press("&Delete");
    QCOMPARE(tab.takeSignals(), QStringList({QStringLiteral("deleteDrug(%1)").arg(first),
                                             QStringLiteral("deleteDrug(%1)").arg(third)}));
    QCOMPARE(inTransaction, 2);
    QVERIFY(!tab.library.db()->inTransaction());
    QCOMPARE(tab.shown(), QStringList({"spare 2"}));
    QCOMPARE(tab.lastTold(), "1 drug found/drugs found");
    QCOMPARE(tab.enabledButtons(), QStringList({"New"}));
    QCOMPARE(tab.widget.focusWidget(), tab.view);
    QCOMPARE(tab.answerer.problems(), QStringList());
    QCOMPARE(tab.library.brokenReferences(), QStringList());
}

void SearchResultTest::deletesNothingUnlessToldTwice()
{
    SearchTab tab;
    tab.ask(allDrugs);
    tab.click("octanol");
    tab.answerer.expectBox(deletion, QMessageBox::Cancel);
    tab.press("&Delete");
    QCOMPARE(tab.takeSignals(), QStringList());
    QCOMPARE(tab.told.size(), 1);
    QCOMPARE(tab.current(), "octanol");
    QCOMPARE(tab.answerer.problems(), QStringList());
}

void SearchResultTest::asksForTheElementOfEachSelectedRow()
{
    constexpr int experimentName = 1;
    SearchTab tab;
    tab.ask({1, experimentName, containing, ""});
    const qsizetype rows = tab.shown().count("Postpharyngeal cut (14)");
    QVERIFY(rows > 1);
    const int id = tab.idOf("Postpharyngeal cut (14)");
    tab.view->selectAll();
    tab.answerer.expectBox(deletion, QMessageBox::Yes);
    tab.press("&Delete");
    QCOMPARE(tab.takeSignals().count(QStringLiteral("deleteManipulation(%1)").arg(id)), rows);
}

void SearchResultTest::goesOnBehindAnElementThatStays()
{
    SearchTab tab;
    addSpareDrugs(&tab, {"spare"});
    tab.ask(allDrugs);
    QObject::connect(&tab.widget, &SearchWidget::deleteDrug, &tab.widget, [&tab](int id) {
        if (!tab.library.db()->exist("ExperimentDrug", "Drug", id))
            QVERIFY(tab.library.db()->removeRow("Drug", id));
    });
    tab.click("octanol");
    tab.click("spare", Qt::ControlModifier);
    tab.answerer.expectBox(deletion, QMessageBox::Yes);
    tab.press("&Delete");
    QVERIFY(tab.shown().contains("octanol"));
    QVERIFY(!tab.shown().contains("spare"));
    QCOMPARE(tab.answerer.problems(), QStringList());
    QCOMPARE(tab.library.brokenReferences(), QStringList());
}

// --- From a row to another type ---

namespace {

/// The entries of the menu, by the type to which they lead.
const QStringList ways{"Search experiments", "Search manipulations", "Search morphologies",
                       "Search drugs",       "Search RNAi",          "Search species",
                       "Search publications"};

void showFirstOf(SearchTab *tab, int type)
{
    tab->ask({type, 0, containing, ""});
    tab->click(tab->shown().first());
    tab->callMenu();
}

} // namespace

void SearchResultTest::offersTheOtherTypes_data()
{
    QTest::addColumn<int>("type");
    for (int type = 0; type < ways.size(); ++type)
        QTest::newRow(qUtf8Printable(SearchStatement::typeLabels()[type])) << type;
}

void SearchResultTest::offersTheOtherTypes()
{
    QFETCH(const int, type);
    SearchTab tab;
    QCursor::setPos(40, 30);
    showFirstOf(&tab, type);
    QVERIFY(tab.menu->isVisible());
    QCOMPARE(tab.menu->pos(), QCursor::pos());
    QStringList entries;
    for (const QAction *entry : tab.menu->actions())
        entries += entry->text();
    QStringList others = ways;
    others.removeAt(type);
    QCOMPARE(entries, others);
    tab.menu->close();
}

void SearchResultTest::opensNoMenuWithoutARow()
{
    SearchTab tab;
    tab.callMenu();
    QVERIFY(!tab.menu->isVisible());
    tab.ask(allDrugs);
    tab.callMenu();
    QVERIFY(!tab.menu->isVisible());
}

void SearchResultTest::marksEachWayWithTheLens()
{
    SearchTab tab;
    showFirstOf(&tab, 0);
    const QImage lens = QIcon(":/Images/famfamfam_silk_icons/find.png").pixmap(16).toImage();
    QVERIFY(!lens.isNull());
    for (const QAction *entry : tab.menu->actions())
        QCOMPARE(entry->icon().pixmap(16).toImage(), lens);
    tab.menu->close();
}

void SearchResultTest::searchesTheOtherTypeForTheElement_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("field");
    const auto add = [](int from, const QStringList &fields) {
        for (int to = 0; to < fields.size(); ++to)
            if (!fields[to].isEmpty())
                QTest::addRow("%s of type %d", qUtf8Printable(ways[to]), from)
                    << from << to << fields[to];
    };
    add(0, {"", "Experiment name", "Experiment name", "Experiment name", "Experiment name",
            "Experiment name", "Experiment name"});
    add(1, {"Manipulation name", "", "Manipulation name", "Manipulation name", "Manipulation name",
            "Manipulation name", "Manipulation name"});
    add(2, {"Results morphology name", "Results morphology name", "", "Morphology name",
            "Morphology name", "Morphology name", "Morphology name"});
    add(3, {"Drug name", "Drug name", "Drug name", "", "Drug name", "Drug name", "Drug name"});
    add(4, {"RNAi name", "RNAi name", "RNAi name", "RNAi name", "", "RNAi name", "RNAi name"});
    add(5, {"Species name", "Species name", "Species name", "Species name", "Species name", "",
            "Species name"});
    add(6, {"Publication title", "Publication title", "Publication title", "Publication title",
            "Publication title", "Publication title", ""});
}

void SearchResultTest::searchesTheOtherTypeForTheElement()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    QFETCH(const QString, field);
    SearchTab tab;
    showFirstOf(&tab, from);
    const QString name = tab.current();
    tab.choose(ways[to]);
    QCOMPARE(tab.question(), QStringLiteral("%1 with %2 equal to %3")
                                 .arg(SearchStatement::typeLabels()[to], field, name));
    QCOMPARE(tab.told.size(), 2);
    QCOMPARE(tab.told.last()[2].toString(), SearchStatement::plural(to) + " found");
    QCOMPARE(tab.answerer.problems(), QStringList());
}

void SearchResultTest::showsTheSpeciesOfAnExperiment()
{
    SearchTab tab;
    const QString experiment = "Series C 1984, head graft";
    tab.ask({0, 0, equalTo, experiment});
    tab.click(experiment);
    tab.callMenu();
    tab.choose("Search species");
    QCOMPARE(tab.shown(),
             QStringList({tab.library
                              .value("SELECT Name FROM Species WHERE Id = (SELECT Species FROM "
                                     "Experiment WHERE Name = 'Series C 1984, head graft')")
                              .toString()}));
}

void SearchResultTest::goesOnFromWhatItFoundThere()
{
    SearchTab tab;
    tab.ask({drugs, 0, equalTo, "octanol"});
    tab.click("octanol");
    tab.callMenu();
    tab.choose("Search experiments");
    const QStringList experiments = tab.shown();
    QVERIFY(!experiments.isEmpty());
    tab.click(experiments.first());
    tab.callMenu();
    tab.choose("Search drugs");
    QVERIFY(tab.shown().contains("octanol"));
    tab.callMenu(); // where no row is current yet
    QVERIFY(!tab.menu->isVisible());
}

void SearchResultTest::ignoresAWayToTheTypeItself()
{
    SearchTab tab;
    tab.ask(allDrugs);
    tab.click("octanol");
    QVERIFY(QMetaObject::invokeMethod(&tab.widget, "searchDrugsFromResult"));
    QCOMPARE(tab.question(), "Drugs with Name containing ");
    QCOMPARE(tab.told.size(), 1);
    tab.type->setCurrentIndex(-1);
    QVERIFY(QMetaObject::invokeMethod(&tab.widget, "searchDrugsFromResult"));
    QCOMPARE(tab.told.size(), 1);
}

} // namespace Planaria

QTEST_MAIN(Planaria::SearchResultTest)
#include "SearchResultTest.moc"
