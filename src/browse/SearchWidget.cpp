#include "browse/SearchWidget.h"

#include "browse/DataTableView.h"
#include "browse/ElementDeletion.h"
#include "db/DB.h"
#include "widgets/SilkIcon.h"

#include <QAction>
#include <QComboBox>
#include <QCursor>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSqlQueryModel>
#include <QVBoxLayout>

#include <array>

namespace Planaria {

namespace {

constexpr int nameColumn = 1;
constexpr int equalTo = 1;
constexpr int noField = -1;

/// The field that names an element of the row's type among those of the column's type.
constexpr std::array<std::array<int, 7>, 7> fieldsFromResult{{
    {noField, 1, 10, 1, 1, 1, 2}, // experiments
    {1, noField, 11, 2, 2, 2, 3}, // manipulations
    {2, 3, noField, 3, 3, 3, 4},  // morphologies
    {3, 4, 12, noField, 4, 4, 5}, // drugs
    {4, 5, 13, 4, noField, 5, 6}, // RNAi
    {5, 6, 14, 5, 5, noField, 7}, // species
    {6, 7, 15, 6, 6, 6, noField}, // publications
}};

/// The entry of @p table for a type; nothing while no type is chosen.
template <typename Table> typename Table::value_type entryOf(const Table &table, int typeIndex)
{
    const bool isType = typeIndex >= 0 && typeIndex < static_cast<int>(table.size());
    return isType ? table[static_cast<size_t>(typeIndex)] : nullptr;
}

} // namespace

SearchWidget::SearchWidget(DB *database, QWidget *parent) : QWidget(parent), db(database)
{
    createWidgets();
    createActions();
    typeChanged(0);
}

SearchWidget::~SearchWidget()
{
    clear();
}

// --- Widgets ---

void SearchWidget::createWidgets()
{
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(createControls());

    view = new DataTableView(this);
    view->setAccessibleName(tr("Elements found"));
    connect(view, &QAbstractItemView::doubleClicked, this, &SearchWidget::editSelected);
    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SearchWidget::selectionChanged);
    layout->addWidget(view);

    layout->addWidget(createButtons());
}

QBoxLayout *SearchWidget::createControls()
{
    const auto createCombo = [this](const QStringList &labels, const QString &role) {
        auto *combo = new QComboBox(this);
        combo->addItems(labels);
        combo->setAccessibleName(role);
        return combo;
    };
    typeCombo = createCombo(SearchStatement::typeLabels(), tr("Type of element"));
    fieldCombo = createCombo({}, tr("Field"));
    operatorCombo = createCombo(SearchStatement::operatorLabels(), tr("Operator"));
    connect(typeCombo, &QComboBox::currentIndexChanged, this, &SearchWidget::typeChanged);

    valueEdit = new QLineEdit(this);
    valueEdit->setAccessibleName(tr("Value"));

    searchButton = new QPushButton(tr("Search"), this);
    searchButton->setDefault(true);
    connect(searchButton, &QPushButton::clicked, this, qOverload<>(&SearchWidget::search));

    auto *row = new QHBoxLayout;
    row->addWidget(typeCombo);
    row->addWidget(new QLabel(tr("with"), this));
    row->addWidget(fieldCombo);
    row->addWidget(operatorCombo);
    row->addWidget(valueEdit, 1);
    row->addWidget(searchButton);
    return row;
}

QDialogButtonBox *SearchWidget::createButtons()
{
    auto *buttons = new QDialogButtonBox(this);
    const auto createButton = [this, buttons](const QString &text, bool enabled, Step slot) {
        QPushButton *button = buttons->addButton(text, QDialogButtonBox::ActionRole);
        button->setEnabled(enabled);
        connect(button, &QPushButton::clicked, this, slot);
        return button;
    };
    newButton = createButton(tr("&New"), true, &SearchWidget::newElement);
    copyButton = createButton(tr("&Copy"), false, &SearchWidget::copySelected);
    editButton = createButton(tr("&Edit"), false, &SearchWidget::editSelected);
    deleteButton = createButton(tr("&Delete"), false, &SearchWidget::deleteSelected);
    return buttons;
}

void SearchWidget::createActions()
{
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &SearchWidget::contextMenuCalled);
    menu = new QMenu(this);

    const auto createAction = [this](const QString &text, Step slot) {
        auto *action = new QAction(silkIcon(QStringLiteral("find")), text, this);
        connect(action, &QAction::triggered, this, slot);
        actions += action;
    };
    createAction(tr("Search experiments"), &SearchWidget::searchExperimentsFromResult);
    createAction(tr("Search manipulations"), &SearchWidget::searchManipulationsFromResult);
    createAction(tr("Search morphologies"), &SearchWidget::searchMorphologiesFromResult);
    createAction(tr("Search drugs"), &SearchWidget::searchDrugsFromResult);
    createAction(tr("Search RNAi"), &SearchWidget::searchRNAiFromResult);
    createAction(tr("Search species"), &SearchWidget::searchSpeciesFromResult);
    createAction(tr("Search publications"), &SearchWidget::searchPublicationsFromResult);
}

