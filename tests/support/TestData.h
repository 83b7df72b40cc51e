#pragma once

#include <QByteArray>
#include <QString>

namespace Planaria {

/// The path of @p name in tests/data.
QString testDataPath(const QString &name);

/// The whole file @p name of tests/data; ends the program where it cannot be read.
QByteArray readTestData(const QString &name);

} // namespace Planaria
