#pragma once

#include "browse/ElementKind.h"

#include <QObject>
#include <QString>

#include <memory>

class QAction;
class QMenu;
class QModelIndex;
class QPoint;
class QSqlQueryModel;
class QWidget;

namespace Planaria {

class DataTableView;
class DB;
class ElementCommands;
class ElementEditor;

/// What a tab of the main window is made of: the table of all elements of a type, the commands on
/// them under it, and the searches for what belongs to the current one.
///
/// Each of the seven tabs holds one, and passes on what it tells.
class ElementTable final : public QObject
{
    Q_OBJECT

public:
    /// Fills @p owner, the tab. The table stays empty until updateModel().
    ElementTable(ElementKind::Type elementType, std::unique_ptr<ElementEditor> elementEditor,
                 DB *database, QWidget *owner);
    ~ElementTable() override;

    /// Lets @p tab tell what the table tells.
    template <typename Tab> void tellThrough(Tab *tab) const
    {
        connect(this, &ElementTable::databaseCorrupted, tab, &Tab::databaseCorrupted);
        connect(this, &ElementTable::nEleChanged, tab, &Tab::nEleChanged);
        connect(this, qOverload<int, int, int, const QString &>(&ElementTable::search), tab,
                &Tab::search);
    }

    /// Reads the table anew. @param id the element to select; 0 for none
    void updateModel(int id);
    /// Lets go of the rows; for when the file is closed.
    void clear();

    /// Where a new element shows itself, the list does so too.
    void createElement();
    /// @return the id of the copy, which the list does not show yet; 0 where none was made
    int copyElement(int id);
    void editElement(int id);
    /// A failure within a transaction ends it, which tells whoever deletes several elements;
    /// otherwise the user is told.
    void deleteElement(int id);

    [[nodiscard]] DataTableView *view() const { return view_; }

signals:
    void databaseCorrupted();
    void search(int typeIndex, int fieldIndex, int op, const QString &text);
    void nEleChanged(int n, const QString &eleName, const QString &eleNameP);

private slots:
    void selectionChanged();
    void copySelected();
    void editSelected();
    void deleteSelected();
    void contextMenuCalled();
    /// Searches for what belongs to the current element.
    void search(int typeIndex, int fieldIndex);

private:
    void createWidgets(QWidget *owner);
    void createActions(QWidget *owner);

    std::unique_ptr<QSqlQueryModel> newModel();
    [[nodiscard]] QModelIndex currentIndex() const;
    /// The id of the current element; 0 without one.
    [[nodiscard]] int currentId() const;
    [[nodiscard]] QList<int> selectedIds() const;
    void focusView();

    DB *db;
    std::unique_ptr<QSqlQueryModel> model; // null until the first updateModel()
    DataTableView *view_ = nullptr;
    QMenu *menu = nullptr;
    QList<QAction *> actions; // for the other types
    ElementCommands *commands = nullptr;

    ElementKind::Type type;
    const ElementKind &kind;
    QWidget *widget;
    std::unique_ptr<ElementEditor> editor;
};

} // namespace Planaria
