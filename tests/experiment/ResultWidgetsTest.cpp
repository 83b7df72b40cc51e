#include "experiment/Parts.h"
#include "experiment/ResultSetWidget.h"
#include "experiment/ResultSetsWidget.h"
#include "experiment/ResultantMorphologyWidget.h"
#include "model/SmallExperiments.h"
#include "morphology/ChooserParts.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"
#include "widgets/ComboBoxNoWheel.h"
#include "widgets/DoubleSpinBoxNoWheel.h"
#include "widgets/SpinBoxNoWheel.h"
#include "widgets/TurnWheel.h"

#include <QBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>

#include <algorithm>
#include <optional>

using namespace Planaria;

namespace {

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

/// The file holds four worms: "Wild type" (row 1, with which new results begin), "Cyclops" (2),
/// "Two heads" (3) and "Headless" (4). The experiment is new and opens in open().
class ResultWidgetsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void opensANewExperimentWithOneEmptySet();
    void namesSetsByLettersFromTwoOn();
    void startsAnewWhereTheLastSetIsRemoved();
    void showsSetsInTheOrderOfTheirPeriods();
    void keepsASetInPlaceWhenItsPeriodChanges();
    void showsMorphologiesInTheOrderOfTheirFrequencies();
    void copiesASetWithoutItsRows();
    void scrollsToTheSetThatIsNew();
    void buildsASetAsAColumnBesideItsMorphologies();
    void buildsAMorphologyAsButtonsBesideItsDrawing();
    void leadsTabThroughTheSets();
    void leavesTheWheelToTheScrollArea();

    void takesNumbersAsTheyAreTyped();
    void keepsNumbersThatItCannotShow();
    void addsTheWildType();
    void addsAWildTypeThatIsMadeOnTheWay();
    void addsTheStoredWildTypeWhereRowOneIsGone();
    void removesAMorphology();

    void shareOneListOfMorphologies();
    void takesTheMorphologyThatIsChosen();
    void keepsTheMorphologyThatIsChosenAlready();
    void storesWhatTheUserMakes_data();
    void storesWhatTheUserMakes();
    void leavesAllAsItWasWhenTheUserCancels_data();
    void leavesAllAsItWasWhenTheUserCancels();
    void showsAnEditedMorphologyWhereverItStands();
    void tellsOfEachChangeOnce();
    void hearsOfChangesFromElsewhere();
    void forgetsWhatIsRemoved();
    void leavesAMorphologyThatIsLostAlone();

    void acceptsFrequenciesCloseToOne_data();
    void acceptsFrequenciesCloseToOne();
    void asksForMorphologies();
    void asksForOtherPeriodsAfterEachSetIsFine();
    void asksForThePeriodOnceTheFirstSetsAreFine();
    void scrollsToTheSetThatItAsksFor();

private:
    int store(const QString &name);
    void open();
    /// A set with one result for each of these worms, which share the frequency.
    ResultSet *addResults(double period, const QList<int> &worms);

    [[nodiscard]] QList<ResultSetWidget *> sets() const;
    [[nodiscard]] QStringList titles() const;
    [[nodiscard]] QList<double> periods() const;
    [[nodiscard]] QList<ResultantMorphologyWidget *> morphologies(int set = 0) const;
    [[nodiscard]] ChooserParts parts(int set, int morphology) const;
    /// The worms that a set draws.
    [[nodiscard]] QStringList drawn(int set = 0) const;
    [[nodiscard]] static QStringList names(const ResultSet *set);
    [[nodiscard]] static QWidget *labelled(const QWidget *area, const QString &label);
    [[nodiscard]] static QDoubleSpinBox *numberBox(const QWidget *area, const QString &label);
    /// Those of @p parts that do not stand below the one before.
    [[nodiscard]] static QStringList outOfPlace(const QList<const QWidget *> &parts);
    [[nodiscard]] QList<const Morphology *> morphologyObjects() const;
    void pressInMorphology(const QString &text, const QString &answer, int set, int morphology);
    bool check(const std::optional<ModalAnswerer::Box> &refusal);

    StatementLog log; // before any connection opens
    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<Experiment> experiment;
    std::unique_ptr<ResultSetsWidget> results;
};

void ResultWidgetsTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
    for (const char *name : {"Wild type", "Cyclops", "Two heads", "Headless"})
        store(name);
    experiment = std::make_unique<Experiment>();
}

void ResultWidgetsTest::cleanup()
{
    results.reset();
    experiment.reset();
    QCOMPARE(library->brokenReferences(), QStringList());
}

