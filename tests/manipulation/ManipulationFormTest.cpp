#include "manipulation/ManipulationForm.h"

#include "db/ExperimentFactory.h"
#include "manipulation/CropDesigner.h"
#include "manipulation/EDGAction.h"
#include "manipulation/IrradiationDesigner.h"
#include "manipulation/JoinDesigner.h"
#include "manipulation/ManipulationGraphView.h"
#include "manipulation/ManipulationItem.h"
#include "manipulation/ManipulationView.h"
#include "manipulation/MorphologyActionDesigner.h"
#include "manipulation/Pointer.h"
#include "manipulation/RemoveDesigner.h"
#include "manipulation/SingleRegionWorm.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "morphology/MorphologyForm.h"
#include "morphology/MorphologyView.h"
#include "support/ModalAnswerer.h"
#include "support/NamedForm.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QGraphicsScene>
#include <QLabel>
#include <QLayout>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace Planaria;

namespace {

const ModalAnswerer::Box emptyName = {"Name is empty",
                                      "The name of a manipulation cannot be left blank. Please, "
                                      "specify a name for the manipulation.",
                                      QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Warning};
const ModalAnswerer::Box sameName = {
    "Manipulation with same name found",
    "The database already contains a manipulation with the same name. Please, specify a different "
    "name for this manipulation.",
    QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Warning};

/// The form with its parts as a user tells them apart.
struct OpenForm : NamedForm<ManipulationForm>
{
    OpenForm(Manipulation *manipulation, DB *db) : NamedForm(manipulation, db) {}

    template <typename Part> Part *part() { return form.findChild<Part *>(); }
    ManipulationGraphView *tree() { return part<ManipulationGraphView>(); }
    ManipulationView *product() { return part<ManipulationView>(); }

    QWidgetList panels()
    {
        return {product()->parentWidget(),
                part<MorphologyActionDesigner>()->parentWidget(),
                part<RemoveDesigner>()->parentWidget(),
                part<CropDesigner>()->parentWidget(),
                part<JoinDesigner>()->parentWidget(),
                part<IrradiationDesigner>()->parentWidget()};
    }

    /// The titles of the panels that are seen.
    QStringList shownPanels()
    {
        QStringList titles;
        for (const QWidget *panel : panels()) {
            if (panel->isVisible())
                titles += titleOf(panel);
        }
        return titles;
    }

    static QString titleOf(const QWidget *panel)
    {
        return qobject_cast<QLabel *>(panel->layout()->itemAt(0)->widget())->text();
    }

    void click(ManipulationAction *action) { Pointer(tree()).click(tree()->node(action)->pos()); }
    void clickNowhere() { QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, {5, 5}); }
    void choose(ManipulationAction *action, const QString &command)
    {
        click(action);
        Pointer(tree()).menuAt(tree()->node(action)->pos(), command);
    }
};

QPainterPath shownProduct(OpenForm *open)
{
    for (const QGraphicsItem *item : open->product()->scene()->items()) {
        if (const auto *drawn = dynamic_cast<const ManipulationItem *>(item))
            return drawn->shape();
    }
    return {};
}

QPainterPath product(const Manipulation &manipulation)
{
    return ManipulationItem(manipulation.rootAction()).shape();
}

QVariant setting(const QString &name)
{
    return QSettings().value("ManipulationForm/" + name);
}

} // namespace

class ManipulationFormTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void opensOnANewManipulation();
    void opensOnAStoredManipulation();
    void leadsFromTheNameToItsField();
    void putsTreeAndPanelSideBySideBelowTheName();
    void keepsTheMiddleApartFromTheRows();
    void canBeWorkedThroughByTab();
    void opensOnADamagedManipulation();

    void showsThePanelOfTheSelectedAction_data();
    void showsThePanelOfTheSelectedAction();
    void clearsWhatItHides();
    void keepsItsPanelWhileSeveralActionsAreSelected();
    void goesFromOneActionToAnotherOfItsKind();
    void showsTheProductWithTheEditsApplied();
    void designsAnActionThatHasBeenAdded_data();
    void designsAnActionThatHasBeenAdded();
    void showsTheProductOfWhatADeletionLeaves();

    void tellsOfAMorphologyThatWasStored();
    void editsAMorphologyForAllWhoShowIt();

    void takesTheNameWhenItsFieldIsLeft();
    void takesTheNameAlsoWhereNoFocusCouldLeaveIt();
    void refusesAnEmptyName_data();
    void refusesAnEmptyName();
    void takesANewNameByAnyWayToOk_data();
    void takesANewNameByAnyWayToOk();
    void refusesTheNameOfAnother_data();
    void refusesTheNameOfAnother();
    void acceptsTheOldNameOfAStoredManipulationWithoutAQuestion();

    void keepsTheEditsWhenEscapeIsPressedInAnEditor();
    void leavesTheFileUntouchedWhenItIsCancelled_data();
    void leavesTheFileUntouchedWhenItIsCancelled();
    void writesNothingWhenItIsAccepted();

    void showsNothingBeforeItIsShown();

    void remembersItsSize();
    void keepsItsNormalSizeWhileItIsMaximized();
    void isModalWhenItOpensMaximized();

private:
    std::unique_ptr<Manipulation> newManipulation() const;
    int store(const QString &name);
    /// A cut, a crop, an irradiation, a graft; the leaf of the body comes first in the list.
    void growAllKinds();
    template <typename Action> Action *first() const;
    QByteArray libraryBytes() const;

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<Manipulation> manipulation;
};

void ManipulationFormTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
    manipulation = newManipulation();
}

std::unique_ptr<Manipulation> ManipulationFormTest::newManipulation() const
{
    auto worm = singleRegionWorm();
    worm->setName("Worm");
    return std::make_unique<Manipulation>(worm.release());
}

int ManipulationFormTest::store(const QString &name)
{
    const auto stored = newManipulation();
    stored->setName(name);
    return stored->submit(library->db());
}

void ManipulationFormTest::growAllKinds()
{
    manipulation->addRemoveAction(manipulation->rootAction());
    manipulation->addCropAction(manipulation->rootAction());
    manipulation->addIrradiationAction(manipulation->rootAction());
    manipulation->addJoinAction(manipulation->rootAction(), singleRegionWorm().release());
}

template <typename Action> Action *ManipulationFormTest::first() const
{
    for (ManipulationAction *action : manipulation->actions()) {
        if (auto *found = dynamic_cast<Action *>(action))
            return found;
    }
    return nullptr;
}

