#include "experiment/ExperimentForm.h"

#include "experiment/ExperimentDrugsWidget.h"
#include "experiment/ExperimentRNAiWidget.h"
#include "experiment/Parts.h"
#include "experiment/ResultSetWidget.h"
#include "experiment/ResultSetsWidget.h"
#include "experiment/ResultantMorphologyWidget.h"
#include "manipulation/ManipulationForm.h"
#include "manipulation/ManipulationView.h"
#include "manipulation/MorphologyActionDesigner.h"
#include "model/MorphologyAction.h"
#include "model/SmallExperiments.h"
#include "morphology/ChooserParts.h"
#include "support/NamedForm.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QGraphicsScene>
#include <QGroupBox>
#include <QLabel>
#include <QScreen>
#include <QSettings>
#include <QSpinBox>
#include <QTableWidget>

#include <algorithm>

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
const auto wrongFrequencies = warning(
    "Wrong frequencies", "The frequencies of the resultant morphologies of a result set should sum "
                         "1. Please, adjust the frequencies to sum 1.");

/// The worm with which a manipulation begins.
Morphology *bodyOf(const Manipulation &manipulation)
{
    for (ManipulationAction *action : manipulation.actions()) {
        if (const auto *leaf = dynamic_cast<MorphologyAction *>(action))
            return leaf->morphology();
    }
    qFatal("a manipulation without a worm");
}

/// What one of the three lists of the form chooses from.
struct Member
{
    const char *role;
    const char *nameColumn;
    int index; // among the boxes
};

constexpr auto members = {Member{"Publication", "Title", 0}, Member{"Species", "Name", 1},
                          Member{"Manipulation", "Name", 2}};

} // namespace

Q_DECLARE_METATYPE(Member)

/// The file holds the experiment "stored" (row 1) with all its parts, and one element more of each
/// kind that an experiment refers to, which is named "other".
class ExperimentFormTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void opensOnANewExperiment();
    void opensOnAStoredExperiment();
    void opensOnACopyAsOnANewOne();
    void opensOnAnExperimentThatHasLostItsReferences();
    void mendsAnExperimentThatHasLostItsReferences();
    void writesNothingWhenItOpens_data();
    void writesNothingWhenItOpens();
    void laysOutItsParts();
    void namesItsParts();
    void leadsTabFromTheTopToTheButtons();
    void fitsOnEachScreen();

    void takesTheNameWhenItsFieldIsLeft();
    void leadsToTheAddressOfThePublication();
    void stopsTabAtTheAddressOnlyWhereThereIsOne();
    void escapesTheAddress();
    void takesWhatIsChosen_data() { addMembers(); }
    void takesWhatIsChosen();
    void keepsWhatIsChosenAlready_data() { addMembers(); }
    void keepsWhatIsChosenAlready();
    void drawsTheManipulationThatIsChosen();

    void storesWhatTheUserEdits_data() { addMembers(); }
    void storesWhatTheUserEdits();
    void storesWhatTheUserMakes_data() { addMembers(); }
    void storesWhatTheUserMakes();
    void storesACopyOfTheManipulation();
    void leavesAllAsItWasWhenTheUserCancels_data();
    void leavesAllAsItWasWhenTheUserCancels();
    void editsNothingWithoutAChoice();
    void keepsTheOtherChoicesWhenAListIsReadAnew_data() { addMembers(); }
    void tellsOfAMemberThatTheFileDoesNotTake_data() { addMembers(); }
    void tellsOfAMemberThatTheFileDoesNotTake();
    void keepsTheOtherChoicesWhenAListIsReadAnew();
    void keepsWhatWasStoredWhenItIsCancelled();

    void showsAMorphologyOfAResultInTheManipulation();
    void showsAMorphologyOfTheManipulationInTheResults();
    void bearsChangesOfMorphologiesWithoutAManipulation();

    void asksForEachPartInTurn();
    void looksAtTheResultsLast();
    void letsAStoredExperimentKeepItsName();
    void refusesTheNameOfAnother();
    void refusesTheNameOfItsSourceForACopy();
    void takesTheNameByAnyWayToOk_data();
    void takesTheNameByAnyWayToOk();
    void takesATimeThatIsStillTyped();
    void staysOpenAtEscape();
    void closesByItsFrame();
    void writesNothingOfTheExperiment();

    void remembersItsSize();
    void keepsItsNormalSizeWhileItIsMaximized();

