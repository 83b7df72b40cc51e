#include "widgets/ZoomGraphicsView.h"

#include "widgets/ImageSaver.h"
#include "widgets/SilkIcon.h"

#include <QAction>
#include <QGraphicsScene>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QWheelEvent>

namespace Planaria {

ZoomGraphicsView::ZoomGraphicsView(QWidget *parent, bool fitLarge, bool yUp)
    : QGraphicsView(parent), actionsMenu(new QMenu(this)), autoFit(fitLarge), flipY(yUp)
{
    setScene(new QGraphicsScene(1, 1, 1, 1, this));
    setBackgroundBrush(Qt::white);
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                   QPainter::SmoothPixmapTransform);
    resetZoom();

    saveImageAction = new QAction(silkIcon(QStringLiteral("picture_save")),
                                  QStringLiteral("Save image..."), this);
    connect(saveImageAction, &QAction::triggered, this, &ZoomGraphicsView::saveImage);
    addAction(saveImageAction);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

ZoomGraphicsView::~ZoomGraphicsView()
{
    delete scene();
}

void ZoomGraphicsView::resetZoom()
{
    resetTransform();
    if (flipY)
        scale(1.0, -1.0);
}

void ZoomGraphicsView::fitView()
{
    if (inFit)
        return;
    const QScopedValueRollback guard(inFit, true); // scroll bars that come or go resize the view

    resetZoom();
    const QRectF rect = scene()->itemsBoundingRect();
    scene()->setSceneRect(rect);
    if (autoFit && (rect.width() > width() || rect.height() > height()))
        fitInView(rect, Qt::KeepAspectRatio);
}

void ZoomGraphicsView::saveImage()
{
    ImageSaver::saveScene(*scene(), flipY, parentWidget());
}

void ZoomGraphicsView::clearActions()
{
    for (QAction *action : actions())
        removeAction(action);
}

bool ZoomGraphicsView::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ContextMenu)
        return QGraphicsView::viewportEvent(event);
    // The menu takes the release of the button; without one, the next press would still go to the
    // item under this one, or go on with its rubber band.
    auto *menuEvent = static_cast<QContextMenuEvent *>(event);
    QMouseEvent release(QEvent::MouseButtonRelease, menuEvent->pos(), menuEvent->globalPos(),
                        Qt::RightButton, Qt::NoButton, Qt::NoModifier);
    QGraphicsView::mouseReleaseEvent(&release);
    if (contextMenuPolicy() != Qt::ActionsContextMenu)
        return QGraphicsView::viewportEvent(event);
    openActionsMenu(menuEvent);
    return true;
}

void ZoomGraphicsView::openActionsMenu(QContextMenuEvent *event)
{
    // A menu that stays. Accessibility knows an action by the menu in which it was first, and could
    // not read it in the menu that Qt would make for each call.
    actionsMenu->addActions(actions());
    actionsMenu->exec(event->globalPos());
    actionsMenu->clear();
    event->accept();
}

void ZoomGraphicsView::wheelEvent(QWheelEvent *event)
{
    if (!zooming) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    const int notches = event->angleDelta().y();
    if (notches == 0)
        return; // a wheel turned sideways
    constexpr double step = 1.15;
    const double factor = notches > 0 ? step : 1.0 / step;
    scale(factor, factor);
}

void ZoomGraphicsView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Control)
        zooming = true;
    acceptKey(event);
}

void ZoomGraphicsView::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Control)
        zooming = false;
    acceptKey(event);
}

void ZoomGraphicsView::acceptKey(QKeyEvent *event) const
{
    // No key is for the scene's items, nor Enter for a dialog's button; Escape closes the dialog.
    event->setAccepted(escapeKept || event->key() != Qt::Key_Escape);
}

void ZoomGraphicsView::focusOutEvent(QFocusEvent *event)
{
    zooming = false;
    QGraphicsView::focusOutEvent(event);
}

void ZoomGraphicsView::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    if (!inFit && !zooming)
        fitView();
}

} // namespace Planaria
