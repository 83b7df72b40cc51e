#include "manipulation/ManipulationForm.h"

#include "manipulation/CropDesigner.h"
#include "manipulation/IrradiationDesigner.h"
#include "manipulation/JoinDesigner.h"
#include "manipulation/ManipulationGraphView.h"
#include "manipulation/ManipulationView.h"
#include "manipulation/MorphologyActionDesigner.h"
#include "manipulation/RemoveDesigner.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "widgets/NameCheck.h"
#include "widgets/NameRow.h"
#include "widgets/WindowSettings.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace Planaria {

namespace {

constexpr auto settingsGroup = "ManipulationForm";

/// A title above @p content.
QWidget *titled(const QString &title, QWidget *content, QWidget *parent)
{
    auto *column = new QWidget(parent);
    auto *layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(title, column));
    layout->addWidget(content, 1);
    return column;
}

} // namespace

ManipulationForm::ManipulationForm(Manipulation *edited, DB *database, QWidget *parent)
    : QDialog(parent), manipulation(edited), db(database)
{
    createWidgets();
    readSettings();
}

ManipulationForm::~ManipulationForm()
{
    writeSettings();
}

// --- Widgets ---

void ManipulationForm::createWidgets()
{
    setWindowFlags(Qt::Window);
    resize(600, 600);
    const bool stored = manipulation->id() != 0;
    setWindowTitle(stored ? tr("Edit worm manipulation") : tr("New worm manipulation"));
    if (stored)
        originalName = manipulation->name();

    auto *nameRow = new NameRow(manipulation->name(), this);
    nameEdit = nameRow->edit();
    connect(nameEdit, &QLineEdit::editingFinished, this, &ManipulationForm::nameChanged);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(nameRow);
    layout->addSpacing(10);
    layout->addLayout(createMiddle(), 1);
    layout->addSpacing(10);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &ManipulationForm::formAccepted);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

QBoxLayout *ManipulationForm::createMiddle()
{
    graphView = new ManipulationGraphView(manipulation, db, this);
    auto *row = new QHBoxLayout;
    row->addWidget(titled(tr("Manipulation:"), graphView, this), 1);
    createPanels(row);
    connect(graphView, &ManipulationGraphView::signActionSelecChanged, this,
            &ManipulationForm::actionSelecChanged);
    connect(graphView, &ManipulationGraphView::signManipulationGraphChanged, product,
            &ManipulationView::updateManipulation);
    connect(morphologyDesigner, &MorphologyActionDesigner::morphologyChanged, this,
            &ManipulationForm::morphologyHasChanged);
    showProduct();
    return row;
}

void ManipulationForm::createPanels(QBoxLayout *row)
{
    product = addPanel(row, tr("Resultant piece:"), new ManipulationView(this));
    morphologyDesigner =
        addPanel(row, tr("Morphology selector:"), new MorphologyActionDesigner(db, this));
    removeDesigner = addPanel(row, tr("Remove action:"), new RemoveDesigner(this));
    cropDesigner = addPanel(row, tr("Crop action:"), new CropDesigner(this));
    joinDesigner = addPanel(row, tr("Join action:"), new JoinDesigner(this));
    irradiationDesigner = addPanel(row, tr("Irradiation action:"), new IrradiationDesigner(this));
}

template <typename Content>
Content *ManipulationForm::addPanel(QBoxLayout *row, const QString &title, Content *content)
{
    QWidget *panel = titled(title, content, this);
    row->addWidget(panel, 1);
    panel->hide();
    panels.append({panel, [content] { content->clear(); }});
    return content;
}

// --- Panels ---

void ManipulationForm::actionSelecChanged(ManipulationAction *action)
{
    if (!action) {
        showProduct();
    } else if (auto *morphology = dynamic_cast<MorphologyAction *>(action)) {
        showPanel(morphologyDesigner);
        morphologyDesigner->setMorphologyAction(morphology);
    } else if (auto *remove = dynamic_cast<RemoveAction *>(action)) {
        showPanel(removeDesigner);
        removeDesigner->setRemoveAction(remove);
    } else if (auto *crop = dynamic_cast<CropAction *>(action)) {
        showPanel(cropDesigner);
        cropDesigner->setCropAction(crop);
    } else if (auto *join = dynamic_cast<JoinAction *>(action)) {
        showPanel(joinDesigner);
        joinDesigner->setJoinAction(join);
    } else if (auto *irradiation = dynamic_cast<IrradiationAction *>(action)) {
        showPanel(irradiationDesigner);
        irradiationDesigner->setIrradiationAction(irradiation);
    }
}

void ManipulationForm::showProduct()
{
    showPanel(product);
    product->setManipulation(manipulation);
}

void ManipulationForm::showPanel(const QWidget *content)
{
    const QWidget *wanted = content->parentWidget();
    for (const Panel &panel : std::as_const(panels)) {
        if (panel.widget != wanted) {
            panel.widget->hide();
            panel.clear();
        }
    }
    content->parentWidget()->show();
}

void ManipulationForm::morphologyHasChanged(int id)
{
    emit morphologyChanged(id);
}

// --- Name ---

void ManipulationForm::nameChanged()
{
    manipulation->setName(nameEdit->text());
    graphView->updateAccessibleName();
    product->updateAccessibleName();
}

void ManipulationForm::formAccepted()
{
    nameChanged(); // a key that presses Ok leaves the focus, and the text, in the line edit

    const NameCheck check{
        QStringLiteral("Manipulation"),
        QStringLiteral("Name"),
        {tr("Name is empty"), tr("The name of a manipulation cannot be left blank. Please, specify "
                                 "a name for the manipulation.")},
        {tr("Manipulation with same name found"),
         tr("The database already contains a manipulation with the same name. Please, specify a "
            "different name for this manipulation.")}};
    if (check.passes(nameEdit, originalName, db))
        accept();
}

// --- Settings ---

void ManipulationForm::readSettings()
{
    WindowSettings::read(this, QLatin1String(settingsGroup));
}

void ManipulationForm::writeSettings() const
{
    WindowSettings::write(this, QLatin1String(settingsGroup));
}

} // namespace Planaria
