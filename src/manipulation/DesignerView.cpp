#include "manipulation/DesignerView.h"

#include <QContextMenuEvent>
#include <QMouseEvent>

namespace Planaria {

DesignerView::DesignerView(QWidget *parent) : ZoomGraphicsView(parent, true, true) {}

bool DesignerView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ContextMenu) {
        // The menu takes the release of the button; without one, the next press would still go to
        // the item under this one, or go on with its rubber band.
        const auto *menu = static_cast<const QContextMenuEvent *>(event);
        QMouseEvent release(QEvent::MouseButtonRelease, menu->pos(), menu->globalPos(),
                            Qt::RightButton, Qt::NoButton, Qt::NoModifier);
        mouseReleaseEvent(&release);
    }
    return ZoomGraphicsView::viewportEvent(event);
}

void DesignerView::keyPressEvent(QKeyEvent *event)
{
    ZoomGraphicsView::keyPressEvent(event);
    event->accept();
}

} // namespace Planaria
