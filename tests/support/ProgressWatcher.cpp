#include "support/ProgressWatcher.h"

#include <QApplication>
#include <QEvent>
#include <QProgressBar>
#include <QPushButton>

namespace Planaria {

ProgressWatcher::ProgressWatcher(int abortAt) : ProgressWatcher(abortAt, nullptr) {}

ProgressWatcher::ProgressWatcher(int at, const std::function<void()> &event)
    : eventValue(at), plannedEvent(event)
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
    if (labels.isEmpty() || labels.last() != label)
        labels += label;
    button = abort->text();
    range = {dialog->minimum(), dialog->maximum()};
    modality = dialog->windowModality();
    minimumDuration = dialog->minimumDuration();
    parentWidget = dialog->parentWidget();
    values += value;
    if (value == eventValue)
        plannedEvent ? plannedEvent() : abort->click();
}

} // namespace Planaria
