#include "damaged/DamagedLibrary.h"
#include "db/BulkRead.h"
#include "db/ExperimentFactory.h"
#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "morphology/MorphologyItem.h"
#include "morphology/MorphologyListViewerForm.h"
#include "support/DrawnWorm.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <algorithm>

namespace Planaria {

/// The colours that regions, by their row ids, must show in spite of the damage.
using Tints = QMap<int, QString>;

namespace {

const Tints allRegions{{1, "red"}, {2, "grey"}, {3, "blue"}, {4, "blue"}};

Tints without(Tints tints, const QList<int> &regions)
{
    for (const int region : regions)
        tints.remove(region);
    return tints;
}

Tints withYellow(int region)
{
    Tints tints = allRegions;
    tints[region] = "yellow";
    return tints;
}

/// Makes the first worm a chain of 20,000 regions without params, longer than any call stack.
QStringList longChain()
{
    const QString ids = "WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < "
                        "20009) ";
    return {"DELETE FROM Region WHERE Morphology = 1", "DELETE FROM RegionParam",
            ids + "INSERT INTO Region SELECT i, 1, 1 + i % 3 FROM n",
            ids + "INSERT INTO RegionsLink SELECT i, i, i - 1, 150, 0.5, 0 FROM n WHERE i > 10"};
}

template <typename... Number> QString numbers(Number... number)
{
    QString text;
    ((text += QStringLiteral(" %1").arg(number)), ...);
    return text;
}

QString described(const Organ &organ)
{
    QString text = "organ" + numbers(organ.pos().x(), organ.pos().y());
    if (const auto *spot = dynamic_cast<const SpotOrgan *>(&organ))
        text += " spot" + numbers(spot->rot());
    if (const auto *line = dynamic_cast<const LineOrgan *>(&organ)) {
        text += " line" +
                numbers(line->end1().x(), line->end1().y(), line->end2().x(), line->end2().y());
    }
    return text + ' ' + organ.typeName();
}

/// All that an editor would show of a worm, without links that lead nowhere. The params of a region
/// are sorted: the order of those whose indices are damaged is no part of the worm.
QStringList described(const Morphology &worm)
{
    QStringList lines;
    for (const Region *region : worm.regions()) {
        lines += "region" + numbers(region->type()->id());
        QList<double> params;
        for (const RegionParam *param : region->params())
            params += param->value();
        std::sort(params.begin(), params.end());
        for (const double param : std::as_const(params))
            lines += "param" + numbers(param);
        for (const Organ *organ : region->organs())
            lines += described(*organ);
    }
    for (const RegionsLink *link : worm.links()) {
        if (!link->isComplete())
            continue;
        lines += "link" + numbers(worm.regions().indexOf(link->from()),
                                  worm.regions().indexOf(link->to()), link->totalDist(),
                                  link->fromAng(), link->fromRatio());
    }
    for (const MorphologyImage *image : worm.getImages())
        lines += "image" + numbers(image->bytes().size());
    return lines;
}

/// Where in a region its own colour shows, clear of the organs of a wild type.
constexpr QPointF bareSpot(0.0, -45.0);

/// What is wrong with @p item as a drawing of @p worm; empty where nothing is.
QString drawingFaults(MorphologyItem *item, const Morphology &worm, const Tints &tints)
{
    QStringList faults;
    const QList<QGraphicsPathItem *> items = regionItems(*item);
    if (items.size() != worm.regions().size() || !isFinite(item))
        return "not all is drawn";
    for (auto tint = tints.cbegin(); tint != tints.cend(); ++tint) {
        const auto region =
            std::find_if(worm.regions().cbegin(), worm.regions().cend(),
                         [&](const Region *each) { return each->id() == tint.key(); });
        if (region == worm.regions().cend()) {
            faults += QStringLiteral("region %1 is missing").arg(tint.key());
            continue;
        }
        const QGraphicsItem *regionItem = items.at(region - worm.regions().cbegin());
        const QString seen = tintAt(item->scene(), regionItem->mapToScene(bareSpot));
        if (seen != tint.value())
            faults += QStringLiteral("region %1 is %2").arg(tint.key()).arg(seen);
    }
    return faults.join("; ");
}

} // namespace

/// Libraries whose rows make no sense: nothing crashes or hangs, the sound parts are shown, and
/// nothing is written but by a submit, which does no further harm.
class DamagedFilesTest final : public QObject
{
    Q_OBJECT

private slots:
    void loadsAndDrawsWhatMakesSense_data() { addDamages(); }
    void loadsAndDrawsWhatMakesSense();
    void showsInTheListViewer_data() { addDamages(); }
    void showsInTheListViewer();
    void submitsSoundlyOrNotAtAll_data() { addDamages(); }
    void submitsSoundlyOrNotAtAll();
    void copiesSoundlyOrNotAtAll_data() { addDamages(); }
    void copiesSoundlyOrNotAtAll();
    void erasesSoundlyOrNotAtAll_data() { addDamages(); }
    void erasesSoundlyOrNotAtAll();

