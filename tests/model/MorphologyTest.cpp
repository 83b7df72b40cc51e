#include "model/Morphology.h"

#include "model/MorphologyImage.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"
#include "model/SpotOrgan.h"

#include <QTest>

#include <functional>

using namespace Planaria;

namespace {

/// A change of a worm, and whether it worked.
using Edit = std::function<bool(Morphology *)>;

/// Two regions, a link and an image.
std::unique_ptr<Morphology> smallWorm()
{
    auto worm = std::make_unique<Morphology>();
    worm->setName(QStringLiteral("small"));
    worm->addRegion(headType())->addLink(worm->addRegion(tailType()), 100.0, 1.0, 0.5);
    worm->addImage("picture");
    return worm;
}

/// The same with an organ of each kind.
std::unique_ptr<Morphology> wormWithOrgans()
{
    auto worm = smallWorm();
    worm->regions().first()->addSpotOrgan(eyeType(), {1.0, 2.0}, 3.0);
    worm->regions().last()->addLineOrgan(cordType(), {}, {0.0, 1.0}, {1.0, 0.0});
    return worm;
}

} // namespace

class MorphologyTest final : public QObject
{
    Q_OBJECT

private slots:
    void startsEmpty();
    void keepsItsMembersInTheOrderOfTheirComing();
    void removesNothingThatIsNotItsOwn();
    void removesARegionOnceWithItsLinks_data();
    void removesARegionOnceWithItsLinks();
    void removesALinkOnce_data();
    void removesALinkOnce();
    void removesAnImageOnce_data();
    void removesAnImageOnce();
    void removesNoImageOutOfRange();
    void removesAllFromTheLastToTheFirst();

    void emptyWormsOfOneNameAreEqual();
    void differsFrom_data();
    void differsFrom();
    void regionsAreComparedInOrder();
    void linksMayJoinOtherRegions();
    void wormsOfTheSameWordsAreEqual();

    void copyIsDeep_data();
    void copyIsDeep();
    void copyWithOrgansDiffersFromItsSource_data();
    void copyWithOrgansDiffersFromItsSource();
    void copiedLinksJoinTheCopiedRegions();
    void copyingReplacesAndQueuesTheContent();
    void assignmentReplacesTheContentAndQueuesNothing();
    void assigningOrCopyingToItselfChangesNothing();
    void erasingAWormOfNoFileSucceeds();
};

void MorphologyTest::startsEmpty()
{
    const Morphology worm;

    QVERIFY(worm.name().isEmpty());
    QVERIFY(worm.regions().isEmpty());
    QVERIFY(worm.links().isEmpty());
    QCOMPARE(worm.nImages(), 0);
    QVERIFY(worm.getImages().isEmpty());
    QCOMPARE(worm.id(), 0);
}

void MorphologyTest::keepsItsMembersInTheOrderOfTheirComing()
{
    Morphology worm;
    Region *tail = worm.addRegion(tailType());
    Region *head = worm.addRegion(headType());
    RegionsLink *first = worm.addRegionsLink(head, tail, 100.0, 5.0, 0.5);
    RegionsLink *second = tail->addLink(head, 100.0, 0.5, 0.5);
    MorphologyImage *photo = worm.addImage("photo");
    MorphologyImage *sketch = worm.addImage("sketch");

    QCOMPARE(worm.regions(), (QList<Region *>{tail, head}));
    QCOMPARE(worm.links(), (QList<RegionsLink *>{first, second}));
    QCOMPARE(worm.getImages(), (QList<MorphologyImage *>{photo, sketch}));
    QCOMPARE(worm.nImages(), 2);
    QCOMPARE(worm.getImage(1), sketch);
    QCOMPARE(photo->bytes(), QByteArray("photo"));
}

void MorphologyTest::removesNothingThatIsNotItsOwn()
{
    const std::unique_ptr<Morphology> worm = smallWorm();
    const std::unique_ptr<Morphology> other = smallWorm();

    QVERIFY(!worm->removeRegion(other->regions().first()));
    QVERIFY(!worm->removeRegionsLink(other->links().first()));
    QVERIFY(!worm->removeImage(other->getImage(0)));

    for (const Morphology *each : {worm.get(), other.get()})
        QVERIFY(each->record().removedReferences().isEmpty());
    QVERIFY(*worm == *other);
}

