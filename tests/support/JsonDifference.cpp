#include "support/JsonDifference.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace Planaria {

QString jsonDifference(const QJsonValue &actual, const QJsonValue &expected, const QString &place)
{
    if (actual.isDouble() && expected.isDouble() &&
        std::abs(actual.toDouble() - expected.toDouble()) <= 1e-9)
        return {};
    if (actual.isArray() && expected.isArray() &&
        actual.toArray().size() == expected.toArray().size()) {
        for (int i = 0; i < expected.toArray().size(); ++i) {
            const QString difference =
                jsonDifference(actual[i], expected[i], QStringLiteral("%1[%2]").arg(place).arg(i));
            if (!difference.isEmpty())
                return difference;
        }
        return {};
    }
    if (actual.isObject() && expected.isObject() &&
        actual.toObject().keys() == expected.toObject().keys()) {
        const QStringList keys = expected.toObject().keys();
        for (const QString &key : keys) {
            const QString difference =
                jsonDifference(actual[key], expected[key], place + QLatin1Char('.') + key);
            if (!difference.isEmpty())
                return difference;
        }
        return {};
    }
    if (actual == expected)
        return {};
    const auto text = [](const QJsonValue &value) {
        return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
    };
    return QStringLiteral("%1 is %2 instead of %3").arg(place, text(actual), text(expected));
}

} // namespace Planaria
