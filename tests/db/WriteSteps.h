#pragma once

#include <QStringList>

namespace Planaria {

/// What @p statements did to the file, each in short: "BEGIN", "INSERT Region", "UPDATE Region 3",
/// "DELETE Region 3", "COMMIT", "ROLLBACK". Statements that only read are left out.
QStringList writeSteps(const QStringList &statements);

} // namespace Planaria
