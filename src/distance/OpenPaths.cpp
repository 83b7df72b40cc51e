#include "distance/OpenPaths.h"

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

void OpenPaths::clear()
{
    for (const Place &place : order)
        freeBlocks.push_back(place.block);
    order.clear();
    count = 0;
}

void OpenPaths::insert(double cost, int path)
{
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

    Entry *const begin = block->entries.data() + block->begin;
    Entry *const end = block->entries.data() + block->end;
    Entry *const position = firstFrom(begin, static_cast<std::size_t>(end - begin), cost);
    if (block->begin > 0 && (block->end == blockSize || position - begin < end - position)) {
        std::move(begin, position, begin - 1);
        *(position - 1) = {cost, path};
        --block->begin;
    } else {
        std::move_backward(position, end, end + 1);
        *position = {cost, path};
        ++block->end;
    }
    ++count;
}

OpenPaths::Entry OpenPaths::takeFirst()
{
    Block &block = blocks[static_cast<std::size_t>(order.front().block)];
    const Entry first = block.entries[static_cast<std::size_t>(block.begin++)];
    if (block.begin == block.end) {
        freeBlocks.push_back(order.front().block);
        order.erase(order.begin());
    }
    --count;
    return first;
}

OpenPaths::Entry OpenPaths::takeLast()
{
    Block &block = blocks[static_cast<std::size_t>(order.back().block)];
    const Entry last = block.entries[static_cast<std::size_t>(--block.end)];
    if (block.begin == block.end) {
        freeBlocks.push_back(order.back().block);
        order.pop_back();
    } else {
        order.back().cost = block.entries[static_cast<std::size_t>(block.end - 1)].cost;
    }
    --count;
    return last;
}

int OpenPaths::newBlock()
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

std::size_t OpenPaths::split(std::size_t place, double cost)
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
