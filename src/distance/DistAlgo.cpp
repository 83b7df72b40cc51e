#include "distance/DistAlgo.h"

#include "distance/AssignmentSearch.h"
#include "distance/CappedDistance.h"
#include "distance/LinkCosts.h"
#include "distance/WormData.h"
#include "model/Angles.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

namespace Planaria::DistAlgo {

namespace {

using namespace Costs;
using Angles::halfTurn;
using OrganData = WormData::OrganData;
using RegionData = WormData::RegionData;

constexpr int none = Assignment::none;

std::size_t at(int index)
{
    return static_cast<std::size_t>(index);
}

// --- Single changes ---

double organChange(const OrganData &a, const OrganData &b)
{
    double cost = moveOrgan * Angles::length(b.pos - a.pos);
    if (a.isSpot && b.isSpot) {
        cost += changeSpotOrganRotation / halfTurn * Angles::between(a.rot, b.rot);
        if (a.typeId != b.typeId)
            cost += changeSpotOrganType;
    } else if (!a.isSpot && !b.isSpot) {
        cost += moveLineOrganEnd * Angles::length(b.end1 - a.end1);
        cost += moveLineOrganEnd * Angles::length(b.end2 - a.end2);
    } else {
        cost += changeSpotLineOrganType;
    }
    return cost;
}

double typeAndParamsChange(const RegionData &a, const RegionData &b)
{
    double params = 0.0;
    for (std::size_t i = 0; i < std::min(a.params.size(), b.params.size()); ++i)
        params += changeRegionParameter * std::abs(a.params[i] - b.params[i]);
    return (a.typeId == b.typeId ? 0.0 : changeRegionType) + params;
}

/// The least that a path may still cost: each element of the first list that waits takes its
/// cheapest partner or none, and where more wait in the second list the surplus has none.
class LeastRest final
{
public:
    /// @param lone the least that an element without partner costs
    /// @param costOf tells the least that two elements cost
    template <typename CostOf>
    void reset(int sizeOfFirst, int sizeOfSecond, double lone, const CostOf &costOf)
    {
        ofLone = lone;
        sums.assign(1, 0.0);
        for (int first = sizeOfFirst - 1; first >= 0; --first) {
            double least = lone;
            for (int second = 0; second < sizeOfSecond; ++second)
                least = std::min(least, costOf(first, second));
            sums.push_back(sums.back() + least);
        }
    }

    [[nodiscard]] double of(int first, int second) const
    {
        return sums[at(first)] + ofLone * std::max(second - first, 0);
    }

private:
    double ofLone = 0.0;
    std::vector<double> sums; // over so many elements of the first list, from its end
};

// --- Organs ---

/// What the organs of a region cost against those of another one.
class OrganCosts final
{
public:
    static constexpr bool insertionsAreAlike = true;

    explicit OrganCosts(std::size_t mostOpenPaths) : search(mostOpenPaths) {}

    double cheapest(std::span<const OrganData> a, std::span<const OrganData> b)
    {
        if (a.empty() || b.empty())
            return insertDeleteOrgan * static_cast<double>(a.size() + b.size());
        from = a;
        to = b;
        changes.clear();
        const auto rows = static_cast<int>(a.size());
        const auto columns = static_cast<int>(b.size());
        if (!AssignmentSearch::areTooLong(a.size(), b.size())) {
            fillChanges();
            rest.reset(rows, columns, insertDeleteOrgan,
                       [this](int i, int j) { return change(at(i), at(j)); });
        }
        return search.cheapest(rows, columns, this);
    }

    [[nodiscard]] double ofPath(double cost, int first, int second, double /*most*/) const
    {
        const bool isPair = first != none && second != none;
        return cost + (isPair ? change(at(first), at(second)) : insertDeleteOrgan);
    }

    [[nodiscard]] double leastRest(int first, int second) const { return rest.of(first, second); }

    [[nodiscard]] bool areTwins(int second, int other) const
    {
        return to[at(second)] == to[at(other)];
    }

private:
    void fillChanges()
    {
        for (const OrganData &first : from) {
            for (const OrganData &second : to)
                changes.push_back(organChange(first, second));
        }
    }

    [[nodiscard]] double change(std::size_t first, std::size_t second) const
    {
        return changes.empty() ? organChange(from[first], to[second])
                               : changes[first * to.size() + second];
    }

    std::span<const OrganData> from;
    std::span<const OrganData> to;
    std::vector<double> changes; // by pair, row by row; empty where there are too many
    LeastRest rest;
    AssignmentSearch search;
};

// --- Regions ---

/// What the regions of a worm cost against those of another one.
class RegionCosts final
{
public:
    static constexpr bool insertionsAreAlike = false; // links tell them apart