int ResultWidgetsTest::store(const QString &name)
{
    const std::unique_ptr<Morphology> worm(newWorm(name));
    return worm->submit(library->db());
}

void ResultWidgetsTest::open()
{
    results = std::make_unique<ResultSetsWidget>(experiment.get(), library->db(), nullptr);
    results->resize(700, 400);
    results->show();
    results->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(results.get()));
}

ResultSet *ResultWidgetsTest::addResults(double period, const QList<int> &worms)
{
    ResultSet *set = addSet(experiment.get(), 10, period);
    for (const int worm : worms) {
        auto morphology = std::make_unique<Morphology>(worm, library->db(), false);
        set->addResultantMorphology(morphology.release())
            ->setFrequency(1.0 / static_cast<double>(worms.size()));
    }
    return set;
}

QList<ResultSetWidget *> ResultWidgetsTest::sets() const
{
    QList<ResultSetWidget *> shown;
    const QLayout *layout = results->widget()->layout();
    for (int i = 0; i < layout->count(); ++i)
        shown += qobject_cast<ResultSetWidget *>(layout->itemAt(i)->widget());
    return shown;
}

QStringList ResultWidgetsTest::titles() const
{
    QStringList texts;
    for (const ResultSetWidget *set : sets())
        texts += set->title();
    return texts;
}

QList<double> ResultWidgetsTest::periods() const
{
    QList<double> days;
    for (const ResultSetWidget *set : sets())
        days += numberBox(set, "Reg. period (d):")->value();
    return days;
}

QList<ResultantMorphologyWidget *> ResultWidgetsTest::morphologies(int set) const
{
    QList<ResultantMorphologyWidget *> shown;
    const QLayout *layout = sets().at(set)->layout()->itemAt(1)->widget()->layout();
    for (int i = 0; layout->itemAt(i)->widget(); ++i) // the last is the stretch
        shown += qobject_cast<ResultantMorphologyWidget *>(layout->itemAt(i)->widget());
    return shown;
}

ChooserParts ResultWidgetsTest::parts(int set, int morphology) const
{
    return ChooserParts(morphologies(set).at(morphology)->findChild<MorphologyChooser *>());
}

QStringList ResultWidgetsTest::drawn(int set) const
{
    QStringList texts;
    for (int i = 0; i < morphologies(set).size(); ++i)
        texts += parts(set, i).view()->morphology()->name();
    return texts;
}

QStringList ResultWidgetsTest::names(const ResultSet *set)
{
    QStringList texts;
    for (const ResultantMorphology *result : set->resultantMorphologies())
        texts += result->morphology()->name();
    return texts;
}

QWidget *ResultWidgetsTest::labelled(const QWidget *area, const QString &label)
{
    for (const auto *text : area->findChildren<QLabel *>()) {
        if (text->text() == label)
            return text->buddy();
    }
    qFatal("no label \"%s\"", qUtf8Printable(label));
}

QDoubleSpinBox *ResultWidgetsTest::numberBox(const QWidget *area, const QString &label)
{
    return qobject_cast<QDoubleSpinBox *>(labelled(area, label));
}

QStringList ResultWidgetsTest::outOfPlace(const QList<const QWidget *> &parts)
{
    QStringList misplaced;
    for (qsizetype i = 1; i < parts.size(); ++i) {
        if (parts[i]->y() < parts[i - 1]->geometry().bottom())
            misplaced += QStringLiteral("part %1").arg(i);
    }
    return misplaced;
}

QList<const Morphology *> ResultWidgetsTest::morphologyObjects() const
{
    QList<const Morphology *> objects;
    for (const ResultSet *set : experiment->resultSets()) {
        for (const ResultantMorphology *result : set->resultantMorphologies())
            objects += result->morphology();
    }
    return objects;
}

/// Presses a button of a morphology and answers the editor of worms with @p answer as its name.
void ResultWidgetsTest::pressInMorphology(const QString &text, const QString &answer, int set,
                                          int morphology)
{
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, answer);
    press(morphologies(set).at(morphology), text);
    QCOMPARE(answerer.problems(), QStringList());
}

/// Whether the results are fine; expects to hear the one reason why not.
bool ResultWidgetsTest::check(const std::optional<ModalAnswerer::Box> &refusal)
{
    ModalAnswerer answerer;
    if (refusal)
        answerer.expectBox(*refusal, QMessageBox::Ok);
    const bool correct = results->isDataCorrect();
    if (!answerer.problems().isEmpty())
        qFatal("%s", qUtf8Printable(answerer.problems().join("; ")));
    return correct;
}

// --- Sets ---

