#pragma once

#include "db/DB.h"

#include <QHash>
#include <QString>

namespace Planaria {

/// The walks over action trees in their plain form, one statement for each step, to compare with.
/// They do not come back from a tree that runs into itself.
class StepwiseWalks final
{
public:
    StepwiseWalks(DB *database, QString op, QString text)
        : db(database), comparison(std::move(op)), value(std::move(text))
    {
    }

    QHash<int, QString> morphologiesWithManipulationName();
    QString namesBelow(int action);

private:
    bool climb(int action, QString *names);
    void descend(int action, QString *names);
    int first(const QString &sql, const QList<QVariant> &values);
    bool take(const QString &sql, QString *names);

    DB *db;
    QString comparison;
    QString value;
};

} // namespace Planaria
