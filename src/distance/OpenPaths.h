#pragma once

#include "distance/SortedPaths.h"

#include <cstddef>
#include <vector>

namespace Planaria {

/// The open paths of a best-first search in the order of their costs; of equal costs the newest
/// comes first.
///
/// A search takes paths from both ends only. So the paths lie unsorted in many narrow ranges of
/// costs, and are sorted, a range at a time, once an end comes to it.
class OpenPaths final
{
public:
    [[nodiscard]] std::size_t size() const
    {
        return cheapest.size() + betweenCount + dearest.size();
    }

    /// Starts without paths; comes first. @param highCost what most of the paths to come cost at
    /// most: the speed depends on it, though not the order
    void reset(double highCost);
    void insert(const OpenPath &path)
    {
        const int range = rangeOf(path.cost);
        if (range <= lastOfCheapest)
            cheapest.insert(path);
        else if (range < firstOfDearest)
            put(range, path);
        else
            insertIntoDearest(path);
    }
    OpenPath takeFirst();
    OpenPath takeLast();
    [[nodiscard]] double highestCost()
    {
        return dearest.size() > 0 ? dearest.highestCost() : highestOfOthers();
    }

private:
    static constexpr int rangeCount = 1 << 13;
    static constexpr int none = -1;
    static constexpr std::size_t manyDearest = 64;

    /// A path in a list of those of its range, the newest first.
    struct Node
    {
        OpenPath path;
        int next;
    };

    /// Grows with the cost, though not with each step. Endless costs lie in the last range, even
    /// where all others lie in the first and the product is no number.
    [[nodiscard]] int rangeOf(double cost) const
    {
        const double range = cost * rangesPerCost;
        return range < rangeCount - 1 ? static_cast<int>(range) : rangeCount - 1;
    }
    void put(int range, const OpenPath &path);
    void sort(int range, SortedPaths *into);
    void sortDearest();
    void insertIntoDearest(const OpenPath &path);
    double highestOfOthers();

    double rangesPerCost = 0.0;
    SortedPaths cheapest; // of the ranges up to lastOfCheapest
    SortedPaths dearest;  // of the ranges from firstOfDearest on
    int lastOfCheapest = none;
    int firstOfDearest = rangeCount;
    std::vector<int> newest; // by range: its list
    std::vector<Node> nodes;
    std::vector<int> freeNodes;
    std::vector<OpenPath> sorting;
    std::size_t betweenCount = 0; // of paths in lists
};

} // namespace Planaria