void SearchWidget::selectionChanged()
{
    const qsizetype selected = view->selectionModel()->selectedRows(0).size();
    copyButton->setEnabled(selected == 1);
    editButton->setEnabled(selected == 1);
    deleteButton->setEnabled(selected >= 1);
}

void SearchWidget::typeChanged(int index)
{
    clear();
    query = {};
    fieldCombo->clear();
    fieldCombo->addItems(SearchStatement::fieldLabels(index));
}

void SearchWidget::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QWidget::keyPressEvent(event);
        return;
    }
    searchButton->animateClick(); // which searches once more, at its end
    search();
    event->accept();
}

// --- Searching ---

void SearchWidget::search(int typeIndex, int fieldIndex, int op, const QString &text)
{
    typeCombo->setCurrentIndex(typeIndex); // brings the fields of the type
    fieldCombo->setCurrentIndex(fieldIndex);
    operatorCombo->setCurrentIndex(op);
    valueEdit->setText(text);
    search();
}

void SearchWidget::search()
{
    static constexpr std::array<Step, 7> searches{
        &SearchWidget::searchExperiments,  &SearchWidget::searchManipulations,
        &SearchWidget::searchMorphologies, &SearchWidget::searchDrugs,
        &SearchWidget::searchRNAi,         &SearchWidget::searchSpecies,
        &SearchWidget::searchPublications};
    clear();
    if (const Step wanted = entryOf(searches, typeCombo->currentIndex()))
        (this->*wanted)();
    else
        tellNotImplemented();
}

void SearchWidget::searchExperiments()
{
    searchElements(0);
}

void SearchWidget::searchManipulations()
{
    searchElements(1);
}

void SearchWidget::searchMorphologies()
{
    searchElements(2);
}

void SearchWidget::searchDrugs()
{
    searchElements(3);
}

void SearchWidget::searchRNAi()
{
    searchElements(4);
}

void SearchWidget::searchSpecies()
{
    searchElements(5);
}

void SearchWidget::searchPublications()
{
    searchElements(6);
}

void SearchWidget::searchElements(int typeIndex)
{
    SearchStatement asked(
        {typeIndex, fieldCombo->currentIndex(), operatorCombo->currentIndex(), valueEdit->text()},
        db);
    if (!asked.isKnown()) {
        tellNotImplemented();
        return;
    }
    query = std::move(asked);
    queryChanged();
}

void SearchWidget::tellNotImplemented()
{
    QMessageBox::information(this, tr("Not implemented"),
                             tr("Sorry, this type of search is not implemented yet."),
                             QMessageBox::Cancel);
}

void SearchWidget::queryChanged()
{
    clear();
    model = query.newModel(db);
    view->setModel(model.get(), nameColumn, Qt::AscendingOrder);
    if (!model)
        emit databaseCorrupted();
    updateNumEle();
}

void SearchWidget::updateNumEle()
{
    if (!model) {
        emit nEleChanged(0, QString(), QString());
        return;
    }
    const int type = typeCombo->currentIndex();
    const QString found = QStringLiteral(" found");
    emit nEleChanged(model->rowCount(), SearchStatement::singular(type) + found,
                     SearchStatement::plural(type) + found);
}

void SearchWidget::clear()
{
    if (!model)
        return;
    view->setModel(nullptr, nameColumn, Qt::AscendingOrder);
    model.reset();
    selectionChanged(); // a table that loses its rows does not tell
}

void SearchWidget::updateModel(int id)
{
    if (!query.isKnown())
        return;
    search();
    selectId(id);
}

void SearchWidget::selectId(int id)
{
    if (id == 0 || !model)
        return;
    const int row = DB::getModelIdRow(model.get(), id);
    if (row >= 0)
        view->setCurrentIndex(model->index(row, nameColumn));
}

// --- Elements ---

QModelIndex SearchWidget::currentSourceIndex() const
{
    return view->sourceIndex(view->currentIndex());
}

int SearchWidget::idAt(const QModelIndex &index)
{
    return index.siblingAtColumn(0).data().toInt();
}

void SearchWidget::focusView()
{
    view->setFocus(Qt::OtherFocusReason);
}

