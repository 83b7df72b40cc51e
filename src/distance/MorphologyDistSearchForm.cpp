#include "distance/MorphologyDistSearchForm.h"

#include "db/BulkRead.h"
#include "db/DB.h"
#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "morphology/MorphoGraphView.h"
#include "morphology/MorphologyListView.h"
#include "morphology/MorphologyView.h"
#include "widgets/WindowSettings.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace Planaria {

namespace {
constexpr auto settingsGroup = "MorphologyDistSearchForm";
}

MorphologyDistSearchForm::MorphologyDistSearchForm(DB *database, QWidget *parent)
    : QDialog(parent), db(database),
      model(db->newTableModel(QStringLiteral("Morphology"), QStringLiteral("Name"))),
      searched(ExperimentFactory::instance(nullptr)->createWildMorphology()), compared(database)
{
    createWidgets();
    WindowSettings::read(this, QLatin1String(settingsGroup));
}

MorphologyDistSearchForm::~MorphologyDistSearchForm()
{
    WindowSettings::write(this, QLatin1String(settingsGroup));
    resultsView->clear();
    graphView->clear();
    view->clear();
}

void MorphologyDistSearchForm::createWidgets()
{
    setWindowFlags(Qt::Window); // in place of a dialog's, which leave no button to maximize it
    setWindowTitle(QStringLiteral("Morphology graphical search"));
    resize(800, 700);

    auto *halves = new QHBoxLayout;
    halves->addWidget(createSearchedHalf(), 1);
    halves->addWidget(createResultsHalf(), 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(halves, 1);
    layout->addWidget(createButtons());
}

QWidget *MorphologyDistSearchForm::createSearchedHalf()
{
    auto *half = new QWidget(this);
    graphView = new MorphoGraphView(searched.get(), half);
    view = new MorphologyView(searched.get(), half);
    connect(graphView, &MorphoGraphView::signMorphologyChanged, view,
            &MorphologyView::morphologyChanged);

    auto *views = new QHBoxLayout;
    views->addWidget(graphView, 1);
    views->addWidget(view, 1);
    auto *layout = new QVBoxLayout(half);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("Morphology to search:"), half));
    layout->addLayout(views, 1);
    return half;
}

QWidget *MorphologyDistSearchForm::createResultsHalf()
{
    auto *half = new QWidget(this);
    resultsView = new MorphologyListView(half);
    auto *layout = new QVBoxLayout(half);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("Search results:"), half));
    layout->addWidget(resultsView, 1);
    return half;
}

QDialogButtonBox *MorphologyDistSearchForm::createButtons()
{
    auto *box = new QDialogButtonBox(this);
    QPushButton *searchButton = box->addButton(tr("Search"), QDialogButtonBox::ActionRole);
    box->addButton(QDialogButtonBox::Close);
    connect(searchButton, &QPushButton::clicked, this, &MorphologyDistSearchForm::updateComparator);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::accept);
    return box;
}

void MorphologyDistSearchForm::updateComparator()
{
    const auto progress = ComparedMorphologies::newProgress(*model, parentWidget());
    const BulkRead job(db); // pictures are read while the results are drawn
    resultsView->clear();
    if (!compared.compare(*searched, *model, progress.get()))
        return;
    resultsView->setMorphologyList(compared.results().values());
    // The closest worms come into sight first.
    for (QScrollBar *bar : {resultsView->horizontalScrollBar(), resultsView->verticalScrollBar()})
        bar->setValue(bar->minimum());
}

} // namespace Planaria