QByteArray ManipulationFormTest::libraryBytes() const
{
    QFile file(library->fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// --- Layout ---

void ManipulationFormTest::opensOnANewManipulation()
{
    OpenForm open(manipulation.get(), library->db());
    QCOMPARE(open.form.windowTitle(), "New worm manipulation");
    QCOMPARE(open.form.size(), QSize(600, 600));
    QCOMPARE(open.form.windowType(), Qt::Window);
    QCOMPARE(open.nameEdit()->text(), "");
    QCOMPARE(open.shownPanels(), QStringList("Resultant piece:"));
    QCOMPARE(open.product()->manipulation(), manipulation.get());
    QCOMPARE(shownProduct(&open), product(*manipulation));
}

void ManipulationFormTest::opensOnAStoredManipulation()
{
    Manipulation stored(store("Two cuts"), library->db());
    OpenForm open(&stored, library->db());
    QCOMPARE(open.form.windowTitle(), "Edit worm manipulation");
    QCOMPARE(open.nameEdit()->text(), "Two cuts");
    QVERIFY(open.tree()->node(stored.rootAction()));
    QCOMPARE(open.tree()->accessibleName(), "Tree of manipulation Two cuts");
    QCOMPARE(open.product()->accessibleName(), "Drawing of manipulation Two cuts");
}

void ManipulationFormTest::leadsFromTheNameToItsField()
{
    OpenForm open(manipulation.get(), library->db());
    const auto labels = open.nameEdit()->parentWidget()->findChildren<QLabel *>();
    QCOMPARE(labels.size(), 1);
    QCOMPARE(labels.first()->text(), "Name:");
    QCOMPARE(labels.first()->buddy(), open.nameEdit());
}

void ManipulationFormTest::putsTreeAndPanelSideBySideBelowTheName()
{
    OpenForm open(manipulation.get(), library->db());
    const auto rectOf = [&open](const QWidget *widget) {
        return QRect(widget->mapTo(&open.form, QPoint()), widget->size());
    };
    const QRect tree = rectOf(open.tree());
    const QRect product = rectOf(open.product());
    QCOMPARE(OpenForm::titleOf(open.tree()->parentWidget()), "Manipulation:");
    QVERIFY(rectOf(open.nameEdit()).bottom() < tree.top());
    QVERIFY(tree.right() < product.left());
    QCOMPARE(tree.top(), product.top());
    QVERIFY(qAbs(tree.width() - product.width()) < 10);
    QVERIFY(tree.height() > 400);
    QVERIFY(tree.bottom() < rectOf(open.buttons()).top());
    for (const QWidget *panel : open.panels())
        QCOMPARE(panel->layout()->contentsMargins(), QMargins());
}

void ManipulationFormTest::keepsTheMiddleApartFromTheRows()
{
    OpenForm open(manipulation.get(), library->db());
    const QLayout *layout = open.form.layout();
    QCOMPARE(layout->count(), 5);
    QCOMPARE(layout->itemAt(0)->widget(), open.nameEdit()->parentWidget());
    QVERIFY(layout->itemAt(2)->layout());
    QCOMPARE(layout->itemAt(4)->widget(), open.buttons());
    for (const int place : {1, 3}) {
        QVERIFY(layout->itemAt(place)->spacerItem());
        QCOMPARE(layout->itemAt(place)->sizeHint().height(), 10);
    }
    QCOMPARE(open.buttons()->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QVERIFY(open.buttons()->button(QDialogButtonBox::Ok)->isDefault());
}

void ManipulationFormTest::canBeWorkedThroughByTab()
{
    OpenForm open(manipulation.get(), library->db());
    QCOMPARE(QApplication::focusWidget(), open.nameEdit());
    const QWidgetList order = {open.tree(), open.product(),
                               open.buttons()->button(QDialogButtonBox::Ok),
                               open.buttons()->button(QDialogButtonBox::Cancel), open.nameEdit()};
    for (QWidget *next : order) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), next);
    }
}

void ManipulationFormTest::opensOnADamagedManipulation()
{
    manipulation->removeAndDeleteAll();
    OpenForm open(manipulation.get(), library->db());
    QVERIFY(shownProduct(&open).isEmpty());
    open.type("Nothing left");
    open.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
}

// --- Panels ---

void ManipulationFormTest::showsThePanelOfTheSelectedAction_data()
{
    using Test = std::function<bool(OpenForm *, ManipulationAction *)>;
    QTest::addColumn<QString>("label");
    QTest::addColumn<Test>("showsIt");
    QTest::newRow("Morphology selector:")
        << "Morph" << Test([](OpenForm *open, ManipulationAction *action) {
               return open->part<MorphologyView>()->morphology() ==
                      dynamic_cast<MorphologyAction *>(action)->morphology();
           });
    QTest::newRow("Remove action:") << "Remov" << Test([](OpenForm *open, ManipulationAction *a) {
        return open->part<RemoveDesigner>()->areaAction() == a;
    });
    QTest::newRow("Crop action:") << "Crop" << Test([](OpenForm *open, ManipulationAction *a) {
        return open->part<CropDesigner>()->areaAction() == a;
    });
    QTest::newRow("Join action:") << "Join" << Test([](OpenForm *open, ManipulationAction *) {
        return !open->part<JoinDesigner>()->scene()->items().isEmpty();
    });
    QTest::newRow("Irradiation action:")
        << "Irrad" << Test([](OpenForm *open, ManipulationAction *action) {
               return open->part<IrradiationDesigner>()->areaAction() == action;
           });
}

