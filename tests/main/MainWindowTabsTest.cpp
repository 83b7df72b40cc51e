#include "browse/DataTableView.h"
#include "main/ProgramRun.h"
#include "support/TemporaryLibrary.h"

#include <QPushButton>
#include <QTabWidget>

namespace Planaria {

/// The tabs of elements in the window.
class MainWindowTabsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void standInTheirOrder();
    void countTheirRowsInTheStatusLine_data();
    void countTheirRowsInTheStatusLine();
    void followEachChangeInTheStatusLine();
    void showTheRowsOfTheFileThatIsOpened();
    void letGoOfTheFileThatIsClosed();
    void showWhatAToolHasStored_data();
    void showWhatAToolHasStored();
    void showWhatMassDeletionLeaves();
};

void MainWindowTabsTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("QSql")));
    forgetSettings();
}

namespace {

/// The program with the worked library open.
class Run final
{
public:
    Run() { program.start(); }

    [[nodiscard]] DataTableView *view() const
    {
        return program.tabs()->currentWidget()->findChild<DataTableView *>();
    }
    [[nodiscard]] int rowCount() const { return view()->model()->rowCount(); }

    void press(const QString &text) const
    {
        for (auto *button : program.tabs()->currentWidget()->findChildren<QPushButton *>()) {
            if (button->text() == text)
                QTest::mouseClick(button, Qt::LeftButton);
        }
    }

    TemporaryLibrary library{"library.edb"};
    ProgramRun program{{library.fileName()}};
};

constexpr int experiments = 0;
constexpr int morphologies = 2;
constexpr int drugs = 3;

} // namespace

void MainWindowTabsTest::standInTheirOrder()
{
    const ProgramRun run;
    QStringList titles;
    for (int i = 0; i < run.tabs()->count(); ++i)
        titles += run.tabs()->tabText(i);
    QCOMPARE(titles, QStringList({"Experiments", "Manipulations", "Morphologies", "Drugs", "RNAi",
                                  "Species", "Publications", "Search"}));
    QCOMPARE(run.tabs()->currentIndex(), experiments);
}

void MainWindowTabsTest::countTheirRowsInTheStatusLine_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("status");
    QTest::newRow("experiments") << 0 << 100 << "100 experiments in the database";
    QTest::newRow("manipulations") << 1 << 40 << "40 manipulations in the database";
    QTest::newRow("morphologies") << 2 << 60 << "60 morphologies in the database";
    QTest::newRow("drugs") << 3 << 16 << "16 drugs in the database";
    QTest::newRow("RNAi") << 4 << 18 << "18 RNAi in the database";
    QTest::newRow("species") << 5 << 9 << "9 Species in the database";
    QTest::newRow("publications") << 6 << 24 << "24 publications in the database";
}

void MainWindowTabsTest::countTheirRowsInTheStatusLine()
{
    QFETCH(const int, index);
    const Run run;
    run.program.tabs()->setCurrentIndex(index);
    QTEST(run.rowCount(), "count");
    QTEST(run.program.status(), "status");
}

void MainWindowTabsTest::followEachChangeInTheStatusLine()
{
    Run run;
    run.library.run("DELETE FROM ExperimentDrug");
    run.library.run("DELETE FROM Drug WHERE Id > 2");
    run.program.tabs()->setCurrentIndex(drugs);
    QCOMPARE(run.program.status(), "2 drugs in the database");
    for (const char *status : {"1 drug in the database", "No drugs in the database"}) {
        run.view()->selectFirstRow();
        run.program.answerer.expectBox(
            question("Warning", "This action will completely delete the selected drugs from the "
                                "database! Are you sure?"),
            QMessageBox::Yes);
        run.press("&Delete");
        QCOMPARE(run.program.problems(), QString());
        QCOMPARE(run.program.status(), status);
    }
}

void MainWindowTabsTest::showTheRowsOfTheFileThatIsOpened()
{
    Run run;
    run.program.tabs()->setCurrentIndex(drugs);
    TemporaryLibrary other;
    other.run("INSERT INTO Drug VALUES(7, 'aspirin')");
    run.program.openFile(other.fileName());
    QCOMPARE(run.program.problems(), QString());
    QCOMPARE(run.rowCount(), 1);
    QCOMPARE(run.view()->model()->index(0, 1).data().toString(), QStringLiteral("aspirin"));
    QCOMPARE(run.program.status(), "1 drug in the database");
}

void MainWindowTabsTest::letGoOfTheFileThatIsClosed()
{
    Run run;
    for (int i = 0; i < run.program.tabs()->count(); ++i)
        run.program.tabs()->setCurrentIndex(i);
    QVERIFY(run.program.tabsHoldRows());
    run.program.choose("&Close database");
    QVERIFY(!run.program.tabsHoldRows());
    QCOMPARE(run.program.frame(), ProgramRun::closedFrame());
}

void MainWindowTabsTest::showWhatAToolHasStored_data()
{
    QTest::addColumn<QString>("entry");
    for (const char *entry : {"Morphology graphical search", "Morphology list viewer",
                              "Morphology distance calculator", "Morphology distance comparator"})
        QTest::newRow(entry) << entry;
}

void MainWindowTabsTest::showWhatAToolHasStored()
{
    QFETCH(const QString, entry);
    Run run;
    run.library.run("DELETE FROM MorphologyImage");
    run.program.tabs()->setCurrentIndex(morphologies);
    run.program.answerer.expectDialog([&run](QDialog *tool) {
        run.library.run("INSERT INTO Morphology (Name) VALUES('stored meanwhile')");
        tool->close();
    });
    run.program.choose(entry);
    QCOMPARE(run.program.problems(), QString());
    QCOMPARE(run.rowCount(), 61);
    QCOMPARE(run.program.status(), "61 morphologies in the database");
}

void MainWindowTabsTest::showWhatMassDeletionLeaves()
{
    Run run;
    run.library.run("DELETE FROM MorphologyImage");
    for (const int tab : {morphologies, 1, experiments})
        run.program.tabs()->setCurrentIndex(tab);
    run.program.choose(
        "Delete all",
        {{question("Danger!", "This action will delete ALL the experiments, manipulations, and "
                              "morphologies stored in the database! Are you sure?"),
          QMessageBox::Yes}});
    QCOMPARE(run.program.problems(), QString());
    for (int i = 0; i < 3; ++i)
        QCOMPARE(run.program.tabs()->widget(i)->findChild<DataTableView *>()->model()->rowCount(),
                 0);
}

} // namespace Planaria

int main(int argc, char *argv[])
{
    return Planaria::runWindowTest<Planaria::MainWindowTabsTest>(argc, argv);
}

#include "MainWindowTabsTest.moc"
