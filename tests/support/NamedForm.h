#pragma once

#include <QApplication>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <functional>

namespace Planaria {

/// A form with a name and the buttons Ok and Cancel, in a window of its own, as a user works with
/// it.
template <typename Form> struct NamedForm
{
    template <typename... Arguments>
    explicit NamedForm(Arguments... arguments) : form(arguments..., nullptr)
    {
        form.show();
        form.activateWindow();
        if (!QTest::qWaitForWindowActive(&form))
            qFatal("the form does not become active");
    }

    QLineEdit *nameEdit() { return form.template findChild<QLineEdit *>(); }
    QDialogButtonBox *buttons() { return form.template findChild<QDialogButtonBox *>(); }

    /// Leaves the cursor in the field.
    void type(const QString &name)
    {
        nameEdit()->setFocus();
        nameEdit()->selectAll();
        if (name.isEmpty())
            QTest::keyClick(nameEdit(), Qt::Key_Delete);
        QTest::keyClicks(nameEdit(), name);
    }

    void press(QDialogButtonBox::StandardButton button)
    {
        QTest::mouseClick(buttons()->button(button), Qt::LeftButton);
    }

    bool isAccepted() { return form.isHidden() && form.result() == QDialog::Accepted; }

    Form form;
};

/// The ways in which a user goes on to Ok with the cursor in the name.
struct WayToOk
{
    const char *name;
    std::function<void(QLineEdit *nameEdit, QPushButton *ok)> go;
};

inline QList<WayToOk> waysToOk()
{
    return {
        {"mouse", [](QLineEdit *, QPushButton *ok) { QTest::mouseClick(ok, Qt::LeftButton); }},
        {"Return", [](QLineEdit *edit, QPushButton *) { QTest::keyClick(edit, Qt::Key_Return); }},
        {"Enter", [](QLineEdit *edit, QPushButton *) { QTest::keyClick(edit, Qt::Key_Enter); }},
        {"Alt+O",
         [](QLineEdit *edit, QPushButton *ok) {
             // As the themes of most desktops have it; the offscreen one gives no letters.
             ok->setShortcut(QKeySequence("Alt+O"));
             QTest::keyClick(edit, Qt::Key_O, Qt::AltModifier);
         }},
        {"a script", [](QLineEdit *, QPushButton *ok) { ok->click(); }},
    };
}

} // namespace Planaria
