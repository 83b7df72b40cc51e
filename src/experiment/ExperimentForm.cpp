#include "experiment/ExperimentForm.h"

#include "db/DB.h"
#include "experiment/ExperimentDrugsWidget.h"
#include "experiment/ExperimentRNAiWidget.h"
#include "experiment/PublicationForm.h"
#include "experiment/ResultSetsWidget.h"
#include "experiment/SpeciesForm.h"
#include "manipulation/ManipulationForm.h"
#include "manipulation/ManipulationView.h"
#include "model/Experiment.h"
#include "model/Manipulation.h"
#include "model/Publication.h"
#include "model/Species.h"
#include "widgets/ElementChoice.h"
#include "widgets/ElementStore.h"
#include "widgets/NameCheck.h"
#include "widgets/WindowSettings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>

namespace Planaria {

namespace {

constexpr auto settingsGroup = "ExperimentForm";

template <typename Element> int idOf(const Element *element)
{
    return element ? element->id() : 0;
}

} // namespace

ExperimentForm::ExperimentForm(Experiment *edited, DB *database, QWidget *parent)
    : QDialog(parent), db(database), experiment(edited)
{
    const bool stored = experiment->id() != 0;
    setWindowTitle(stored ? tr("Edit experiment") : tr("New experiment"));
    if (stored)
        oldName = experiment->name();
    createWidgets();
    readSettings();
}

ExperimentForm::~ExperimentForm()
{
    WindowSettings::write(this, QLatin1String(settingsGroup));
}

void ExperimentForm::readSettings()
{
    resize(1000, 800);
    WindowSettings::read(this, QLatin1String(settingsGroup));
    // All of the window stays in sight on a small screen. Its frame takes as much again at the top,
    // since a dialog is centred without it.
    const QSize frame(8, 80);
    resize(size().boundedTo(screen()->availableSize() - frame));
}

// --- Widgets ---

void ExperimentForm::createWidgets()
{
    setWindowFlags(Qt::Window);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(createUpperPart(), 1);
    resultSetsWidget = new ResultSetsWidget(experiment, db, this);
    connect(resultSetsWidget, &ResultSetsWidget::morphologyChanged, this,
            &ExperimentForm::morphologyHasChanged);
    layout->addWidget(resultSetsWidget, 10);
    layout->addWidget(createButtons());
}

QBoxLayout *ExperimentForm::createUpperPart()
{
    auto *left = new QVBoxLayout;
    left->addLayout(createHead());
    auto *treatments = new QHBoxLayout;
    treatments->addWidget(new ExperimentDrugsWidget(experiment, db, this));
    treatments->addWidget(new ExperimentRNAiWidget(experiment, db, this));
    left->addLayout(treatments, 1);

    auto *upper = new QHBoxLayout;
    upper->addLayout(left);
    upper->addWidget(createManipulationBox(), 1);
    return upper;
}

QFormLayout *ExperimentForm::createHead()
{
    auto *head = new QFormLayout;
    head->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);

    nameEdit = new QLineEdit(experiment->name(), this);
    connect(nameEdit, &QLineEdit::editingFinished, this, &ExperimentForm::nameChanged);
    head->addRow(tr("Name:"), nameEdit);

    publicationLabel = new QLabel(this);
    publicationLabel->setOpenExternalLinks(true);
    updatePublicationLabel();
    publicationChoice = createChoice(QStringLiteral("Publication"), QStringLiteral("Title"),
                                     tr("Publication"), &publicationComboBox);
    publicationChoice->choose(idOf(experiment->publication()));
    connect(publicationChoice, &ElementChoice::chosen, this,
            &ExperimentForm::publicationComboChanged);
    head->addRow(publicationLabel, createRow(publicationComboBox, &ExperimentForm::editPublication,
                                             &ExperimentForm::newPublication));

    speciesChoice = createChoice(QStringLiteral("Species"), QStringLiteral("Name"), tr("Species"),
                                 &speciesComboBox);
    speciesChoice->choose(idOf(experiment->species()));
    connect(speciesChoice, &ElementChoice::chosen, this, &ExperimentForm::speciesComboChanged);
    head->addRow(tr("Species:"), createRow(speciesComboBox, &ExperimentForm::editSpecies,
                                           &ExperimentForm::newSpecies));
    return head;
}

QBoxLayout *ExperimentForm::createRow(QComboBox *box, Slot editSlot, Slot newSlot)
{
    auto *row = new QHBoxLayout;
    row->addWidget(box, 1);
    addButton(row, tr("Edit"), box->accessibleName(), editSlot);
    addButton(row, tr("New"), box->accessibleName(), newSlot);
    return row;
}

