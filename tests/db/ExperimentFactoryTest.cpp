#include "db/ExperimentFactory.h"

#include "PlainSqlite.h"
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
#include "support/TemporaryLibrary.h"

#include <QLocale>
#include <QTest>

#include <cmath>
#include <memory>

using namespace Planaria;

namespace {

ExperimentFactory *factory()
{
    return ExperimentFactory::instance(nullptr);
}

template <typename Type> QStringList words(const QList<Type *> &types)
{
    QStringList texts;
    for (const Type *type : types)
        texts += QStringLiteral("%1 %2").arg(type->id()).arg(type->name());
    return texts;
}

QStringList allWords()
{
    return words(factory()->regionTypes) + words(factory()->spotOrganTypes) +
           words(factory()->lineOrganTypes);
}

const QStringList builtInWords{"1 Head",  "2 Trunk", "3 Tail", "1 Eye",
                               "2 Brain", "3 Phar.", "1 VNC"};

// --- The wild type in numbers, to the last digit ---

QString digits(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

QString digits(const QPointF &point)
{
    return digits(point.x()) + ' ' + digits(point.y());
}

QString described(const Organ *organ)
{
    const QString start = organ->typeName() + " at " + digits(organ->pos());
    if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ))
        return start + " turned " + digits(spot->rot());
    const auto *line = dynamic_cast<const LineOrgan *>(organ);
    return start + " from " + digits(line->end1()) + " to " + digits(line->end2());
}

QStringList described(const Region *region)
{
    QStringList lines{region->type()->name()};
    for (const RegionParam *param : region->params())
        lines += QStringLiteral("%1: %2").arg(param->index()).arg(digits(param->value()));
    for (const Organ *organ : region->organs())
        lines += described(organ);
    return lines;
}

QStringList described(const Morphology &worm)
{
    QStringList lines{worm.name()};
    for (const Region *region : worm.regions())
        lines += described(region);
    for (const RegionsLink *link : worm.links()) {
        lines +=
            QStringLiteral("%1 to %2: %3 %4 %5")
                .arg(link->from()->type()->name(), link->to()->type()->name(),
                     digits(link->totalDist()), digits(link->fromAng()), digits(link->fromRatio()));
    }
    return lines;
}

QStringList wildType()
{
    return {"Wild type",
            "Head",
            "0: 60",
            "1: 80",
            "2: 60",
            "Brain at 25.98076211353316 14.999999999999998 turned 3.4033920413889422",
            "Brain at -25.98076211353316 14.999999999999998 turned 6.021385919380437",
            "Eye at 21.213203435596427 21.213203435596423 turned 3.141592653589793",
            "Eye at -21.213203435596423 21.213203435596427 turned 0",
            "Trunk",
            "0: 60",
            "1: 60",
            "Phar. at 0 0 turned 1.5707963267948966",
            "VNC at 43 0 from -8 176.5 to -36 -250",
            "VNC at -43 0 from 8 176.5 to 36 -250",
            "Tail",
            "0: 50",
            "1: 80",
            "2: 50",
            "Head to Trunk: 200 4.71238898038469 0.5",
            "Trunk to Tail: 200 4.71238898038469 0.5"};
}

} // namespace

class ExperimentFactoryTest final : public QObject
{
    Q_OBJECT

private slots:
    void holdsTheBuiltInWordsBeforeAnyFileIsOpen(); // the first, while there was no file
    void isOneObjectWhateverFileItIsAskedWith();

    void takesTheWordsOfAFileInTheirOrder();
    void everyLoadReplacesAllWords();
    void aFileWithoutVocabularyGivesNoWords();
    void unloadsAllWords();
    void everyNewFileHoldsTheBuiltInWords();
    void findsWordsByTheirIds();
    void namelessWordsStandInForUnknownIds_data();
    void namelessWordsStandInForUnknownIds();
    void aLoadedWordTakesThePlaceOfItsStandIn();
    void anElementOfAnUnknownTypeKeepsItsId();
    void findsWordsBehindAGapByTheirId();

    void wordsAreNeitherWrittenNorErased();
    void copiedWordsKeepTheirIds();
    void regionTypesAreEqualById();

