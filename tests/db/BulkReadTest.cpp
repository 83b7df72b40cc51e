#include "db/BulkRead.h"

#include "PlainSqlite.h"
#include "db/DBExp.h"
#include "db/ExperimentFactory.h"
#include "model/LineOrgan.h"
#include "model/LineOrganType.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QRandomGenerator>
#include <QTest>

#include <memory>
#include <optional>

using namespace Planaria;

namespace {

// --- Worms as text ---

QString text(double number)
{
    return QString::number(number, 'g', 17);
}

QString text(const QPointF &point)
{
    return text(point.x()) + ',' + text(point.y());
}

QString described(const Organ *organ)
{
    QStringList parts{QString::number(organ->id()), organ->typeName(), text(organ->pos())};
    if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ))
        parts += text(spot->rot());
    if (const auto *line = dynamic_cast<const LineOrgan *>(organ))
        parts += {text(line->end1()), text(line->end2())};
    return "organ " + parts.join(' ');
}

QStringList described(const Region *region)
{
    QStringList lines{QStringLiteral("region %1 %2").arg(region->id()).arg(region->type()->id())};
    for (const RegionParam *param : region->params()) {
        lines += QStringLiteral("param %1 %2 %3")
                     .arg(param->id())
                     .arg(param->index())
                     .arg(text(param->value()));
    }
    for (const Organ *organ : region->organs())
        lines += described(organ);
    for (const RegionsLink *link : region->links())
        lines += QStringLiteral("linked by %1").arg(link->id());
    return lines;
}

QString described(const RegionsLink *link)
{
    return QStringLiteral("link %1 %2 %3 %4")
        .arg(link->id())
        .arg(link->from() ? link->from()->id() : 0)
        .arg(link->to() ? link->to()->id() : 0)
        .arg(text(link->totalDist()) + ' ' + text(link->fromRatio()) + ' ' + text(link->fromAng()));
}

/// All that was loaded, in the order it is listed. Does not ask for pictures.
QStringList described(const Morphology &worm)
{
    QStringList lines{QStringLiteral("worm %1 %2").arg(worm.id()).arg(worm.name())};
    for (const Region *region : worm.regions())
        lines += described(region);
    for (const RegionsLink *link : worm.links())
        lines += described(link);
    return lines;
}

QStringList pictures(const Morphology &worm)
{
    QStringList lines;
    for (const MorphologyImage *image : worm.getImages())
        lines += QStringLiteral("%1 %2").arg(image->id()).arg(QString::fromLatin1(image->bytes()));
    return lines;
}

QStringList described(DB *db, int id)
{
    const Morphology worm(id, db, true);
    return described(worm) + pictures(worm);
}

/// Row @p id as a connection of its own sees it.
QStringList describedFromOutside(const TemporaryLibrary &library, int id)
{
    DB other;
    return other.connect(library.fileName(), false) == DB::Opened ? described(&other, id)
                                                                  : QStringList();
}

// --- Random worms ---

class RandomLibrary final
{
public:
    RandomLibrary(TemporaryLibrary *target, quint32 seed) : library(target), random(seed) {}

    /// Worms whose members lie mixed in the tables, in no order of their parents.
    void fill(int count)
    {
        library->db()->beginTransaction();
        for (int number = 0; number < count; ++number) {
            Morphology worm;
            worm.setName(QStringLiteral("worm %1").arg(number));
            grow(&worm, random.bounded(7));
            worm.submit(library->db());
        }
        for (int i = 0; i < count / 3; ++i) {
            Morphology worm(1 + random.bounded(count), library->db(), true);
            grow(&worm, random.bounded(3));
            worm.submit(library->db());
        }
        for (const char *table : {"RegionsLink", "RegionParam", "Organ", "MorphologyImage"})
            shuffle(table);
        library->db()->endTransaction();
    }

private:
    double number() { return (random.generateDouble() - 0.5) * 500.0; }
    QPointF point() { return {number(), number()}; }