void ResultWidgetsTest::opensANewExperimentWithOneEmptySet()
{
    open();
    QCOMPARE(titles(), QStringList("Result set"));
    QCOMPARE(morphologies().size(), 0);
    QCOMPARE(experiment->resultSets().size(), 1);
    QCOMPARE(results->frameStyle(), 0);
    QVERIFY(results->widgetResizable());
}

void ResultWidgetsTest::namesSetsByLettersFromTwoOn()
{
    open();
    press(results.get(), "New");
    QCOMPARE(titles(), QStringList({"Result set A", "Result set B"}));
    press(sets().at(0), "New");
    QCOMPARE(titles(), QStringList({"Result set A", "Result set B", "Result set C"}));
    press(sets().at(1), "Remove");
    QCOMPARE(titles(), QStringList({"Result set A", "Result set B"}));
    press(sets().at(0), "Remove");
    QCOMPARE(titles(), QStringList("Result set"));
    settle();
    QCOMPARE(results->findChildren<ResultSetWidget *>().size(), 1);
    QCOMPARE(experiment->resultSets().size(), 1);
    QCOMPARE(sets().first()->set(), experiment->resultSets().first());
}

void ResultWidgetsTest::startsAnewWhereTheLastSetIsRemoved()
{
    const ResultSet *former = addResults(7.0, {1});
    open();
    press(sets().at(0), "Remove");
    settle();
    QCOMPARE(titles(), QStringList("Result set"));
    QCOMPARE(periods(), QList<double>({0.0}));
    QCOMPARE(morphologies().size(), 0);
    QCOMPARE(experiment->resultSets().size(), 1);
    QVERIFY(experiment->resultSets().first() != former);
}

void ResultWidgetsTest::showsSetsInTheOrderOfTheirPeriods()
{
    const ResultSet *late = addResults(14.0, {1});
    const ResultSet *first = addResults(2.5, {2});
    const ResultSet *early = addResults(7.0, {3});
    const ResultSet *second = addResults(2.5, {4});
    open();
    QCOMPARE(periods(), QList<double>({2.5, 2.5, 7.0, 14.0}));
    QList<const ResultSet *> shown;
    for (const ResultSetWidget *set : sets())
        shown += set->set();
    QCOMPARE(shown, QList<const ResultSet *>({second, first, early, late}));
    QCOMPARE(experiment->resultSets().first(), late); // the order of the list stays
}

void ResultWidgetsTest::keepsASetInPlaceWhenItsPeriodChanges()
{
    addResults(7.0, {1});
    addResults(14.0, {2});
    open();
    typeNumber(numberBox(sets().at(0), "Reg. period (d):"), "21");
    QCOMPARE(periods(), QList<double>({21.0, 14.0}));
    open();
    QCOMPARE(periods(), QList<double>({14.0, 21.0}));
}

void ResultWidgetsTest::showsMorphologiesInTheOrderOfTheirFrequencies()
{
    ResultSet *set = addResults(7.0, {1, 2, 3, 4});
    const QList<double> frequencies{0.2, 0.5, 0.2, 0.1};
    for (int i = 0; i < frequencies.size(); ++i)
        set->resultantMorphologies().at(i)->setFrequency(frequencies[i]);
    open();
    QCOMPARE(drawn(), QStringList({"Cyclops", "Two heads", "Wild type", "Headless"}));
    QCOMPARE(names(set), QStringList({"Wild type", "Cyclops", "Two heads", "Headless"}));

    press(sets().at(0), "Add morph.");
    QCOMPARE(drawn().last(), "Wild type"); // a new one comes last
}

void ResultWidgetsTest::copiesASetWithoutItsRows()
{
    const ResultSet *source = addResults(7.0, {2, 3});
    experiment->setName("experiment");
    experiment->setManipulation(newManipulation("cut"));
    experiment->setPublication(newPublication("paper"));
    experiment->setSpecies(newWord<Species>("species"));
    QVERIFY(experiment->submit(library->db()) > 0);
    open();
    press(sets().at(0), "Copy");
    QCOMPARE(experiment->resultSets().size(), 2);
    const ResultSet *copy = experiment->resultSets().last();
    QVERIFY(*copy == *source);
    QCOMPARE(copy->num(), source->num());
    QCOMPARE(copy->id(), 0);
    QCOMPARE(copy->resultantMorphologies().first()->id(), 0);
    QCOMPARE(copy->resultantMorphologies().first()->morphology()->id(), 2);
    QCOMPARE(sets().last()->set(), copy);
    QCOMPARE(titles(), QStringList({"Result set A", "Result set B"}));
}

