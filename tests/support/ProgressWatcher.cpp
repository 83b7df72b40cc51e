#include "support/ProgressWatcher.h"

#include <QApplication>
#include <QEvent>
#include <QProgressBar>
#include <QPushButton>

namespace Planaria {

ProgressWatcher::ProgressWatcher(int abortAt) : abortValue(abortAt)
{
    qApp->installEventFilter(this);
}

bool ProgressWatcher::eventFilter(QObject *watched, QEvent *event)
{
    auto *found = qobject_cast<QProgressDialog *>(watched);
    if (found && !dialog && event->type() == QEvent::ChildAdded)
        watch(found);
    return false;
}

void ProgressWatcher::watch(QProgressDialog *found)
{
    const auto *bar = found->findChild<QProgressBar *>();
    if (!bar)
        return; // not made yet
    dialog = found;
    connect(bar, &QProgressBar::valueChanged, this, &ProgressWatcher::note);
}

void ProgressWatcher::note(int value)
{
    auto *abort = dialog->findChild<QPushButton *>();
    label = dialog->labelText();
    button = abort->text();
    range = {dialog->minimum(), dialog->maximum()};
    modality = dialog->windowModality();
    minimumDuration = dialog->minimumDuration();
    parentWidget = dialog->parentWidget();
    values += value;
    if (value == abortValue)
        abort->click();
}

} // namespace Planaria
