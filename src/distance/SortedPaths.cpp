#include "distance/SortedPaths.h"

#include <algorithm>

namespace Planaria {

namespace {

/// The first of @p size sorted elements whose cost is not below @p cost, or their end. Its
/// comparisons cannot be foretold, so it computes with them instead of jumping.
template <typename Element> Element *firstFrom(Element *begin, std::size_t size, double cost)
{
    while (size > 0) {
        const std::size_t half = (size + 1) / 2;
        begin += half * static_cast<std::size_t>(begin[half - 1].cost < cost);
        size -= half;
    }
    return begin;
}

} // namespace

void SortedPaths::clear()
{
    for (const Place &place : order)
        freeBlocks.push_back(place.block);
    order.clear();
    count = 0;
}

void SortedPaths::insert(const OpenPath &path)
{
    const double cost = path.cost;
    auto place =
        static_cast<std::size_t>(firstFrom(order.data(), order.size(), cost) - order.data());
    if (place == order.size()) {
        if (order.empty())
            order.push_back({cost, newBlock()});
        else
            --place;
        order[place].cost = cost;
    }
    Block *block = &blocks[static_cast<std::size_t>(order[place].block)];
    if (block->begin == 0 && block->end == blockSize) {
        place = split(place, cost);
        block = &blocks[static_cast<std::size_t>(order[place].block)];
    }

    OpenPath *const begin = block->entries.data() + block->begin;
    OpenPath *const end = block->entries.data() + block->end;
    OpenPath *const position = firstFrom(begin, static_cast<std::size_t>(end - begin), cost);
    if (block->begin > 0 && (block->end == blockSize || position - begin < end - position)) {
        std::move(begin, position, begin - 1);
        *(position - 1) = path;
        --block->begin;
    } else {
        std::move_backward(position, end, end + 1);
        *position = path;
        ++block->end;
    }
    ++count;
}

void SortedPaths::fill(std::span<const OpenPath> sorted)
{
    constexpr std::size_t share = blockSize / 2; // with room for more
    count = sorted.size();
    while (!sorted.empty()) {
        const auto part = sorted.first(std::min(share, sorted.size()));
        const int index = newBlock();
        Block &block = blocks[static_cast<std::size_t>(index)];
        std::copy(part.begin(), part.end(), block.entries.begin());
        block.end = static_cast<int>(part.size());
        order.push_back({part.back().cost, index});
        sorted = sorted.subspan(part.size());
    }
}

OpenPath SortedPaths::takeFirst()
{
    Block &block = blocks[static_cast<std::size_t>(order.front().block)];
    const OpenPath first = block.entries[static_cast<std::size_t>(block.begin++)];
    if (block.begin == block.end) {
        freeBlocks.push_back(order.front().block);
        order.erase(order.begin());
    }
    --count;
    return first;
}

OpenPath SortedPaths::takeLast()
{
    Block &block = blocks[static_cast<std::size_t>(order.back().block)];
    const OpenPath last = block.entries[static_cast<std::size_t>(--block.end)];
    if (block.begin == block.end) {
        freeBlocks.push_back(order.back().block);
        order.pop_back();
    } else {
        order.back().cost = block.entries[static_cast<std::size_t>(block.end - 1)].cost;
    }
    --count;
    return last;
}

int SortedPaths::newBlock()
{
    if (freeBlocks.empty()) {
        blocks.emplace_back();
        return static_cast<int>(blocks.size()) - 1;
    }
    const int index = freeBlocks.back();
    freeBlocks.pop_back();
    Block &block = blocks[static_cast<std::size_t>(index)];
    block.begin = 0;
    block.end = 0;
    return index;
}

std::size_t SortedPaths::split(std::size_t place, double cost)
{
    const int lowerIndex = newBlock();
    Block &upper = blocks[static_cast<std::size_t>(order[place].block)];
    Block &lower = blocks[static_cast<std::size_t>(lowerIndex)];
    const auto middle = upper.entries.begin() + blockSize / 2;
    std::copy(upper.entries.begin(), middle, lower.entries.begin());
    lower.end = blockSize / 2;
    std::copy(middle, upper.entries.end(), upper.entries.begin());
    upper.end = blockSize / 2;
    const double lowerCost = lower.entries[static_cast<std::size_t>(lower.end - 1)].cost;
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(place), {lowerCost, lowerIndex});
    return lowerCost < cost ? place + 1 : place;
}

} // namespace Planaria
