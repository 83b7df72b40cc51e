#include "SampleWorms.h"

#include "WormPainter.h"
#include "WormParts.h"
#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/SpotOrgan.h"

#include <QLatin1String>

namespace Planaria::SampleWorms {

using namespace WormParts;

namespace {

using Worm = std::unique_ptr<Morphology>;

Worm newWorm(const char *name)
{
    auto worm = std::make_unique<Morphology>();
    worm->setName(QLatin1String(name));
    return worm;
}

Worm wildType()
{
    return ExperimentFactory::instance(nullptr)->createWildMorphology();
}

/// A worm with the regions of the wild type, and with its organs but for what the caller changes.
struct Variant
{
    explicit Variant(const char *name) : worm(wildType()) { worm->setName(QLatin1String(name)); }

    Worm worm;
    Region *head = worm->regions().at(0);
    Region *trunk = worm->regions().at(1);
    Region *tail = worm->regions().at(2);
};

void removeOrgans(Region *region, const char *typeName)
{
    const QList<Organ *> &organs = region->organs();
    for (Organ *organ : organs) {
        if (organ->typeName() == QLatin1String(typeName))
            organ->removeFromMorphology();
    }
}

// --- Pieces that a cut leaves ---

/// Params of a trunk with one link, whose other end is the bulge of a wound.
const QList<double> woundedTrunk{60.0, 62.0, 60.0};

Worm headFragment()
{
    Worm worm = newWorm("Head fragment");
    Region *head = addHead(*worm);
    head->setParams({60.0, 80.0, 60.0, 62.0});
    addBrain(head, north);
    addEyes(head, north);
    addCords(head, {35.0, -23.5}, {37.0, -45.0}, {38.0, -80.0});
    return worm;
}

Worm trunkFragment()
{
    Worm worm = newWorm("Trunk fragment");
    Region *trunk = addTrunk(*worm);
    trunk->setParams({62.0, 75.0, 62.0, 75.0});
    addPharynx(trunk, north);
    addTrunkCords(trunk, cordAtFrontWound, cordAtBackWound);
    return worm;
}

Worm tailFragment()
{
    Worm worm = newWorm("Tail fragment");
    Region *tail = addTail(*worm);
    tail->setParams({50.0, 60.0, 50.0, 80.0});
    addCords(tail, {29.0, 70.0}, {22.0, 10.0}, {7.0, -50.0});
    return worm;
}

Worm headlessFragment()
{
    Worm worm = newWorm("Headless fragment");
    Region *trunk = addTrunk(*worm);
    addTail(trunk, south);
    trunk->setParams(woundedTrunk);
    addPharynx(trunk, north);
    addTrunkCords(trunk, cordAtFrontWound, cordInTail);
    return worm;
}

Worm taillessFragment()
{
    Worm worm = newWorm("Tailless fragment");
    Region *trunk = addTrunk(*worm);
    addWholeHead(trunk, north);
    trunk->setParams(woundedTrunk);
    addPharynx(trunk, north);
    addTrunkCords(trunk, cordInHead, cordAtBackWound);
    return worm;
}

/// Cut in front of the pharynx.
Worm twoPieces()
{
    Worm worm = newWorm("Two pieces");
    Region *front = addTrunk(*worm);
    addWholeHead(front, north, {60.0, 80.0, 150.0});
    front->setParams({60.0, 30.0, 60.0});
    addCords(front, {35.0, 126.5}, {41.0, 20.0}, {41.0, -40.0});

    Region *back = addTrunk(*worm);
    addTail(back, south);
    back->setParams(woundedTrunk);
    addPharynx(back, north);
    addTrunkCords(back, cordAtFrontWound, cordInTail);
    worm->addImage(WormPainter::photo(*wildType(), 35.0));
    worm->addImage(WormPainter::photo(*worm, -20.0));
    return worm;
}

// --- Stages of growth ---

Worm regeneratingFragment()
{
    Worm worm = newWorm("Regenerating fragment");
    Region *trunk = addTrunk(*worm);
    addHead(trunk, north, blastema);
    addTail(trunk, south, blastema);
    trunk->setParams({60.0, 60.0});
    addPharynx(trunk, north);
    addTrunkCords(trunk, cordAtFrontWound, cordAtBackWound);
    return worm;
}

/// About to tear itself in two behind the pharynx.
Worm fission()
{
    Worm worm = newWorm("Fission");
    Region *trunk = addTrunk(*worm);
    addWholeHead(trunk, north);
    Region *waist = addTrunk(*worm);
    trunk->addLink(waist, 150.0, south, 0.6);
    addTail(waist, south, {50.0, 80.0, 130.0});
    trunk->setParams({60.0, 60.0});
    waist->setParams({16.0, 16.0});
    addPharynx(trunk, north);
    addTrunkCords(trunk, cordInHead, {9.0, -150.0});
    addCords(waist, {9.0, 0.0}, {20.0, -80.0}, {7.0, -180.0});
    return worm;
}

// --- Changes of the axis ---

Worm twoHeaded()
{
    Worm worm = newWorm("Two-headed");
    Region *trunk = addTrunk(*worm);
    addWholeHead(trunk, north);
    addWholeHead(trunk, south);
    trunk->setParams({60.0, 60.0});
    addPharynx(trunk, north);
    addTrunkCords(trunk, cordInHead, behind(cordInHead));
    worm->addImage(WormPainter::photo(*trunkFragment(), 0.0));
    worm->addImage(WormPainter::photo(*worm, 55.0));
    return worm;
}

/// Two trunks back to back, each with the pharynx of its own head.
Worm twoPharynges()
{
    Worm worm = newWorm("Two-headed, two pharynges");
    Region *upper = addTrunk(*worm);
    Region *lower = addTrunk(*worm);
    upper->addLink(lower, 130.0, south, 0.5);
    addWholeHead(upper, north, {60.0, 80.0, 170.0});
    addWholeHead(lower, south, {60.0, 80.0, 170.0});
    upper->setParams({60.0, 60.0});
    lower->setParams({60.0, 60.0});
    addPharynx(upper, north);
    addPharynx(lower, south);
    addCords(upper, {35.0, 146.5}, {43.0, -65.0}, {35.0, -276.5});
    return worm;
}

Worm twoTailed()
{
    Worm worm = newWorm("Two-tailed");
    Region *trunk = addTrunk(*worm);
    addTail(trunk, north);
    addTail(trunk, south);
    trunk->setParams({60.0, 60.0});
    addPharynx(trunk, north);
    addTrunkCords(trunk, behind(cordInTail), cordInTail);
    return worm;
}

/// Heads all around a trunk whose pharynx stays, each joined to the next by a cord.
Worm radial(const char *name, int heads, const End &head, double radius)
{
    Worm worm = newWorm(name);
    Region *trunk = addTrunk(*worm);
    const double turn = Angles::fullTurn / heads;
    for (int i = 0; i < heads; ++i) {
        const double facing = north + i * turn;
        const double reach = head.dist - 23.5;
        addWholeHead(trunk, facing, head);
        addCord(trunk, at(facing, reach, 35.0),
                (radius - 17.0) * Angles::direction(facing + 0.5 * turn),
                at(facing + turn, reach, -35.0));
    }
    trunk->setParams(QList<double>(heads, radius));
    addPharynx(trunk, north);
    return worm;
}

Worm sixHeaded()
{
    return radial("Six-headed", 6, {60.0, 80.0, 230.0}, 100.0);
}

// --- More than one end on a side ---

Worm janusHeads()
{
    Worm worm = newWorm("Janus heads");
    Region *trunk = addTrunk(*worm);
    const double lean = Angles::halfTurn / 6.0;
    addWholeHead(trunk, north - lean);
    addWholeHead(trunk, north + lean);
    addTail(trunk, south);
    trunk->setParams({66.0, 62.0, 62.0});
    addPharynx(trunk, north);
    addCord(trunk, at(north - lean, 176.5, -35.0), {43.0, 0.0}, cordInTail);
    addCord(trunk, at(north + lean, 176.5, 35.0), {-43.0, 0.0}, mirrored(cordInTail));
    addCord(trunk, at(north - lean, 176.5, 35.0), {0.0, 52.0}, at(north + lean, 176.5, -35.0));
    return worm;
}

Worm forkedTail()
{
    Worm worm = newWorm("Forked tail");
    Region *trunk = addTrunk(*worm);
    const double lean = Angles::halfTurn / 6.0;
    addWholeHead(trunk, north);
    addTail(trunk, south - lean);
    addTail(trunk, south + lean);
    trunk->setParams({62.0, 60.0, 62.0});
    addPharynx(trunk, north);
    addTrunkCords(trunk, cordInHead, at(south + lean, 230.0, 20.0));
    return worm;
}

Worm lateralHead()
{
    Variant variant("Lateral head");
    addWholeHead(variant.trunk, east, {56.0, 72.0, 165.0});
    variant.trunk->setParams({80.0, 60.0, 80.0});
    addCord(variant.trunk, {141.5, 33.0}, {70.0, 24.0}, {43.0, 50.0});
    addCord(variant.trunk, {141.5, -33.0}, {70.0, -24.0}, {43.0, -50.0});
    return std::move(variant.worm);
}

// --- Changes of organs ---

Worm eyeless()
{
    Variant variant("Eyeless");
    removeOrgans(variant.head, "Eye");
    return std::move(variant.worm);
}

/// The halves of the head have met at the midline.
Worm cyclops()
{
    Variant variant("Cyclops");
    removeOrgans(variant.head, "Eye");
    addEye(variant.head, {0.0, 38.0}, north);
    for (Organ *lobe : variant.head->organs()) {
        if (lobe->typeName() == QLatin1String("Brain"))
            lobe->setPos({0.7 * lobe->pos().x(), 0.0});
    }
    return std::move(variant.worm);
}

Worm supernumeraryEye()
{
    Variant variant("Supernumerary eye");
    addEye(variant.head, {14.0, -36.0}, Angles::halfTurn);
    return std::move(variant.worm);
}

Worm eyeInTail()
{
    Variant variant("Eye in the tail");
    addEye(variant.tail, {0.0, 40.0}, south);
    return std::move(variant.worm);
}

Worm noPharynx()
{
    Variant variant("No pharynx");
    removeOrgans(variant.trunk, "Phar.");
    return std::move(variant.worm);
}

} // namespace

Worm fourHeaded()
{
    return radial("Four-headed", 4, {60.0, 76.0, 120.0}, 88.0);
}

std::vector<Worm> all()
{
    std::vector<Worm> worms;
    for (Worm (*make)() : {wildType,         headFragment,     trunkFragment, tailFragment,
                           headlessFragment, taillessFragment, twoPieces,     regeneratingFragment,
                           fission,          twoHeaded,        twoPharynges,  twoTailed,
                           fourHeaded,       sixHeaded,        janusHeads,    forkedTail,
                           lateralHead,      eyeless,          cyclops,       supernumeraryEye,
                           eyeInTail,        noPharynx})
        worms.push_back(make());
    return worms;
}

} // namespace Planaria::SampleWorms
