#pragma once

#include "distance/Assignment.h"
#include "distance/OpenPaths.h"
#include "distance/PathRows.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace Planaria {

/// Best-first search for the cheapest assignment of the elements of two lists. A path is an
/// assignment on its way, and its key is the cost of its pairs alone. Of the open paths no more
/// than a number are kept: beyond that the dearest are given up, the oldest of equal ones first,
/// and the result may not be the cheapest. Nor need it be for lists that only damaged files have:
///   - Those that are too long are paired as they stand.
///   - Searches among very many paths of almost equal cost end after tens of millions of steps with
///     the best complete path met until then. What they take, later searches of this object may not
///     take too; but each may take more than ordinary lists need, until all together have taken
///     some hundred millions.
///
/// What paths cost comes from an object with these members:
///   double ofPath(double cost, int first, int second, double most)
///     What the path of assignment(), of which @p cost is known, costs with one more pair; never
///     less than without. Above @p most any number will do. A path whose cost is no number, as
///     damaged files may have it, is not followed.
///   double leastRest(int first, int second)
///     The least that may be added to a path where so many elements of the two lists wait.
///   bool areTwins(int second, int other)
///     Whether two elements of the second list may change places in any path, and all costs stay.
///   static constexpr bool insertionsAreAlike
///     Whether each element of the second list costs the same without partner, whatever the path.
class AssignmentSearch final
{
public:
    static constexpr int none = Assignment::none;
    static constexpr std::size_t usualOpenPaths = 5000;

