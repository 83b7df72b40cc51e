#pragma once

#include "model/Organ.h"

namespace Planaria {

class SpotOrganType;

/// An organ at one point, turned in some direction: an eye, a brain lobe, a pharynx.
class SpotOrgan final : public Organ
{
public:
    /// @param rot the direction that it faces, radians
    SpotOrgan(SpotOrganType *type, Region *region, const QPointF &pos, double rot);
    /// A deep copy, with a type object of its own: a copied organ never equals its source.
    SpotOrgan(const SpotOrgan &other, Region *region, bool keepIds);
    /// @param organRow data of the region, whose references stand at the row in `Organ`
    SpotOrgan(int id, Region *region, const DBElementData &organRow);
    ~SpotOrgan() override;

    [[nodiscard]] const SpotOrganType *type() const { return type_; }
    [[nodiscard]] double rot() const { return rot_; }
    void setRot(double rot) { rot_ = rot; }

    [[nodiscard]] const QString &typeName() const override;
    /// Types are compared as objects, not by id.
    bool operator==(const Organ &other) const override;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

private:
    std::unique_ptr<SpotOrganType> ownType; // of a copy; null where the type is the registry's
    SpotOrganType *type_;
    double rot_ = 0.0;
    DBElementData data;
};

} // namespace Planaria
