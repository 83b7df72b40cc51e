#include "distance/OpenPaths.h"

#include <algorithm>
#include <cmath>

namespace Planaria {

namespace {

/// Leaves those of equal costs in their order.
void sortByCost(std::span<OpenPath> paths)
{
    const auto isCheaper = [](const OpenPath &a, const OpenPath &b) { return a.cost < b.cost; };
    if (paths.size() > 64) {
        std::stable_sort(paths.begin(), paths.end(), isCheaper);
        return;
    }
    for (std::size_t i = 1; i < paths.size(); ++i) {
        const OpenPath path = paths[i];
        std::size_t place = i;
        for (; place > 0 && isCheaper(path, paths[place - 1]); --place)
            paths[place] = paths[place - 1];
        paths[place] = path;
    }
}

} // namespace

void OpenPaths::reset(double highCost)
{
    const double perCost = rangeCount / highCost;
    rangesPerCost = std::isfinite(perCost) ? perCost : 0.0;
    cheapest.clear();
    dearest.clear();
    lastOfCheapest = none;
    firstOfDearest = rangeCount;
    newest.assign(rangeCount, none);
    nodes.clear();
    freeNodes.clear();
    betweenCount = 0;
}

OpenPath OpenPaths::takeFirst()
{
    while (cheapest.size() == 0 && betweenCount > 0)
        sort(++lastOfCheapest, &cheapest);
    return cheapest.size() > 0 ? cheapest.takeFirst() : dearest.takeFirst();
}

OpenPath OpenPaths::takeLast()
{
    sortDearest();
    return dearest.size() > 0 ? dearest.takeLast() : cheapest.takeLast();
}

void OpenPaths::sortDearest()
{
    while (dearest.size() == 0 && betweenCount > 0)
        sort(--firstOfDearest, &dearest);
}

double OpenPaths::highestOfOthers()
{
    sortDearest();
    return dearest.size() > 0 ? dearest.highestCost() : cheapest.highestCost();
}

void OpenPaths::put(int range, const OpenPath &path)
{
    int &first = newest[static_cast<std::size_t>(range)];
    const Node node{path, first};
    if (freeNodes.empty()) {
        first = static_cast<int>(nodes.size());
        nodes.push_back(node);
    } else {
        first = freeNodes.back();
        freeNodes.pop_back();
        nodes[static_cast<std::size_t>(first)] = node;
    }
    ++betweenCount;
}

/// As costs rise, paths come above the dearest for good. Keeps no more sorted than the highest
/// range then.
void OpenPaths::insertIntoDearest(const OpenPath &path)
{
    dearest.insert(path);
    if (dearest.size() < manyDearest)
        return;
    const int highest = rangeOf(dearest.highestCost());
    while (rangeOf(dearest.lowestCost()) < highest)
        sorting.push_back(dearest.takeFirst());
    firstOfDearest = highest;
    for (; !sorting.empty(); sorting.pop_back())
        put(rangeOf(sorting.back().cost), sorting.back());
}

/// Moves the paths of a range.
void OpenPaths::sort(int range, SortedPaths *into)
{
    int &first = newest[static_cast<std::size_t>(range)];
    for (; first != none; first = nodes[static_cast<std::size_t>(first)].next) {
        sorting.push_back(nodes[static_cast<std::size_t>(first)].path);
        freeNodes.push_back(first);
    }
    betweenCount -= sorting.size();
    sortByCost(sorting);
    into->fill(sorting);
    sorting.clear();
}

} // namespace Planaria
