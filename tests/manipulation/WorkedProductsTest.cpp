#include "db/ExperimentFactory.h"
#include "manipulation/ManipulationItem.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "support/DrawnProduct.h"
#include "support/JsonManipulation.h"
#include "support/TestData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <cmath>

using namespace Planaria;

namespace {

QRectF rect(const QJsonValue &json)
{
    return {json[0].toDouble(), json[1].toDouble(), json[2].toDouble(), json[3].toDouble()};
}

bool near(const QRectF &a, const QRectF &b, double tolerance)
{
    return std::abs(a.left() - b.left()) <= tolerance && std::abs(a.top() - b.top()) <= tolerance &&
           std::abs(a.right() - b.right()) <= tolerance &&
           std::abs(a.bottom() - b.bottom()) <= tolerance;
}

/// Rectangles as the failing test shows them.
QByteArray text(const QRectF &actual, const QRectF &expected)
{
    QString result;
    QDebug(&result) << qSetRealNumberPrecision(12) << actual << "instead of" << expected;
    return result.toUtf8();
}

} // namespace

/// Products whose area and extent were worked out independently.
class WorkedProductsTest final : public QObject
{
    Q_OBJECT

private slots:
    void productsHaveTheirAreaAndExtent_data();
    void productsHaveTheirAreaAndExtent();
};

void WorkedProductsTest::productsHaveTheirAreaAndExtent_data()
{
    QTest::addColumn<QJsonObject>("workedCase");

    const QJsonArray cases =
        QJsonDocument::fromJson(readTestData("products.json"))["cases"].toArray();
    QCOMPARE(cases.size(), 12);
    for (const QJsonValue &each : cases)
        QTest::newRow(qPrintable(each["note"].toString())) << each.toObject();
}

void WorkedProductsTest::productsHaveTheirAreaAndExtent()
{
    QFETCH(QJsonObject, workedCase);
    const QJsonValue expected = workedCase["expected"];
    const auto manipulation =
        manipulationFromJson(workedCase["tree"].toObject(), [](const QString & /*name*/) {
            return ExperimentFactory::instance(nullptr)->createWildMorphology();
        });

    ManipulationItem item(manipulation->rootAction());
    const QRectF itemRect = rect(expected["itemRect"]);
    // The extent of curves and of what strokes and cuts make of them is the toolkit's own affair:
    // the numbers come from the version named here and from outlines made of short lines.
    const double tolerance = qstrcmp(qVersion(), "6.4.2") == 0 ? 1e-3 : 1.0;
    QVERIFY2(near(item.boundingRect(), itemRect, tolerance), text(item.boundingRect(), itemRect));

    constexpr double scale = 2.0;
    const QRectF window(-400.0, -400.0, 800.0, 800.0);
    const QImage image = drawn(&item, window, scale);
    const double area = static_cast<double>(inkedPixels(image)) / (scale * scale);
    const double expectedArea = expected["silhouetteArea"].toDouble();
    QVERIFY2(std::abs(area - expectedArea) <= 0.02 * expectedArea,
             qPrintable(QStringLiteral("%1 instead of %2").arg(area).arg(expectedArea)));

    const QRect ink = inkedRect(image);
    const QRectF bounds = rect(expected["silhouetteBounds"]);
    if (expectedArea == 0.0) {
        QVERIFY(ink.isEmpty());
        return;
    }
    const QRectF inkBounds(QPointF(ink.topLeft()) / scale + window.topLeft(),
                           QSizeF(ink.size()) / scale);
    QVERIFY2(near(inkBounds, bounds, 1.0), text(inkBounds, bounds));
}

QTEST_MAIN(WorkedProductsTest)
#include "WorkedProductsTest.moc"
