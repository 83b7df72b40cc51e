#include "experiment/ResultantMorphologyWidget.h"

#include "model/Morphology.h"
#include "model/ResultantMorphology.h"
#include "morphology/MorphologyChooser.h"
#include "widgets/DoubleSpinBoxNoWheel.h"

#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace Planaria {

ResultantMorphologyWidget::ResultantMorphologyWidget(ResultantMorphology *shown, DB *database,
                                                     QSqlQueryModel *morphologies, QWidget *parent)
    : QGroupBox(parent), resultantMorphology(shown), db(database)
{
    createWidgets(morphologies);
}

void ResultantMorphologyWidget::createWidgets(QSqlQueryModel *morphologies)
{
    chooser = new MorphologyChooser(tr("Resultant morphology"), db, this,
                                    MorphologyChooser::Shape::Compact);
    chooser->setModel(morphologies);
    chooser->setMorphology(resultantMorphology->morphology());
    // From here on the user chooses.
    connect(chooser, &MorphologyChooser::rowChosen, this,
            &ResultantMorphologyWidget::morphologyComboBoxChanged);
    connect(chooser, &MorphologyChooser::editClicked, this,
            &ResultantMorphologyWidget::editMorphology);
    connect(chooser, &MorphologyChooser::copyClicked, this,
            &ResultantMorphologyWidget::copyMorphology);
    connect(chooser, &MorphologyChooser::newClicked, this,
            &ResultantMorphologyWidget::newMorphology);
    createFrequency();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(chooser);
}

void ResultantMorphologyWidget::createFrequency()
{
    auto *label = new QLabel(tr("Frequency:"), this);
    auto *box = new DoubleSpinBoxNoWheel(this);
    box->setRange(0.0, 1.0);
    box->setSingleStep(0.05);
    box->setValue(resultantMorphology->frequency()); // which may have more digits
    label->setBuddy(box);
    connect(box, &QDoubleSpinBox::valueChanged, this, &ResultantMorphologyWidget::freqChanged);

    auto *removeButton = new QPushButton(tr("Remove"), this);
    removeButton->setAccessibleDescription(tr("Resultant morphology"));
    removeButton->setAutoDefault(false);
    connect(removeButton, &QPushButton::clicked, this,
            &ResultantMorphologyWidget::removeResultantMorphology);
    for (QWidget *widget : QList<QWidget *>{label, box, removeButton})
        chooser->addBeside(widget);
}

void ResultantMorphologyWidget::freqChanged(double value)
{
    resultantMorphology->setFrequency(value);
}

void ResultantMorphologyWidget::removeResultantMorphology()
{
    emit removeMe(this);
}

// --- The morphology ---

void ResultantMorphologyWidget::morphologyComboBoxChanged(int index)
{
    if (chooser->showRow(index))
        takeOver();
}

void ResultantMorphologyWidget::editMorphology()
{
    if (!chooser->hasChoice() || !chooser->edit())
        return;
    chooser->keepRow(); // another name may have another place
    takeOverStored();
}

void ResultantMorphologyWidget::copyMorphology()
{
    if (chooser->hasChoice() && chooser->copy())
        takeOverStored();
}

void ResultantMorphologyWidget::newMorphology()
{
    if (chooser->create())
        takeOverStored();
}

void ResultantMorphologyWidget::takeOver()
{
    resultantMorphology->setMorphology(chooser->release().release());
}

void ResultantMorphologyWidget::takeOverStored()
{
    takeOver();
    const QScopedValueRollback guard(changing, true);
    emit morphologyChanged(resultantMorphology->morphology()->id());
}

void ResultantMorphologyWidget::morphologyHasChanged(int morphologyId)
{
    if (changing || resultantMorphology->morphology()->id() != morphologyId)
        return;
    auto fresh = std::make_unique<Morphology>(morphologyId, db, false);
    chooser->setMorphology(fresh.get()); // before the former one goes
    resultantMorphology->setMorphology(fresh.release());
}

} // namespace Planaria