private:
    static void addMembers();
    void open(std::unique_ptr<Experiment> edited);
    void openStored() { open(std::make_unique<Experiment>(1, library->db())); }

    template <typename Part> Part *part() const { return form->findChild<Part *>(); }
    [[nodiscard]] QLineEdit *nameEdit() const { return part<QLineEdit>(); }
    [[nodiscard]] QComboBox *box(const char *role) const;
    [[nodiscard]] QComboBox *box() const;
    [[nodiscard]] QString link() const;
    [[nodiscard]] QPushButton *formButton(QDialogButtonBox::StandardButton which) const;
    [[nodiscard]] bool isAccepted() const;
    [[nodiscard]] QStringList chosen() const;
    /// What the experiment refers to.
    [[nodiscard]] QList<const DBElement *> referredTo() const;
    [[nodiscard]] QStringList namesReferredTo() const;
    [[nodiscard]] QStringList storedNames(const Member &member);
    [[nodiscard]] QStringList contentOfFile();
    void pressOf(const Member &member, const QString &text, const QString &answer);
    void expectRefusal(const ModalAnswerer::Box &expected, const QWidget *place);

    StatementLog log; // before any connection opens
    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<Experiment> experiment;
    std::unique_ptr<ExperimentForm> form;
};

void ExperimentFormTest::addMembers()
{
    QTest::addColumn<Member>("member");
    for (const Member &member : members)
        QTest::newRow(member.role) << member;
}

void ExperimentFormTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
    QVERIFY(fullExperiment("stored")->submit(library->db()) > 0);
    const std::unique_ptr<Publication> paper(newPublication("other", "https://other.example"));
    const std::unique_ptr<Species> species(newWord<Species>("other"));
    const std::unique_ptr<Manipulation> cut(newManipulation("other"));
    bodyOf(*cut)->setName("other body");
    QVERIFY(paper->submit(library->db()) > 0);
    QVERIFY(species->submit(library->db()) > 0);
    QVERIFY(cut->submit(library->db()) > 0);
}

void ExperimentFormTest::cleanup()
{
    form.reset();
    experiment.reset();
    QCOMPARE(library->brokenReferences(), QStringList());
}

void ExperimentFormTest::open(std::unique_ptr<Experiment> edited)
{
    form.reset();
    experiment = std::move(edited);
    form = std::make_unique<ExperimentForm>(experiment.get(), library->db(), nullptr);
    form->show();
    form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(form.get()));
}

QComboBox *ExperimentFormTest::box(const char *role) const
{
    for (auto *candidate : form->findChildren<QComboBox *>()) {
        if (candidate->accessibleName() == role)
            return candidate;
    }
    qFatal("no list of %s", role);
}

QComboBox *ExperimentFormTest::box() const
{
    QFETCH(const Member, member);
    return box(member.role);
}

QString ExperimentFormTest::link() const
{
    for (const auto *label : form->findChildren<QLabel *>()) {
        if (label->openExternalLinks())
            return label->text();
    }
    qFatal("no link");
}

QPushButton *ExperimentFormTest::formButton(QDialogButtonBox::StandardButton which) const
{
    return part<QDialogButtonBox>()->button(which);
}

bool ExperimentFormTest::isAccepted() const
{
    return form->isHidden() && form->result() == QDialog::Accepted;
}

QStringList ExperimentFormTest::chosen() const
{
    QStringList texts;
    for (const Member &member : members)
        texts += box(member.role)->currentText();
    return texts;
}

QList<const DBElement *> ExperimentFormTest::referredTo() const
{
    return {experiment->publication(), experiment->species(), experiment->manipulation()};
}

QStringList ExperimentFormTest::namesReferredTo() const
{
    return {experiment->publication()->title(), experiment->species()->name(),
            experiment->manipulation()->name()};
}

QStringList ExperimentFormTest::storedNames(const Member &member)
{
    const QString column = QLatin1String(member.nameColumn);
    return library
        ->value(QStringLiteral("SELECT GROUP_CONCAT(%1) FROM (SELECT %1 FROM %2 ORDER BY Id)")
                    .arg(column, QLatin1String(member.role)))
        .toString()
        .split(',');
}

