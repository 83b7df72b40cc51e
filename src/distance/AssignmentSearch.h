#pragma once

#include "distance/Assignment.h"
#include "distance/OpenPaths.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace Planaria {

/// Best-first search for the cheapest assignment of the elements of two lists. A path is an
/// assignment on its way, and its key is the cost of its pairs alone. At most 5000 open paths are
/// kept: beyond that the dearest are given up, the oldest of equal ones first, and the result may
/// not be the cheapest.
///
/// What paths cost comes from an object with these members:
///   double ofPath(double cost, int first, int second, double most)
///     What the path of assignment(), of which @p cost is known, costs with one more pair; never
///     less than without. Above @p most any number will do. A path whose cost is no number, as
///     damaged files may have it, is not followed.
///   static constexpr bool insertionsAreAlike
///     Whether each element of the second list costs the same without partner, whatever the path.
class AssignmentSearch final
{
public:
    static constexpr int none = Assignment::none;
    static constexpr std::size_t mostOpenPaths = 5000;

    /// The path that is being extended.
    [[nodiscard]] const Assignment &assignment() const { return current; }

    template <typename Costs> double cheapest(int sizeOfFirst, int sizeOfSecond, Costs *costs)
    {
        current.reset(sizeOfFirst, sizeOfSecond);
        if (const std::optional<double> cost = walk(costs))
            return *cost;
        current.reset(sizeOfFirst, sizeOfSecond);
        return search(costs);
    }

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();

    // --- The walk ---
    //
    // Depth first through all paths that cost no more than the best complete one. The search takes
    // those too, but through a queue, for many times the price.
    //
    // Its result is that of the search, provided that fewer than 5000 of these paths are dead ends.
    // Call a path good which some complete path of the best cost extends, and let the others, whose
    // extensions all come to dead ends, be bad. Open paths never extend each other. So fewer than
    // 5000 bad ones can stand before the first good one, which is therefore never given up.

    /// A pair to go on with, after the first @p pairs of the present path.
    struct Step
    {
        double cost; // with this pair
        double ways; // to make a path like this
        int pairs;
        int second;
    };

    /// Nothing where too many dead ends, or too many paths of the best cost, were met.
    template <typename Costs> std::optional<double> walk(Costs *costs)
    {
        double best = infinity;
        double bestWays = 0.0; // to make complete paths of that cost
        double deadEnds = 0.0;
        std::size_t completed = 0;
        Step present{0.0, 1.0, 0, none};
        steps.clear();
        do {
            if (current.isComplete()) {
                ++completed;
                if (present.cost < best)
                    deadEnds += std::exchange(bestWays, 0.0);
                bestWays += present.ways;
                best = present.cost;
            } else if (!addSteps(present, best, costs)) {
                deadEnds += present.ways;
            }
            if (deadEnds >= mostOpenPaths || completed >= mostOpenPaths)
                return std::nullopt;
        } while (takeStep(best, &present));
        return best;
    }

    /// The steps from the present path that lead not beyond @p best, the cheapest as the last.
    template <typename Costs> bool addSteps(const Step &present, double best, Costs *costs)
    {
        const auto before = static_cast<std::ptrdiff_t>(steps.size());
        const bool alike = Costs::insertionsAreAlike && current.nextOfFirst() == none;
        const double ways = alike ? present.ways * current.leftOfSecond() : present.ways;
        forEachPair([&](int first, int second) {
            const double cost = costs->ofPath(present.cost, first, second, best);
            if (cost <= best)
                steps.push_back({cost, ways, current.pairCount(), second});
            return !alike;
        });
        const auto added = steps.begin() + before;
        if (added == steps.end())
            return false;
        std::iter_swap(std::prev(steps.end()),
                       std::min_element(added, steps.end(), [](const Step &a, const Step &b) {
                           return a.cost < b.cost;
                       }));
        return true;
    }

    /// Goes to the next path; false where none is left.
    bool takeStep(double best, Step *present);

    // --- The search ---
    //
    // Paths share what they have in common: each knows its last pair and the path that it extends.

    struct Path
    {
        int parent;
        int users;  // itself, while open, and the paths that extend it
        int second; // of the last pair
        int pairs;
    };

    template <typename Costs> double search(Costs *costs)
    {
        paths.clear();
        freePaths.clear();
        openPaths.clear();
        OpenPaths::Entry present{0.0, addPath(none, none)};
        while (!current.isComplete()) {
            forEachPair([&](int first, int second) {
                const double most = highestUsefulCost();
                const double cost = costs->ofPath(present.cost, first, second, most);
                if (cost <= most)
                    open(cost, present.path, second);
                return true;
            });
            release(present.path);
            present = openPaths.takeFirst();
            expose(present.path);
        }
        return present.cost;
    }

    /// The cost above which a new path would be given up at once.
    [[nodiscard]] double highestUsefulCost() const
    {
        return openPaths.size() < mostOpenPaths ? infinity : openPaths.highestCost();
    }

    void open(double cost, int parent, int second);
    int addPath(int parent, int second);
    void release(int path);
    /// Makes the present path that of @p path.
    void expose(int path);

    // --- Both ---

    /// Calls @p visit with each pair that may come next, in order, until it returns false.
    template <typename Visit> void forEachPair(const Visit &visit) const
    {
        const int first = current.nextOfFirst();
        for (int second = 0; second < current.sizeOfSecond(); ++second) {
            if (current.partnerOfSecond(second) == Assignment::waiting && !visit(first, second))
                return;
        }
        if (first != none)
            visit(first, none);
    }

    Assignment current;
    std::vector<Step> steps; // to be taken from the end
    std::vector<Path> paths;
    std::vector<int> freePaths;
    OpenPaths openPaths;
};

} // namespace Planaria