    RegionCosts(const Morphology &first, const Morphology &second, std::size_t mostOpenPaths)
        : a(first), b(second), links(a, b), search(mostOpenPaths), organCosts(mostOpenPaths)
    {
        listLoneCosts();
        if (AssignmentSearch::areTooLong(at(a.regionCount()), at(b.regionCount())))
            return;
        changes.reserve(at(a.regionCount()) * at(b.regionCount()));
        for (int i = 0; i < a.regionCount(); ++i) {
            for (int j = 0; j < b.regionCount(); ++j)
                changes.push_back(quickChange(a.region(i), b.region(j)));
        }
        rest.reset(a.regionCount(), b.regionCount(), insertDeleteRegion,
                   [this](int i, int j) { return change(i, j).cost; });
    }

    double cheapest() { return search.cheapest(a.regionCount(), b.regionCount(), this); }

    double ofPath(double cost, int first, int second, double most)
    {
        if (first == none)
            return cost + loneCost(second);
        if (second == none)
            return cost + loneOfFirst[at(first)];
        return ofPair(cost, first, second, most);
    }

    [[nodiscard]] double leastRest(int first, int second) const { return rest.of(first, second); }

    [[nodiscard]] bool areTwins(int second, int other) const
    {
        const RegionData &one = b.region(second);
        const RegionData &two = b.region(other);
        return one.links.empty() && two.links.empty() && one.typeId == two.typeId &&
               std::ranges::equal(one.params, two.params) &&
               std::ranges::equal(one.organs, two.organs);
    }

private:
    /// What a region and its partner cost without links, which is the same in every path. The cost
    /// of their organs is found once it matters; until then the least that it can be stands for it.
    struct Change
    {
        double typeAndParams;
        double cost;
        bool isExact;
    };

    Change &change(int first, int second)
    {
        return changes[at(first) * at(b.regionCount()) + at(second)];
    }

    double ofPair(double cost, int first, int second, double most)
    {
        Change unlisted{};
        if (changes.empty())
            unlisted = quickChange(a.region(first), b.region(second));
        Change &known = changes.empty() ? unlisted : change(first, second);
        if (cost + known.cost > most)
            return cost + known.cost;
        if (!known.isExact) {
            known.cost = known.typeAndParams +
                         organCosts.cheapest(a.region(first).organs, b.region(second).organs);
            known.isExact = true;
        }
        return cost + (known.cost + links.ofPair(first, second, path));
    }

    static Change quickChange(const RegionData &from, const RegionData &to)
    {
        const double known = typeAndParamsChange(from, to);
        const auto surplus = std::ssize(from.organs) - std::ssize(to.organs);
        return {known, known + insertDeleteOrgan * std::abs(static_cast<double>(surplus)), false};
    }

    /// Of the second worm. One of the first costs the same in every path.
    [[nodiscard]] double loneCost(int second) const
    {
        return withLinks(loneOfSecond[at(second)], links.placedLinks(second, path));
    }

    void listLoneCosts()
    {
        const auto withOrgans = [](const RegionData &region) {
            return insertDeleteRegion +
                   insertDeleteOrgan * static_cast<double>(region.organs.size());
        };
        for (int i = 0; i < a.regionCount(); ++i)
            loneOfFirst.push_back(withLinks(withOrgans(a.region(i)), links.earlierLinks(i)));
        for (int j = 0; j < b.regionCount(); ++j)
            loneOfSecond.push_back(withOrgans(b.region(j)));
    }

    static double withLinks(double cost, int lost)
    {
        for (; lost > 0; --lost)
            cost += insertDeleteLink;
        return cost;
    }

    WormData a;
    WormData b;
    LinkCosts links;
    AssignmentSearch search;
    const Assignment &path = search.assignment();
    OrganCosts organCosts;
    std::vector<Change> changes; // by pair, row by row; empty where there are too many
    std::vector<double> loneOfFirst;
    std::vector<double> loneOfSecond; // without links
    LeastRest rest;
};

} // namespace

double dist(const Morphology &first, const Morphology &second)
{
    return cappedDist(first, second, AssignmentSearch::usualOpenPaths);
}

double cappedDist(const Morphology &first, const Morphology &second, std::size_t mostOpenPaths)
{
    return RegionCosts(first, second, mostOpenPaths).cheapest();
}

} // namespace Planaria::DistAlgo
