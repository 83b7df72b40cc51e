#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "model/RandomWorms.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"
#include "model/SpotOrgan.h"
#include "model/WormLines.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

#include <limits>
#include <vector>

using namespace Planaria;

namespace {

/// Head, trunk and tail in a line, with an organ of each kind and an image; all numbers differ.
std::unique_ptr<Morphology> plainWorm()
{
    auto worm = std::make_unique<Morphology>();
    worm->setName(QStringLiteral("plain"));
    Region *head = worm->addRegion(headType());
    Region *trunk = worm->addRegion(trunkType());
    Region *tail = worm->addRegion(tailType());
    trunk->addLink(tail, 100.0, 1.25, 0.25);
    head->addLink(trunk, 200.0, 1.5, 0.75);
    head->setParams({1, 2, 3});
    trunk->setParams({4, 5});
    tail->setParams({6, 7, 8});
    head->addSpotOrgan(brainType(), {9.0, 10.0}, 11.0);
    trunk->addLineOrgan(cordType(), {12.0, 13.0}, {14.0, 15.0}, {16.0, 17.0});
    worm->addImage("picture");
    return worm;
}

using Worms = std::vector<std::unique_ptr<Morphology>>;

QList<const Morphology *> pointers(const Worms &worms)
{
    QList<const Morphology *> pointers;
    for (const std::unique_ptr<Morphology> &worm : worms)
        pointers += worm.get();
    return pointers;
}

/// Empty where the two worms agree in all fields and ids.
QString firstDifference(const Morphology &actual, const Morphology &expected)
{
    const QStringList actualLines = wormLines(actual, Ids::With);
    const QStringList expectedLines = wormLines(expected, Ids::With);
    for (qsizetype line = 0; line < std::max(actualLines.size(), expectedLines.size()); ++line) {
        if (actualLines.value(line) != expectedLines.value(line))
            return QStringLiteral("line %1 is \"%2\" instead of \"%3\"")
                .arg(QString::number(line), actualLines.value(line), expectedLines.value(line));
    }
    return {};
}

QString message(quint32 seed, const QString &problem)
{
    return QStringLiteral("seed %1: %2").arg(seed).arg(problem);
}

} // namespace

class MorphologyStorageTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void writesEachNumberIntoItsColumn();
    void givesEachObjectTheIdOfItsRow();
    void writesAgainIntoTheSameRows();
    void readsMembersInTheOrderOfTheirRows();
    void readsLinksInTheOrderOfTheirRowsWhateverTheirRegions();
    void readsParamsInTheOrderOfTheirIndices();
    void wormsReadSeparatelyAreEqual();
    void erasesRemovedMembersAtTheNextSubmit();
    void leavesRowsOfRemovedMembersOfAWormThatIsDropped();
    void erasesARegionWithAllThatItQueued();
    void erasesAWormThatWasNeverLoadedWhole();
    void erasesNoOrganWhoseFirstRowStays();
    void writesAnErasedWormAsANewOne();
    void writesNothingOfAWormWithANumberThatIsNone();
    void leavesNoOrganOfAWormThatCannotBeWritten_data();
    void leavesNoOrganOfAWormThatCannotBeWritten();
    void readsALinkToARegionOfAnotherWorm();
    void removesARegionWithALinkToAMissingOne();
    void writesNoSecondWormOfAName();

    void randomWormsComeBackAsTheyWereWritten();
    void randomWormsLeaveNoRowBehind();

private:
    std::unique_ptr<Morphology> loaded(int id, bool loadImages = false)
    {
        return std::make_unique<Morphology>(id, library->db(), loadImages);
    }

    std::unique_ptr<TemporaryLibrary> library;
};

void MorphologyStorageTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    // Nothing here has to survive a power cut.
    library->run(QStringLiteral("PRAGMA synchronous = OFF"));
}

void MorphologyStorageTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
}

