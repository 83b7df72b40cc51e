#pragma once

#include "db/DBElementData.h"

#include <QPointF>
#include <QString>

namespace Planaria {

class Region;

/// A landmark inside a region. It is two rows in the file: one in `Organ`, which this class keeps,
/// and one in the table of the concrete class, whose id is the organ's id().
class Organ : public DBElement
{
public:
    /// From the centre of the region to the organ, scene units.
    [[nodiscard]] const QPointF &pos() const { return pos_; }
    void setPos(const QPointF &pos) { pos_ = pos; }
    /// Null once the organ is removed.
    [[nodiscard]] Region *region() const { return region_; }

    using DBElement::submit;
    bool erase() override;

    [[nodiscard]] virtual const QString &typeName() const = 0;

    /// Positions agree to 1e-12 on each axis.
    virtual bool operator==(const Organ &other) const;

    /// Takes the organ out of its region, which then owns it until its next submit.
    /// @return false where it belongs to no region of a morphology
    bool removeFromMorphology();

protected:
    /// The columns of `Organ` that tell the concrete class, by their positions.
    enum Kind { Spot = 4, Line = 5 };

    Organ(Region *region, const QPointF &pos);
    Organ(const Organ &other, Region *region, bool keepIds);
    /// From the current row of the region's references.
    Organ(Region *region, const DBElementData &parentData);

    /// Writes the row of the concrete class, which @p detail keeps, and then the row in `Organ`.
    /// @return the id of the former; below 1 after a failure
    int submit(DB *db, Kind kind, DBElementData *detail, const DBElementData::References &type,
               const DBElementData::Values &values);
    /// Writes the row in `Organ`, which points to row @p id of the concrete class.
    /// @return its id; below 1 after a failure
    int submit(DB *db, int kind, int id);

    static bool samePoint(const QPointF &a, const QPointF &b);

private:
    Region *region_;
    QPointF pos_;
    DBElementData data;
};

} // namespace Planaria
