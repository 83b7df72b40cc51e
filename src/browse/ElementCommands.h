#pragma once

#include "browse/ElementDeletion.h"

#include <QDialogButtonBox>
#include <QList>
#include <QString>

#include <functional>

class QPushButton;

namespace Planaria {

class DataTableView;
class DB;

/// The commands under a list of elements: New, Copy, Edit and Delete. They can be pressed as the
/// selection of the list allows: one element can be copied and edited, any number deleted.
class ElementCommands final : public QDialogButtonBox
{
    Q_OBJECT

public:
    /// @param elementList must outlive the commands, or be of the same parent
    ElementCommands(const DataTableView *elementList, QWidget *parent);

    /// Asks whether selected elements are to go. @param question by the type of the elements
    static bool confirmDeletion(QWidget *parent, const QString &question);
    /// Calls @p deleteOne for each of @p ids, in one transaction, under a progress dialog whose
    /// Abort takes all back. The user is told once where the file did not take the deletion.
    /// @param deleteOne as for ElementDeletion::deleteElements(); it tells of no failure
    static void deleteElements(DB *db, const QList<int> &ids,
                               const std::function<ElementDeletion::Outcome(int id)> &deleteOne,
                               QWidget *parent);
    static void tellDeletionFailure(QWidget *parent);
    /// Tells that an element stays, in the place of the progress dialog while one is shown.
    static void tellRefusal(const ElementDeletion::Refusal &refusal, QWidget *parent);

public slots:
    /// To be called when rows were read anew, too: they lose their selection without a word.
    void selectionChanged();

signals:
    void newPressed();
    void copyPressed();
    void editPressed();
    void deletePressed();

private:
    const DataTableView *list;
    QPushButton *copyButton = nullptr;
    QPushButton *editButton = nullptr;
    QPushButton *deleteButton = nullptr;
};

} // namespace Planaria
