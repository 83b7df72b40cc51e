#include "browse/RenderLinkDelegate.h"

#include "browse/DataTableView.h"

#include <QApplication>
#include <QCursor>
#include <QPainter>

namespace Planaria {

namespace {

void drawLink(QPainter *painter, const QStyleOptionViewItem &option, const QString &text)
{
    QFont font = option.font;
    font.setUnderline(true);
    painter->save();
    painter->setFont(font);
    painter->setPen(option.palette.brush(QPalette::Link).color());
    painter->setBackground(option.palette.brush(QPalette::Window));
    painter->drawText(option.rect, Qt::AlignLeft | Qt::AlignVCenter, text);
    painter->restore();
}

} // namespace

PublicationsWidget::RenderLinkDelegate::RenderLinkDelegate(QWidget *parentWidget,
                                                           DataTableView *tableView)
    : QStyledItemDelegate(parentWidget), parent(parentWidget), view(tableView)
{
}

void PublicationsWidget::RenderLinkDelegate::paint(QPainter *painter,
                                                   const QStyleOptionViewItem &option,
                                                   const QModelIndex &index) const
{
    if (index.column() != urlColumn) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const QString text = index.data().toString();
    if (text.isEmpty())
        return;
    drawLink(painter, option, text);
    if (!option.state.testFlag(QStyle::State_MouseOver))
        return;
    showHand(index == view->indexAt(parent->mapFromGlobal(QCursor::pos())));
}

} // namespace Planaria
