#pragma once

#include "browse/PublicationsWidget.h"

#include <QStyledItemDelegate>

namespace Planaria {

class DataTableView;

/// Draws the addresses of a table of publications as links, which change the cursor. The rows show
/// them as plain text; this is for a table that is to tell more.
class PublicationsWidget::RenderLinkDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// @param parentWidget its coordinates are those of the view's content
    RenderLinkDelegate(QWidget *parentWidget, DataTableView *tableView);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

private:
    QWidget *parent;
    DataTableView *view;
};

} // namespace Planaria
