#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace Planaria {

/// The open paths of a best-first search in the order of their costs; of equal costs the newest
/// comes first.
///
/// They stand sorted in blocks, which stand sorted too: both ends are at hand, and an insertion
/// moves no more than one block.
class OpenPaths final
{
public:
    struct Entry
    {
        double cost;
        int path;
    };

    [[nodiscard]] std::size_t size() const { return count; }
    [[nodiscard]] double highestCost() const { return order.back().cost; }

    void clear();
    void insert(double cost, int path);
    Entry takeFirst();
    Entry takeLast();

private:
    static constexpr int blockSize = 128;

    struct Block
    {
        int begin = 0;
        int end = 0;
        std::array<Entry, blockSize> entries;
    };

    /// A block and the cost of its last entry.
    struct Place
    {
        double cost;
        int block;
    };

    int newBlock();
    std::size_t split(std::size_t place, double cost);

    std::vector<Block> blocks;
    std::vector<int> freeBlocks;
    std::vector<Place> order; // no block is empty
    std::size_t count = 0;
};

} // namespace Planaria
