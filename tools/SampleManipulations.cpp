#include "SampleManipulations.h"

#include "db/ExperimentFactory.h"
#include "model/Angles.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/RemoveAction.h"

#include <QLatin1String>

#include <array>

namespace Planaria::SampleManipulations {

namespace {

using Area = QList<QPointF>;

/// A manipulation in the making, whose tree grows at the root.
class Sample final
{
public:
    Sample(const char *name, DB *database)
        : db(database), manipulation(std::make_unique<Manipulation>(db))
    {
        manipulation->setName(QLatin1String(name));
    }

    void cutAway(const Area &area) { setArea(manipulation->addRemoveAction(root()), area); }
    void keepOnly(const Area &area) { setArea(manipulation->addCropAction(root()), area); }
    void irradiate(const Area &area) { setArea(manipulation->addIrradiationAction(root()), area); }

    /// Sets in the part @p area of a second worm, turned about the middle of that worm, which comes
    /// to lie at @p pos.
    void graft(const Area &area, const QPointF &pos, double turn)
    {
        auto donor = ExperimentFactory::instance(nullptr)->loadDefaultMorphology(db);
        JoinAction *join = manipulation->addJoinAction(root(), donor.release());
        setArea(manipulation->addCropAction(join->fromAction2()), area);
        join->setVectX(pos.x());
        join->setVectY(pos.y());
        join->setRot(turn);
    }

    std::unique_ptr<Manipulation> take() { return std::move(manipulation); }

private:
    [[nodiscard]] ManipulationAction *root() const { return manipulation->rootAction(); }

    static void setArea(AreaAction *action, const Area &area)
    {
        for (const QPointF &corner : area)
            action->addAreaPoint(corner);
    }

    DB *db;
    std::unique_ptr<Manipulation> manipulation;
};

// The wild type is drawn with the middle of its trunk at the origin. It reaches from -280 at the
// tip of the tail to 280 at that of the head; its regions meet at -100 and 100.

constexpr double beyond = 300.0;
constexpr double aside = 110.0;

Area box(double left, double bottom, double right, double top)
{
    return {{right, top}, {left, top}, {left, bottom}, {right, bottom}};
}

/// The whole width between two heights.
Area band(double bottom, double top)
{
    return box(-aside, bottom, aside, top);
}

const Area head = band(98.0, beyond);
const Area tail = band(-beyond, -98.0);
const Area wholeWorm = band(-beyond, beyond);
/// A slit along the midline, from the tip of the head into the trunk.
const Area slit{{0.0, 40.0}, {7.0, beyond}, {-7.0, beyond}};

// --- Cuts ---

void amputateHead(Sample &sample)
{
    sample.cutAway(head);
}

void keepFrontHalf(Sample &sample)
{
    sample.keepOnly(band(0.0, beyond));
}

void keepBackHalf(Sample &sample)
{
    sample.keepOnly(band(-beyond, 0.0));
}

void cutLaterally(Sample &sample)
{
    sample.cutAway(box(22.0, -beyond, aside, beyond));
}

void splitLengthwise(Sample &sample)
{
    sample.cutAway(slit);
}

void keepTrunk(Sample &sample)
{
    sample.keepOnly(band(-90.0, 90.0));
}

void resectPharynx(Sample &sample)
{
    sample.cutAway(
        {{0.0, 54.0}, {-25.0, 40.0}, {-25.0, -42.0}, {0.0, -56.0}, {25.0, -42.0}, {25.0, 40.0}});
}

void amputateTwice(Sample &sample)
{
    sample.cutAway(head);
    sample.cutAway(tail);
}

void amputateThenSplit(Sample &sample)
{
    sample.cutAway(tail);
    sample.cutAway(slit);
}

// --- Grafts ---

/// At the right flank, looking away from the body.
void graftHead(Sample &sample)
{
    sample.graft(head, {-62.0, 0.0}, -Angles::quarterTurn);
}

void reverseTrunk(Sample &sample)
{
    const Area middle = band(-70.0, 70.0);
    sample.cutAway(middle);
    sample.graft(middle, {0.0, 0.0}, Angles::halfTurn);
}

// --- Irradiations ---

void irradiateLocally(Sample &sample)
{
    sample.irradiate(band(45.0, 110.0));
}

void rescueIrradiated(Sample &sample)
{
    sample.irradiate(wholeWorm);
    sample.graft(box(-35.0, -95.0, 35.0, -45.0), {0.0, 0.0}, 0.0);
}

struct Recipe
{
    const char *name;
    void (*carryOut)(Sample &sample);
};

constexpr auto recipes = std::to_array<Recipe>({
    {"Head amputation", amputateHead},
    {"Transverse cut, front half", keepFrontHalf},
    {"Transverse cut, back half", keepBackHalf},
    {"Lateral cut", cutLaterally},
    {"Longitudinal split", splitLengthwise},
    {"Trunk fragment", keepTrunk},
    {"Pharynx resection", resectPharynx},
    {"Head and tail amputation", amputateTwice},
    {"Tail amputation, then split head", amputateThenSplit},
    {"Head grafted onto a trunk", graftHead},
    {"Reversed trunk", reverseTrunk},
    {"Local irradiation", irradiateLocally},
    {"Irradiated host, sound graft", rescueIrradiated},
});

} // namespace

std::vector<std::unique_ptr<Manipulation>> all(DB *db)
{
    std::vector<std::unique_ptr<Manipulation>> manipulations;
    for (const Recipe &recipe : recipes) {
        Sample sample(recipe.name, db);
        recipe.carryOut(sample);
        manipulations.push_back(sample.take());
    }
    return manipulations;
}

} // namespace Planaria::SampleManipulations
