#include "manipulation/ManipulationView.h"

#include "db/ExperimentFactory.h"
#include "manipulation/ManipulationItem.h"
#include "model/CropAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"

#include <QGraphicsScene>
#include <QScrollBar>
#include <QTest>

using namespace Planaria;

namespace {

std::unique_ptr<Manipulation> wildManipulation(const QString &name)
{
    auto manipulation = std::make_unique<Manipulation>(
        ExperimentFactory::instance(nullptr)->createWildMorphology().release());
    manipulation->setName(name);
    return manipulation;
}

void crop(Manipulation *manipulation, const QRectF &area)
{
    AreaAction *action = manipulation->addCropAction(manipulation->rootAction());
    for (const QPointF &corner :
         {area.topLeft(), area.topRight(), area.bottomRight(), area.bottomLeft()})
        action->addAreaPoint(corner);
}

/// The extents of the products that @p view shows.
QList<QRectF> shownProducts(const ManipulationView &view)
{
    QList<QRectF> extents;
    for (const QGraphicsItem *item : view.scene()->items()) {
        if (item->parentItem() == nullptr && dynamic_cast<const ManipulationItem *>(item))
            extents += item->sceneBoundingRect();
    }
    return extents;
}

QRectF extentOf(const Manipulation &manipulation)
{
    return ManipulationItem(manipulation.rootAction()).boundingRect();
}

} // namespace

class ManipulationViewTest final : public QObject
{
    Q_OBJECT

private slots:
    void startsEmpty();
    void showsOneProductAtATime();
    void shrinksAProductThatIsTooLarge();
    void followsAChangeOfItsTree();
    void keepsZoomAndScrollOverAChange();
    void updatesNothingWithoutAManipulation();
    void forgetsItsManipulation();
    void showsAManipulationWithoutARoot();
    void leavesTheManipulationToItsOwner();
    void tellsWhatItShows();
};

void ManipulationViewTest::startsEmpty()
{
    const ManipulationView view;
    QCOMPARE(view.manipulation(), nullptr);
    QVERIFY(view.scene()->items().isEmpty());
    QCOMPARE(view.transform().m22(), -1.0); // +y is up
}

void ManipulationViewTest::showsOneProductAtATime()
{
    const auto first = wildManipulation("first");
    const auto second = wildManipulation("second");
    crop(second.get(), {-30.0, 10.0, 60.0, 100.0});
    ManipulationView view;
    view.setManipulation(first.get());
    QCOMPARE(view.manipulation(), first.get());
    QCOMPARE(shownProducts(view), QList{extentOf(*first)});

    view.setManipulation(second.get());
    QCOMPARE(view.manipulation(), second.get());
    QCOMPARE(shownProducts(view), QList{extentOf(*second)});
    QCOMPARE(view.scene()->sceneRect(), view.scene()->itemsBoundingRect());
}

void ManipulationViewTest::shrinksAProductThatIsTooLarge()
{
    const auto manipulation = wildManipulation("worm");
    ManipulationView view;
    view.resize(200, 200);
    view.show();
    view.setManipulation(manipulation.get());
    const double scale = view.transform().m11();
    QVERIFY(scale < 200.0 / extentOf(*manipulation).height());
    QCOMPARE(view.transform().m22(), -scale);
}

void ManipulationViewTest::followsAChangeOfItsTree()
{
    const auto manipulation = wildManipulation("worm");
    ManipulationView view;
    view.setManipulation(manipulation.get());
    const QRectF before = extentOf(*manipulation);
    crop(manipulation.get(), {-30.0, 10.0, 60.0, 100.0});
    QCOMPARE(shownProducts(view), QList{before});

    view.updateManipulation();
    QCOMPARE(shownProducts(view), (QList{QRectF(-30.0, 10.0, 60.0, 100.0)}));
}

void ManipulationViewTest::keepsZoomAndScrollOverAChange()
{
    const auto manipulation = wildManipulation("worm");
    ManipulationView view;
    view.resize(200, 200);
    view.show();
    view.setManipulation(manipulation.get());
    view.scale(5.0, 5.0);
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->minimum() + 50);
    view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->minimum() + 20);
    const QTransform transform = view.viewportTransform();

    crop(manipulation.get(), {-30.0, 10.0, 60.0, 100.0});
    view.updateManipulation();
    QCOMPARE(view.viewportTransform(), transform);

    view.setManipulation(manipulation.get());
    QVERIFY(view.viewportTransform() != transform);
}

void ManipulationViewTest::updatesNothingWithoutAManipulation()
{
    ManipulationView view;
    view.updateManipulation();
    QCOMPARE(view.manipulation(), nullptr);
    QVERIFY(view.scene()->items().isEmpty());
}

void ManipulationViewTest::forgetsItsManipulation()
{
    const auto manipulation = wildManipulation("worm");
    ManipulationView view;
    view.setManipulation(manipulation.get());
    view.clear();
    QCOMPARE(view.manipulation(), nullptr);
    QVERIFY(view.scene()->items().isEmpty());
    view.updateManipulation();
    QVERIFY(view.scene()->items().isEmpty());
}

void ManipulationViewTest::showsAManipulationWithoutARoot()
{
    const auto manipulation = wildManipulation("worm");
    manipulation->removeAndDeleteAll();
    ManipulationView view;
    view.setManipulation(manipulation.get());
    QCOMPARE(shownProducts(view), QList{QRectF()});
}

void ManipulationViewTest::leavesTheManipulationToItsOwner()
{
    const auto manipulation = wildManipulation("worm");
    {
        ManipulationView view;
        view.setManipulation(manipulation.get());
    }
    QVERIFY(*manipulation == *wildManipulation("worm"));
}

void ManipulationViewTest::tellsWhatItShows()
{
    const auto manipulation = wildManipulation("graft");
    ManipulationView view;
    QCOMPARE(view.accessibleName(), "No manipulation");
    view.setManipulation(manipulation.get());
    QCOMPARE(view.accessibleName(), "Drawing of manipulation graft");
    manipulation->setName("cut");
    view.updateManipulation();
    QCOMPARE(view.accessibleName(), "Drawing of manipulation cut");
    view.clear();
    QCOMPARE(view.accessibleName(), "No manipulation");
}

QTEST_MAIN(ManipulationViewTest)
#include "ManipulationViewTest.moc"
