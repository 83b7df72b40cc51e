#pragma once

#include <QGraphicsEllipseItem>
#include <QObject>

namespace Planaria {

class ActionAreaPoint;

/// The handle of one corner of an area. Moving it moves the corner, which belongs to its action and
/// must outlive the handle.
class AreaPoint final : public QObject, public QGraphicsEllipseItem
{
    Q_OBJECT

public:
    explicit AreaPoint(ActionAreaPoint *corner);

    /// Goes to where the corner is.
    void updatePos();

signals:
    /// The corner has moved, and the handle is about to follow it.
    void pointChanged();

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    ActionAreaPoint *point;
    bool updating = false; // the handle follows the corner
};

} // namespace Planaria