QGroupBox *ExperimentForm::createManipulationBox()
{
    auto *group = new QGroupBox(tr("Manipulation"), this);
    manipulationChoice = createChoice(QStringLiteral("Manipulation"), QStringLiteral("Name"),
                                      tr("Manipulation"), &manipulationComboBox);
    manipulationChoice->choose(idOf(experiment->manipulation()));
    connect(manipulationChoice, &ElementChoice::chosen, this,
            &ExperimentForm::manipulationComboChanged);
    manipulationView = new ManipulationView(group);
    manipulationView->setMinimumWidth(50);
    if (experiment->manipulation())
        manipulationView->setManipulation(experiment->manipulation());

    auto *column = new QVBoxLayout;
    column->addStretch();
    addButton(column, tr("Edit"), tr("Manipulation"), &ExperimentForm::editActionsManipulation);
    addButton(column, tr("Copy"), tr("Manipulation"), &ExperimentForm::copyActionsManipulation);
    addButton(column, tr("New"), tr("Manipulation"), &ExperimentForm::newActionsManipulation);
    auto *lower = new QHBoxLayout;
    lower->addWidget(manipulationView, 1);
    lower->addLayout(column);
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(manipulationComboBox);
    layout->addLayout(lower, 1);
    return group;
}

QDialogButtonBox *ExperimentForm::createButtons()
{
    buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &ExperimentForm::formAccepted);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    return buttons;
}

ElementChoice *ExperimentForm::createChoice(const QString &table, const QString &column,
                                            const QString &role, QComboBox **box)
{
    *box = new QComboBox(this);
    (*box)->setAccessibleName(role);
    (*box)->setMinimumContentsLength(5);
    (*box)->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    return new ElementChoice(*box, db->newTableModel(table, column));
}

void ExperimentForm::addButton(QBoxLayout *layout, const QString &text, const QString &role,
                               Slot slot)
{
    auto *button = new QPushButton(text, this);
    button->setAccessibleDescription(role);
    button->setAutoDefault(false); // Enter in a field is for OK
    connect(button, &QPushButton::clicked, this, slot);
    layout->addWidget(button);
}

// --- Publication ---

void ExperimentForm::updatePublicationLabel()
{
    const QString url = experiment->publication() ? experiment->publication()->url() : QString();
    publicationLabel->setText(
        QStringLiteral("<a href=\"%1\">Publication</a>:").arg(url.toHtmlEscaped()));
    // The Tab key stops at a link that leads somewhere.
    publicationLabel->setTextInteractionFlags(url.isEmpty() ? Qt::LinksAccessibleByMouse
                                                            : Qt::LinksAccessibleByMouse |
                                                                  Qt::LinksAccessibleByKeyboard);
}

void ExperimentForm::publicationComboChanged(int index)
{
    const int id = publicationChoice->idAt(index);
    if (index == -1 || id == idOf(experiment->publication()))
        return;
    experiment->setPublication(std::make_unique<Publication>(id, db).release());
    updatePublicationLabel();
}

void ExperimentForm::editPublication()
{
    if (const int id = publicationChoice->id())
        runPublicationForm(std::make_unique<Publication>(id, db));
}

void ExperimentForm::newPublication()
{
    runPublicationForm(std::make_unique<Publication>());
}

void ExperimentForm::runPublicationForm(std::unique_ptr<Publication> publication)
{
    if (PublicationForm(publication.get(), db, this).exec() != Accepted)
        return;
    if (!ElementStore::store(publication.get(), QStringLiteral("Publication"),
                             QStringLiteral("publication"), db, this))
        return;
    publicationChoice->update(db, publication->id());
    experiment->setPublication(publication.release());
    updatePublicationLabel();
}

// --- Species ---

void ExperimentForm::speciesComboChanged(int index)
{
    const int id = speciesChoice->idAt(index);
    if (index != -1 && id != idOf(experiment->species()))
        experiment->setSpecies(std::make_unique<Species>(id, db).release());
}

void ExperimentForm::editSpecies()
{
    if (const int id = speciesChoice->id())
        runSpeciesForm(std::make_unique<Species>(id, db));
}

void ExperimentForm::newSpecies()
{
    runSpeciesForm(std::make_unique<Species>());
}

