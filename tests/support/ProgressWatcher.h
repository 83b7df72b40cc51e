#pragma once

#include <QList>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QProgressDialog>
#include <QStringList>

#include <functional>

namespace Planaria {

/// Watches a progress dialog that a call under test makes, works with and destroys, and which would
/// not show itself for a job as short as those of a test.
class ProgressWatcher final : public QObject
{
    Q_OBJECT

public:
    /// @param abortAt the value at which the dialog's button is pressed; -1 for never
    explicit ProgressWatcher(int abortAt = -1);
    /// @param event what happens at the value @p at
    ProgressWatcher(int at, const std::function<void()> &event);

    bool eventFilter(QObject *watched, QEvent *event) override;

    QString label;
    QStringList labels; // each label with which the progress moved on, in their order
    QString button;
    QPair<int, int> range;
    QList<int> values;
    Qt::WindowModality modality = Qt::NonModal;
    int minimumDuration = 0;
    const QWidget *parentWidget = nullptr;

private:
    void watch(QProgressDialog *found);
    void note(int value);

    int eventValue;
    std::function<void()> plannedEvent; // where there is none, the button is pressed
    QPointer<QProgressDialog> dialog;
};

} // namespace Planaria
