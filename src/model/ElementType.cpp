#include "model/ElementType.h"

#include <utility>

namespace Planaria {

ElementType::ElementType(const char *table, int id, QString name)
    : name_(std::move(name)), data(table, id, nullptr)
{
}

ElementType::ElementType(const char *table, int id, DB *db) : data(table, id, db)
{
    name_ = data.loadValue(1).toString();
    data.loadFinished();
}

ElementType::ElementType(const ElementType &other)
    : DBElement(other), name_(other.name_), data(other.data, true)
{
}

ElementType &ElementType::operator=(const ElementType &other)
{
    name_ = other.name_;
    data = other.data;
    return *this;
}

DBElementData::References ElementType::column(const DBElementData &element, const DB *target)
{
    const bool isStandIn = name_.isEmpty() && !data.db();
    if (isStandIn && element.isStoredIn(target))
        return {};
    return {{QStringLiteral("Type"), this}};
}

int ElementType::submit(DB * /*db*/)
{
    return id();
}

bool ElementType::erase()
{
    return false;
}

} // namespace Planaria