void ResultWidgetsTest::scrollsToTheSetThatIsNew()
{
    addResults(1.0, {1});
    addResults(2.0, {2});
    addResults(3.0, {3});
    open();
    const QScrollBar *bar = results->verticalScrollBar();
    QCOMPARE(bar->value(), 0);
    press(sets().at(0), "New");
    QTRY_VERIFY(bar->value() > 0);
    QCOMPARE(bar->value(), bar->maximum());
    QTRY_VERIFY(sets().last()->visibleRegion().boundingRect().height() > 100);
}

void ResultWidgetsTest::buildsASetAsAColumnBesideItsMorphologies()
{
    addResults(7.0, {1, 2});
    open();
    const ResultSetWidget *set = sets().first();
    const auto *row = qobject_cast<QBoxLayout *>(set->layout());
    QCOMPARE(row->stretch(1), 1);
    const auto *frame = qobject_cast<QFrame *>(row->itemAt(1)->widget());
    QCOMPARE(frame->frameShape(), QFrame::NoFrame);
    QCOMPARE(frame->layout()->contentsMargins(), QMargins());
    QCOMPARE(frame->layout()->spacing(), 5);
    const auto *num = set->findChild<SpinBoxNoWheel *>();
    QCOMPARE(labelled(set, "Num worms:"), num);
    QCOMPARE(num->minimum(), 1);
    QCOMPARE(num->maximum(), 100000);
    const QDoubleSpinBox *period = numberBox(set, "Reg. period (d):");
    QCOMPARE(period->minimum(), 0.0);
    QCOMPARE(period->maximum(), 100000.0);
    QStringList texts;
    for (const auto *inner :
         set->findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly))
        texts += inner->text();
    QCOMPARE(texts, QStringList({"Add morph.", "Remove", "Copy", "New"}));
    QCOMPARE(outOfPlace({num, period, button(set, "Add morph."), button(set, "Remove"),
                         button(set, "Copy"), button(set, "New")}),
             QStringList());
    const QSpacerItem *gap = row->itemAt(0)->layout()->itemAt(2)->spacerItem();
    QVERIFY(gap && gap->sizeHint() == QSize(0, 5));
    QVERIFY(morphologies().at(0)->x() < morphologies().at(1)->x());
    const auto *inFrame = qobject_cast<QBoxLayout *>(frame->layout());
    QCOMPARE(inFrame->stretch(inFrame->count() - 1), 1);
    QCOMPARE(results->widget()->layout()->contentsMargins(), QMargins());
    QCOMPARE(results->widget()->layout()->spacing(), 5);
}

void ResultWidgetsTest::buildsAMorphologyAsButtonsBesideItsDrawing()
{
    addResults(7.0, {1});
    open();
    const ResultantMorphologyWidget *box = morphologies().first();
    QCOMPARE(buttonTexts(box), QStringList({"Edit", "Copy", "New", "Remove"}));
    const ChooserParts chooser = parts(0, 0);
    QVERIFY(qobject_cast<ComboBoxNoWheel *>(chooser.list()));
    QCOMPARE(chooser.list()->minimumContentsLength(), 5);
    QCOMPARE(chooser.list()->toolTip(), "<p>Wild type</p>");
    QCOMPARE(chooser.view()->minimumHeight(), 100);
    const QDoubleSpinBox *frequency = numberBox(box, "Frequency:");
    QCOMPARE(frequency->minimum(), 0.0);
    QCOMPARE(frequency->maximum(), 1.0);
    QCOMPARE(frequency->singleStep(), 0.05);

    QVERIFY(chooser.list()->geometry().bottom() < chooser.view()->y());
    const QList<const QWidget *> column{button(box, "Edit"), button(box, "Copy"),
                                        button(box, "New"), frequency, button(box, "Remove")};
    QCOMPARE(outOfPlace(column), QStringList());
    for (const QWidget *part : column)
        QVERIFY(part->x() > chooser.view()->geometry().right());
}

