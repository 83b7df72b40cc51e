#include "Record.h"

#include <algorithm>
#include <utility>

namespace Planaria {

Record::Record(const char *tableName, const DBElementData::Values &rowValues)
    : Record(tableName, 0, nullptr, rowValues)
{
}

Record::Record(const char *tableName, int id, DB *db, DBElementData::Values rowValues)
    : table(tableName), data(tableName, id, db), values(std::move(rowValues))
{
    ++count;
}

Record::~Record()
{
    qDeleteAll(references);
    for (const QList<Record *> &list : children)
        qDeleteAll(list);
    --count;
}

Record *Record::refer(const QString &column, Record *record)
{
    references.insert(column, record);
    return record;
}

Record *Record::add(Record *child, int list)
{
    child->parent = {QLatin1String(table), this};
    children[list].append(child);
    return child;
}

void Record::remove(Record *child)
{
    children[0].removeOne(child);
    data.removeReference(child);
}

int Record::submit(DB *db)
{
    return data.submit(db, parent, references, values, children[0], children[1], children[2]);
}

bool Record::erase()
{
    const bool hasChildren = std::any_of(children.cbegin(), children.cend(),
                                         [](const auto &list) { return !list.isEmpty(); });
    return hasChildren ? data.erase({}, children[0], children[1], children[2]) : data.erase();
}

} // namespace Planaria
