#include "morphology/MorphologyChooser.h"

#include "db/DB.h"
#include "model/Morphology.h"
#include "morphology/MorphologyForm.h"
#include "morphology/MorphologyView.h"
#include "widgets/ChoiceToolTip.h"
#include "widgets/ComboBoxNoWheel.h"

#include <QComboBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <utility>

namespace Planaria {

MorphologyChooser::MorphologyChooser(QString purpose, DB *database, QWidget *parent, Shape shape)
    : QWidget(parent), role(std::move(purpose)), db(database)
{
    createList(shape);
    createButtons();
    view = new MorphologyView(this);
    if (shape == Shape::Wide)
        layOutWide();
    else
        layOutCompact();
}

MorphologyChooser::~MorphologyChooser()
{
    view->clear();
}

// --- Widgets ---

void MorphologyChooser::createList(Shape shape)
{
    if (shape == Shape::Wide)
        comboBox = new QComboBox(this);
    else
        comboBox = new ComboBoxNoWheel(this);
    comboBox->setAccessibleName(role);
    comboBox->setAccessibleDescription(role); // where the choice counts as the name
    // A long name in the list does not widen the window.
    comboBox->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    comboBox->setMinimumContentsLength(shape == Shape::Wide ? 12 : 5);
    showChoiceInToolTip(comboBox);
    connect(comboBox, &QComboBox::currentIndexChanged, this, [this](int row) {
        if (!updatingModel)
            emit rowChosen(row);
    });
}

void MorphologyChooser::createButtons()
{
    const auto addButton = [&](const QString &text, void (MorphologyChooser::*signal)()) {
        auto *button = new QPushButton(text, this);
        button->setAccessibleDescription(role);
        button->setAutoDefault(false); // Enter in the list is for the form
        connect(button, &QPushButton::clicked, this, signal);
        return button;
    };
    editButton = addButton(tr("Edit"), &MorphologyChooser::editClicked);
    copyButton = addButton(tr("Copy"), &MorphologyChooser::copyClicked);
    newButton = addButton(tr("New"), &MorphologyChooser::newClicked);
    editButton->setEnabled(false);
    copyButton->setEnabled(false);
}

void MorphologyChooser::layOutWide()
{
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {editButton, copyButton, newButton})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(comboBox);
    layout->addLayout(buttons);
    layout->addWidget(view, 1);
}

void MorphologyChooser::layOutCompact()
{
    view->setMinimumHeight(100);
    besideLayout = new QVBoxLayout;
    for (QPushButton *button : {editButton, copyButton, newButton})
        besideLayout->addWidget(button);
    besideLayout->addStretch();
    auto *lower = new QHBoxLayout;
    lower->addWidget(view, 1);
    lower->addLayout(besideLayout);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(comboBox);
    layout->addLayout(lower, 1);
}

void MorphologyChooser::addBeside(QWidget *widget)
{
    besideLayout->addWidget(widget);
}

// --- The choice ---

void MorphologyChooser::setModel(QSqlQueryModel *morphologies)
{
    model = morphologies;
    {
        const QScopedValueRollback guard(updatingModel, true);
        comboBox->setModel(model);
        comboBox->setModelColumn(1);
    }
    connect(model, &QSqlQueryModel::modelAboutToBeReset, this, [this] { updatingModel = true; });
    connect(model, &QSqlQueryModel::modelReset, this, [this] {
        keepRow();
        updatingModel = false;
    });
    connect(model, &QSqlQueryModel::rowsInserted, this, &MorphologyChooser::keepRow);
    emit rowChosen(comboBox->currentIndex());
}

bool MorphologyChooser::hasChoice() const
{
    return comboBox->currentIndex() != -1;
}

void MorphologyChooser::chooseRow(int row)
{
    comboBox->setCurrentIndex(row);
}

void MorphologyChooser::keepRow()
{
    setRow(shown ? DB::getModelIdRow(model, shown->id()) : -1);
}

void MorphologyChooser::setRow(int row)
{
    const QScopedValueRollback guard(updatingModel, true);
    comboBox->setCurrentIndex(row);
}

void MorphologyChooser::setMorphology(Morphology *morphology)
{
    show(morphology);
    if (morphology != owned.get())
        owned.reset();
    keepRow();
}

void MorphologyChooser::clearView()
{
    view->clear();
}

void MorphologyChooser::show(std::unique_ptr<Morphology> morphology)
{
    show(morphology.get());
    owned = std::move(morphology);
}

void MorphologyChooser::show(Morphology *morphology)
{
    shown = morphology;
    if (shown)
        view->setMorphology(shown);
    else
        view->clear();
    editButton->setEnabled(shown);
    copyButton->setEnabled(shown);
}

bool MorphologyChooser::showRow(int row)
{
    if (row == -1)
        return false;
    const int id = model->data(model->index(row, 0)).toInt();
    if (shown && shown->id() == id)
        return false;
    show(std::make_unique<Morphology>(id, db, false));
    return true;
}

// --- Editing ---

bool MorphologyChooser::edit()
{
    const int row = comboBox->currentIndex();
    if (!shown || !takeOver(MorphologyForm::edit(*shown, db, window())))
        return false;
    setRow(row);
    return true;
}

bool MorphologyChooser::copy()
{
    return shown && takeOver(MorphologyForm::copy(*shown, db, window()));
}

bool MorphologyChooser::create()
{
    return takeOver(MorphologyForm::create(db, window()));
}

bool MorphologyChooser::takeOver(std::unique_ptr<Morphology> stored)
{
    if (!stored)
        return false;
    show(std::move(stored));
    db->updateModel(model);
    return true;
}

} // namespace Planaria
