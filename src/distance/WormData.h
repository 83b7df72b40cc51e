#pragma once

#include <QPointF>

#include <algorithm>
#include <span>
#include <vector>

namespace Planaria {

class Morphology;
class Organ;
class Region;

/// The numbers of a worm that a distance needs, list by list. Regions go by their positions.
class WormData final
{
public:
    static constexpr int noLink = -1;

    struct OrganData
    {
        explicit OrganData(const Organ *organ);

        /// Compares exactly, unlike points do among themselves.
        [[nodiscard]] bool operator==(const OrganData &other) const;

        QPointF pos;
        bool isSpot;
        // Of a spot organ:
        int typeId = 0;
        double rot = 0.0;
        // Of a line organ:
        QPointF end1;
        QPointF end2;
    };

    /// A link as seen from one of its regions.
    struct LinkData
    {
        int other; // region at the far end
        double dist;
        double ang;
        bool isFirst = false; // of those of its region that lead there
    };

    /// The first link of a region to another one.
    struct FirstLink
    {
        int other;
        int link; // its position
    };

    struct RegionData
    {
        int typeId;
        std::span<const double> params;
        std::span<const OrganData> organs;
        std::span<const LinkData> links;
        std::span<const FirstLink> firstLinks; // sorted by the other region

        /// Position of the first link to @p other, or noLink.
        [[nodiscard]] int firstLinkTo(int other) const
        {
            const auto found = std::ranges::lower_bound(firstLinks, other, {}, &FirstLink::other);
            return found != firstLinks.end() && found->other == other ? found->link : noLink;
        }
    };

    explicit WormData(const Morphology &worm);

    WormData(const WormData &) = delete;
    WormData &operator=(const WormData &) = delete;

    [[nodiscard]] int regionCount() const { return static_cast<int>(regions.size()); }
    [[nodiscard]] const RegionData &region(int position) const
    {
        return regions[static_cast<std::size_t>(position)];
    }

private:
    void makeRoom(const Morphology &worm);
    void indexLinks();
    /// Notes the first one to each region of @p ofRegion, which are links of one region.
    void indexLinks(std::span<LinkData> ofRegion);

    std::vector<RegionData> regions; // which show parts of the lists below
    std::vector<double> params;
    std::vector<OrganData> organs;
    std::vector<LinkData> links;
    std::vector<FirstLink> firstLinks;
};

} // namespace Planaria