/// The numbers of rows of what belongs to experiments.
QStringList ExperimentFormTest::contentOfFile()
{
    QStringList counts;
    for (const char *table :
         {"Experiment", "ExperimentDrug", "ExperimentRNAi", "ResultSet", "ResultantMorphology"})
        counts += QStringLiteral("%1 %2").arg(table).arg(library->count(table));
    return counts +
           library->value("SELECT GROUP_CONCAT(Name) FROM Experiment").toString().split(',');
}

/// Presses a button of a list and answers the form that opens with @p answer as its name.
void ExperimentFormTest::pressOf(const Member &member, const QString &text, const QString &answer)
{
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, answer);
    press(form.get(), text, member.role);
    QCOMPARE(answerer.problems(), QStringList());
}

void ExperimentFormTest::expectRefusal(const ModalAnswerer::Box &expected, const QWidget *place)
{
    ModalAnswerer answerer;
    answerer.expectBox(expected, QMessageBox::Ok);
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(form->isVisible());
    if (place)
        QCOMPARE(form->focusWidget(), place);
}

// --- Opening ---

void ExperimentFormTest::opensOnANewExperiment()
{
    open(std::make_unique<Experiment>());
    QCOMPARE(form->windowTitle(), "New experiment");
    QVERIFY(form->windowFlags().testFlag(Qt::Window));
    QCOMPARE(nameEdit()->text(), "");
    for (const Member &member : members)
        QCOMPARE(box(member.role)->currentIndex(), -1);
    QCOMPARE(part<ManipulationView>()->manipulation(), nullptr);
    QCOMPARE(link(), "<a href=\"\">Publication</a>:");
    QCOMPARE(referredTo(), QList<const DBElement *>({nullptr, nullptr, nullptr}));
}

void ExperimentFormTest::opensOnAStoredExperiment()
{
    openStored();
    QCOMPARE(form->windowTitle(), "Edit experiment");
    QCOMPARE(nameEdit()->text(), "stored");
    QCOMPARE(chosen(), QStringList({"paper", "species", "cut"}));
    QCOMPARE(part<ManipulationView>()->manipulation(), experiment->manipulation());
    QCOMPARE(link(), "<a href=\"https://paper.example\">Publication</a>:");
    QCOMPARE(part<ExperimentDrugsWidget>()->findChild<QTableWidget *>()->rowCount(), 2);
    QCOMPARE(part<ExperimentRNAiWidget>()->findChild<QTableWidget *>()->rowCount(), 2);
    QCOMPARE(form->findChildren<ResultSetWidget *>().size(), 2);
}

void ExperimentFormTest::opensOnACopyAsOnANewOne()
{
    auto copy = std::make_unique<Experiment>(Experiment(1, library->db()), false);
    copy->setName("stored - copy");
    open(std::move(copy));
    QCOMPARE(form->windowTitle(), "New experiment");
    QCOMPARE(nameEdit()->text(), "stored - copy");
    QCOMPARE(chosen(), QStringList({"paper", "species", "cut"}));
}

void ExperimentFormTest::opensOnAnExperimentThatHasLostItsReferences()
{
    library->run("PRAGMA foreign_keys = off");
    library->run("UPDATE Experiment SET Publication=99, Species=99, Manipulation=99");
    openStored();
    QCOMPARE(chosen(), QStringList({"", "", ""}));
    QCOMPARE(link(), "<a href=\"\">Publication</a>:");
    form->morphologyHasChanged(1);
    expectRefusal(noManipulation, box("Manipulation"));
    choose(box("Manipulation"), "other");
    QCOMPARE(experiment->manipulation()->name(), "other");
    library->run("UPDATE Experiment SET Publication=1, Species=1, Manipulation=1");
}

void ExperimentFormTest::mendsAnExperimentThatHasLostItsReferences()
{
    library->run("PRAGMA foreign_keys = off");
    library->run("UPDATE Experiment SET Publication=99, Species=99, Manipulation=99");
    library->run("UPDATE ExperimentDrug SET Drug=99 WHERE Id=2");
    library->run("UPDATE ExperimentRNAi SET RNAi=99 WHERE Id=2");
    library->run("UPDATE ResultantMorphology SET Morphology=99 WHERE Id=3");
    openStored();
    for (const Member &member : members)
        choose(box(member.role), "other");
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(isAccepted());
    QCOMPARE(experiment->submit(library->db()), 1);
    // What it was not told to mend stays as it is.
    QCOMPARE(library->brokenReferences().size(), 3);
    QCOMPARE(library->value("SELECT Publication || Species || Manipulation FROM Experiment"),
             QVariant("222"));
    library->run("UPDATE ExperimentDrug SET Drug=2 WHERE Id=2");
    library->run("UPDATE ExperimentRNAi SET RNAi=2 WHERE Id=2");
    library->run("UPDATE ResultantMorphology SET Morphology=4 WHERE Id=3");
}

