#pragma once

#include "model/ElementType.h"

namespace Planaria {

/// What an organ at a point is: an eye, a brain lobe or a pharynx.
class SpotOrganType final : public ElementType
{
public:
    SpotOrganType(int id, const QString &name) : ElementType(table, id, name) {}

    SpotOrganType(int id, DB *db) : ElementType(table, id, db) {}

private:
    static constexpr auto table = "SpotOrganType";
};

} // namespace Planaria