void ResultWidgetsTest::leadsTabThroughTheSets()
{
    addResults(1.0, {1, 2});
    addResults(2.0, {3});
    open();
    press(sets().at(0), "Add morph."); // made last, but not reached last
    settle();
    QList<QPoint> places;
    int buttons = 0;
    for (const QWidget *stop :
         tabStops(results.get(), sets().first()->findChild<SpinBoxNoWheel *>())) {
        const ResultSetWidget *set = nullptr;
        for (ResultSetWidget *candidate : sets()) {
            if (candidate->isAncestorOf(stop))
                set = candidate;
        }
        if (!set)
            continue; // the scroll area itself
        buttons += qobject_cast<const QPushButton *>(stop) ? 1 : 0;
        int column = -1;
        const QList<ResultantMorphologyWidget *> boxes =
            morphologies(static_cast<int>(sets().indexOf(set)));
        for (int i = 0; i < boxes.size(); ++i) {
            if (boxes[i]->isAncestorOf(stop))
                column = i;
        }
        places += QPoint(column, static_cast<int>(sets().indexOf(set)));
    }
    QList<QPoint> sorted = places;
    std::stable_sort(sorted.begin(), sorted.end(), [](const QPoint &a, const QPoint &b) {
        return std::pair(a.y(), a.x()) < std::pair(b.y(), b.x());
    });
    QCOMPARE(places, sorted);
    QCOMPARE(buttons, 2 * 4 + 4 * 4);
}

void ResultWidgetsTest::leavesTheWheelToTheScrollArea()
{
    addResults(1.0, {2});
    addResults(2.0, {3});
    addResults(3.0, {4});
    open();
    const ResultSetWidget *set = sets().first();
    for (QWidget *widget :
         QList<QWidget *>{parts(0, 0).list(), numberBox(set, "Frequency:"),
                          set->findChild<SpinBoxNoWheel *>(), numberBox(set, "Reg. period (d):")}) {
        results->verticalScrollBar()->setValue(0);
        results->horizontalScrollBar()->setValue(0);
        widget->setFocus();
        turnWheel(widget, wheelDown);
        QVERIFY(results->verticalScrollBar()->value() > 0);
    }
    const ResultSet *shown = experiment->resultSets().first();
    QCOMPARE(names(shown), QStringList("Cyclops"));
    QCOMPARE(shown->num(), 10);
    QCOMPARE(shown->regenPeriod(), 1.0);
    QCOMPARE(shown->resultantMorphologies().first()->frequency(), 1.0);
}

// --- Numbers ---

void ResultWidgetsTest::takesNumbersAsTheyAreTyped()
{
    addResults(7.0, {1, 2});
    open();
    const ResultSet *set = experiment->resultSets().first();
    typeNumber(sets().first()->findChild<SpinBoxNoWheel *>(), "25");
    typeNumber(numberBox(sets().first(), "Reg. period (d):"), "3.5");
    const ResultantMorphology *result = morphologies().at(1)->result();
    typeNumber(numberBox(morphologies().at(1), "Frequency:"), "0.35");
    QCOMPARE(set->num(), 25);
    QCOMPARE(set->regenPeriod(), 3.5);
    QCOMPARE(result->frequency(), 0.35);
    QCOMPARE(morphologies().at(0)->result()->frequency(), 0.5);
}

void ResultWidgetsTest::keepsNumbersThatItCannotShow()
{
    ResultSet *set = addResults(7.125, {1});
    set->setNum(0);
    set->resultantMorphologies().first()->setFrequency(0.3333);
    open();
    auto *num = sets().first()->findChild<SpinBoxNoWheel *>();
    QCOMPARE(num->value(), 1);
    for (QWidget *stop : tabStops(results.get(), num))
        QVERIFY(stop->isVisible());
    QCOMPARE(set->num(), 0);
    QCOMPARE(set->regenPeriod(), 7.125);
    QCOMPARE(set->resultantMorphologies().first()->frequency(), 0.3333);
    QTest::keyClick(num, Qt::Key_Up);
    QCOMPARE(set->num(), 2);
}

void ResultWidgetsTest::addsTheWildType()
{
    open();
    press(results.get(), "Add morph.");
    press(results.get(), "Add morph.");
    QCOMPARE(drawn(), QStringList({"Wild type", "Wild type"}));
    QCOMPARE(parts(0, 0).chosenName(), "Wild type");
    const ResultSet *set = experiment->resultSets().first();
    QCOMPARE(set->resultantMorphologies().size(), 2);
    QCOMPARE(set->resultantMorphologies().first()->frequency(), 0.0);
    QCOMPARE(set->resultantMorphologies().first()->morphology()->id(), 1);
}

void ResultWidgetsTest::addsAWildTypeThatIsMadeOnTheWay()
{
    library = std::make_unique<TemporaryLibrary>();
    open();
    press(results.get(), "Add morph.");
    QCOMPARE(library->count("Morphology"), 1);
    const QString name = library->value("SELECT Name FROM Morphology").toString();
    QCOMPARE(parts(0, 0).names(), QStringList(name));
    QCOMPARE(parts(0, 0).chosenName(), name);
}