    void makesTheWildTypeToTheLastDigit();
    void storesTheWildTypeToTheLastDigit();
    void startsFromRowOneWhateverItsName();
    void leavesThePicturesOfRowOneInTheFile();
    void startsFromANewWildTypeInAFileWithoutWorms();
    void startsFromAnUnsavedWildTypeWhereItsNameIsTaken();
    void startsAnElementFromAStoredWorm_data();
    void startsAnElementFromAStoredWorm();
    void addsNoRandomOrgans();
};

// --- Vocabulary ---

void ExperimentFactoryTest::holdsTheBuiltInWordsBeforeAnyFileIsOpen()
{
    QCOMPARE(words(factory()->regionTypes), builtInWords.mid(0, 3));
    QCOMPARE(words(factory()->spotOrganTypes), builtInWords.mid(3, 3));
    QCOMPARE(words(factory()->lineOrganTypes), builtInWords.mid(6));
}

void ExperimentFactoryTest::isOneObjectWhateverFileItIsAskedWith()
{
    TemporaryLibrary library;
    library.run("UPDATE RegionType SET Name = 'Kopf' WHERE Id = 1");
    QCOMPARE(ExperimentFactory::instance(library.db()), factory());
    QCOMPARE(allWords(), builtInWords);
}

void ExperimentFactoryTest::takesTheWordsOfAFileInTheirOrder()
{
    TemporaryLibrary library;
    library.run("DELETE FROM RegionType");
    library.run("INSERT INTO RegionType VALUES(2, 'b'), (4, 'd'), (1, 'c'), (3, 'a')");
    library.run("UPDATE SpotOrganType SET Name = 'Auge' WHERE Id = 1");
    library.run("DELETE FROM LineOrganType");
    factory()->load(library.db());
    QCOMPARE(allWords(), (QStringList{"1 c", "2 b", "3 a", "4 d", "1 Auge", "2 Brain", "3 Phar."}));
}

void ExperimentFactoryTest::everyLoadReplacesAllWords()
{
    TemporaryLibrary library;
    factory()->load(library.db());
    QCOMPARE(allWords(), builtInWords);
    for (const char *table : {"RegionType", "SpotOrganType", "LineOrganType"})
        library.run(QStringLiteral("UPDATE %1 SET Name = Name || '!'").arg(table));
    QCOMPARE(allWords(), builtInWords);

    factory()->load(library.db());
    QStringList changed = builtInWords;
    for (QString &word : changed)
        word += '!';
    QCOMPARE(allWords(), changed);
    factory()->load();
    QCOMPARE(allWords(), builtInWords);
}

void ExperimentFactoryTest::aFileWithoutVocabularyGivesNoWords()
{
    TemporaryLibrary library;
    DB empty;
    QVERIFY(empty.createEmptyDB(library.filePath("empty.edb")));
    factory()->load(&empty);
    QCOMPARE(allWords(), QStringList());
    QCOMPARE(factory()->regionType(1)->name(), QString());
}

void ExperimentFactoryTest::unloadsAllWords()
{
    factory()->load();
    QCOMPARE(allWords(), builtInWords);
    factory()->unload();
    QCOMPARE(allWords(), QStringList());
}

void ExperimentFactoryTest::everyNewFileHoldsTheBuiltInWords()
{
    factory()->unload();
    TemporaryLibrary library;
    factory()->load(library.db());
    QCOMPARE(allWords(), builtInWords);
}

void ExperimentFactoryTest::findsWordsByTheirIds()
{
    factory()->load();
    for (int id = 1; id <= 3; ++id) {
        QCOMPARE(factory()->regionType(id), factory()->regionTypes.at(id - 1));
        QCOMPARE(factory()->spotOrganType(id), factory()->spotOrganTypes.at(id - 1));
    }
    QCOMPARE(factory()->lineOrganType(1), factory()->lineOrganTypes.first());
}

void ExperimentFactoryTest::namelessWordsStandInForUnknownIds_data()
{
    QTest::addColumn<int>("id");
    for (const int id : {0, -1, 4, 2147483647, -2147483647 - 1})
        QTest::addRow("%d", id) << id;
}

