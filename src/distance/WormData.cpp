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

bool WormData::OrganData::operator==(const OrganData &other) const
{
    const auto same = [](const QPointF &a, const QPointF &b) {
        return a.x() == b.x() && a.y() == b.y();
    };
    return isSpot == other.isSpot && typeId == other.typeId && rot == other.rot &&
           same(pos, other.pos) && same(end1, other.end1) && same(end2, other.end2);
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
    firstLinks.reserve(links.size());
    std::span<LinkData> ends(links);
    for (RegionData &region : regions) {
        const std::size_t begin = firstLinks.size();
        indexLinks(ends.first(region.links.size()));
        region.firstLinks = std::span(firstLinks).subspan(begin);
        ends = ends.subspan(region.links.size());
    }
}

void WormData::indexLinks(std::span<LinkData> ofRegion)
{
    const auto begin = static_cast<std::ptrdiff_t>(firstLinks.size());
    for (std::size_t i = 0; i < ofRegion.size(); ++i)
        firstLinks.push_back({ofRegion[i].other, static_cast<int>(i)});
    const auto added = firstLinks.begin() + begin;
    std::sort(added, firstLinks.end(), [](const FirstLink &a, const FirstLink &b) {
        return a.other != b.other ? a.other < b.other : a.link < b.link;
    });
    firstLinks.erase(
        std::unique(added, firstLinks.end(),
                    [](const FirstLink &a, const FirstLink &b) { return a.other == b.other; }),
        firstLinks.end());
    for (auto first = added; first != firstLinks.end(); ++first)
        ofRegion[static_cast<std::size_t>(first->link)].isFirst = true;
}

} // namespace Planaria
