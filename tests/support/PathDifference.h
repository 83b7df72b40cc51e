#pragma once

#include <QString>

class QPainterPath;

namespace Planaria {

/// Where @p actual first differs from @p expected: in the number of elements, the type of one or,
/// by more than @p tolerance, one of its coordinates. Empty where they agree.
/// Use as `QCOMPARE(pathDifference(actual, expected), QString())`.
QString pathDifference(const QPainterPath &actual, const QPainterPath &expected,
                       double tolerance = 1e-9);

} // namespace Planaria
