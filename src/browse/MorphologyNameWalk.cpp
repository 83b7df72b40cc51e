#include "browse/MorphologyNameWalk.h"

#include "browse/ActionTreeRows.h"
#include "browse/GatheredNames.h"

#include <QSet>

namespace Planaria {

namespace {

using FromActions = QHash<int, std::pair<int, int>>;

/// The actions that each row of @p table works on. @param columns one name or two
FromActions readFromActions(DB *db, const QString &table, const QString &columns)
{
    FromActions result;
    const int last = static_cast<int>(columns.count(QLatin1Char(','))) + 1;
    ActionTreeRows::read(
        db, QStringLiteral("SELECT Id, %1 FROM %2").arg(columns, table),
        [&result, last](const QSqlQuery &row) {
            result.insert(ActionTreeRows::id(row, 0),
                          {ActionTreeRows::id(row, 1), last > 1 ? ActionTreeRows::id(row, 2) : 0});
        });
    return result;
}

} // namespace

MorphologyNameWalk::MorphologyNameWalk(DB *db, const QString &comparison, const QString &value)
{
    ActionTreeRows::read(
        db,
        QStringLiteral("SELECT MorphologyAction.Id, Morphology.Name FROM Morphology "
                       "INNER JOIN MorphologyAction "
                       "ON MorphologyAction.Morphology = Morphology.Id WHERE Morphology.Name ") +
            comparison,
        value, [this](const QSqlQuery &row) {
            nameOfMorphologyAction.insert(ActionTreeRows::id(row, 0), row.value(1).toString());
        });
    ActionTreeRows::read(db, QStringLiteral("SELECT Id, RootAction FROM Manipulation ORDER BY Id"),
                         [this](const QSqlQuery &row) {
                             rootOfManipulation.emplace_back(ActionTreeRows::id(row, 0),
                                                             ActionTreeRows::id(row, 1));
                         });
    readActions(db);
}

void MorphologyNameWalk::readActions(DB *db)
{
    const QString fromAction = QStringLiteral("FromAction");
    const FromActions removes = readFromActions(db, QStringLiteral("RemoveAction"), fromAction);
    const FromActions crops = readFromActions(db, QStringLiteral("CropAction"), fromAction);
    const FromActions joins = readFromActions(db, QStringLiteral("JoinAction"),
                                              QStringLiteral("FromAction1, FromAction2"));
    ActionTreeRows::read(
        db,
        QStringLiteral("SELECT Id, MorphologyAction, RemoveAction, CropAction, JoinAction "
                       "FROM ManipulationAction"),
        [&](const QSqlQuery &row) {
            Source &source = sources[ActionTreeRows::id(row, 0)];
            if (const int morphologyAction = ActionTreeRows::id(row, 1))
                source.morphologyAction = morphologyAction;
            else if (const int removeAction = ActionTreeRows::id(row, 2))
                source.fromActions = removes.value(removeAction);
            else if (const int cropAction = ActionTreeRows::id(row, 3))
                source.fromActions = crops.value(cropAction);
            else
                source.fromActions = joins.value(ActionTreeRows::id(row, 4));
        });
}

QHash<int, QString> MorphologyNameWalk::manipulationsWithMorphologyName() const
{
    QHash<int, QString> found;
    for (const auto &[id, root] : rootOfManipulation) {
        GatheredNames names;
        if (actionHasMorphologyName(root, &names))
            found.insert(id, names.text());
    }
    return found;
}

bool MorphologyNameWalk::actionHasMorphologyName(int actionId, GatheredNames *names) const
{
    QSet<int> seen;
    QList<int> waiting{actionId};
    while (!waiting.isEmpty()) {
        const int action = waiting.takeLast();
        if (action == 0 || seen.contains(action))
            continue;
        seen.insert(action);
        const Source source = sources.value(action);
        const auto name = nameOfMorphologyAction.constFind(source.morphologyAction);
        if (name != nameOfMorphologyAction.cend())
            names->add(*name);
        // The last one is gone through first, with all below it.
        waiting << source.fromActions.second << source.fromActions.first;
    }
    return false;
}

} // namespace Planaria
