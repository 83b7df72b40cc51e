#include "db/BulkRead.h"
#include "db/PlainSqlite.h"
#include "model/ExperimentLines.h"
#include "model/SmallExperiments.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

#include <functional>

using namespace Planaria;

/// Experiments that no program of ours has written.
class DamagedExperimentsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void showsWhatMakesSense_data() { addDamages(); }
    void showsWhatMakesSense();
    void canBeLookedAtWithoutAChangeOfTheFile_data() { addDamages(); }
    void canBeLookedAtWithoutAChangeOfTheFile();
    void writingLeavesLostReferencesAlone_data() { addLostReferences(); }
    void writingLeavesLostReferencesAlone();
    void canBeErased_data() { addDamages(); }
    void canBeErased();

    void copyLeavesOutWhatIsLost_data() { addLostChildren(); }
    void copyLeavesOutWhatIsLost();
    void copyWithoutAllReferencesIsRefused_data() { addLostMembers(); }
    void copyWithoutAllReferencesIsRefused();
    void anotherChoiceReplacesWhatIsLost();
    void writingMendsNumbers();
    void equalsNothingWithoutItsReferences();
    void missingExperimentIsEmpty();

private:
    static void addColumns();
    /// One of manipulation, publication and species.
    static void addLostMembers();
    /// What a treatment or a result refers to.
    static void addLostChildren();
    static void addLostReferences();
    static void addDamages();

    void damage(const QString &statement);
    void damage()
    {
        QFETCH(const QString, statement);
        damage(statement);
    }
    std::unique_ptr<Experiment> loaded(int id = 1)
    {
        return std::make_unique<Experiment>(id, library->db());
    }
    /// All values in the file.
    QStringList content()
    {
        PlainSqlite file(library->fileName());
        return file.dump(file.tables());
    }

    std::unique_ptr<TemporaryLibrary> library;
};

/// The library starts with the full experiment "first".
void DamagedExperimentsTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    library->run("PRAGMA synchronous = OFF"); // no test cuts the power
    QCOMPARE(fullExperiment("first")->submit(library->db()), 1);
}

void DamagedExperimentsTest::damage(const QString &statement)
{
    library->run("PRAGMA foreign_keys = OFF");
    library->run(statement);
    library->run("PRAGMA foreign_keys = ON");
}

/// What is done to the file, which line of the experiment that changes, and into what; null takes
/// it out.
void DamagedExperimentsTest::addColumns()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("changed");
}

void DamagedExperimentsTest::addLostMembers()
{
    addColumns();
    const QStringList lines{"manipulation cut of 2 actions #1",
                            "publication paper, https://paper.example, 1901 #1",
                            "species species #1"};
    const QStringList tables{"Manipulation", "Publication", "Species"};
    for (int i = 0; i < tables.size(); ++i) {
        const QByteArray table = tables.at(i).toUtf8();
        const QString none = "no " + tables.at(i).toLower();
        for (const char *id : {"99", "0", "5000000000", "'text'"}) {
            QTest::addRow("%s %s", table.constData(), id)
                << QStringLiteral("UPDATE Experiment SET %1 = %2").arg(tables.at(i), id)
                << lines.at(i) << none;
        }
        QTest::addRow("%s gone", table.constData())
            << QStringLiteral("DELETE FROM %1").arg(tables.at(i)) << lines.at(i) << none;
    }
}

void DamagedExperimentsTest::addLostChildren()
{
    addColumns();
    const auto add = [](const char *id, const QString &shown) {
        const auto set = [id](const char *table, const char *column, int row) {
            return QStringLiteral("UPDATE %1 SET %2 = %3 WHERE Id = %4")
                .arg(table, column, id)
                .arg(row);
        };
        QTest::addRow("RNAi %s", id) << set("ExperimentRNAi", "RNAi", 2) << "RNAi #2 gene B #2"
                                     << "RNAi #2  " + shown;
        QTest::addRow("drug %s", id)
            << set("ExperimentDrug", "Drug", 1) << "day 1 to 2.5 #1 drug A #1"
            << "day 1 to 2.5 #1  " + shown;
        QTest::addRow("worm %s", id)
            << set("ResultantMorphology", "Morphology", 1) << "0.75 #1 worm A #2"
            << "0.75 #1  " + shown;
    };
    add("99", "#99");
    add("0", "#0");
    add("5000000000", "#0");
}

void DamagedExperimentsTest::addLostReferences()
{
    addLostMembers();
    addLostChildren();
}