void ExperimentFactoryTest::namelessWordsStandInForUnknownIds()
{
    QFETCH(const int, id);
    factory()->load();
    QCOMPARE(factory()->regionType(id)->id(), id);
    QCOMPARE(factory()->spotOrganType(id)->id(), id);
    QCOMPARE(factory()->lineOrganType(id)->id(), id);
    QCOMPARE(factory()->regionType(id)->name(), QString());
    QCOMPARE(factory()->spotOrganType(id)->name(), QString());
    QCOMPARE(factory()->lineOrganType(id)->name(), QString());
    QCOMPARE(factory()->regionType(id), factory()->regionType(id));
    QCOMPARE(factory()->spotOrganType(id), factory()->spotOrganType(id));
    QCOMPARE(factory()->lineOrganType(id), factory()->lineOrganType(id));
    QCOMPARE(allWords(), builtInWords);
}

void ExperimentFactoryTest::aLoadedWordTakesThePlaceOfItsStandIn()
{
    TemporaryLibrary library;
    QCOMPARE(factory()->regionType(4)->name(), QString());
    library.run("INSERT INTO RegionType VALUES(4, 'Stump')");
    factory()->load(library.db());
    QCOMPARE(factory()->regionType(4)->name(), "Stump");
}

void ExperimentFactoryTest::anElementOfAnUnknownTypeKeepsItsId()
{
    TemporaryLibrary library;
    library.run("PRAGMA foreign_keys = false");
    library.run("INSERT INTO Morphology VALUES(1, 'a')");
    library.run("INSERT INTO Region VALUES(1, 1, 8)");
    library.run("INSERT INTO SpotOrgan VALUES(1, 9, 0.5)");
    library.run("INSERT INTO LineOrgan VALUES(1, 0, 1, 2, 3, 4)");
    library.run("INSERT INTO Organ VALUES(1, 1, 0, 0, 1, NULL), (2, 1, 0, 0, NULL, 1)");
    library.run("PRAGMA foreign_keys = true");

    // The rest of the worm can be edited and saved, though the file would refuse these types now.
    Morphology worm(1, library.db(), false);
    worm.setName("b");
    worm.regions().first()->organs().first()->setPos({5.0, 6.0});
    QCOMPARE(worm.submit(library.db()), 1);
    PlainSqlite file(library.fileName());
    QCOMPARE(file.dump({"Morphology", "Region", "SpotOrgan", "LineOrgan", "Organ"}),
             (QStringList{"Morphology 1 'b'", "Region 1 1 8", "SpotOrgan 1 9 0.5",
                          "LineOrgan 1 0 1.0 2.0 3.0 4.0", "Organ 1 1 5.0 6.0 1 NULL",
                          "Organ 2 1 0.0 0.0 NULL 1"}));
}

void ExperimentFactoryTest::findsWordsBehindAGapByTheirId()
{
    TemporaryLibrary library;
    library.run("DELETE FROM RegionType WHERE Id = 1");
    factory()->load(library.db());
    QCOMPARE(factory()->regionType(2)->name(), "Trunk");
    QCOMPARE(factory()->regionType(3)->name(), "Tail");
    QCOMPARE(factory()->regionType(1)->name(), "");
}

void ExperimentFactoryTest::wordsAreNeitherWrittenNorErased()
{
    TemporaryLibrary library;
    library.run("UPDATE RegionType SET Name = 'changed' WHERE Id = 2");
    PlainSqlite file(library.fileName());
    const QStringList before = file.dump(file.tables());

    QList<ElementType *> all;
    for (const int id : {1, 2, 3})
        all += {factory()->regionType(id), factory()->spotOrganType(id)};
    all += {factory()->lineOrganType(1), factory()->regionType(7)};
    for (ElementType *word : std::as_const(all)) {
        const int id = word->id();
        QCOMPARE(word->submit(library.db()), id);
        QVERIFY(!word->erase());
        QCOMPARE(word->id(), id);
    }
    QCOMPARE(file.dump(file.tables()), before);
}

