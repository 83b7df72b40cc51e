#include "support/PathDifference.h"

#include <QPainterPath>

#include <array>
#include <cmath>

namespace Planaria {

namespace {

bool agree(const QPainterPath::Element &actual, const QPainterPath::Element &expected,
           double tolerance)
{
    // Put so that a coordinate that is not a number never agrees.
    return actual.type == expected.type && std::abs(actual.x - expected.x) <= tolerance &&
           std::abs(actual.y - expected.y) <= tolerance;
}

QString described(const QPainterPath::Element &element)
{
    static constexpr std::array types = {"move", "line", "curve", "curve data"};
    return QStringLiteral("%1 to (%2, %3)")
        .arg(QLatin1String(types.at(element.type)), QString::number(element.x, 'g', 17),
             QString::number(element.y, 'g', 17));
}

} // namespace

QString pathDifference(const QPainterPath &actual, const QPainterPath &expected, double tolerance)
{
    if (actual.elementCount() != expected.elementCount())
        return QStringLiteral("%1 elements instead of %2")
            .arg(actual.elementCount())
            .arg(expected.elementCount());
    for (int i = 0; i < actual.elementCount(); ++i) {
        if (!agree(actual.elementAt(i), expected.elementAt(i), tolerance))
            return QStringLiteral("element %1 is a %2 instead of a %3")
                .arg(QString::number(i), described(actual.elementAt(i)),
                     described(expected.elementAt(i)));
    }
    return {};
}

} // namespace Planaria