void ExperimentFormTest::writesNothingWhenItOpens_data()
{
    QTest::addColumn<int>("id");
    QTest::newRow("new") << 0;
    QTest::newRow("stored") << 1;
}

void ExperimentFormTest::writesNothingWhenItOpens()
{
    QFETCH(const int, id);
    log.take();
    if (id > 0)
        openStored();
    else
        open(std::make_unique<Experiment>());
    const QStringList statements = log.take();
    QVERIFY(!statements.isEmpty());
    for (const QString &statement : statements)
        QVERIFY2(statement.startsWith("SELECT"), qPrintable(statement));
}

// --- The parts ---

void ExperimentFormTest::laysOutItsParts()
{
    openStored();
    for (const Member &member : members) {
        QCOMPARE(box(member.role)->minimumContentsLength(), 5);
        QCOMPARE(box(member.role)->sizeAdjustPolicy(),
                 QComboBox::AdjustToMinimumContentsLengthWithIcon);
    }
    QCOMPARE(part<QFormLayout>()->fieldGrowthPolicy(), QFormLayout::AllNonFixedFieldsGrow);
    QCOMPARE(part<ManipulationView>()->minimumWidth(), 50);
    auto *rows = qobject_cast<QBoxLayout *>(form->layout());
    QCOMPARE(rows->stretch(0), 1);
    QCOMPARE(rows->itemAt(1)->widget(), part<ResultSetsWidget>());
    QCOMPARE(rows->stretch(1), 10);
    QCOMPARE(rows->itemAt(2)->widget(), part<QDialogButtonBox>());
    QCOMPARE(part<QDialogButtonBox>()->standardButtons(),
             QDialogButtonBox::Ok | QDialogButtonBox::Cancel);

    const QWidget *group = part<ManipulationView>()->parentWidget();
    QCOMPARE(qobject_cast<const QGroupBox *>(group)->title(), "Manipulation");
    QCOMPARE(buttonTexts(group), QStringList({"Edit", "Copy", "New"}));
    const auto *drugs = part<ExperimentDrugsWidget>();
    const auto *rnai = part<ExperimentRNAiWidget>();
    QCOMPARE(drugs->y(), rnai->y());
    QVERIFY(drugs->geometry().right() < rnai->x());
    QVERIFY(rnai->geometry().right() < group->x());
    QVERIFY(nameEdit()->y() < box("Publication")->y());
    QVERIFY(box("Publication")->y() < box("Species")->y());
    QVERIFY(box("Species")->y() < drugs->y());
}

void ExperimentFormTest::namesItsParts()
{
    openStored();
    auto *rows = part<QFormLayout>();
    QStringList labels;
    for (int row = 0; row < rows->rowCount(); ++row) {
        const QWidget *label = rows->itemAt(row, QFormLayout::LabelRole)->widget();
        labels += qobject_cast<const QLabel *>(label)->text();
    }
    QCOMPARE(labels, QStringList({"Name:", link(), "Species:"}));
    for (const auto *view : form->findChildren<QGraphicsView *>())
        QVERIFY(!view->accessibleName().isEmpty());
    for (const auto *button : form->findChildren<QPushButton *>()) {
        const bool atTheBottom = button->parentWidget() == part<QDialogButtonBox>();
        QVERIFY(atTheBottom || !button->accessibleDescription().isEmpty());
        QVERIFY(atTheBottom || !button->autoDefault());
    }
}

void ExperimentFormTest::leadsTabFromTheTopToTheButtons()
{
    openStored();
    press(part<ResultSetsWidget>(), "New"); // made last, but not reached last
    settle();
    QList<QWidget *> stops = tabStops(form.get(), nameEdit());
    const QList<const QWidget *> areas{nameEdit(),
                                       box("Publication"),
                                       box("Species"),
                                       part<ExperimentDrugsWidget>(),
                                       part<ExperimentRNAiWidget>(),
                                       box("Manipulation"),
                                       part<ManipulationView>(),
                                       part<ResultSetsWidget>(),
                                       formButton(QDialogButtonBox::Ok),
                                       formButton(QDialogButtonBox::Cancel)};
    QList<qsizetype> order;
    for (const QWidget *stop : stops) {
        for (qsizetype i = 0; i < areas.size(); ++i) {
            if ((areas[i] == stop || areas[i]->isAncestorOf(stop)) && !order.contains(i))
                order += i;
        }
    }
    QList<qsizetype> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(order, sorted);
    QCOMPARE(order.size(), areas.size());
    QCOMPARE(stops.last(), formButton(QDialogButtonBox::Cancel));
}

