#include "browse/ElementTabs.h"

#include "browse/NaturalStringCompare.h"
#include "support/ModalAnswerer.h"
#include "support/ProgressWatcher.h"
#include "support/StatementLog.h"
#include "support/TestData.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVBoxLayout>
#include <QtTest>

namespace Planaria {

/// What the seven tabs of elements have in common, and what tells them apart.
class ElementTabsTest final : public QObject
{
    Q_OBJECT

private slots:
    // What they consist of
    void haveTableAndButtonsBelow_data();
    void haveTableAndButtonsBelow();
    void areReachedByKeys();
    void declareTheirSignals_data();
    void declareTheirSignals();

    // Rows
    void stayEmptyUntilTheyAreUpdated_data();
    void stayEmptyUntilTheyAreUpdated();
    void showAllRowsSortedByName_data();
    void showAllRowsSortedByName();
    void showTheirColumns_data();
    void showTheirColumns();
    void showWhatAnExperimentRefersTo();
    void tellTheirWordsWithTheNumberOfRows_data();
    void tellTheirWordsWithTheNumberOfRows();
    void tellOfNoRows_data();
    void tellOfNoRows();
    void tellOfNoRowsOfATableThatIsMissing_data();
    void tellOfNoRowsOfATableThatIsMissing();
    void readTheirTableAnewWithOneStatement();
    void showWhatAnotherHasChanged_data();
    void showWhatAnotherHasChanged();
    void selectTheRowOfAnId_data();
    void selectTheRowOfAnId();
    void selectNothingForAnIdThatIsGone();
    void keepTheChosenOrderWhenTheyAreReadAnew();
    void letGoOfTheirRows_data();
    void letGoOfTheirRows();
    void showTheirRowsAgainAfterThat_data();
    void showTheirRowsAgainAfterThat();
    void takeTheirRowsAlongAtTheirEnd();

    // Selection
    void enableTheButtonsThatSuitTheSelection_data();
    void enableTheButtonsThatSuitTheSelection();
    void enableNoButtonsAfterAnUpdate();
    void sortByTheColumnWhoseHeaderIsClicked();

    // Deletion
    void refuseWhatIsInUse_data();
    void refuseWhatIsInUse();
    void askBeforeTheyDelete_data();
    void askBeforeTheyDelete();
    void deleteWhatIsFreeOfASelection_data();
    void deleteWhatIsFreeOfASelection();
    void deleteExperimentsWithNoQuestionOfUse();
    void deleteInOneTransaction();
    void askNothingWithoutASelection();
    void keepTheProgressAwayFromTheBoxOfAnElement();
    void deleteNothingMoreAfterAnAbort_data();
    void deleteNothingMoreAfterAnAbort();
    void tellOnceOfADeletionThatFails_data();
    void tellOnceOfADeletionThatFails();
    void tellOfAnElementThatTheFileKeeps();

    // Searches
    void offerTheSearchesForOtherTypes_data();
    void offerTheSearchesForOtherTypes();
    void searchForTheCurrentElement_data();
    void searchForTheCurrentElement();
    void openNoMenuWithoutACurrentRow_data();
    void openNoMenuWithoutACurrentRow();
    void openTheMenuAtTheCursor();
    void openTheMenuByItsKey();
};

namespace {

QMenu *popup()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

QStringList textsOf(const QWidget *menu)
{
    QStringList texts;
    for (const QAction *entry : menu->actions())
        texts += entry->text();
    return texts;
}

ModalAnswerer::Box deletionQuestion(const ElementTab &tab)
{
    return {"Warning", tab.type.deletionQuestion, QMessageBox::Yes | QMessageBox::Cancel,
            QMessageBox::Cancel, QMessageBox::Warning};
}

/// The worked messages of the elements in use, by name, and the title of their boxes.
struct Refusals
{
    explicit Refusals(int type)
    {
        static const QStringList keys = {"experiments", "manipulations", "morphologies", "drugs",
                                         "rnai",        "species",       "publications"};
        const QJsonObject worked =
            QJsonDocument::fromJson(readTestData("in_use.json")).object()[keys[type]].toObject();
        title = worked["title"].toString();
        texts = worked["refused"].toObject();
    }

