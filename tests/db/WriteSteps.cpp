#include "WriteSteps.h"

#include <QRegularExpression>

namespace Planaria {

namespace {

QString writeStep(const QString &statement)
{
    static const QRegularExpression step(
        "^(BEGIN|COMMIT|ROLLBACK|INSERT|UPDATE|DELETE)(?: INTO| FROM)?(?: (?!TRANSACTION)(\\w+))?"
        "(?:.* WHERE Id ?= ?(\\d+))?");
    const QRegularExpressionMatch match = step.match(statement);
    return match.capturedTexts().mid(1).join(' ').trimmed();
}

} // namespace

QStringList writeSteps(const QStringList &statements)
{
    QStringList steps;
    for (const QString &statement : statements)
        steps += writeStep(statement);
    steps.removeAll(QString());
    return steps;
}

} // namespace Planaria
