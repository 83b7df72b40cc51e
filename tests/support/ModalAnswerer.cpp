#include "support/ModalAnswerer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QProgressDialog>
#include <QPushButton>

namespace Planaria {

namespace {

QString described(const ModalAnswerer::Box &box)
{
    return QStringLiteral("\"%1\" (%2), buttons 0x%3, default 0x%4, icon %5")
        .arg(box.title, box.text, QString::number(box.buttons.toInt(), 16),
             QString::number(box.defaultButton, 16), QString::number(box.icon));
}

ModalAnswerer::Box seen(const QMessageBox &box)
{
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    for (QAbstractButton *button : box.buttons()) {
        const auto *pushButton = qobject_cast<QPushButton *>(button);
        if (pushButton != nullptr && pushButton->isDefault())
            defaultButton = box.standardButton(button);
    }
    return {box.windowTitle(), box.text(), box.standardButtons(), defaultButton, box.icon()};
}

} // namespace

ModalAnswerer::ModalAnswerer()
{
    timer.setSingleShot(true);
    timer.setInterval(std::chrono::milliseconds(5));
    timer.callOnTimeout([this] { answerActive(); });
    timer.start();
}

void ModalAnswerer::expectBox(const Box &box, QMessageBox::StandardButton answer)
{
    expectDialog([this, box, answer](QDialog *dialog) { answerBox(dialog, box, answer); });
}

void ModalAnswerer::expectBox(const Box &box, QMessageBox::StandardButton answer,
                              std::chrono::milliseconds thinking)
{
    expectDialog([this, box, answer, thinking](QDialog *dialog) {
        think(dialog, thinking);
        answerBox(dialog, box, answer);
    });
}

void ModalAnswerer::expectDialog(const std::function<void(QDialog *)> &answer)
{
    plans.enqueue({answer});
}

void ModalAnswerer::expectProgress(const std::function<void(QDialog *)> &answer)
{
    plans.enqueue({answer, true});
}

QStringList ModalAnswerer::problems() const
{
    QStringList all = found;
    if (!plans.isEmpty())
        all += QStringLiteral("%1 planned dialogs did not show").arg(plans.size());
    return all;
}

void ModalAnswerer::answerActive()
{
    timer.start(); // anew each time: one that repeats stays silent while an answer opens a box
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialog == nullptr || !dialog->isVisible())
        return;
    const bool isProgress = qobject_cast<QProgressDialog *>(dialog) != nullptr;
    if (isProgress && (plans.isEmpty() || !plans.head().isProgress))
        return;
    if (!plans.isEmpty()) {
        const Plan plan = plans.dequeue();
        plan.answer(dialog);
        return;
    }
    found += QStringLiteral("not planned: the dialog \"%1\"").arg(dialog->windowTitle());
    if (const auto *box = qobject_cast<QMessageBox *>(dialog))
        found.last() += QStringLiteral(", which says: ") + box->text();
    dialog->reject();
}

void ModalAnswerer::think(const QDialog *dialog, std::chrono::milliseconds time)
{
    timer.stop(); // or the dialog would take the next answer
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
    timer.start();
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        const auto *other = qobject_cast<const QDialog *>(widget);
        if (other != nullptr && other != dialog && other->isVisible())
            found += QStringLiteral("the dialog \"%1\" besides the box").arg(other->windowTitle());
    }
}

void ModalAnswerer::answerBox(QDialog *dialog, const Box &expected,
                              QMessageBox::StandardButton answer)
{
    auto *box = qobject_cast<QMessageBox *>(dialog);
    if (box == nullptr) {
        found += QStringLiteral("the dialog \"%1\" instead of the box %2")
                     .arg(dialog->windowTitle(), described(expected));
        dialog->reject();
        return;
    }
    Box actual = seen(*box);
    if (expected.icon == QMessageBox::NoIcon)
        actual.icon = QMessageBox::NoIcon;
    if (described(actual) != described(expected))
        found += QStringLiteral("%1 instead of %2").arg(described(actual), described(expected));
    QAbstractButton *button = box->button(answer);
    if (button != nullptr)
        button->click();
    else
        box->reject();
}

} // namespace Planaria
