#include "browse/ManipulationNameWalk.h"

#include "browse/ActionTreeRows.h"
#include "browse/GatheredNames.h"

#include <QSet>
#include <QStringList>

namespace Planaria {

namespace {

/// Keeps what was inserted first.
template <typename Value> void insertFirst(QHash<int, Value> *hash, int key, const Value &value)
{
    if (!hash->contains(key))
        hash->insert(key, value);
}

} // namespace

ManipulationNameWalk::ManipulationNameWalk(DB *db, const QString &comparison, const QString &value)
{
    ActionTreeRows::read(
        db,
        QStringLiteral("SELECT Manipulation.RootAction, Manipulation.Name FROM Manipulation "
                       "WHERE Manipulation.Name ") +
            comparison,
        value, [this](const QSqlQuery &row) {
            insertFirst(&nameOfRoot, ActionTreeRows::id(row, 0), row.value(1).toString());
        });
    if (nameOfRoot.isEmpty())
        return; // there is nothing to climb to

    ActionTreeRows::read(
        db, QStringLiteral("SELECT Id FROM Morphology ORDER BY Id"),
        [this](const QSqlQuery &row) { morphologies += ActionTreeRows::id(row, 0); });
    ActionTreeRows::read(
        db,
        QStringLiteral("SELECT MorphologyAction.Morphology, ManipulationAction.Id "
                       "FROM ManipulationAction INNER JOIN MorphologyAction "
                       "ON MorphologyAction.Id = ManipulationAction.MorphologyAction "
                       "ORDER BY ManipulationAction.Id"),
        [this](const QSqlQuery &row) {
            leaves[ActionTreeRows::id(row, 0)] += ActionTreeRows::id(row, 1);
        });
    readConsumers(db, QStringLiteral("CropAction"), {QStringLiteral("FromAction")}, &crops);
    readConsumers(db, QStringLiteral("RemoveAction"), {QStringLiteral("FromAction")}, &removes);
    readConsumers(db, QStringLiteral("JoinAction"),
                  {QStringLiteral("FromAction1"), QStringLiteral("FromAction2")}, &joins);
}

void ManipulationNameWalk::readConsumers(DB *db, const QString &table, const QStringList &columns,
                                         NextAction *consumers)
{
    const QString sql = QStringLiteral("SELECT ManipulationAction.Id, %2 FROM ManipulationAction "
                                       "INNER JOIN %1 ON %1.Id = ManipulationAction.%1 "
                                       "ORDER BY ManipulationAction.Id")
                            .arg(table, columns.join(QStringLiteral(", ")));
    ActionTreeRows::read(db, sql, [&columns, consumers](const QSqlQuery &row) {
        for (int column = 1; column <= columns.size(); ++column)
            insertFirst(consumers, ActionTreeRows::id(row, column), ActionTreeRows::id(row, 0));
    });
}

QHash<int, QString> ManipulationNameWalk::morphologiesWithManipulationName() const
{
    QHash<int, QString> found;
    for (const int id : morphologies) {
        GatheredNames names;
        if (morphologyHasManipulationName(id, &names))
            found.insert(id, names.text());
    }
    return found;
}

bool ManipulationNameWalk::morphologyHasManipulationName(int id, GatheredNames *names) const
{
    bool found = false;
    for (const int leaf : leaves.value(id))
        found |= actionHasManipulationName(leaf, names);
    return found;
}

bool ManipulationNameWalk::actionHasManipulationName(int actionId, GatheredNames *names) const
{
    bool found = false;
    QSet<int> seen;
    QList<int> waiting{actionId};
    while (!waiting.isEmpty()) {
        const int action = waiting.takeLast();
        if (action == 0 || seen.contains(action))
            continue;
        seen.insert(action);
        found |= manipulationHasManipulationName(action, names);
        // The last one is gone through first, with all above it.
        waiting << joins.value(action) << removes.value(action) << crops.value(action);
    }
    return found;
}

bool ManipulationNameWalk::manipulationHasManipulationName(int actionId, GatheredNames *names) const
{
    const auto name = nameOfRoot.constFind(actionId);
    if (name == nameOfRoot.cend())
        return false;
    names->add(*name);
    return true;
}

} // namespace Planaria
