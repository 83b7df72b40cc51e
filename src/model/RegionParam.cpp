#include "model/RegionParam.h"

#include "model/Region.h"

namespace Planaria {

namespace {
constexpr auto table = "RegionParam";
}

RegionParam::RegionParam(Region *owner, int index) : region(owner), index_(index), data(table) {}

RegionParam::RegionParam(const RegionParam &other, Region *owner, bool keepIds)
    : region(owner), index_(other.index_), value_(other.value_), data(other.data, keepIds)
{
}

RegionParam::RegionParam(Region *owner, const DBElementData &parentData)
    : region(owner), data(table, parentData)
{
    index_ = data.loadValue(2).toInt();
    value_ = data.loadValue(3).toDouble();
    data.loadFinished();
}

int RegionParam::submit(DB *db)
{
    return data.submit(db, DBElementData::Parent("Region", region),
                       DBElementData::Values{{"ParamInd", index_}, {"Value", value_}});
}

bool RegionParam::erase()
{
    return data.erase();
}

} // namespace Planaria