    [[nodiscard]] ModalAnswerer::Box box(const QString &name) const
    {
        return {title, texts[name].toString(), QMessageBox::Cancel, QMessageBox::Cancel,
                QMessageBox::Critical};
    }

    QString title;
    QJsonObject texts;
};

/// Up to three names of elements in use, and as many of others.
QStringList fewOfEach(const QStringList &names, const Refusals &refusals)
{
    QStringList few;
    int used = 0;
    int free = 0;
    for (const QString &name : names) {
        if ((refusals.texts.contains(name) ? used : free)++ < 3)
            few += name;
    }
    return few;
}

/// Plans to delete what is selected, and the boxes for what is in use; gives the names that stay.
QStringList planDeletion(const ElementTab &tab, const Refusals &refusals, ModalAnswerer *answerer,
                         std::chrono::milliseconds thinking = {})
{
    QStringList kept = tab.shown();
    answerer->expectBox(deletionQuestion(tab), QMessageBox::Yes);
    const QStringList selected = tab.selected();
    for (const QString &name : selected) {
        if (refusals.texts.contains(name))
            answerer->expectBox(refusals.box(name), QMessageBox::Cancel, thinking);
        else
            kept.removeOne(name);
    }
    return kept;
}

void expectDeletionFailure(ModalAnswerer *answerer)
{
    answerer->expectBox({"Cannot delete elements",
                         "The file does not let go of all of the selected elements. Nothing was "
                         "deleted.",
                         QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Critical},
                        QMessageBox::Ok);
}

constexpr int experiments = 0;
constexpr int morphologies = 2;
constexpr int drugs = 3;

std::unique_ptr<TemporaryLibrary> emptyLibrary()
{
    return std::make_unique<TemporaryLibrary>();
}

/// Of `drug 1` and so on.
std::unique_ptr<TemporaryLibrary> drugLibrary(int count)
{
    auto library = emptyLibrary();
    for (int i = 1; i <= count; ++i)
        library->run(QStringLiteral("INSERT INTO Drug VALUES(%1, 'drug %1')").arg(i));
    return library;
}

} // namespace

// --- What they consist of ---

void ElementTabsTest::haveTableAndButtonsBelow_data()
{
    addTabTypes();
}

void ElementTabsTest::haveTableAndButtonsBelow()
{
    QFETCH(const int, type);
    const ElementTab tab(type);
    const auto *layout = qobject_cast<QVBoxLayout *>(tab.widget()->layout());
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget(), static_cast<QWidget *>(tab.view()));
    const auto *box = qobject_cast<QDialogButtonBox *>(layout->itemAt(1)->widget());
    QStringList texts;
    for (QAbstractButton *button : box->buttons()) {
        texts += button->text();
        QCOMPARE(box->buttonRole(button), QDialogButtonBox::ActionRole);
    }
    QCOMPARE(texts, QStringList({"&New", "&Copy", "&Edit", "&Delete"}));
    QCOMPARE(tab.enabledButtons(), QStringList());
    QVERIFY(tab.button("New")->isEnabled());
    QVERIFY(!tab.view()->accessibleName().isEmpty());
}

void ElementTabsTest::areReachedByKeys()
{
    ElementTab tab(drugs);
    tab.update();
    tab.select({"octanol"});
    tab.view()->setFocus();
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(tab.button("New")));
}

void ElementTabsTest::declareTheirSignals_data()
{
    addTabTypes();
}

void ElementTabsTest::declareTheirSignals()
{
    QFETCH(const int, type);
    const ElementTab tab(type);
    const QMetaObject *meta = tab.widget()->metaObject();
    for (const char *signature :
         {"databaseCorrupted()", "modelChanged()", "search(int,int,int,QString)",
          "nEleChanged(int,QString,QString)"})
        QVERIFY2(meta->indexOfSignal(signature) >= 0, signature);
    for (const char *command : {"new%1()", "copy%1(int)", "edit%1(int)", "delete%1(int)"}) {
        const QByteArray signature = QString(command).arg(tab.type.element).toLatin1();
        QVERIFY2(meta->indexOfSlot(signature) >= 0, signature);
    }
}

// --- Rows ---

void ElementTabsTest::stayEmptyUntilTheyAreUpdated_data()
{
    addTabTypes();
}

