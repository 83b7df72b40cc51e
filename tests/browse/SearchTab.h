#pragma once

#include "browse/SearchWidget.h"
#include "support/ModalAnswerer.h"
#include "support/TemporaryLibrary.h"

#include <QSignalSpy>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QComboBox;
class QLineEdit;
class QMenu;
class QPushButton;

namespace Planaria {

class DataTableView;

/// A search tab on the screen, over a copy of tests/data/library.edb, and a user before it.
class SearchTab final
{
public:
    SearchTab();

    /// Sets the controls and presses Search.
    void ask(const SearchQuestion &question);
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
    /// Asks for the menu on the table.
    void callMenu() const;
    /// Chooses from the menu that is open.
    void choose(const QString &entry) const;
    void press(const QString &button) const;

    /// Those of New, Copy, Edit and Delete that can be pressed.
    [[nodiscard]] QStringList enabledButtons() const;
    [[nodiscard]] QPushButton *button(const QString &text) const;

    /// The signals that ask for a change since the last call, "name(id)", in order.
    QStringList takeSignals();
    /// The last "n singular/plural".
    [[nodiscard]] QString lastTold() const;

    TemporaryLibrary library;
    ModalAnswerer answerer;
    SearchWidget widget;
    QSignalSpy told;
    QSignalSpy corrupted;

    QComboBox *type = nullptr;
    QComboBox *field = nullptr;
    QComboBox *op = nullptr;
    QLineEdit *value = nullptr;
    DataTableView *view = nullptr;
    QMenu *menu = nullptr;

private:
    [[nodiscard]] QPoint placeOf(const QString &name) const;
    void logSignals();

    QStringList asked;
};

} // namespace Planaria
