#pragma once

#include "db/DBElementData.h"

#include <QPointF>

namespace Planaria {

class ManipulationAction;

/// One corner of the polygon of an area action, which owns it.
class ActionAreaPoint final : public DBElement
{
public:
    /// Where the points of one kind of action are stored, as string constants.
    struct Tables
    {
        const char *points;
        const char *ownerColumn; // the table of the action, and the column that names its row
    };

    /// @param index of the corner in the polygon
    /// @param point in the coordinates of the drawn worm, scene units
    ActionAreaPoint(const Tables &tables, ManipulationAction *owner, int index,
                    const QPointF &point);
    ActionAreaPoint(const ActionAreaPoint &other, ManipulationAction *owner, bool keepIds);
    /// From the current row of the references of @p owner.
    ActionAreaPoint(const Tables &tables, ManipulationAction *owner,
                    const DBElementData &parentData);

    /// The position in the list of its action.
    [[nodiscard]] int pointInd() const { return pointInd_; }
    [[nodiscard]] double x() const { return x_; }
    [[nodiscard]] double y() const { return y_; }
    [[nodiscard]] QPointF point() const { return {x_, y_}; }
    void setPointInd(int index) { pointInd_ = index; }
    void setPoint(const QPointF &point);

    /// Equal indices, and coordinates that agree to 1e-12.
    bool operator==(const ActionAreaPoint &other) const;

    [[nodiscard]] int id() const override { return data.id(); }
    /// Writes nothing, and returns 0, where the write of its action is lost.
    int submit(DB *db) override;
    bool erase() override;

private:
    const char *ownerColumn;
    ManipulationAction *action;
    int pointInd_ = 0;
    double x_ = 0.0;
    double y_ = 0.0;
    DBElementData data;
};

} // namespace Planaria
