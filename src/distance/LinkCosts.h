#pragma once

#include "distance/Assignment.h"
#include "distance/DistAlgo.h"
#include "distance/WormData.h"

#include <cstddef>
#include <span>
#include <vector>

namespace Planaria {

/// What the links of a region cost once it is placed. A link is charged with the later of its two
/// ends, so only those to regions placed before count. What does not depend on a path is worked out
/// in advance.
class LinkCosts final
{
public:
    /// Keeps references to both worms.
    LinkCosts(const WormData &first, const WormData &second);

    /// Of a region of the first worm and its partner. @param path the pairs before
    [[nodiscard]] double ofPair(int first, int second, const Assignment &path) const
    {
        double cost = 0.0;
        std::ptrdiff_t matched = 0;
        const std::ptrdiff_t candidates = std::ssize(linksB.of(second));
        for (const Link &link : linksA.of(first)) {
            const int partner = path.partnerOfFirst(link.other);
            const bool hasCandidates = partner != Assignment::none && matched < candidates;
            const int counterpart = hasCandidates ? firstLink(second, partner) : WormData::noLink;
            if (counterpart == WormData::noLink) {
                cost += DistAlgo::Costs::insertDeleteLink;
                continue;
            }
            cost += change(link, counterpart);
            matched += link.isFirst; // parallel ones have the same counterpart
        }
        for (auto unmatched = placedLinks(second, path) - matched; unmatched > 0; --unmatched)
            cost += DistAlgo::Costs::insertDeleteLink;
        return cost;
    }

    /// How many links of a region lead to regions placed before, which for the first worm are those
    /// at earlier positions.
    [[nodiscard]] int earlierLinks(int first) const
    {
        return static_cast<int>(linksA.of(first).size());
    }
    [[nodiscard]] int placedLinks(int second, const Assignment &path) const
    {
        int placed = 0;
        for (const Link &link : linksB.of(second))
            placed += path.isWaiting(link.other) ? 0 : 1;
        return placed;
    }

private:
    struct Link
    {
        int other;
        int isFirst; // of those of its region that lead there: 1, else 0
        const WormData::LinkData *data;
    };

    /// The links of all regions of a worm.
    struct Links
    {
        [[nodiscard]] std::span<const Link> of(int region) const
        {
            const auto i = static_cast<std::size_t>(region);
            return {all.data() + begins[i], all.data() + begins[i + 1]};
        }

        [[nodiscard]] std::size_t regionCount() const { return begins.size() - 1; }

        std::vector<Link> all;
        std::vector<std::size_t> begins{0}; // of each region's, and the end
    };

    void fillFirstLinks();
    void fillChanges();
    /// Position among all links of the second worm, or noLink.
    [[nodiscard]] int firstLink(int second, int other) const
    {
        if (firstLinks.empty())
            return findFirstLink(second, other);
        const std::size_t row = static_cast<std::size_t>(second) * linksB.regionCount();
        return firstLinks[row + static_cast<std::size_t>(other)];
    }
    [[nodiscard]] int findFirstLink(int second, int other) const;
    [[nodiscard]] double change(const Link &from, int to) const
    {
        if (changes.empty())
            return workOutChange(from, to);
        const auto row = static_cast<std::size_t>(&from - linksA.all.data());
        return changes[row * linksB.all.size() + static_cast<std::size_t>(to)];
    }
    [[nodiscard]] double workOutChange(const Link &from, int to) const;

    const WormData &a;
    const WormData &b;
    Links linksA; // to earlier regions alone
    Links linksB;
    // By pair, row by row; empty where there are too many:
    std::vector<int> firstLinks; // the first one from one region of the second worm to another
    std::vector<double> changes; // of a link of the first worm to one of the second
};

} // namespace Planaria
