#pragma once

#include <QStringList>

namespace Planaria {

class DB;

/// Indexes on all columns that refer to other rows, for the length of one job that deletes many
/// elements. Without them, each row that goes makes SQLite scan all tables that could refer to it,
/// and the loading of each element scans those of its parts.
///
/// They live inside of one transaction, so that no file ever holds them: the structure of the file
/// is the same before and after. What they took of the file is left free in it. An index that
/// cannot be dropped, because a query is still open, takes the whole transaction back.
class ReferenceIndexes final
{
public:
    /// @param database with a transaction that goes on beyond the life of this object; must
    /// outlive it
    explicit ReferenceIndexes(DB *database);
    ~ReferenceIndexes();

    ReferenceIndexes(const ReferenceIndexes &) = delete;
    ReferenceIndexes &operator=(const ReferenceIndexes &) = delete;

private:
    DB *db;
    QStringList names;
};

} // namespace Planaria