void ElementTabsTest::stayEmptyUntilTheyAreUpdated()
{
    QFETCH(const int, type);
    const ElementTab tab(type);
    QCOMPARE(tab.view()->model()->rowCount(), 0);
    QCOMPARE(tab.view()->model()->columnCount(), 0);
    QCOMPARE(tab.told.size(), 0);
}

void ElementTabsTest::showAllRowsSortedByName_data()
{
    addTabTypes();
}

void ElementTabsTest::showAllRowsSortedByName()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    QCOMPARE(tab.shown().size(), tab.count());
    QCOMPARE(tab.view()->horizontalHeader()->sortIndicatorSection(), 1);
    QCOMPARE(tab.view()->horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
    QCOMPARE(tab.shown(),
             NaturalStringCompare::naturalStringSort(tab.shown(), Qt::CaseInsensitive));
    QVERIFY(tab.view()->selectionModel()->selectedRows().isEmpty());
    QVERIFY(!tab.view()->currentIndex().isValid());
}

void ElementTabsTest::showTheirColumns_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("columns");
    const auto add = [](int type, const QStringList &columns) {
        QTest::newRow(qUtf8Printable(tabTypes()[type].title)) << type << columns;
    };
    add(0, {"Name", "Manipulation Name", "Publication Title", "Species Name"});
    add(1, {"Name"});
    add(2, {"Name"});
    add(3, {"Name"});
    add(4, {"Name", "BlockedMechanism"});
    add(5, {"Name"});
    add(6, {"Title", "URL", "Year"});
}

void ElementTabsTest::showTheirColumns()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    QTEST(tab.headers(), "columns");
    QVERIFY(tab.view()->isColumnHidden(0));
    tab.update(); // which resets the model
    QTEST(tab.headers(), "columns");
}

void ElementTabsTest::showWhatAnExperimentRefersTo()
{
    ElementTab tab(0);
    tab.update();
    const QString name = tab.shown().at(7);
    const auto query = tab.library->db()->newQuery(
        "SELECT Manipulation.Name, Publication.Title, Species.Name FROM Experiment INNER JOIN "
        "Manipulation ON Manipulation.Id = Experiment.Manipulation INNER JOIN Publication ON "
        "Publication.Id = Experiment.Publication INNER JOIN Species ON Species.Id = "
        "Experiment.Species WHERE Experiment.Name = ?",
        QVariant(name));
    QVERIFY(query->next());
    const QStringList headers = {"Manipulation Name", "Publication Title", "Species Name"};
    for (int column = 5; column < 8; ++column) {
        const QString header = tab.view()->model()->headerData(column, Qt::Horizontal).toString();
        QCOMPARE(tab.cell(name, column).data(), query->value(headers.indexOf(header)));
    }
}

void ElementTabsTest::tellTheirWordsWithTheNumberOfRows_data()
{
    addTabTypes();
}

void ElementTabsTest::tellTheirWordsWithTheNumberOfRows()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    QCOMPARE(tab.told.size(), 1);
    QCOMPARE(tab.told.last(), QVariantList({tab.count(), tab.type.singular, tab.type.plural}));
    QCOMPARE(tab.corrupted.size(), 0);
}

void ElementTabsTest::tellOfNoRows_data()
{
    addTabTypes();
}

void ElementTabsTest::tellOfNoRows()
{
    QFETCH(const int, type);
    ElementTab tab(type, emptyLibrary());
    tab.update();
    QCOMPARE(tab.told.last(), QVariantList({0, tab.type.singular, tab.type.plural}));
    QCOMPARE(tab.enabledButtons(), QStringList());
}

void ElementTabsTest::tellOfNoRowsOfATableThatIsMissing_data()
{
    addTabTypes();
}

void ElementTabsTest::tellOfNoRowsOfATableThatIsMissing()
{
    QFETCH(const int, type);
    auto library = emptyLibrary();
    library->run("PRAGMA foreign_keys = false");
    library->run("DROP TABLE " + tabTypes()[type].table);
    ElementTab tab(type, std::move(library));
    tab.update();
    QCOMPARE(tab.told.last().first().toInt(), 0);
    QCOMPARE(tab.corrupted.size(), 0);
}