    void grow(Morphology *worm, int regions)
    {
        ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
        for (int i = 0; i < regions; ++i)
            fill(worm->addRegion(factory->regionType(1 + random.bounded(3))));
        const QList<Region *> &all = worm->regions();
        for (int i = random.bounded(2 * regions + 1); i > 0 && all.size() > 1; --i) {
            const int from = random.bounded(int(all.size()));
            const int to = (from + 1 + random.bounded(int(all.size()) - 1)) % int(all.size());
            worm->addRegionsLink(all.at(from), all.at(to), number(), number(),
                                 random.generateDouble());
        }
        if (random.bounded(4) == 0)
            worm->addImage(QByteArray::number(random.generate()));
    }

    void fill(Region *region)
    {
        ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
        for (RegionParam *param : region->params())
            param->setValue(number());
        for (int i = random.bounded(4); i > 0; --i) {
            if (random.bounded(2) == 0)
                region->addSpotOrgan(factory->spotOrganType(1 + random.bounded(3)), point(),
                                     number());
            else
                region->addLineOrgan(factory->lineOrganType(1), point(), point(), point());
        }
    }

    /// Gives the rows of @p table other ids, so that their order becomes another.
    void shuffle(const char *table)
    {
        constexpr int prime = 104729; // more than any table here has rows
        constexpr int aside = 1000000;
        const QString sql = QStringLiteral("UPDATE %1 SET Id = ").arg(table);
        library->run(sql + QStringLiteral("Id + %1").arg(aside));
        library->run(sql + QStringLiteral("(Id - %1) * %2 % %3")
                               .arg(aside)
                               .arg(1 + random.bounded(prime - 1))
                               .arg(prime));
    }

    TemporaryLibrary *library;
    QRandomGenerator random;
};

// --- Plain rows ---

QList<QVariantList> rowsOf(const std::shared_ptr<RowCursor> &cursor, int columns)
{
    QList<QVariantList> rows;
    while (cursor->next()) {
        QVariantList row;
        for (int column = 0; column < columns; ++column)
            row += cursor->value(column);
        rows += row;
    }
    return rows;
}

} // namespace

class BulkReadTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void loadsWhatStatementsOfTheirOwnLoad_data();
    void loadsWhatStatementsOfTheirOwnLoad();
    void keepsMembersInTheOrderOfTheirRows();
    void readsEachTableOnceForAnyNumberOfWorms();
    void readsOtherRowsAndIndirectOnesToo();

    void loadedElementsStayBoundToTheirRows();
    void leavesPicturesInTheFileUntilTheyAreAskedFor();
    void passesOverAPictureThatIsGone();

    void theFirstWriteEndsTheKeeping_data();
    void theFirstWriteEndsTheKeeping();
    void aReadingStatementDoesNotEndTheKeeping();
    void nestedJobsKeepUntilTheOutermostEnds();
    void aJobAfterAWriteKeepsAnew();
    void jobsOnSeveralFilesLeaveEachOtherAlone();
    void anotherFileIsReadAfresh();
    void aClosedFileGivesNothing();

    void damagedKeysGiveTheRowsOfThePlainStatements_data();
    void damagedKeysGiveTheRowsOfThePlainStatements();
    void idsThatAreNoKeysGiveTheRowsOfThePlainStatements();
    void missingTablesGiveNoRows();

private:
    DB *db() { return library->db(); }
    /// Changes the file behind the back of its DB.
    void changeOutside(const QString &sql)
    {
        QCOMPARE(PlainSqlite(library->fileName()).run(sql), 0);
    }
    QString nameOfWormOne() { return Morphology(1, db(), false).name(); }
    /// Whether worm 1 is read from memory.
    bool isKept();

    StatementLog statements;
    std::optional<TemporaryLibrary> library;
};

void BulkReadTest::init()
{
    library.emplace();
}

void BulkReadTest::cleanup()
{
    library.reset();
}

bool BulkReadTest::isKept()
{
    const QString name = nameOfWormOne();
    changeOutside("UPDATE Morphology SET Name = Name || '+' WHERE Id = 1");
    return nameOfWormOne() == name;
}

// --- The same worms ---

void BulkReadTest::loadsWhatStatementsOfTheirOwnLoad_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U})
        QTest::addRow("seed %u", seed) << seed;
}