void ManipulationFormTest::showsThePanelOfTheSelectedAction()
{
    QFETCH(QString, label);
    QFETCH(std::function<bool(OpenForm *, ManipulationAction *)>, showsIt);
    growAllKinds();
    OpenForm open(manipulation.get(), library->db());
    int shown = 0;
    for (ManipulationAction *action : manipulation->actions()) {
        if (open.tree()->node(action)->text() != label)
            continue;
        ++shown;
        open.click(action);
        QCOMPARE(open.shownPanels(), QStringList(QTest::currentDataTag()));
        QVERIFY(showsIt(&open, action));
        QCOMPARE(open.product()->manipulation(), nullptr);
        open.clickNowhere();
        QCOMPARE(open.shownPanels(), QStringList("Resultant piece:"));
    }
    QCOMPARE(shown, label == "Morph" ? 2 : 1);
}

void ManipulationFormTest::clearsWhatItHides()
{
    growAllKinds();
    OpenForm open(manipulation.get(), library->db());
    for (ManipulationAction *action : manipulation->actions())
        open.click(action);
    open.clickNowhere();
    QCOMPARE(open.product()->manipulation(), manipulation.get());
    QCOMPARE(open.part<MorphologyView>()->morphology(), nullptr);
    QCOMPARE(open.part<RemoveDesigner>()->areaAction(), nullptr);
    QCOMPARE(open.part<CropDesigner>()->areaAction(), nullptr);
    QCOMPARE(open.part<IrradiationDesigner>()->areaAction(), nullptr);
    QVERIFY(open.part<JoinDesigner>()->scene()->items().isEmpty());
}

void ManipulationFormTest::keepsItsPanelWhileSeveralActionsAreSelected()
{
    growAllKinds();
    OpenForm open(manipulation.get(), library->db());
    open.click(first<CropAction>());
    Pointer(open.tree()).click(open.tree()->node(first<JoinAction>())->pos(), Qt::ControlModifier);
    QCOMPARE(open.shownPanels(), QStringList("Crop action:"));
}

void ManipulationFormTest::goesFromOneActionToAnotherOfItsKind()
{
    const AreaAction *lower = manipulation->addCropAction(manipulation->rootAction());
    AreaAction *upper = manipulation->addCropAction(manipulation->rootAction());
    OpenForm open(manipulation.get(), library->db());
    open.click(upper->fromAction());
    QCOMPARE(open.part<CropDesigner>()->areaAction(), lower);
    open.click(upper);
    QCOMPARE(open.part<CropDesigner>()->areaAction(), upper);
    QCOMPARE(open.shownPanels(), QStringList("Crop action:"));
}

void ManipulationFormTest::showsTheProductWithTheEditsApplied()
{
    AreaAction *crop = manipulation->addCropAction(manipulation->rootAction());
    for (const QPointF &corner : {QPointF(60, 60), QPointF(-60, 60), QPointF(0, -60)})
        crop->addAreaPoint(corner);
    OpenForm open(manipulation.get(), library->db());
    const QPainterPath before = shownProduct(&open);
    open.click(crop);
    Pointer(open.part<CropDesigner>()).drag({{0, -60}, {0, -40}, {0, -20}});
    QVERIFY(qAbs(crop->calcAreaVector().at(2).y() + 20) < 2);
    open.clickNowhere();
    QVERIFY(shownProduct(&open) != before);
    QCOMPARE(shownProduct(&open), product(*manipulation));
}

