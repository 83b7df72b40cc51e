#include "browse/PublicationsWidget.h"

#include "browse/DataTableView.h"
#include "browse/ElementEditor.h"
#include "browse/ElementTable.h"
#include "experiment/PublicationForm.h"
#include "model/Publication.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMouseEvent>
#include <QUrl>

namespace Planaria {

PublicationsWidget::PublicationsWidget(DB *database, QWidget *parent)
    : QWidget(parent), table(std::make_unique<ElementTable>(
                           ElementKind::Publications,
                           std::make_unique<FormEditor<Publication, PublicationForm>>(
                               ElementKind::Publications, database, this),
                           database, this))
{
    table->tellThrough(this);
    setMouseTracking(true);
    table->view()->setMouseTracking(true);
    connect(table->view(), &DataTableView::clicked, this, &PublicationsWidget::tableClicked);
    connect(table->view(), &DataTableView::entered, this, &PublicationsWidget::tableEntered);
    connect(table->view(), &DataTableView::viewportEntered, this, [] { showHand(false); });
    table->view()->viewport()->installEventFilter(this);
}

PublicationsWidget::~PublicationsWidget() = default;

void PublicationsWidget::updateModel(int id)
{
    table->updateModel(id);
}

void PublicationsWidget::clear()
{
    table->clear();
    showHand(false); // the address under it is gone
}

void PublicationsWidget::newPublication()
{
    table->createElement();
}

int PublicationsWidget::copyPublication(int id)
{
    return table->copyElement(id);
}

void PublicationsWidget::editPublication(int id)
{
    table->editElement(id);
}

void PublicationsWidget::deletePublication(int id)
{
    table->deleteElement(id);
}

// --- Addresses ---

QString PublicationsWidget::urlAt(const QModelIndex &index) const
{
    const QModelIndex source = table->view()->sourceIndex(index);
    return source.column() == urlColumn ? source.data().toString() : QString();
}

void PublicationsWidget::tableClicked()
{
    const QString url = urlAt(table->view()->currentIndex());
    if (!url.isEmpty())
        QDesktopServices::openUrl(QUrl(url));
}

void PublicationsWidget::showHand(bool over)
{
    // Cursors pile up: that of one address is to be the only hand, and others are not ours.
    const QCursor *shown = QApplication::overrideCursor();
    if (shown && shown->shape() == Qt::PointingHandCursor)
        QApplication::restoreOverrideCursor();
    if (over)
        QApplication::setOverrideCursor(Qt::PointingHandCursor);
}

void PublicationsWidget::tableEntered(const QModelIndex &index)
{
    showHand(!urlAt(index).isEmpty());
}

bool PublicationsWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Leave) // of the viewport, for a header, a scroll bar or a button
        showHand(false);
    return QWidget::eventFilter(watched, event);
}

void PublicationsWidget::mouseMoveEvent(QMouseEvent *event)
{
    showHand(false);
    QWidget::mouseMoveEvent(event);
}

void PublicationsWidget::leaveEvent(QEvent *event)
{
    showHand(false);
    QWidget::leaveEvent(event);
}

} // namespace Planaria
