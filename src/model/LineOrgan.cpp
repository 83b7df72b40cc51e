#include "model/LineOrgan.h"

#include "db/ExperimentFactory.h"
#include "model/LineOrganType.h"

namespace Planaria {

namespace {
constexpr auto table = "LineOrgan";
}

LineOrgan::LineOrgan(LineOrganType *type, Region *region, const QPointF &pos, const QPointF &end1,
                     const QPointF &end2)
    : Organ(region, pos), type_(type), end1_(end1), end2_(end2), data(table)
{
}

LineOrgan::LineOrgan(const LineOrgan &other, Region *region, bool keepIds)
    : Organ(other, region, keepIds), ownType(std::make_unique<LineOrganType>(*other.type_)),
      type_(ownType.get()), end1_(other.end1_), end2_(other.end2_), data(other.data, keepIds)
{
}

LineOrgan::LineOrgan(int id, Region *region, const DBElementData &organRow)
    : Organ(region, organRow), data(table, id, organRow.db())
{
    type_ = ExperimentFactory::instance(nullptr)->lineOrganType(data.loadValue(1).toInt());
    end1_ = {data.loadValue(2).toDouble(), data.loadValue(3).toDouble()};
    end2_ = {data.loadValue(4).toDouble(), data.loadValue(5).toDouble()};
    data.loadFinished();
}

LineOrgan::~LineOrgan() = default;

const QString &LineOrgan::typeName() const
{
    return type_->name();
}

bool LineOrgan::operator==(const Organ &other) const
{
    const auto *line = dynamic_cast<const LineOrgan *>(&other);
    return line && Organ::operator==(other) && type_ == line->type_ &&
           samePoint(end1_, line->end1_) && samePoint(end2_, line->end2_);
}

int LineOrgan::submit(DB *db)
{
    return Organ::submit(db, Line, &data, type_->column(data, db),
                         {{"VecEnd1X", end1_.x()},
                          {"VecEnd1Y", end1_.y()},
                          {"VecEnd2X", end2_.x()},
                          {"VecEnd2Y", end2_.y()}});
}

bool LineOrgan::erase()
{
    return Organ::erase() && data.erase();
}

} // namespace Planaria
