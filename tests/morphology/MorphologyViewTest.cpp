#include "morphology/MorphologyView.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "morphology/MorphologyItem.h"

#include <QGraphicsScene>
#include <QTest>

using namespace Planaria;

namespace {

std::unique_ptr<Morphology> wildType()
{
    return ExperimentFactory::instance(nullptr)->createWildMorphology();
}

std::unique_ptr<Morphology> roundWorm()
{
    auto worm = std::make_unique<Morphology>();
    worm->setName("Round");
    worm->addRegion(ExperimentFactory::instance(nullptr)->regionType(1));
    return worm;
}

QRectF extentOf(const Morphology &worm)
{
    return MorphologyItem(worm, nullptr, false).boundingRect();
}

/// The extents of the worms that @p view shows.
QList<QRectF> shownWorms(const MorphologyView &view)
{
    QList<QRectF> extents;
    for (QGraphicsItem *item : view.scene()->items()) {
        if (item->parentItem() == nullptr && dynamic_cast<MorphologyItem *>(item) != nullptr)
            extents += item->sceneBoundingRect();
    }
    return extents;
}

} // namespace

class MorphologyViewTest final : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutAWorm();
    void startsWithAWorm();
    void drawsOutlinesAndGradients();
    void showsOneWormAtATime();
    void shrinksAWormThatIsTooLarge();
    void followsAChangeOfItsWorm();
    void fitsAgainAfterAChange();
    void changesNothingWithoutAWorm();
    void forgetsItsWorm();
    void leavesTheWormToItsOwner();
    void tellsWhatItShows();
};

void MorphologyViewTest::startsWithoutAWorm()
{
    const MorphologyView view(nullptr);
    QCOMPARE(view.morphology(), nullptr);
    QVERIFY(view.scene()->items().isEmpty());
}

void MorphologyViewTest::startsWithAWorm()
{
    const auto worm = wildType();
    const MorphologyView view(worm.get(), nullptr);
    QCOMPARE(view.morphology(), worm.get());
    QCOMPARE(shownWorms(view), QList{extentOf(*worm)});
    QCOMPARE(view.transform().m22(), -1.0); // the head is up
}

void MorphologyViewTest::drawsOutlinesAndGradients()
{
    const auto worm = roundWorm();
    const MorphologyView view(worm.get(), nullptr);
    const auto regions = view.scene()->items().constFirst()->topLevelItem()->childItems();
    QCOMPARE(regions.size(), 1);
    const auto *region = dynamic_cast<QGraphicsPathItem *>(regions.first());
    QCOMPARE(region->pen().style(), Qt::SolidLine);
    QCOMPARE(region->brush().style(), Qt::RadialGradientPattern);
}

void MorphologyViewTest::showsOneWormAtATime()
{
    const auto first = wildType();
    const auto second = roundWorm();
    MorphologyView view(first.get(), nullptr);
    view.setMorphology(second.get());
    QCOMPARE(view.morphology(), second.get());
    QCOMPARE(shownWorms(view), QList{extentOf(*second)});
    QCOMPARE(view.scene()->sceneRect(), view.scene()->itemsBoundingRect());
}

void MorphologyViewTest::shrinksAWormThatIsTooLarge()
{
    const auto worm = wildType();
    MorphologyView view(nullptr);
    view.resize(200, 200);
    view.show();
    view.setMorphology(worm.get());
    const double scale = view.transform().m11();
    QVERIFY(scale < 200.0 / extentOf(*worm).height());
    QCOMPARE(view.transform().m22(), -scale);

    view.setMorphology(roundWorm().get());
    QCOMPARE(view.transform().m11(), 1.0);
    view.clear();
}

void MorphologyViewTest::followsAChangeOfItsWorm()
{
    const auto worm = roundWorm();
    MorphologyView view(worm.get(), nullptr);
    const QRectF before = extentOf(*worm);
    worm->regions().first()->setParams({90.0, 20.0, 90.0, 20.0});
    QCOMPARE(shownWorms(view), QList{before});

    view.morphologyChanged();
    QVERIFY(extentOf(*worm) != before);
    QCOMPARE(shownWorms(view), QList{extentOf(*worm)});
    QCOMPARE(view.morphology(), worm.get());
}

void MorphologyViewTest::fitsAgainAfterAChange()
{
    const auto worm = roundWorm();
    MorphologyView view(nullptr);
    view.resize(200, 200);
    view.show();
    view.setMorphology(worm.get());
    QCOMPARE(view.transform().m11(), 1.0);
    worm->regions().first()->setParams({150.0, 150.0, 150.0, 150.0});
    view.morphologyChanged();
    QVERIFY(view.transform().m11() < 1.0);
}

void MorphologyViewTest::changesNothingWithoutAWorm()
{
    MorphologyView view(nullptr);
    view.morphologyChanged();
    QCOMPARE(view.morphology(), nullptr);
    QVERIFY(view.scene()->items().isEmpty());
}

void MorphologyViewTest::forgetsItsWorm()
{
    const auto worm = wildType();
    MorphologyView view(worm.get(), nullptr);
    view.clear();
    QCOMPARE(view.morphology(), nullptr);
    QVERIFY(view.scene()->items().isEmpty());
}

void MorphologyViewTest::leavesTheWormToItsOwner()
{
    const auto worm = wildType();
    {
        const MorphologyView view(worm.get(), nullptr);
    }
    QVERIFY(*worm == *wildType());
}

void MorphologyViewTest::tellsWhatItShows()
{
    const auto worm = wildType();
    MorphologyView view(nullptr);
    QCOMPARE(view.accessibleName(), "No morphology");
    view.setMorphology(worm.get());
    QCOMPARE(view.accessibleName(), "Drawing of morphology Wild type");
    worm->setName("Two heads");
    view.morphologyChanged();
    QCOMPARE(view.accessibleName(), "Drawing of morphology Two heads");
    view.clear();
    QCOMPARE(view.accessibleName(), "No morphology");
}

QTEST_MAIN(MorphologyViewTest)
#include "MorphologyViewTest.moc"
