#include "WormParts.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/Region.h"

namespace Planaria::WormParts {

namespace {

// Ids in the vocabulary that every file holds.
enum RegionId { Head = 1, Trunk = 2, Tail = 3 };
enum SpotOrganId { Eye = 1, Brain = 2, Pharynx = 3 };
enum LineOrganId { NerveCord = 1 };

ExperimentFactory *vocabulary()
{
    return ExperimentFactory::instance(nullptr);
}

Region *addRegion(Morphology &worm, RegionId type)
{
    return worm.addRegion(vocabulary()->regionType(type));
}

Region *addEnd(Region *body, RegionId type, double facing, const End &size)
{
    Region *end = addRegion(*body->morphology(), type);
    body->addLink(end, size.dist, facing, 0.5);
    end->setParams({size.flank, size.tip, size.flank});
    return end;
}

double leftwards(Side side)
{
    return side == Side::Left ? 1.0 : -1.0;
}

} // namespace

QPointF at(double facing, double ahead, double left)
{
    return ahead * Angles::direction(facing) +
           left * Angles::direction(facing + Angles::quarterTurn);
}

// --- Regions ---

Region *addHead(Morphology &worm)
{
    return addRegion(worm, Head);
}

Region *addTrunk(Morphology &worm)
{
    return addRegion(worm, Trunk);
}

Region *addTail(Morphology &worm)
{
    return addRegion(worm, Tail);
}

Region *addHead(Region *body, double facing, const End &size)
{
    return addEnd(body, Head, facing, size);
}

Region *addTail(Region *body, double facing, const End &size)
{
    return addEnd(body, Tail, facing, size);
}

Region *addWholeHead(Region *body, double facing, const End &size)
{
    Region *head = addHead(body, facing, size);
    addBrain(head, facing);
    addEyes(head, facing);
    return head;
}

// --- Organs ---

void addEye(Region *region, const QPointF &pos, double facing)
{
    region->addSpotOrgan(vocabulary()->spotOrganType(Eye), pos, Angles::normalized(facing));
}

void addEyes(Region *head, double facing)
{
    for (const Side side : {Side::Right, Side::Left}) {
        // The pupils look at each other.
        addEye(head, at(facing, 21.2, leftwards(side) * 21.2),
               facing - leftwards(side) * Angles::quarterTurn);
    }
}

void addBrainLobe(Region *head, double facing, Side side)
{
    constexpr double turn = 105.0 * Angles::halfTurn / 180.0; // the lobes lean together in front
    head->addSpotOrgan(vocabulary()->spotOrganType(Brain), at(facing, 15.0, leftwards(side) * 26.0),
                       Angles::normalized(facing - leftwards(side) * turn));
}

void addBrain(Region *head, double facing)
{
    addBrainLobe(head, facing, Side::Right);
    addBrainLobe(head, facing, Side::Left);
}

void addPharynx(Region *trunk, double facing)
{
    trunk->addSpotOrgan(vocabulary()->spotOrganType(Pharynx), QPointF(),
                        Angles::normalized(facing));
}

void addCord(Region *region, const QPointF &from, const QPointF &through, const QPointF &to)
{
    region->addLineOrgan(vocabulary()->lineOrganType(NerveCord), through, from - through,
                         to - through);
}

void addCords(Region *region, const QPointF &from, const QPointF &through, const QPointF &to)
{
    addCord(region, from, through, to);
    addCord(region, mirrored(from), mirrored(through), mirrored(to));
}

void addTrunkCords(Region *trunk, const QPointF &from, const QPointF &to)
{
    addCords(trunk, from, {43.0, 0.0}, to);
}

} // namespace Planaria::WormParts
