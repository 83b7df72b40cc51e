#include "model/Region.h"

#include "db/ExperimentFactory.h"
#include "model/Angles.h"
#include "model/Children.h"
#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"

#include <algorithm>

namespace Planaria {

namespace {

constexpr auto table = "Region";

/// The distance of @p angle from zero, either way round.
double distanceFromZero(double angle)
{
    const double folded = Angles::normalized(angle);
    return folded > Angles::halfTurn ? Angles::fullTurn - folded : folded;
}

} // namespace

Region::Region(Morphology *morphology, RegionType *type)
    : morphology_(morphology), type_(type), data(table)
{
    for (int index = 0; index < 4; ++index)
        params_.append(new RegionParam(this, index));
}

Region::Region(Morphology *morphology, const DBElementData &parentData)
    : morphology_(morphology), data(table, parentData)
{
    type_ = ExperimentFactory::instance(nullptr)->regionType(data.loadValue(2).toInt());
    loadParams();
    loadOrgans();
    data.loadFinished();
}

Region::Region(const Region &other, Morphology *morphology, bool keepIds)
    : morphology_(morphology), type_(other.type_), data(other.data, keepIds)
{
    for (const Organ *organ : other.organs_) {
        if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ))
            organs_.append(new SpotOrgan(*spot, this, keepIds));
        else if (const auto *line = dynamic_cast<const LineOrgan *>(organ))
            organs_.append(new LineOrgan(*line, this, keepIds));
    }
    for (const RegionParam *param : other.params_)
        params_.append(new RegionParam(*param, this, keepIds));
}

Region::~Region()
{
    qDeleteAll(organs_);
    qDeleteAll(params_);
}

void Region::loadParams()
{
    data.loadReferences("RegionParam", "ParamInd");
    while (data.nextReference())
        params_.append(new RegionParam(this, data));
}

void Region::loadOrgans()
{
    data.loadReferences("Organ");
    while (data.nextReference()) {
        if (const int spotId = rowId(data.loadRefValue(4)))
            organs_.append(new SpotOrgan(spotId, this, data));
        else if (const int lineId = rowId(data.loadRefValue(5)))
            organs_.append(new LineOrgan(lineId, this, data));
    }
}

void Region::setParam(int index, double value)
{
    if (index >= 0 && index < params_.size())
        params_.at(index)->setValue(value);
}

void Region::setParams(const QList<double> &values)
{
    for (int index = 0; index < values.size(); ++index)
        setParam(index, values.at(index));
}

// --- Links ---

RegionsLink *Region::addLink(Region *other, double dist, double ang, double ratio)
{
    return morphology_->addRegionsLink(this, other, dist, ang, ratio);
}

void Region::addLink(RegionsLink *link, bool updateParams)
{
    const double ang = link->ang(this);
    const qsizetype n = links_.size();
    const auto next = std::find_if(links_.cbegin(), links_.cend(), [&](const RegionsLink *other) {
        return other->ang(this) > ang;
    });
    const qsizetype position = next - links_.cbegin();
    links_.insert(position, link);
    if (!updateParams)
        return;

    if (n < 2) {
        // Four quadrants around a region without links, two halves around one with a link: the
        // param of the sector that the link points into makes way.
        const int sector = sectorOf(ang, n == 0 ? 4 : 2);
        dropParam(sector);
        renumberParams(sector);
    } else {
        insertParam(std::min(position + 1, n));
    }
}

bool Region::removeLink(RegionsLink *link)
{
    const qsizetype n = links_.size();
    const qsizetype position = links_.indexOf(link);
    if (position < 0)
        return false;

    links_.removeAt(position);
    if (n <= 2) {
        insertParam(sectorOf(link->ang(this), n == 1 ? 4 : 2));
    } else {
        dropParam(position);
        renumberParams(position);
    }
    return true;
}

void Region::linkAngChanged(RegionsLink *link, double newAng)
{
    const qsizetype from = links_.indexOf(link);
    if (links_.size() < 2 || from < 0)
        return;

    qsizetype to = from;
    while (to + 1 < links_.size() && newAng > links_.at(to + 1)->ang(this))
        ++to;
    if (to == from) {
        while (to > 0 && links_.at(to - 1)->ang(this) > newAng)
            --to;
    }
    if (to == from)
        return;

    links_.move(from, to);

    // Nearer to its neighbour than to zero, the link jumped over it, and the params stay with
    // their places. Otherwise it passed zero: only the seam of the list has moved.
    const double toZero = distanceFromZero(newAng);
    const double toNeighbour = distanceFromZero(newAng - links_.at(from)->ang(this));
    if (toNeighbour <= toZero || std::max(from, to) >= params_.size())
        return;
    params_.move(from, to);
    renumberParams(0);
}

RegionsLink *Region::isLinked(const Region *other) const
{
    const auto link = std::find_if(links_.cbegin(), links_.cend(), [&](const RegionsLink *each) {
        return each->otherRegion(this) == other;
    });
    return link == links_.cend() ? nullptr : *link;
}

int Region::sectorOf(double ang, int count)
{
    // An angle of a damaged file may be infinite, and one near a full turn may be rounded up to it.
    const double sector = std::floor(Angles::normalized(ang) / (Angles::fullTurn / count));
    return sector > 0.0 ? static_cast<int>(std::min(sector, count - 1.0)) : 0;
}

void Region::insertParam(qsizetype position)
{
    position = std::min(position, params_.size());
    params_.insert(position, new RegionParam(this, static_cast<int>(position)));
    renumberParams(position);
}

void Region::dropParam(qsizetype position)
{
    if (position < params_.size())
        data.removeReference(params_.takeAt(position));
}

void Region::renumberParams(qsizetype from)
{
    for (qsizetype position = from; position < params_.size(); ++position)
        params_.at(position)->setIndex(static_cast<int>(position));
}

// --- Organs ---

SpotOrgan *Region::addSpotOrgan(SpotOrganType *type, const QPointF &pos, double rot)
{
    auto *organ = new SpotOrgan(type, this, pos, rot);
    organs_.append(organ);
    return organ;
}

LineOrgan *Region::addLineOrgan(LineOrganType *type, const QPointF &pos, const QPointF &end1,
                                const QPointF &end2)
{
    auto *organ = new LineOrgan(type, this, pos, end1, end2);
    organs_.append(organ);
    return organ;
}

bool Region::removeOrgan(Organ *organ)
{
    if (!organs_.removeOne(organ))
        return false;
    data.removeReference(organ);
    return true;
}

// --- The whole ---

void Region::removeFromMorphology()
{
    if (!morphology_)
        return;
    for (RegionsLink *link : QList(links_))
        link->removeFromMorphology();
    // What is left is half a link of a damaged file, which no region lists.
    for (RegionsLink *link : QList(morphology_->links())) {
        if (link->from() == this || link->to() == this)
            link->removeFromMorphology();
    }
    std::exchange(morphology_, nullptr)->removeRegion(this);
}

bool Region::operator==(const Region &other) const
{
    return *type_ == *other.type_ &&
           std::equal(params_.cbegin(), params_.cend(), other.params_.cbegin(),
                      other.params_.cend(),
                      [](const RegionParam *a, const RegionParam *b) {
                          return a->value() == b->value();
                      }) &&
           haveEqualChildren(organs_, other.organs_);
}

int Region::submit(DB *db)
{
    return data.submit(db, DBElementData::Parent("Morphology", morphology_),
                       type_->column(data, db), DBElementData::Values(), params_, organs_);
}

bool Region::erase()
{
    return data.erase({}, params_, organs_);
}

} // namespace Planaria
