#include "distance/MorphologyDistForm.h"

#include "db/DB.h"
#include "distance/ShownDistance.h"
#include "model/Morphology.h"
#include "morphology/MorphologyChooser.h"
#include "widgets/WindowSettings.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdlib>

namespace Planaria {

namespace {
constexpr auto settingsGroup = "MorphologyDistForm";
}

MorphologyDistForm::MorphologyDistForm(DB *database, QWidget *parent)
    : QDialog(parent), db(database),
      model(db->newTableModel(QStringLiteral("Morphology"), QStringLiteral("Name")))
{
    createWidgets();
    WindowSettings::read(this, QLatin1String(settingsGroup));
}

MorphologyDistForm::~MorphologyDistForm()
{
    WindowSettings::write(this, QLatin1String(settingsGroup));
    delete left; // the lists go before their model
    delete right;
}

void MorphologyDistForm::createWidgets()
{
    setWindowFlags(Qt::Window); // in place of a dialog's, which leave no button to maximize it
    setWindowTitle(QStringLiteral("Morphology distance calculator"));
    resize(800, 700);

    left = createSide(tr("Left morphology"));
    right = createSide(tr("Right morphology"));
    auto *sides = new QHBoxLayout;
    sides->addWidget(left, 1);
    sides->addWidget(right, 1);

    resultLabel = new QLabel(this);
    resultLabel->setFont(QFont(QStringLiteral("Arial"), 12, QFont::Bold));
    resultLabel->setAlignment(Qt::AlignCenter);

    auto *closeButton = new QPushButton(tr("Close"), this);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::accept);
    auto *closeRow = new QHBoxLayout;
    closeRow->addStretch();
    closeRow->addWidget(closeButton);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(sides, 1);
    layout->addWidget(resultLabel);
    layout->addLayout(closeRow);

    checkButton = std::make_unique<QPushButton>(QStringLiteral("Check algorithm"));
    connect(checkButton.get(), &QPushButton::clicked, this,
            &MorphologyDistForm::checkAlgorithmStartStop);

    updateDistValue(); // which stays so where there is nothing to choose
    left->setModel(model.get());
    right->setModel(model.get());
}

MorphologyChooser *MorphologyDistForm::createSide(const QString &role)
{
    auto *side = new MorphologyChooser(role, db, this);
    connect(side, &MorphologyChooser::rowChosen, this,
            &MorphologyDistForm::morphologyComboBoxChanged);
    connect(side, &MorphologyChooser::editClicked, this, &MorphologyDistForm::editMorphology);
    connect(side, &MorphologyChooser::copyClicked, this, &MorphologyDistForm::copyMorphology);
    connect(side, &MorphologyChooser::newClicked, this, &MorphologyDistForm::newMorphology);
    return side;
}

MorphologyChooser *MorphologyDistForm::senderSide() const
{
    return qobject_cast<MorphologyChooser *>(sender());
}

// --- The sides ---

void MorphologyDistForm::morphologyComboBoxChanged(int index)
{
    MorphologyChooser *side = senderSide();
    if (side && side->showRow(index))
        updateDistValue();
}

void MorphologyDistForm::editMorphology()
{
    MorphologyChooser *side = senderSide();
    if (side && side->edit())
        updateDistValue();
}

void MorphologyDistForm::copyMorphology()
{
    MorphologyChooser *side = senderSide();
    if (side && side->copy())
        updateDistValue();
}

void MorphologyDistForm::newMorphology()
{
    MorphologyChooser *side = senderSide();
    if (side && side->create())
        updateDistValue();
}

// --- The distance ---

void MorphologyDistForm::updateDistValue()
{
    resultLabel->setText(QStringLiteral("Calculating distance..."));
    repaint(); // the calculation lets no event through
    const Morphology *first = left->morphology();
    const Morphology *second = right->morphology();
    if (first && second)
        resultLabel->setText(QStringLiteral("The distance between the morphologies is %1 units")
                                 .arg(distanceText(shownDistance(*first, *second))));
    else
        resultLabel->setText(
            QStringLiteral("Please, select two morphologies to calculate their distance"));
}

// --- Self-test ---

void MorphologyDistForm::checkAlgorithmStartStop()
{
    checking = !checking;
    if (checking)
        checkAlgorithm();
}

void MorphologyDistForm::checkAlgorithm()
{
    if (!checking || model->rowCount() == 0)
        return;
    MorphologyChooser *side = std::rand() <= RAND_MAX / 2 ? right : left;
    side->chooseRow(std::rand() % model->rowCount());
    QTimer::singleShot(0, this, &MorphologyDistForm::checkAlgorithm);
}

} // namespace Planaria