void ExperimentFactoryTest::copiedWordsKeepTheirIds()
{
    TemporaryLibrary library;
    const SpotOrganType brain(2, library.db());
    QCOMPARE(brain.name(), "Brain");
    const auto copy = std::make_unique<SpotOrganType>(brain);
    QCOMPARE(copy->id(), 2);
    QCOMPARE(copy->name(), "Brain");

    LineOrganType cord(5, "Nerve");
    QCOMPARE(cord.id(), 5);
    QCOMPARE(cord.name(), "Nerve");
    cord = LineOrganType(1, library.db());
    QCOMPARE(cord.id(), 1);
    QCOMPARE(cord.name(), "VNC");
}

void ExperimentFactoryTest::regionTypesAreEqualById()
{
    QVERIFY(RegionType(1, "Head") == RegionType(1, "Kopf"));
    QVERIFY(!(RegionType(1, "Head") == RegionType(2, "Head")));
}

// --- Wild type ---

void ExperimentFactoryTest::makesTheWildTypeToTheLastDigit()
{
    factory()->load();
    const std::unique_ptr<Morphology> worm = factory()->createWildMorphology();
    QCOMPARE(worm->id(), 0);
    QCOMPARE(described(*worm), wildType());
    const QPointF pharynx = worm->regions().at(1)->organs().first()->pos();
    QVERIFY(std::signbit(pharynx.x()) && std::signbit(pharynx.y())); // which the text does not show
    QCOMPARE(worm->nImages(), 0);

    QCOMPARE(worm->regions().size(), 3);
    QCOMPARE(worm->links().size(), 2);
    const QList<QList<qsizetype>> paramsAndOrgans{{3, 4}, {2, 3}, {3, 0}};
    for (int i = 0; i < 3; ++i) {
        const Region *region = worm->regions().at(i);
        QCOMPARE(region->type(), factory()->regionTypes.at(i));
        QCOMPARE((QList<qsizetype>{region->params().size(), region->organs().size()}),
                 paramsAndOrgans.at(i));
    }
}

void ExperimentFactoryTest::storesTheWildTypeToTheLastDigit()
{
    TemporaryLibrary library;
    const std::unique_ptr<Morphology> worm = factory()->createAndSaveWildMorphology(library.db());
    QCOMPARE(worm->id(), 1);
    QCOMPARE(library.brokenReferences(), QStringList());
    QCOMPARE(described(Morphology(1, library.db(), true)), wildType());

    PlainSqlite file(library.fileName());
    QCOMPARE(file.dump({"Morphology", "Region", "RegionsLink"}),
             (QStringList{"Morphology 1 'Wild type'", "Region 1 1 1", "Region 2 1 2",
                          "Region 3 1 3", "RegionsLink 1 1 2 200.0 0.5 4.71238898038469",
                          "RegionsLink 2 2 3 200.0 0.5 4.71238898038469"}));
    QCOMPARE(file.dump("RegionParam"),
             (QStringList{"1 1 0 60.0", "2 1 1 80.0", "3 1 2 60.0", "4 2 0 60.0", "5 2 1 60.0",
                          "6 3 0 50.0", "7 3 1 80.0", "8 3 2 50.0"}));
    QCOMPARE(file.dump("Organ"),
             (QStringList{"1 1 25.98076211353316 14.999999999999998 1 NULL",
                          "2 1 -25.98076211353316 14.999999999999998 2 NULL",
                          "3 1 21.213203435596427 21.213203435596423 3 NULL",
                          "4 1 -21.213203435596423 21.213203435596427 4 NULL", "5 2 0.0 0.0 5 NULL",
                          "6 2 43.0 0.0 NULL 1", "7 2 -43.0 0.0 NULL 2"}));
    QCOMPARE(
        file.dump({"SpotOrgan", "LineOrgan"}),
        (QStringList{"SpotOrgan 1 2 3.4033920413889422", "SpotOrgan 2 2 6.021385919380437",
                     "SpotOrgan 3 1 3.141592653589793", "SpotOrgan 4 1 0.0",
                     "SpotOrgan 5 3 1.5707963267948966", "LineOrgan 1 1 -8.0 176.5 -36.0 -250.0",
                     "LineOrgan 2 1 8.0 176.5 36.0 -250.0"}));
}