void BulkReadTest::loadsWhatStatementsOfTheirOwnLoad()
{
    QFETCH(const quint32, seed);
    constexpr int worms = 300;
    RandomLibrary(&*library, seed).fill(worms);
    QCOMPARE(library->brokenReferences(), QStringList());

    QList<QStringList> expected;
    for (int id = 1; id <= worms + 1; ++id) // the last one is not there
        expected += described(db(), id);
    const BulkRead job(db());
    for (int id = 1; id <= worms + 1; ++id)
        QVERIFY2(described(db(), id) == expected.at(id - 1), QByteArray::number(id).constData());
}

void BulkReadTest::keepsMembersInTheOrderOfTheirRows()
{
    library->run("INSERT INTO Morphology VALUES(1, 'a'), (2, 'b')");
    library->run("INSERT INTO Region VALUES(11, 1, 1), (12, 2, 1), (13, 1, 2), (14, 2, 2)");
    library->run("INSERT INTO RegionsLink VALUES(1, 14, 12, 1, 0.5, 1), (2, 13, 11, 1, 0.5, 2), "
                 "(3, 12, 14, 1, 0.5, 3), (4, 11, 13, 1, 0.5, 4), (5, 13, 11, 1, 0.5, 5)");
    library->run("INSERT INTO RegionParam VALUES(1, 13, 1, 1.5), (2, 11, 2, 2.5), (3, 13, 0, 3.5), "
                 "(4, 11, 0, 4.5), (5, 11, 1, 5.5), (6, 11, 0, 6.5)");
    library->run("INSERT INTO SpotOrgan VALUES(1, 3, 1), (2, 2, 2), (3, 1, 3)");
    library->run("INSERT INTO Organ VALUES(5, 11, 0, 0, 1, NULL), (7, 13, 0, 0, 2, NULL), "
                 "(9, 11, 0, 0, 3, NULL)");
    const QStringList expected{"worm 1 a",
                               "region 11 1",
                               "param 4 0 4.5",
                               "param 6 0 6.5",
                               "param 5 1 5.5",
                               "param 2 2 2.5",
                               "organ 1 Phar. 0,0 1",
                               "organ 3 Eye 0,0 3",
                               "linked by 5",
                               "linked by 4",
                               "linked by 2",
                               "region 13 2",
                               "param 3 0 3.5",
                               "param 1 1 1.5",
                               "organ 2 Brain 0,0 2",
                               "linked by 4",
                               "linked by 2",
                               "linked by 5",
                               "link 2 13 11 1 0.5 2",
                               "link 4 11 13 1 0.5 4",
                               "link 5 13 11 1 0.5 5"};

    QCOMPARE(described(db(), 1), expected);
    const BulkRead job(db());
    QCOMPARE(described(db(), 1), expected);
}

void BulkReadTest::readsEachTableOnceForAnyNumberOfWorms()
{
    RandomLibrary(&*library, 4).fill(60);
    const BulkRead job(db());
    statements.take();
    for (int id = 1; id <= 60; ++id)
        const Morphology worm(id, db(), false);

    QMap<QString, int> timesRead;
    for (const QString &statement : statements.take().filter(" FROM "))
        ++timesRead[statement.section(" FROM ", 1).section(' ', 0, 0)];
    QCOMPARE(timesRead, (QMap<QString, int>{{"LineOrgan", 1},
                                            {"Morphology", 1},
                                            {"Organ", 1},
                                            {"Region", 1},
                                            {"RegionParam", 1},
                                            {"RegionsLink", 1},
                                            {"SpotOrgan", 1}}));
}

