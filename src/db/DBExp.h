#pragma once

namespace Planaria {

class DB;

/// The structure of an `.edb` file: makes it, tells its version, brings an old one up to date.
class DBExp
{
public:
    /// The version that buildDB() and upgradeDB() give a file.
    static constexpr int currentVersion = 2;

    virtual ~DBExp();

    /// Creates all tables and their default rows in an open, empty file. A failed statement does
    /// not stop the others.
    /// @return whether every statement succeeded
    static bool buildDB(DB *db);

    /// The structure version of the open file; 1 without a table `Meta` (so for any foreign file),
    /// -1 with an empty one.
    static int getDBVersion(DB *db);

    /// Brings a file of the old @p version up to the current one. No existing row is touched.
    static bool upgradeDB(DB *db, int version);
};

} // namespace Planaria
