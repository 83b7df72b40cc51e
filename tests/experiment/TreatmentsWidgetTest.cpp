#include "experiment/ExperimentDrugsWidget.h"
#include "experiment/ExperimentRNAiWidget.h"
#include "experiment/Parts.h"
#include "model/SmallExperiments.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"
#include "widgets/TurnWheel.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTableWidget>

#include <functional>

using namespace Planaria;

/// Most behaviour is told of both kinds, drugs and RNAi. The file holds three of each kind: "beta"
/// (row 1), "alpha" (2) and "gamma" (3). The experiment is new, unless a test says otherwise.
class TreatmentsWidgetTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void bearsItsTitleAndColumns_data();
    void bearsItsTitleAndColumns();
    void isAsWideAsItsColumns_data() { addKinds(); }
    void isAsWideAsItsColumns();
    void hasItsButtonsAtTheRight_data() { addKinds(); }
    void hasItsButtonsAtTheRight();
    void showsTheTreatmentsInTheirOrder_data() { addKinds(); }
    void showsTheTreatmentsInTheirOrder();
    void showsTheTimesOfEachDrug();
    void leadsTabFromTheTableToTheButtons_data() { addKinds(); }
    void leadsTabFromTheTableToTheButtons();

    void asksForAWordFirstWhereThereIsNone_data();
    void asksForAWordFirstWhereThereIsNone();
    void addsTheFirstByName_data() { addKinds(); }
    void addsTheFirstByName();
    void startsANewDrugWithEmptyTimesOfDayZero();
    void givesWhatIsChosen_data() { addKinds(); }
    void givesWhatIsChosen();
    void keepsWhatIsChosenAlready_data() { addKinds(); }
    void keepsWhatIsChosenAlready();
    void leavesTheWheelToWhatIsAround();
    void makesTheRowOfAListCurrent_data() { addKinds(); }
    void makesTheRowOfAListCurrent();
    void removesTheCurrentRow_data() { addKinds(); }
    void removesTheCurrentRow();
    void removesNothingWithoutACurrentRow_data() { addKinds(); }
    void removesNothingWithoutACurrentRow();

    void takesTypedTimes();
    void takesAnotherTextForZero_data();
    void takesAnotherTextForZero();
    void keepsAllDigitsOfATimeThatIsLookedAt();
    void sortsTimesAsNumbers();
    void addsARowToASortedTable();
    void keepsEachTimeWithItsDrugInRandomEdits_data();
    void keepsEachTimeWithItsDrugInRandomEdits();

    void storesANewWordAtOnce_data() { addKinds(); }
    void storesANewWordAtOnce();
    void makesNoWordWithoutAName_data();
    void makesNoWordWithoutAName();
    void asksAgainForANewWordWhoseNameIsTaken_data() { addTakenTexts(); }
    void asksAgainForANewWordWhoseNameIsTaken();
    void storesAnotherNameAtOnce_data() { addKinds(); }
    void storesAnotherNameAtOnce();
    void namesAllRowsOfAWord_data() { addKinds(); }
    void namesAllRowsOfAWord();
    void asksAgainForTheUnchangedName_data() { addTakenTexts(); }
    void asksAgainForTheUnchangedName();
    void editsNothingWithoutACurrentRow_data() { addKinds(); }
    void editsNothingWithoutACurrentRow();
    void loadsNothingWhenTheListIsReadAnew_data() { addKinds(); }
    void loadsNothingWhenTheListIsReadAnew();
    void leavesAWordThatIsLostAlone_data() { addKinds(); }
    void leavesAWordThatIsLostAlone();

