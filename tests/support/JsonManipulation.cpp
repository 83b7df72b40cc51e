#include "support/JsonManipulation.h"

#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/RemoveAction.h"

#include <QJsonArray>

namespace Planaria {

namespace {

/// The name of the worm from which the tree grows through first inputs.
QString firstWorm(const QJsonValue &tree)
{
    const QJsonValue input = tree["kind"] == "join" ? tree["from1"] : tree["from"];
    return input.isObject() ? firstWorm(input) : tree["name"].toString();
}

AreaAction *addAreaAction(Manipulation *manipulation, ManipulationAction *below,
                          const QString &kind)
{
    if (kind == "remove")
        return manipulation->addRemoveAction(below);
    if (kind == "crop")
        return manipulation->addCropAction(below);
    return manipulation->addIrradiationAction(below);
}

/// Adds the actions of @p tree above @p leaf, which stands for its first worm.
ManipulationAction *grow(Manipulation *manipulation, ManipulationAction *leaf,
                         const QJsonValue &tree, const WormMaker &worm)
{
    const QString kind = tree["kind"].toString();
    if (kind == "morphology")
        return leaf;
    if (kind == "join") {
        ManipulationAction *below = grow(manipulation, leaf, tree["from1"], worm);
        JoinAction *join =
            manipulation->addJoinAction(below, worm(firstWorm(tree["from2"])).release());
        grow(manipulation, join->fromAction2(), tree["from2"], worm);
        join->setVectX(tree["vect"][0].toDouble());
        join->setVectY(tree["vect"][1].toDouble());
        join->setRot(tree["rot"].toDouble());
        return join;
    }
    ManipulationAction *below = grow(manipulation, leaf, tree["from"], worm);
    AreaAction *action = addAreaAction(manipulation, below, kind);
    const QJsonArray points = tree["area"].toArray();
    for (const QJsonValue &point : points)
        action->addAreaPoint({point[0].toDouble(), point[1].toDouble()});
    return action;
}

} // namespace

std::unique_ptr<Manipulation> manipulationFromJson(const QJsonObject &tree, const WormMaker &worm)
{
    Manipulation grown(worm(firstWorm(tree)).release());
    grow(&grown, grown.rootAction(), tree, worm);
    return std::make_unique<Manipulation>(grown, false);
}

} // namespace Planaria
