#include "db/BulkRead.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"
#include "model/SpotOrgan.h"
#include "model/WormLines.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

#include <functional>

using namespace Planaria;

namespace {

/// Two linked regions with an organ of each kind and two pictures.
std::unique_ptr<Morphology> picturedWorm(const QString &name)
{
    auto worm = std::make_unique<Morphology>();
    worm->setName(name);
    Region *head = worm->addRegion(headType());
    Region *tail = worm->addRegion(tailType());
    head->addLink(tail, 100.0, 1.25, 0.25);
    head->addSpotOrgan(eyeType(), {1.0, 2.0}, 3.0);
    tail->addLineOrgan(cordType(), {4.0, 5.0}, {6.0, 7.0}, {8.0, 9.0});
    worm->addImage("photo");
    worm->addImage("sketch");
    return worm;
}

} // namespace

/// Identity, rows and pictures of copied and assigned worms, in one file and between two.
class MorphologyCopiesTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void copyWithIdsWritesIntoTheSameRows();
    void copyWithoutIdsWritesNewRows();
    void erasingACopyWithoutIdsErasesNothing();
    void assignmentTakesOverTheIdentity();
    void assignmentKeepsWhatWaitsToBeErased();
    void copyingIntoAWormKeepsItsIdentityAndReplacesItsRows();
    void copyingIntoAWormIsUndoneByDroppingIt();
    void selfAssignmentAndSelfCopyKeepTheRows();

    void picturesAreReadWhenTheyAreAskedFor_data();
    void picturesAreReadWhenTheyAreAskedFor();
    void picturesAreReadAtOnceWhereToldTo();
    void picturesAreReadAfterABulkRead();
    void picturesNotReadCannotBeRemovedByPlace();
    void picturesNeverReadStayUntouchedInTheFile();
    void picturesInMemoryAreWritten();
    void picturesAreNeverDoubled_data();
    void picturesAreNeverDoubled();
    void picturesMayBeEmpty();

    void anotherFileGetsAllOfAWorm_data();
    void anotherFileGetsAllOfAWorm();
    void anotherFileGetsTheEditedWorm();
    void wormOfAnotherFileCanBeCopiedIntoAStoredOne();

private:
    std::unique_ptr<Morphology> loaded(int id, bool loadImages = false)
    {
        return std::make_unique<Morphology>(id, library->db(), loadImages);
    }

    QStringList rows() { return rowsIn(library.get()); }

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<TemporaryLibrary> otherLibrary;
};

/// The library starts with the worm "first" in row 1.
void MorphologyCopiesTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    otherLibrary = std::make_unique<TemporaryLibrary>();
    picturedWorm(QStringLiteral("first"))->submit(library->db());
}

void MorphologyCopiesTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
    QCOMPARE(otherLibrary->brokenReferences(), QStringList());
}

