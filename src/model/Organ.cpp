#include "model/Organ.h"

#include "model/Region.h"

#include <cmath>

namespace Planaria {

namespace {

constexpr auto table = "Organ";

bool sameCoordinate(double a, double b)
{
    return std::abs(a - b) <= 1e-12;
}

} // namespace

Organ::Organ(Region *region, const QPointF &pos) : region_(region), pos_(pos), data(table) {}

Organ::Organ(const Organ &other, Region *region, bool keepIds)
    : region_(region), pos_(other.pos_), data(other.data, keepIds)
{
}

Organ::Organ(Region *region, const DBElementData &parentData)
    : region_(region), data(table, parentData)
{
    pos_.setX(data.loadValue(2).toDouble());
    pos_.setY(data.loadValue(3).toDouble());
    data.loadFinished();
}

bool Organ::erase()
{
    return data.erase();
}

bool Organ::operator==(const Organ &other) const
{
    return samePoint(pos_, other.pos_);
}

bool Organ::removeFromMorphology()
{
    if (!region_ || !region_->morphology())
        return false;
    return std::exchange(region_, nullptr)->removeOrgan(this);
}

int Organ::submit(DB *db, Kind kind, DBElementData *detail, const DBElementData::References &type,
                  const DBElementData::Values &values)
{
    const bool isNew = !detail->isStoredIn(db);
    const int id = detail->submit(db, type, values);
    if (submit(db, kind, id) > 0)
        return id;
    // After a rollback each write commits by itself: a new row that no organ points to would stay
    // in the file for ever.
    if (isNew)
        detail->erase();
    return 0;
}

int Organ::submit(DB *db, int kind, int id)
{
    DBElementData::Values values{{"VecX", pos_.x()}, {"VecY", pos_.y()}};
    // A stored organ keeps its row of the concrete class, also where a damaged file has lost it.
    if (!data.isStoredIn(db))
        values.insert(kind == Spot ? "SpotOrgan" : "LineOrgan", id);
    return data.submit(db, DBElementData::Parent("Region", region_), values);
}

bool Organ::samePoint(const QPointF &a, const QPointF &b)
{
    return sameCoordinate(a.x(), b.x()) && sameCoordinate(a.y(), b.y());
}

} // namespace Planaria
