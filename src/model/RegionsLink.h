#pragma once

#include "db/DBElementData.h"

#include <QHash>

namespace Planaria {

class Morphology;
class Region;

/// The edge between two regions of a morphology: where the second centre lies as seen from the
/// first, and where the border between them crosses the line that joins the centres.
///
/// Owned by the Morphology; both regions list it without owning it. A link of a damaged file that
/// names a region its morphology does not have is listed by no region and never written.
class RegionsLink final : public DBElement
{
public:
    /// Lists the new link with both regions, which adjust their params.
    /// @param dist  distance of the centres, scene units
    /// @param ang   direction from @p from to @p to, radians; stored in [0, 2 pi)
    /// @param ratio share of @p dist that belongs to @p from, 0 to 1
    RegionsLink(Region *from, Region *to, double dist, double ang, double ratio);
    /// A copy between regions whose params were copied too.
    RegionsLink(const RegionsLink &other, Morphology *owner, Region *from, Region *to,
                bool keepIds);
    /// @param regions by row id
    RegionsLink(Morphology *owner, const DBElementData &parentData,
                const QHash<int, Region *> &regions);

    [[nodiscard]] Region *from() const { return from_; }
    [[nodiscard]] Region *to() const { return to_; }
    /// Whether both of its regions exist.
    [[nodiscard]] bool isComplete() const { return from_ && to_; }

    // As stored, seen from the from-region.

    [[nodiscard]] double totalDist() const { return dist_; }
    [[nodiscard]] double fromAng() const { return ang_; }
    [[nodiscard]] double fromRatio() const { return ratio_; }

    // As seen from @p region; one foreign to the link counts as its to-region.

    /// The other end; a region foreign to the link gets the from-region.
    Region *otherRegion(const Region *region) const;
    /// Distance from the centre to the border, scene units.
    double dist(const Region *region) const;
    /// Share of the total distance.
    double Ratio(const Region *region) const;
    /// Direction to the other end, radians.
    double ang(const Region *region) const;

    void setTotalDist(double dist) { dist_ = dist; }
    void setFromRatio(double ratio) { ratio_ = ratio; }
    void setToRatio(double ratio) { ratio_ = 1.0 - ratio; }
    void setRatio(double ratio, const Region *region);

    // The angle is stored as it is given, and both regions put the link where it now belongs.

    void setFromAng(double ang);
    void setToAng(double ang);
    void setAng(double ang, const Region *region);

    /// Takes the link out of regions and morphology, which then owns it until its next submit.
    void removeFromMorphology();

    /// Compares the three numbers, not the regions.
    bool operator==(const RegionsLink &other) const;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

private:
    void changeAng(double fromAng, double toAng);

    Morphology *morphology; // null once removed
    Region *from_;
    Region *to_;
    double dist_ = 0.0;
    double ang_ = 0.0;
    double ratio_ = 0.0;
    DBElementData data;
};

} // namespace Planaria
