#include "distance/LinkCosts.h"

#include "distance/DistAlgo.h"
#include "model/Angles.h"

#include <cmath>

namespace Planaria {

namespace {

using namespace DistAlgo::Costs;
using LinkData = WormData::LinkData;

constexpr int noLink = WormData::noLink;
/// Damaged files may hold worms whose tables would take gigabytes.
constexpr std::size_t mostCells = 1 << 20;

std::size_t at(int index)
{
    return static_cast<std::size_t>(index);
}

double linkChange(const LinkData &a, const LinkData &b)
{
    double cost = changeLinkDistance * std::abs(b.dist - a.dist);
    const double turn = Angles::between(a.ang, b.ang) / Angles::halfTurn;
    cost += changeLinkAngle * turn;
    if (turn > 0.5)
        cost += changeLinkAngleMore90Penalty;
    return cost;
}

} // namespace

LinkCosts::LinkCosts(const WormData &first, const WormData &second) : a(first), b(second)
{
    const auto list = [](const WormData &worm, bool earlierOnly, Links *links) {
        for (int region = 0; region < worm.regionCount(); ++region) {
            for (const LinkData &link : worm.region(region).links) {
                if (!earlierOnly || link.other < region)
                    links->all.push_back({link.other, link.isFirst ? 1 : 0, &link});
            }
            links->begins.push_back(links->all.size());
        }
    };
    list(a, true, &linksA);
    list(b, false, &linksB);
    fillFirstLinks();
    fillChanges();
}

void LinkCosts::fillFirstLinks()
{
    const std::size_t count = at(b.regionCount());
    if (count * count > mostCells)
        return;
    firstLinks.assign(count * count, noLink);
    for (std::size_t region = 0; region < count; ++region) {
        for (std::size_t i = linksB.begins[region]; i < linksB.begins[region + 1]; ++i) {
            if (linksB.all[i].isFirst)
                firstLinks[region * count + at(linksB.all[i].other)] = static_cast<int>(i);
        }
    }
}

void LinkCosts::fillChanges()
{
    if (linksA.all.size() * linksB.all.size() > mostCells)
        return;
    changes.reserve(linksA.all.size() * linksB.all.size());
    for (const Link &from : linksA.all) {
        for (const Link &to : linksB.all)
            changes.push_back(linkChange(*from.data, *to.data));
    }
}

int LinkCosts::findFirstLink(int second, int other) const
{
    const int ofRegion = b.region(second).firstLinkTo(other);
    return ofRegion == noLink ? noLink : static_cast<int>(linksB.begins[at(second)]) + ofRegion;
}

double LinkCosts::workOutChange(const Link &from, int to) const
{
    return linkChange(*from.data, *linksB.all[at(to)].data);
}

} // namespace Planaria
