#pragma once

#include "distance/Assignment.h"
#include "distance/OpenPaths.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace Planaria {

/// Best-first search for the cheapest assignment of the elements of two lists. A path is an
/// assignment on its way, and its key is the cost of its pairs alone. At most 5000 open paths are
/// kept: beyond that the dearest are given up, the oldest of equal ones first, and the result may
/// not be the cheapest. Nor need it be for lists that only damaged files have:
///   - Those that are too long are paired as they stand.
///   - Searches among very many paths of almost equal cost end after fifty million steps, counted
///     over all searches of this object, with the best complete path met until then.
///
/// What paths cost comes from an object with these members:
///   double ofPath(double cost, int first, int second, double most)
///     What the path of assignment(), of which @p cost is known, costs with one more pair; never
///     less than without. Above @p most any number will do. A path whose cost is no number, as
///     damaged files may have it, is not followed.
///   bool areTwins(int second, int other)
///     Whether two elements of the second list may change places in any path, and all costs stay.
///   static constexpr bool insertionsAreAlike
///     Whether each element of the second list costs the same without partner, whatever the path.
class AssignmentSearch final
{
public:
    static constexpr int none = Assignment::none;
    static constexpr std::size_t mostOpenPaths = 5000;

    /// Whether lists are too long to be searched: one path would take long, or the pairs that it
    /// has to choose from much memory.
    [[nodiscard]] static bool areTooLong(std::size_t sizeOfFirst, std::size_t sizeOfSecond)
    {
        return sizeOfFirst + sizeOfSecond > 1000;
    }

    /// The path that is being extended.
    [[nodiscard]] const Assignment &assignment() const { return current; }

    template <typename Costs> double cheapest(int sizeOfFirst, int sizeOfSecond, Costs *costs)
    {
        current.reset(sizeOfFirst, sizeOfSecond);
        if (areTooLong(static_cast<std::size_t>(sizeOfFirst),
                       static_cast<std::size_t>(sizeOfSecond)))
            return asTheyStand(costs);
        findTwins(*costs);
        const Walked walked = walk(costs);
        if (walked.isProven)
            return walked.best;
        current.reset(sizeOfFirst, sizeOfSecond);
        return search(walked.best, costs);
    }

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();

    // --- Lists that are too long ---

    /// Of the path that pairs the elements at equal positions, where that is not dearer than to
    /// leave the first without partner.
    template <typename Costs> double asTheyStand(Costs *costs)
    {
        double cost = 0.0;
        for (int first = 0; current.nextOfFirst() != none; ++first) {
            const double lone = costs->ofPath(cost, first, none, infinity);
            const double paired = first < current.sizeOfSecond()
                                      ? costs->ofPath(cost, first, first, infinity)
                                      : infinity;
            const bool isPair = paired <= lone;
            cost = isPair ? paired : lone;
            current.add(isPair ? first : none);
        }
        for (int second = 0; second < current.sizeOfSecond(); ++second) {
            if (current.partnerOfSecond(second) == Assignment::waiting) {
                cost = costs->ofPath(cost, none, second, infinity);
                current.add(second);
            }
        }
        return cost;
    }

    // --- The walk ---
    //
    // Depth first through all paths that cost no more than the best complete one. The search takes
    // those too, but through a queue, for many times the price.
    //
    // Its result is that of the search, provided that fewer than 5000 of these paths are dead ends.
    // Call a path good which some complete path of the best cost extends, and let the others, whose
    // extensions all come to dead ends, be bad. Open paths never extend each other. So fewer than
    // 5000 bad ones can stand before the first good one, which is therefore never given up.
    //
    // Where elements of the second list are twins, paths that differ only by which of them they
    // take are good or bad together, and cost the same. Of those the walk takes the one that takes
    // twins in their order, and counts what it comes to as often as there are such paths.
    //
    // It may give up: the search finds the same, at its own pace.

    struct Walked
    {
        double best;
        bool isProven; // to be the result of the search
    };

    struct Twins
    {
        int before;   // the last twin before an element, or none
        double after; // the twins from the element on, itself among them
    };

    template <typename Costs> void findTwins(const Costs &costs)
    {
        const auto size = static_cast<std::size_t>(current.sizeOfSecond());
        twins.assign(size, {none, 1.0});
        for (int second = 1; second < current.sizeOfSecond(); ++second) {
            int before = second - 1;
            while (before != none && !costs.areTwins(second, before))
                --before;
            twins[static_cast<std::size_t>(second)].before = before;
        }
        for (std::size_t second = size; second-- > 0;) {
            if (twins[second].before != none)
                twins[static_cast<std::size_t>(twins[second].before)].after += twins[second].after;
        }
    }

    /// Whether a path of the walk may take @p second: only after its twins before.
    [[nodiscard]] bool isNextTwin(int second) const
    {
        const int before = twins[static_cast<std::size_t>(second)].before;
        return before == none || current.partnerOfSecond(before) != Assignment::waiting;
    }

    /// A pair to go on with, after the first @p pairs of the present path.
    struct Step
    {
        double cost; // with this pair
        double ways; // to make a path like this
        int pairs;
        int second;
    };

    /// Gives up where too many dead ends, or too many paths of the best cost, were met, and after
    /// its share of the steps that all walks may take. What it has found then is a complete path.
    template <typename Costs> Walked walk(Costs *costs)
    {
        const std::int64_t leftAtEnd = walkSteps - walkSteps / 16;
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
            const bool isLong =
                deadEnds >= mostOpenPaths || completed >= mostOpenPaths || walkSteps < leftAtEnd;
            if (isLong && completed > 0)
                return {best, false};
        } while (takeStep(best, &present));
        return {best, true};
    }

    /// The steps from the present path that lead not beyond @p best, the cheapest as the last.
    template <typename Costs> bool addSteps(const Step &present, double best, Costs *costs)
    {
        const auto before = static_cast<std::ptrdiff_t>(steps.size());
        const bool alike = Costs::insertionsAreAlike && current.nextOfFirst() == none;
        forEachPair([&](int first, int second) {
            if (second != none && !isNextTwin(second))
                return true;
            const double cost = costs->ofPath(present.cost, first, second, best);
            --walkSteps;
            if (cost <= best)
                steps.push_back(
                    {cost, present.ways * waysToTake(second, alike), current.pairCount(), second});
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

    /// How many elements may stand in for @p second.
    [[nodiscard]] double waysToTake(int second, bool alike) const
    {
        if (alike)
            return current.leftOfSecond();
        return second == none ? 1.0 : twins[static_cast<std::size_t>(second)].after;
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

    /// @param best cost of a complete path: the result where the search takes too many steps
    template <typename Costs> double search(double best, Costs *costs)
    {
        paths.clear();
        freePaths.clear();
        openPaths.clear();
        OpenPaths::Entry present{0.0, addPath(none, none)};
        while (!current.isComplete()) {
            if (searchSteps < 0)
                return best;
            forEachPair([&](int first, int second) {
                --searchSteps;
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
    std::vector<Twins> twins; // by element of the second list
    std::vector<Step> steps;  // to be taken from the end
    std::vector<Path> paths;
    std::vector<int> freePaths;
    OpenPaths openPaths;
    // What is left of them. Of the second kind there are several times as many as one may wait for
    // if each path were a list of its own; only lists of ten elements and more that are almost
    // equal, as damaged files may have them, take all.
    std::int64_t walkSteps = 1 << 26;
    std::int64_t searchSteps = 50'000'000;
};

} // namespace Planaria
