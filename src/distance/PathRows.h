#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Planaria {

/// The rows of assignments that others extend, in one piece of memory. Paths that differ in their
/// last pair alone share a row.
class PathRows final
{
public:
    /// Drops all rows. @param newRowSize that of the rows to come
    void clear(std::size_t newRowSize);
    /// Keeps a copy of @p row until it was released @p users times. @return its number
    int add(std::span<const std::int32_t> row, int users);
    void release(int row)
    {
        if (--usersOfRows[static_cast<std::size_t>(row)] == 0)
            freeRows.push_back(row);
    }

    [[nodiscard]] std::span<const std::int32_t> row(int row) const
    {
        return std::span(cells).subspan(static_cast<std::size_t>(row) * rowSize, rowSize);
    }

private:
    std::size_t rowSize = 0;
    std::vector<std::int32_t> cells; // row by row
    std::vector<int> usersOfRows;
    std::vector<int> freeRows;
};

} // namespace Planaria
