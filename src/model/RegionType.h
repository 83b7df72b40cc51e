#pragma once

#include "model/ElementType.h"

namespace Planaria {

/// What a body region is: head, trunk or tail.
class RegionType final : public ElementType
{
public:
    RegionType(int id, const QString &name) : ElementType(table, id, name) {}

    RegionType(int id, DB *db) : ElementType(table, id, db) {}

    bool operator==(const RegionType &other) const { return id() == other.id(); }

private:
    static constexpr auto table = "RegionType";
};

} // namespace Planaria