void ExperimentFormTest::fitsOnEachScreen()
{
    experiment = std::make_unique<Experiment>(1, library->db());
    for (QScreen *screen : QGuiApplication::screens()) {
        QSettings().clear();
        QWidget window;
        window.setScreen(screen);
        window.move(screen->availableGeometry().center());
        window.show();
        const ExperimentForm onIt(experiment.get(), library->db(), &window);
        QCOMPARE(onIt.screen(), screen);
        // The title stands above, and is left as much again by the window manager.
        const QSize room = screen->availableSize() - QSize(8, 80);
        QCOMPARE(onIt.size(), QSize(1000, 800).boundedTo(room));
        QVERIFY(onIt.minimumSizeHint().width() <= 1000);
        QVERIFY(onIt.minimumSizeHint().height() <= 688); // 768 without the title
    }
}

// --- Choices ---

void ExperimentFormTest::takesTheNameWhenItsFieldIsLeft()
{
    openStored();
    typeInto(nameEdit(), "renamed");
    QCOMPARE(experiment->name(), "stored");
    QTest::keyClick(nameEdit(), Qt::Key_Tab);
    QCOMPARE(experiment->name(), "renamed");
}

void ExperimentFormTest::leadsToTheAddressOfThePublication()
{
    open(std::make_unique<Experiment>());
    choose(box("Publication"), "other");
    QCOMPARE(link(), "<a href=\"https://other.example\">Publication</a>:");
    choose(box("Publication"), "paper");
    QCOMPARE(link(), "<a href=\"https://paper.example\">Publication</a>:");
}

void ExperimentFormTest::stopsTabAtTheAddressOnlyWhereThereIsOne()
{
    open(std::make_unique<Experiment>());
    const auto stopsAtTheLink = [this] {
        const QList<QWidget *> stops = tabStops(form.get(), nameEdit());
        return std::any_of(stops.cbegin(), stops.cend(), [](const QWidget *stop) {
            return qobject_cast<const QLabel *>(stop) != nullptr;
        });
    };
    QVERIFY(!stopsAtTheLink());
    choose(box("Publication"), "other");
    QVERIFY(stopsAtTheLink());
}

void ExperimentFormTest::escapesTheAddress()
{
    library->run("UPDATE Publication SET URL='https://x.example/?a=1&b=\"><b>2'");
    openStored();
    QCOMPARE(link(), "<a href=\"https://x.example/?a=1&amp;b=&quot;&gt;&lt;b&gt;2\">"
                     "Publication</a>:");
}

void ExperimentFormTest::takesWhatIsChosen()
{
    QFETCH(const Member, member);
    openStored();
    const QList<const DBElement *> before = referredTo();
    choose(box(), "other");
    QCOMPARE(namesReferredTo().at(member.index), "other");
    QCOMPARE(referredTo().at(member.index)->id(), 2);
    for (int i = 0; i < before.size(); ++i)
        QVERIFY((referredTo().at(i) == before[i]) == (i != member.index));
    QCOMPARE(part<ManipulationView>()->manipulation(), experiment->manipulation());
}

void ExperimentFormTest::keepsWhatIsChosenAlready()
{
    openStored();
    const QList<const DBElement *> before = referredTo();
    log.take();
    const int row = box()->currentIndex();
    box()->setCurrentIndex(-1);
    QCOMPARE(referredTo(), before);
    box()->setCurrentIndex(row);
    QCOMPARE(referredTo(), before);
    QCOMPARE(log.take(), QStringList());
}

void ExperimentFormTest::drawsTheManipulationThatIsChosen()
{
    open(std::make_unique<Experiment>());
    choose(box("Manipulation"), "other");
    QCOMPARE(part<ManipulationView>()->manipulation(), experiment->manipulation());
    QCOMPARE(part<ManipulationView>()->accessibleName(), "Drawing of manipulation other");
    QVERIFY(!part<ManipulationView>()->scene()->items().isEmpty());
}

