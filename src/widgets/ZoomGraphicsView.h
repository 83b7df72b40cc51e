#pragma once

#include <QGraphicsView>

class QAction;
class QContextMenuEvent;
class QMenu;

namespace Planaria {

/// The base of every graphics view: its own scene, zoom by wheel while Control is held, fitting of
/// scenes that are larger than the view, and "Save image..." in the context menu.
///
/// The paper is white in every theme. It belongs to the view, so that saved scenes stay free of it.
class ZoomGraphicsView : public QGraphicsView
{
    Q_OBJECT

public:
    /// @param fitLarge shrink scenes that are larger than the view
    /// @param yUp      show +y upwards
    ZoomGraphicsView(QWidget *parent, bool fitLarge, bool yUp);
    ~ZoomGraphicsView() override;

    /// Goes back to natural size, shrinks where fitLarge asks for it, and takes the items' extent
    /// as the scene's.
    void fitView();

public slots:
    void saveImage();

protected:
    /// For editors: Escape in the midst of a drag must not throw away the edits with their dialog.
    void keepEscape() { escapeKept = true; }

    bool viewportEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

    /// Empties the context menu, for a view whose commands follow its selection.
    void clearActions();

    QAction *saveImageAction; // a view with a context menu of its own puts it there

private:
    void resetZoom();
    void openActionsMenu(QContextMenuEvent *event);
    /// Accepts the keys that are for nobody else.
    void acceptKey(QKeyEvent *event) const;

    QMenu *actionsMenu;
    bool autoFit;
    bool flipY;
    bool escapeKept = false;
    bool zooming = false;
    bool inFit = false;
};

} // namespace Planaria
