#pragma once

#include <QPointF>

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
        bool isFirst = true; // of those of its region that lead there
    };

    struct RegionData
    {
        int typeId;
        std::span<const double> params;
        std::span<const OrganData> organs;
        std::span<const LinkData> links;
        std::span<const int> firstLinks; // by other region: the first link there, or noLink
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

    std::vector<RegionData> regions; // which show parts of the lists below
    std::vector<double> params;
    std::vector<OrganData> organs;
    std::vector<LinkData> links;
    std::vector<int> firstLinks;
};

} // namespace Planaria
