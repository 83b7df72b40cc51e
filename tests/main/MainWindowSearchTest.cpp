#include "browse/SearchUser.h"
#include "browse/SearchWidget.h"
#include "main/ProgramRun.h"
#include "support/ProgressWatcher.h"
#include "support/TemporaryLibrary.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>

namespace Planaria {

/// The search tab in the window: how the other tabs lead to it, how they answer for what it found,
/// and what the status line says of it.
class MainWindowSearchTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    // From the other tabs
    void searchesWhatATabAsksFor_data();
    void searchesWhatATabAsksFor();
    void showsTheSearchTabBeforeItSearches();
    void findsNoManipulationsByAMorphologyOfTheirTrees();

    // Elements that were found
    void makesNewElements_data();
    void makesNewElements();
    void copiesAnElementThatWasFound_data();
    void copiesAnElementThatWasFound();
    void editsAnElementThatWasFound();
    void opensTheFormOfAnElementByADoubleClick();
    void deletesWhatIsNotInUse();
    void refusesEachElementInUse_data();
    void refusesEachElementInUse();
    void keepsTheProgressAwayFromTheBoxOfAnElement();
    void takesBackADeletionThatIsAborted();
    void takesBackADeletionThatIsAbortedAtItsEnd();
    void tellsOnceOfADeletionThatFails_data();
    void tellsOnceOfADeletionThatFails();

    // Status
    void wordsWhatWasFound();
    void keepsTheStatusOfTheTabBeforeWhereNobodySearched();
    void forgetsTheRowsWithTheFile();
    void searchesAgainWheneverTheTabComesToTheFront();
    void showsNothingOfWhatAMassDeletionTook();
};

void MainWindowSearchTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("QSql")));
    forgetSettings();
}

namespace {

constexpr int searchTab = 7;
constexpr int experiments = 0;
constexpr int manipulations = 1;
constexpr int morphologies = 2;
constexpr int drugs = 3;
constexpr int containing = 0;
constexpr int equalTo = 1;

const QStringList ways{"Search experiments", "Search manipulations", "Search morphologies",
                       "Search drugs",       "Search RNAi",          "Search species",
                       "Search publications"};

/// The program with the worked library open, and a user before its search tab.
class Run final
{
public:
    explicit Run(int firstTab = searchTab)
    {
        program.start();
        program.tabs()->setCurrentIndex(firstTab);
    }

    /// Goes from the first row of the tab of a type to what belongs to it; gives its name.
    QString leave(int type, int target) const
    {
        program.tabs()->setCurrentIndex(type);
        QWidget *tab = program.tabs()->currentWidget();
        auto *view = tab->findChild<DataTableView *>();
        const QModelIndex index = view->model()->index(0, 1);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          view->visualRect(index).center());
        const QString name = index.data().toString();
        callMenuOn(view);
        chooseFrom(tab->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly), ways[target]);
        return name;
    }

    /// Plans to type @p name into the dialog that asks for one, be it a form, and to accept it.
    void nameAs(const QString &name)
    {
        program.answerer.expectDialog([this, name](QDialog *dialog) {
            auto *edit = dialog->findChild<QLineEdit *>();
            proposal = edit->text();
            edit->setText(name);
            auto *buttons = dialog->findChild<QDialogButtonBox *>();
            QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
        });
    }

    /// Plans to delete what is selected.
    void agreeToDelete()
    {
        program.answerer.expectBox({"Warning",
                                    "This action will completely delete the selected elements from "
                                    "the database! Are you sure?",
                                    QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Cancel,
                                    QMessageBox::Warning},
                                   QMessageBox::Yes);
    }

    TemporaryLibrary library{"library.edb"};
    ProgramRun program{{library.fileName()}};
    QString proposal;
    SearchWidget *widget = program.window.findChild<SearchWidget *>();
    SearchUser user{widget};
};

} // namespace

// --- From the other tabs ---