void ManipulationFormTest::designsAnActionThatHasBeenAdded_data()
{
    QTest::addColumn<QString>("panel");
    QTest::newRow("Add remove action") << "Remove action:";
    QTest::newRow("Add crop action") << "Crop action:";
    QTest::newRow("Add join action") << "Join action:";
    QTest::newRow("Add irradiation action") << "Irradiation action:";
}

void ManipulationFormTest::designsAnActionThatHasBeenAdded()
{
    QFETCH(QString, panel);
    OpenForm open(manipulation.get(), library->db());
    open.choose(manipulation->rootAction(), QTest::currentDataTag());
    QCOMPARE(open.shownPanels(), QStringList(panel));
    open.clickNowhere();
    QCOMPARE(shownProduct(&open), product(*manipulation));
}

void ManipulationFormTest::showsTheProductOfWhatADeletionLeaves()
{
    growAllKinds();
    OpenForm open(manipulation.get(), library->db());
    for (int steps = 4; steps > 0; --steps) {
        open.choose(manipulation->rootAction(), "Delete selection");
        QCOMPARE(open.shownPanels(), QStringList("Resultant piece:"));
        QCOMPARE(shownProduct(&open), product(*manipulation));
        QCOMPARE(manipulation->actions().size(), steps);
    }
}

// --- Morphologies ---

void ManipulationFormTest::tellsOfAMorphologyThatWasStored()
{
    OpenForm open(manipulation.get(), library->db());
    const QSignalSpy told(&open.form, &ManipulationForm::morphologyChanged);
    open.click(manipulation->rootAction());
    ModalAnswerer answerer;
    answerer.expectDialog([](QDialog *dialog) {
        auto *form = qobject_cast<MorphologyForm *>(dialog);
        form->findChild<QLineEdit *>()->setText("New worm");
        form->formAccepted();
    });
    open.part<MorphologyActionDesigner>()->newMorphology();
    QCOMPARE(answerer.problems(), QStringList());
    const Morphology *worm = first<MorphologyAction>()->morphology();
    QCOMPARE(worm->name(), "New worm");
    QCOMPARE(told, (QList<QVariantList>{{worm->id()}}));
}

void ManipulationFormTest::editsAMorphologyForAllWhoShowIt()
{
    manipulation = std::make_unique<Manipulation>(store("Stored"), library->db());
    const int id = first<MorphologyAction>()->morphology()->id();
    manipulation->addJoinAction(manipulation->rootAction(),
                                std::make_unique<Morphology>(id, library->db(), false).release());
    {
        OpenForm open(manipulation.get(), library->db());
        open.click(first<MorphologyAction>());
        ModalAnswerer answerer;
        answerer.expectDialog([](QDialog *dialog) {
            auto *form = qobject_cast<MorphologyForm *>(dialog);
            form->getMorphology()->regions().first()->setParams({90.0, 80.0, 70.0, 60.0});
            form->findChild<QLineEdit *>()->setText("Edited");
            form->formAccepted();
        });
        open.part<MorphologyActionDesigner>()->editMorphology();
        QCOMPARE(answerer.problems(), QStringList());
        open.press(QDialogButtonBox::Ok);
        QVERIFY(open.isAccepted());
    }
    QVERIFY(manipulation->submit(library->db()) > 0);
    const Morphology stored(id, library->db(), true);
    QCOMPARE(stored.name(), "Edited");
    QCOMPARE(paramValues(stored.regions().first()), (QList<double>{90.0, 80.0, 70.0, 60.0}));
    QCOMPARE(library->brokenReferences(), QStringList());
}

// --- Name ---

