#include "support/TemporaryLibrary.h"

#include "db/DBExp.h"
#include "db/ExperimentFactory.h"
#include "support/TestData.h"

#include <QFile>
#include <QSqlError>

namespace Planaria {

TemporaryLibrary::TemporaryLibrary()
{
    if (!database.createEmptyDB(fileName()) || !DBExp::buildDB(&database))
        qFatal("cannot make %s", qUtf8Printable(fileName()));
    ExperimentFactory::instance(nullptr)->load(&database);
}

TemporaryLibrary::TemporaryLibrary(const QString &testDataName)
{
    QFile file(fileName());
    const QByteArray content = readTestData(testDataName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qUtf8Printable(fileName()));
    file.close();
    if (database.connect(fileName(), false) != DB::Opened)
        qFatal("cannot open %s", qUtf8Printable(fileName()));
    ExperimentFactory::instance(nullptr)->load(&database);
}

void TemporaryLibrary::run(const QString &sql)
{
    const std::unique_ptr<QSqlQuery> query = database.newQuery();
    if (!query->exec(sql))
        qFatal("%s: %s", qUtf8Printable(sql), qUtf8Printable(query->lastError().text()));
}

QVariant TemporaryLibrary::value(const QString &sql)
{
    const std::unique_ptr<QSqlQuery> query = database.newQuery(sql);
    return query->next() ? query->value(0) : QVariant();
}

QMap<QString, int> TemporaryLibrary::counts()
{
    QMap<QString, int> all;
    const std::unique_ptr<QSqlQuery> tables = database.newQuery(QStringLiteral(
        "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite%'"));
    while (tables->next())
        all.insert(tables->value(0).toString(), count(tables->value(0).toString()));
    return all;
}

QStringList TemporaryLibrary::brokenReferences()
{
    QStringList broken;
    const std::unique_ptr<QSqlQuery> query =
        database.newQuery(QStringLiteral("PRAGMA foreign_key_check"));
    while (query->next()) {
        broken += QStringLiteral("%1 row %2 names no %3")
                      .arg(query->value(0).toString(), query->value(1).toString(),
                           query->value(2).toString());
    }
    return broken;
}

} // namespace Planaria