// --- Editing on the way ---

void ExperimentFormTest::storesWhatTheUserEdits()
{
    QFETCH(const Member, member);
    openStored();
    const DBElement *before = referredTo().at(member.index);
    pressOf(member, "Edit", "zeta");
    QCOMPARE(storedNames(member), QStringList({"zeta", "other"}));
    QCOMPARE(namesReferredTo().at(member.index), "zeta");
    QCOMPARE(referredTo().at(member.index)->id(), 1);
    QVERIFY(referredTo().at(member.index) != before);
    QCOMPARE(box()->currentText(), "zeta");
    QCOMPARE(entries(box()), QStringList({"other", "zeta"}));
    QCOMPARE(part<ManipulationView>()->manipulation(), experiment->manipulation());
}

void ExperimentFormTest::storesWhatTheUserMakes()
{
    QFETCH(const Member, member);
    open(std::make_unique<Experiment>());
    pressOf(member, "New", "aardvark");
    QCOMPARE(storedNames(member).last(), "aardvark");
    QCOMPARE(referredTo().at(member.index)->id(), 3);
    QCOMPARE(box()->currentText(), "aardvark");
    QCOMPARE(part<ManipulationView>()->manipulation(), experiment->manipulation());
    QCOMPARE(contentOfFile().first(), "Experiment 1");
}

void ExperimentFormTest::storesACopyOfTheManipulation()
{
    openStored();
    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "aardvark");
    press(form.get(), "Copy", "Manipulation");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->title, "New worm manipulation");
    QCOMPARE(seen->name, "cut - copy");
    QCOMPARE(storedNames(*(members.begin() + 2)), QStringList({"cut", "other", "aardvark"}));
    QCOMPARE(experiment->manipulation()->id(), 3);
    QCOMPARE(experiment->manipulation()->actions().size(), 2);
    QCOMPARE(part<ManipulationView>()->manipulation(), experiment->manipulation());
    QCOMPARE(box("Manipulation")->currentText(), "aardvark");
}

void ExperimentFormTest::leavesAllAsItWasWhenTheUserCancels_data()
{
    QTest::addColumn<Member>("member");
    QTest::addColumn<QString>("text");
    for (const Member &member : members) {
        for (const char *text : {"Edit", "New"})
            QTest::addRow("%s, %s", member.role, text) << member << text;
    }
    QTest::newRow("Manipulation, Copy") << *(members.begin() + 2) << "Copy";
}

void ExperimentFormTest::leavesAllAsItWasWhenTheUserCancels()
{
    QFETCH(const Member, member);
    QFETCH(const QString, text);
    openStored();
    const QList<const DBElement *> before = referredTo();
    const QStringList names = storedNames(member);
    pressOf(member, text, "");
    QCOMPARE(referredTo(), before);
    QCOMPARE(storedNames(member), names);
    QCOMPARE(chosen(), QStringList({"paper", "species", "cut"}));
}

void ExperimentFormTest::editsNothingWithoutAChoice()
{
    open(std::make_unique<Experiment>());
    const ModalAnswerer answerer;
    for (const Member &member : members)
        press(form.get(), "Edit", member.role);
    press(form.get(), "Copy", "Manipulation");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(referredTo(), QList<const DBElement *>({nullptr, nullptr, nullptr}));
}

void ExperimentFormTest::tellsOfAMemberThatTheFileDoesNotTake()
{
    QFETCH(const Member, member);
    openStored();
    const QList<const DBElement *> before = referredTo();
    const QString table = QLatin1String(member.role);
    library->run("CREATE TRIGGER full BEFORE INSERT ON " + table +
                 " BEGIN SELECT RAISE(ABORT, 'full'); END");
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "aardvark");
    answerer.expectBox({"Cannot store " + table.toLower(),
                        "The " + table.toLower() + " could not be written to the file.",
                        QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Critical},
                       QMessageBox::Ok);
    press(form.get(), "New", member.role);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(referredTo(), before);
    QCOMPARE(chosen(), QStringList({"paper", "species", "cut"}));
}

void ExperimentFormTest::keepsTheOtherChoicesWhenAListIsReadAnew()
{
    QFETCH(const Member, member);
    openStored();
    const QList<const DBElement *> before = referredTo();
    pressOf(member, "New", "aardvark"); // which comes first in its list
    for (int i = 0; i < before.size(); ++i)
        QVERIFY((referredTo().at(i) == before[i]) == (i != member.index));
    QStringList expected{"paper", "species", "cut"};
    expected[member.index] = "aardvark";
    QCOMPARE(chosen(), expected);
}

