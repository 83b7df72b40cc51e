#include "distance/DistAlgo.h"
#include "model/Morphology.h"
#include "support/JsonWorm.h"
#include "support/TestData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <cmath>

using namespace Planaria;

/// Distances against numbers that were worked out independently from the same worms.
class WorkedDistancesTest final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void areThoseWorkedOut_data();
    void areThoseWorkedOut();

private:
    QJsonArray cases;
};

void WorkedDistancesTest::initTestCase()
{
    cases = QJsonDocument::fromJson(readTestData("distances.json")).array();
    QCOMPARE(cases.size(), 40);

    // The hard ones are among them: paths are given up, and ties decide which.
    int givenUp = 0;
    int tied = 0;
    for (const QJsonValue &each : std::as_const(cases)) {
        givenUp += each["cap_bites"].toBool() ? 1 : 0;
        tied += each["dist_oldest_first"].isDouble() ? 1 : 0;
    }
    QCOMPARE(givenUp, 13);
    QCOMPARE(tied, 2);
}

void WorkedDistancesTest::areThoseWorkedOut_data()
{
    QTest::addColumn<QJsonObject>("pair");
    for (const QJsonValue &each : std::as_const(cases))
        QTest::addRow("%s %s", qPrintable(each["id"].toString()),
                      qPrintable(each["kind"].toString()))
            << each.toObject();
}

void WorkedDistancesTest::areThoseWorkedOut()
{
    QFETCH(const QJsonObject, pair);
    const double dist =
        DistAlgo::dist(*wormFromJson(pair["a"].toObject()), *wormFromJson(pair["b"].toObject()));
    const double expected = pair["dist"].toDouble();
    QVERIFY2(std::abs(dist - expected) <= 1e-9,
             qPrintable(QStringLiteral("%1 instead of %2").arg(dist, 0, 'g', 17).arg(expected)));
}

QTEST_GUILESS_MAIN(WorkedDistancesTest)
#include "WorkedDistancesTest.moc"
