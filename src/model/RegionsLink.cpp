#include "model/RegionsLink.h"

#include "model/Angles.h"
#include "model/Morphology.h"
#include "model/Region.h"

namespace Planaria {

namespace {
constexpr auto table = "RegionsLink";
}

RegionsLink::RegionsLink(Region *from, Region *to, double dist, double ang, double ratio)
    : morphology(from->morphology()), from_(from), to_(to), dist_(dist),
      ang_(Angles::normalized(ang)), ratio_(ratio), data(table)
{
    from_->addLink(this, true);
    to_->addLink(this, true);
}

RegionsLink::RegionsLink(const RegionsLink &other, Morphology *owner, Region *from, Region *to,
                         bool keepIds)
    : morphology(owner), from_(from), to_(to), dist_(other.dist_), ang_(other.ang_),
      ratio_(other.ratio_), data(other.data, keepIds)
{
    if (isComplete()) {
        from_->addLink(this, false);
        to_->addLink(this, false);
    }
}

RegionsLink::RegionsLink(Morphology *owner, const DBElementData &parentData,
                         const QHash<int, Region *> &regions)
    : morphology(owner), data(table, parentData)
{
    from_ = regions.value(rowId(data.loadValue(1)));
    to_ = regions.value(rowId(data.loadValue(2)));
    dist_ = data.loadValue(3).toDouble();
    ratio_ = data.loadValue(4).toDouble();
    ang_ = data.loadValue(5).toDouble();
    data.loadFinished();

    if (isComplete()) {
        from_->addLink(this, false);
        to_->addLink(this, false);
    }
}

Region *RegionsLink::otherRegion(const Region *region) const
{
    return region == from_ ? to_ : from_;
}

double RegionsLink::dist(const Region *region) const
{
    return region == from_ ? dist_ * ratio_ : (1.0 - ratio_) * dist_;
}

double RegionsLink::Ratio(const Region *region) const
{
    return region == from_ ? ratio_ : 1.0 - ratio_;
}

double RegionsLink::ang(const Region *region) const
{
    return region == from_ ? ang_ : Angles::opposite(ang_);
}

void RegionsLink::setRatio(double ratio, const Region *region)
{
    if (region == from_)
        setFromRatio(ratio);
    else
        setToRatio(ratio);
}

void RegionsLink::setFromAng(double ang)
{
    changeAng(ang, Angles::opposite(ang));
}

void RegionsLink::setToAng(double ang)
{
    changeAng(Angles::opposite(ang), ang);
}

void RegionsLink::setAng(double ang, const Region *region)
{
    if (region == from_)
        setFromAng(ang);
    else
        setToAng(ang);
}

void RegionsLink::changeAng(double fromAng, double toAng)
{
    ang_ = fromAng;
    if (!isComplete())
        return;
    from_->linkAngChanged(this, fromAng);
    to_->linkAngChanged(this, toAng);
}

void RegionsLink::removeFromMorphology()
{
    if (!morphology)
        return;
    if (isComplete()) {
        from_->removeLink(this);
        to_->removeLink(this);
    }
    std::exchange(morphology, nullptr)->removeRegionsLink(this);
}

bool RegionsLink::operator==(const RegionsLink &other) const
{
    return dist_ == other.dist_ && ratio_ == other.ratio_ && ang_ == other.ang_;
}

int RegionsLink::submit(DB *db)
{
    // Two regions at one point leave no ratio, and SQLite takes no number that is none.
    if (std::isnan(ratio_))
        ratio_ = 0.5;
    return data.submit(db, DBElementData::Values{{"FromRegion", from_->id()},
                                                 {"ToRegion", to_->id()},
                                                 {"Dist", dist_},
                                                 {"Ratio", ratio_},
                                                 {"Ang", ang_}});
}

bool RegionsLink::erase()
{
    return data.erase();
}

} // namespace Planaria
