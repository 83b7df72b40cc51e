#pragma once

#include <QStringList>

namespace Planaria {

/// Writes down each statement that SQLite executes, on all connections that the program opens while
/// this object lives. There may be one at a time.
class StatementLog final
{
public:
    StatementLog();
    ~StatementLog();

    StatementLog(const StatementLog &) = delete;
    StatementLog &operator=(const StatementLog &) = delete;

    /// The statements since the last call, with their placeholders.
    QStringList take();
};

} // namespace Planaria
