#pragma once

#include <QJsonObject>
#include <QStringList>

namespace Planaria {

class DB;

/// All that a library holds, without ids: lists of elements, sorted by name, one for each kind.
QJsonObject libraryJson(DB *db);

/// The same of one list, from the name to the element.
QJsonObject elementsByName(const QJsonObject &library, const QString &list);

/// Rows that belong to no element, table by table: leftovers of one that went or never came.
QStringList strayRows(DB *db);

/// All rows with their ids, and the structure of the file.
QStringList dumpOf(DB *db);

} // namespace Planaria
