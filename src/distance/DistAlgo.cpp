#include "distance/DistAlgo.h"

#include "distance/AssignmentSearch.h"
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
using LinkData = WormData::LinkData;
using RegionData = WormData::RegionData;

constexpr int none = Assignment::none;
constexpr int waiting = Assignment::waiting;
constexpr int noLink = WormData::noLink;

std::size_t at(int index)
{
    return static_cast<std::size_t>(index);
}

/// The angle between two directions, 0 to pi.
double angleBetween(double a, double b)
{
    const double angle = Angles::normalized(a - b);
    // Many turns leave rounding errors, of which no cost may fall below 0.
    return std::clamp(angle > halfTurn ? Angles::fullTurn - angle : angle, 0.0, halfTurn);
}

// --- Single changes ---

double organChange(const OrganData &a, const OrganData &b)
{
    double cost = moveOrgan * Angles::length(b.pos - a.pos);
    if (a.isSpot && b.isSpot) {
        cost += changeSpotOrganRotation / halfTurn * angleBetween(a.rot, b.rot);
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

double linkChange(const LinkData &a, const LinkData &b)
{
    double cost = changeLinkDistance * std::abs(b.dist - a.dist);
    const double turn = angleBetween(a.ang, b.ang) / halfTurn;
    cost += changeLinkAngle * turn;
    if (turn > 0.5)
        cost += changeLinkAngleMore90Penalty;
    return cost;
}

double typeAndParamsChange(const RegionData &a, const RegionData &b)
{
    double params = 0.0;
    for (std::size_t i = 0; i < std::min(a.params.size(), b.params.size()); ++i)
        params += changeRegionParameter * std::abs(a.params[i] - b.params[i]);
    return (a.typeId == b.typeId ? 0.0 : changeRegionType) + params;
}

// --- Organs ---

/// What the organs of a region cost against those of another one.
class OrganCosts final
{
public:
    static constexpr bool insertionsAreAlike = true;

    double cheapest(std::span<const OrganData> a, std::span<const OrganData> b)
    {
        if (a.empty() || b.empty())
            return insertDeleteOrgan * static_cast<double>(a.size() + b.size());
        from = a;
        to = b;
        changes.clear();
        if (!AssignmentSearch::areTooLong(a.size(), b.size()))
            fillChanges();
        return search.cheapest(static_cast<int>(a.size()), static_cast<int>(b.size()), this);
    }

    [[nodiscard]] double ofPath(double cost, int first, int second, double /*most*/) const
    {
        const bool isPair = first != none && second != none;
        return cost + (isPair ? change(at(first), at(second)) : insertDeleteOrgan);
    }

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
    AssignmentSearch search;
};

// --- Regions ---

/// What the regions of a worm cost against those of another one.
class RegionCosts final
{
public:
    static constexpr bool insertionsAreAlike = false; // links tell them apart

    RegionCosts(const Morphology &first, const Morphology &second) : a(first), b(second)
    {
        if (AssignmentSearch::areTooLong(at(a.regionCount()), at(b.regionCount())))
            return;
        changes.reserve(at(a.regionCount()) * at(b.regionCount()));
        for (int i = 0; i < a.regionCount(); ++i) {
            for (int j = 0; j < b.regionCount(); ++j)
                changes.push_back(quickChange(a.region(i), b.region(j)));
        }
    }

    double cheapest() { return search.cheapest(a.regionCount(), b.regionCount(), this); }

    double ofPath(double cost, int first, int second, double most)
    {
        if (first == none)
            return cost + loneCost(b.region(second), &Assignment::partnerOfSecond);
        if (second == none)
            return cost + loneCost(a.region(first), &Assignment::partnerOfFirst);
        return ofPair(cost, first, second, most);
    }

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

    double ofPair(double cost, int first, int second, double most)
    {
        const RegionData &from = a.region(first);
        const RegionData &to = b.region(second);
        Change unlisted{};
        if (changes.empty())
            unlisted = quickChange(from, to);
        Change &change =
            changes.empty() ? unlisted : changes[at(first) * at(b.regionCount()) + at(second)];
        if (!change.isExact && cost + change.cost <= most) {
            change.cost = change.typeAndParams + organCosts.cheapest(from.organs, to.organs);
            change.isExact = true;
        }
        const double withoutLinks = cost + change.cost;
        return withoutLinks > most ? withoutLinks : cost + (change.cost + linksCost(from, to));
    }

    static Change quickChange(const RegionData &from, const RegionData &to)
    {
        const double known = typeAndParamsChange(from, to);
        const auto surplus = std::ssize(from.organs) - std::ssize(to.organs);
        return {known, known + insertDeleteOrgan * std::abs(static_cast<double>(surplus)), false};
    }

    /// Of a region without partner. @param partnerOf finds that of another region of its worm
    [[nodiscard]] double loneCost(const RegionData &region,
                                  int (Assignment::*partnerOf)(int) const) const
    {
        double cost =
            insertDeleteRegion + insertDeleteOrgan * static_cast<double>(region.organs.size());
        for (const LinkData &link : region.links) {
            if ((path.*partnerOf)(link.other) != waiting)
                cost += insertDeleteLink;
        }
        return cost;
    }

    /// Of the links of a pair to regions placed before. A link is charged with the later of its
    /// two ends.
    [[nodiscard]] double linksCost(const RegionData &from, const RegionData &to) const
    {
        double cost = 0.0;
        std::ptrdiff_t matched = 0;
        for (const LinkData &link : from.links) {
            const int partner = path.partnerOfFirst(link.other);
            if (partner == waiting)
                continue;
            const bool hasCandidates = partner != none && matched < std::ssize(to.links);
            const int counterpart = hasCandidates ? to.firstLinkTo(partner) : noLink;
            if (counterpart == noLink) {
                cost += insertDeleteLink;
                continue;
            }
            cost += linkChange(link, to.links[at(counterpart)]);
            if (link.isFirst) // parallel ones have the same counterpart
                ++matched;
        }
        std::ptrdiff_t unmatched = -matched;
        for (const LinkData &link : to.links)
            unmatched += path.partnerOfSecond(link.other) != waiting ? 1 : 0;
        for (; unmatched > 0; --unmatched)
            cost += insertDeleteLink;
        return cost;
    }

    WormData a;
    WormData b;
    AssignmentSearch search;
    const Assignment &path = search.assignment();
    OrganCosts organCosts;
    std::vector<Change> changes; // by pair, row by row; empty where there are too many
};

} // namespace

double dist(const Morphology &first, const Morphology &second)
{
    return RegionCosts(first, second).cheapest();
}

} // namespace Planaria::DistAlgo