    void soundFileIsWritten();
    void gapInTheVocabularyChangesNoType();

private:
    static void addDamages();
    static void addRow(const QString &name, const QStringList &statements, const Tints &tints);
    static void addDamagedGraphs();
    static void addDamagedOrgans();
    static void addDamagedTables();
    static void addDamagedColumns();
    static void addDamagedColumn(const QString &table, const QString &column, const Tints &tints,
                                 const QStringList &values);

    /// Breaks @p library as the current row tells, and opens it.
    static void breakAndOpen(DamagedLibrary *library);
};

// --- Damages ---

void DamagedFilesTest::addDamages()
{
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<Tints>("tints");
    addRow("none", {}, allRegions);
    addDamagedGraphs();
    addDamagedOrgans();
    addDamagedTables();
    addDamagedColumns();
}

void DamagedFilesTest::addRow(const QString &name, const QStringList &statements,
                              const Tints &tints)
{
    QTest::newRow(qPrintable(name)) << statements << tints;
}

void DamagedFilesTest::addDamagedGraphs()
{
    addRow("region type unknown", {"UPDATE Region SET Type = 99 WHERE Id = 1"}, withYellow(1));
    addRow("region missing", {"DELETE FROM Region WHERE Id = 1"}, without(allRegions, {1}));
    addRow("all regions missing", {"DELETE FROM Region WHERE Morphology = 1"}, {});
    addRow("link to a missing region", {"UPDATE RegionsLink SET ToRegion = 999 WHERE Id = 2"},
           allRegions);
    addRow("link from a missing region", {"UPDATE RegionsLink SET FromRegion = 999 WHERE Id = 1"},
           allRegions);
    addRow("link to a region of another worm", {"UPDATE RegionsLink SET ToRegion = 5 WHERE Id = 2"},
           allRegions);
    addRow("cycle", {"INSERT INTO RegionsLink VALUES(NULL, 3, 1, 200, 0.5, 1.0)"},
           without(allRegions, {1, 3}));
    addRow("region linked with itself", {"INSERT INTO RegionsLink VALUES(NULL, 4, 4, 50, 0.5, 1)"},
           without(allRegions, {4}));
    addRow("linked region linked with itself",
           {"INSERT INTO RegionsLink VALUES(NULL, 1, 1, 50, 0.5, 1)"}, without(allRegions, {1}));
    addRow("links twice",
           {"INSERT INTO RegionsLink SELECT NULL, FromRegion, ToRegion, Dist, Ratio, "
            "Ang FROM RegionsLink"},
           without(allRegions, {1, 2, 3}));
    addRow("links there and back", {"INSERT INTO RegionsLink VALUES(NULL, 2, 1, 300, 0.9, 4.0)"},
           without(allRegions, {1, 2}));
    addRow("links at one angle", {"UPDATE RegionsLink SET Ang = 0"}, without(allRegions, {2}));
    addRow("params missing", {"DELETE FROM RegionParam WHERE Id IN (1, 4, 6, 9)"}, allRegions);
    addRow("all params missing", {"DELETE FROM RegionParam"}, allRegions);
    addRow("params too many",
           {"INSERT INTO RegionParam SELECT NULL, Region, ParamInd + 9, 30 FROM RegionParam"},
           allRegions);
    addRow("params of one index", {"UPDATE RegionParam SET ParamInd = 0"}, allRegions);
    addRow("very many regions", longChain(), {{11, "blue"}, {15000, "red"}, {20009, "blue"}});
    addRow("name missing",
           DamagedLibrary::allowNulls() << "UPDATE Morphology SET Name = NULL WHERE Id = 1",
           allRegions);
    addRow("name of bytes", {"UPDATE Morphology SET Name = x'00ff00' WHERE Id = 1"}, allRegions);
    addRow("region with the id of another beyond 32 bits",
           {"UPDATE Region SET Id = 4294967301 WHERE Id = 1"}, without(allRegions, {1}));
    addRow("param ids beyond 32 bits", {"UPDATE RegionParam SET Id = Id + 4294967296"}, {});
    addRow("ids below 1", {"UPDATE Organ SET Id = -Id", "UPDATE RegionParam SET Id = 1 - Id"}, {});
}

void DamagedFilesTest::addDamagedOrgans()
{
    addRow("spot organ type unknown", {"UPDATE SpotOrgan SET Type = 99"}, allRegions);
    addRow("line organ type unknown", {"UPDATE LineOrgan SET Type = 99"}, allRegions);
    addRow("spot organ rows missing", {"DELETE FROM SpotOrgan"}, allRegions);
    addRow("line organ rows missing", {"DELETE FROM LineOrgan"}, allRegions);
    addRow("organs of no kind", {"UPDATE Organ SET SpotOrgan = NULL, LineOrgan = NULL"},
           allRegions);
    addRow("organs of both kinds", {"UPDATE Organ SET SpotOrgan = 1, LineOrgan = 1"}, allRegions);
    addRow("organs of a missing region", {"UPDATE Organ SET Region = 999"}, allRegions);
    addRow("cords without extent",
           {"UPDATE LineOrgan SET VecEnd1X = 0, VecEnd1Y = 0, VecEnd2X = 0, VecEnd2Y = 0"},
           allRegions);
}

void DamagedFilesTest::addDamagedTables()
{
    for (const QString table :
         {"RegionType", "SpotOrganType", "LineOrganType", "RegionParam", "RegionsLink", "Organ",
          "SpotOrgan", "LineOrgan", "MorphologyImage"}) {
        addRow("no table " + table, {"DROP TABLE " + table}, allRegions);
        addRow("empty table " + table, {"DELETE FROM " + table}, allRegions);
    }
    addRow("no table Region", {"DROP TABLE Region"}, {});
    addRow("no vocabulary",
           {"DROP TABLE RegionType", "DROP TABLE SpotOrganType", "DROP TABLE LineOrganType"},
           allRegions);
    addRow("gap in the vocabulary", {"DELETE FROM RegionType WHERE Id = 1"}, allRegions);
    addRow("words without text",
           DamagedLibrary::allowNulls() << "UPDATE RegionType SET Name = NULL"
                                        << "UPDATE SpotOrganType SET Name = NULL",
           allRegions);
    addRow("column missing", {"ALTER TABLE RegionParam DROP COLUMN Value"}, {});
    addRow("columns exchanged",
           {"ALTER TABLE Region RENAME COLUMN Type TO Other",
            "ALTER TABLE Region ADD COLUMN Type INTEGER"},
           allRegions);
}

void DamagedFilesTest::addDamagedColumns()
{
    const QStringList reals{"9e999", "-9e999", "1e300", "-1e300",  "'text'",
                            "'nan'", "'-inf'", "''",    "x'00ff'", "NULL"};
    const QStringList integers{"'text'",
                               "''",
                               "x'00ff'",
                               "1.5",
                               "1e300",
                               "9e999",
                               "NULL",
                               "0",
                               "-1",
                               "999",
                               "9223372036854775807"};
    const Tints beside = without(allRegions, {1});
    const Tints beyond = without(allRegions, {1, 2});

    addDamagedColumn("RegionParam", "Value", beside, reals);
    for (const QString column : {"Ratio", "Ang"})
        addDamagedColumn("RegionsLink", column, beyond, reals);
    // One less than nothing turns outlines inside out, and they cut each other.
    addDamagedColumn("RegionsLink", "Dist", without(beyond, {3}), reals);
    for (const QString column : {"VecX", "VecY"})
        addDamagedColumn("Organ", column, beside, reals);
    addDamagedColumn("SpotOrgan", "Rot", allRegions, reals);
    for (const QString column : {"VecEnd1X", "VecEnd1Y", "VecEnd2X", "VecEnd2Y"})
        addDamagedColumn("LineOrgan", column, without(allRegions, {2}), reals);

    for (const QString column : {"Morphology", "Type"})
        addDamagedColumn("Region", column, beside, integers);
    for (const QString column : {"Region", "ParamInd"})
        addDamagedColumn("RegionParam", column, beside, integers);
    for (const QString column : {"FromRegion", "ToRegion"})
        addDamagedColumn("RegionsLink", column, beyond, integers);
    for (const QString column : {"Region", "SpotOrgan", "LineOrgan"})
        addDamagedColumn("Organ", column, allRegions, integers);
    addDamagedColumn("SpotOrgan", "Type", allRegions, integers);
    addDamagedColumn("LineOrgan", "Type", allRegions, integers);
    addDamagedColumn("MorphologyImage", "Morphology", allRegions, integers);
    addDamagedColumn("MorphologyImage", "Data", allRegions, integers);
}

void DamagedFilesTest::addDamagedColumn(const QString &table, const QString &column,
                                        const Tints &tints, const QStringList &values)
{
    for (const QString &value : values) {
        QStringList statements = value == "NULL" ? DamagedLibrary::allowNulls() : QStringList();
        statements +=
            QStringLiteral("UPDATE %1 SET %2 = %3 WHERE Id = 1").arg(table, column, value);
        addRow(table + '.' + column + ' ' + value, statements, tints);
    }
}

void DamagedFilesTest::breakAndOpen(DamagedLibrary *library)
{
    QFETCH(const QStringList, statements);
    library->damage(statements);
    library->open();
}

// --- Tests ---

void DamagedFilesTest::loadsAndDrawsWhatMakesSense()
{
    QFETCH(const Tints, tints);
    DamagedLibrary library;
    breakAndOpen(&library);
    const QByteArray before = library.bytes();

    const Morphology worm(1, library.db(), true);
    {
        const BulkRead job(library.db());
        QCOMPARE(described(Morphology(1, library.db(), true)), described(worm));
    }
    QGraphicsScene scene;
    auto *item = new MorphologyItem(worm, nullptr, false);
    scene.addItem(item);
    QCOMPARE(drawingFaults(item, worm, tints), QString());
    item->centerAtZero();
    QCOMPARE(drawingFaults(item, worm, tints), QString());
    scene.addItem(new MorphologyItem(worm, nullptr, true));
    QVERIFY(!thumbnail(&scene).isNull());
    for (const MorphologyImage *image : worm.getImages())
        QVERIFY(!image->createPixmap().isNull());

    QCOMPARE(library.bytes(), before);
}

void DamagedFilesTest::showsInTheListViewer()
{
    QFETCH(const Tints, tints);
    DamagedLibrary library;
    breakAndOpen(&library);
    const QByteArray before = library.bytes();
    {
        MorphologyListViewerForm form(library.db(), nullptr);
        form.show();
        QVERIFY(!form.grab().isNull());

        QGraphicsScene *scene = form.findChild<QGraphicsView *>()->scene();
        QList<MorphologyItem *> worms; // by name
        for (QGraphicsItem *item : scene->items(Qt::AscendingOrder)) {
            if (auto *worm = dynamic_cast<MorphologyItem *>(item))
                worms += worm;
        }
        const auto model = library.db()->newTableModel("Morphology", "Name");
        QCOMPARE(worms.size(), model->rowCount());
        const Morphology damaged(1, library.db(), false);
        QCOMPARE(drawingFaults(worms.at(DB::getModelIdRow(model.get(), 1)), damaged, tints),
                 QString());
        QVERIFY(!thumbnail(scene).isNull());
    }
    QCOMPARE(library.bytes(), before);
}

void DamagedFilesTest::submitsSoundlyOrNotAtAll()
{
    DamagedLibrary library;
    breakAndOpen(&library);
    const QStringList faults = library.faults();
    const QStringList neighbour = described(Morphology(2, library.db(), true));

    Morphology worm(1, library.db(), true);
    worm.setName("Changed");
    worm.submit(library.db());
    QVERIFY(!library.isInTransaction());
    QCOMPARE(library.faultsBeside(faults), QStringList());
    QCOMPARE(described(Morphology(1, library.db(), true)), described(worm));
    QCOMPARE(described(Morphology(2, library.db(), true)), neighbour);
}

void DamagedFilesTest::copiesSoundlyOrNotAtAll()
{
    DamagedLibrary target;
    target.open();
    DamagedLibrary library;
    breakAndOpen(&library);
    const QByteArray before = library.bytes();

    Morphology worm(1, library.db(), false);
    worm.setName("Copied");
    worm.submit(target.db());
    QCOMPARE(library.bytes(), before);
    QVERIFY(!target.isInTransaction());
    QCOMPARE(target.faults(), DamagedLibrary::noFaults());
    if (const int id = target.db()->existId("Morphology", "Name", "Copied"))
        QCOMPARE(described(Morphology(id, target.db(), true)), described(worm));
}

void DamagedFilesTest::erasesSoundlyOrNotAtAll()
{
    DamagedLibrary library;
    breakAndOpen(&library);
    const QStringList faults = library.faults();
    const QStringList neighbour = described(Morphology(2, library.db(), true));

    const bool erased = Morphology(1, library.db(), true).erase();
    QVERIFY(!library.isInTransaction());
    QCOMPARE(library.db()->exist("Morphology", "Id", 1), !erased);
    QCOMPARE(library.faultsBeside(faults), QStringList());
    QCOMPARE(described(Morphology(2, library.db(), true)), neighbour);
}

void DamagedFilesTest::soundFileIsWritten()
{
    DamagedLibrary library;
    library.open();
    QCOMPARE(library.faults(), DamagedLibrary::noFaults());
    Morphology worm(1, library.db(), true);
    worm.setName("Changed");
    worm.submit(library.db());
    QVERIFY(library.db()->exist("Morphology", "Name", "Changed"));
}

void DamagedFilesTest::gapInTheVocabularyChangesNoType()
{
    DamagedLibrary library;
    library.damage(
        {"DELETE FROM RegionType WHERE Id = 1", "DELETE FROM SpotOrganType WHERE Id = 2"});
    library.open();
    const Morphology worm(1, library.db(), false);
    QList<int> types;
    for (const Region *region : worm.regions())
        types += region->type()->id();
    QCOMPARE(types, QList<int>({1, 2, 3, 3}));
}

} // namespace Planaria

QTEST_MAIN(Planaria::DamagedFilesTest)
#include "DamagedFilesTest.moc"