private:
    static void addKinds();
    /// With the words that tell of a taken name.
    static void addTakenTexts();
    /// The kind of which the row of the test tells.
    [[nodiscard]] static bool areDrugs();
    [[nodiscard]] static QString tableName() { return areDrugs() ? "Drug" : "RNAi"; }

    void openDrugs();
    void openRNAi();
    void open();
    void show();
    /// Adds one treatment after another to the experiment, each with the word in one of these rows.
    void treatWith(const QList<int> &ids);
    [[nodiscard]] QStringList given() const;
    [[nodiscard]] QList<const DBElement *> givenObjects() const;
    [[nodiscard]] const QList<ExperimentDrug *> &drugs() const
    {
        return experiment->experimentDrugs();
    }

    [[nodiscard]] QComboBox *box(int row) const
    {
        return qobject_cast<QComboBox *>(table->cellWidget(row, 0));
    }
    [[nodiscard]] QStringList shown() const;
    [[nodiscard]] QStringList shownTimes(int column) const;
    void clickRow(int row) const;
    void clickHeader(int column) const;
    QLineEdit *openEditor(int row, int column) const;
    void typeTime(int row, int column, const QString &text) const;
    void randomStep(QRandomGenerator *random);
    /// What the table shows in each row, against the treatment with the same start time.
    [[nodiscard]] QStringList mixedRows() const;

    StatementLog log; // before any connection opens
    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<Experiment> experiment;
    std::unique_ptr<QGroupBox> widget;
    QTableWidget *table = nullptr;
};

void TreatmentsWidgetTest::addKinds()
{
    QTest::addColumn<bool>("ofDrugs");
    QTest::newRow("drugs") << true;
    QTest::newRow("RNAi") << false;
}

void TreatmentsWidgetTest::addTakenTexts()
{
    QTest::addColumn<bool>("ofDrugs");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::newRow("drugs") << true << "Drug with same name found"
                           << "The database already contains a drug with the same name. Please, "
                              "specify a different name for this drug.";
    QTest::newRow("RNAi") << false << "RNAi with same name found"
                          << "The database already contains a RNAi with the same name. Please, "
                             "specify a different name for this RNAi.";
}

bool TreatmentsWidgetTest::areDrugs()
{
    QFETCH(const bool, ofDrugs);
    return ofDrugs;
}

void TreatmentsWidgetTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    library->run("INSERT INTO Drug VALUES(1, 'beta'), (2, 'alpha'), (3, 'gamma')");
    library->run("INSERT INTO RNAi(Id, Name) VALUES(1, 'beta'), (2, 'alpha'), (3, 'gamma')");
    experiment = std::make_unique<Experiment>();
}

void TreatmentsWidgetTest::cleanup()
{
    widget.reset();
    experiment.reset();
    QCOMPARE(library->brokenReferences(), QStringList());
}

void TreatmentsWidgetTest::openDrugs()
{
    widget = std::make_unique<ExperimentDrugsWidget>(experiment.get(), library->db(), nullptr);
    show();
}

void TreatmentsWidgetTest::openRNAi()
{
    widget = std::make_unique<ExperimentRNAiWidget>(experiment.get(), library->db(), nullptr);
    show();
}

void TreatmentsWidgetTest::open()
{
    if (areDrugs())
        openDrugs();
    else
        openRNAi();
}

void TreatmentsWidgetTest::show()
{
    table = widget->findChild<QTableWidget *>();
    widget->resize(500, 400);
    widget->show();
    widget->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(widget.get()));
}

void TreatmentsWidgetTest::treatWith(const QList<int> &ids)
{
    for (const int id : ids) {
        if (areDrugs())
            experiment->addExperimentDrug(std::make_unique<Drug>(id, library->db()).release());
        else
            experiment->addExperimentRNAi(std::make_unique<RNAi>(id, library->db()).release());
    }
}

QStringList TreatmentsWidgetTest::given() const
{
    QStringList names;
    for (const ExperimentDrug *treatment : experiment->experimentDrugs())
        names += treatment->drug()->name();
    for (const ExperimentRNAi *treatment : experiment->experimentRNAis())
        names += treatment->rnai()->name();
    return names;
}