void BulkReadTest::readsOtherRowsAndIndirectOnesToo()
{
    library->run("INSERT INTO Morphology VALUES(1, 'a'), (2, 'b')");
    library->run("INSERT INTO Region VALUES(1, 1, 2)");
    library->run("INSERT INTO MorphologyAction VALUES(1, 2), (2, 1)");
    db()->beginTransaction();
    library->run("INSERT INTO ManipulationAction(Id, MorphologyAction, RemoveAction) "
                 "VALUES(1, 1, 1), (2, 2, 2)");
    library->run("INSERT INTO RemoveAction VALUES(1, 1), (2, 2)");
    QVERIFY(db()->endTransaction());
    const BulkRead job(db());
    DBElementData data("Morphology", 1, db());
    data.loadExtElement("RegionType", 3);
    QCOMPARE(data.loadExtValue(1), QVariant("Tail"));
    data.loadExtElement("RegionType", 4);
    QVERIFY(data.loadExtValue(1).isNull());

    data.loadReferencesIndirect("RemoveAction", "ManipulationAction", "MorphologyAction");
    QVERIFY(data.nextReference());
    QCOMPARE(data.loadRefValue(0), QVariant(2));
    QVERIFY(!data.nextReference());
    data.loadReferences("Region");
    QVERIFY(data.nextReference());
    QCOMPARE(data.loadRefValue(2), QVariant(2));
    QVERIFY(data.loadRefValue(3).isNull());
    QVERIFY(data.loadRefValue(-1).isNull());
    QVERIFY(!data.nextReference());
    QVERIFY(data.loadRefValue(2).isNull());
}

// --- Elements and the file ---

void BulkReadTest::loadedElementsStayBoundToTheirRows()
{
    RandomLibrary(&*library, 5).fill(20);
    QStringList tables = PlainSqlite(library->fileName()).tables();
    tables.removeOne("Morphology");
    const QStringList before = PlainSqlite(library->fileName()).dump(tables);

    std::vector<std::unique_ptr<Morphology>> worms;
    {
        const BulkRead job(db());
        for (int id = 1; id <= 20; ++id)
            worms.push_back(std::make_unique<Morphology>(id, db(), false));
        worms[0]->setName("written during the job");
        QCOMPARE(worms[0]->submit(db()), 1);
    }
    worms[1]->setName("written after the job");
    QCOMPARE(worms[1]->submit(db()), 2);

    PlainSqlite file(library->fileName());
    QCOMPARE(file.dump(tables), before);
    QCOMPARE(
        file.dump("Morphology").mid(0, 3),
        (QStringList{"1 'written during the job'", "2 'written after the job'", "3 'worm 2'"}));
    QVERIFY(worms[2]->erase());
    QCOMPARE(file.count("Morphology"), 19);
    QCOMPARE(library->brokenReferences(), QStringList());
}

void BulkReadTest::leavesPicturesInTheFileUntilTheyAreAskedFor()
{
    library->run("INSERT INTO Morphology VALUES(1, 'a'), (2, 'b')");
    library->run("INSERT INTO MorphologyImage VALUES(1, 2, 'one'), (2, 1, 'two'), (3, 2, 'three')");
    auto job = std::make_unique<BulkRead>(db());
    statements.take();
    const Morphology first(1, db(), false);
    const Morphology second(2, db(), false);
    const Morphology third(2, db(), false);
    QCOMPARE(statements.take().filter("MorphologyImage"), QStringList());

    // What stands in the file by then, and of this worm alone.
    changeOutside("UPDATE MorphologyImage SET Data = Data || ' late'");
    QCOMPARE(pictures(second), (QStringList{"1 one late", "3 three late"}));
    QCOMPARE(statements.take().filter("SELECT * FROM MorphologyImage"),
             (QStringList{"SELECT * FROM MorphologyImage WHERE Id = 1",
                          "SELECT * FROM MorphologyImage WHERE Id = 3"}));
    changeOutside("UPDATE MorphologyImage SET Data = Data || ' later'");
    QCOMPARE(pictures(second), (QStringList{"1 one late", "3 three late"}));

    job.reset();
    QCOMPARE(pictures(first), QStringList{"2 two late later"});
    QCOMPARE(pictures(third), (QStringList{"1 one late later", "3 three late later"}));
}

