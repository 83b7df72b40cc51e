#include "browse/ElementCommands.h"

#include "browse/DataTableView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>

#include <limits>

namespace Planaria {

namespace {

/// Shows itself between two elements alone, when the deletion takes a while. A timer would show it
/// over a box that an element opens, and block the box.
class DeletionProgress final : public QProgressDialog
{
public:
    DeletionProgress(int count, QWidget *parent)
        : QProgressDialog(ElementCommands::tr("Deleting..."), ElementCommands::tr("Abort"), 0,
                          count, parent)
    {
        setWindowModality(Qt::WindowModal);
        setMinimumDuration(std::numeric_limits<int>::max());
        setAutoReset(false); // an Abort at the last element counts
        clock.start();
    }

    /// @return whether to go on
    bool advance(int done)
    {
        constexpr int patience = 500; // in milliseconds
        if (!wasCanceled() && done < maximum() && clock.elapsed() >= patience)
            forceShow();
        if (!wasCanceled())
            setValue(done);
        return !wasCanceled();
    }

private:
    QElapsedTimer clock;
};

} // namespace

ElementCommands::ElementCommands(const DataTableView *elementList, QWidget *parent)
    : QDialogButtonBox(parent), list(elementList)
{
    const auto add = [this](const QString &text, void (ElementCommands::*signal)()) {
        QPushButton *button = addButton(text, ActionRole);
        connect(button, &QPushButton::clicked, this, signal);
        return button;
    };
    add(tr("&New"), &ElementCommands::newPressed);
    copyButton = add(tr("&Copy"), &ElementCommands::copyPressed);
    editButton = add(tr("&Edit"), &ElementCommands::editPressed);
    deleteButton = add(tr("&Delete"), &ElementCommands::deletePressed);
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ElementCommands::selectionChanged);
    selectionChanged();
}

void ElementCommands::selectionChanged()
{
    const qsizetype selected = list->selectionModel()->selectedRows(0).size();
    copyButton->setEnabled(selected == 1);
    editButton->setEnabled(selected == 1);
    deleteButton->setEnabled(selected >= 1);
}

bool ElementCommands::confirmDeletion(QWidget *parent, const QString &question)
{
    return QMessageBox::warning(parent, tr("Warning"), question,
                                QMessageBox::Yes | QMessageBox::Cancel,
                                QMessageBox::Cancel) == QMessageBox::Yes;
}

void ElementCommands::deleteElements(
    DB *db, const QList<int> &ids, const std::function<ElementDeletion::Outcome(int id)> &deleteOne,
    QWidget *parent)
{
    DeletionProgress progress(static_cast<int>(ids.size()), parent);
    const bool committed = ElementDeletion::deleteElements(
        db, ids, deleteOne, [&progress](int done) { return progress.advance(done); });
    const bool failed = !committed && !progress.wasCanceled();
    progress.hide();
    if (failed)
        tellDeletionFailure(parent);
}

void ElementCommands::tellDeletionFailure(QWidget *parent)
{
    QMessageBox::critical(parent, tr("Cannot delete elements"),
                          tr("The file does not let go of all of the selected elements. Nothing "
                             "was deleted."));
}

void ElementCommands::tellRefusal(const ElementDeletion::Refusal &refusal, QWidget *parent)
{
    auto *progress = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
    if (progress != nullptr)
        progress->hide();
    QMessageBox::critical(parent, refusal.title, refusal.text, QMessageBox::Cancel);
    if (progress != nullptr)
        progress->show();
}

} // namespace Planaria