void ElementTabsTest::readTheirTableAnewWithOneStatement()
{
    StatementLog log;
    ElementTab tab(drugs);
    tab.update();
    log.take();
    tab.update();
    QCOMPARE(log.take(), QStringList("SELECT * FROM Drug"));
}

void ElementTabsTest::showWhatAnotherHasChanged_data()
{
    addTabTypes();
}

void ElementTabsTest::showWhatAnotherHasChanged()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const QString changed = tab.shown().first();
    tab.library->run(QStringLiteral("UPDATE %1 SET %2 = 'zzz' WHERE Id = %3")
                         .arg(tab.type.table, tab.type.nameColumn)
                         .arg(tab.idOf(changed)));
    tab.update();
    QCOMPARE(tab.shown().last(), QStringLiteral("zzz"));
    QVERIFY(!tab.shown().contains(changed));
    QCOMPARE(tab.told.size(), 2);
}

void ElementTabsTest::selectTheRowOfAnId_data()
{
    addTabTypes();
}

void ElementTabsTest::selectTheRowOfAnId()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    for (int i = 0; i < 2; ++i) { // when the model is made, and when it is read anew
        tab.update(2);
        QCOMPARE(tab.idOf(tab.current()), 2);
        QCOMPARE(tab.view()->currentIndex().column(), 1);
        QCOMPARE(tab.selected(), QStringList(tab.current()));
        QCOMPARE(tab.enabledButtons(), QStringList({"Copy", "Edit", "Delete"}));
    }
}

void ElementTabsTest::selectNothingForAnIdThatIsGone()
{
    ElementTab tab(drugs);
    tab.update(12345);
    QCOMPARE(tab.current(), QString());
    QCOMPARE(tab.selected(), QStringList());
}

void ElementTabsTest::keepTheChosenOrderWhenTheyAreReadAnew()
{
    ElementTab tab(drugs);
    tab.update();
    QStringList names = tab.shown();
    tab.view()->sortByColumn(1, Qt::DescendingOrder);
    tab.update();
    std::reverse(names.begin(), names.end());
    QCOMPARE(tab.shown(), names);
}

void ElementTabsTest::letGoOfTheirRows_data()
{
    addTabTypes();
}

void ElementTabsTest::letGoOfTheirRows()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.clear(); // of nothing
    tab.update(1);
    tab.clear();
    QCOMPARE(tab.view()->model()->columnCount(), 0);
    QCOMPARE(tab.enabledButtons(), QStringList());
    QCOMPARE(tab.told.size(), 1);
}

void ElementTabsTest::showTheirRowsAgainAfterThat_data()
{
    addTabTypes();
}

void ElementTabsTest::showTheirRowsAgainAfterThat()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const QStringList headers = tab.headers();
    const QStringList names = tab.shown();
    tab.view()->sortByColumn(1, Qt::DescendingOrder);
    tab.clear();
    tab.update();
    QCOMPARE(tab.headers(), headers);
    QCOMPARE(tab.shown(), names);
}

void ElementTabsTest::takeTheirRowsAlongAtTheirEnd()
{
    QPointer<QAbstractItemModel> model;
    {
        ElementTab tab(drugs);
        tab.update();
        const auto *proxy = qobject_cast<QAbstractProxyModel *>(tab.view()->model());
        model = proxy->sourceModel();
        QVERIFY(!model.isNull());
    }
    QVERIFY(model.isNull());
}

// --- Selection ---

void ElementTabsTest::enableTheButtonsThatSuitTheSelection_data()
{
    addTabTypes();
}

void ElementTabsTest::enableTheButtonsThatSuitTheSelection()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const QString first = tab.shown().at(0);
    const QString second = tab.shown().at(1);

    tab.select({first});
    QCOMPARE(tab.enabledButtons(), QStringList({"Copy", "Edit", "Delete"}));
    tab.select({first, second});
    QCOMPARE(tab.selected().size(), 2);
    QCOMPARE(tab.enabledButtons(), QStringList("Delete"));
    tab.view()->clearSelection();
    QCOMPARE(tab.enabledButtons(), QStringList());
}

void ElementTabsTest::enableNoButtonsAfterAnUpdate()
{
    ElementTab tab(drugs);
    tab.update(1);
    tab.update();
    QCOMPARE(tab.selected(), QStringList());
    QCOMPARE(tab.enabledButtons(), QStringList());
}

