#include "ActionTrees.h"

namespace Planaria {

int ActionTrees::morphology(const QString &name)
{
    return insert("Morphology", {{"Name", name}});
}

int ActionTrees::manipulation(const QString &name, int rootAction)
{
    return insert("Manipulation", {{"Name", name}, {"RootAction", rootAction}});
}

int ActionTrees::leaf(int morphology)
{
    return action("MorphologyAction", {{"Morphology", morphology}});
}

int ActionTrees::remove(int fromAction)
{
    return action("RemoveAction", {{"FromAction", fromAction}});
}

int ActionTrees::crop(int fromAction)
{
    return action("CropAction", {{"FromAction", fromAction}});
}

int ActionTrees::irradiate(int fromAction)
{
    return action("IrradiationAction", {{"FromAction", fromAction}});
}

int ActionTrees::join(int fromAction1, int fromAction2)
{
    return action("JoinAction", {{"FromAction1", fromAction1},
                                 {"FromAction2", fromAction2},
                                 {"VectX", 0.0},
                                 {"VectY", 0.0},
                                 {"Rot", 0.0}});
}

int ActionTrees::action(const QString &table, const QHash<QString, QVariant> &values)
{
    return insert("ManipulationAction", {{table, insert(table, values)}});
}

int ActionTrees::insert(const QString &table, const QHash<QString, QVariant> &values)
{
    const int id = library->db()->insertRow(table, values, false);
    if (id < 1)
        qFatal("%s", qUtf8Printable(library->db()->lastError()));
    return id;
}

} // namespace Planaria