void MainWindowSearchTest::searchesWhatATabAsksFor_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("question");
    QTest::newRow("experiments") << 0 << 5 << "Species with Experiment name";
    QTest::newRow("manipulations") << 1 << 0 << "Experiments with Manipulation name";
    QTest::newRow("morphologies") << 2 << 0 << "Experiments with Results morphology name";
    QTest::newRow("drugs") << 3 << 6 << "Publications with Drug name";
    QTest::newRow("RNAi") << 4 << 2 << "Morphologies with RNAi name";
    QTest::newRow("species") << 5 << 1 << "Manipulations with Species name";
    QTest::newRow("publications") << 6 << 3 << "Drugs with Publication title";
}

void MainWindowSearchTest::searchesWhatATabAsksFor()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    QFETCH(const QString, question);
    Run run;
    const QString name = run.leave(from, to);
    QCOMPARE(run.program.tabs()->currentIndex(), searchTab);
    QCOMPARE(run.user.question(), question + " equal to " + name);
    const qsizetype found = run.user.shown().size();
    const QString words = found == 1 ? SearchStatement::singular(to) : SearchStatement::plural(to);
    QCOMPARE(run.program.status(), QStringLiteral("%1 %2 found in the database")
                                       .arg(found == 0 ? "No" : QString::number(found), words));
    QCOMPARE(run.program.problems(), QString());
}

void MainWindowSearchTest::showsTheSearchTabBeforeItSearches()
{
    Run run;
    run.user.ask({drugs, 0, containing, ""});
    QStringList told;
    QObject::connect(
        run.widget, &SearchWidget::nEleChanged, run.widget,
        [&run, &told](int /*n*/, const QString & /*one*/, const QString &many) {
            told +=
                QStringLiteral("%1 on tab %2").arg(many).arg(run.program.tabs()->currentIndex());
        });
    run.leave(experiments, 5);
    // The tab comes up with its last question.
    QCOMPARE(told, QStringList({"drugs found on tab 7", "species found on tab 7"}));
}

void MainWindowSearchTest::findsNoManipulationsByAMorphologyOfTheirTrees()
{
    Run run;
    run.leave(morphologies, manipulations);
    QVERIFY(run.user.question().startsWith("Manipulations with Morphology name equal to "));
    QCOMPARE(run.program.status(), "No manipulations found in the database");

    run.user.ask({morphologies, 0, equalTo, "No head"});
    run.user.click("No head");
    run.user.callMenu();
    run.user.choose(ways[manipulations]);
    QCOMPARE(run.user.question(), "Manipulations with Results morphology name equal to No head");
    QVERIFY(!run.user.shown().isEmpty());
}

// --- Elements that were found ---

namespace {

/// The types whose elements are a name alone.
void addNamedTypes()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("table");
    QTest::newRow("drugs") << 3 << "Drug";
    QTest::newRow("RNAi") << 4 << "RNAi";
    QTest::newRow("species") << 5 << "Species";
}

} // namespace

void MainWindowSearchTest::makesNewElements_data()
{
    addNamedTypes();
    QTest::newRow("publications") << 6 << "Publication";
}

void MainWindowSearchTest::makesNewElements()
{
    QFETCH(const int, type);
    QFETCH(const QString, table);
    Run run;
    run.user.ask({type, 0, containing, "qq"});
    QCOMPARE(run.user.shown(), QStringList());
    const int before = run.library.count(table);
    run.nameAs("new qq 1");
    run.user.press("&New");
    QCOMPARE(run.user.shown(), QStringList({"new qq 1"}));
    QCOMPARE(run.library.count(table), before + 1);
    QCOMPARE(run.program.status(),
             QStringLiteral("1 %1 found in the database").arg(SearchStatement::singular(type)));
    QCOMPARE(run.program.problems(), QString());
    QCOMPARE(run.library.brokenReferences(), QStringList());
}

void MainWindowSearchTest::copiesAnElementThatWasFound_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::newRow("experiment") << 0 << "Series B 1938, tail graft";
    QTest::newRow("manipulation") << 1 << "Tail amputation 2";
    QTest::newRow("morphology") << 2 << "Cyclops with 14 eyes";
    QTest::newRow("drug") << 3 << "octanol";
    QTest::newRow("RNAi") << 4 << "notum";
    QTest::newRow("species") << 5 << "Dugesia sicula";
    QTest::newRow("publication") << 6 << "Pbx during polarity";
}

