#include "model/Angles.h"

#include <QTest>

#include <limits>

using namespace Planaria;
using std::numbers::pi;

class AnglesTest final : public QObject
{
    Q_OBJECT

private slots:
    void bringsAnglesIntoOneTurn_data();
    void bringsAnglesIntoOneTurn();
    void looksBackAlongADirection_data();
    void looksBackAlongADirection();
    void sweepsInTheDirectionOfGrowingAngle_data();
    void sweepsInTheDirectionOfGrowingAngle();
    void findsTheAngleOfAVector_data();
    void findsTheAngleOfAVector();
    void pointsInTheDirectionOfAnAngle();
    void scalesVectorsToLengthOne();
    void givesVectorsTooShortForADirectionNone();
    void makesNoAngleOfWhatIsNone();
};

void AnglesTest::bringsAnglesIntoOneTurn_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<double>("normalized");

    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("within the turn") << 4.0 << 4.0;
    QTest::newRow("a full turn") << 2.0 * pi << 0.0;
    QTest::newRow("over a turn") << 7.0 << 7.0 - 2.0 * pi;
    QTest::newRow("a quarter back") << -0.5 * pi << 1.5 * pi;
    QTest::newRow("a hair back") << -1e-17 << 0.0;
    QTest::newRow("three turns back") << -6.0 * pi << 0.0;
    QTest::newRow("many turns") << 0.25 + 200.0 * pi << 0.25;
}

void AnglesTest::bringsAnglesIntoOneTurn()
{
    QFETCH(double, angle);
    QFETCH(double, normalized);

    QVERIFY(std::abs(Angles::normalized(angle) - normalized) < 1e-12);
    QVERIFY(Angles::normalized(angle) < 2.0 * pi);
}

void AnglesTest::looksBackAlongADirection_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<double>("opposite");

    QTest::newRow("zero") << 0.0 << pi;
    QTest::newRow("below a half turn") << 1.0 << 1.0 + pi;
    QTest::newRow("exactly a half turn") << pi << 0.0;
    QTest::newRow("above a half turn") << 4.0 << 4.0 - pi;
    QTest::newRow("not folded") << -0.5 * pi << 0.5 * pi;
}

void AnglesTest::looksBackAlongADirection()
{
    QFETCH(double, angle);
    QFETCH(double, opposite);

    QCOMPARE(Angles::opposite(angle), opposite);
}

void AnglesTest::sweepsInTheDirectionOfGrowingAngle_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<double>("arc");

    QTest::newRow("none") << 1.0 << 1.0 << 0.0;
    QTest::newRow("forwards") << 1.0 << 3.0 << 2.0;
    QTest::newRow("backwards goes the long way") << 3.0 << 1.0 << 2.0 * pi - 2.0;
    QTest::newRow("across zero") << 6.0 << 0.5 << 2.0 * pi - 5.5;
    QTest::newRow("a half turn") << 0.0 << pi << pi;
}

void AnglesTest::sweepsInTheDirectionOfGrowingAngle()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(double, arc);

    QVERIFY(std::abs(Angles::sweep(from, to) - arc) < 1e-12);
}

void AnglesTest::findsTheAngleOfAVector_data()
{
    QTest::addColumn<QPointF>("vector");
    QTest::addColumn<double>("angle");

    QTest::newRow("right") << QPointF(2.0, 0.0) << 0.0;
    QTest::newRow("up") << QPointF(0.0, 3.0) << 0.5 * pi;
    QTest::newRow("left") << QPointF(-1.0, 0.0) << pi;
    QTest::newRow("down") << QPointF(0.0, -1.0) << 1.5 * pi;
    QTest::newRow("right and down") << QPointF(1.0, -1.0) << 1.75 * pi;
    QTest::newRow("nowhere") << QPointF() << 0.0;
}

void AnglesTest::findsTheAngleOfAVector()
{
    QFETCH(QPointF, vector);
    QFETCH(double, angle);

    QCOMPARE(Angles::angleOf(vector), angle);
}

void AnglesTest::pointsInTheDirectionOfAnAngle()
{
    QCOMPARE(Angles::direction(0.0), QPointF(1.0, 0.0));
    const QPointF up = Angles::direction(0.5 * pi);
    QVERIFY(std::abs(up.x()) < 1e-15);
    QCOMPARE(up.y(), 1.0);
    QCOMPARE(Angles::angleOf(Angles::direction(4.0)), 4.0);
}

void AnglesTest::scalesVectorsToLengthOne()
{
    QCOMPARE(Angles::length({3.0, -4.0}), 5.0);
    QCOMPARE(Angles::unit({3.0, -4.0}), QPointF(0.6, -0.8));
}

void AnglesTest::givesVectorsTooShortForADirectionNone()
{
    QCOMPARE(Angles::unit({0.0, 0.0}), QPointF());
    QCOMPARE(Angles::unit({0.0001, 0.0}), QPointF());
    QCOMPARE(Angles::unit({0.00011, 0.0}), QPointF(1.0, 0.0));
}

void AnglesTest::makesNoAngleOfWhatIsNone()
{
    QVERIFY(std::isnan(Angles::normalized(std::numeric_limits<double>::quiet_NaN())));
    QVERIFY(std::isnan(Angles::normalized(std::numeric_limits<double>::infinity())));
}

QTEST_GUILESS_MAIN(AnglesTest)
#include "AnglesTest.moc"
