#include "browse/SearchWidget.h"

#include "browse/DataTableView.h"
#include "browse/ElementCommands.h"
#include "browse/ElementKind.h"
#include "db/DB.h"
#include "widgets/SilkIcon.h"

#include <QAction>
#include <QComboBox>
#include <QCursor>
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
constexpr int resultsMorphologyName = 3; // among the fields of manipulations

/// The field that names an element of a type among those of another type; -1 for the same type.
int fieldFromResult(int from, int to)
{
    // A row asks for the manipulations that had the morphology as a result.
    if (from == ElementKind::Morphologies && to == ElementKind::Manipulations)
        return resultsMorphologyName;
    return ElementKind::of(static_cast<ElementKind::Type>(from)).searchFields.at(to);
}

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
    layout->addWidget(view);

    commands = new ElementCommands(view, this);
    connect(commands, &ElementCommands::newPressed, this, &SearchWidget::newElement);
    connect(commands, &ElementCommands::copyPressed, this, &SearchWidget::copySelected);
    connect(commands, &ElementCommands::editPressed, this, &SearchWidget::editSelected);
    connect(commands, &ElementCommands::deletePressed, this, &SearchWidget::deleteSelected);
    layout->addWidget(commands);
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
    commands->selectionChanged();
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
    searchElements(ElementKind::Experiments);
}

void SearchWidget::searchManipulations()
{
    searchElements(ElementKind::Manipulations);
}

void SearchWidget::searchMorphologies()
{
    searchElements(ElementKind::Morphologies);
}

void SearchWidget::searchDrugs()
{
    searchElements(ElementKind::Drugs);
}

void SearchWidget::searchRNAi()
{
    searchElements(ElementKind::RNAi);
}

void SearchWidget::searchSpecies()
{
    searchElements(ElementKind::Species);
}

void SearchWidget::searchPublications()
{
    searchElements(ElementKind::Publications);
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
    QList<int> ids; // all before the first goes, and with it the rows that are read
    for (const QModelIndex &row : view->selectionModel()->selectedRows(0))
        ids += idAt(row);
    if (ids.isEmpty() || !ElementCommands::confirmDeletion(
                             this, tr("This action will completely delete the selected elements "
                                      "from the database! Are you sure?")))
        return;
    deleteElements(ids);
    updateModel(0);
    focusView();
}

void SearchWidget::deleteElements(const QList<int> &ids)
{
    static constexpr std::array<IdSignal, 7> deleteSignals{
        &SearchWidget::deleteExperiment, &SearchWidget::deleteManipulation,
        &SearchWidget::deleteMorphology, &SearchWidget::deleteDrug,
        &SearchWidget::deleteRNAi,       &SearchWidget::deleteSpecies,
        &SearchWidget::deletePublication};
    const IdSignal wanted = entryOf(deleteSignals, typeCombo->currentIndex());
    if (wanted == nullptr)
        return;
    const auto deleteOne = [this, wanted](int id) {
        emit(this->*wanted)(id);
        // Who deletes tells of a refusal alone, and ends the transaction at a failure.
        return db->inTransaction() ? ElementDeletion::Outcome::Done
                                   : ElementDeletion::Outcome::Failed;
    };
    ElementCommands::deleteElements(db, ids, deleteOne, this);
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
    if (current >= 0 && current != typeIndex)
        searchFromResult(typeIndex, fieldFromResult(current, typeIndex), nameColumn);
}

void SearchWidget::searchFromResult(int typeIndex, int fieldIndex, int column)
{
    const QModelIndex index = currentSourceIndex();
    if (index.isValid())
        search(typeIndex, fieldIndex, equalTo, index.siblingAtColumn(column).data().toString());
}

void SearchWidget::searchExperimentsFromResult()
{
    searchFromResult(ElementKind::Experiments);
}

void SearchWidget::searchManipulationsFromResult()
{
    searchFromResult(ElementKind::Manipulations);
}

void SearchWidget::searchMorphologiesFromResult()
{
    searchFromResult(ElementKind::Morphologies);
}

void SearchWidget::searchDrugsFromResult()
{
    searchFromResult(ElementKind::Drugs);
}

void SearchWidget::searchRNAiFromResult()
{
    searchFromResult(ElementKind::RNAi);
}

void SearchWidget::searchSpeciesFromResult()
{
    searchFromResult(ElementKind::Species);
}

void SearchWidget::searchPublicationsFromResult()
{
    searchFromResult(ElementKind::Publications);
}

} // namespace Planaria
