#include "browse/ElementCommands.h"

#include "browse/DataTableView.h"
#include "browse/ElementDeletion.h"
#include "db/DB.h"

#include <QItemSelectionModel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>

namespace Planaria {

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

bool ElementCommands::deleteElements(DB *db, const QList<int> &ids,
                                     const std::function<void(int id)> &deleteOne, QWidget *parent)
{
    QProgressDialog progress(tr("Deleting..."), tr("Abort"), 0, static_cast<int>(ids.size()),
                             parent);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(500);

    int done = 0;
    const bool committed = ElementDeletion::deleteElements(db, ids, [&](int id) {
        if (!progress.wasCanceled())
            progress.setValue(done++);
        if (progress.wasCanceled()) {
            if (db->inTransaction())
                db->rollbackTransaction();
            return;
        }
        deleteOne(id);
    });
    return committed || progress.wasCanceled();
}

void ElementCommands::tellDeletionFailure(QWidget *parent)
{
    QMessageBox::critical(parent, tr("Cannot delete elements"),
                          tr("Not all of the selected elements could be deleted from the file."));
}

} // namespace Planaria