void MorphologyStorageTest::writesEachNumberIntoItsColumn()
{
    plainWorm()->submit(library->db());

    const auto stored = [this](const QString &sql) { return rows(library.get(), sql); };
    QCOMPARE(stored("SELECT Name FROM Morphology"), QStringList{"plain"});
    QCOMPARE(stored("SELECT Morphology, Type FROM Region"), (QStringList{"1 1", "1 2", "1 3"}));
    QCOMPARE(stored("SELECT Region, ParamInd, Value FROM RegionParam"),
             (QStringList{"1 0 1", "1 1 2", "1 2 3", "2 0 4", "2 1 5", "3 0 6", "3 1 7", "3 2 8"}));
    QCOMPARE(stored("SELECT FromRegion, ToRegion, Dist, Ratio, Ang FROM RegionsLink"),
             (QStringList{"2 3 100 0.25 1.25", "1 2 200 0.75 1.5"}));
    QCOMPARE(stored("SELECT Region, VecX, VecY, SpotOrgan, LineOrgan FROM Organ"),
             (QStringList{"1 9 10 1 NULL", "2 12 13 NULL 1"}));
    QCOMPARE(stored("SELECT Type, Rot FROM SpotOrgan"), QStringList{"2 11"});
    QCOMPARE(stored("SELECT Type, VecEnd1X, VecEnd1Y, VecEnd2X, VecEnd2Y FROM LineOrgan"),
             QStringList{"1 14 15 16 17"});
    QCOMPARE(stored("SELECT Morphology, Data FROM MorphologyImage"), QStringList{"1 picture"});
}

void MorphologyStorageTest::givesEachObjectTheIdOfItsRow()
{
    // So that an organ's id differs from the id of its row in Organ.
    Morphology other;
    other.setName(QStringLiteral("other"));
    other.addRegion(headType())->addLineOrgan(cordType(), {}, {}, {});
    QCOMPARE(other.submit(library->db()), 1);

    const std::unique_ptr<Morphology> worm = plainWorm();
    QCOMPARE(worm->submit(library->db()), 2);
    QCOMPARE(worm->id(), 2);
    QCOMPARE(worm->regions().at(0)->id(), 2);
    QCOMPARE(worm->regions().at(0)->params().at(2)->id(), 7);
    QCOMPARE(worm->regions().at(0)->organs().at(0)->id(), 1);
    QCOMPARE(worm->regions().at(1)->organs().at(0)->id(), 2);
    QCOMPARE(worm->links().at(1)->id(), 2);
    QCOMPARE(worm->getImage(0)->id(), 1);
    QCOMPARE(wormLines(*loaded(2), Ids::With), wormLines(*worm, Ids::With));
}

void MorphologyStorageTest::writesAgainIntoTheSameRows()
{
    const std::unique_ptr<Morphology> worm = plainWorm();
    worm->submit(library->db());
    const QStringList before = wormLines(*worm, Ids::With);

    QCOMPARE(worm->submit(library->db()), 1);
    QCOMPARE(wormLines(*worm, Ids::With), before);
    QCOMPARE(rowsIn(library.get()), rowsOf({worm.get()}));

    worm->setName(QStringLiteral("renamed"));
    worm->regions().first()->setType(tailType());
    worm->regions().first()->organs().first()->setPos({-1.0, -2.0});
    worm->links().first()->setTotalDist(5.0);
    worm->submit(library->db());
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*worm, Ids::With));
    QCOMPARE(rowsIn(library.get()), rowsOf({worm.get()}));
}

void MorphologyStorageTest::readsMembersInTheOrderOfTheirRows()
{
    const std::unique_ptr<Morphology> worm = plainWorm();
    worm->addImage("another");
    worm->regions().first()->addSpotOrgan(eyeType(), {}, 0.0);
    worm->submit(library->db());
    for (const char *table : {"Organ", "RegionsLink", "MorphologyImage"})
        library->run(QStringLiteral("UPDATE %1 SET Id = 9 WHERE Id = 1").arg(table));

    const std::unique_ptr<Morphology> again = loaded(1);
    QCOMPARE(again->regions().first()->organs().first()->typeName(), QStringLiteral("Eye"));
    QCOMPARE(again->links().first()->totalDist(), 200.0);
    QCOMPARE(again->getImage(0)->bytes(), QByteArray("another"));
}

