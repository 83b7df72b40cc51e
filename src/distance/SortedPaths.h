#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace Planaria {

/// An open path of a search: the one that its row holds, with one more pair.
struct OpenPath
{
    double cost;
    int row;
    int second; // of the last pair
};

/// Some open paths of a best-first search in the order of their costs; of equal costs the newest
/// comes first.
///
/// They stand sorted in blocks, which stand sorted too: both ends are at hand, and an insertion
/// moves no more than one block.
class SortedPaths final
{
public:
    [[nodiscard]] std::size_t size() const { return count; }
    [[nodiscard]] double lowestCost() const
    {
        const Block &block = blocks[static_cast<std::size_t>(order.front().block)];
        return block.entries[static_cast<std::size_t>(block.begin)].cost;
    }
    [[nodiscard]] double highestCost() const { return order.back().cost; }

    void clear();
    void insert(const OpenPath &path);
    /// Takes all of @p sorted in place of what it holds, which is nothing.
    void fill(std::span<const OpenPath> sorted);
    OpenPath takeFirst();
    OpenPath takeLast();

private:
    static constexpr int blockSize = 64;

    struct Block
    {
        int begin = 0;
        int end = 0;
        std::array<OpenPath, blockSize> entries;
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
