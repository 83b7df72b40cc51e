#pragma once

#include <QModelIndex>
#include <QTableView>

namespace Planaria {

/// The table in which every list of elements is shown, sorted naturally by any of its columns.
///
/// Its models hold the element's id in column 0, which stays hidden, and its name or title in
/// column 1. Between them and the view stands a proxy that sorts: indexes of the view are indexes
/// of the proxy. The view deletes the model that it holds at its end; a model that is to be deleted
/// before is taken away by a null model first.
class DataTableView : public QTableView
{
    Q_OBJECT

public:
    class NaturalSortProxyModel;

    explicit DataTableView(QWidget *parent);
    ~DataTableView() override;

    /// To be called after the model has run its query again, which brings its first rows only.
    void modelUpdated();

    /// The index of the model behind an index of the view.
    [[nodiscard]] QModelIndex sourceIndex(const QModelIndex &index) const;

    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles = {}) override;

    /// Shows @p model, read to its end and sorted by @p sortColumn. Takes ownership at the view's
    /// end; the model before it goes back to the caller.
    /// @param model null for none
    virtual void setModel(QAbstractItemModel *model, int sortColumn, Qt::SortOrder order);

public slots:
    /// @param index of the model
    void setCurrentIndex(QModelIndex index);
    /// @param row of the model
    void selectRow(int row);
    /// The row on top, as the table is sorted.
    void selectFirstRow();

private:
    void fetchAllData();

    NaturalSortProxyModel *proxy;
};

} // namespace Planaria
