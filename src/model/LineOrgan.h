#pragma once

#include "model/Organ.h"

namespace Planaria {

class LineOrganType;

/// An organ along a line, from one end through its position to the other end: a nerve cord.
class LineOrgan final : public Organ
{
public:
    /// @param end1, end2 relative to @p pos, scene units
    LineOrgan(LineOrganType *type, Region *region, const QPointF &pos, const QPointF &end1,
              const QPointF &end2);
    /// A deep copy, with a type object of its own: a copied organ never equals its source.
    LineOrgan(const LineOrgan &other, Region *region, bool keepIds);
    /// @param organRow data of the region, whose references stand at the row in `Organ`
    LineOrgan(int id, Region *region, const DBElementData &organRow);
    ~LineOrgan() override;

    [[nodiscard]] const LineOrganType *type() const { return type_; }
    [[nodiscard]] const QPointF &end1() const { return end1_; }
    [[nodiscard]] const QPointF &end2() const { return end2_; }
    void setEnd1(const QPointF &end) { end1_ = end; }
    void setEnd2(const QPointF &end) { end2_ = end; }

    [[nodiscard]] const QString &typeName() const override;
    /// Types are compared as objects, not by id.
    bool operator==(const Organ &other) const override;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

private:
    std::unique_ptr<LineOrganType> ownType; // of a copy; null where the type is the registry's
    LineOrganType *type_;
    QPointF end1_;
    QPointF end2_;
    DBElementData data;
};

} // namespace Planaria