void ElementTabsTest::sortByTheColumnWhoseHeaderIsClicked()
{
    ElementTab tab(6);
    tab.update();
    const QHeaderView *header = tab.view()->horizontalHeader();
    constexpr int year = 3;
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                      {header->sectionViewportPosition(year) + 20, header->height() / 2});
    QList<int> years;
    for (int row = 0; row < tab.view()->model()->rowCount(); ++row)
        years += tab.view()->model()->index(row, year).data().toInt();
    QCOMPARE(header->sortIndicatorSection(), year);
    QVERIFY(std::is_sorted(years.cbegin(), years.cend()));
    QVERIFY(years.first() < years.last());
}

// --- Deletion ---

void ElementTabsTest::refuseWhatIsInUse_data()
{
    addTabTypes();
}

void ElementTabsTest::refuseWhatIsInUse()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const Refusals refusals(type);
    const QStringList names = tab.shown();
    for (const QString &name : names) {
        ModalAnswerer answerer;
        if (refusals.texts.contains(name))
            answerer.expectBox(refusals.box(name), QMessageBox::Cancel);
        const int id = tab.idOf(name);
        tab.command("delete", id);
        QCOMPARE(answerer.problems(), QStringList());
        QCOMPARE(tab.idOf(name) > 0, refusals.texts.contains(name));
    }
    QCOMPARE(tab.count(), refusals.texts.size());
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

void ElementTabsTest::askBeforeTheyDelete_data()
{
    addTabTypes();
}

void ElementTabsTest::askBeforeTheyDelete()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const QStringList names = tab.shown();
    tab.select({names.at(0), names.at(1)});
    ModalAnswerer answerer;
    answerer.expectBox(deletionQuestion(tab), QMessageBox::Cancel);
    tab.press("Delete");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(tab.shown(), names);
    QCOMPARE(tab.count(), names.size());
    QCOMPARE(tab.selected().size(), 2);
    QCOMPARE(tab.told.size(), 1);
}

void ElementTabsTest::deleteWhatIsFreeOfASelection_data()
{
    addTabTypes();
}

void ElementTabsTest::deleteWhatIsFreeOfASelection()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const Refusals refusals(type);
    tab.select(fewOfEach(tab.shown(), refusals));
    ModalAnswerer answerer;
    const QStringList kept = planDeletion(tab, refusals, &answerer);
    tab.press("Delete");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(tab.shown(), kept);
    QCOMPARE(tab.count(), kept.size());
    QCOMPARE(tab.told.last().first().toInt(), kept.size());
    QCOMPARE(tab.enabledButtons(), QStringList());
    QCOMPARE(tab.focused(), static_cast<QWidget *>(tab.view()));
    QVERIFY(!tab.library->db()->inTransaction());
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