void BulkReadTest::passesOverAPictureThatIsGone()
{
    library->run("INSERT INTO Morphology VALUES(1, 'a'), (2, 'b')");
    library->run("INSERT INTO MorphologyImage VALUES(1, 2, 'one'), (2, 2, 'two'), (3, 2, 'three')");
    const BulkRead job(db());
    const Morphology first(1, db(), true);
    const Morphology second(2, db(), false);
    changeOutside("DELETE FROM MorphologyImage WHERE Id = 1");
    QCOMPARE(pictures(second), (QStringList{"2 two", "3 three"}));
}

// --- The end of the keeping ---

using Write = void (*)(DB *);

void BulkReadTest::theFirstWriteEndsTheKeeping_data()
{
    QTest::addColumn<Write>("write");

    const auto row = [](const char *tag, Write write) { QTest::newRow(tag) << write; };
    row("insertRow", [](DB *db) {
        QVERIFY(db->insertRow("Region", {{"Morphology", 1}, {"Type", 2}}, false));
    });
    row("updateRow", [](DB *db) { QVERIFY(db->updateRow("Morphology", 1, {{"Name", "new"}})); });
    row("removeRow", [](DB *db) { QVERIFY(db->removeRow("RegionParam", 1)); });
    row("a query of the caller",
        [](DB *db) { QVERIFY(db->newQuery()->exec("UPDATE Morphology SET Name = 'new'")); });
    row("a writing query", [](DB *db) { db->newQuery("DELETE FROM RegionParam"); });
    row("a writing query with a value",
        [](DB *db) { db->newQuery("UPDATE Morphology SET Name = ?", QVariant("new")); });
    row("emptyTables", [](DB *db) { db->emptyTables({"RegionParam"}); });
    row("emptyTablesNoKeys", [](DB *db) { db->emptyTablesNoKeys({"Region", "RegionParam"}); });
    row("a submit", [](DB *db) {
        Morphology worm(1, db, false);
        worm.setName("new");
        QCOMPARE(worm.submit(db), 1);
    });
    row("an erase", [](DB *db) { QVERIFY(Morphology(1, db, false).erase()); });
    row("a write that is taken back", [](DB *db) {
        db->beginTransaction();
        QVERIFY(db->updateRow("Morphology", 1, {{"Name", "unseen"}}));
        const Morphology unseen(1, db, false);
        QCOMPARE(unseen.name(), "unseen");
        db->rollbackTransaction();
        QVERIFY(db->updateRow("Region", 1, {{"Type", 3}}));
    });
}

void BulkReadTest::theFirstWriteEndsTheKeeping()
{
    QFETCH(const Write, write);
    library->run("INSERT INTO Morphology VALUES(1, 'old')");
    library->run("INSERT INTO Region VALUES(1, 1, 1)");
    library->run("INSERT INTO RegionParam VALUES(1, 1, 0, 1.5), (2, 1, 1, 2.5)");
    const QStringList before = describedFromOutside(*library, 1);

    const BulkRead job(db());
    QCOMPARE(described(db(), 1), before);
    write(db());
    const QStringList after = describedFromOutside(*library, 1);
    QVERIFY(after != before);
    QCOMPARE(described(db(), 1), after);
    changeOutside("UPDATE Morphology SET Name = 'from outside'");
    QCOMPARE(described(db(), 1), describedFromOutside(*library, 1));
}

void BulkReadTest::aReadingStatementDoesNotEndTheKeeping()
{
    library->run("INSERT INTO Morphology VALUES(1, 'old')");
    const BulkRead job(db());
    QVERIFY(isKept());
    QVERIFY(db()->exist("Morphology", "Id", 1));
    QCOMPARE(db()->getNumRows("Morphology"), 1);
    QCOMPARE(db()->newTableModel("Morphology")->rowCount(), 1);
    QVERIFY(db()->newTableQuery("Morphology")->next());
    QVERIFY(isKept());
}

void BulkReadTest::nestedJobsKeepUntilTheOutermostEnds()
{
    library->run("INSERT INTO Morphology VALUES(1, 'old')");
    {
        const BulkRead outer(db());
        QVERIFY(isKept());
        {
            const BulkRead inner(db());
            QVERIFY(isKept());
        }
        QCOMPARE(nameOfWormOne(), "old");
        QVERIFY(isKept());
    }
    QCOMPARE(nameOfWormOne(), "old+++");
    QVERIFY(!isKept());
}

