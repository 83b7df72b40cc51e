#pragma once

#include <QHash>
#include <QList>
#include <QString>

namespace Planaria {

class DB;
class GatheredNames;

/// Finds the manipulations of a name that each morphology is used in, climbing from the actions
/// that bring in the morphology to the roots of their action trees.
///
/// The tables are read at the start, so that no step costs a statement. Of several actions of one
/// kind that work on the product of an action (a damaged file) the one with the lowest id is
/// followed, and each action is visited once on the way up. Irradiation actions are not followed.
class ManipulationNameWalk final
{
public:
    /// @param comparison what follows the name in a condition; without a placeholder for @p value
    /// in it nothing is found
    ManipulationNameWalk(DB *db, const QString &comparison, const QString &value);

    /// The names found, joined by "; ", by the id of the morphology.
    [[nodiscard]] QHash<int, QString> morphologiesWithManipulationName() const;

    // Each adds to names what it finds, and tells whether it found any.

    bool morphologyHasManipulationName(int id, GatheredNames *names) const;
    /// Looks at this action and all that work on its product.
    bool actionHasManipulationName(int actionId, GatheredNames *names) const;
    /// Whether the action is the root of a manipulation of the name.
    bool manipulationHasManipulationName(int actionId, GatheredNames *names) const;

private:
    using NextAction = QHash<int, int>;

    void readConsumers(DB *db, const QString &table, const QStringList &columns,
                       NextAction *consumers);

    QList<int> morphologies;
    QHash<int, QList<int>> leaves; // the actions that bring in a morphology
    QHash<int, QString> nameOfRoot;
    // The action that works on the product of another one.
    NextAction crops;
    NextAction removes;
    NextAction joins;
};

} // namespace Planaria