void ExperimentFactoryTest::startsFromRowOneWhateverItsName()
{
    TemporaryLibrary library;
    factory()->createAndSaveWildMorphology(library.db());
    library.run("UPDATE Morphology SET Name = 'my worm'");
    library.run("INSERT INTO Morphology VALUES(2, 'Wild type')");
    const std::unique_ptr<Morphology> worm = factory()->loadDefaultMorphology(library.db());
    QCOMPARE(worm->id(), 1);
    QCOMPARE(worm->name(), "my worm");
    QCOMPARE(described(*worm).mid(1), wildType().mid(1));
    QCOMPARE(library.count("Morphology"), 2);
}

void ExperimentFactoryTest::leavesThePicturesOfRowOneInTheFile()
{
    TemporaryLibrary library;
    factory()->createAndSaveWildMorphology(library.db());
    library.run("INSERT INTO MorphologyImage VALUES(1, 1, 'early')");
    const std::unique_ptr<Morphology> worm = factory()->loadDefaultMorphology(library.db());
    library.run("UPDATE MorphologyImage SET Data = 'late'");
    QCOMPARE(worm->getImage(0)->bytes(), QByteArray("late"));
}

void ExperimentFactoryTest::startsFromANewWildTypeInAFileWithoutWorms()
{
    TemporaryLibrary library;
    const std::unique_ptr<Morphology> first = factory()->loadDefaultMorphology(library.db());
    QCOMPARE(first->id(), 1);
    QCOMPARE(described(*first), wildType());
    QCOMPARE(library.value("SELECT Name FROM Morphology WHERE Id = 1"), QVariant("Wild type"));

    // Where row 1 went and others stayed, the new one gets the next id.
    library.run("INSERT INTO Morphology VALUES(6, 'another')");
    QVERIFY(first->erase());
    const std::unique_ptr<Morphology> second = factory()->loadDefaultMorphology(library.db());
    QCOMPARE(second->id(), 7);
    QCOMPARE(library.count("Morphology"), 2);
    QCOMPARE(library.brokenReferences(), QStringList());
}

void ExperimentFactoryTest::startsFromAnUnsavedWildTypeWhereItsNameIsTaken()
{
    TemporaryLibrary library;
    library.run("INSERT INTO Morphology VALUES(2, 'Wild type')");
    const std::unique_ptr<Morphology> worm = factory()->loadDefaultMorphology(library.db());
    QCOMPARE(worm->id(), 0);
    QCOMPARE(described(*worm), wildType());
    QCOMPARE(PlainSqlite(library.fileName()).dump("Morphology"), QStringList{"2 'Wild type'"});
    QCOMPARE(library.count("Region"), 0);
    QCOMPARE(library.brokenReferences(), QStringList());

    worm->setName("Wild type again");
    QCOMPARE(worm->submit(library.db()), 3);
    QCOMPARE(described(Morphology(3, library.db(), false)).mid(1), wildType().mid(1));
}

void ExperimentFactoryTest::startsAnElementFromAStoredWorm_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("id");
    QTest::newRow("none") << "" << 1;
    QTest::newRow("row 1") << "(1, 'my worm'), (2, 'Wild type')" << 1;
    QTest::newRow("others than row 1") << "(2, 'my worm')" << 3;
    QTest::newRow("one of the name") << "(2, 'my worm'), (3, 'Wild type')" << 3;
}

void ExperimentFactoryTest::startsAnElementFromAStoredWorm()
{
    QFETCH(const QString, stored);
    QFETCH(const int, id);
    TemporaryLibrary library;
    if (!stored.isEmpty())
        library.run("INSERT INTO Morphology VALUES" + stored);
    for (int i = 0; i < 2; ++i) { // it makes one at most
        const auto worm = factory()->loadStoredDefaultMorphology(library.db());
        QCOMPARE(worm->id(), id);
        QCOMPARE(worm->name(),
                 library.value(QStringLiteral("SELECT Name FROM Morphology WHERE Id = %1").arg(id))
                     .toString());
    }
}

void ExperimentFactoryTest::addsNoRandomOrgans()
{
    factory()->load();
    const std::unique_ptr<Morphology> worm = factory()->createWildMorphology();
    for (Region *region : worm->regions())
        factory()->addRandomOrgans(region);
    QCOMPARE(described(*worm), wildType());
}

QTEST_GUILESS_MAIN(ExperimentFactoryTest)
#include "ExperimentFactoryTest.moc"
