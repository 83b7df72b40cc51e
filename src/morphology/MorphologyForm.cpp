#include "morphology/MorphologyForm.h"

#include "db/DB.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "morphology/MorphoGraphView.h"
#include "morphology/MorphologyImageWidget.h"
#include "morphology/MorphologyView.h"
#include "widgets/ElementStore.h"
#include "widgets/NameCheck.h"
#include "widgets/NameRow.h"
#include "widgets/SilkIcon.h"
#include "widgets/WindowSettings.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QVBoxLayout>

namespace Planaria {

namespace {

constexpr auto showAllKey = "MorphologyForm/showAllParameters";

bool hasRow(const Morphology &morphology, DB *db)
{
    return db->existId(QStringLiteral("Morphology"), QStringLiteral("Id"), morphology.id()) > 0;
}

std::unique_ptr<Morphology> run(std::unique_ptr<Morphology> morphology, DB *db, QWidget *parent)
{
    MorphologyForm form(morphology.get(), db, parent);
    if (form.exec() != QDialog::Accepted)
        return nullptr;
    const bool stored = ElementStore::store(morphology.get(), QStringLiteral("Morphology"),
                                            QStringLiteral("morphology"), db, parent);
    return stored ? std::move(morphology) : nullptr;
}

} // namespace

std::unique_ptr<Morphology> MorphologyForm::edit(const Morphology &stored, DB *db, QWidget *parent)
{
    // The row may have changed since it was read; its old state would undo what was done to it.
    const bool inFile = stored.record().isStoredIn(db) && hasRow(stored, db);
    return run(inFile ? std::make_unique<Morphology>(stored.id(), db, true)
                      : std::make_unique<Morphology>(stored, true),
               db, parent);
}

std::unique_ptr<Morphology> MorphologyForm::copy(const Morphology &source, DB *db, QWidget *parent)
{
    auto morphology = std::make_unique<Morphology>(source, false);
    morphology->setName(morphology->name() + QStringLiteral(" - copy"));
    return run(std::move(morphology), db, parent);
}

std::unique_ptr<Morphology> MorphologyForm::create(DB *db, QWidget *parent)
{
    return run(std::make_unique<Morphology>(), db, parent);
}

MorphologyForm::MorphologyForm(Morphology *edited, DB *database, QWidget *parent)
    : QDialog(parent), morphology(edited), db(database)
{
    createWidgets();
    readSettings();
}

MorphologyForm::~MorphologyForm()
{
    writeSettings();
}

// --- Widgets ---

void MorphologyForm::createWidgets()
{
    setWindowFlags(Qt::Window);
    resize(800, 700);
    const bool stored = morphology->id() != 0;
    setWindowTitle(stored ? tr("Edit morphology") : tr("New morphology"));
    if (stored)
        originalName = morphology->name();

    auto *nameRow = new NameRow(morphology->name(), this);
    nameEdit = nameRow->edit();
    connect(nameEdit, &QLineEdit::editingFinished, this, &MorphologyForm::nameChanged);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(nameRow);
    layout->addSpacing(10);
    layout->addWidget(createMiddle(), 1);
    layout->addSpacing(10);
    layout->addWidget(createButtonRow());
    layout->setMenuBar(createMenuBar());
}

QWidget *MorphologyForm::createMiddle()
{
    auto *splitter = new QSplitter(this);
    graphView = new MorphoGraphView(morphology, splitter);
    drawing = new MorphologyView(morphology, splitter);
    connect(graphView, &MorphoGraphView::signMorphologyChanged, drawing,
            &MorphologyView::morphologyChanged);

    imageArea = new QWidget(splitter);
    imageLayout = new QHBoxLayout(imageArea);
    imageLayout->setContentsMargins(0, 0, 0, 0);
    for (MorphologyImage *image : morphology->getImages())
        addImageWidget(image);
    imageArea->setVisible(morphology->nImages() > 0);

    splitter->setSizes({100, 100, 100});
    return splitter;
}

QWidget *MorphologyForm::createButtonRow()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *addButton = new QPushButton(tr("Add image"), row);
    connect(addButton, &QPushButton::clicked, this, &MorphologyForm::addImage);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, row);
    connect(buttons, &QDialogButtonBox::accepted, this, &MorphologyForm::formAccepted);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(addButton);
    layout->addStretch();
    layout->addWidget(buttons);
    return row;
}

QMenuBar *MorphologyForm::createMenuBar()
{
    auto *menuBar = new QMenuBar(this);
    QMenu *viewMenu = menuBar->addMenu(tr("&View"));
    allParametersAction = viewMenu->addAction(silkIcon(QStringLiteral("application_view_detail")),
                                              tr("&All parameters"));
    allParametersAction->setCheckable(true);
    allParametersAction->setShortcut(QKeySequence(tr("Ctrl+A")));
    allParametersAction->setStatusTip(tr("Show all the parameters in the graph."));
    connect(allParametersAction, &QAction::toggled, graphView,
            &MorphoGraphView::updateParamsVisibility);
    return menuBar;
}

void MorphologyForm::addImageWidget(MorphologyImage *image)
{
    auto *widget = new MorphologyImageWidget(image, imageArea);
    connect(widget, &MorphologyImageWidget::deleted, this, &MorphologyForm::imageDeleted);
    imageLayout->addWidget(widget, 1);
}

// --- Name ---

void MorphologyForm::nameChanged()
{
    morphology->setName(nameEdit->text());
    graphView->updateAccessibleName();
    drawing->updateAccessibleName();
}

void MorphologyForm::formAccepted()
{
    nameChanged(); // a key that presses Ok leaves the focus, and the text, in the line edit

    const NameCheck check{
        QStringLiteral("Morphology"),
        QStringLiteral("Name"),
        {tr("Name is empty"), tr("The name of a morphology cannot be left blank. Please, specify a "
                                 "name for the morphology.")},
        {tr("Morphology with same name found"),
         tr("The database already contains a morphology with the same name. Please, specify a "
            "different name for this morphology.")}};
    if (check.passes(nameEdit, originalName, db))
        accept();
}

// --- Pictures ---

void MorphologyForm::addImage()
{
    const QString fileName = QFileDialog::getOpenFileName(this, tr("Add image"), QString(),
                                                          tr("Images (*.bmp *.jpg *.jpeg *.png)"));
    if (fileName.isEmpty())
        return;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly) || file.size() > MorphologyImage::largestFile) {
        QMessageBox::critical(this, tr("Cannot open file"), tr("Unable to open the file."));
        return;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError || MorphologyImage::decoded(bytes).isNull()) {
        QMessageBox::critical(this, tr("Cannot understand file"),
                              tr("Unable to understand the format of the image file."));
        return;
    }
    addImageWidget(morphology->addImage(bytes));
    imageArea->setVisible(true);
}

void MorphologyForm::imageDeleted()
{
    if (morphology->nImages() == 0)
        imageArea->setVisible(false);
}

// --- Settings ---

void MorphologyForm::readSettings()
{
    WindowSettings::read(this, QStringLiteral("MorphologyForm"));
    if (QSettings().value(QLatin1String(showAllKey), false).toBool())
        allParametersAction->setChecked(true);
}

void MorphologyForm::writeSettings() const
{
    WindowSettings::write(this, QStringLiteral("MorphologyForm"));
    QSettings().setValue(QLatin1String(showAllKey), allParametersAction->isChecked());
}

} // namespace Planaria
