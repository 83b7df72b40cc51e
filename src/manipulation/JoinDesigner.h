#pragma once

#include "widgets/ZoomGraphicsView.h"

#include <QList>
#include <QRectF>

#include <optional>

namespace Planaria {

class JoinAction;
class ManipulationItem;

/// Places the graft of a join: dragging it moves it, and dragging anywhere else turns it about its
/// origin. It edits in place; the action belongs to somebody else and must stay while it is shown.
class JoinDesigner final : public ZoomGraphicsView
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/JoinAction.h")

public:
    explicit JoinDesigner(QWidget *parent = nullptr);
    ~JoinDesigner() override;

signals:
    void joinChanged();

public slots:
    /// @param action null for none
    void setJoinAction(JoinAction *action);
    void clear();
    void updateActions();
    /// Writes where the graft lies into the action.
    void productChanged(const QList<QRectF> &region);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    /// The second press of two in quick succession starts what any press starts.
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    void createActions();
    void setupScene();
    void clearScene();
    void updatePointItem();

    /// Decides between the two modes.
    void startDrag(const QMouseEvent *event);
    /// Of the direction from the origin of the graft to @p pos in the viewport, radians.
    [[nodiscard]] double angleTo(const QPoint &pos) const;
    void writeProduct();

    JoinAction *joinAction = nullptr;
    ManipulationItem *item1 = nullptr; // the body; owned by the scene
    ManipulationItem *item2 = nullptr; // the graft; owned by the scene
    std::optional<double> lastAngle;   // of the pointer, while the graft is being turned
};

} // namespace Planaria
