#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <utility>

namespace Planaria {

class DB;
class GatheredNames;

/// Looks for the morphologies of a name that each manipulation starts from, descending from the
/// root of its action tree to the leaves.
///
/// The tables are read at the start, so that no step costs a statement. In a damaged file, each
/// action is visited once on the way down, and an action of two kinds counts as the first of
/// morphology, remove, crop and join. Irradiation actions are not followed.
class MorphologyNameWalk final
{
public:
    /// @param comparison what follows the name in a condition; without a placeholder for @p value
    /// in it nothing is found
    MorphologyNameWalk(DB *db, const QString &comparison, const QString &value);

    /// Empty, since no action tells of a name: the field of this search answers nothing, and users
    /// know the one for the morphologies of results in its place.
    [[nodiscard]] QHash<int, QString> manipulationsWithMorphologyName() const;

    /// Adds to @p names those of the morphologies at and below the action, joined by "; ".
    /// @return false, whatever was found
    bool actionHasMorphologyName(int actionId, GatheredNames *names) const;

private:
    /// What the product of an action is made of: a morphology or up to two other products.
    struct Source
    {
        int morphologyAction = 0;
        std::pair<int, int> fromActions;
    };

    void readActions(DB *db);

    QList<std::pair<int, int>> rootOfManipulation;
    QHash<int, Source> sources;
    QHash<int, QString> nameOfMorphologyAction;
};

} // namespace Planaria