void BulkReadTest::aJobAfterAWriteKeepsAnew()
{
    library->run("INSERT INTO Morphology VALUES(1, 'old')");
    {
        const BulkRead job(db());
        QVERIFY(isKept());
        library->run("UPDATE Morphology SET Name = 'new'");
        QVERIFY(!isKept());
    }
    const BulkRead job(db());
    QCOMPARE(nameOfWormOne(), "new+");
    QVERIFY(isKept());
}

void BulkReadTest::jobsOnSeveralFilesLeaveEachOtherAlone()
{
    TemporaryLibrary second;
    library->run("INSERT INTO Morphology VALUES(1, 'of the first')");
    second.run("INSERT INTO Morphology VALUES(1, 'of the second')");
    const BulkRead job(db());
    QCOMPARE(Morphology(1, second.db(), false).name(), "of the second");
    second.run("UPDATE Morphology SET Name = 'changed'");
    QCOMPARE(Morphology(1, second.db(), false).name(), "changed");
    QVERIFY(isKept());

    const BulkRead secondJob(second.db());
    QCOMPARE(Morphology(1, second.db(), false).name(), "changed");
    QCOMPARE(nameOfWormOne(), "of the first");
    library->run("UPDATE Morphology SET Name = 'written'");
    QCOMPARE(nameOfWormOne(), "written");
    QCOMPARE(PlainSqlite(second.fileName()).run("UPDATE Morphology SET Name = 'unseen'"), 0);
    QCOMPARE(Morphology(1, second.db(), false).name(), "changed");
}

void BulkReadTest::anotherFileIsReadAfresh()
{
    TemporaryLibrary second;
    library->run("INSERT INTO Morphology VALUES(1, 'of the first')");
    second.run("INSERT INTO Morphology VALUES(1, 'of the second')");
    const BulkRead job(db());
    QCOMPARE(nameOfWormOne(), "of the first");
    QCOMPARE(db()->connect(second.fileName(), false), int(DB::Opened));
    QCOMPARE(nameOfWormOne(), "of the second");
}

void BulkReadTest::aClosedFileGivesNothing()
{
    library->run("INSERT INTO Morphology VALUES(1, 'a')");
    const BulkRead job(db());
    QCOMPARE(nameOfWormOne(), "a");
    db()->disconnect();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("database not open"));
    QVERIFY(!db()->childCursor("Region", "Morphology", 1)->next());
}

// --- Damaged files ---

void BulkReadTest::damagedKeysGiveTheRowsOfThePlainStatements_data()
{
    QTest::addColumn<QString>("type");
    for (const char *type : {"INTEGER", "", "TEXT", "REAL", "NUMERIC", "BLOB"})
        QTest::addRow("a key declared as '%s'", type) << QString(type);
}

void BulkReadTest::damagedKeysGiveTheRowsOfThePlainStatements()
{
    QFETCH(const QString, type);
    const QStringList keys{
        "1",    "'1'",   "1.0",   "NULL",  "'one'", "1.5",  "'1.0'",
        "'01'", "' 1 '", "x'31'", "1e300", "2",     "'2x'", "9223372036854775807",
        "-1",   "0",     "''",    "'2'",   "2.0"};
    QFile::remove(library->filePath("damaged.edb"));
    DB damaged;
    QVERIFY(damaged.createEmptyDB(library->filePath("damaged.edb")));
    damaged.newQuery("CREATE TABLE Region(Id INTEGER PRIMARY KEY, Morphology " + type + ")");
    damaged.newQuery("CREATE TABLE RegionsLink(Id INTEGER PRIMARY KEY, FromRegion " + type + ")");
    for (const QString &key : keys) {
        damaged.newQuery(QStringLiteral("INSERT INTO Region(Morphology) VALUES(%1)").arg(key));
        damaged.newQuery(QStringLiteral("INSERT INTO RegionsLink(FromRegion) VALUES(%1)").arg(key));
    }
    QCOMPARE(damaged.getNumRows("Region"), int(keys.size()));

    const auto children = [&](int id) {
        return rowsOf(damaged.childCursor("Region", "Morphology", id), 2) +
               rowsOf(damaged.childCursor("Region", "Morphology", id, "Morphology"), 2) +
               rowsOf(damaged.joinCursor("RegionsLink", "FromRegion", "Region", "Morphology", id),
                      2) +
               rowsOf(damaged.rowCursor("RegionsLink", id), 2);
    };
    for (const int id : {-1, 0, 1, 2, 3, 19, 2147483647}) {
        const QList<QVariantList> plain = children(id);
        const BulkRead job(&damaged);
        QVERIFY2(children(id) == plain, QByteArray::number(id).constData());
    }
}

