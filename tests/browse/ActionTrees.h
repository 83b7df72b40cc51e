#pragma once

#include "support/TemporaryLibrary.h"

namespace Planaria {

/// Writes action trees into a library, row by row. Each operation gives the id of the new row: the
/// one of ManipulationAction for actions.
class ActionTrees final
{
public:
    explicit ActionTrees(TemporaryLibrary *target) : library(target) {}

    int morphology(const QString &name);
    int manipulation(const QString &name, int rootAction);

    int leaf(int morphology);
    int remove(int fromAction);
    int crop(int fromAction);
    int irradiate(int fromAction);
    int join(int fromAction1, int fromAction2);

    /// A manipulation @p name that removes something of @p morphology.
    int cutOf(int morphology, const QString &name)
    {
        return manipulation(name, remove(leaf(morphology)));
    }

private:
    int insert(const QString &table, const QHash<QString, QVariant> &values);
    int action(const QString &table, const QHash<QString, QVariant> &values);

    TemporaryLibrary *library;
};

} // namespace Planaria