void DamagedExperimentsTest::addDamages()
{
    addLostReferences();
    const auto add = [](const char *name, const char *statement, const char *line,
                        const char *changed) {
        QTest::newRow(name) << statement << line << QString::fromLatin1(changed);
    };
    add("start that is text", "UPDATE ExperimentDrug SET StartTime = 'soon' WHERE Id = 1",
        "day 1 to 2.5 #1 drug A #1", "day 0 to 2.5 #1 drug A #1");
    add("end that is no number", "UPDATE ExperimentDrug SET EndTime = 'nan' WHERE Id = 1",
        "day 1 to 2.5 #1 drug A #1", "day 1 to 0 #1 drug A #1");
    add("infinite period", "UPDATE ResultSet SET RegenPeriod = 9e999 WHERE Id = 2",
        "9 worms after 14.5 days #2", "9 worms after 0 days #2");
    add("number of worms that is text", "UPDATE ResultSet SET Num = 'many' WHERE Id = 2",
        "9 worms after 14.5 days #2", "0 worms after 14.5 days #2");
    add("frequency that is no number",
        "UPDATE ResultantMorphology SET Frequency = 'nan' WHERE Id = 2", "0.25 #2 worm B #3",
        "0 #2 worm B #3");
    add("infinite frequency", "UPDATE ResultantMorphology SET Frequency = -9e999 WHERE Id = 2",
        "0.25 #2 worm B #3", "0 #2 worm B #3");
    add("frequency beyond one", "UPDATE ResultantMorphology SET Frequency = 7 WHERE Id = 2",
        "0.25 #2 worm B #3", "7 #2 worm B #3");
    add("drug row that no element can hold",
        "UPDATE ExperimentDrug SET Id = 5000000000 WHERE Id = 2", "day 0.25 to 7 #2 drug B #2",
        nullptr);
    add("result row that no element can hold",
        "UPDATE ResultantMorphology SET Id = -3 WHERE Id = 3", "1 #3 worm C #4", nullptr);
    add("treatment of no experiment", "UPDATE ExperimentRNAi SET Experiment = 99 WHERE Id = 1",
        "RNAi #1 gene A #1", nullptr);
    add("result of no set", "UPDATE ResultantMorphology SET ResultSet = 'x' WHERE Id = 3",
        "1 #3 worm C #4", nullptr);
    add("manipulation without actions", "DELETE FROM ManipulationAction",
        "manipulation cut of 2 actions #1", "manipulation cut of 0 actions #1");
}

void DamagedExperimentsTest::showsWhatMakesSense()
{
    QFETCH(const QString, line);
    QFETCH(const QString, changed);
    QStringList expected = experimentLines(*loaded(), Ids::With);
    const qsizetype place = expected.indexOf(line);
    QVERIFY(place >= 0);
    if (changed.isNull())
        expected.removeAt(place);
    else
        expected[place] = changed;

    damage();
    QCOMPARE(experimentLines(*loaded(), Ids::With), expected);
    const BulkRead job(library->db());
    QCOMPARE(experimentLines(*loaded(), Ids::With), expected);
}

void DamagedExperimentsTest::canBeLookedAtWithoutAChangeOfTheFile()
{
    damage();
    const QStringList before = content();
    {
        const std::unique_ptr<Experiment> experiment = loaded();
        const Experiment copy(*experiment, false);
        Experiment other;
        other.copy(*experiment);
        QCOMPARE(copy == other, other == copy);
        experiment->clearResultSets();
        experiment->removeAndDeleteAll();
    }
    QCOMPARE(content(), before);
}

void DamagedExperimentsTest::writingLeavesLostReferencesAlone()
{
    damage();
    const QStringList before = content();
    const std::unique_ptr<Experiment> experiment = loaded();
    QCOMPARE(experiment->submit(library->db()), 1);
    QCOMPARE(content(), before);

    experiment->setName("renamed");
    QCOMPARE(experiment->submit(library->db()), 1);
    QCOMPARE(library->value("SELECT Name FROM Experiment"), QVariant("renamed"));
    QCOMPARE(firstDifference(*loaded(), *experiment), QString());
}

