#include "db/PlainSqlite.h"
#include "experiment/ExperimentDrugsWidget.h"
#include "experiment/ExperimentForm.h"
#include "experiment/ExperimentRNAiWidget.h"
#include "experiment/Parts.h"
#include "experiment/ResultSetWidget.h"
#include "experiment/ResultSetsWidget.h"
#include "experiment/ResultantMorphologyWidget.h"
#include "manipulation/EDGAction.h"
#include "manipulation/ManipulationForm.h"
#include "manipulation/ManipulationGraphView.h"
#include "manipulation/ManipulationView.h"
#include "manipulation/Pointer.h"
#include "model/ExperimentLines.h"
#include "model/SmallExperiments.h"
#include "morphology/ChooserParts.h"
#include "support/TemporaryLibrary.h"

#include <QSettings>
#include <QSpinBox>
#include <QTableWidget>

#include <functional>

using namespace Planaria;

namespace {

const auto noManipulation =
    warning("Manipulation is empty", "The manipulation of an experiment cannot be left blank. "
                                     "Please, specify a manipulation for the experiment.");
const auto noPublication =
    warning("Publication is empty", "The publication of an experiment cannot be left blank. "
                                    "Please, specify a publication for the experiment.");
const auto noSpecies =
    warning("Species is empty", "The species of an experiment cannot be left blank. Please, "
                                "specify a species for the experiment.");
const auto noName = warning("Name is empty", "The name of an experiment cannot be left blank. "
                                             "Please, specify a name for this experiment.");
const auto takenName =
    warning("Experiment with same name found",
            "The database already contains an experiment with the same name. Please, specify a "
            "different name for this experiment.");
const auto noMorphology =
    warning("No morphology defined",
            "The resultant  morphologies of a result set cannot be left blank. Please, specify the "
            "resultant morphologies for the result set.");
const auto wrongFrequencies = warning(
    "Wrong frequencies", "The frequencies of the resultant morphologies of a result set should sum "
                         "1. Please, adjust the frequencies to sum 1.");
const auto duplicatedPeriod =
    warning("Regeneration period duplicated",
            "Two result sets cannot have the same regeneration period. Please, specify different "
            "regeneration periods for every  result set.");

} // namespace

/// A researcher records one experiment in a library without any element, and makes all that it
/// needs on the way.
class ComposedExperimentTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isRefusedUntilItIsWhole();
    void isStoredAsItWasComposed();
    void opensAgainAsItWasStored();
    void leavesTheFileAsItIsWhenNothingIsChanged();
    void leavesOnlyWhatStandsForItselfWhenItIsCancelled_data();
    void leavesOnlyWhatStandsForItselfWhenItIsCancelled();

private:
    void open(std::unique_ptr<Experiment> edited);
    /// The steps of the work, in order; each takes the form where the one before has left it.
    static QList<std::pair<const char *, std::function<void(ComposedExperimentTest *)>>> steps();
    void composeAll();

    void makeManipulation();
    void makePublication();
    void makeSpecies();
    void typeName() { typeInto(form->findChild<QLineEdit *>(), "Head regeneration"); }
    void addDrugs();
    void addRNAi();
    void addResults();
    void addSecondResults();

    void newWordIn(const QWidget *area, const QString &name);
    void typeTime(int row, int column, const QString &text);
    [[nodiscard]] QList<ResultSetWidget *> sets() const;
    void newMorphologyIn(ResultSetWidget *set, const QString &name, const QString &frequency);
    void setNumbers(ResultSetWidget *set, const QString &worms, const QString &period);

    void press(QDialogButtonBox::StandardButton which);
    void expectRefusal(const ModalAnswerer::Box &expected);
    bool accept();

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<Experiment> experiment;
    std::unique_ptr<ExperimentForm> form;
};

void ComposedExperimentTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
}

void ComposedExperimentTest::cleanup()
{
    form.reset();
    experiment.reset();
    QCOMPARE(library->brokenReferences(), QStringList());
}

void ComposedExperimentTest::open(std::unique_ptr<Experiment> edited)
{
    form.reset();
    experiment = std::move(edited);
    form = std::make_unique<ExperimentForm>(experiment.get(), library->db(), nullptr);
    form->show();
    form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(form.get()));
}

