#pragma once

#include "distance/OpenPaths.h"

#include <vector>

namespace Planaria {

/// Best-first search for the cheapest assignment of the elements of one list to those of another.
/// An element of either may stay without partner.
///
/// The elements of the first list are placed in their order, and what is left of the second one
/// after them. A path's key is its cost so far. At most 5000 open paths are kept: beyond that, the
/// dearest are given up, the oldest of equal ones first, and the result may not be the cheapest.
///
/// Paths share what they have in common: each knows its last pair and the path that it extends.
class AssignmentSearch final
{
public:
    static constexpr int none = -1;    // an element without partner
    static constexpr int waiting = -2; // an element not placed yet
    static constexpr std::size_t mostOpenPaths = 5000;

    /// @param sizeOfFirst, sizeOfSecond numbers of elements
    AssignmentSearch(int sizeOfFirst, int sizeOfSecond)
        : partnersOfFirst(static_cast<std::size_t>(sizeOfFirst)),
          partnersOfSecond(static_cast<std::size_t>(sizeOfSecond)), firstSize(sizeOfFirst),
          secondSize(sizeOfSecond)
    {
    }

    // The path that is being extended, element by element: its partner, none or waiting.

    int partnerOfFirst(int element) const
    {
        return partnersOfFirst[static_cast<std::size_t>(element)];
    }
    int partnerOfSecond(int element) const
    {
        return partnersOfSecond[static_cast<std::size_t>(element)];
    }

    /// @param stepCost called with an element of each list, of which one may be none, for what
    ///        their pair adds to the cost of the path that is being extended
    template <typename StepCost> double cheapest(const StepCost &stepCost)
    {
        int path = addPath(none, none, 0);
        double cost = 0.0;
        while (!isComplete(path)) {
            expose(path);
            const int first = paths[static_cast<std::size_t>(path)].pairs;
            if (first < firstSize) {
                extendByAll(path, cost, first, stepCost);
                open(path, cost + stepCost(first, none), none, 0);
            } else {
                extendByAll(path, cost, none, stepCost);
            }
            release(path);
            const OpenPaths::Entry next = openPaths.takeFirst();
            path = next.path;
            cost = next.cost;
        }
        return cost;
    }

private:
    struct Path
    {
        int parent = none;
        int users = 1;     // itself, while open, and the paths that extend it
        int second = none; // of the last pair; the first is known by the pair's position
        int pairs = 0;     // in all
        int placedOfSecond = 0;
    };

    bool isComplete(int path) const
    {
        const Path &last = paths[static_cast<std::size_t>(path)];
        return last.pairs >= firstSize && last.placedOfSecond == secondSize;
    }

    template <typename StepCost>
    void extendByAll(int path, double cost, int first, const StepCost &stepCost)
    {
        for (int second = 0; second < secondSize; ++second) {
            if (partnerOfSecond(second) == waiting)
                open(path, cost + stepCost(first, second), second, 1);
        }
    }

    /// Opens the path that extends @p parent by one pair, unless it would be given up at once.
    void open(int parent, double cost, int second, int placed)
    {
        if (openPaths.size() == mostOpenPaths) {
            if (!openPaths.comesBeforeLast(cost))
                return;
            release(openPaths.takeLast().path);
        }
        openPaths.insert(cost, addPath(parent, second, placed));
    }

    int addPath(int parent, int second, int placed);
    void release(int path);
    /// Lays the pairs of @p path out element by element.
    void expose(int path);

    std::vector<Path> paths;
    std::vector<int> freePaths;
    OpenPaths openPaths;
    std::vector<int> partnersOfFirst;
    std::vector<int> partnersOfSecond;
    int firstSize;
    int secondSize;
};

} // namespace Planaria
