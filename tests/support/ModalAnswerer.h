#pragma once

#include <QMessageBox>
#include <QQueue>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <functional>

class QDialog;

namespace Planaria {

/// Answers the modal boxes and dialogs that a call under test opens, each of which blocks the call
/// until someone presses a button. Plan the answers in the order of the boxes, make the call, then
/// check `QCOMPARE(answerer.problems(), QStringList())`.
///
/// A box that differs from its plan is a problem, but is answered all the same; a dialog that was
/// not planned is one too, and is rejected. Progress dialogs that nobody planned are left alone: a
/// busy machine shows more of them.
class ModalAnswerer final
{
public:
    struct Box
    {
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons = QMessageBox::Ok;
        QMessageBox::StandardButton defaultButton = QMessageBox::Ok;
        QMessageBox::Icon icon = QMessageBox::NoIcon; // as expectation: whichever it bears
    };

    ModalAnswerer();

    void expectBox(const Box &box, QMessageBox::StandardButton answer);
    /// As someone does who thinks for a while first. What comes over the box meanwhile is a
    /// problem.
    void expectBox(const Box &box, QMessageBox::StandardButton answer,
                   std::chrono::milliseconds thinking);

    /// @param answer must close the dialog, at once or by what it starts
    void expectDialog(const std::function<void(QDialog *)> &answer);
    /// The same for a progress dialog, which must stay long enough to be met.
    void expectProgress(const std::function<void(QDialog *)> &answer);

    /// What went otherwise than planned, the plans that no dialog has met among it.
    [[nodiscard]] QStringList problems() const;

private:
    struct Plan
    {
        std::function<void(QDialog *)> answer;
        bool isProgress = false;
    };

    void answerActive();
    void think(const QDialog *dialog, std::chrono::milliseconds time);
    void answerBox(QDialog *dialog, const Box &expected, QMessageBox::StandardButton answer);

    QTimer timer;
    QQueue<Plan> plans;
    QStringList found;
};

} // namespace Planaria
