#include "damaged/DamagedLibrary.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "support/Picture.h"
#include "support/TemporaryLibrary.h"

#include <QFile>
#include <QImage>
#include <QSqlError>
#include <QSqlRecord>

namespace Planaria {

namespace {

QByteArray bluePicture()
{
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    return encoded(picture, "png");
}

QByteArray soundFile()
{
    TemporaryLibrary library;
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    const std::unique_ptr<Morphology> damaged = factory->createWildMorphology();
    damaged->setName("Damaged");
    damaged->addRegion(factory->regionType(3));
    damaged->addImage(bluePicture());
    damaged->submit(library.db());
    const std::unique_ptr<Morphology> sound = factory->createWildMorphology();
    sound->setName("Sound");
    sound->submit(library.db());

    QFile file(library.fileName());
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qUtf8Printable(library.fileName()));
    return file.readAll();
}

/// The rows of @p query, each in a line.
QStringList lines(const std::unique_ptr<QSqlQuery> &query)
{
    QStringList all;
    while (query->next()) {
        QStringList values;
        for (int column = 0; column < query->record().count(); ++column)
            values += query->value(column).toString();
        all += values.join(' ');
    }
    return all;
}

} // namespace

DamagedLibrary::DamagedLibrary()
{
    static const QByteArray sound = soundFile();
    setBytes(sound);
}

QStringList DamagedLibrary::allowNulls()
{
    return {"PRAGMA writable_schema = ON",
            "UPDATE sqlite_master SET sql = replace(replace(sql, ' IS NOT NULL', ' IS NOT -1'), "
            "' NOT NULL', '')",
            "PRAGMA writable_schema = RESET"};
}

void DamagedLibrary::damage(const QStringList &statements)
{
    const QString connection = QStringLiteral("damage");
    {
        QSqlDatabase file = QSqlDatabase::addDatabase("QSQLITE", connection);
        file.setDatabaseName(fileName());
        if (!file.open())
            qFatal("cannot open %s", qUtf8Printable(fileName()));
        QSqlQuery query(file);
        const QStringList loose{"PRAGMA foreign_keys = OFF", "PRAGMA ignore_check_constraints = ON",
                                "PRAGMA synchronous = OFF"};
        for (const QString &statement : loose + statements) {
            if (!query.exec(statement))
                qFatal("%s: %s", qUtf8Printable(statement),
                       qUtf8Printable(query.lastError().text()));
        }
    }
    QSqlDatabase::removeDatabase(connection);
}

void DamagedLibrary::open()
{
    if (database.connect(fileName(), false) != DB::Opened)
        qFatal("cannot open %s", qUtf8Printable(fileName()));
    database.newQuery("PRAGMA synchronous = OFF"); // no test cuts the power
    ExperimentFactory::instance(nullptr)->load(&database);
}

QByteArray DamagedLibrary::bytes() const
{
    QFile file(fileName());
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qUtf8Printable(fileName()));
    return file.readAll();
}

void DamagedLibrary::setBytes(const QByteArray &bytes)
{
    QFile file(fileName());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qUtf8Printable(fileName()));
}

QStringList DamagedLibrary::faults()
{
    QStringList all = lines(database.newQuery("PRAGMA foreign_key_check")) +
                      lines(database.newQuery("PRAGMA integrity_check"));
    for (const QString table : {"SpotOrgan", "LineOrgan"}) {
        all += lines(database.newQuery(
            QStringLiteral("SELECT '%1', Id, 'belongs to no organ' FROM %1 WHERE Id NOT IN "
                           "(SELECT %1 FROM Organ WHERE %1 IS NOT NULL)")
                .arg(table)));
    }
    return all;
}

QStringList DamagedLibrary::faultsBeside(const QStringList &known)
{
    QStringList others = faults();
    others.removeIf(
        [&](const QString &fault) { return known.contains(fault) || noFaults().contains(fault); });
    return others;
}

bool DamagedLibrary::isInTransaction()
{
    return !database.newQuery("BEGIN")->isActive() || !database.newQuery("ROLLBACK")->isActive();
}

} // namespace Planaria
