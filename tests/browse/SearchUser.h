#pragma once

#include "browse/DataTableView.h"
#include "browse/SearchStatement.h"

#include <QString>
#include <QStringList>

class QComboBox;
class QLineEdit;
class QMenu;
class QPushButton;

namespace Planaria {

class SearchWidget;

/// Asks for the menu of the tab on its table.
void callMenuOn(const QAbstractItemView *view);
/// Chooses from a menu that is open.
void chooseFrom(QMenu *menu, const QString &entry);

/// A user before a search tab that is on the screen.
class SearchUser
{
public:
    explicit SearchUser(SearchWidget *searchWidget);

    /// Sets the controls and presses Search.
    void ask(const SearchQuestion &question) const;
    /// What the controls hold, as a sentence.
    [[nodiscard]] QString question() const;
    [[nodiscard]] QStringList fields() const;

    /// The names in the table, from top to bottom.
    [[nodiscard]] QStringList shown() const;
    /// The rows of the table, each from the id on, in any order.
    [[nodiscard]] QStringList rows() const;
    [[nodiscard]] QString current() const;
    [[nodiscard]] int idOf(const QString &name) const;

    // Through the mouse

    void click(const QString &name, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    void doubleClick(const QString &name) const;
    void callMenu() const { callMenuOn(view); }
    void choose(const QString &entry) const { chooseFrom(menu, entry); }
    void press(const QString &text) const;

    /// Those of New, Copy, Edit and Delete that can be pressed.
    [[nodiscard]] QStringList enabledButtons() const;
    [[nodiscard]] QPushButton *button(const QString &text) const;

    QComboBox *type = nullptr;
    QComboBox *field = nullptr;
    QComboBox *op = nullptr;
    QLineEdit *value = nullptr;
    DataTableView *view = nullptr;
    QMenu *menu = nullptr;

private:
    [[nodiscard]] QPoint placeOf(const QString &name) const;

    SearchWidget *tab;
};

} // namespace Planaria
