#pragma once

#include <QList>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QProgressDialog>

namespace Planaria {

/// Watches a progress dialog that a call under test makes, works with and destroys, and which would
/// not show itself for a job as short as those of a test.
class ProgressWatcher final : public QObject
{
    Q_OBJECT

public:
    /// @param abortAt the value at which the dialog's button is pressed; -1 for never
    explicit ProgressWatcher(int abortAt = -1);

    bool eventFilter(QObject *watched, QEvent *event) override;

    QString label;
    QString button;
    QPair<int, int> range;
    QList<int> values;
    Qt::WindowModality modality = Qt::NonModal;
    int minimumDuration = 0;
    const QWidget *parentWidget = nullptr;

private:
    void watch(QProgressDialog *found);
    void note(int value);

    int abortValue;
    QPointer<QProgressDialog> dialog;
};

} // namespace Planaria