void ExperimentForm::runSpeciesForm(std::unique_ptr<Species> species)
{
    if (SpeciesForm(species.get(), db, this).exec() != Accepted)
        return;
    if (!ElementStore::store(species.get(), QStringLiteral("Species"), QStringLiteral("species"),
                             db, this))
        return;
    speciesChoice->update(db, species->id());
    experiment->setSpecies(species.release());
}

// --- Manipulation ---

void ExperimentForm::takeManipulation(std::unique_ptr<Manipulation> manipulation)
{
    manipulationView->clear(); // before the former one goes
    experiment->setManipulation(manipulation.release());
    manipulationView->setManipulation(experiment->manipulation());
}

void ExperimentForm::manipulationComboChanged(int index)
{
    const int id = manipulationChoice->idAt(index);
    if (index == -1)
        return;
    if (id == idOf(experiment->manipulation()))
        manipulationView->setManipulation(experiment->manipulation());
    else
        takeManipulation(std::make_unique<Manipulation>(id, db));
}

void ExperimentForm::morphologyHasChanged(int /*morphologyId*/)
{
    if (manipulationChoice->id() != 0 && experiment->manipulation())
        takeManipulation(std::make_unique<Manipulation>(experiment->manipulation()->id(), db));
}

void ExperimentForm::editActionsManipulation()
{
    if (const int id = manipulationChoice->id())
        runManipulationForm(std::make_unique<Manipulation>(id, db));
}

void ExperimentForm::copyActionsManipulation()
{
    const int id = manipulationChoice->id();
    if (id == 0)
        return;
    auto copy = std::make_unique<Manipulation>(Manipulation(id, db), false);
    copy->setName(copy->name() + QStringLiteral(" - copy"));
    runManipulationForm(std::move(copy));
}

void ExperimentForm::newActionsManipulation()
{
    runManipulationForm(std::make_unique<Manipulation>(db));
}

void ExperimentForm::runManipulationForm(std::unique_ptr<Manipulation> manipulation)
{
    ManipulationForm form(manipulation.get(), db, this);
    connect(&form, &ManipulationForm::morphologyChanged, resultSetsWidget,
            &ResultSetsWidget::morphologyHasChanged);
    if (form.exec() != Accepted)
        return;
    if (!ElementStore::store(manipulation.get(), QStringLiteral("Manipulation"),
                             QStringLiteral("manipulation"), db, this))
        return;
    manipulationChoice->update(db, manipulation->id());
    takeManipulation(std::move(manipulation));
}

// --- Accepting ---

void ExperimentForm::nameChanged()
{
    experiment->setName(nameEdit->text());
}

bool ExperimentForm::hasReferences()
{
    if (!experiment->manipulation()) {
        refuse(tr("Manipulation is empty"),
               tr("The manipulation of an experiment cannot be left blank. Please, specify a "
                  "manipulation for the experiment."),
               manipulationComboBox);
    } else if (!experiment->publication()) {
        refuse(tr("Publication is empty"),
               tr("The publication of an experiment cannot be left blank. Please, specify a "
                  "publication for the experiment."),
               publicationComboBox);
    } else if (!experiment->species()) {
        refuse(tr("Species is empty"),
               tr("The species of an experiment cannot be left blank. Please, specify a species "
                  "for the experiment."),
               speciesComboBox);
    } else {
        return true;
    }
    return false;
}

void ExperimentForm::refuse(const QString &title, const QString &text, QWidget *place)
{
    QMessageBox::warning(this, title, text);
    place->setFocus();
}

bool ExperimentForm::hasOwnName()
{
    const NameCheck check{
        QStringLiteral("Experiment"),
        QStringLiteral("Name"),
        {tr("Name is empty"), tr("The name of an experiment cannot be left blank. Please, specify "
                                 "a name for this experiment.")},
        {tr("Experiment with same name found"),
         tr("The database already contains an experiment with the same name. Please, specify a "
            "different name for this experiment.")}};
    return check.passes(nameEdit, oldName, db);
}

void ExperimentForm::formAccepted()
{
    // A key that presses Ok leaves the focus, and what was typed, where it is.
    buttons->button(QDialogButtonBox::Ok)->setFocus();
    nameChanged();
    if (hasReferences() && hasOwnName() && resultSetsWidget->isDataCorrect())
        accept();
}

void ExperimentForm::keyPressEvent(QKeyEvent *e)
{
    if (e->key() == Qt::Key_Escape)
        e->accept();
    else
        QDialog::keyPressEvent(e);
}

} // namespace Planaria