void BulkReadTest::idsThatAreNoKeysGiveTheRowsOfThePlainStatements()
{
    DB damaged;
    QVERIFY(damaged.createEmptyDB(library->filePath("damaged.edb")));
    for (const char *sql :
         {"CREATE TABLE Morphology(Id, Name)", "CREATE TABLE Region(Id, Morphology, Type)",
          "CREATE TABLE RegionParam(Id, Region, ParamInd, Value)",
          "CREATE TABLE RegionsLink(Id, FromRegion, ToRegion, Dist, Ratio, Ang)",
          "CREATE TABLE Organ(Id, Region, VecX, VecY, SpotOrgan, LineOrgan)",
          "CREATE TABLE SpotOrgan(Id, Type, Rot)",
          "INSERT INTO Morphology VALUES(1, 'a'), (1, 'b'), (NULL, 'c'), (2, NULL)",
          "INSERT INTO Region VALUES(3, 1, 1), (2, 1, 2), (NULL, 1, 3), (2, 1, 'Tail'), (9, 2, 9)",
          "INSERT INTO RegionParam VALUES(5, 2, 1, 1.5), (4, 2, 1, 2.5), (4, 2, 'x', 'y'), "
          "(NULL, 2, NULL, NULL), (1, 2, 0, 3.5), (7, NULL, 0, 1), (7, 'two', 0, 1)",
          "INSERT INTO RegionsLink VALUES(8, 2, 3, 1, 0.5, 1), (7, 3, 2, 1, 0.5, 2), "
          "(NULL, 3, 9, 1, 0.5, 3), (6, 'x', 2, 1, 0.5, 4), (5, 3, NULL, 1, 0.5, 'x')",
          "INSERT INTO Organ VALUES(9, 3, 1, 1, 1, NULL), (8, 3, 2, 2, 7, NULL), "
          "(7, 3, 3, 3, NULL, 1), (6, 3, 4, 4, NULL, NULL)",
          "INSERT INTO SpotOrgan VALUES(1, 8, 'x'), (1, 2, 0.5)"}) {
        const std::unique_ptr<QSqlQuery> query = damaged.newQuery(sql);
        QVERIFY2(query->isActive(), sql);
    }

    const auto inOrder = [](QStringList lines) {
        const auto links =
            std::partition_point(lines.begin(), lines.end(),
                                 [](const QString &line) { return !line.startsWith("link "); });
        std::sort(links, lines.end()); // without keys, SQLite may join from either end
        return lines;
    };
    for (const int id : {1, 2, 3}) {
        const QStringList plain = inOrder(described(&damaged, id));
        const BulkRead job(&damaged);
        QCOMPARE(inOrder(described(&damaged, id)), plain);
    }
    QCOMPARE(Morphology(1, &damaged, false).regions().size(), 3); // all that have an id
}

void BulkReadTest::missingTablesGiveNoRows()
{
    library->run("INSERT INTO Morphology VALUES(1, 'a')");
    for (const char *table : {"MorphologyImage", "RegionsLink", "RegionParam", "Organ", "Region"})
        library->run(QStringLiteral("DROP TABLE %1").arg(table));
    const BulkRead job(db());
    QCOMPARE(described(db(), 1), QStringList{"worm 1 a"});
}

QTEST_GUILESS_MAIN(BulkReadTest)
#include "BulkReadTest.moc"