void SearchWidget::newElement()
{
    static constexpr std::array<Step, 7> newSignals{
        &SearchWidget::newExperiment, &SearchWidget::newManipulation, &SearchWidget::newMorphology,
        &SearchWidget::newDrug,       &SearchWidget::newRNAi,         &SearchWidget::newSpecies,
        &SearchWidget::newPublication};
    if (const Step wanted = entryOf(newSignals, typeCombo->currentIndex()))
        emit(this->*wanted)();
    updateModel(0);
    focusView();
}

void SearchWidget::copySelected()
{
    static constexpr std::array<IdSignal, 7> copySignals{
        &SearchWidget::copyExperiment, &SearchWidget::copyManipulation,
        &SearchWidget::copyMorphology, &SearchWidget::copyDrug,
        &SearchWidget::copyRNAi,       &SearchWidget::copySpecies,
        &SearchWidget::copyPublication};
    const QModelIndex index = currentSourceIndex();
    if (!index.isValid())
        return;
    const int row = index.row();
    const int column = index.column();
    if (const IdSignal wanted = entryOf(copySignals, typeCombo->currentIndex()))
        emit(this->*wanted)(idAt(index));
    updateModel(0);
    if (model)
        view->setCurrentIndex(model->index(row, column));
    focusView();
}

void SearchWidget::editSelected()
{
    static constexpr std::array<IdSignal, 7> editSignals{
        &SearchWidget::editExperiment, &SearchWidget::editManipulation,
        &SearchWidget::editMorphology, &SearchWidget::editDrug,
        &SearchWidget::editRNAi,       &SearchWidget::editSpecies,
        &SearchWidget::editPublication};
    const QModelIndex index = currentSourceIndex();
    if (!index.isValid())
        return;
    const int id = idAt(index);
    if (const IdSignal wanted = entryOf(editSignals, typeCombo->currentIndex()))
        emit(this->*wanted)(id);
    updateModel(id);
    focusView();
}

void SearchWidget::deleteSelected()
{
    static constexpr std::array<IdSignal, 7> deleteSignals{
        &SearchWidget::deleteExperiment, &SearchWidget::deleteManipulation,
        &SearchWidget::deleteMorphology, &SearchWidget::deleteDrug,
        &SearchWidget::deleteRNAi,       &SearchWidget::deleteSpecies,
        &SearchWidget::deletePublication};
    const QModelIndexList rows = view->selectionModel()->selectedRows(0);
    if (rows.isEmpty())
        return;
    if (QMessageBox::warning(this, tr("Warning"),
                             tr("This action will completely delete the selected elements from the "
                                "database! Are you sure?"),
                             QMessageBox::Yes | QMessageBox::Cancel,
                             QMessageBox::Cancel) != QMessageBox::Yes)
        return;
    QList<int> ids; // all before the first goes, and with it the rows that are read
    for (const QModelIndex &row : rows)
        ids += idAt(row);
    const IdSignal wanted = entryOf(deleteSignals, typeCombo->currentIndex());
    ElementDeletion::deleteElements(db, ids, [this, wanted](int id) {
        if (wanted != nullptr)
            emit(this->*wanted)(id);
    });
    updateModel(0);
    focusView();
}

// --- From a result to others ---

void SearchWidget::contextMenuCalled(QPoint /*pos*/)
{
    if (!currentSourceIndex().isValid())
        return;
    menu->clear();
    for (int type = 0; type < actions.size(); ++type) {
        if (type != typeCombo->currentIndex())
            menu->addAction(actions[type]);
    }
    menu->popup(QCursor::pos());
}

void SearchWidget::searchFromResult(int typeIndex)
{
    const int current = typeCombo->currentIndex();
    if (current < 0)
        return;
    const int field =
        fieldsFromResult[static_cast<size_t>(current)][static_cast<size_t>(typeIndex)];
    if (field != noField)
        searchFromResult(typeIndex, field, nameColumn);
}

void SearchWidget::searchFromResult(int typeIndex, int fieldIndex, int column)
{
    const QModelIndex index = currentSourceIndex();
    if (index.isValid())
        search(typeIndex, fieldIndex, equalTo, index.siblingAtColumn(column).data().toString());
}

void SearchWidget::searchExperimentsFromResult()
{
    searchFromResult(0);
}

void SearchWidget::searchManipulationsFromResult()
{
    searchFromResult(1);
}

void SearchWidget::searchMorphologiesFromResult()
{
    searchFromResult(2);
}

void SearchWidget::searchDrugsFromResult()
{
    searchFromResult(3);
}

void SearchWidget::searchRNAiFromResult()
{
    searchFromResult(4);
}

void SearchWidget::searchSpeciesFromResult()
{
    searchFromResult(5);
}

void SearchWidget::searchPublicationsFromResult()
{
    searchFromResult(6);
}

} // namespace Planaria