void ResultWidgetsTest::addsTheStoredWildTypeWhereRowOneIsGone()
{
    QVERIFY(Morphology(1, library->db(), false).erase());
    open();
    for (int i = 0; i < 2; ++i)
        press(results.get(), "Add morph.");
    QCOMPARE(library->count("Morphology"), 4);
    QCOMPARE(drawn(), QStringList({"Wild type", "Wild type"}));
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(parts(0, i).chosenName(), "Wild type");
        QCOMPARE(morphologies().at(i)->result()->morphology()->id(), 5);
    }
}

void ResultWidgetsTest::removesAMorphology()
{
    addResults(7.0, {1, 2, 3});
    open();
    QCOMPARE(drawn(), QStringList({"Two heads", "Cyclops", "Wild type"}));
    press(morphologies().at(1), "Remove");
    settle();
    QCOMPARE(drawn(), QStringList({"Two heads", "Wild type"}));
    QCOMPARE(names(experiment->resultSets().first()), QStringList({"Wild type", "Two heads"}));
    QCOMPARE(results->findChildren<ResultantMorphologyWidget *>().size(), 2);
}

// --- Morphologies ---

void ResultWidgetsTest::shareOneListOfMorphologies()
{
    addResults(7.0, {1, 2});
    addResults(14.0, {3});
    open();
    QCOMPARE(parts(0, 0).list()->model(), parts(0, 1).list()->model());
    QCOMPARE(parts(0, 0).list()->model(), parts(1, 0).list()->model());
    QCOMPARE(parts(1, 0).names(), QStringList({"Cyclops", "Headless", "Two heads", "Wild type"}));
}

void ResultWidgetsTest::takesTheMorphologyThatIsChosen()
{
    const ResultSet *set = addResults(7.0, {1, 2});
    open();
    choose(parts(0, 0).list(), "Headless");
    QCOMPARE(drawn(), QStringList({"Headless", "Wild type"}));
    QCOMPARE(names(set), QStringList({"Wild type", "Headless"}));
    QCOMPARE(set->resultantMorphologies().last()->morphology()->id(), 4);
    QCOMPARE(set->resultantMorphologies().last()->frequency(), 0.5);
}

void ResultWidgetsTest::keepsTheMorphologyThatIsChosenAlready()
{
    addResults(7.0, {2});
    open();
    const QList<const Morphology *> before = morphologyObjects();
    log.take();
    QTest::keyClick(parts(0, 0).list(), Qt::Key_C);
    parts(0, 0).list()->setCurrentIndex(-1);
    parts(0, 0).list()->setCurrentIndex(0);
    QCOMPARE(morphologyObjects(), before);
    QCOMPARE(log.take(), QStringList());
}

void ResultWidgetsTest::storesWhatTheUserMakes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("stored");
    QTest::newRow("edit") << "Edit" << 4;
    QTest::newRow("copy") << "Copy" << 5;
    QTest::newRow("new") << "New" << 5;
}

void ResultWidgetsTest::storesWhatTheUserMakes()
{
    QFETCH(const QString, text);
    QFETCH(const int, stored);
    const ResultSet *set = addResults(7.0, {3, 2});
    addResults(14.0, {4});
    open();
    pressInMorphology(text, "Aardvark", 0, 0);
    QCOMPARE(library->count("Morphology"), stored);
    const Morphology *taken = set->resultantMorphologies().last()->morphology();
    QCOMPARE(taken->name(), "Aardvark");
    QCOMPARE(taken->id(), stored == 5 ? 5 : 2);
    QCOMPARE(parts(0, 0).view()->morphology(), taken);
    QCOMPARE(parts(0, 0).chosenName(), "Aardvark");
    QCOMPARE(parts(0, 1).chosenName(), "Two heads");
    QCOMPARE(parts(1, 0).chosenName(), "Headless");
    QCOMPARE(parts(1, 0).names().first(), "Aardvark");
}

void ResultWidgetsTest::leavesAllAsItWasWhenTheUserCancels_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");
    QTest::newRow("edit") << "Edit"
                          << "Edit morphology"
                          << "Cyclops";
    QTest::newRow("copy") << "Copy"
                          << "New morphology"
                          << "Cyclops - copy";
    QTest::newRow("new") << "New"
                         << "New morphology"
                         << "";
}