void MainWindowSearchTest::copiesAnElementThatWasFound()
{
    QFETCH(const int, type);
    QFETCH(const QString, name);
    Run run;
    run.user.ask({type, 0, containing, name});
    QCOMPARE(run.user.shown(), QStringList({name}));
    run.user.click(name);
    run.nameAs(name + " again");
    run.user.press("&Copy");
    QCOMPARE(run.proposal, name + " - copy");
    QCOMPARE(run.user.shown(), QStringList({name, name + " again"}));
    QCOMPARE(run.user.current(), name);
    QCOMPARE(run.program.status(),
             QStringLiteral("2 %1 found in the database").arg(SearchStatement::plural(type)));
    QCOMPARE(run.program.problems(), QString());
    QCOMPARE(run.library.brokenReferences(), QStringList());
}

void MainWindowSearchTest::editsAnElementThatWasFound()
{
    Run run;
    run.user.ask({drugs, 0, containing, "octanol"});
    run.user.click("octanol");
    run.nameAs("1-octanol");
    run.user.press("&Edit");
    QCOMPARE(run.proposal, "octanol");
    QCOMPARE(run.user.shown(), QStringList({"1-octanol"}));
    QCOMPARE(run.user.current(), "1-octanol");
    QCOMPARE(run.program.status(), "1 drug found in the database");
    QCOMPARE(run.program.problems(), QString());
}

void MainWindowSearchTest::opensTheFormOfAnElementByADoubleClick()
{
    Run run;
    run.user.ask({experiments, 5, equalTo, "Schmidtea polychroa"});
    const QString name = run.user.shown().first();
    QString title;
    run.program.answerer.expectDialog([&title](QDialog *dialog) {
        title = dialog->windowTitle() + ": " + dialog->findChild<QLineEdit *>()->text();
        dialog->reject();
    });
    run.user.doubleClick(name);
    QCOMPARE(title, "Edit experiment: " + name);
    QCOMPARE(run.user.current(), name);
    QCOMPARE(run.program.problems(), QString());
}

void MainWindowSearchTest::deletesWhatIsNotInUse()
{
    Run run;
    run.library.run("INSERT INTO Drug (Name) VALUES('spare 1'), ('spare 2')");
    run.user.ask({drugs, 0, containing, "a"});
    run.user.click("spare 1");
    run.user.click("heptanol", Qt::ControlModifier);
    run.user.click("spare 2", Qt::ControlModifier);
    run.agreeToDelete();
    run.program.answerer.expectBox(
        refusal("Drug in use",
                "The drug \"heptanol\" cannot be deleted because it is part of an experiment."),
        QMessageBox::Cancel);
    run.user.press("&Delete");
    QVERIFY(run.user.shown().contains("heptanol"));
    QCOMPARE(run.user.shown().filter("spare"), QStringList());
    QCOMPARE(run.library.count("Drug"), 16);
    QCOMPARE(run.program.problems(), QString());
    QCOMPARE(run.library.brokenReferences(), QStringList());
}

void MainWindowSearchTest::refusesEachElementInUse_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    const auto add = [](int type, const char *name, const char *title, const QString &text) {
        QTest::newRow(title) << type << QString(name) << QString(title) << text.arg(name);
    };
    add(1, "Tail amputation", "Manipulation in use",
        "The manipulation \"%1\" cannot be deleted because it is part of an experiment.");
    add(2, "Wild type", "Morphology in use",
        "The morphology \"%1\" cannot be deleted because it is part of an experiment "
        "manipulation.");
    add(3, "octanol", "Drug in use",
        "The drug \"%1\" cannot be deleted because it is part of an experiment.");
    add(4, "notum", "RNAi in use",
        "The RNAi \"%1\" cannot be deleted because it is part of an experiment.");
    add(5, "Schmidtea polychroa", "Species in use",
        "The species \"%1\" cannot be deleted because it is used in experiments included in the "
        "database.");
    add(6, "Notum and Wnt signalling", "Publication in use",
        "The publication \"%1\" cannot be deleted because it contains experiments included in the "
        "database.");
}

