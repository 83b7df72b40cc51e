#include "browse/DataTableView.h"

#include "browse/NaturalStringCompare.h"

#include <QDebug>
#include <QHeaderView>
#include <QSortFilterProxyModel>

namespace Planaria {

namespace {

constexpr int idColumn = 0;
constexpr int nameColumn = 1;

} // namespace

/// Sorts every column by the text that it shows, in natural order and whatever the case. Its rows
/// are numbered from the top of the screen, in any sort order.
class DataTableView::NaturalSortProxyModel final : public QSortFilterProxyModel
{
public:
    explicit NaturalSortProxyModel(QObject *parent) : QSortFilterProxyModel(parent)
    {
        setDynamicSortFilter(true);
    }

    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        if (orientation == Qt::Vertical)
            return section + 1;
        return QSortFilterProxyModel::headerData(section, orientation, role);
    }

protected:
    [[nodiscard]] bool lessThan(const QModelIndex &left, const QModelIndex &right) const override
    {
        return NaturalStringCompare::naturalStringCaseInsensitiveCompareLessThan(
            sourceModel()->data(left, Qt::DisplayRole).toString(),
            sourceModel()->data(right, Qt::DisplayRole).toString());
    }
};

DataTableView::DataTableView(QWidget *parent)
    : QTableView(parent), proxy(new NaturalSortProxyModel(this))
{
    QTableView::setModel(proxy);
    setTabKeyNavigation(false); // the key leads on to the buttons
}

DataTableView::~DataTableView()
{
    delete proxy->sourceModel();
}

void DataTableView::setModel(QAbstractItemModel *model, int sortColumn, Qt::SortOrder order)
{
    proxy->setSourceModel(model);
    if (model == nullptr)
        return;
    fetchAllData();
    hideColumn(idColumn);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    // Enabling sorts by the column that the header marks: it is to be the right one at once.
    horizontalHeader()->setSortIndicator(sortColumn, order);
    setSortingEnabled(true);
    sortByColumn(sortColumn, order);
}

void DataTableView::fetchAllData()
{
    if (!proxy->canFetchMore({}))
        return;
    // Rows that come in batches are sorted once at the end: put one by one into their places, those
    // of a long table would take time with its square.
    const int column = proxy->sortColumn();
    const Qt::SortOrder order = proxy->sortOrder();
    proxy->sort(-1);
    while (proxy->canFetchMore({}))
        proxy->fetchMore({});
    proxy->sort(column, order);
}

void DataTableView::modelUpdated()
{
    fetchAllData();
}

QModelIndex DataTableView::sourceIndex(const QModelIndex &index) const
{
    return proxy->mapToSource(index);
}

void DataTableView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                const QList<int> &roles)
{
    QTableView::dataChanged(topLeft, bottomRight, roles);
    qDebug() << "dataChanged";
}

void DataTableView::setCurrentIndex(QModelIndex index)
{
    QTableView::setCurrentIndex(proxy->mapFromSource(index));
}

void DataTableView::selectRow(int row)
{
    const QAbstractItemModel *model = proxy->sourceModel();
    setCurrentIndex(model != nullptr ? model->index(row, nameColumn) : QModelIndex());
}

void DataTableView::selectFirstRow()
{
    QTableView::setCurrentIndex(proxy->index(0, 0));
}

} // namespace Planaria