void MorphologyCopiesTest::copyWithIdsWritesIntoTheSameRows()
{
    const std::unique_ptr<Morphology> worm = loaded(1);
    Morphology copy(*worm, true);
    QCOMPARE(wormLines(copy, Ids::With), wormLines(*worm, Ids::With));

    copy.regions().first()->setParam(0, 7.0);
    copy.removeRegionsLink(copy.links().first());
    copy.removeImage(0);
    QCOMPARE(copy.submit(library->db()), 1);
    QCOMPARE(rows(), rowsOf({&copy}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(copy, Ids::With));
}

void MorphologyCopiesTest::copyWithoutIdsWritesNewRows()
{
    const std::unique_ptr<Morphology> worm = loaded(1);
    const QStringList before = wormLines(*worm, Ids::With);
    Morphology copy(*worm, false);
    QCOMPARE(wormLines(copy, Ids::Without), wormLines(*worm, Ids::Without));
    for (const QString &line : wormLines(copy, Ids::With))
        QVERIFY2(line.endsWith(QLatin1String(", id 0")), qPrintable(line));

    copy.setName(QStringLiteral("first - copy"));
    QCOMPARE(copy.submit(library->db()), 2);
    QCOMPARE(rows(), rowsOf({worm.get(), &copy}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), before);
    QCOMPARE(wormLines(*loaded(2), Ids::With), wormLines(copy, Ids::With));
}

void MorphologyCopiesTest::erasingACopyWithoutIdsErasesNothing()
{
    const std::unique_ptr<Morphology> worm = loaded(1);

    QVERIFY(Morphology(*worm, false).erase());
    QCOMPARE(rows(), rowsOf({worm.get()}));
}

void MorphologyCopiesTest::assignmentTakesOverTheIdentity()
{
    const std::unique_ptr<Morphology> source = picturedWorm(QStringLiteral("second"));
    source->removeRegion(source->regions().last());
    source->submit(library->db());
    const std::unique_ptr<Morphology> former = loaded(1);

    const std::unique_ptr<Morphology> worm = loaded(1);
    *worm = *source;
    QCOMPARE(wormLines(*worm, Ids::With), wormLines(*source, Ids::With));

    QCOMPARE(worm->submit(library->db()), 2);
    QCOMPARE(rows(), rowsOf({former.get(), source.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*former, Ids::With));
}

void MorphologyCopiesTest::assignmentKeepsWhatWaitsToBeErased()
{
    const std::unique_ptr<Morphology> source = picturedWorm(QStringLiteral("second"));
    const std::unique_ptr<Morphology> worm = loaded(1);
    worm->removeImage(worm->getImage(0));
    const QList<DBElement *> queue = worm->record().removedReferences();

    *worm = *source;
    QCOMPARE(worm->record().removedReferences(), queue);

    QCOMPARE(worm->submit(library->db()), 2);
    QCOMPARE(loaded(1)->nImages(), 1);
    QCOMPARE(loaded(2)->nImages(), 2);
}

void MorphologyCopiesTest::copyingIntoAWormKeepsItsIdentityAndReplacesItsRows()
{
    const std::unique_ptr<Morphology> source = picturedWorm(QStringLiteral("second"));
    source->removeRegion(source->regions().last());
    source->submit(library->db());

    const std::unique_ptr<Morphology> worm = loaded(1);
    const int formerRegion = worm->regions().last()->id();
    worm->copy(*source);
    worm->setName(QStringLiteral("third"));
    QCOMPARE(worm->id(), 1);
    QCOMPARE(worm->regions().first()->id(), 0);

    QCOMPARE(worm->submit(library->db()), 1);
    QVERIFY(worm->regions().first()->id() > formerRegion);
    QCOMPARE(rows(), rowsOf({worm.get(), source.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*worm, Ids::With));
    QCOMPARE(wormLines(*loaded(2), Ids::With), wormLines(*source, Ids::With));
}

void MorphologyCopiesTest::copyingIntoAWormIsUndoneByDroppingIt()
{
    const std::unique_ptr<Morphology> former = loaded(1);

    loaded(1)->copy(*picturedWorm(QStringLiteral("second")));
    QCOMPARE(rows(), rowsOf({former.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*former, Ids::With));
}

void MorphologyCopiesTest::selfAssignmentAndSelfCopyKeepTheRows()
{
    const std::unique_ptr<Morphology> former = loaded(1);
    const std::unique_ptr<Morphology> worm = loaded(1);
    Morphology &self = *worm;

    *worm = self;
    worm->copy(self);
    QCOMPARE(worm->submit(library->db()), 1);
    QCOMPARE(rows(), rowsOf({former.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*former, Ids::With));
}

// --- Pictures ---

void MorphologyCopiesTest::picturesAreReadWhenTheyAreAskedFor_data()
{
    using Question = std::function<qsizetype(Morphology *)>;
    QTest::addColumn<Question>("pictures");

    QTest::newRow("number") << Question([](Morphology *worm) { return worm->nImages(); });
    QTest::newRow("list") << Question([](Morphology *worm) { return worm->getImages().size(); });
    QTest::newRow("one of them") << Question(
        [](Morphology *worm) { return worm->getImage(2)->bytes() == "late" ? 3 : 0; });
    QTest::newRow("one more") << Question([](Morphology *worm) {
        MorphologyImage *added = worm->addImage("another");
        return worm->getImages().indexOf(added);
    });
    QTest::newRow("comparison") << Question([](Morphology *worm) {
        const auto alike = picturedWorm(QStringLiteral("first"));
        alike->addImage("late");
        return *worm == *alike ? 3 : 0;
    });
    QTest::newRow("copy") << Question(
        [](Morphology *worm) { return Morphology(*worm, false).nImages(); });
    QTest::newRow("removal of all") << Question([](Morphology *worm) {
        worm->removeAll();
        return queued<DBElement>(worm).size() - 3; // two regions and a link
    });
}

void MorphologyCopiesTest::picturesAreReadWhenTheyAreAskedFor()
{
    using Question = std::function<qsizetype(Morphology *)>;
    QFETCH(Question, pictures);

    const std::unique_ptr<Morphology> worm = loaded(1);
    library->run(
        QStringLiteral("INSERT INTO MorphologyImage VALUES(NULL, 1, CAST('late' AS BLOB))"));
    QCOMPARE(pictures(worm.get()), 3);
}

void MorphologyCopiesTest::picturesAreReadAtOnceWhereToldTo()
{
    const std::unique_ptr<Morphology> worm = loaded(1, true);
    library->run(QStringLiteral("DELETE FROM MorphologyImage"));

    QCOMPARE(worm->nImages(), 2);
    QCOMPARE(worm->getImage(0)->bytes(), QByteArray("photo"));
}

void MorphologyCopiesTest::picturesAreReadAfterABulkRead()
{
    std::unique_ptr<Morphology> worm;
    {
        const BulkRead job(library->db());
        worm = loaded(1);
    }
    QCOMPARE(worm->nImages(), 2);
    QCOMPARE(worm->getImage(1)->bytes(), QByteArray("sketch"));
}

void MorphologyCopiesTest::picturesNotReadCannotBeRemovedByPlace()
{
    const std::unique_ptr<Morphology> worm = loaded(1);

    QVERIFY(!worm->removeImage(0));
    QCOMPARE(worm->nImages(), 2);
    QVERIFY(worm->removeImage(0));
    QCOMPARE(worm->getImage(0)->bytes(), QByteArray("sketch"));
}

void MorphologyCopiesTest::picturesNeverReadStayUntouchedInTheFile()
{
    for (const char *statement : {"INSERT", "UPDATE", "DELETE"}) {
        library->run(QStringLiteral("CREATE TRIGGER No%1 BEFORE %1 ON MorphologyImage BEGIN "
                                    "SELECT RAISE(ABORT, 'touched'); END")
                         .arg(statement));
    }
    const std::unique_ptr<Morphology> worm = loaded(1);
    worm->setName(QStringLiteral("renamed"));

    QCOMPARE(worm->submit(library->db()), 1);
    QCOMPARE(loaded(1)->name(), QStringLiteral("renamed"));
    QCOMPARE(loaded(1)->nImages(), 2);
}

void MorphologyCopiesTest::picturesInMemoryAreWritten()
{
    const std::unique_ptr<Morphology> worm = loaded(1, true);
    library->run(QStringLiteral("UPDATE MorphologyImage SET Data = x'00'"));
    worm->submit(library->db());

    QCOMPARE(loaded(1)->getImage(0)->bytes(), QByteArray("photo"));
    QCOMPARE(loaded(1)->getImage(1)->bytes(), QByteArray("sketch"));
}

void MorphologyCopiesTest::picturesAreNeverDoubled_data()
{
    using Copying = std::function<std::unique_ptr<Morphology>(const Morphology &, Morphology *)>;
    QTest::addColumn<Copying>("copying");
    QTest::addColumn<bool>("loadImages");

    const auto row = [](const char *name, const Copying &copying) {
        QTest::addRow("%s, in the file", name) << copying << false;
        QTest::addRow("%s, in memory", name) << copying << true;
    };
    row("copy with ids", [](const Morphology &source, Morphology *) {
        return std::make_unique<Morphology>(source, true);
    });
    row("copy without ids", [](const Morphology &source, Morphology *) {
        return std::make_unique<Morphology>(source, false);
    });
    row("copy of a copy", [](const Morphology &source, Morphology *) {
        return std::make_unique<Morphology>(Morphology(source, true), true);
    });
    row("assigned to a new worm", [](const Morphology &source, Morphology *) {
        auto worm = std::make_unique<Morphology>();
        *worm = source;
        return worm;
    });
    row("assigned to a stored worm", [](const Morphology &source, Morphology *stored) {
        *stored = source;
        return std::make_unique<Morphology>(*stored, true);
    });
    row("copied into a new worm", [](const Morphology &source, Morphology *) {
        auto worm = std::make_unique<Morphology>();
        worm->copy(source);
        return worm;
    });
    row("copied into a stored worm", [](const Morphology &source, Morphology *stored) {
        stored->copy(source);
        return std::make_unique<Morphology>(*stored, false);
    });
}

void MorphologyCopiesTest::picturesAreNeverDoubled()
{
    using Copying = std::function<std::unique_ptr<Morphology>(const Morphology &, Morphology *)>;
    QFETCH(Copying, copying);
    QFETCH(bool, loadImages);
    picturedWorm(QStringLiteral("second"))->submit(library->db());

    const std::unique_ptr<Morphology> source = loaded(1, loadImages);
    const std::unique_ptr<Morphology> stored = loaded(2, loadImages);
    const std::unique_ptr<Morphology> worm = copying(*source, stored.get());
    QCOMPARE(worm->nImages(), 2);
    QCOMPARE(stored->nImages(), 2);

    worm->setName(QStringLiteral("third"));
    const int id = worm->submit(library->db());
    QVERIFY(id > 0);
    QCOMPARE(loaded(id)->nImages(), 2);
    for (const int former : {1, 2})
        QCOMPARE(loaded(former)->nImages(), 2);
    QCOMPARE(library->count("MorphologyImage"), 2 * library->count("Morphology"));
}

void MorphologyCopiesTest::picturesMayBeEmpty()
{
    const std::unique_ptr<Morphology> worm = loaded(1);
    worm->addImage(QByteArray());
    worm->addImage(QByteArray(""));

    QCOMPARE(worm->submit(library->db()), 1);
    QCOMPARE(rows(), rowsOf({worm.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*worm, Ids::With));
}

// --- Two files ---

void MorphologyCopiesTest::anotherFileGetsAllOfAWorm_data()
{
    QTest::addColumn<bool>("loadImages");
    QTest::addColumn<bool>("byCopy");

    QTest::newRow("pictures in the file") << false << false;
    QTest::newRow("pictures in memory") << true << false;
    QTest::newRow("a copy with ids, pictures in the file") << false << true;
    QTest::newRow("a copy with ids, pictures in memory") << true << true;
}

void MorphologyCopiesTest::anotherFileGetsAllOfAWorm()
{
    QFETCH(bool, loadImages);
    QFETCH(bool, byCopy);
    const std::unique_ptr<Morphology> former = loaded(1);
    picturedWorm(QStringLiteral("there before"))->submit(otherLibrary->db());

    std::unique_ptr<Morphology> worm = loaded(1, loadImages);
    if (byCopy)
        worm = std::make_unique<Morphology>(*worm, true);
    QCOMPARE(worm->submit(otherLibrary->db()), 2);

    QCOMPARE(rowsIn(otherLibrary.get()), rowsOf({former.get(), worm.get()}));
    const Morphology arrived(2, otherLibrary->db(), false);
    QCOMPARE(wormLines(arrived, Ids::With), wormLines(*worm, Ids::With));
    QCOMPARE(wormLines(arrived, Ids::Without), wormLines(*former, Ids::Without));
    QCOMPARE(rows(), rowsOf({former.get()}));
    QCOMPARE(wormLines(*loaded(1), Ids::With), wormLines(*former, Ids::With));

    // From now on it lives there.
    worm->removeImage(0);
    QCOMPARE(worm->submit(otherLibrary->db()), 2);
    QCOMPARE(otherLibrary->count("MorphologyImage"), 3);
    QCOMPARE(library->count("MorphologyImage"), 2);
}

void MorphologyCopiesTest::anotherFileGetsTheEditedWorm()
{
    const std::unique_ptr<Morphology> worm = loaded(1);
    Region *trunk = worm->addRegion(trunkType());
    worm->regions().first()->addLink(trunk, 50.0, 3.0, 0.5);
    trunk->addSpotOrgan(brainType(), {}, 0.0);
    worm->addImage("more");

    QCOMPARE(worm->submit(otherLibrary->db()), 1);
    QCOMPARE(rowsIn(otherLibrary.get()), rowsOf({worm.get()}));
    QCOMPARE(wormLines(Morphology(1, otherLibrary->db(), true), Ids::With),
             wormLines(*worm, Ids::With));
}

void MorphologyCopiesTest::wormOfAnotherFileCanBeCopiedIntoAStoredOne()
{
    const std::unique_ptr<Morphology> source = loaded(1);
    picturedWorm(QStringLiteral("there before"))->submit(otherLibrary->db());
    Morphology worm(1, otherLibrary->db(), false);

    worm.copy(*source);
    QCOMPARE(worm.submit(otherLibrary->db()), 1);
    QCOMPARE(rowsIn(otherLibrary.get()), rowsOf({&worm}));
    QCOMPARE(wormLines(Morphology(1, otherLibrary->db(), false), Ids::Without),
             wormLines(*source, Ids::Without));
    QCOMPARE(rows(), rowsOf({source.get()}));
}

QTEST_GUILESS_MAIN(MorphologyCopiesTest)
#include "MorphologyCopiesTest.moc"
