#include "manipulation/AreaPoint.h"

#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/RemoveAction.h"

#include <QBrush>
#include <QPen>
#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace Planaria;

/// Works on a handle of a corner at (30, -40), unless a test says otherwise.
class AreaPointTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { handle.reset(); }

    void looksLikeAYellowDot();
    void startsAtItsCorner();
    void movesItsCornerBeforeItself();
    void goesWhereverItIsDragged();
    void followsItsCornerWithoutAWord();
    void showsNumbersThatCannotBeDrawn_data();
    void showsNumbersThatCannotBeDrawn();

private:
    std::unique_ptr<Manipulation> manipulation;
    ActionAreaPoint *corner = nullptr;
    std::unique_ptr<AreaPoint> handle;
};

void AreaPointTest::init()
{
    manipulation = std::make_unique<Manipulation>(new Morphology());
    AreaAction *action = manipulation->addRemoveAction(manipulation->rootAction());
    corner = action->addAreaPoint({30.0, -40.0});
    handle = std::make_unique<AreaPoint>(corner);
}

void AreaPointTest::looksLikeAYellowDot()
{
    QCOMPARE(handle->rect(), QRectF(-5.0, -5.0, 10.0, 10.0));
    QCOMPARE(handle->zValue(), 1.0);
    QCOMPARE(handle->flags(), QGraphicsItem::ItemIsMovable | QGraphicsItem::ItemIsSelectable |
                                  QGraphicsItem::ItemSendsGeometryChanges);
    QCOMPARE(handle->pen(), QPen(Qt::black));
    QCOMPARE(handle->brush(), QBrush(QColor(255, 255, 0, 255), Qt::SolidPattern));
}

void AreaPointTest::startsAtItsCorner()
{
    QCOMPARE(handle->pos(), QPointF(30.0, -40.0));
    QCOMPARE(corner->point(), QPointF(30.0, -40.0));
}

void AreaPointTest::movesItsCornerBeforeItself()
{
    QList<QPointF> seen;
    connect(handle.get(), &AreaPoint::pointChanged, handle.get(), [&] {
        seen += {corner->point(), handle->pos()};
    });
    handle->setPos(1.0, 2.0);
    QCOMPARE(seen, QList<QPointF>({{1.0, 2.0}, {30.0, -40.0}}));
    QCOMPARE(handle->pos(), QPointF(1.0, 2.0));
}

void AreaPointTest::goesWhereverItIsDragged()
{
    for (const QPointF &place : {QPointF(0.125, -0.375), QPointF(-1e5, 12345.678)}) {
        handle->setPos(place);
        QCOMPARE(corner->point(), place);
    }
}

void AreaPointTest::followsItsCornerWithoutAWord()
{
    const QSignalSpy changes(handle.get(), &AreaPoint::pointChanged);
    corner->setPoint({7.0, 8.0});
    handle->updatePos();
    QCOMPARE(handle->pos(), QPointF(7.0, 8.0));
    QCOMPARE(changes.size(), 0);
    handle->setPos(9.0, 9.0);
    QCOMPARE(changes.size(), 1);
}

void AreaPointTest::showsNumbersThatCannotBeDrawn_data()
{
    QTest::addColumn<QPointF>("stored");
    QTest::addColumn<QPointF>("shown");
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("no number") << QPointF(notANumber, 5.0) << QPointF(0.0, 5.0);
    QTest::newRow("infinite") << QPointF(5.0, -infinite) << QPointF(5.0, 0.0);
    QTest::newRow("beyond all worms") << QPointF(1e300, -1e300) << QPointF(1e6, -1e6);
}

void AreaPointTest::showsNumbersThatCannotBeDrawn()
{
    QFETCH(const QPointF, stored);
    QFETCH(const QPointF, shown);
    corner->setPoint(stored);
    handle->updatePos();
    QCOMPARE(handle->pos(), shown);
    QCOMPARE(corner->x(), stored.x());
    QCOMPARE(corner->y(), stored.y());
}

QTEST_MAIN(AreaPointTest)
#include "AreaPointTest.moc"