void ExperimentFormTest::keepsWhatWasStoredWhenItIsCancelled()
{
    openStored();
    const QStringList content = contentOfFile();
    pressOf(*members.begin(), "Edit", "the same paper");
    typeInto(nameEdit(), "renamed");
    QTest::mouseClick(formButton(QDialogButtonBox::Cancel), Qt::LeftButton);
    QVERIFY(form->isHidden());
    QCOMPARE(form->result(), static_cast<int>(QDialog::Rejected));
    QCOMPARE(storedNames(*members.begin()), QStringList({"the same paper", "other"}));
    QCOMPARE(contentOfFile(), content);
}

// --- Changes of morphologies ---

void ExperimentFormTest::showsAMorphologyOfAResultInTheManipulation()
{
    openStored();
    // The root of the manipulation comes out of the experiment as well.
    auto *result = part<ResultantMorphologyWidget>();
    const ChooserParts result0(result->findChild<MorphologyChooser *>());
    result0.choose("body");
    const Manipulation *before = experiment->manipulation();
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "new body");
    press(result, "Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(experiment->manipulation() != before);
    QCOMPARE(bodyOf(*experiment->manipulation())->name(), "new body");
    QCOMPARE(part<ManipulationView>()->manipulation(), experiment->manipulation());
}

void ExperimentFormTest::showsAMorphologyOfTheManipulationInTheResults()
{
    openStored();
    const ChooserParts result(part<ResultantMorphologyWidget>()->findChild<MorphologyChooser *>());
    result.choose("body");
    ModalAnswerer answerer;
    answerer.expectDialog([&](QDialog *dialog) {
        // As when the editor of the leaf was accepted; the manipulation is given up then.
        library->run("UPDATE Morphology SET Name='new body' WHERE Name='body'");
        const int id = library->value("SELECT Id FROM Morphology WHERE Name='new body'").toInt();
        emit qobject_cast<ManipulationForm *>(dialog)->morphologyChanged(id);
        dialog->reject();
    });
    press(form.get(), "Edit", "Manipulation");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(result.view()->morphology()->name(), "new body");
    QCOMPARE(result.chosenName(), "new body");
    QCOMPARE(bodyOf(*experiment->manipulation())->name(), "new body");
    QCOMPARE(part<ManipulationView>()->manipulation(), experiment->manipulation());
}

void ExperimentFormTest::bearsChangesOfMorphologiesWithoutAManipulation()
{
    open(std::make_unique<Experiment>());
    press(part<ResultSetsWidget>(), "Add morph.");
    settle();
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "new body");
    press(part<ResultantMorphologyWidget>(), "Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(experiment->manipulation(), nullptr);
    QCOMPARE(part<ManipulationView>()->manipulation(), nullptr);
}

// --- Accepting ---

void ExperimentFormTest::asksForEachPartInTurn()
{
    open(std::make_unique<Experiment>());
    expectRefusal(noManipulation, box("Manipulation"));
    choose(box("Manipulation"), "cut");
    expectRefusal(noPublication, box("Publication"));
    choose(box("Publication"), "paper");
    expectRefusal(noSpecies, box("Species"));
    choose(box("Species"), "species");
    expectRefusal(noName, nameEdit());
    typeInto(nameEdit(), "stored");
    expectRefusal(takenName, nameEdit());
    typeInto(nameEdit(), "new");
    press(part<ResultSetsWidget>(), "Add morph.");
    expectRefusal(wrongFrequencies, nullptr);
    settle();
    typeNumber(part<ResultantMorphologyWidget>()->findChild<QDoubleSpinBox *>(), "1");
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(isAccepted());
    QCOMPARE(namesReferredTo(), QStringList({"paper", "species", "cut"}));
    QCOMPARE(experiment->name(), "new");
}

void ExperimentFormTest::looksAtTheResultsLast()
{
    openStored();
    experiment->resultSets().first()->resultantMorphologies().first()->setFrequency(0.5);
    typeInto(nameEdit(), "");
    expectRefusal(noName, nameEdit());
    typeInto(nameEdit(), "stored");
    expectRefusal(wrongFrequencies, nullptr);
}