void MorphologyTest::removesARegionOnceWithItsLinks_data()
{
    QTest::addColumn<Edit>("edit");

    QTest::newRow("by the worm") << Edit(
        [](Morphology *worm) { return worm->removeRegion(worm->regions().first()); });
    QTest::newRow("by the region") << Edit([](Morphology *worm) {
        worm->regions().first()->removeFromMorphology();
        return true;
    });
}

void MorphologyTest::removesARegionOnceWithItsLinks()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<Morphology> worm = smallWorm();
    Region *head = worm->regions().at(0);
    Region *tail = worm->regions().at(1);
    RegionsLink *link = worm->links().first();
    RegionsLink *back = tail->addLink(head, 100.0, 4.0, 0.5);
    RegionsLink *onlyTail = tail->addLink(worm->addRegion(trunkType()), 100.0, 2.0, 0.5);

    QVERIFY(edit(worm.get()));

    QCOMPARE(worm->regions().first(), tail);
    QCOMPARE(worm->links(), QList<RegionsLink *>{onlyTail});
    QCOMPARE(tail->links(), QList<RegionsLink *>{onlyTail});
    QCOMPARE(tail->params().size(), 3);
    QCOMPARE(head->morphology(), nullptr);
    QVERIFY(head->links().isEmpty());
    // Links first: their rows name the region's.
    QCOMPARE(worm->record().removedReferences(), (QList<DBElement *>{back, link, head}));
    QVERIFY(!worm->removeRegion(head));
    QCOMPARE(worm->record().removedReferences().size(), 3);
}

void MorphologyTest::removesALinkOnce_data()
{
    QTest::addColumn<Edit>("edit");

    QTest::newRow("by the worm") << Edit(
        [](Morphology *worm) { return worm->removeRegionsLink(worm->links().first()); });
    QTest::newRow("by the link") << Edit([](Morphology *worm) {
        worm->links().first()->removeFromMorphology();
        return true;
    });
}

void MorphologyTest::removesALinkOnce()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<Morphology> worm = smallWorm();
    RegionsLink *link = worm->links().first();

    QVERIFY(edit(worm.get()));

    QVERIFY(worm->links().isEmpty());
    for (const Region *region : worm->regions()) {
        QVERIFY(region->links().isEmpty());
        QCOMPARE(region->params().size(), 4);
    }
    QCOMPARE(worm->record().removedReferences(), QList<DBElement *>{link});
    QVERIFY(!worm->removeRegionsLink(link));
    QCOMPARE(worm->record().removedReferences().size(), 1);
}

void MorphologyTest::removesAnImageOnce_data()
{
    QTest::addColumn<Edit>("edit");

    QTest::newRow("by the worm") << Edit(
        [](Morphology *worm) { return worm->removeImage(worm->getImage(0)); });
    QTest::newRow("by its place") << Edit([](Morphology *worm) { return worm->removeImage(0); });
    QTest::newRow("by the image") << Edit([](Morphology *worm) {
        worm->getImage(0)->removeFromMorphology();
        return true;
    });
}

void MorphologyTest::removesAnImageOnce()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<Morphology> worm = smallWorm();
    MorphologyImage *image = worm->getImage(0);
    MorphologyImage *kept = worm->addImage("kept");

    QVERIFY(edit(worm.get()));

    QCOMPARE(worm->getImages(), QList<MorphologyImage *>{kept});
    image->removeFromMorphology();
    QVERIFY(!worm->removeImage(image));
    QCOMPARE(worm->record().removedReferences(), QList<DBElement *>{image});
}

void MorphologyTest::removesNoImageOutOfRange()
{
    const std::unique_ptr<Morphology> worm = smallWorm();

    for (const int absent : {-1, 1, 1000})
        QVERIFY(!worm->removeImage(absent));
    QCOMPARE(worm->nImages(), 1);
    QVERIFY(!Morphology().removeImage(0));
}