void ElementTabsTest::deleteExperimentsWithNoQuestionOfUse()
{
    ElementTab tab(0);
    const QStringList referred = {"Publication", "Species", "Manipulation", "Morphology", "Drug"};
    QList<int> before;
    for (const QString &table : referred)
        before += tab.library->count(table);
    ModalAnswerer answerer;
    tab.command("delete", 1);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(tab.count(), 99);
    QList<int> after;
    for (const QString &table : referred)
        after += tab.library->count(table);
    QCOMPARE(after, before);
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

void ElementTabsTest::deleteInOneTransaction()
{
    StatementLog log;
    ElementTab tab(drugs, drugLibrary(3));
    tab.update();
    tab.select({"drug 3", "drug 1"});
    ModalAnswerer answerer;
    answerer.expectBox(deletionQuestion(tab), QMessageBox::Yes);
    log.take();
    tab.press("Delete");
    static const QRegularExpression writing("^(BEGIN|DELETE|COMMIT|END)");
    QCOMPARE(log.take().filter(writing),
             QStringList({"BEGIN TRANSACTION;", "DELETE FROM Drug WHERE Id=3",
                          "DELETE FROM Drug WHERE Id=1", "COMMIT;"}));
    QCOMPARE(tab.shown(), QStringList("drug 2"));
}

void ElementTabsTest::askNothingWithoutASelection()
{
    ElementTab tab(drugs);
    tab.update(1);
    tab.view()->clearSelection();
    ModalAnswerer answerer;
    tab.button("Delete")->setEnabled(true);
    tab.press("Delete");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(tab.count(), 16);
}

void ElementTabsTest::keepTheProgressAwayFromTheBoxOfAnElement()
{
    ElementTab tab(morphologies);
    tab.update();
    const Refusals refusals(morphologies);
    QStringList chosen = fewOfEach(tab.shown(), refusals);
    std::stable_partition(chosen.begin(), chosen.end(), [&refusals](const QString &name) {
        return refusals.texts.contains(name);
    });
    tab.select(chosen);
    QCOMPARE(tab.selected(), chosen); // those in use first
    ModalAnswerer answerer;
    const auto longerThanTheProgressWaits = std::chrono::milliseconds(700);
    const QStringList kept = planDeletion(tab, refusals, &answerer, longerThanTheProgressWaits);
    tab.press("Delete");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(kept.size(), 57);
    QCOMPARE(tab.shown(), kept);
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

void ElementTabsTest::deleteNothingMoreAfterAnAbort_data()
{
    QTest::addColumn<int>("done");
    QTest::newRow("in the midst") << 5;
    QTest::newRow("before the last") << 29;
    QTest::newRow("after the last") << 30;
}

void ElementTabsTest::deleteNothingMoreAfterAnAbort()
{
    QFETCH(const int, done);
    ElementTab tab(drugs, drugLibrary(30));
    tab.update();
    tab.view()->selectAll();
    ProgressWatcher progress(done);
    ModalAnswerer answerer;
    answerer.expectBox(deletionQuestion(tab), QMessageBox::Yes);
    tab.press("Delete");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(progress.button, QStringLiteral("Abort"));
    QCOMPARE(progress.range, qMakePair(0, 30));
    QCOMPARE(progress.modality, Qt::WindowModal);
    QCOMPARE(progress.values.last(), done);
    QCOMPARE(tab.shown().size(), 30);
    QCOMPARE(tab.count(), 30);
    QVERIFY(!tab.library->db()->inTransaction());
}

void ElementTabsTest::tellOnceOfADeletionThatFails_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {experiments, morphologies, drugs})
        QTest::newRow(qUtf8Printable(tabTypes()[type].title)) << type;
}

void ElementTabsTest::tellOnceOfADeletionThatFails()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.library->run("INSERT INTO Drug (Name) VALUES('aa 1'), ('aa 2'), ('aa 3'), ('aa 4')");
    tab.update();
    QStringList unused = tab.shown();
    const Refusals refusals(type);
    unused.removeIf([&refusals](const QString &name) { return refusals.texts.contains(name); });
    tab.library->run(QStringLiteral("CREATE TRIGGER stay BEFORE DELETE ON %1 WHEN OLD.Id = %2 "
                                    "BEGIN SELECT RAISE(ABORT, 'stays'); END")
                         .arg(tab.type.table)
                         .arg(tab.idOf(unused.at(2))));
    const QMap<QString, int> before = tab.library->counts();
    tab.select(unused.first(4));
    QCOMPARE(tab.selected().size(), 4);
    ModalAnswerer answerer;
    answerer.expectBox(deletionQuestion(tab), QMessageBox::Yes);
    expectDeletionFailure(&answerer);
    tab.press("Delete");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(tab.library->counts(), before);
    QCOMPARE(tab.shown().size(), tab.count());
    QVERIFY(!tab.library->db()->inTransaction());
}

void ElementTabsTest::tellOfAnElementThatTheFileKeeps()
{
    ElementTab tab(drugs, drugLibrary(1));
    tab.library->run("CREATE TRIGGER stay BEFORE DELETE ON Drug BEGIN SELECT RAISE(ABORT, "
                     "'stays'); END");
    ModalAnswerer answerer;
    expectDeletionFailure(&answerer);
    tab.command("delete", 1);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(tab.count(), 1);
}

// --- Searches ---

namespace {

const QStringList searches = {"Search experiments", "Search manipulations", "Search morphologies",
                              "Search drugs",       "Search RNAi",          "Search species",
                              "Search publications"};

/// Clicks with the right button, as it comes from the screen.
void rightClick(const ElementTab &tab, const QPoint &place)
{
    QTest::mouseClick(tab.widget()->window()->windowHandle(), Qt::RightButton, Qt::NoModifier,
                      place);
}

} // namespace

