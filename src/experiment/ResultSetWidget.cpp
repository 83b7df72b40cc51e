#include "experiment/ResultSetWidget.h"

#include "db/DB.h"
#include "db/ExperimentFactory.h"
#include "experiment/ResultParts.h"
#include "experiment/ResultantMorphologyWidget.h"
#include "experiment/TabOrder.h"
#include "model/Morphology.h"
#include "model/ResultSet.h"
#include "model/ResultantMorphology.h"
#include "widgets/DoubleSpinBoxNoWheel.h"
#include "widgets/SpinBoxNoWheel.h"

#include <QFrame>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace Planaria {

namespace {

constexpr int gap = 5;
constexpr double smallestSum = 0.999;
constexpr double largestSum = 1.001;

/// The label above its box, and the gap below.
void addRow(QBoxLayout *column, const QString &text, QWidget *box)
{
    auto *label = new QLabel(text, box->parentWidget());
    label->setBuddy(box);
    column->addWidget(label);
    column->addWidget(box);
    column->addSpacing(gap);
}

} // namespace

ResultSetWidget::ResultSetWidget(ResultSet *shown, int index, DB *database,
                                 QSqlQueryModel *morphologies, QWidget *parent)
    : QGroupBox(parent), resultSet(shown), db(database), model(morphologies)
{
    createWidgets();
    setIndex(index);
}

void ResultSetWidget::setIndex(int index)
{
    QString title = tr("Result set");
    if (index >= 0)
        title += QLatin1Char(' ') + QChar('A' + index);
    setTitle(title);
}

// --- Widgets ---

void ResultSetWidget::createWidgets()
{
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(createLeftColumn());
    morphologiesFrame = new QFrame(this);
    morphologiesFrame->setFrameShape(QFrame::NoFrame);
    layout->addWidget(morphologiesFrame, 1);
    createMorphologies();
}

QBoxLayout *ResultSetWidget::createLeftColumn()
{
    auto *column = new QVBoxLayout;
    auto *numBox = new SpinBoxNoWheel(this);
    numBox->setRange(1, 100000);
    numBox->setValue(resultSet->num()); // a number that it cannot show stays in the set
    connect(numBox, &QSpinBox::valueChanged, this, &ResultSetWidget::nChanged);
    addRow(column, tr("Num worms:"), numBox);

    auto *periodBox = new DoubleSpinBoxNoWheel(this);
    periodBox->setRange(0.0, 100000.0);
    periodBox->setValue(resultSet->regenPeriod());
    connect(periodBox, &QDoubleSpinBox::valueChanged, this, &ResultSetWidget::regPeriodChanged);
    addRow(column, tr("Reg. period (d):"), periodBox);

    addButton = createButton(tr("Add morph."));
    connect(addButton, &QPushButton::clicked, this, &ResultSetWidget::addResultantMorphology);
    auto *removeButton = createButton(tr("Remove"));
    connect(removeButton, &QPushButton::clicked, this, &ResultSetWidget::removeResultSet);
    auto *copyButton = createButton(tr("Copy"));
    connect(copyButton, &QPushButton::clicked, this, &ResultSetWidget::copyResultSet);
    lastButton = createButton(tr("New"));
    connect(lastButton, &QPushButton::clicked, this, &ResultSetWidget::newResultSet);

    column->addWidget(addButton);
    column->addSpacing(gap);
    column->addStretch();
    for (QPushButton *button : {removeButton, copyButton, lastButton})
        column->addWidget(button);
    return column;
}

QPushButton *ResultSetWidget::createButton(const QString &text)
{
    auto *button = new QPushButton(text, this);
    button->setAccessibleDescription(tr("Result set"));
    button->setAutoDefault(false);
    return button;
}

void ResultSetWidget::createMorphologies()
{
    const auto rank = [](const ResultantMorphology *result) { return -result->frequency(); };
    for (ResultantMorphology *result : sortedBy(resultSet->resultantMorphologies(), rank))
        createResultantMorphologyWidget(result);
    updateMorWidgets();
}

void ResultSetWidget::createResultantMorphologyWidget(ResultantMorphology *result)
{
    auto *widget = new ResultantMorphologyWidget(result, db, model, nullptr);
    shareChanges(this, &ResultSetWidget::morphologyHasChanged, widget);
    connect(widget, &ResultantMorphologyWidget::removeMe, this,
            &ResultSetWidget::removeResultantMorphology);
    morphologyWidgets.append(widget);
}

void ResultSetWidget::updateMorWidgets()
{
    delete morphologiesFrame->layout();
    auto *layout = new QHBoxLayout(morphologiesFrame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    for (ResultantMorphologyWidget *widget : std::as_const(morphologyWidgets))
        layout->addWidget(widget);
    layout->addStretch(1);
    leadTabsThrough(lastButton, morphologiesFrame);
}

// --- Changes ---

void ResultSetWidget::nChanged(int value)
{
    resultSet->setNum(value);
}

void ResultSetWidget::regPeriodChanged(double value)
{
    resultSet->setRegenPeriod(value);
}

void ResultSetWidget::copyResultSet()
{
    emit copyMe(this);
}

void ResultSetWidget::removeResultSet()
{
    emit removeMe(this);
}

void ResultSetWidget::addResultantMorphology()
{
    auto morphology = ExperimentFactory::instance(nullptr)->loadStoredDefaultMorphology(db);
    if (DB::getModelIdRow(model, morphology->id()) == -1)
        db->updateModel(model); // it was made just now
    createResultantMorphologyWidget(resultSet->addResultantMorphology(morphology.release()));
    updateMorWidgets();
}

void ResultSetWidget::removeResultantMorphology(ResultantMorphologyWidget *resMorWidget)
{
    morphologyWidgets.removeOne(resMorWidget);
    resMorWidget->hide();
    resMorWidget->deleteLater(); // it is its own button that asks
    disconnect(this, nullptr, resMorWidget, nullptr);
    resultSet->removeResultantMorphology(resMorWidget->result());
    updateMorWidgets();
}

void ResultSetWidget::morphologyHasChanged(int morphologyId)
{
    if (changing)
        return;
    const QScopedValueRollback guard(changing, true);
    emit morphologyChanged(morphologyId);
}

// --- Checks ---

bool ResultSetWidget::isDataCorrect()
{
    if (morphologyWidgets.isEmpty()) {
        QMessageBox::warning(this, tr("No morphology defined"),
                             tr("The resultant  morphologies of a result set cannot be left blank. "
                                "Please, specify the resultant morphologies for the result set."));
        addButton->setFocus();
        return false;
    }
    double sum = 0.0;
    for (const ResultantMorphologyWidget *widget : std::as_const(morphologyWidgets))
        sum += widget->result()->frequency();
    if (sum >= smallestSum && sum <= largestSum)
        return true;
    QMessageBox::warning(this, tr("Wrong frequencies"),
                         tr("The frequencies of the resultant morphologies of a result set should "
                            "sum 1. Please, adjust the frequencies to sum 1."));
    return false;
}

} // namespace Planaria
