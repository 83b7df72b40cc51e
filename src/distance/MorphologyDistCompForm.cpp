#include "distance/MorphologyDistCompForm.h"

#include "db/DB.h"
#include "distance/ShownDistance.h"
#include "model/Morphology.h"
#include "morphology/MorphologyChooser.h"
#include "morphology/MorphologyItem.h"
#include "widgets/WindowSettings.h"
#include "widgets/ZoomGraphicsView.h"

#include <QDialogButtonBox>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QProgressDialog>
#include <QScrollBar>
#include <QVBoxLayout>

namespace Planaria {

namespace {

constexpr auto settingsGroup = "MorphologyDistCompForm";

constexpr double leftMargin = 20.0;
constexpr double gap = 30.0;

} // namespace

MorphologyDistCompForm::MorphologyDistCompForm(DB *database, QWidget *parent)
    : QDialog(parent), db(database),
      model(db->newTableModel(QStringLiteral("Morphology"), QStringLiteral("Name"))),
      compared(database)
{
    createWidgets();
    if (!aborted)
        WindowSettings::read(this, QLatin1String(settingsGroup));
}

MorphologyDistCompForm::~MorphologyDistCompForm()
{
    WindowSettings::write(this, QLatin1String(settingsGroup));
    delete chooser; // the list goes before its model
}

void MorphologyDistCompForm::createWidgets()
{
    setWindowFlags(Qt::Window); // in place of a dialog's, which leave no button to maximize it
    setWindowTitle(QStringLiteral("Morphology distance comparator"));
    resize(800, 700);

    createChooser();
    compView = new ZoomGraphicsView(this, false, true);
    compScene = compView->scene();
    clearComparison();
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::accept);

    auto *row = new QHBoxLayout;
    row->addWidget(chooser, 1);
    row->addWidget(compView, 2);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(row, 1);
    layout->addWidget(buttons);

    chooser->setModel(model.get()); // starts the first comparison
}

void MorphologyDistCompForm::createChooser()
{
    chooser = new MorphologyChooser(tr("Morphology to compare with"), db, this);
    connect(chooser, &MorphologyChooser::rowChosen, this,
            &MorphologyDistCompForm::morphologyComboBoxChanged);
    connect(chooser, &MorphologyChooser::editClicked, this,
            &MorphologyDistCompForm::editMorphology);
    connect(chooser, &MorphologyChooser::copyClicked, this,
            &MorphologyDistCompForm::copyMorphology);
    connect(chooser, &MorphologyChooser::newClicked, this, &MorphologyDistCompForm::newMorphology);
}

// --- The morphology to compare with ---

void MorphologyDistCompForm::morphologyComboBoxChanged(int index)
{
    if (chooser->showRow(index))
        updateComparator();
}

void MorphologyDistCompForm::editMorphology()
{
    if (chooser->edit())
        updateComparator();
}

void MorphologyDistCompForm::copyMorphology()
{
    if (chooser->copy())
        updateComparator();
}

void MorphologyDistCompForm::newMorphology()
{
    if (chooser->create())
        updateComparator();
}

// --- The comparison ---

void MorphologyDistCompForm::updateComparator()
{
    if (!chooser->morphology())
        return;
    const auto progress = ComparedMorphologies::newProgress(*model, parentWidget());
    clearComparison();
    if (compared.compare(*chooser->morphology(), *model, progress.get()))
        drawResults();
    else
        aborted = true;
}

void MorphologyDistCompForm::clearComparison()
{
    compScene->clear();
    compView->fitView();
    compView->viewport()->update();
    compView->setAccessibleName(tr("No comparison"));
    compView->setAccessibleDescription(QString());
}

void MorphologyDistCompForm::drawResults()
{
    double x = leftMargin;
    int lowest = 0;
    QList<QGraphicsTextItem *> texts;
    const QMultiMap<double, Morphology *> &results = compared.results();
    for (auto result = results.cbegin(); result != results.cend(); ++result) {
        auto *worm = new MorphologyItem(*result.value(), nullptr, false);
        worm->centerAtZero();
        const QRectF rect = worm->boundingRect();
        const double middle = 0.5 * rect.width() + x;
        worm->setPos(middle, 0.0);
        compScene->addItem(worm);
        texts += addDistance(result.key(), middle);
        if (lowest > rect.y())
            lowest = static_cast<int>(rect.y());
        x += rect.width() + gap;
    }
    // All on one line, beneath the worm that reaches lowest.
    for (QGraphicsTextItem *text : std::as_const(texts))
        text->moveBy(0.0, lowest);

    // The closest worms and their distances come into sight first.
    compView->fitView();
    compView->horizontalScrollBar()->setValue(compView->horizontalScrollBar()->minimum());
    compView->verticalScrollBar()->setValue(compView->verticalScrollBar()->maximum());
    describeResults();
}

QGraphicsTextItem *MorphologyDistCompForm::addDistance(double distance, double x)
{
    static const QFont font(QStringLiteral("Arial"), 12, QFont::Bold);
    QGraphicsTextItem *text = compScene->addText(distanceText(distance), font);
    text->setDefaultTextColor(Qt::black);                       // the paper is always white
    text->setTransform(QTransform::fromScale(1.0, -1.0), true); // upright in the flipped view
    text->setPos(x - 0.5 * text->boundingRect().width(), 0.0);
    return text;
}

void MorphologyDistCompForm::describeResults()
{
    QStringList distances;
    const QMultiMap<double, Morphology *> &results = compared.results();
    for (auto result = results.cbegin(); result != results.cend(); ++result)
        distances += result.value()->name() + QStringLiteral(" ") + distanceText(result.key());
    compView->setAccessibleName(
        tr("Morphologies by distance from %1: %2")
            .arg(chooser->morphology()->name(), QString::number(results.size())));
    compView->setAccessibleDescription(distances.join(QStringLiteral(", ")));
}

void MorphologyDistCompForm::saveCompImage()
{
    compView->saveImage();
}

} // namespace Planaria
