#include "morphology/Clearance.h"

#include <QTest>

#include <numbers>

using namespace Planaria;
using Clearance::Dragged;

namespace {

constexpr double distance = 10.0;
constexpr QPointF below(0.0, -10.0);

bool near(const QPointF &a, const QPointF &b)
{
    return Angles::length(a - b) < 1e-9;
}

} // namespace

class ClearanceTest final : public QObject
{
    Q_OBJECT

private slots:
    void showsVectorsFurtherOut_data();
    void showsVectorsFurtherOut();
    void takesTheClearanceOffWhatIsDragged_data();
    void takesTheClearanceOffWhatIsDragged();
    void findsBackWhatItShows();
};

void ClearanceTest::showsVectorsFurtherOut_data()
{
    QTest::addColumn<QPointF>("vector");
    QTest::addColumn<QPointF>("shown");
    QTest::newRow("slanted") << QPointF(3.0, 4.0) << QPointF(9.0, 12.0);
    QTest::newRow("to the left") << QPointF(-5.0, 0.0) << QPointF(-15.0, 0.0);
    QTest::newRow("downwards") << QPointF(0.0, -5.0) << QPointF(0.0, -15.0);
    QTest::newRow("exactly none") << QPointF(0.0, 0.0) << below;
    QTest::newRow("none with a sign") << QPointF(-0.0, -0.0) << below;
    QTest::newRow("too short for a direction") << QPointF(0.00005, 0.0) << QPointF(0.00005, 0.0);
    QTest::newRow("just long enough") << QPointF(0.0002, 0.0) << QPointF(10.0002, 0.0);
}

void ClearanceTest::showsVectorsFurtherOut()
{
    QFETCH(const QPointF, vector);
    QFETCH(const QPointF, shown);
    QVERIFY(near(Clearance::shownAt(vector, distance, below), shown));
}

void ClearanceTest::takesTheClearanceOffWhatIsDragged_data()
{
    QTest::addColumn<QPointF>("proposed");
    QTest::addColumn<QPointF>("place");
    QTest::addColumn<QPointF>("vector");
    QTest::newRow("further out") << QPointF(9.0, 12.0) << QPointF(9.0, 12.0) << QPointF(3.0, 4.0);
    QTest::newRow("left below") << QPointF(-9.0, -12.0) << QPointF(-9.0, -12.0)
                                << QPointF(-3.0, -4.0);
    QTest::newRow("at the distance") << QPointF(6.0, 8.0) << QPointF(6.0, 8.0) << QPointF();
    QTest::newRow("too near") << QPointF(0.0, 2.0) << QPointF(0.0, 10.0) << QPointF();
    QTest::newRow("too near, below") << QPointF(-0.3, -0.4) << QPointF(-6.0, -8.0) << QPointF();
    QTest::newRow("at the centre") << QPointF() << QPointF(10.0, 0.0) << QPointF();
}

void ClearanceTest::takesTheClearanceOffWhatIsDragged()
{
    QFETCH(const QPointF, proposed);
    QFETCH(const QPointF, place);
    QFETCH(const QPointF, vector);
    const Dragged dragged = Clearance::draggedTo(proposed, distance);
    QVERIFY(near(dragged.place, place));
    QVERIFY(near(dragged.vector, vector));
    if (vector.isNull()) // or it would be shown elsewhere
        QCOMPARE(Clearance::shownAt(dragged.vector, distance, below), below);
}

void ClearanceTest::findsBackWhatItShows()
{
    for (double angle = 0.0; angle < 2.0 * std::numbers::pi; angle += 0.1) {
        const QPointF vector = 25.0 * Angles::direction(angle);
        const QPointF shown = Clearance::shownAt(vector, distance, below);
        const Dragged dragged = Clearance::draggedTo(shown, distance);
        QVERIFY2(near(dragged.vector, vector), qPrintable(QString::number(angle)));
        QCOMPARE(dragged.place, shown);
    }
}

QTEST_GUILESS_MAIN(ClearanceTest)
#include "ClearanceTest.moc"