void MorphologyStorageTest::readsLinksInTheOrderOfTheirRowsWhateverTheirRegions()
{
    Morphology worm;
    for (int i = 0; i < 12; ++i)
        worm.addRegion(trunkType());
    for (int from = 11; from > 0; --from)
        worm.regions().at(from)->addLink(worm.regions().at(from - 1), from, 1.0, 0.5);
    worm.setName(QStringLiteral("backwards"));
    worm.submit(library->db());

    const std::unique_ptr<Morphology> again = loaded(1);
    QCOMPARE(wormLines(*again, Ids::With), wormLines(worm, Ids::With));
    QCOMPARE(again->links().first()->totalDist(), 11.0);
}

void MorphologyStorageTest::readsParamsInTheOrderOfTheirIndices()
{
    plainWorm()->submit(library->db());
    library->run(QStringLiteral("UPDATE RegionParam SET ParamInd = 2 - ParamInd WHERE Region = 1"));

    const std::unique_ptr<Morphology> worm = loaded(1);
    QCOMPARE(paramValues(worm->regions().first()), (QList<double>{3, 2, 1}));
    QCOMPARE(paramIndices(worm->regions().first()), (QList<int>{0, 1, 2}));
}

void MorphologyStorageTest::wormsReadSeparatelyAreEqual()
{
    plainWorm()->submit(library->db());

    QVERIFY(*loaded(1) == *loaded(1));
    QVERIFY(*loaded(1) == *plainWorm());
    QVERIFY(*plainWorm() == *loaded(1, true));
}

