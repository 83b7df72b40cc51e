#pragma once

#include "model/ElementType.h"

namespace Planaria {

/// What an organ along a line is: a ventral nerve cord.
class LineOrganType final : public ElementType
{
public:
    LineOrganType(int id, const QString &name) : ElementType(table, id, name) {}

    LineOrganType(int id, DB *db) : ElementType(table, id, db) {}

private:
    static constexpr auto table = "LineOrganType";
};

} // namespace Planaria
