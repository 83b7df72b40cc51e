#pragma once

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

namespace Planaria {

/// Stores a wild type whose head reaches further by @p longer, scene units. Each 10 units between
/// two such worms are a distance of 1.
inline int storeWorm(TemporaryLibrary *library, const QString &name, double longer = 0.0)
{
    const auto worm = ExperimentFactory::instance(nullptr)->createWildMorphology();
    worm->setName(name);
    worm->regions().first()->setParam(1, 80.0 + longer);
    const int id = worm->submit(library->db());
    if (id < 1)
        qFatal("cannot store %s", qUtf8Printable(name));
    return id;
}

/// Stores @p count of them, "Worm 0000" and so on, each 10 units longer than the one before.
inline void storeWorms(TemporaryLibrary *library, int count)
{
    library->db()->beginTransaction();
    for (int i = 0; i < count; ++i)
        storeWorm(library, QStringLiteral("Worm %1").arg(i, 4, 10, QLatin1Char('0')), 10.0 * i);
    if (!library->db()->endTransaction())
        qFatal("cannot store worms");
}

/// Stores @p count worms of nine regions with eight organs each, which take long to compare.
inline void storeLargeWorms(TemporaryLibrary *library, int count)
{
    ExperimentFactory *vocabulary = ExperimentFactory::instance(nullptr);
    library->db()->beginTransaction();
    for (int i = 0; i < count; ++i) {
        Morphology worm;
        worm.setName(QStringLiteral("Large worm %1").arg(i));
        Region *trunk = worm.addRegion(vocabulary->regionType(2));
        for (int head = 0; head < 8; ++head)
            trunk->addLink(worm.addRegion(vocabulary->regionType(1)), 200.0, 0.75 * head, 0.5);
        for (Region *region : worm.regions()) {
            for (int eye = 0; eye < 8; ++eye)
                region->addSpotOrgan(vocabulary->spotOrganType(1), QPointF(eye * 7 + i, eye), 0.0);
        }
        worm.submit(library->db());
    }
    if (!library->db()->endTransaction())
        qFatal("cannot store worms");
}

/// Statements that put what is no number into all places of one kind in the worm whose id takes the
/// place of %1, and how far a wild type is from its twin after that.
inline void addDamageRows()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("distance");
    struct Place
    {
        const char *name;
        const char *statement;
        const char *distance;
    };
    const QString ofWorm = " IN (SELECT Id FROM Region WHERE Morphology=%1)";
    const QString spotsOfWorm = " IN (SELECT SpotOrgan FROM Organ WHERE Region" + ofWorm + ")";
    const QList<Place> places = {
        {"rotation of organs", "UPDATE SpotOrgan SET Rot=%1 WHERE Id", "468.60"},
        {"places of organs", "UPDATE Organ SET VecX=%1 WHERE Region", "700.00"},
        {"extent of regions", "UPDATE RegionParam SET Value=%1 WHERE Region", "13700.00"},
        {"length of links", "UPDATE RegionsLink SET Dist=%1 WHERE FromRegion", "7300.00"},
        {"direction of links", "UPDATE RegionsLink SET Ang=%1 WHERE FromRegion", "7300.00"}};
    for (const Place &place : places) {
        const QString statement = place.statement;
        const QString &rows = statement.contains("SpotOrgan") ? spotsOfWorm : ofWorm;
        for (const char *number : {"9e999", "-9e999", "'nan'"}) {
            QTest::addRow("%s, %s", place.name, number)
                << statement.arg(number) + rows << QString(place.distance);
        }
    }
}

} // namespace Planaria
