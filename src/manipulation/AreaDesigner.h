#pragma once

#include "widgets/ZoomGraphicsView.h"

#include <QColor>
#include <QList>
#include <QString>

class QAction;
class QGraphicsPathItem;
class QGraphicsPolygonItem;

namespace Planaria {

class ActionAreaPoint;
class AreaAction;
class AreaPoint;
class ManipulationItem;

/// The editor of the area of one action, in place: the worm as it comes in, the dashed outline of
/// the area with a handle at each corner, and a preview of what the action does.
///
/// All that the concrete designers have in common; they add the names under which their forms know
/// them, and what Traits holds. The action belongs to somebody else and must stay while it is
/// shown.
class AreaDesigner : public ZoomGraphicsView
{
    Q_OBJECT

public:
    ~AreaDesigner() override;

    /// Null while nothing is shown.
    [[nodiscard]] const AreaAction *areaAction() const { return action; }

public slots:
    void clear();
    /// Puts into the context menu what the selection allows.
    void updateActions();

    // The commands. Each does nothing without the selection that it needs.

    /// Adds a corner between the selected one and the next.
    void addPoint();
    void removeSelectedPoint();
    void removeSelectedPoints();

protected:
    /// What one kind of area has of its own.
    struct Traits
    {
        enum class Shadow { Inside, Outside };

        QString squareText;
        QString removePointsText;
        Shadow shadow; // the part of the worm that the preview covers
        QColor shadowColor;
        QString accessibleName;
    };

    AreaDesigner(Traits ownTraits, QWidget *parent);

    /// @param newAction null for none
    void setAction(AreaAction *newAction);
    /// Starts an area that has no corners yet.
    void createSquare();
    /// Follows a corner that has moved.
    void areaPointChanged();

    /// Tells that the area has changed, by the signal of the concrete class.
    virtual void emitChanged() = 0;

private:
    using Command = void (AreaDesigner::*)();

    void createItems();
    void createActions();
    QAction *createAction(const QString &text, const QString &shortcut, const QString &icon,
                          Command command);

    void setupScene();
    void clearScene();
    void updateShadow();
    void updatePolygonItem();
    void insertHandle(qsizetype index);
    /// Takes the corner out of the model; the caller deletes the handle.
    void removePoint(AreaPoint *handle);
    /// In the order of the corners.
    [[nodiscard]] QList<AreaPoint *> selectedPoints() const;
    /// Of a new corner behind @p index, whose handle lies at @p pos.
    [[nodiscard]] QPointF calcNewPointPos(const QPointF &pos, qsizetype index) const;

    Traits traits;
    AreaAction *action = nullptr;
    QAction *squareAction = nullptr;
    QAction *addPointAction = nullptr;
    QAction *removePointAction = nullptr;
    QAction *removePointsAction = nullptr;

    // Owned by the scene.
    ManipulationItem *manipulationItem = nullptr;
    QGraphicsPathItem *shadowItem = nullptr;
    QList<AreaPoint *> points; // in the order of the corners
    QGraphicsPolygonItem *polygonItem = nullptr;
};

} // namespace Planaria