void ExperimentFormTest::letsAStoredExperimentKeepItsName()
{
    openStored();
    log.take();
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(isAccepted());
    QCOMPARE(log.take(), QStringList()); // it does not even ask
}

void ExperimentFormTest::refusesTheNameOfAnother()
{
    auto second = fullExperiment("second");
    second->setManipulation(std::make_unique<Manipulation>(1, library->db()).release());
    second->setPublication(std::make_unique<Publication>(1, library->db()).release());
    second->setSpecies(std::make_unique<Species>(1, library->db()).release());
    second->clearExperimentDrugs();
    second->clearExperimentRNAis();
    second->clearResultSets();
    QCOMPARE(second->submit(library->db()), 2);

    openStored();
    typeInto(nameEdit(), "second");
    expectRefusal(takenName, nameEdit());
    typeInto(nameEdit(), "STORED");
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(isAccepted());
}

void ExperimentFormTest::refusesTheNameOfItsSourceForACopy()
{
    open(std::make_unique<Experiment>(Experiment(1, library->db()), false));
    expectRefusal(takenName, nameEdit());
}

void ExperimentFormTest::takesTheNameByAnyWayToOk_data()
{
    QTest::addColumn<int>("way");
    for (int way = 0; way < waysToOk().size(); ++way)
        QTest::newRow(waysToOk()[way].name) << way;
}

void ExperimentFormTest::takesTheNameByAnyWayToOk()
{
    QFETCH(const int, way);
    openStored();
    typeInto(nameEdit(), "renamed");
    waysToOk()[way].go(nameEdit(), formButton(QDialogButtonBox::Ok));
    QTRY_VERIFY(isAccepted());
    QCOMPARE(experiment->name(), "renamed");
}

void ExperimentFormTest::takesATimeThatIsStillTyped()
{
    openStored();
    auto *table = part<ExperimentDrugsWidget>()->findChild<QTableWidget *>();
    table->editItem(table->item(1, 2));
    auto *editor = table->viewport()->findChild<QLineEdit *>();
    typeInto(editor, "9.5");
    QVERIFY(editor->hasFocus());
    formButton(QDialogButtonBox::Ok)->click(); // as by its key, which moves no focus
    QVERIFY(isAccepted());
    QCOMPARE(experiment->experimentDrugs().at(1)->endTime(), 9.5);
}

void ExperimentFormTest::staysOpenAtEscape()
{
    openStored();
    for (QWidget *widget : QList<QWidget *>{form.get(), nameEdit(), box("Species")}) {
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Escape);
        QVERIFY(form->isVisible());
    }
    QTest::keyClick(nameEdit(), Qt::Key_Return); // other keys do what they do in any dialog
    QVERIFY(isAccepted());
}

void ExperimentFormTest::closesByItsFrame()
{
    openStored();
    form->close();
    QVERIFY(form->isHidden());
    QCOMPARE(form->result(), static_cast<int>(QDialog::Rejected));
}

void ExperimentFormTest::writesNothingOfTheExperiment()
{
    openStored();
    const QStringList content = contentOfFile();
    typeInto(nameEdit(), "renamed");
    press(part<ExperimentDrugsWidget>(), "Add");
    press(part<ExperimentRNAiWidget>(), "Add");
    press(part<ResultSetWidget>(), "Copy");
    press(part<ResultSetWidget>(), "Remove");
    settle();
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(isAccepted());
    QCOMPARE(contentOfFile(), content);
}

// --- Settings ---

void ExperimentFormTest::remembersItsSize()
{
    openStored();
    form->resize(750, 650);
    form.reset();
    QCOMPARE(QSettings().value("ExperimentForm/size").toSize(), QSize(750, 650));
    QCOMPARE(QSettings().value("ExperimentForm/maximized").toBool(), false);
    openStored();
    QCOMPARE(form->size(), QSize(750, 650));
}

void ExperimentFormTest::keepsItsNormalSizeWhileItIsMaximized()
{
    QSettings().setValue("ExperimentForm/size", QSize(750, 650));
    QSettings().setValue("ExperimentForm/maximized", true);
    openStored();
    QVERIFY(form->isMaximized());
    form.reset();
    QCOMPARE(QSettings().value("ExperimentForm/maximized").toBool(), true);
    QCOMPARE(QSettings().value("ExperimentForm/size").toSize(), QSize(750, 650));
}

QTEST_MAIN(ExperimentFormTest)
#include "ExperimentFormTest.moc"