void MainWindowSearchTest::refusesEachElementInUse()
{
    QFETCH(const int, type);
    QFETCH(const QString, name);
    QFETCH(const QString, title);
    QFETCH(const QString, text);
    Run run;
    run.user.ask({type, 0, equalTo, name});
    run.user.click(name);
    run.agreeToDelete();
    run.program.answerer.expectBox(refusal(title, text), QMessageBox::Cancel);
    run.user.press("&Delete");
    QCOMPARE(run.user.shown(), QStringList({name}));
    QCOMPARE(run.program.problems(), QString());
}

void MainWindowSearchTest::keepsTheProgressAwayFromTheBoxOfAnElement()
{
    Run run;
    run.library.run("INSERT INTO Drug (Name) VALUES('octanol 1'), ('octanol 2'), ('octanol 3')");
    run.user.ask({drugs, 0, containing, "octanol"});
    QCOMPARE(run.user.shown(), QStringList({"octanol", "octanol 1", "octanol 2", "octanol 3"}));
    run.user.view->selectAll();
    run.agreeToDelete();
    run.program.answerer.expectBox(
        {"Drug in use",
         "The drug \"octanol\" cannot be deleted because it is part of an experiment.",
         QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::Critical},
        QMessageBox::Cancel, std::chrono::milliseconds(700));
    run.user.press("&Delete");
    QCOMPARE(run.program.problems(), QString());
    QCOMPARE(run.user.shown(), QStringList({"octanol"}));
}

void MainWindowSearchTest::takesBackADeletionThatIsAborted()
{
    Run run;
    for (int i = 1; i <= 30; ++i)
        run.library.run(QStringLiteral("INSERT INTO Drug (Name) VALUES('spare %1')").arg(i));
    run.user.ask({drugs, 0, containing, "spare"});
    run.user.view->selectAll();
    const ProgressWatcher progress(5);
    run.agreeToDelete();
    run.user.press("&Delete");
    QCOMPARE(progress.values, QList<int>({0, 1, 2, 3, 4, 5}));
    QCOMPARE(run.user.shown().size(), 30);
    QCOMPARE(run.program.problems(), QString());
}

void MainWindowSearchTest::takesBackADeletionThatIsAbortedAtItsEnd()
{
    Run run;
    run.library.run("INSERT INTO Drug (Name) VALUES('spare 1'), ('spare 2')");
    run.user.ask({drugs, 0, containing, "spare"});
    run.user.view->selectAll();
    const ProgressWatcher progress(2);
    run.agreeToDelete();
    run.user.press("&Delete");
    QCOMPARE(progress.values, QList<int>({0, 1, 2}));
    QCOMPARE(run.user.shown().size(), 2);
    QCOMPARE(run.program.problems(), QString());
}

void MainWindowSearchTest::tellsOnceOfADeletionThatFails_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("free"); // which of them are in use nowhere
    QTest::newRow("experiments") << experiments << "Experiment"
                                 << "Id < 9";
    QTest::newRow("morphologies") << morphologies << "Morphology"
                                  << "Id NOT IN (SELECT Morphology FROM MorphologyAction) AND "
                                     "Id NOT IN (SELECT Morphology FROM ResultantMorphology)";
    QTest::newRow("drugs") << drugs << "Drug"
                           << "length(Name) = 1";
}

void MainWindowSearchTest::tellsOnceOfADeletionThatFails()
{
    QFETCH(const int, type);
    QFETCH(const QString, table);
    QFETCH(const QString, free);
    Run run;
    run.library.run("INSERT INTO Drug (Name) VALUES('a'), ('b'), ('c'), ('d')");
    run.library.run(
        QStringLiteral("UPDATE %1 SET Name = 'spare ' || Name WHERE %2").arg(table, free));
    run.user.ask({type, 0, containing, "spare"});
    const QStringList shown = run.user.shown();
    QVERIFY(shown.size() >= 4);
    run.library.run(QStringLiteral("CREATE TRIGGER stay BEFORE DELETE ON %1 WHEN OLD.Id = %2 BEGIN "
                                   "SELECT RAISE(ABORT, 'stays'); END")
                        .arg(table)
                        .arg(run.user.idOf(shown.at(2))));
    const QMap<QString, int> before = run.library.counts();
    run.user.view->selectAll();
    run.agreeToDelete();
    run.program.answerer.expectBox(
        {"Cannot delete elements",
         "The file does not let go of all of the selected elements. Nothing was deleted.",
         QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Critical},
        QMessageBox::Ok);
    run.user.press("&Delete");
    QCOMPARE(run.program.problems(), QString());
    QCOMPARE(run.user.shown(), shown);
    QCOMPARE(run.library.counts(), before);
}