void ManipulationFormTest::takesTheNameWhenItsFieldIsLeft()
{
    OpenForm open(manipulation.get(), library->db());
    open.type("Two cuts");
    QCOMPARE(manipulation->name(), "");
    open.tree()->setFocus();
    QCOMPARE(manipulation->name(), "Two cuts");
    QCOMPARE(open.tree()->accessibleName(), "Tree of manipulation Two cuts");
    QCOMPARE(open.product()->accessibleName(), "Drawing of manipulation Two cuts");
    QVERIFY(open.form.isVisible());
}

void ManipulationFormTest::takesTheNameAlsoWhereNoFocusCouldLeaveIt()
{
    ManipulationForm form(manipulation.get(), library->db());
    form.findChild<QLineEdit *>()->setText("Two cuts");
    form.formAccepted();
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QCOMPARE(manipulation->name(), "Two cuts");
}

void ManipulationFormTest::refusesAnEmptyName_data()
{
    QTest::addColumn<bool>("stored");
    QTest::newRow("new") << false;
    QTest::newRow("stored") << true;
}

void ManipulationFormTest::refusesAnEmptyName()
{
    QFETCH(bool, stored);
    if (stored)
        manipulation = std::make_unique<Manipulation>(store("Stored"), library->db());
    OpenForm open(manipulation.get(), library->db());
    open.type("");
    open.tree()->setFocus();
    ModalAnswerer answerer;
    answerer.expectBox(emptyName, QMessageBox::Ok);
    open.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.form.isVisible());
    QCOMPARE(open.form.focusWidget(), open.nameEdit());
}

void ManipulationFormTest::takesANewNameByAnyWayToOk_data()
{
    QTest::addColumn<WayToOk>("way");
    for (const WayToOk &way : waysToOk())
        QTest::newRow(way.name) << way;
}

void ManipulationFormTest::takesANewNameByAnyWayToOk()
{
    QFETCH(WayToOk, way);
    store("Other");
    OpenForm open(manipulation.get(), library->db());
    const ModalAnswerer answerer;
    open.type("Two cuts");
    way.go(open.nameEdit(), open.buttons()->button(QDialogButtonBox::Ok));
    QTRY_VERIFY(open.isAccepted());
    QCOMPARE(manipulation->name(), "Two cuts");
    QCOMPARE(answerer.problems(), QStringList());
}

void ManipulationFormTest::refusesTheNameOfAnother_data()
{
    refusesAnEmptyName_data();
}

void ManipulationFormTest::refusesTheNameOfAnother()
{
    QFETCH(bool, stored);
    store("Other");
    if (stored)
        manipulation = std::make_unique<Manipulation>(store("Stored"), library->db());
    OpenForm open(manipulation.get(), library->db());
    open.type("Other");
    ModalAnswerer answerer;
    answerer.expectBox(sameName, QMessageBox::Ok);
    open.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.form.isVisible());
    QCOMPARE(open.form.focusWidget(), open.nameEdit());

    open.type("Another");
    open.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
}

void ManipulationFormTest::acceptsTheOldNameOfAStoredManipulationWithoutAQuestion()
{
    StatementLog statements;
    library = std::make_unique<TemporaryLibrary>(); // opened while the log listens
    Manipulation stored(store("Stored"), library->db());
    OpenForm open(&stored, library->db());
    open.type("Something else");
    open.type("Stored");
    statements.take();
    const ModalAnswerer answerer;
    open.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QCOMPARE(statements.take(), QStringList());
    QCOMPARE(answerer.problems(), QStringList());
}

// --- The way out ---

void ManipulationFormTest::keepsTheEditsWhenEscapeIsPressedInAnEditor()
{
    growAllKinds();
    OpenForm open(manipulation.get(), library->db());
    for (QWidget *editor :
         QWidgetList{open.tree(), open.part<RemoveDesigner>(), open.part<CropDesigner>(),
                     open.part<JoinDesigner>(), open.part<IrradiationDesigner>()}) {
        QTest::keyClick(editor, Qt::Key_Escape);
        QVERIFY2(open.form.isVisible(), editor->metaObject()->className());
    }
}

