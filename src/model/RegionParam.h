#pragma once

#include "db/DBElementData.h"

namespace Planaria {

class Region;

/// One radius of a region, scene units. Its region says in which direction it lies.
class RegionParam final : public DBElement
{
public:
    static constexpr double defaultValue = 60.0;

    RegionParam(Region *owner, int index);
    RegionParam(const RegionParam &other, Region *owner, bool keepIds);
    RegionParam(Region *owner, const DBElementData &parentData);

    /// The position in its region's list.
    [[nodiscard]] int index() const { return index_; }
    [[nodiscard]] double value() const { return value_; }
    void setIndex(int index) { index_ = index; }
    void setValue(double value) { value_ = value; }

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

private:
    Region *region;
    int index_ = 0;
    double value_ = defaultValue;
    DBElementData data;
};

} // namespace Planaria
