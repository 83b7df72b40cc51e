#pragma once

#include <QJsonValue>
#include <QString>

namespace Planaria {

/// Where @p actual first differs from @p expected, numbers by more than 1e-9; empty where they
/// agree.
/// @param place what the values are called in the answer
QString jsonDifference(const QJsonValue &actual, const QJsonValue &expected, const QString &place);

} // namespace Planaria
