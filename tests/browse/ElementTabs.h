#pragma once

#include "browse/DataTableView.h"
#include "support/TemporaryLibrary.h"

#include <QAction>
#include <QList>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

namespace Planaria {

/// What the tests know of the tab of a type of elements; the position is the type index.
struct TabType
{
    QString title;
    QString element; // as in the names of its commands
    QString table;
    QString nameColumn;
    QString word;
    QString singular;
    QString plural;
    QString deletionQuestion;
    QWidget *(*make)(DB *db, QWidget *parent);
    void (*updateModel)(QWidget *tab, int id);
    void (*clear)(QWidget *tab);
};

const QList<TabType> &tabTypes();

/// One row for each type, with its index.
void addTabTypes();

/// A tab in a window of its own, and what it tells. It holds the worked library unless it is told
/// otherwise, and shows nothing until update().
class ElementTab final
{
public:
    explicit ElementTab(int typeIndex, std::unique_ptr<TemporaryLibrary> file = {});

    void update(int id = 0) { type.updateModel(tab.get(), id); }
    void clear() { type.clear(tab.get()); }
    [[nodiscard]] DataTableView *view() const;
    /// @param text its label without the mnemonic
    [[nodiscard]] QPushButton *button(const QString &text) const;
    /// Which of Copy, Edit and Delete can be pressed.
    [[nodiscard]] QStringList enabledButtons() const;
    void press(const QString &text);
    /// What has the focus while the window is active, as it is no more after a dialog.
    [[nodiscard]] QWidget *focused() const { return window.focusWidget(); }

    // The command of the type with this @p name, as another tab calls it.

    void command(const QString &name);
    void command(const QString &name, int id);
    int copy(int id);

    [[nodiscard]] QStringList headers() const;
    /// The names from top to bottom.
    [[nodiscard]] QStringList shown() const;
    [[nodiscard]] QString current() const;
    [[nodiscard]] QStringList selected() const;
    [[nodiscard]] QModelIndex cell(const QString &name, int column = 1) const;
    [[nodiscard]] QPoint centre(const QString &name, int column = 1) const;
    /// In the coordinates of the window, for events that come from outside of it.
    [[nodiscard]] QPoint centreInWindow(const QString &name, int column = 1) const;
    /// Clicks the rows of @p names, each but the first with Ctrl.
    void select(const QStringList &names);

    [[nodiscard]] int idOf(const QString &name);
    [[nodiscard]] int count() { return library->count(type.table); }

    const TabType &type;
    std::unique_ptr<TemporaryLibrary> library;

private:
    QWidget window; // the tab widget stands between the window and a tab
    std::unique_ptr<QWidget> tab;

public:
    QSignalSpy told;
    QSignalSpy searched;
    QSignalSpy corrupted;

    [[nodiscard]] QWidget *widget() const { return tab.get(); }
};

} // namespace Planaria