// --- Status ---

void MainWindowSearchTest::wordsWhatWasFound()
{
    const Run run;
    run.user.ask({drugs, 0, equalTo, "none"});
    QCOMPARE(run.program.status(), "No drugs found in the database");
    run.user.ask({drugs, 0, equalTo, "octanol"});
    QCOMPARE(run.program.status(), "1 drug found in the database");
    run.user.ask({drugs, 0, containing, ""});
    QCOMPARE(run.program.status(), "16 drugs found in the database");
    run.program.tabs()->setCurrentIndex(drugs);
    QCOMPARE(run.program.status(), "16 drugs in the database");
    run.program.tabs()->setCurrentIndex(searchTab);
    QCOMPARE(run.program.status(), "16 drugs found in the database");
}

void MainWindowSearchTest::keepsTheStatusOfTheTabBeforeWhereNobodySearched()
{
    const Run run(drugs);
    QCOMPARE(run.program.status(), "16 drugs in the database");
    run.program.tabs()->setCurrentIndex(searchTab);
    QCOMPARE(run.program.status(), "16 drugs in the database");
    run.user.ask({drugs, 0, equalTo, "octanol"});
    run.user.type->setCurrentIndex(experiments);
    QCOMPARE(run.program.status(), "1 drug found in the database");
}

void MainWindowSearchTest::forgetsTheRowsWithTheFile()
{
    Run run;
    const TemporaryLibrary other;
    run.user.ask({drugs, 0, equalTo, "octanol"});
    run.program.choose("&Close database");
    QCOMPARE(run.user.shown(), QStringList());
    QCOMPARE(run.program.status(), "No database opened");
    run.program.openFile(other.fileName());
    QCOMPARE(run.user.question(), "Drugs with Name equal to octanol");
    QCOMPARE(run.program.status(), "No drugs found in the database");
    run.program.openFile(run.library.fileName());
    QCOMPARE(run.program.status(), "1 drug found in the database");
    QCOMPARE(run.program.problems(), QString());
}

void MainWindowSearchTest::searchesAgainWheneverTheTabComesToTheFront()
{
    Run run;
    run.user.ask({drugs, 0, containing, "octanol"});
    run.program.tabs()->setCurrentIndex(experiments);
    run.library.run("INSERT INTO Drug (Name) VALUES('1-octanol')");
    run.program.tabs()->setCurrentIndex(searchTab);
    QCOMPARE(run.user.shown(), QStringList({"1-octanol", "octanol"}));
    run.program.tabs()->setCurrentIndex(experiments);
    run.user.value->setText("heptanol");
    run.program.tabs()->setCurrentIndex(searchTab);
    QCOMPARE(run.user.shown(), QStringList({"heptanol"}));
}

void MainWindowSearchTest::showsNothingOfWhatAMassDeletionTook()
{
    Run run;
    run.user.ask({experiments, 0, containing, ""});
    QCOMPARE(run.user.shown().size(), 100);
    run.program.choose(
        "Delete all experiments",
        {{{"Danger!",
           "This action will delete ALL the experiments stored in the database! Are you sure?",
           QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::Warning},
          QMessageBox::Ok}});
    QCOMPARE(run.user.shown(), QStringList());
    QCOMPARE(run.program.status(), "No experiments in the database");
    run.program.tabs()->setCurrentIndex(drugs);
    run.program.tabs()->setCurrentIndex(searchTab);
    QCOMPARE(run.program.status(), "No experiments found in the database");
    QCOMPARE(run.program.problems(), QString());
}

} // namespace Planaria

int main(int argc, char *argv[])
{
    return Planaria::runWindowTest<Planaria::MainWindowSearchTest>(argc, argv);
}

#include "MainWindowSearchTest.moc"
