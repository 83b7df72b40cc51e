#include "StepwiseWalks.h"

namespace Planaria {

namespace {

/// The action whose row in @p table has @p column equal to a placeholder.
QString consumer(const QString &table, const QString &condition)
{
    return QStringLiteral("SELECT ManipulationAction.Id FROM ManipulationAction "
                          "INNER JOIN %1 ON %1.Id = ManipulationAction.%1 WHERE ")
               .arg(table) +
           condition;
}

} // namespace

QHash<int, QString> StepwiseWalks::morphologiesWithManipulationName()
{
    QHash<int, QString> found;
    const auto morphologies = db->newTableQuery("Morphology");
    while (morphologies->next()) {
        const int id = morphologies->value(0).toInt();
        QString names;
        bool any = false;
        const auto leaves =
            db->newQuery(consumer("MorphologyAction", "MorphologyAction.Morphology = ?"), id);
        while (leaves->next())
            any |= climb(leaves->value(0).toInt(), &names);
        if (any)
            found.insert(id, names);
    }
    return found;
}

bool StepwiseWalks::climb(int action, QString *names)
{
    bool any = take(QStringLiteral("SELECT Manipulation.Name FROM Manipulation WHERE "
                                   "Manipulation.RootAction = %1 AND Manipulation.Name ")
                        .arg(action),
                    names);
    for (const int next :
         {first(consumer("CropAction", "CropAction.FromAction = ?"), {action}),
          first(consumer("RemoveAction", "RemoveAction.FromAction = ?"), {action}),
          first(consumer("JoinAction", "JoinAction.FromAction1 = ? OR JoinAction.FromAction2 = ?"),
                {action, action})})
        any |= next != 0 && climb(next, names);
    return any;
}

QString StepwiseWalks::namesBelow(int action)
{
    QString names;
    descend(action, &names);
    return names;
}

void StepwiseWalks::descend(int action, QString *names)
{
    const auto row = db->newTableQuery("ManipulationAction", action);
    row->next();
    const auto below = [&](const QString &table, int id, int columns) {
        const auto source = db->newTableQuery(table, id);
        source->next();
        for (int column = 1; column <= columns; ++column)
            descend(source->value(column).toInt(), names);
    };
    if (!row->isValid())
        return;
    if (const int morphologyAction = row->value(1).toInt())
        take(QStringLiteral("SELECT Morphology.Name FROM Morphology INNER JOIN MorphologyAction ON "
                            "MorphologyAction.Morphology = Morphology.Id "
                            "WHERE MorphologyAction.Id = %1 AND Morphology.Name ")
                 .arg(morphologyAction),
             names);
    else if (const int removeAction = row->value(2).toInt())
        below("RemoveAction", removeAction, 1);
    else if (const int cropAction = row->value(3).toInt())
        below("CropAction", cropAction, 1);
    else if (const int joinAction = row->value(4).toInt())
        below("JoinAction", joinAction, 2);
}

int StepwiseWalks::first(const QString &sql, const QList<QVariant> &values)
{
    const auto query = db->newQuery(sql, values);
    return query->next() ? query->value(0).toInt() : 0;
}

bool StepwiseWalks::take(const QString &sql, QString *names)
{
    const auto query = db->newQuery(sql + comparison, QVariant(value));
    if (!query->next())
        return false;
    const QString name = query->value(0).toString();
    if (names->isEmpty())
        *names = name;
    else if (*names != name && !names->contains(name + ";") && !names->endsWith("; " + name))
        *names += "; " + name;
    return true;
}

} // namespace Planaria