void DamagedExperimentsTest::canBeErased()
{
    damage();
    const QStringList orphans = library->brokenReferences();
    const std::unique_ptr<Experiment> experiment = loaded();
    const bool erased = experiment->erase();
    QVERIFY(!library->db()->inTransaction());
    // A row that no element can hold keeps its parent in the file, as a whole.
    const bool holdsUnknown = library->value("SELECT COUNT(*) FROM ExperimentDrug WHERE "
                                             "Id > 2147483647 OR Id < 1") != QVariant(0) ||
                              library->value("SELECT COUNT(*) FROM ResultantMorphology WHERE "
                                             "Id > 2147483647 OR Id < 1") != QVariant(0);
    QCOMPARE(erased, !holdsUnknown);
    QCOMPARE(library->count("Experiment"), erased ? 0 : 1);
    if (!erased)
        QCOMPARE(library->brokenReferences(), orphans);
}

void DamagedExperimentsTest::copyLeavesOutWhatIsLost()
{
    damage();
    Experiment copy(*loaded(), false);
    copy.setName("copy");
    QCOMPARE(copy.submit(library->db()), 2);
    QStringList expected = experimentLines(*loaded(), Ids::Without);
    expected.removeIf([](const QString &line) { return line.endsWith(' '); });
    QCOMPARE(expected.size(), 12);
    expected.first() = "copy";
    QCOMPARE(experimentLines(*loaded(2), Ids::Without), expected);

    TemporaryLibrary other;
    const std::unique_ptr<Experiment> moved = loaded(1);
    moved->setName("copy");
    QCOMPARE(moved->submit(other.db()), 1);
    QCOMPARE(experimentLines(Experiment(1, other.db()), Ids::Without), expected);
}

void DamagedExperimentsTest::copyWithoutAllReferencesIsRefused()
{
    damage();
    const QStringList before = experimentRowsIn(library.get());
    Experiment copy(*loaded(), false);
    copy.setName("copy");
    copy.submit(library->db());
    QVERIFY(!library->db()->inTransaction());
    QCOMPARE(experimentRowsIn(library.get()), before);
}

void DamagedExperimentsTest::anotherChoiceReplacesWhatIsLost()
{
    damage("UPDATE Experiment SET Publication = 99, Species = 0, Manipulation = 'text'");
    damage("UPDATE ExperimentDrug SET Drug = 99 WHERE Id = 1");
    damage("UPDATE ExperimentRNAi SET RNAi = 99 WHERE Id = 1");
    damage("UPDATE ResultantMorphology SET Morphology = 99 WHERE Id = 1");
    const std::unique_ptr<Experiment> experiment = loaded();
    experiment->setManipulation(new Manipulation(1, library->db()));
    experiment->setPublication(new Publication(1, library->db()));
    experiment->setSpecies(new Species(1, library->db()));
    experiment->experimentDrugs().first()->setDrug(new Drug(2, library->db()));
    experiment->experimentRNAis().first()->setRNAi(new RNAi(2, library->db()));
    experiment->resultSets().first()->resultantMorphologies().first()->setMorphology(
        new Morphology(4, library->db(), false));

    QCOMPARE(experiment->submit(library->db()), 1);
    QCOMPARE(library->brokenReferences(), QStringList());
    QCOMPARE(firstDifference(*loaded(), *experiment), QString());
}

void DamagedExperimentsTest::writingMendsNumbers()
{
    damage("UPDATE ResultSet SET RegenPeriod = 9e999, Num = 'many'");
    damage("UPDATE ResultantMorphology SET Frequency = 'nan'");
    damage("UPDATE ExperimentDrug SET StartTime = 'nan', EndTime = -9e999");
    QCOMPARE(loaded()->submit(library->db()), 1);
    PlainSqlite file(library->fileName());
    QCOMPARE(file.dump("ResultSet"), QStringList({"1 1 0 0.0", "2 1 0 0.0"}));
    QCOMPARE(file.dump("ResultantMorphology").first(), QStringLiteral("1 1 2 0.0"));
    QCOMPARE(file.dump("ExperimentDrug").first(), QStringLiteral("1 1 1 0.0 0.0"));
}

void DamagedExperimentsTest::equalsNothingWithoutItsReferences()
{
    QVERIFY(*loaded() == *loaded());
    damage("DELETE FROM Species");
    QVERIFY(!(*loaded() == *loaded()));
}

void DamagedExperimentsTest::missingExperimentIsEmpty()
{
    const std::unique_ptr<Experiment> experiment = loaded(99);
    QCOMPARE(experimentLines(*experiment, Ids::With),
             QStringList({" #99", "no manipulation", "no publication", "no species"}));
}

QTEST_GUILESS_MAIN(DamagedExperimentsTest)
#include "DamagedExperimentsTest.moc"
