#include "distance/WormData.h"

#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"

namespace Planaria {

namespace {

/// Appends what @p toData makes of @p members to @p all, which has room for it.
template <typename Member, typename Data, typename ToData>
std::span<const Data> append(const QList<Member *> &members, std::vector<Data> *all,
                             const ToData &toData)
{
    const std::size_t begin = all->size();
    for (const Member *member : members)
        all->push_back(toData(member));
    return std::span(*all).subspan(begin);
}

} // namespace

WormData::OrganData::OrganData(const Organ *organ) : pos(organ->pos())
{
    const auto *spot = dynamic_cast<const SpotOrgan *>(organ);
    isSpot = spot != nullptr;
    if (spot) {
        typeId = spot->type()->id();
        rot = spot->rot();
    } else if (const auto *line = dynamic_cast<const LineOrgan *>(organ)) {
        end1 = line->end1();
        end2 = line->end2();
    }
}

WormData::WormData(const Morphology &worm)
{
    makeRoom(worm);
    for (const Region *region : worm.regions()) {
        const auto toLink = [&](const RegionsLink *link) {
            const qsizetype other = worm.regions().indexOf(link->otherRegion(region));
            return LinkData{static_cast<int>(other), link->totalDist(), link->ang(region)};
        };
        regions.push_back({
            region->type()->id(),
            append(region->params(), &params,
                   [](const RegionParam *param) { return param->value(); }),
            append(region->organs(), &organs, [](const Organ *organ) { return OrganData(organ); }),
            append(region->links(), &links, toLink),
            {},
        });
    }
    indexLinks();
}

void WormData::makeRoom(const Morphology &worm)
{
    qsizetype paramCount = 0;
    qsizetype organCount = 0;
    qsizetype linkCount = 0;
    for (const Region *region : worm.regions()) {
        paramCount += region->params().size();
        organCount += region->organs().size();
        linkCount += region->links().size();
    }
    regions.reserve(static_cast<std::size_t>(worm.regions().size()));
    params.reserve(static_cast<std::size_t>(paramCount));
    organs.reserve(static_cast<std::size_t>(organCount));
    links.reserve(static_cast<std::size_t>(linkCount));
}

void WormData::indexLinks()
{
    firstLinks.assign(regions.size() * regions.size(), noLink);
    std::span<int> row(firstLinks);
    std::span<LinkData> ends(links);
    for (RegionData &region : regions) {
        for (std::size_t i = 0; i < region.links.size(); ++i) {
            int &first = row[static_cast<std::size_t>(ends[i].other)];
            ends[i].isFirst = first == noLink;
            if (ends[i].isFirst)
                first = static_cast<int>(i);
        }
        region.firstLinks = row.first(regions.size());
        row = row.subspan(regions.size());
        ends = ends.subspan(region.links.size());
    }
}

} // namespace Planaria
