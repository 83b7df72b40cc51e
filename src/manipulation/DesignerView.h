#pragma once

#include "widgets/ZoomGraphicsView.h"

namespace Planaria {

/// The base of the views in which an action is designed with the mouse: a press is ended by the
/// menu that comes up in its midst, and no key takes away the dialog around it.
class DesignerView : public ZoomGraphicsView
{
    Q_OBJECT

public:
    explicit DesignerView(QWidget *parent);

protected:
    bool viewportEvent(QEvent *event) override;
    /// Escape in the midst of a drag must not throw away the edits with their dialog.
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace Planaria
