#include "distance/DistAlgo.h"

#include "distance/AssignmentSearch.h"
#include "model/Angles.h"
#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Planaria::DistAlgo {

namespace {

using namespace Costs;
using Angles::halfTurn;

constexpr int none = AssignmentSearch::none;
constexpr int waiting = AssignmentSearch::waiting;

std::size_t at(int index)
{
    return static_cast<std::size_t>(index);
}

/// The angle between two directions, 0 to pi.
double angleBetween(double a, double b)
{
    const double angle = Angles::normalized(a - b);
    return angle > halfTurn ? Angles::fullTurn - angle : angle;
}

// --- Organs ---

/// An organ with all that is compared of it.
struct OrganData
{
    explicit OrganData(const Organ *organ) : pos(organ->pos())
    {
        if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ)) {
            isSpot = true;
            typeId = spot->type()->id();
            rot = spot->rot();
        } else if (const auto *line = dynamic_cast<const LineOrgan *>(organ)) {
            end1 = line->end1();
            end2 = line->end2();
        }
    }

    QPointF pos;
    bool isSpot = false;
    int typeId = 0;
    double rot = 0.0;
    QPointF end1;
    QPointF end2;
};

double organCost(const OrganData &a, const OrganData &b)
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

double organsCost(const std::vector<OrganData> &a, const std::vector<OrganData> &b)
{
    // What a pair of organs costs does not depend on the others.
    std::vector<double> costs;
    costs.reserve(a.size() * b.size());
    for (const OrganData &first : a) {
        for (const OrganData &second : b)
            costs.push_back(organCost(first, second));
    }
    AssignmentSearch search(static_cast<int>(a.size()), static_cast<int>(b.size()));
    return search.cheapest([&](int first, int second) {
        return first == none || second == none ? insertDeleteOrgan
                                               : costs[at(first) * b.size() + at(second)];
    });
}

// --- Regions ---

/// A link as seen from one of its regions.
struct LinkEnd
{
    int other; // position of the region at the other end
    double dist;
    double ang;
};

/// A region with all that is compared of it.
struct RegionData
{
    int typeId = 0;
    std::vector<double> params;
    std::vector<OrganData> organs;
    std::vector<LinkEnd> links;
    std::vector<std::pair<int, int>> linkIndex; // other region and first link to it, sorted

    /// The position of the first link to region @p other, or none.
    int firstLinkTo(int other) const
    {
        const auto found =
            std::lower_bound(linkIndex.cbegin(), linkIndex.cend(), std::pair(other, 0));
        return found != linkIndex.cend() && found->first == other ? found->second : none;
    }

    double organsTotal() const { return insertDeleteOrgan * static_cast<double>(organs.size()); }
};

std::vector<RegionData> regionsOf(const Morphology &worm)
{
    QHash<const Region *, int> position;
    for (const Region *region : worm.regions())
        position.insert(region, static_cast<int>(position.size()));

    std::vector<RegionData> result;
    result.reserve(static_cast<std::size_t>(position.size()));
    for (const Region *region : worm.regions()) {
        RegionData data;
        data.typeId = region->type()->id();
        for (const RegionParam *param : region->params())
            data.params.push_back(param->value());
        for (const Organ *organ : region->organs())
            data.organs.emplace_back(organ);
        for (const RegionsLink *link : region->links()) {
            const int other = position.value(link->otherRegion(region));
            data.linkIndex.emplace_back(other, static_cast<int>(data.links.size()));
            data.links.push_back({other, link->totalDist(), link->ang(region)});
        }
        std::sort(data.linkIndex.begin(), data.linkIndex.end());
        result.push_back(std::move(data));
    }
    return result;
}

double paramsCost(const RegionData &a, const RegionData &b)
{
    double cost = 0.0;
    const std::size_t common = std::min(a.params.size(), b.params.size());
    for (std::size_t i = 0; i < common; ++i)
        cost += changeRegionParameter * std::abs(a.params[i] - b.params[i]);
    return cost;
}

