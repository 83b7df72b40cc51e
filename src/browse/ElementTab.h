#pragma once

#include <QString>
#include <QWidget>

#include <memory>

class QSqlQueryModel;

namespace Planaria {

class DB;

/// A tab of the main window, still without a list: it reads the rows of its table when it comes to
/// the front, and tells how many there are.
class ElementTab final : public QWidget
{
    Q_OBJECT

public:
    /// @param tableName empty for a tab of no table, which stays silent
    /// @param singularWord, pluralWord what the status line calls the elements
    ElementTab(DB *database, QString tableName, QString singularWord, QString pluralWord,
               QWidget *parent);
    ~ElementTab() override;

    /// Reads the table anew. @param id the element to select; 0 for none
    void updateModel(int id);
    /// Lets go of the rows; for when the file is closed.
    void clear();
    /// Whether it holds rows of the file, be they none; no more after clear().
    [[nodiscard]] bool holdsRows() const { return model != nullptr; }

signals:
    void nEleChanged(int n, const QString &eleName, const QString &eleNameP);
    void databaseCorrupted();

private:
    DB *db;
    QString table;
    QString singular;
    QString plural;
    std::unique_ptr<QSqlQueryModel> model;
};

} // namespace Planaria