void ResultWidgetsTest::leavesAllAsItWasWhenTheUserCancels()
{
    QFETCH(const QString, text);
    QFETCH(const QString, title);
    QFETCH(const QString, name);
    addResults(7.0, {2});
    open();
    const QList<const Morphology *> before = morphologyObjects();
    const QSignalSpy changes(results.get(), &ResultSetsWidget::morphologyChanged);
    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "");
    press(morphologies().first(), text);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->title, title);
    QCOMPARE(seen->name, name);
    QCOMPARE(morphologyObjects(), before);
    QCOMPARE(drawn(), QStringList("Cyclops"));
    QCOMPARE(library->count("Morphology"), 4);
    QCOMPARE(changes.size(), 0);
}

void ResultWidgetsTest::showsAnEditedMorphologyWhereverItStands()
{
    addResults(7.0, {2, 3});
    addResults(14.0, {2});
    addResults(21.0, {4});
    open();
    const QList<const Morphology *> before = morphologyObjects();
    pressInMorphology("Edit", "One eye", 1, 0);
    QCOMPARE(drawn(0), QStringList({"Two heads", "One eye"}));
    QCOMPARE(drawn(1), QStringList("One eye"));
    QCOMPARE(parts(0, 1).chosenName(), "One eye");
    QCOMPARE(names(experiment->resultSets().at(0)), QStringList({"One eye", "Two heads"}));
    // The others keep what they show, and have the new name in their lists.
    QCOMPARE(morphologyObjects().at(1), before.at(1));
    QCOMPARE(morphologyObjects().at(3), before.at(3));
    QCOMPARE(parts(2, 0).chosenName(), "Headless");
    QCOMPARE(parts(2, 0).names(), QStringList({"Headless", "One eye", "Two heads", "Wild type"}));
}

void ResultWidgetsTest::tellsOfEachChangeOnce()
{
    addResults(7.0, {2, 3});
    addResults(14.0, {2});
    open();
    const QSignalSpy all(results.get(), &ResultSetsWidget::morphologyChanged);
    const QSignalSpy first(sets().at(0), &ResultSetWidget::morphologyChanged);
    const QSignalSpy second(sets().at(1), &ResultSetWidget::morphologyChanged);
    const QSignalSpy other(morphologies(1).at(0), &ResultantMorphologyWidget::morphologyChanged);
    pressInMorphology("Edit", "One eye", 0, 1);
    QCOMPARE(all.size(), 1);
    QCOMPARE(all.at(0).at(0).toInt(), 2);
    QCOMPARE(first.size(), 1);
    QCOMPARE(second.size(), 1);
    QCOMPARE(other.size(), 0);
    pressInMorphology("New", "Another", 0, 1); // the way is free again
    QCOMPARE(all.size(), 2);
    QCOMPARE(all.at(1).at(0).toInt(), 5);
}

void ResultWidgetsTest::hearsOfChangesFromElsewhere()
{
    addResults(7.0, {2, 3});
    addResults(14.0, {2});
    open();
    const QList<const Morphology *> before = morphologyObjects();
    const QSignalSpy all(results.get(), &ResultSetsWidget::morphologyChanged);
    library->run("UPDATE Morphology SET Name='One eye' WHERE Id=2");
    results->morphologyHasChanged(2);
    QCOMPARE(drawn(0), QStringList({"Two heads", "One eye"}));
    QCOMPARE(drawn(1), QStringList("One eye"));
    QCOMPARE(parts(1, 0).chosenName(), "One eye");
    QCOMPARE(morphologyObjects().at(1), before.at(1));
    QCOMPARE(all.size(), 1);
}

void ResultWidgetsTest::forgetsWhatIsRemoved()
{
    addResults(7.0, {2, 2});
    addResults(14.0, {2});
    open();
    press(morphologies(0).at(0), "Remove");
    press(sets().at(1), "Remove");
    // Also before the widgets are gone.
    pressInMorphology("Edit", "One eye", 0, 0);
    QCOMPARE(drawn(0), QStringList("One eye"));
    settle();
    results->morphologyHasChanged(2);
    QCOMPARE(drawn(0), QStringList("One eye"));
}

void ResultWidgetsTest::leavesAMorphologyThatIsLostAlone()
{
    library->run("PRAGMA foreign_keys = off");
    library->run("INSERT INTO Experiment VALUES(1, 'damaged', 1, 1, 1)");
    library->run("INSERT INTO ResultSet VALUES(1, 1, 10, 7)");
    library->run("INSERT INTO ResultantMorphology VALUES(1, 1, 99, 1)");
    experiment = std::make_unique<Experiment>(1, library->db());
    open();
    QCOMPARE(parts(0, 0).list()->currentIndex(), -1);
    const ModalAnswerer answerer;
    press(morphologies().first(), "Edit");
    press(morphologies().first(), "Copy");
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(experiment->resultSets().first()->resultantMorphologies().first()->isLost());
    choose(parts(0, 0).list(), "Cyclops");
    QCOMPARE(drawn(), QStringList("Cyclops"));
    library->run("DELETE FROM ResultantMorphology");
    library->run("DELETE FROM ResultSet");
    library->run("DELETE FROM Experiment");
}