double linkChange(const LinkEnd &a, const LinkEnd &b)
{
    double cost = changeLinkDistance * std::abs(b.dist - a.dist);
    const double turn = angleBetween(a.ang, b.ang) / halfTurn;
    cost += changeLinkAngle * turn;
    if (turn > 0.5)
        cost += changeLinkAngleMore90Penalty;
    return cost;
}

/// The search over the regions of two worms.
class RegionSearch final
{
public:
    RegionSearch(const Morphology &first, const Morphology &second)
        : a(regionsOf(first)), b(regionsOf(second)),
          search(static_cast<int>(a.size()), static_cast<int>(b.size())),
          ownCosts(a.size() * b.size(), unknown)
    {
    }

    double cheapest()
    {
        return search.cheapest([this](int first, int second) { return stepCost(first, second); });
    }

private:
    static constexpr double unknown = -1.0;

    double stepCost(int first, int second)
    {
        if (first == none) {
            return loneCost(b[at(second)],
                            [this](int other) { return search.partnerOfSecond(other); });
        }
        if (second == none) {
            return loneCost(a[at(first)],
                            [this](int other) { return search.partnerOfFirst(other); });
        }
        return ownCost(first, second) + linksCost(a[at(first)], b[at(second)]);
    }

    /// Of a region without partner. @param partnerOf of another region of its worm
    template <typename PartnerOf>
    static double loneCost(const RegionData &region, const PartnerOf &partnerOf)
    {
        double cost = insertDeleteRegion + region.organsTotal();
        for (const LinkEnd &link : region.links) {
            if (partnerOf(link.other) != waiting)
                cost += insertDeleteLink;
        }
        return cost;
    }

    /// Of type, params and organs, which do not depend on the path: found once for each pair.
    double ownCost(int first, int second)
    {
        double &cost = ownCosts[at(first) * b.size() + at(second)];
        if (cost == unknown) {
            const RegionData &from = a[at(first)];
            const RegionData &to = b[at(second)];
            cost = (from.typeId == to.typeId ? 0.0 : changeRegionType) + paramsCost(from, to) +
                   organsCost(from.organs, to.organs);
        }
        return cost;
    }

    /// Of the links of a pair to regions placed before. A link is charged with the later of its
    /// two ends.
    double linksCost(const RegionData &from, const RegionData &to)
    {
        double cost = 0.0;
        unmatched.assign(to.links.size(), 1);
        std::size_t left = to.links.size();
        std::size_t i = 0;
        for (; i < from.links.size() && left > 0; ++i) {
            const int partner = search.partnerOfFirst(from.links[i].other);
            if (partner == waiting)
                continue;
            const int counterpart = partner == none ? none : to.firstLinkTo(partner);
            if (counterpart == none) {
                cost += insertDeleteLink;
                continue;
            }
            // Parallel links may have the same counterpart.
            left -= std::exchange(unmatched[at(counterpart)], 0);
            cost += linkChange(from.links[i], to.links[at(counterpart)]);
        }
        for (; i < from.links.size(); ++i) {
            if (search.partnerOfFirst(from.links[i].other) != waiting)
                cost += insertDeleteLink;
        }
        for (std::size_t j = 0; j < to.links.size(); ++j) {
            if (unmatched[j] && search.partnerOfSecond(to.links[j].other) != waiting)
                cost += insertDeleteLink;
        }
        return cost;
    }

    std::vector<RegionData> a;
    std::vector<RegionData> b;
    AssignmentSearch search;
    std::vector<double> ownCosts; // by pair, row by row
    std::vector<char> unmatched;  // links of the present pair's second region
};

} // namespace

double dist(const Morphology &first, const Morphology &second)
{
    return RegionSearch(first, second).cheapest();
}

} // namespace Planaria::DistAlgo
