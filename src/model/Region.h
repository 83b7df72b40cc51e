#pragma once

#include "db/DBElementData.h"

#include <QList>
#include <QPointF>

namespace Planaria {

class LineOrgan;
class LineOrganType;
class Morphology;
class Organ;
class RegionParam;
class RegionsLink;
class RegionType;
class SpotOrgan;
class SpotOrganType;

/// A node of a morphology's graph: a part of the body with a type, organs, and params, which are
/// the radii of the region (scene units) in directions that follow from its links:
///
/// | links     | params                                                                          |
/// |-----------|---------------------------------------------------------------------------------|
/// | none      | four, towards +x, +y, -x, -y                                                    |
/// | one       | three, a quarter, a half and three quarters of a turn from the link             |
/// | n, from 2 | n, the i-th on the bisector between link i and the next one, cyclically         |
///
/// Links are sorted by their angle as seen from this region; among equal angles the older comes
/// first. Adding and removing links keeps the number of params in step.
class Region final : public DBElement
{
public:
    /// A region with four params and neither links nor organs.
    Region(Morphology *morphology, RegionType *type);
    /// Loads params and organs too; links come later, from the morphology.
    Region(Morphology *morphology, const DBElementData &parentData);
    /// A deep copy without links.
    Region(const Region &other, Morphology *morphology, bool keepIds);
    ~Region() override;

    /// Null once the region is removed.
    [[nodiscard]] Morphology *morphology() const { return morphology_; }
    [[nodiscard]] RegionType *type() const { return type_; }
    [[nodiscard]] const QList<RegionParam *> &params() const { return params_; }
    [[nodiscard]] const QList<RegionsLink *> &links() const { return links_; }
    [[nodiscard]] const QList<Organ *> &organs() const { return organs_; }
    /// What waits to be erased; for looking only.
    [[nodiscard]] const DBElementData &record() const { return data; }

    void setType(RegionType *type) { type_ = type; }
    /// Sets the value of one param; an index that is not there changes nothing.
    void setParam(int index, double value);
    /// Sets the values of the first params, in order.
    void setParams(const QList<double> &values);

    /// Makes a link from this region to @p other, owned by the morphology.
    RegionsLink *addLink(Region *other, double dist, double ang, double ratio);
    /// Lists @p link at its angle. With @p updateParams one param more or less follows from it.
    void addLink(RegionsLink *link, bool updateParams);
    /// Unlists @p link. A region that comes down to one link or none gets a param of the default
    /// value back; one that keeps more loses the param at the place of the link.
    bool removeLink(RegionsLink *link);
    /// Sorts @p link to where its new angle belongs. Its param goes with it only where it passed
    /// angle 0, since then its neighbours are the same as before.
    void linkAngChanged(RegionsLink *link, double newAng);
    /// The first link to @p other, or null.
    RegionsLink *isLinked(const Region *other) const;

    SpotOrgan *addSpotOrgan(SpotOrganType *type, const QPointF &pos, double rot);
    LineOrgan *addLineOrgan(LineOrganType *type, const QPointF &pos, const QPointF &end1,
                            const QPointF &end2);
    /// Unlists @p organ and queues it for erasing. Called by Organ::removeFromMorphology().
    bool removeOrgan(Organ *organ);

    /// Takes the region with its links out of its morphology, which then owns them until its next
    /// submit.
    void removeFromMorphology();

    /// Compares type, params and organs in order, not the links.
    bool operator==(const Region &other) const;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

private:
    void loadParams();
    void loadOrgans();

    /// The place among @p count sectors of equal width around the region in which @p ang lies.
    static int sectorOf(double ang, int count);
    void insertParam(qsizetype position);
    void dropParam(qsizetype position);
    void renumberParams(qsizetype from);

    Morphology *morphology_;
    RegionType *type_;
    QList<RegionParam *> params_;
    QList<RegionsLink *> links_;
    QList<Organ *> organs_;
    DBElementData data;
};

} // namespace Planaria
