#pragma once

#include <QString>
#include <QWidget>

#include <memory>

namespace Planaria {

class DB;
class ElementTable;

/// The tab of all silenced genes.
class RNAiWidget final : public QWidget
{
    Q_OBJECT

public:
    RNAiWidget(DB *database, QWidget *parent);
    ~RNAiWidget() override;

    /// Reads the table anew. @param id the element to select; 0 for none
    void updateModel(int id);
    /// Lets go of the rows; for when the file is closed.
    void clear();

public slots:
    void newRNAi();
    /// @return the id of the copy; 0 where none was made
    int copyRNAi(int id);
    void editRNAi(int id);
    void deleteRNAi(int id);

signals:
    void databaseCorrupted();
    void modelChanged();
    void search(int typeIndex, int fieldIndex, int op, const QString &text);
    void nEleChanged(int n, const QString &eleName, const QString &eleNameP);

private:
    std::unique_ptr<ElementTable> table;
};

} // namespace Planaria
