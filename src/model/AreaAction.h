#pragma once

#include "model/ActionAreaPoint.h"
#include "model/ManipulationAction.h"

#include <QPointF>

namespace Planaria {

/// An action on what lies within a polygon: all that removing, cropping and irradiating have in
/// common. The concrete classes differ in where they are stored and in what they mean to the
/// drawing.
class AreaAction : public ManipulationAction
{
public:
    ~AreaAction() override;

    /// Null only in a damaged tree, or once the action is removed.
    [[nodiscard]] ManipulationAction *fromAction() const { return fromAction_; }
    void setFromAction(ManipulationAction *action) { fromAction_ = action; }

    /// The corners of the polygon, in the coordinates of the drawn worm.
    [[nodiscard]] const QList<ActionAreaPoint *> &area() const { return area_; }
    [[nodiscard]] QVector<QPointF> calcAreaVector() const;
    /// @param index of the new corner; behind the last one where it is negative
    ActionAreaPoint *addAreaPoint(const QPointF &point, int index = -1);
    /// @param index of a corner that is there
    void setAreaPoint(int index, const QPointF &point);
    /// @param index of a corner that is there
    void removeAreaPoint(int index);

    /// The row of the concrete class and the corners that wait to be erased; for looking only.
    [[nodiscard]] const DBElementData &record() const { return data; }

    /// Equal kinds, inputs and corners, in order.
    bool operator==(const ManipulationAction &other) const override;
    [[nodiscard]] QList<Morphology *> calcMorphologiesList() const override;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

protected:
    /// What one kind of area action has of its own.
    struct Traits
    {
        Kind kind;
        const char *pointsTable;
    };

    AreaAction(const Traits &ownTraits, ManipulationAction *from, ManipulationAction *toAction,
               Manipulation *manipulation);
    AreaAction(const Traits &ownTraits, ManipulationAction *toAction, Manipulation *manipulation,
               int ownRowId, int actionRowId, DB *db);
    AreaAction(const AreaAction &other, ManipulationAction *toAction, Manipulation *manipulation,
               bool keepIds);

    void replaceFromAction(ManipulationAction *oldFrom, ManipulationAction *newFrom) override;
    ManipulationAction *removeFromManipulationNoRec() override;
    void removeFromManipulationRec() override;

private:
    void load();
    [[nodiscard]] ActionAreaPoint::Tables tables() const;
    void renumberPoints(qsizetype from);

    Traits traits;
    ManipulationAction *fromAction_ = nullptr;
    QList<ActionAreaPoint *> area_;
    DBElementData data;
};

} // namespace Planaria
