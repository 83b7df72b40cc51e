#pragma once

#include <QObject>

#include <memory>

class QComboBox;
class QSqlQueryModel;

namespace Planaria {

class DB;

/// Lets a combo box choose one element of a table. The box keeps to its element when the rows are
/// read anew, and says nothing then: only the user's choice is told.
///
/// Several boxes may share the rows, which live as long as the last of them.
class ElementChoice final : public QObject
{
    Q_OBJECT

public:
    /// Chooses nothing yet. @param shownIn the parent, too
    /// @param rows the ids in column 0 and the names in column 1
    ElementChoice(QComboBox *shownIn, std::shared_ptr<QSqlQueryModel> rows);
    ~ElementChoice() override;

    /// The id in @p row; 0 where there is no such row.
    [[nodiscard]] int idAt(int row) const;
    /// The element that is chosen; 0 for none.
    [[nodiscard]] int id() const;
    /// Moves the box, and says nothing. @param id 0 for none
    void choose(int id);
    /// Reads the rows anew and chooses @p id, of which nothing is said.
    void update(const DB *db, int id);

signals:
    /// The user has chosen another row.
    void chosen(int row);

private:
    void rowsAboutToChange();
    void rowsChanged();

    QComboBox *box;
    std::shared_ptr<QSqlQueryModel> model;
    int keptId = 0;
    bool moving = false; // the box moves, and not at the user's hand
};

} // namespace Planaria