void MorphologyTest::removesAllFromTheLastToTheFirst()
{
    const std::unique_ptr<Morphology> worm = smallWorm();
    Region *head = worm->regions().at(0);
    Region *tail = worm->regions().at(1);
    RegionsLink *first = worm->links().first();
    RegionsLink *second = worm->addRegionsLink(tail, head, 100.0, 2.0, 0.5);
    MorphologyImage *photo = worm->getImage(0);
    MorphologyImage *sketch = worm->addImage("sketch");

    worm->removeAll();

    QVERIFY(worm->regions().isEmpty());
    QVERIFY(worm->links().isEmpty());
    QCOMPARE(worm->nImages(), 0);
    QCOMPARE(worm->record().removedReferences(),
             (QList<DBElement *>{second, first, tail, head, sketch, photo}));
}

void MorphologyTest::emptyWormsOfOneNameAreEqual()
{
    Morphology worm;
    Morphology other;
    QVERIFY(worm == other);

    worm.setName(QStringLiteral("Planaria"));
    QVERIFY(!(worm == other));
    other.setName(QStringLiteral("Planaria"));
    QVERIFY(worm == other);
}

void MorphologyTest::differsFrom_data()
{
    QTest::addColumn<Edit>("edit");

    QTest::newRow("a name in other case") << Edit([](Morphology *worm) {
        worm->setName(QStringLiteral("Small"));
        return true;
    });
    QTest::newRow("a region more")
        << Edit([](Morphology *worm) { return worm->addRegion(headType()) != nullptr; });
    QTest::newRow("a link less") << Edit(
        [](Morphology *worm) { return worm->removeRegionsLink(worm->links().first()); });
    QTest::newRow("another type") << Edit([](Morphology *worm) {
        worm->regions().last()->setType(trunkType());
        return true;
    });
    QTest::newRow("another param") << Edit([](Morphology *worm) {
        worm->regions().last()->setParam(2, 61.0);
        return true;
    });
    QTest::newRow("an organ more") << Edit([](Morphology *worm) {
        return worm->regions().last()->addSpotOrgan(eyeType(), {}, 0.0) != nullptr;
    });
    QTest::newRow("a link of another length") << Edit([](Morphology *worm) {
        worm->links().first()->setTotalDist(101.0);
        return true;
    });
    QTest::newRow("an image more")
        << Edit([](Morphology *worm) { return worm->addImage("picture") != nullptr; });
    QTest::newRow("another image of the same length") << Edit([](Morphology *worm) {
        return worm->removeImage(0) && worm->addImage("pictura") != nullptr;
    });
    QTest::newRow("a longer image that starts alike") << Edit([](Morphology *worm) {
        return worm->removeImage(0) && worm->addImage("pictures") != nullptr;
    });
}

void MorphologyTest::differsFrom()
{
    QFETCH(Edit, edit);
    const std::unique_ptr<Morphology> worm = smallWorm();
    const std::unique_ptr<Morphology> other = smallWorm();
    QVERIFY(*worm == *other);

    QVERIFY(edit(other.get()));
    QVERIFY(!(*worm == *other));
    QVERIFY(!(*other == *worm));
}

void MorphologyTest::regionsAreComparedInOrder()
{
    Morphology worm;
    worm.addRegion(headType());
    worm.addRegion(tailType());
    Morphology other;
    other.addRegion(tailType());
    other.addRegion(headType());

    QVERIFY(!(worm == other));
}

void MorphologyTest::linksMayJoinOtherRegions()
{
    const auto linked = [](int firstTo, int secondTo) {
        auto worm = std::make_unique<Morphology>();
        for (int i = 0; i < 4; ++i)
            worm->addRegion(trunkType());
        const QList<Region *> &regions = worm->regions();
        worm->addRegionsLink(regions.at(0), regions.at(firstTo), 100.0, 1.0, 0.5);
        worm->addRegionsLink(regions.at(2), regions.at(secondTo), 100.0, 2.0, 0.5);
        return worm;
    };

    QVERIFY(*linked(1, 3) == *linked(3, 1));
}

void MorphologyTest::wormsOfTheSameWordsAreEqual()
{
    QVERIFY(*wormWithOrgans() == *wormWithOrgans());
}

void MorphologyTest::copyIsDeep_data()
{
    QTest::addColumn<bool>("keepIds");

    QTest::newRow("with ids") << true;
    QTest::newRow("without ids") << false;
}