// --- Checks ---

void ResultWidgetsTest::acceptsFrequenciesCloseToOne_data()
{
    QTest::addColumn<QList<double>>("frequencies");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("one") << QList<double>{1.0} << true;
    QTest::newRow("a share that nobody had") << QList<double>{1.0, 0.0} << true;
    QTest::newRow("thirds") << QList<double>{0.33, 0.33, 0.34} << true;
    QTest::newRow("rounded thirds") << QList<double>{0.333, 0.333, 0.3335} << true;
    QTest::newRow("0.0005 too much") << QList<double>{0.5, 0.5005} << true;
    QTest::newRow("0.002 too much") << QList<double>{0.5, 0.502} << false;
    QTest::newRow("0.0005 too little") << QList<double>{0.5, 0.4995} << true;
    QTest::newRow("0.002 too little") << QList<double>{0.5, 0.498} << false;
    QTest::newRow("the least") << QList<double>{0.999} << true;
    QTest::newRow("the most") << QList<double>{1.001} << true;
    QTest::newRow("nothing") << QList<double>{0.0} << false;
}

void ResultWidgetsTest::acceptsFrequenciesCloseToOne()
{
    QFETCH(const QList<double>, frequencies);
    QFETCH(const bool, accepted);
    ResultSet *set = addResults(7.0, QList<int>(frequencies.size(), 1));
    for (int i = 0; i < frequencies.size(); ++i)
        set->resultantMorphologies().at(i)->setFrequency(frequencies[i]);
    open();
    ModalAnswerer answerer;
    if (!accepted)
        answerer.expectBox(wrongFrequencies, QMessageBox::Ok);
    QCOMPARE(results->isDataCorrect(), accepted);
    QCOMPARE(answerer.problems(), QStringList());
}

void ResultWidgetsTest::asksForMorphologies()
{
    addResults(7.0, {1});
    addResults(14.0, {});
    open();
    QVERIFY(!check(noMorphology));
    QCOMPARE(results->focusWidget(), button(sets().at(1), "Add morph."));
    press(sets().at(1), "Add morph.");
    QVERIFY(!check(wrongFrequencies));
    typeNumber(numberBox(morphologies(1).first(), "Frequency:"), "1");
    QVERIFY(check(std::nullopt));
}

void ResultWidgetsTest::asksForOtherPeriodsAfterEachSetIsFine()
{
    addResults(7.0, {1});
    ResultSet *second = addResults(7.0, {2});
    second->resultantMorphologies().first()->setFrequency(0.5);
    open();
    QCOMPARE(drawn(0), QStringList("Cyclops")); // the later one comes first
    QVERIFY(!check(wrongFrequencies));
    typeNumber(numberBox(morphologies(0).first(), "Frequency:"), "1");
    QVERIFY(!check(duplicatedPeriod));
    typeNumber(numberBox(sets().at(1), "Reg. period (d):"), "7.01");
    QVERIFY(check(std::nullopt));
}

void ResultWidgetsTest::asksForThePeriodOnceTheFirstSetsAreFine()
{
    addResults(7.0, {1});
    addResults(7.0, {2});
    addResults(14.0, {});
    open();
    QVERIFY(!check(duplicatedPeriod)); // before it comes to the empty set
    typeNumber(numberBox(sets().at(1), "Reg. period (d):"), "8");
    QVERIFY(!check(noMorphology));
}

void ResultWidgetsTest::scrollsToTheSetThatItAsksFor()
{
    for (int period = 1; period <= 5; ++period)
        addResults(period, {1, 2, 3, 4});
    open();
    typeNumber(numberBox(morphologies(3).first(), "Frequency:"), "0.5");
    results->verticalScrollBar()->setValue(0);
    results->horizontalScrollBar()->setValue(results->horizontalScrollBar()->maximum());
    QVERIFY(!check(wrongFrequencies));
    const QPoint place = sets().at(3)->mapTo(results->viewport(), QPoint());
    QCOMPARE(place, QPoint(0, 0));
    QVERIFY(results->verticalScrollBar()->value() < results->verticalScrollBar()->maximum());
}

QTEST_MAIN(ResultWidgetsTest)
#include "ResultWidgetsTest.moc"
