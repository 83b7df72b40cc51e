#include "support/TestData.h"

#include <QFile>

namespace Planaria {

QString testDataPath(const QString &name)
{
    return QStringLiteral(VERMIDEX_TEST_DATA "/") + name;
}

QByteArray readTestData(const QString &name)
{
    QFile file(testDataPath(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read: %s", qPrintable(file.fileName()),
               qPrintable(file.errorString()));
    return file.readAll();
}

} // namespace Planaria
