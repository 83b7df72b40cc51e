#include "browse/ElementTable.h"

#include "browse/DataTableView.h"
#include "browse/ElementCommands.h"
#include "browse/ElementEditor.h"
#include "browse/SearchFields.h"
#include "db/DB.h"
#include "widgets/SilkIcon.h"

#include <QAction>
#include <QCursor>
#include <QItemSelectionModel>
#include <QMenu>
#include <QVBoxLayout>

#include <utility>

namespace Planaria {

namespace {

constexpr int idColumn = 0;
constexpr int nameColumn = 1;
constexpr int equalTo = 1; // among the operators of the search

} // namespace

ElementTable::ElementTable(ElementKind::Type elementType,
                           std::unique_ptr<ElementEditor> elementEditor, DB *database,
                           QWidget *owner)
    : db(database), type(elementType), kind(ElementKind::of(elementType)), widget(owner),
      editor(std::move(elementEditor))
{
    createWidgets(owner);
    createActions(owner);
}

ElementTable::~ElementTable()
{
    clear();
}

// --- Widgets ---

void ElementTable::createWidgets(QWidget *owner)
{
    view_ = new DataTableView(owner);
    view_->setAccessibleName(QString(kind.plural));
    connect(view_, &DataTableView::doubleClicked, this, &ElementTable::editSelected);

    commands = new ElementCommands(view_, owner);
    connect(commands, &ElementCommands::newPressed, this, &ElementTable::createElement);
    connect(commands, &ElementCommands::copyPressed, this, &ElementTable::copySelected);
    connect(commands, &ElementCommands::editPressed, this, &ElementTable::editSelected);
    connect(commands, &ElementCommands::deletePressed, this, &ElementTable::deleteSelected);

    auto *layout = new QVBoxLayout(owner);
    layout->addWidget(view_);
    layout->addWidget(commands);
}

void ElementTable::createActions(QWidget *owner)
{
    owner->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(owner, &QWidget::customContextMenuRequested, this, &ElementTable::contextMenuCalled);
    menu = new QMenu(owner);
    for (int other = 0; other < ElementKind::count; ++other) {
        if (other == type)
            continue;
        auto *action = new QAction(silkIcon(QStringLiteral("find")),
                                   QStringLiteral("Search ") + searchTypes()[other].plural, owner);
        connect(action, &QAction::triggered, this,
                [this, other, field = kind.searchFields.at(other)] { search(other, field); });
        actions.append(action);
    }
}

void ElementTable::selectionChanged()
{
    commands->selectionChanged();
}

void ElementTable::focusView()
{
    view_->setFocus(Qt::OtherFocusReason);
}

// --- Rows ---

std::unique_ptr<QSqlQueryModel> ElementTable::newModel()
{
    if (kind.joins.empty())
        return db->newTableModel(editor->table());
    QHash<QString, QString> joins;
    for (const ElementKind::Join &join : kind.joins)
        joins.insert(join.table, join.column);
    return db->newTableModel(editor->table(), joins);
}

void ElementTable::updateModel(int id)
{
    if (model) {
        db->updateModel(model.get());
        view_->modelUpdated();
    } else {
        model = newModel();
        if (!model) {
            emit databaseCorrupted();
            return;
        }
        view_->setModel(model.get(), nameColumn, Qt::AscendingOrder);
        for (const int column : kind.hiddenColumns)
            view_->hideColumn(column);
    }
    if (id != 0)
        view_->setCurrentIndex(model->index(DB::getModelIdRow(model.get(), id), nameColumn));
    selectionChanged(); // rows that are read anew lose their selection without a word
    emit nEleChanged(model->rowCount(), kind.singular, kind.plural);
}

void ElementTable::clear()
{
    view_->setModel(nullptr, nameColumn, Qt::AscendingOrder);
    model.reset();
    selectionChanged();
}

QModelIndex ElementTable::currentIndex() const
{
    return view_->sourceIndex(view_->currentIndex());
}

int ElementTable::currentId() const
{
    const QModelIndex index = currentIndex();
    return index.isValid() ? index.siblingAtColumn(idColumn).data().toInt() : 0;
}

QList<int> ElementTable::selectedIds() const
{
    QList<int> ids;
    for (const QModelIndex &index : view_->selectionModel()->selectedRows(idColumn))
        ids.append(view_->sourceIndex(index).data().toInt());
    return ids;
}

// --- Commands ---

void ElementTable::createElement()
{
    const int id = editor->create();
    if (id == 0)
        return;
    updateModel(kind.showsNewRow ? id : 0);
    if (kind.showsNewRow)
        focusView();
}

int ElementTable::copyElement(int id)
{
    return editor->copy(id);
}

void ElementTable::editElement(int id)
{
    editor->edit(id);
}

void ElementTable::deleteElement(int id)
{
    const bool isOneOfMany = db->inTransaction();
    if (editor->remove(id) != ElementDeletion::Outcome::Failed)
        return;
    if (isOneOfMany)
        db->rollbackTransaction();
    else
        ElementCommands::tellDeletionFailure(widget);
}

void ElementTable::copySelected()
{
    const int id = currentId();
    if (id == 0)
        return;
    if (const int copied = copyElement(id); copied != 0)
        updateModel(copied);
    focusView();
}

void ElementTable::editSelected()
{
    const int id = currentId();
    if (id == 0)
        return;
    editElement(id);
    updateModel(id);
    focusView();
}

void ElementTable::deleteSelected()
{
    const QList<int> ids = selectedIds();
    if (ids.isEmpty() || !ElementCommands::confirmDeletion(widget, kind.deletionQuestion))
        return;
    ElementCommands::deleteElements(
        db, ids, [this](int id) { return editor->remove(id); }, widget);
    updateModel(0);
    focusView();
}

// --- Searching ---

void ElementTable::contextMenuCalled()
{
    menu->clear();
    if (!currentIndex().isValid())
        return;
    menu->addActions(actions);
    menu->popup(QCursor::pos());
}

void ElementTable::search(int typeIndex, int fieldIndex)
{
    const QModelIndex index = currentIndex();
    if (index.isValid())
        emit search(typeIndex, fieldIndex, equalTo,
                    index.siblingAtColumn(nameColumn).data().toString());
}

} // namespace Planaria
