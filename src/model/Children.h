#pragma once

#include "db/DBElementData.h"

#include <algorithm>
#include <iterator>

namespace Planaria {

// What elements with lists of children ask of these lists.

/// Compares the children position by position.
template <typename Child> bool haveEqualChildren(const QList<Child *> &a, const QList<Child *> &b)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(),
                      [](const Child *one, const Child *other) { return *one == *other; });
}

/// Those of @p children that can be written to @p db. One that has lost what it refers to could
/// only be refused as a new row, and would take all the others with it.
template <typename Child>
QList<Child *> writableChildren(const QList<Child *> &children, const DB *db)
{
    QList<Child *> writable;
    std::copy_if(
        children.cbegin(), children.cend(), std::back_inserter(writable),
        [db](const Child *child) { return !child->isLost() || child->record().isStoredIn(db); });
    return writable;
}

} // namespace Planaria
