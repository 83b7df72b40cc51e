#pragma once

namespace Planaria {

class DB;

/// A long write of many elements, which lands in the file as a whole or not at all.
///
/// The file is locked from the start to the end. The elements' own transactions nest in this one.
/// From the first statement that fails, or the first rollback, everything is taken back, and no
/// statement writes any more while this object lives: what would commit by itself after a rollback,
/// because the outer transaction has gone with it, stays out of the file.
class WholeWrite final
{
public:
    enum class State {
        Open,
        Locked, ///< Another program reads or writes the file just now.
        Ended   ///< Taken back, or never begun.
    };

    /// @param database in no transaction; must outlive this object
    explicit WholeWrite(DB *database);
    /// Takes back what was not committed.
    ~WholeWrite();

    WholeWrite(const WholeWrite &) = delete;
    WholeWrite &operator=(const WholeWrite &) = delete;

    /// Looks at the file too: there are errors at which SQLite ends a transaction by itself.
    [[nodiscard]] State state();

    /// @return whether all is in the file
    [[nodiscard]] bool commit();

private:
    DB *db;
    State state_ = State::Ended;
    bool begun = false;
};

} // namespace Planaria