// --- The work ---

QList<std::pair<const char *, std::function<void(ComposedExperimentTest *)>>>
ComposedExperimentTest::steps()
{
    using Test = ComposedExperimentTest;
    return {{"a manipulation", &Test::makeManipulation},
            {"a publication", &Test::makePublication},
            {"a species", &Test::makeSpecies},
            {"a name", &Test::typeName},
            {"drugs", &Test::addDrugs},
            {"RNAi", &Test::addRNAi},
            {"results", &Test::addResults},
            {"more results", &Test::addSecondResults}};
}

void ComposedExperimentTest::composeAll()
{
    open(std::make_unique<Experiment>());
    for (const auto &[name, step] : steps())
        step(this);
}

/// Irradiates the wild type, with which a manipulation starts.
void ComposedExperimentTest::makeManipulation()
{
    ModalAnswerer answerer;
    answerer.expectDialog([](QDialog *dialog) {
        auto *tree = dialog->findChild<ManipulationGraphView *>();
        ManipulationAction *root =
            dialog->findChild<ManipulationView *>()->manipulation()->rootAction();
        const Pointer pointer(tree);
        pointer.click(tree->node(root)->pos());
        for (QAction *action : tree->actions()) {
            if (action->text().contains("irradiation", Qt::CaseInsensitive))
                action->trigger();
        }
        typeInto(dialog->findChild<QLineEdit *>(), "Irradiated");
        QTest::mouseClick(dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
    });
    Planaria::press(form.get(), "New", "Manipulation");
    QCOMPARE(answerer.problems(), QStringList());
}

void ComposedExperimentTest::makePublication()
{
    ModalAnswerer answerer;
    answerer.expectDialog([](QDialog *dialog) {
        const QList<QLineEdit *> edits = dialog->findChildren<QLineEdit *>();
        typeInto(edits.at(0), "On planarians");
        typeInto(edits.at(1), "https://planarians.example/1");
        typeNumber(dialog->findChild<QSpinBox *>(), "1898");
        QTest::mouseClick(dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
    });
    Planaria::press(form.get(), "New", "Publication");
    QCOMPARE(answerer.problems(), QStringList());
}

void ComposedExperimentTest::makeSpecies()
{
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "Planaria maculata");
    Planaria::press(form.get(), "New", "Species");
    QCOMPARE(answerer.problems(), QStringList());
}

void ComposedExperimentTest::newWordIn(const QWidget *area, const QString &name)
{
    ModalAnswerer answerer;
    expectInput(&answerer, name);
    Planaria::press(area, "New");
    QCOMPARE(answerer.problems(), QStringList());
}

void ComposedExperimentTest::typeTime(int row, int column, const QString &text)
{
    auto *table = form->findChild<ExperimentDrugsWidget *>()->findChild<QTableWidget *>();
    settle();
    const QPoint place = table->visualItemRect(table->item(row, column)).center();
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    auto *editor = table->viewport()->findChild<QLineEdit *>();
    typeInto(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    settle();
}

void ComposedExperimentTest::addDrugs()
{
    const QWidget *drugs = form->findChild<ExperimentDrugsWidget *>();
    newWordIn(drugs, "praziquantel");
    newWordIn(drugs, "colchicine");
    typeTime(0, 1, "1");
    typeTime(0, 2, "3.5");
    typeTime(1, 2, "0.25"); // whose start stays empty
}

void ComposedExperimentTest::addRNAi()
{
    newWordIn(form->findChild<ExperimentRNAiWidget *>(), "beta-catenin");
}

QList<ResultSetWidget *> ComposedExperimentTest::sets() const
{
    return form->findChildren<ResultSetWidget *>();
}

void ComposedExperimentTest::setNumbers(ResultSetWidget *set, const QString &worms,
                                        const QString &period)
{
    typeNumber(set->findChild<QSpinBox *>(), worms);
    typeNumber(set->findChild<QDoubleSpinBox *>(), period);
}

void ComposedExperimentTest::newMorphologyIn(ResultSetWidget *set, const QString &name,
                                             const QString &frequency)
{
    Planaria::press(set, "Add morph.");
    settle();
    auto *result = set->findChildren<ResultantMorphologyWidget *>().last();
    if (!name.isEmpty()) {
        ModalAnswerer answerer;
        expectMorphologyForm(&answerer, name);
        Planaria::press(result, "Copy");
        QCOMPARE(answerer.problems(), QStringList());
    }
    typeNumber(result->findChild<QDoubleSpinBox *>(), frequency);
}

void ComposedExperimentTest::addResults()
{
    setNumbers(sets().first(), "24", "7");
    newMorphologyIn(sets().first(), "Two heads", "0.75");
    newMorphologyIn(sets().first(), "Cyclops", "0.25");
}

void ComposedExperimentTest::addSecondResults()
{
    Planaria::press(sets().first(), "New");
    settle();
    setNumbers(sets().last(), "20", "14");
    newMorphologyIn(sets().last(), "", "1"); // the wild type
}

void ComposedExperimentTest::press(QDialogButtonBox::StandardButton which)
{
    QTest::mouseClick(form->findChild<QDialogButtonBox *>()->button(which), Qt::LeftButton);
}

void ComposedExperimentTest::expectRefusal(const ModalAnswerer::Box &expected)
{
    ModalAnswerer answerer;
    answerer.expectBox(expected, QMessageBox::Ok);
    press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(form->isVisible());
}

bool ComposedExperimentTest::accept()
{
    press(QDialogButtonBox::Ok);
    return form->isHidden() && form->result() == QDialog::Accepted;
}

// --- What comes of it ---

void ComposedExperimentTest::isRefusedUntilItIsWhole()
{
    open(std::make_unique<Experiment>());
    expectRefusal(noManipulation);
    makeManipulation();
    expectRefusal(noPublication);
    makePublication();
    expectRefusal(noSpecies);
    makeSpecies();
    expectRefusal(noName);
    typeName();
    std::unique_ptr<Experiment> other = bareExperiment("Head regeneration");
    other->manipulation()->setName("other cut");
    QVERIFY(other->submit(library->db()) > 0);
    expectRefusal(takenName);
    typeInto(form->findChild<QLineEdit *>(), "Another regeneration");
    expectRefusal(noMorphology);
    newMorphologyIn(sets().first(), "Two heads", "0.75");
    expectRefusal(wrongFrequencies);
    newMorphologyIn(sets().first(), "Cyclops", "0.25");
    Planaria::press(sets().first(), "Copy");
    settle();
    expectRefusal(duplicatedPeriod);
    setNumbers(sets().last(), "20", "14");
    QVERIFY(accept());
    QVERIFY(experiment->submit(library->db()) > 0);
}

void ComposedExperimentTest::isStoredAsItWasComposed()
{
    composeAll();
    QVERIFY(accept());
    QCOMPARE(library->count("Experiment"), 0);
    QCOMPARE(experiment->submit(library->db()), 1);

    PlainSqlite file(library->fileName());
    QCOMPARE(file.dump("Experiment"), QStringList("1 'Head regeneration' 1 1 1"));
    QCOMPARE(file.dump("Publication"),
             QStringList("1 'On planarians' 'https://planarians.example/1' 1898"));
    QCOMPARE(file.dump("Species"), QStringList("1 'Planaria maculata'"));
    QCOMPARE(file.texts("SELECT Name FROM Manipulation"), QStringList("Irradiated"));
    QCOMPARE(file.count("IrradiationAction"), 1);
    QCOMPARE(file.dump("Drug"), QStringList({"1 'praziquantel'", "2 'colchicine'"}));
    QCOMPARE(file.dump("ExperimentDrug"), QStringList({"1 1 1 1.0 3.5", "2 1 2 0.0 0.25"}));
    QCOMPARE(file.texts("SELECT Name FROM RNAi"), QStringList("beta-catenin"));
    QCOMPARE(file.dump("ExperimentRNAi"), QStringList("1 1 1"));
    QCOMPARE(file.dump("ResultSet"), QStringList({"1 1 24 7.0", "2 1 20 14.0"}));
    QCOMPARE(file.texts("SELECT Name FROM Morphology ORDER BY Id").mid(1),
             QStringList({"Two heads", "Cyclops"}));
    QCOMPARE(file.dump("ResultantMorphology"),
             QStringList({"1 1 2 0.75", "2 1 3 0.25", "3 2 1 1.0"}));
}

void ComposedExperimentTest::opensAgainAsItWasStored()
{
    composeAll();
    QVERIFY(accept());
    QCOMPARE(experiment->submit(library->db()), 1);
    const QStringList composed = experimentLines(*experiment, Ids::With);

    open(std::make_unique<Experiment>(1, library->db()));
    QCOMPARE(experimentLines(*experiment, Ids::With), composed);
    QCOMPARE(form->windowTitle(), "Edit experiment");
    QCOMPARE(form->findChild<QLineEdit *>()->text(), "Head regeneration");
    const auto *table = form->findChild<ExperimentDrugsWidget *>()->findChild<QTableWidget *>();
    QStringList times;
    for (int row = 0; row < 2; ++row) {
        for (const int column : {1, 2})
            times += table->item(row, column)->text();
    }
    QCOMPARE(times, QStringList({"1", "3.5", "0", "0.25"}));
    QStringList shown;
    for (const ResultSetWidget *set : sets()) {
        shown += set->title() + ' ' + set->findChild<QSpinBox *>()->text();
        for (const auto *result : set->findChildren<ResultantMorphologyWidget *>())
            shown += ChooserParts(result->findChild<MorphologyChooser *>()).chosenName() + ' ' +
                     result->findChild<QDoubleSpinBox *>()->text();
    }
    const QString wildType = library->value("SELECT Name FROM Morphology").toString();
    QCOMPARE(shown, QStringList({"Result set A 24", "Two heads 0.75", "Cyclops 0.25",
                                 "Result set B 20", wildType + " 1.00"}));
}

void ComposedExperimentTest::leavesTheFileAsItIsWhenNothingIsChanged()
{
    composeAll();
    QVERIFY(accept());
    QCOMPARE(experiment->submit(library->db()), 1);
    PlainSqlite file(library->fileName());
    const QStringList before = file.dump(file.tables());

    open(std::make_unique<Experiment>(1, library->db()));
    for (QWidget *stop : tabStops(form.get(), form->findChild<QLineEdit *>()))
        QVERIFY(stop->isVisible());
    QVERIFY(accept());
    QCOMPARE(experiment->submit(library->db()), 1);
    QCOMPARE(file.dump(file.tables()), before);
}

void ComposedExperimentTest::leavesOnlyWhatStandsForItselfWhenItIsCancelled_data()
{
    QTest::addColumn<int>("stage");
    for (int stage = 0; stage <= steps().size(); ++stage)
        QTest::addRow("after %s", stage == 0 ? "nothing" : steps()[stage - 1].first) << stage;
}

void ComposedExperimentTest::leavesOnlyWhatStandsForItselfWhenItIsCancelled()
{
    QFETCH(const int, stage);
    open(std::make_unique<Experiment>());
    for (int i = 0; i < stage; ++i)
        steps()[i].second(this);
    press(QDialogButtonBox::Cancel);
    QVERIFY(form->isHidden());
    QCOMPARE(form->result(), static_cast<int>(QDialog::Rejected));
    form.reset();
    experiment.reset();

    for (const char *table :
         {"Experiment", "ExperimentDrug", "ExperimentRNAi", "ResultSet", "ResultantMorphology"})
        QCOMPARE(library->count(table), 0);
    QCOMPARE(library->count("Manipulation"), stage >= 1 ? 1 : 0);
    QCOMPARE(library->count("Publication"), stage >= 2 ? 1 : 0);
    QCOMPARE(library->count("Species"), stage >= 3 ? 1 : 0);
    QCOMPARE(library->count("Drug"), stage >= 5 ? 2 : 0);
    QCOMPARE(library->count("RNAi"), stage >= 6 ? 1 : 0);
    QCOMPARE(library->count("Morphology"), stage >= 7 ? 3 : (stage >= 1 ? 1 : 0));
}

QTEST_MAIN(ComposedExperimentTest)
#include "ComposedExperimentTest.moc"