    /// @param newMostOpenPaths how many open paths are kept at most; more than a list has elements
    explicit AssignmentSearch(std::size_t newMostOpenPaths) : mostOpenPaths(newMostOpenPaths) {}

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
        countOrders(sizeOfSecond);
        findTwins(*costs);
        best = infinity;
        // Then not all paths together are too many.
        const bool isSmall = completions(sizeOfFirst, sizeOfSecond) <= mostBadPaths();
        if (!isSmall)
            guess(costs);
        counted = isSmall ? infinity : fewCompletions;
        return walk(costs) ? best : searchWithinShare(costs);
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
            if (current.isWaiting(second)) {
                cost = costs->ofPath(cost, none, second, infinity);
                current.add(second);
            }
        }
        return cost;
    }

    // --- The walk ---
    //
    // Depth first through the paths that cost no more than the best complete one. The search takes
    // those too, but through a queue, for many times the price.
    //
    // Its result is that of the search, provided that few enough of these paths are bad. Call a
    // path good which some complete path of the best cost extends. Open paths never extend each
    // other, so there are no more bad ones at a time than there are ways to go on from bad paths to
    // the end, be it a complete path or one that cannot go on at the best cost. While those are
    // fewer than the open paths that are kept, there is always room for the first good path, which
    // is thus never given up.
    //
    // A path is known to be bad once the least that is still to come takes it beyond the best
    // cost. Near the end it is cheaper then to count all complete paths that extend it.
    //
    // Where elements of the second list are twins, paths that differ only by which of them they
    // take are good or bad together, and cost the same. Of those the walk takes the one that takes
    // twins in their order, and counts what it comes to as often as there are such paths.
    //
    // It may give up: the search finds the same, at its own pace.

    [[nodiscard]] double mostBadPaths() const { return static_cast<double>(mostOpenPaths) - 1.0; }
    /// So many complete paths, or fewer, are counted rather than walked to.
    static constexpr double fewCompletions = 8.0;
    /// What takes more off a sum than can have come into it by rounding.
    static constexpr double withoutRounding = 1.0 - 1e-11;

    struct Twins
    {
        int before;   // the last twin before an element, or none
        double after; // the twins from the element on, itself among them
    };

    /// A pair to go on with, after the first @p pairs of the present path.
    struct Step
    {
        double cost;  // with this pair
        double least; // that a complete path costs which extends it
        double ways;  // to make a path like this
        int pairs;
        int second;
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

    /// Finds the best cost, at or below the one that is known. Gives up where there are too many
    /// bad paths, or too many complete ones of the best cost, and after its share of the steps that
    /// all walks may take; but some complete path it finds.
    /// @return whether the best cost is the result of the search
    template <typename Costs> bool walk(Costs *costs)
    {
        current.reset(current.sizeOfFirst(), current.sizeOfSecond());
        const std::int64_t leftAtEnd = walkSteps - walkSteps / 16;
        badWays = 0.0;
        double bestWays = 0.0; // to make complete paths of that cost
        std::size_t completed = 0;
        Step present{0.0, 0.0, 1.0, 0, none};
        steps.clear();
        trail.clear();
        do {
            if (!current.isComplete()) {
                addSteps(present, costs);
            } else {
                ++completed;
                if (present.cost < best)
                    badWays += std::exchange(bestWays, 0.0);
                bestWays += present.ways;
                best = present.cost;
            }
            const bool isLong =
                badWays > mostBadPaths() || completed >= mostOpenPaths || walkSteps < leftAtEnd;
            if (isLong && best < infinity)
                return false;
        } while (takeStep(&present));
        return true;
    }

    /// The steps from the present path that lead not beyond the best cost, the most promising as
    /// the last.
    template <typename Costs> void addSteps(const Step &present, Costs *costs)
    {
        const std::size_t before = steps.size();
        const bool alike = Costs::insertionsAreAlike && current.nextOfFirst() == none;
        const int firstLeft = std::max(current.waitingOfFirst() - 1, 0);
        bool isEnd = true;
        forEachPair([&](int first, int second) {
            if (second != none && !isNextTwin(second))
                return true;
            const double cost = costs->ofPath(present.cost, first, second, best);
            --walkSteps;
            if (cost <= best) {
                isEnd = false;
                const int secondLeft = current.waitingOfSecond() - (second == none ? 0 : 1);
                addStep({cost, cost + costs->leastRest(firstLeft, secondLeft),
                         present.ways * waysToTake(second, alike), current.pairCount(), second},
                        firstLeft, secondLeft);
            }
            return !alike;
        });
        if (isEnd)
            badWays += present.ways;
        moveBestToEnd(before);
    }

    /// @param firstLeft, secondLeft numbers of elements that wait after it
    void addStep(const Step &step, int firstLeft, int secondLeft)
    {
        if (step.least * withoutRounding > best) {
            const double ways = completions(firstLeft, secondLeft);
            if (ways <= counted) {
                badWays += step.ways * ways;
                return;
            }
        }
        steps.push_back(step);
    }

    /// How many elements may stand in for @p second.
    [[nodiscard]] double waysToTake(int second, bool alike) const
    {
        if (alike)
            return current.waitingOfSecond();
        return second == none ? 1.0 : twins[static_cast<std::size_t>(second)].after;
    }

    /// Whether a path of the walk may take @p second: only after its twins before.
    [[nodiscard]] bool isNextTwin(int second) const
    {
        const int before = twins[static_cast<std::size_t>(second)].before;
        return before == none || !current.isWaiting(before);
    }

    /// In how many ways a path can be completed in which so many elements wait: each of the first
    /// list may stay without partner, and what is left of the second one then follows in any order.
    [[nodiscard]] double completions(int first, int second) const
    {
        return std::ldexp(orders[static_cast<std::size_t>(second)], first);
    }
    void countOrders(int most);
    void moveBestToEnd(std::size_t begin);
    /// Goes to the next path; false where none is left.
    bool takeStep(Step *present);

    // --- The search ---

    /// Finds the cost of a complete path that is good as a rule.
    template <typename Costs> void guess(Costs *costs)
    {
        constexpr std::size_t fewOpenPaths = 40;
        if (current.sizeOfSecond() + 1 >= static_cast<int>(fewOpenPaths))
            return;
        std::int64_t stepsLeft = 1 << 14;
        best = search(fewOpenPaths, &stepsLeft, costs);
    }

    /// The search itself, with its share of the steps that all searches may take.
    template <typename Costs> double searchWithinShare(Costs *costs)
    {
        const std::int64_t share = std::max(ordinarySteps, searchSteps / 8);
        std::int64_t stepsLeft = std::min(share, searchSteps);
        const std::int64_t before = stepsLeft;
        const double cost = search(mostOpenPaths, &stepsLeft, costs);
        searchSteps -= before - stepsLeft;
        return cost;
    }

    /// @param limit how many open paths are kept; more than the extensions of one
    /// @return the best cost known before where it takes too many steps
    template <typename Costs>
    double search(std::size_t limit, std::int64_t *stepsLeft, Costs *costs)
    {
        current.reset(current.sizeOfFirst(), current.sizeOfSecond());
        rows.clear(current.row().size());
        openPathLimit = limit;
        openPaths.reset(1.5 * best);
        double cost = 0.0;
        while (!current.isComplete()) {
            if (*stepsLeft < 0)
                return best;
            forEachPair([&](int first, int second) {
                --*stepsLeft;
                const double most = highestUsefulCost();
                const double extended = costs->ofPath(cost, first, second, most);
                if (extended <= most)
                    addExtension(extended, second);
                return true;
            });
            openExtensions();
            cost = exposeFirst();
        }
        return cost;
    }

    /// An open path in the making: the present one with one more pair.
    struct Extension
    {
        double cost;
        int second;
    };

    /// The cost above which a new path would be given up at once.
    [[nodiscard]] double highestUsefulCost()
    {
        if (openPaths.size() + extensions.size() < openPathLimit)
            return infinity;
        return std::max(openPaths.highestCost(), dearestExtension);
    }

    /// Gives another path up for it if need be.
    void addExtension(double cost, int second);
    void giveUpDearest();
    void openExtensions();
    /// Takes the cheapest open path for the present one. @return its cost
    double exposeFirst();

    // --- Both ---

    /// Calls @p visit with each pair that may come next, in order, until it returns false.
    template <typename Visit> void forEachPair(const Visit &visit) const
    {
        const int first = current.nextOfFirst();
        const bool wantsMore =
            current.forEachWaiting([&](int second) { return visit(first, second); });
        if (wantsMore && first != none)
            visit(first, none);
    }

    const std::size_t mostOpenPaths;
    Assignment current;

    std::vector<double> orders; // in which so many elements can stand
    std::vector<Twins> twins;   // by element of the second list
    std::vector<Step> steps;    // to be taken from the end
    std::vector<int> trail;     // what the pairs of the present path take of the second list
    double best = infinity;     // cost of a complete path
    double badWays = 0.0;       // to the ends of bad paths
    double counted = 0.0;       // up to so many ways on from a bad path

    std::size_t openPathLimit = 0;
    PathRows rows;
    OpenPaths openPaths;
    std::vector<Extension> extensions; // of the present path
    double dearestExtension = 0.0;

    /// Four times what lists of twenty elements need, which take a million.
    static constexpr std::int64_t ordinarySteps = 1 << 22;

    // What is left of them. Only lists of ten elements and more of which very many assignments cost
    // the same, as damaged files may have them, take a whole share; two dozen such take all.
    std::int64_t walkSteps = 1 << 26;
    std::int64_t searchSteps = 1 << 28;
};

} // namespace Planaria
