#include "db/ExperimentFactory.h"
#include "main/ProgramRun.h"
#include "model/Morphology.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QTabWidget>

namespace Planaria {

/// The commands that empty whole groups of tables, each after a question.
class MainWindowDeletionTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void asksBeforeItDeletes_data();
    void asksBeforeItDeletes();
    void emptiesItsTables_data();
    void emptiesItsTables();
    void emptiesItsTablesInOrder_data();
    void emptiesItsTablesInOrder();
    void keepsMorphologiesWithoutRegionsBehindOneImage();
    void deletesTheWildTypeWhichComesBackOnDemand();
    void keepsDrugsRnaiSpeciesAndPublications_data();
    void keepsDrugsRnaiSpeciesAndPublications();
    void showsWhatIsLeft_data();
    void showsWhatIsLeft();
    void takesEmptyTablesAsTheyAre();
};

void MainWindowDeletionTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("QSql")));
    forgetSettings();
}

namespace {

struct Command
{
    QString entry;
    QString text;
    QMessageBox::StandardButton proceed;

    [[nodiscard]] ProgramRun::Answer answered(QMessageBox::StandardButton button) const
    {
        return {{"Danger!", text, proceed | QMessageBox::Cancel, QMessageBox::Cancel,
                 QMessageBox::Warning},
                button};
    }
};

const Command deleteExperiments{
    "Delete all experiments",
    "This action will delete ALL the experiments stored in the database! Are you sure?",
    QMessageBox::Ok};
const Command deleteExpAndManipulations{
    "Delete all experiments and manipulations",
    "This action will delete ALL the experiments and ALL the manipulations stored in the database! "
    "Are you sure?",
    QMessageBox::Yes};
const Command deleteEverything{
    "Delete all",
    "This action will delete ALL the experiments, manipulations, and morphologies stored in the "
    "database! Are you sure?",
    QMessageBox::Yes};

const QStringList experimentTables = {"ExperimentDrug", "ExperimentRNAi", "ResultantMorphology",
                                      "ResultSet", "Experiment"};
const QStringList manipulationTables = {"Manipulation", "RemoveActionAreaPoint",
                                        "CropActionAreaPoint", "IrradiationActionAreaPoint"};
const QStringList actionTables = {"ManipulationAction", "MorphologyAction", "RemoveAction",
                                  "CropAction",         "JoinAction",       "IrradiationAction"};
const QStringList morphologyTables = {"Organ",       "LineOrgan",   "SpotOrgan", "RegionsLink",
                                      "RegionParam", "RegionParam", "Region",    "Morphology"};
const QStringList keptTables = {"Drug",       "RNAi",          "Species",      "Publication",
                                "RegionType", "SpotOrganType", "LineOrganType"};

void addCommands()
{
    QTest::addColumn<Command>("command");
    for (const Command &command : {deleteExperiments, deleteExpAndManipulations, deleteEverything})
        QTest::newRow(qUtf8Printable(command.entry)) << command;
}

/// The program with the worked library open, of which no morphology has an image.
class Run final
{
public:
    Run()
    {
        library.run("DELETE FROM MorphologyImage");
        program.start();
    }

    void obey(const Command &command)
    {
        program.choose(command.entry, {command.answered(command.proceed)});
    }

    StatementLog log; // sees connections that are opened after it
    TemporaryLibrary library{"library.edb"};
    ProgramRun program{{library.fileName()}};
};

QStringList emptyOf(TemporaryLibrary *library, const QStringList &tables)
{
    QStringList empty;
    for (const QString &table : tables)
        if (library->count(table) == 0)
            empty += table;
    return empty;
}

} // namespace

void MainWindowDeletionTest::asksBeforeItDeletes_data()
{
    addCommands();
}

void MainWindowDeletionTest::asksBeforeItDeletes()
{
    QFETCH(const Command, command);
    Run run;
    const QStringList before = allRows(run.library.fileName());
    run.program.choose(command.entry, {command.answered(QMessageBox::Cancel)});
    QCOMPARE(run.program.problems(), QString());
    QCOMPARE(allRows(run.library.fileName()), before);
}

void MainWindowDeletionTest::emptiesItsTables_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QStringList>("emptied");
    QTest::newRow("experiments") << deleteExperiments << experimentTables;
    QTest::newRow("experiments and manipulations")
        << deleteExpAndManipulations << experimentTables + manipulationTables + actionTables;
    QTest::newRow("all") << deleteEverything
                         << experimentTables + manipulationTables + actionTables + morphologyTables;
}

