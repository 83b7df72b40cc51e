#pragma once

namespace Planaria {

class DB;

/// A persistent object, as one element shows it to another.
class DBElement
{
public:
    virtual ~DBElement();

    /// The id of its row; below 1 while it is not stored.
    [[nodiscard]] virtual int id() const = 0;

    /// Writes the element with everything it owns into @p db; in another DB than before it becomes
    /// a new element.
    /// @return the row id; below 1 after a failure
    virtual int submit(DB *db) = 0;

    /// Deletes the row with everything the element owns. The object stays, as a new one.
    virtual bool erase() = 0;
};

} // namespace Planaria
