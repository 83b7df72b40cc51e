#pragma once

#include "support/ModalAnswerer.h"

#include <QApplication>
#include <QComboBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <optional>

/// The parts of a form as a user tells them apart.
namespace Planaria {

/// The buttons within @p area that can be seen, top down.
inline QStringList buttonTexts(const QWidget *area)
{
    QStringList texts;
    for (const auto *button : area->findChildren<QPushButton *>()) {
        if (!button->isHidden())
            texts += button->text();
    }
    return texts;
}

/// @param role what the button is for, where several bear the same text
inline QPushButton *button(const QWidget *area, const QString &text, const QString &role = {})
{
    for (auto *button : area->findChildren<QPushButton *>()) {
        if (button->text() == text && (role.isEmpty() || button->accessibleDescription() == role))
            return button;
    }
    qFatal("no button \"%s\"", qUtf8Printable(text));
}

inline void press(const QWidget *area, const QString &text, const QString &role = {})
{
    QTest::mouseClick(button(area, text, role), Qt::LeftButton);
}

/// What widgets put off until the program is idle, such as their end.
inline void settle()
{
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

inline QStringList entries(const QComboBox *box)
{
    QStringList texts;
    for (int row = 0; row < box->count(); ++row)
        texts += box->itemText(row);
    return texts;
}

/// Chooses by keys, as after a click on the box.
inline void choose(QComboBox *box, const QString &text)
{
    box->setFocus();
    const int row = box->findText(text);
    if (row == -1)
        qFatal("no entry \"%s\"", qUtf8Printable(text));
    while (box->currentIndex() < row)
        QTest::keyClick(box, Qt::Key_Down);
    while (box->currentIndex() > row)
        QTest::keyClick(box, Qt::Key_Up);
}

/// Types over what stands in the field, and leaves the cursor there.
inline void typeInto(QLineEdit *edit, const QString &text)
{
    edit->setFocus();
    edit->selectAll();
    if (text.isEmpty())
        QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

/// Types a number and goes on with Tab.
inline void typeNumber(QWidget *spinBox, const QString &number)
{
    spinBox->setFocus();
    QTest::keyClick(spinBox, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(spinBox, number);
    QTest::keyClick(spinBox, Qt::Key_Tab);
}

/// The widgets at which Tab stops on its way through @p window, from @p first on, once round.
inline QList<QWidget *> tabStops(QWidget *window, QWidget *first)
{
    QList<QWidget *> stops;
    first->setFocus();
    while (window->focusWidget() && !stops.contains(window->focusWidget())) {
        stops += window->focusWidget();
        // A label with a link takes one more, for the link.
        for (int i = 0; i < 2 && window->focusWidget() == stops.last(); ++i)
            QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    }
    return stops;
}

/// A warning with one button.
inline ModalAnswerer::Box warning(const QString &title, const QString &text)
{
    return {title, text, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Warning};
}

/// What a dialog that asks for a text showed before it was answered.
struct SeenInput
{
    QString title;
    QString label;
    QString text;
};

/// Plans the answer to such a dialog: types @p text and presses OK, or cancels without one.
inline std::shared_ptr<SeenInput> expectInput(ModalAnswerer *answerer,
                                              const std::optional<QString> &text)
{
    auto seen = std::make_shared<SeenInput>();
    answerer->expectDialog([seen, text](QDialog *dialog) {
        auto *input = qobject_cast<QInputDialog *>(dialog);
        auto *edit = dialog->findChild<QLineEdit *>();
        if (!input || !edit || !text) {
            dialog->reject();
            return;
        }
        *seen = {input->windowTitle(), input->labelText(), edit->text()};
        typeInto(edit, *text);
        QTest::keyClick(edit, Qt::Key_Return);
    });
    return seen;
}

} // namespace Planaria