void MainWindowDeletionTest::emptiesItsTables()
{
    QFETCH(const Command, command);
    const QStringList all =
        experimentTables + manipulationTables + actionTables + morphologyTables + keptTables;
    Run run;
    QCOMPARE(emptyOf(&run.library, all), QStringList());
    run.obey(command);
    QCOMPARE(run.program.problems(), QString());
    QTEST(emptyOf(&run.library, all), "emptied");
    QCOMPARE(run.library.brokenReferences(), QStringList());
}

void MainWindowDeletionTest::emptiesItsTablesInOrder_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QStringList>("statements");
    const auto deletions = [](const QStringList &tables) {
        QStringList statements;
        for (const QString &table : tables)
            statements += "DELETE FROM " + table;
        return statements;
    };
    const QStringList experiments = deletions(experimentTables);
    const QStringList manipulations =
        deletions(manipulationTables) + QStringList("PRAGMA foreign_keys = false;") +
        deletions(actionTables) + QStringList("PRAGMA foreign_keys = true;");
    QTest::newRow("experiments") << deleteExperiments << experiments;
    QTest::newRow("experiments and manipulations")
        << deleteExpAndManipulations << experiments + manipulations;
    QTest::newRow("all") << deleteEverything
                         << experiments + manipulations + deletions(morphologyTables);
}

void MainWindowDeletionTest::emptiesItsTablesInOrder()
{
    QFETCH(const Command, command);
    Run run;
    run.log.take();
    run.obey(command);
    static const QRegularExpression writing("^(DELETE|PRAGMA|BEGIN|COMMIT)");
    QTEST(run.log.take().filter(writing), "statements");
}

void MainWindowDeletionTest::keepsMorphologiesWithoutRegionsBehindOneImage()
{
    Run run;
    run.library.run("INSERT INTO MorphologyImage (Morphology, Data) VALUES(60, x'00')");
    const int count = run.library.count("Morphology");
    run.obey(deleteEverything);
    QCOMPARE(run.program.problems(), QString()); // nothing is reported
    QCOMPARE(run.library.count("Morphology"), count);
    QCOMPARE(run.library.count("MorphologyImage"), 1);
    QCOMPARE(run.library.count("Region"), 0);
    QCOMPARE(run.program.status(), QStringLiteral("%1 morphologies in the database").arg(count));
    QCOMPARE(run.library.brokenReferences(), QStringList());
}

void MainWindowDeletionTest::deletesTheWildTypeWhichComesBackOnDemand()
{
    Run run;
    run.obey(deleteEverything);
    QCOMPARE(run.library.count("Morphology"), 0);
    const auto worm = ExperimentFactory::instance(nullptr)->loadDefaultMorphology(run.library.db());
    QCOMPARE(worm->name(), QStringLiteral("Wild type"));
    QCOMPARE(worm->id(), 1);
    QCOMPARE(run.library.count("Morphology"), 1);
}

void MainWindowDeletionTest::keepsDrugsRnaiSpeciesAndPublications_data()
{
    addCommands();
}

void MainWindowDeletionTest::keepsDrugsRnaiSpeciesAndPublications()
{
    QFETCH(const Command, command);
    Run run;
    const auto kept = [&run] {
        static const QRegularExpression rows(
            "^(Drug|RNAi|Species|Publication|RegionType|SpotOrganType|LineOrganType|Meta): ");
        return allRows(run.library.fileName()).filter(rows);
    };
    const QStringList before = kept();
    run.obey(command);
    QCOMPARE(kept(), before);
}

void MainWindowDeletionTest::showsWhatIsLeft_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QString>("status");
    QTest::newRow("experiments") << deleteExperiments << "No experiments in the database";
    QTest::newRow("experiments and manipulations")
        << deleteExpAndManipulations << "No manipulations in the database";
    QTest::newRow("all") << deleteEverything << "No morphologies in the database";
}

void MainWindowDeletionTest::showsWhatIsLeft()
{
    QFETCH(const Command, command);
    Run run;
    run.program.tabs()->setCurrentIndex(3);
    run.obey(command);
    QTEST(run.program.status(), "status");
}

void MainWindowDeletionTest::takesEmptyTablesAsTheyAre()
{
    Run run;
    for (int i = 0; i < 2; ++i)
        run.obey(deleteEverything);
    QCOMPARE(run.program.problems(), QString());
    QCOMPARE(run.library.count("Morphology"), 0);
}

} // namespace Planaria

int main(int argc, char *argv[])
{
    return Planaria::runWindowTest<Planaria::MainWindowDeletionTest>(argc, argv);
}

#include "MainWindowDeletionTest.moc"
