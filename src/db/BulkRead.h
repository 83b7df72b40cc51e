#pragma once

namespace Planaria {

class DB;

/// The length of one job that loads many elements and writes nothing. While it lives, the tables
/// that elements load from are read once and kept in memory, so that the cost of an element does
/// not grow with the size of the file (its foreign keys bear no index: a child list read by itself
/// scans its whole table).
///
/// The elements stay bound to the file. The first write through the DB ends the keeping: from then
/// on every element is read by statements of its own again, so nothing stale is seen. Changes that
/// another program makes during the job are not seen, nor those of a query that DB::newQuery() gave
/// out before the job. Jobs may nest.
class BulkRead final
{
public:
    /// @param database must outlive the job
    explicit BulkRead(DB *database);
    ~BulkRead();

    BulkRead(const BulkRead &) = delete;
    BulkRead &operator=(const BulkRead &) = delete;

private:
    DB *db;
};

} // namespace Planaria