void MorphologyTest::copyIsDeep()
{
    QFETCH(bool, keepIds);
    const std::unique_ptr<Morphology> worm = smallWorm();
    worm->regions().first()->setParam(0, 7.0);

    Morphology copy(*worm, keepIds);
    QVERIFY(copy == *worm);
    QVERIFY(copy.record().removedReferences().isEmpty());

    copy.setName(QStringLiteral("copy"));
    copy.regions().first()->setParam(0, 8.0);
    copy.links().first()->setTotalDist(1.0);
    copy.removeAll();
    QVERIFY(*worm != copy);

    const std::unique_ptr<Morphology> same = smallWorm();
    same->regions().first()->setParam(0, 7.0);
    QVERIFY(*worm == *same);
}

void MorphologyTest::copyWithOrgansDiffersFromItsSource_data()
{
    copyIsDeep_data();
}

void MorphologyTest::copyWithOrgansDiffersFromItsSource()
{
    QFETCH(bool, keepIds);
    const std::unique_ptr<Morphology> worm = wormWithOrgans();
    const Morphology copy(*worm, keepIds);

    QVERIFY(!(copy == *worm));
    QVERIFY(!(*worm == copy));
    QCOMPARE(copy.regions().first()->organs().size(), 1);
    QCOMPARE(copy.regions().last()->organs().size(), 1);
}

void MorphologyTest::copiedLinksJoinTheCopiedRegions()
{
    Morphology worm;
    Region *tail = worm.addRegion(tailType());
    Region *head = worm.addRegion(headType());
    Region *trunk = worm.addRegion(trunkType());
    head->addLink(tail, 100.0, 4.0, 0.5);
    trunk->addLink(head, 100.0, 0.0, 0.5);
    head->addLink(trunk, 100.0, 1.0, 0.5);
    head->setParams({1, 2, 3});

    const Morphology copy(worm, false);
    for (int i = 0; i < 3; ++i) {
        const RegionsLink *link = copy.links().at(i);
        QCOMPARE(copy.regions().indexOf(link->from()),
                 worm.regions().indexOf(worm.links().at(i)->from()));
        QCOMPARE(copy.regions().indexOf(link->to()),
                 worm.regions().indexOf(worm.links().at(i)->to()));
    }
    const QList<RegionsLink *> &links = copy.links();
    QCOMPARE(copy.regions().at(1)->links(), (QList<RegionsLink *>{links[2], links[1], links[0]}));
    QCOMPARE(paramValues(copy.regions().at(1)), (QList<double>{1, 2, 3}));
}

void MorphologyTest::copyingReplacesAndQueuesTheContent()
{
    const std::unique_ptr<Morphology> worm = smallWorm();
    const std::unique_ptr<Morphology> source = wormWithOrgans();
    source->setName(QStringLiteral("source"));
    const QList<DBElement *> former{worm->links().at(0), worm->regions().at(1),
                                    worm->regions().at(0), worm->getImage(0)};

    worm->copy(*source);

    QCOMPARE(worm->name(), QStringLiteral("source"));
    QCOMPARE(worm->regions().size(), 2);
    QCOMPARE(worm->links().size(), 1);
    QCOMPARE(worm->nImages(), 1);
    QCOMPARE(worm->regions().first()->organs().size(), 1);
    QCOMPARE(worm->record().removedReferences(), former);
}

void MorphologyTest::assignmentReplacesTheContentAndQueuesNothing()
{
    const std::unique_ptr<Morphology> worm = wormWithOrgans();
    const std::unique_ptr<Morphology> source = smallWorm();
    source->setName(QStringLiteral("source"));

    *worm = *source;

    QVERIFY(*worm == *source);
    QVERIFY(worm->record().removedReferences().isEmpty());
}

void MorphologyTest::assigningOrCopyingToItselfChangesNothing()
{
    const std::unique_ptr<Morphology> worm = wormWithOrgans();
    Morphology &self = *worm;

    *worm = self;
    QVERIFY(*worm == *wormWithOrgans());
    worm->copy(self);
    QVERIFY(*worm == *wormWithOrgans());
    QVERIFY(worm->record().removedReferences().isEmpty());
}

void MorphologyTest::erasingAWormOfNoFileSucceeds()
{
    const std::unique_ptr<Morphology> worm = wormWithOrgans();

    QVERIFY(worm->erase());
    QCOMPARE(worm->id(), 0);
}

QTEST_GUILESS_MAIN(MorphologyTest)
#include "MorphologyTest.moc"
