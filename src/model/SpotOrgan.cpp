#include "model/SpotOrgan.h"

#include "db/ExperimentFactory.h"
#include "model/SpotOrganType.h"

namespace Planaria {

namespace {
constexpr auto table = "SpotOrgan";
}

SpotOrgan::SpotOrgan(SpotOrganType *type, Region *region, const QPointF &pos, double rot)
    : Organ(region, pos), type_(type), rot_(rot), data(table)
{
}

SpotOrgan::SpotOrgan(const SpotOrgan &other, Region *region, bool keepIds)
    : Organ(other, region, keepIds), ownType(std::make_unique<SpotOrganType>(*other.type_)),
      type_(ownType.get()), rot_(other.rot_), data(other.data, keepIds)
{
}

SpotOrgan::SpotOrgan(int id, Region *region, const DBElementData &organRow)
    : Organ(region, organRow), data(table, id, organRow.db())
{
    type_ = ExperimentFactory::instance(nullptr)->spotOrganType(data.loadValue(1).toInt());
    rot_ = data.loadValue(2).toDouble();
    data.loadFinished();
}

SpotOrgan::~SpotOrgan() = default;

const QString &SpotOrgan::typeName() const
{
    return type_->name();
}

bool SpotOrgan::operator==(const Organ &other) const
{
    const auto *spot = dynamic_cast<const SpotOrgan *>(&other);
    return spot && Organ::operator==(other) && type_ == spot->type_ && rot_ == spot->rot_;
}

int SpotOrgan::submit(DB *db)
{
    return Organ::submit(db, Spot, &data, type_->column(data, db), {{"Rot", rot_}});
}

bool SpotOrgan::erase()
{
    return Organ::erase() && data.erase();
}

} // namespace Planaria