QList<const DBElement *> TreatmentsWidgetTest::givenObjects() const
{
    QList<const DBElement *> objects;
    for (const ExperimentDrug *treatment : experiment->experimentDrugs())
        objects += treatment->drug();
    for (const ExperimentRNAi *treatment : experiment->experimentRNAis())
        objects += treatment->rnai();
    return objects;
}

QStringList TreatmentsWidgetTest::shown() const
{
    QStringList texts;
    for (int row = 0; row < table->rowCount(); ++row)
        texts += box(row)->currentText();
    return texts;
}

QStringList TreatmentsWidgetTest::shownTimes(int column) const
{
    QStringList texts;
    for (int row = 0; row < table->rowCount(); ++row)
        texts += table->item(row, column)->text();
    return texts;
}

void TreatmentsWidgetTest::clickRow(int row) const
{
    const QHeaderView *header = table->verticalHeader();
    const QPoint place(header->width() / 2,
                       header->sectionViewportPosition(row) + header->sectionSize(row) / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

void TreatmentsWidgetTest::clickHeader(int column) const
{
    const QHeaderView *header = table->horizontalHeader();
    const QPoint place(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                       header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

QLineEdit *TreatmentsWidgetTest::openEditor(int row, int column) const
{
    settle(); // the rows are in their places
    table->scrollToItem(table->item(row, column));
    const QPoint place = table->visualItemRect(table->item(row, column)).center();
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    auto *editor = table->viewport()->findChild<QLineEdit *>();
    if (!editor)
        qFatal("no editor opened");
    return editor;
}

void TreatmentsWidgetTest::typeTime(int row, int column, const QString &text) const
{
    QLineEdit *editor = openEditor(row, column);
    typeInto(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    settle();
}

// --- The parts ---

void TreatmentsWidgetTest::bearsItsTitleAndColumns_data()
{
    QTest::addColumn<bool>("ofDrugs");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("headers");
    QTest::newRow("drugs") << true << "Drugs" << QStringList({"Name", "Start (d)", "End (d)"});
    QTest::newRow("RNAi") << false << "RNAi injections" << QStringList("Name");
}

void TreatmentsWidgetTest::bearsItsTitleAndColumns()
{
    QFETCH(const QString, title);
    QFETCH(const QStringList, headers);
    open();
    QCOMPARE(widget->title(), title);
    QCOMPARE(table->accessibleName(), title);
    QStringList shownHeaders;
    QList<int> widths;
    for (int column = 0; column < table->columnCount(); ++column) {
        shownHeaders += table->horizontalHeaderItem(column)->text();
        widths += table->columnWidth(column);
        const QTableWidgetItem *header = table->horizontalHeaderItem(column);
        QVERIFY(QFontMetrics(header->data(Qt::FontRole).isNull() ? table->font() : header->font())
                    .horizontalAdvance(header->text()) < widths.last());
    }
    QCOMPARE(shownHeaders, headers);
    QCOMPARE(widths, QList<int>({120, 50, 50}).first(headers.size()));
}

void TreatmentsWidgetTest::isAsWideAsItsColumns()
{
    treatWith({1, 2});
    open();
    QCOMPARE(table->minimumSize(), QSize(50, 100));
    QCOMPARE(table->maximumHeight(), 1000);
    QCOMPARE(table->sizePolicy(), QSizePolicy(QSizePolicy::Maximum, QSizePolicy::Expanding));
    const auto needed = [this] {
        return table->horizontalHeader()->length() + table->verticalHeader()->sizeHint().width() +
               1 + table->verticalScrollBar()->sizeHint().width() + 1;
    };
    const int withOneDigit = table->maximumWidth();
    QCOMPARE(withOneDigit, needed());
    while (table->rowCount() < 10)
        press(widget.get(), "Add");
    QVERIFY(needed() > withOneDigit);
    QCOMPARE(table->maximumWidth(), needed());
    press(widget.get(), "Remove");
    QCOMPARE(table->maximumWidth(), withOneDigit);
}

void TreatmentsWidgetTest::hasItsButtonsAtTheRight()
{
    open();
    const auto *row = qobject_cast<QBoxLayout *>(widget->layout());
    QCOMPARE(row->direction(), QBoxLayout::LeftToRight);
    QCOMPARE(row->itemAt(0)->widget(), table);
    QCOMPARE(row->stretch(0), 1);
    const auto *column = qobject_cast<QBoxLayout *>(row->itemAt(1)->layout());
    QCOMPARE(column->direction(), QBoxLayout::TopToBottom);
    QVERIFY(column->itemAt(0)->spacerItem());
    QStringList texts;
    for (int i = 1; i < column->count(); ++i)
        texts += qobject_cast<QPushButton *>(column->itemAt(i)->widget())->text();
    QCOMPARE(texts, QStringList({"Add", "Remove", "Edit", "New"}));
}

void TreatmentsWidgetTest::showsTheTreatmentsInTheirOrder()
{
    treatWith({3, 1, 2, 1});
    open();
    QCOMPARE(shown(), QStringList({"gamma", "beta", "alpha", "beta"}));
    QCOMPARE(entries(box(0)), QStringList({"alpha", "beta", "gamma"}));
    QCOMPARE(box(0)->model(), box(3)->model()); // one list for all rows
}

void TreatmentsWidgetTest::showsTheTimesOfEachDrug()
{
    addDrug(experiment.get(), "one", 7.0, 14.25);
    addDrug(experiment.get(), "two", 0.125, 3.0);
    openDrugs();
    QCOMPARE(shownTimes(1), QStringList({"7", "0.125"}));
    QCOMPARE(shownTimes(2), QStringList({"14.25", "3"}));
    QCOMPARE(drugs().at(1)->startTime(), 0.125); // to show is not to write
}

void TreatmentsWidgetTest::leadsTabFromTheTableToTheButtons()
{
    treatWith({1});
    open();
    QStringList stops;
    for (const QWidget *stop : tabStops(widget.get(), table)) {
        const auto *asButton = qobject_cast<const QPushButton *>(stop);
        stops += asButton ? asButton->text() : stop->accessibleName();
    }
    const QString name = areDrugs() ? "Drugs" : "RNAi injections";
    QCOMPARE(stops, QStringList({name, tableName(), "Add", "Remove", "Edit", "New"}));
}

// --- Rows ---

void TreatmentsWidgetTest::asksForAWordFirstWhereThereIsNone_data()
{
    QTest::addColumn<bool>("ofDrugs");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::newRow("drugs") << true << "No drugs found in the database"
                           << "The database contains no drugs. Please, create a new drug first.";
    QTest::newRow("RNAi") << false << "No RNAis found in the database"
                          << "The database contains no RNAi. Please, create a new RNAi first.";
}

void TreatmentsWidgetTest::asksForAWordFirstWhereThereIsNone()
{
    QFETCH(const QString, title);
    QFETCH(const QString, text);
    library->run("DELETE FROM " + tableName());
    open();
    ModalAnswerer answerer;
    answerer.expectBox(warning(title, text), QMessageBox::Ok);
    press(widget.get(), "Add");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(table->rowCount(), 0);
    QCOMPARE(given(), QStringList());
}

void TreatmentsWidgetTest::addsTheFirstByName()
{
    treatWith({3});
    open();
    press(widget.get(), "Add");
    QCOMPARE(shown(), QStringList({"gamma", "alpha"}));
    QCOMPARE(given(), QStringList({"gamma", "alpha"}));
    QCOMPARE(table->currentRow(), 1);
    QCOMPARE(table->currentColumn(), 0);
    QVERIFY(box(1)->hasFocus()); // the user can choose at once
    QCOMPARE(library->count("ExperimentDrug") + library->count("ExperimentRNAi"), 0);
}

void TreatmentsWidgetTest::startsANewDrugWithEmptyTimesOfDayZero()
{
    openDrugs();
    press(widget.get(), "Add");
    for (const int column : {1, 2}) {
        QCOMPARE(shownTimes(column), QStringList(""));
        QVERIFY(!table->item(0, column)->data(Qt::DisplayRole).isValid());
    }
    QCOMPARE(drugs().first()->startTime(), 0.0);
    QCOMPARE(drugs().first()->endTime(), 0.0);
}

void TreatmentsWidgetTest::givesWhatIsChosen()
{
    treatWith({1, 1});
    open();
    const QList<const DBElement *> before = givenObjects();
    choose(box(1), "gamma");
    QCOMPARE(given(), QStringList({"beta", "gamma"}));
    QCOMPARE(shown(), QStringList({"beta", "gamma"}));
    QCOMPARE(givenObjects().at(0), before.at(0));
    QCOMPARE(givenObjects().at(1)->id(), 3);
}

void TreatmentsWidgetTest::keepsWhatIsChosenAlready()
{
    treatWith({1, 2});
    open();
    const QList<const DBElement *> before = givenObjects();
    log.take();
    QTest::keyClick(box(0), Qt::Key_B); // to the first name with this letter
    box(1)->setCurrentIndex(-1);
    box(1)->setCurrentIndex(0);
    QCOMPARE(givenObjects(), before);
    QCOMPARE(log.take(), QStringList());
}

void TreatmentsWidgetTest::leavesTheWheelToWhatIsAround()
{
    experiment->addExperimentDrug(std::make_unique<Drug>(2, library->db()).release());
    openDrugs();
    box(0)->setFocus();
    turnWheel(box(0), wheelDown);
    QCOMPARE(given(), QStringList("alpha"));
}

void TreatmentsWidgetTest::makesTheRowOfAListCurrent()
{
    treatWith({1, 2, 3});
    open();
    clickRow(0);
    QCOMPARE(table->currentRow(), 0);
    box(1)->setFocus();
    QCOMPARE(table->currentRow(), 1);
    press(widget.get(), "Remove");
    QCOMPARE(given(), QStringList({"beta", "gamma"}));
}

void TreatmentsWidgetTest::removesTheCurrentRow()
{
    treatWith({1, 2, 3});
    open();
    clickRow(1);
    press(widget.get(), "Remove");
    settle();
    QCOMPARE(shown(), QStringList({"beta", "gamma"}));
    QCOMPARE(given(), QStringList({"beta", "gamma"}));
    const int waiting = static_cast<int>(queued<ExperimentDrug>(experiment.get()).size());
    QCOMPARE(waiting, 1); // the object waits for the next submit
}

void TreatmentsWidgetTest::removesNothingWithoutACurrentRow()
{
    treatWith({1, 2});
    open();
    table->setCurrentCell(-1, -1);
    press(widget.get(), "Remove");
    QCOMPARE(shown(), QStringList({"beta", "alpha"}));
    QCOMPARE(given(), QStringList({"beta", "alpha"}));
}

// --- Times ---

void TreatmentsWidgetTest::takesTypedTimes()
{
    addDrug(experiment.get(), "one", 1.0, 2.0);
    addDrug(experiment.get(), "two", 3.0, 4.0);
    openDrugs();
    typeTime(1, 1, "0.75");
    typeTime(0, 2, "1e2");
    QCOMPARE(drugs().at(0)->startTime(), 1.0);
    QCOMPARE(drugs().at(0)->endTime(), 100.0);
    QCOMPARE(drugs().at(1)->startTime(), 0.75);
    QCOMPARE(drugs().at(1)->endTime(), 4.0);
    QCOMPARE(shownTimes(1), QStringList({"1", "0.75"}));
    QCOMPARE(shownTimes(2), QStringList({"100", "4"}));
}

void TreatmentsWidgetTest::takesAnotherTextForZero_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"soon", "", "1,5", "7 d", "nan", "inf", "-inf", "1e999"})
        QTest::newRow(text) << text;
}

void TreatmentsWidgetTest::takesAnotherTextForZero()
{
    QFETCH(const QString, text);
    addDrug(experiment.get(), "one", 1.0, 2.0);
    openDrugs();
    typeTime(0, 1, text);
    QCOMPARE(drugs().first()->startTime(), 0.0);
    QCOMPARE(shownTimes(1), QStringList("0"));
}

void TreatmentsWidgetTest::keepsAllDigitsOfATimeThatIsLookedAt()
{
    addDrug(experiment.get(), "one", 1.0 / 3.0, 12345.6789);
    openDrugs();
    for (const int column : {1, 2})
        QTest::keyClick(openEditor(0, column), Qt::Key_Return);
    QCOMPARE(drugs().first()->startTime(), 1.0 / 3.0);
    QCOMPARE(drugs().first()->endTime(), 12345.6789);
}

void TreatmentsWidgetTest::sortsTimesAsNumbers()
{
    addDrug(experiment.get(), "ten", 10.0, 0.0);
    addDrug(experiment.get(), "nine", 9.0, 0.0);
    addDrug(experiment.get(), "two", 2.0, 0.0);
    openDrugs();
    typeTime(2, 1, "11");
    clickHeader(1);
    QCOMPARE(shownTimes(1), QStringList({"9", "10", "11"}));
    clickHeader(1);
    QCOMPARE(shownTimes(1), QStringList({"11", "10", "9"}));
    QCOMPARE(drugs().at(0)->startTime(), 10.0);
    QCOMPARE(drugs().at(2)->startTime(), 11.0);
}

void TreatmentsWidgetTest::addsARowToASortedTable()
{
    for (const int id : {1, 2, 3}) {
        auto *drug = std::make_unique<Drug>(id, library->db()).release();
        experiment->addExperimentDrug(drug)->setStartTime(id);
    }
    openDrugs();
    clickHeader(1);
    clickHeader(1); // the latest first
    press(widget.get(), "Add");
    QCOMPARE(table->rowCount(), 4);
    const int row = table->currentRow();
    QCOMPARE(box(row)->currentText(), "alpha");
    QCOMPARE(table->item(row, 1)->text(), "");

    typeTime(row, 2, "9"); // the row stays: it is not sorted by this column
    typeTime(row, 1, "2.5");
    QCOMPARE(shownTimes(1), QStringList({"3", "2.5", "2", "1"}));
    QCOMPARE(shown(), QStringList({"gamma", "alpha", "alpha", "beta"}));
    QCOMPARE(drugs().last()->startTime(), 2.5);
    QCOMPARE(drugs().last()->endTime(), 9.0);
    QCOMPARE(mixedRows(), QStringList());
}

QStringList TreatmentsWidgetTest::mixedRows() const
{
    QStringList rowsOfTable;
    for (int row = 0; row < table->rowCount(); ++row)
        rowsOfTable += QStringLiteral("%1 %2 %3")
                           .arg(box(row)->currentText(), table->item(row, 1)->text(),
                                table->item(row, 2)->text());
    for (const ExperimentDrug *treatment : drugs()) {
        const QString row = QStringLiteral("%1 %2 %3")
                                .arg(treatment->drug()->name())
                                .arg(treatment->startTime())
                                .arg(treatment->endTime());
        if (!rowsOfTable.removeOne(row))
            rowsOfTable += "missing: " + row;
    }
    return rowsOfTable;
}

void TreatmentsWidgetTest::keepsEachTimeWithItsDrugInRandomEdits_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 8; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TreatmentsWidgetTest::keepsEachTimeWithItsDrugInRandomEdits()
{
    QFETCH(const quint32, seed);
    QRandomGenerator random(seed);
    openDrugs();
    for (int step = 0; step < 60; ++step) {
        randomStep(&random);
        if (!mixedRows().isEmpty())
            qWarning("seed %u, step %d: %s", seed, step, qUtf8Printable(mixedRows().join("; ")));
        QCOMPARE(mixedRows(), QStringList());
        QCOMPARE(table->rowCount(), drugs().size());
    }
}

/// Adds a row with times, changes a time or a drug, sorts or removes.
void TreatmentsWidgetTest::randomStep(QRandomGenerator *random)
{
    const auto number = [random](int limit) { return static_cast<int>(random->bounded(limit)); };
    const QString time = QString::number(number(40) / 4.0);
    const int rows = table->rowCount();
    const int row = rows > 0 ? number(rows) : 0;
    const int kind = rows > 0 && rows < 12 ? number(10) : (rows == 0 ? 0 : 9);
    if (kind < 4) {
        press(widget.get(), "Add");
        typeTime(table->currentRow(), 1, time);
        typeTime(table->currentRow(), 2, QString::number(number(40)));
    } else if (kind < 6) {
        typeTime(row, 1 + number(2), time);
    } else if (kind < 7) {
        choose(box(row), box(row)->itemText(number(3)));
    } else if (kind < 9) {
        clickHeader(number(3));
    } else {
        settle();
        table->scrollToItem(table->item(row, 1));
        clickRow(row);
        press(widget.get(), "Remove");
        settle();
    }
}

// --- Words ---

void TreatmentsWidgetTest::storesANewWordAtOnce()
{
    treatWith({1, 3});
    open();
    ModalAnswerer answerer;
    const auto seen = expectInput(&answerer, "aardvark");
    press(widget.get(), "New");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->title, "New " + QString(areDrugs() ? "drug" : "RNAi"));
    QCOMPARE(seen->label, tableName() + " name:");
    QCOMPARE(seen->text, "");

    QCOMPARE(library->count(tableName()), 4);
    QCOMPARE(shown(), QStringList({"beta", "gamma", "aardvark"}));
    QCOMPARE(given(), QStringList({"beta", "gamma", "aardvark"}));
    for (int row = 0; row < 3; ++row)
        QCOMPARE(entries(box(row)), QStringList({"aardvark", "alpha", "beta", "gamma"}));
    QCOMPARE(table->currentRow(), 2);
}

void TreatmentsWidgetTest::makesNoWordWithoutAName_data()
{
    QTest::addColumn<bool>("ofDrugs");
    QTest::addColumn<bool>("cancel");
    for (const bool cancel : {false, true}) {
        QTest::addRow("drugs, %s", cancel ? "cancel" : "nothing typed") << true << cancel;
        QTest::addRow("RNAi, %s", cancel ? "cancel" : "nothing typed") << false << cancel;
    }
}

void TreatmentsWidgetTest::makesNoWordWithoutAName()
{
    QFETCH(const bool, cancel);
    treatWith({1});
    open();
    clickRow(0);
    for (const char *which : {"New", "Edit"}) {
        ModalAnswerer answerer;
        expectInput(&answerer, cancel ? std::nullopt : std::optional<QString>(""));
        press(widget.get(), which);
        QCOMPARE(answerer.problems(), QStringList());
    }
    QCOMPARE(library->count(tableName()), 3);
    QCOMPARE(given(), QStringList("beta"));
    QCOMPARE(shown(), QStringList("beta"));
}

void TreatmentsWidgetTest::asksAgainForANewWordWhoseNameIsTaken()
{
    QFETCH(const QString, title);
    QFETCH(const QString, text);
    open();
    ModalAnswerer answerer;
    expectInput(&answerer, "gamma");
    answerer.expectBox(warning(title, text), QMessageBox::Ok);
    const auto again = expectInput(&answerer, "delta");
    press(widget.get(), "New");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(again->text, ""); // it starts anew
    QCOMPARE(given(), QStringList("delta"));
}

void TreatmentsWidgetTest::storesAnotherNameAtOnce()
{
    treatWith({1, 2, 3});
    open();
    clickRow(1);
    ModalAnswerer answerer;
    const auto seen = expectInput(&answerer, "zeta");
    press(widget.get(), "Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->title, "Edit " + QString(areDrugs() ? "drug" : "RNAi"));
    QCOMPARE(seen->label, tableName() + " name:");
    QCOMPARE(seen->text, "alpha");

    QCOMPARE(library->value(QStringLiteral("SELECT Name FROM %1 WHERE Id=2").arg(tableName())),
             QVariant("zeta"));
    QCOMPARE(given(), QStringList({"beta", "zeta", "gamma"}));
    QCOMPARE(shown(), QStringList({"beta", "zeta", "gamma"}));
    QCOMPARE(entries(box(0)), QStringList({"beta", "gamma", "zeta"}));
}

void TreatmentsWidgetTest::namesAllRowsOfAWord()
{
    treatWith({2, 1, 2});
    open();
    clickRow(0);
    ModalAnswerer answerer;
    expectInput(&answerer, "zeta");
    press(widget.get(), "Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(given(), QStringList({"zeta", "beta", "zeta"}));

    // No row writes the former name back.
    experiment->setName("experiment");
    experiment->setManipulation(newManipulation("cut"));
    experiment->setPublication(newPublication("paper"));
    experiment->setSpecies(newWord<Species>("species"));
    QVERIFY(experiment->submit(library->db()) > 0);
    QCOMPARE(library->value(QStringLiteral("SELECT Name FROM %1 WHERE Id=2").arg(tableName())),
             QVariant("zeta"));
}

void TreatmentsWidgetTest::asksAgainForTheUnchangedName()
{
    QFETCH(const QString, title);
    QFETCH(const QString, text);
    treatWith({2});
    open();
    clickRow(0);
    ModalAnswerer answerer;
    expectInput(&answerer, "alpha");
    answerer.expectBox(warning(title, text), QMessageBox::Ok);
    const auto again = expectInput(&answerer, std::nullopt);
    press(widget.get(), "Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(given(), QStringList("alpha"));
}

void TreatmentsWidgetTest::editsNothingWithoutACurrentRow()
{
    treatWith({2});
    open();
    table->setCurrentCell(-1, -1);
    const ModalAnswerer answerer;
    press(widget.get(), "Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(shown(), QStringList("alpha"));
}

void TreatmentsWidgetTest::loadsNothingWhenTheListIsReadAnew()
{
    treatWith({1, 2, 3});
    open();
    const QList<const DBElement *> before = givenObjects();
    ModalAnswerer answerer;
    expectInput(&answerer, "aardvark");
    press(widget.get(), "New");
    clickRow(1);
    expectInput(&answerer, "zeta");
    press(widget.get(), "Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(givenObjects().first(3), before);
}

void TreatmentsWidgetTest::leavesAWordThatIsLostAlone()
{
    library->run("PRAGMA foreign_keys = off");
    library->run("INSERT INTO Experiment VALUES(1, 'damaged', 1, 1, 1)");
    library->run(areDrugs() ? "INSERT INTO ExperimentDrug VALUES(1, 1, 99, 0, 0)"
                            : "INSERT INTO ExperimentRNAi VALUES(1, 1, 99)");
    experiment = std::make_unique<Experiment>(1, library->db());
    open();
    QCOMPARE(box(0)->currentIndex(), -1);
    clickRow(0);
    const ModalAnswerer answerer;
    press(widget.get(), "Edit");
    QCOMPARE(answerer.problems(), QStringList());
    choose(box(0), "alpha");
    QCOMPARE(given(), QStringList("alpha"));
    library->run("DELETE FROM ExperimentDrug");
    library->run("DELETE FROM ExperimentRNAi");
    library->run("DELETE FROM Experiment");
}

QTEST_MAIN(TreatmentsWidgetTest)
#include "TreatmentsWidgetTest.moc"