void MorphologyStorageTest::erasesRemovedMembersAtTheNextSubmit()
{
    plainWorm()->submit(library->db());
    const QStringList before = rowsIn(library.get());

    const std::unique_ptr<Morphology> worm = loaded(1);
    worm->removeRegionsLink(worm->links().last());
    worm->removeRegion(worm->regions().last());
    worm->regions().first()->organs().first()->removeFromMorphology();
    worm->getImage(0)->removeFromMorphology();
    QCOMPARE(rowsIn(library.get()), before);

    QCOMPARE(worm->submit(library->db()), 1);
    QVERIFY(worm->record().removedReferences().isEmpty());
    QCOMPARE(rowsIn(library.get()), rowsOf({worm.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*worm, Ids::With));
}

void MorphologyStorageTest::leavesRowsOfRemovedMembersOfAWormThatIsDropped()
{
    const std::unique_ptr<Morphology> worm = plainWorm();
    worm->submit(library->db());

    loaded(1)->removeAll();
    QCOMPARE(rowsIn(library.get()), rowsOf({worm.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*worm, Ids::With));
}

void MorphologyStorageTest::erasesARegionWithAllThatItQueued()
{
    plainWorm()->submit(library->db());

    const std::unique_ptr<Morphology> worm = loaded(1);
    Region *trunk = worm->regions().at(1);
    trunk->organs().first()->removeFromMorphology();
    trunk->addLink(worm->regions().first(), 100.0, 4.0, 0.5);
    worm->removeRegion(trunk);
    worm->submit(library->db());

    QCOMPARE(rowsIn(library.get()), rowsOf({worm.get()}));
}

void MorphologyStorageTest::erasesAWormThatWasNeverLoadedWhole()
{
    plainWorm()->submit(library->db());
    const std::unique_ptr<Morphology> worm = loaded(1);

    QVERIFY(worm->erase());
    QCOMPARE(worm->id(), 0);
    QCOMPARE(rowsIn(library.get()), QStringList());
    QVERIFY(worm->erase());
}

void MorphologyStorageTest::erasesNoOrganWhoseFirstRowStays()
{
    const std::unique_ptr<Morphology> worm = plainWorm();
    worm->submit(library->db());
    library->run(QStringLiteral("CREATE TRIGGER NoDelete BEFORE DELETE ON Organ BEGIN "
                                "SELECT RAISE(ABORT, 'kept'); END"));

    QVERIFY(!worm->regions().at(0)->organs().first()->erase());
    QVERIFY(!worm->regions().at(1)->organs().first()->erase());
    QCOMPARE(rowsIn(library.get()), rowsOf({worm.get()}));
}

void MorphologyStorageTest::writesAnErasedWormAsANewOne()
{
    const std::unique_ptr<Morphology> worm = plainWorm();
    worm->submit(library->db());
    const QStringList before = wormLines(*worm, Ids::Without);

    QVERIFY(worm->erase());
    QVERIFY(worm->submit(library->db()) > 0);
    QCOMPARE(rowsIn(library.get()), rowsOf({worm.get()}));
    QCOMPARE(wormLines(*loaded(worm->id()), Ids::Without), before);
}

void MorphologyStorageTest::writesNothingOfAWormWithANumberThatIsNone()
{
    Morphology worm;
    worm.setName(QStringLiteral("broken"));
    Region *head = worm.addRegion(headType());
    head->addLink(worm.addRegion(tailType()), 100.0, 1.0, 0.5);
    head->setParam(0, std::numeric_limits<double>::quiet_NaN());
    worm.addImage("picture");

    worm.submit(library->db());
    QCOMPARE(rowsIn(library.get()), QStringList());
}

void MorphologyStorageTest::leavesNoOrganOfAWormThatCannotBeWritten_data()
{
    QTest::addColumn<bool>("nameIsTaken");
    QTest::addColumn<bool>("isElsewhere");
    for (const bool isElsewhere : {false, true}) {
        const char *from = isElsewhere ? "a worm of another library" : "a new worm";
        QTest::addRow("%s, by its name", from) << true << isElsewhere;
        QTest::addRow("%s, by a number", from) << false << isElsewhere;
    }
}

void MorphologyStorageTest::leavesNoOrganOfAWormThatCannotBeWritten()
{
    QFETCH(bool, nameIsTaken);
    QFETCH(bool, isElsewhere);

    TemporaryLibrary elsewhere;
    const std::unique_ptr<Morphology> present = plainWorm();
    QVERIFY(present->submit(library->db()) > 0);
    const std::unique_ptr<Morphology> worm = plainWorm();
    worm->regions().at(2)->addSpotOrgan(eyeType(), {}, 0.0);
    worm->regions().at(2)->addLineOrgan(cordType(), {}, {}, {});
    if (isElsewhere)
        QVERIFY(worm->submit(elsewhere.db()) > 0);
    if (!nameIsTaken) {
        worm->setName(QStringLiteral("other"));
        worm->regions().at(1)->setParam(0, std::numeric_limits<double>::quiet_NaN());
    }

    worm->submit(library->db());
    QCOMPARE(rowsIn(library.get()), rowsOf({present.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*present, Ids::With));
}

void MorphologyStorageTest::removesARegionWithALinkToAMissingOne()
{
    plainWorm()->submit(library->db());
    library->run(QStringLiteral("PRAGMA foreign_keys = OFF"));
    library->run(QStringLiteral("UPDATE RegionsLink SET ToRegion = 999 WHERE FromRegion = 1"));
    library->run(QStringLiteral("PRAGMA foreign_keys = ON"));

    const std::unique_ptr<Morphology> worm = loaded(1);
    QVERIFY(worm->removeRegion(worm->regions().first()));
    QCOMPARE(worm->links().size(), 1);
    QCOMPARE(worm->submit(library->db()), 1);
    QCOMPARE(rowsIn(library.get()), rowsOf({worm.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*worm, Ids::With));
}

void MorphologyStorageTest::readsALinkToARegionOfAnotherWorm()
{
    const std::unique_ptr<Morphology> worm = plainWorm();
    worm->submit(library->db());
    Morphology other;
    other.setName(QStringLiteral("other"));
    other.addRegion(headType());
    other.submit(library->db());
    library->run(QStringLiteral("UPDATE RegionsLink SET ToRegion = %1 WHERE Id = 2")
                     .arg(other.regions().first()->id()));

    const std::unique_ptr<Morphology> damaged = loaded(1);
    RegionsLink *link = damaged->links().at(1);
    QCOMPARE(link->from(), damaged->regions().at(0));
    QCOMPARE(link->to(), nullptr);
    QVERIFY(!link->isComplete());
    QVERIFY(damaged->regions().at(0)->links().isEmpty());
    link->setFromAng(2.0);
    QCOMPARE(link->otherRegion(damaged->regions().at(1)), damaged->regions().at(0));

    QCOMPARE(damaged->submit(library->db()), 1);
    QVERIFY(damaged->erase());
    QCOMPARE(rowsIn(library.get()), rowsOf({&other}));
}

void MorphologyStorageTest::writesNoSecondWormOfAName()
{
    const auto make = [] {
        auto worm = std::make_unique<Morphology>();
        worm->setName(QStringLiteral("only one"));
        worm->addRegion(headType())->addLink(worm->addRegion(tailType()), 100.0, 1.0, 0.5);
        worm->addImage("picture");
        return worm;
    };
    const std::unique_ptr<Morphology> worm = make();
    QCOMPARE(worm->submit(library->db()), 1);

    QVERIFY(make()->submit(library->db()) < 1);
    QCOMPARE(rowsIn(library.get()), rowsOf({worm.get()}));
}

void MorphologyStorageTest::randomWormsComeBackAsTheyWereWritten()
{
    constexpr quint32 seeds = 200;
    Worms worms;
    for (quint32 seed = 1; seed <= seeds; ++seed) {
        RandomWorms random(seed, RandomWorms::DistinctAngles);
        worms.push_back(random.worm());
        for (const bool reload : {false, true, false, true}) {
            std::unique_ptr<Morphology> &worm = worms.back();
            const int id = worm->submit(library->db());
            const QString difference = firstDifference(*loaded(id), *worm);
            QVERIFY2(difference.isEmpty(), qPrintable(message(seed, difference)));
            if (reload)
                worm = loaded(id, seed % 2 == 0);
            for (int edits = 0; edits < 10; ++edits)
                random.edit(worm.get());
        }
        worms.back()->submit(library->db());
    }
    QCOMPARE(rowsIn(library.get()), rowsOf(pointers(worms)));

    DB fresh;
    QCOMPARE(fresh.connect(library->fileName(), false), int(DB::Opened));
    for (quint32 seed = 1; seed <= seeds; ++seed) {
        const Morphology &worm = *worms.at(seed - 1);
        const QString difference = firstDifference(Morphology(worm.id(), &fresh, true), worm);
        QVERIFY2(difference.isEmpty(), qPrintable(message(seed, difference)));
    }
}

void MorphologyStorageTest::randomWormsLeaveNoRowBehind()
{
    constexpr quint32 seeds = 60;
    Worms worms;
    for (quint32 seed = 1; seed <= seeds; ++seed) {
        RandomWorms random(seed, RandomWorms::AnyAngles);
        std::unique_ptr<Morphology> worm = random.worm();
        const int id = worm->submit(library->db());
        if (seed % 3 == 0)
            worm = loaded(id);
        if (seed % 2 == 0) {
            worms.push_back(std::move(worm));
            continue;
        }
        // Erased with members that wait to be erased, and others that were never written.
        for (int edits = 0; edits < 10; ++edits)
            random.edit(worm.get());
        QVERIFY2(worm->erase(), qPrintable(message(seed, QStringLiteral("cannot be erased"))));
        QCOMPARE(worm->id(), 0);
    }
    QCOMPARE(rowsIn(library.get()), rowsOf(pointers(worms)));

    for (const std::unique_ptr<Morphology> &worm : worms)
        QVERIFY(worm->erase());
    QCOMPARE(rowsIn(library.get()), QStringList());
}

QTEST_GUILESS_MAIN(MorphologyStorageTest)
#include "MorphologyStorageTest.moc"
