#include "distance/PathRows.h"

#include <algorithm>

namespace Planaria {

void PathRows::clear(std::size_t newRowSize)
{
    rowSize = newRowSize;
    cells.clear();
    usersOfRows.clear();
    freeRows.clear();
}

int PathRows::add(std::span<const std::int32_t> row, int users)
{
    if (freeRows.empty()) {
        cells.insert(cells.end(), row.begin(), row.end());
        usersOfRows.push_back(users);
        return static_cast<int>(usersOfRows.size()) - 1;
    }
    const int number = freeRows.back();
    freeRows.pop_back();
    const auto index = static_cast<std::size_t>(number);
    std::copy(row.begin(), row.end(), cells.begin() + static_cast<std::ptrdiff_t>(index * rowSize));
    usersOfRows[index] = users;
    return number;
}

} // namespace Planaria