void ManipulationFormTest::leavesTheFileUntouchedWhenItIsCancelled_data()
{
    using Way = std::function<void(OpenForm *)>;
    QTest::addColumn<Way>("giveUp");
    QTest::newRow("Cancel") << Way([](OpenForm *open) { open->press(QDialogButtonBox::Cancel); });
    QTest::newRow("Escape") << Way(
        [](OpenForm *open) { QTest::keyClick(open->nameEdit(), Qt::Key_Escape); });
    QTest::newRow("window closed") << Way([](OpenForm *open) { open->form.close(); });
}

void ManipulationFormTest::leavesTheFileUntouchedWhenItIsCancelled()
{
    QFETCH(std::function<void(OpenForm *)>, giveUp);
    const int id = store("Stored");
    const QByteArray bytes = libraryBytes();
    Manipulation edited(id, library->db());
    OpenForm open(&edited, library->db());
    open.type("Edited");
    open.choose(edited.rootAction(), "Add join action");
    open.choose(edited.rootAction(), "Add crop action");
    giveUp(&open);

    QVERIFY(open.form.isHidden());
    QCOMPARE(open.form.result(), int(QDialog::Rejected));
    QCOMPARE(edited.actions().size(), 4); // nothing is undone in memory
    QCOMPARE(libraryBytes(), bytes);
}

void ManipulationFormTest::writesNothingWhenItIsAccepted()
{
    const QByteArray bytes = libraryBytes();
    OpenForm open(manipulation.get(), library->db());
    open.choose(manipulation->rootAction(), "Add crop action");
    open.type("Cut");
    open.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QCOMPARE(manipulation->id(), 0);
    QCOMPARE(libraryBytes(), bytes);
}

// --- Opening ---

void ManipulationFormTest::showsNothingBeforeItIsShown()
{
    // A panel that is shown before it has its place in the form would be a window for a moment.
    struct Watcher final : QObject
    {
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (event->type() == QEvent::Show && watched->isWidgetType())
                shown += watched->metaObject()->className();
            return false;
        }
        QStringList shown;
    } watcher;
    qApp->installEventFilter(&watcher);
    const ManipulationForm form(manipulation.get(), library->db());
    QCOMPARE(watcher.shown, QStringList());
}

// --- Settings ---

void ManipulationFormTest::remembersItsSize()
{
    {
        ManipulationForm form(manipulation.get(), library->db());
        form.resize(640, 480);
    }
    QCOMPARE(setting("size").toSize(), QSize(640, 480));
    QCOMPARE(setting("maximized"), QVariant(false));
    QCOMPARE(QSettings().allKeys().size(), 2);
    QCOMPARE(ManipulationForm(manipulation.get(), library->db()).size(), QSize(640, 480));
}

void ManipulationFormTest::keepsItsNormalSizeWhileItIsMaximized()
{
    QSettings().setValue("ManipulationForm/size", QSize(640, 480));
    {
        ManipulationForm form(manipulation.get(), library->db());
        form.showMaximized();
        QTRY_VERIFY(form.size() != QSize(640, 480));
    }
    QCOMPARE(setting("maximized").toBool(), true);
    QCOMPARE(setting("size").toSize(), QSize(640, 480));
}

void ManipulationFormTest::isModalWhenItOpensMaximized()
{
    QSettings().setValue("ManipulationForm/maximized", true);
    ManipulationForm form(manipulation.get(), library->db());
    bool wasModal = false;
    bool wasMaximized = false;
    ModalAnswerer answerer;
    answerer.expectDialog([&](QDialog *dialog) {
        wasModal = dialog->isModal();
        wasMaximized = dialog->isMaximized();
        dialog->reject();
    });
    form.exec();
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(wasModal);
    QVERIFY(wasMaximized);
}

QTEST_MAIN(ManipulationFormTest)
#include "ManipulationFormTest.moc"