void ElementTabsTest::offerTheSearchesForOtherTypes_data()
{
    addTabTypes();
}

void ElementTabsTest::offerTheSearchesForOtherTypes()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    QStringList expected = searches;
    expected.removeAt(type);
    const QImage lens = QIcon(":/Images/famfamfam_silk_icons/find.png").pixmap(16).toImage();
    QVERIFY(!lens.isNull());
    for (int i = 0; i < 2; ++i) { // it is filled anew
        rightClick(tab, tab.centreInWindow(tab.shown().at(1)));
        QVERIFY(popup());
        QCOMPARE(textsOf(popup()), expected);
        for (const QAction *entry : popup()->actions())
            QCOMPARE(entry->icon().pixmap(16).toImage(), lens);
        popup()->close();
    }
}

void ElementTabsTest::searchForTheCurrentElement_data()
{
    // Own type from top to bottom, searched type from left to right.
    static const QList<QList<int>> fields = {
        {-1, 1, 10, 1, 1, 1, 2}, {1, -1, 11, 2, 2, 2, 3}, {2, 2, -1, 3, 3, 3, 4},
        {3, 4, 12, -1, 4, 4, 5}, {4, 5, 13, 4, -1, 5, 6}, {5, 6, 14, 5, 5, -1, 7},
        {6, 7, 15, 6, 6, 6, -1},
    };
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("searched");
    QTest::addColumn<int>("field");
    for (int type = 0; type < fields.size(); ++type) {
        for (int searched = 0; searched < fields.size(); ++searched) {
            if (searched != type)
                QTest::addRow("%s: %s", qUtf8Printable(tabTypes()[type].title),
                              qUtf8Printable(searches[searched]))
                    << type << searched << fields[type][searched];
        }
    }
}

void ElementTabsTest::searchForTheCurrentElement()
{
    QFETCH(const int, type);
    QFETCH(const int, searched);
    QFETCH(const int, field);
    ElementTab tab(type);
    tab.update();
    const QString name = tab.shown().at(1);
    rightClick(tab, tab.centreInWindow(name));
    QMenu *menu = popup();
    QVERIFY(menu);
    for (QAction *entry : menu->actions()) {
        if (entry->text() == searches[searched])
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                              menu->actionGeometry(entry).center());
    }
    QCOMPARE(tab.searched.size(), 1);
    QCOMPARE(tab.searched.last(), QVariantList({searched, field, 1, name}));
}

void ElementTabsTest::openNoMenuWithoutACurrentRow_data()
{
    addTabTypes();
}

void ElementTabsTest::openNoMenuWithoutACurrentRow()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    // Besides the rows: a click on one makes it the current one.
    const auto besidesTheTable = [&tab] {
        return tab.widget()->mapTo(tab.widget()->window(), QPoint(2, 2));
    };
    rightClick(tab, besidesTheTable()); // before there is a model
    QVERIFY(!popup());
    tab.update();
    QVERIFY(!tab.shown().isEmpty());
    rightClick(tab, besidesTheTable());
    QVERIFY(!popup());
    tab.update(1);
    rightClick(tab, besidesTheTable());
    QVERIFY(popup());
    popup()->close();
}

void ElementTabsTest::openTheMenuAtTheCursor()
{
    ElementTab tab(drugs);
    tab.update(1);
    const QPoint place = tab.widget()->mapToGlobal(QPoint(100, 100));
    QCursor::setPos(place);
    QContextMenuEvent elsewhere(QContextMenuEvent::Mouse, {5, 5},
                                tab.widget()->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(tab.view()->viewport(), &elsewhere);
    QVERIFY(popup());
    QCOMPARE(popup()->pos(), place);
    popup()->close();
}

void ElementTabsTest::openTheMenuByItsKey()
{
    ElementTab tab(drugs);
    tab.update(1);
    tab.view()->setFocus();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, {5, 5},
                          tab.view()->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(tab.view(), &key);
    QVERIFY(popup());
    QCOMPARE(textsOf(popup()).size(), 6);
    popup()->close();
}

} // namespace Planaria

QTEST_MAIN(Planaria::ElementTabsTest)
#include "ElementTabsTest.moc"
