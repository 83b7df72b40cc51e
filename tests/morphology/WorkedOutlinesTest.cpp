#include "model/Morphology.h"
#include "model/Region.h"
#include "morphology/MorphologyItem.h"
#include "support/DrawnWorm.h"
#include "support/JsonWorm.h"
#include "support/PathDifference.h"
#include "support/TestData.h"

#include <QGraphicsEllipseItem>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace Planaria {

namespace {

constexpr double exact = 1e-9;

/// For what hangs on the extent of curves, which is the toolkit's own affair: the numbers come from
/// the version named here.
double ofExtents()
{
    return qstrcmp(qVersion(), "6.4.2") == 0 ? exact : 1.0;
}

/// Equal to the tolerance; shows both values where they are not.
#define COMPARE_WITHIN(tolerance, actual, expected)                                                \
    QVERIFY2(near(actual, expected, tolerance),                                                    \
             qPrintable(QStringLiteral("%1 instead of %2").arg(text(actual), text(expected))))

bool near(double a, double b, double tolerance = exact)
{
    return std::abs(a - b) <= tolerance;
}

bool near(const QPointF &a, const QPointF &b, double tolerance = exact)
{
    return near(a.x(), b.x(), tolerance) && near(a.y(), b.y(), tolerance);
}

bool near(const QRectF &a, const QRectF &b, double tolerance = exact)
{
    return near(a.topLeft(), b.topLeft(), tolerance) &&
           near(a.bottomRight(), b.bottomRight(), tolerance);
}

bool near(const QList<QPointF> &a, const QList<QPointF> &b, double tolerance = exact)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(),
                      [tolerance](const QPointF &one, const QPointF &other) {
                          return near(one, other, tolerance);
                      });
}

template <typename Value> QString text(const Value &value)
{
    QString result;
    QDebug(&result) << qSetRealNumberPrecision(15) << value;
    return result;
}

QPointF point(const QJsonValue &json)
{
    return {json[0].toDouble(), json[1].toDouble()};
}

QList<QPointF> points(const QJsonValue &json)
{
    QList<QPointF> all;
    for (const QJsonValue &each : json.toArray())
        all += point(each);
    return all;
}

QRectF rect(const QJsonValue &json)
{
    return {json[0].toDouble(), json[1].toDouble(), json[2].toDouble(), json[3].toDouble()};
}

QColor color(const QJsonValue &json)
{
    return {json[0].toInt(), json[1].toInt(), json[2].toInt(), json[3].toInt()};
}

QPen pen(const QJsonValue &json)
{
    if (json.isNull())
        return Qt::NoPen;
    if (json.isString())
        return {}; // "default": the toolkit's own
    return {color(json["color"]), json["width"].toDouble()};
}

QBrush brush(const QJsonValue &json)
{
    return json.isNull() ? QBrush(Qt::NoBrush) : QBrush(color(json));
}

QPainterPath pathFromJson(const QJsonValue &json)
{
    QPainterPath path;
    for (const QJsonValue &element : json.toArray()) {
        QList<QPointF> ends;
        const QJsonArray numbers = element.toArray();
        for (int i = 1; i < numbers.size(); i += 2)
            ends += QPointF(numbers[i].toDouble(), numbers[i + 1].toDouble());
        if (numbers[0] == "M")
            path.moveTo(ends[0]);
        else if (numbers[0] == "L")
            path.lineTo(ends[0]);
        else
            path.cubicTo(ends[0], ends[1], ends[2]);
    }
    return path;
}

/// Where and what one organ's item is, in the words of the table; empty where all agrees.
QString organDifference(const QGraphicsItem *item, const QJsonObject &expected)
{
    const auto *shape = dynamic_cast<const QAbstractGraphicsShapeItem *>(item);
    if (shape == nullptr)
        return QStringLiteral("no shape");
    if (!near(item->pos(), point(expected["pos"])))
        return QStringLiteral("at ") + text(item->pos());
    if (!near(item->rotation(), expected["rotation"].toDouble()))
        return QStringLiteral("turned by ") + text(item->rotation());
    if (item->zValue() != expected["z"].toDouble())
        return QStringLiteral("in layer ") + text(item->zValue());
    if (shape->pen() != pen(expected["pen"]))
        return QStringLiteral("drawn with ") + text(shape->pen());
    if (shape->brush() != brush(expected["brush"]))
        return QStringLiteral("filled with ") + text(shape->brush());
    if (const auto *ellipse = qgraphicsitem_cast<const QGraphicsEllipseItem *>(item)) {
        return near(ellipse->rect(), rect(expected["rect"])) ? QString() : text(ellipse->rect());
    }
    const auto *path = qgraphicsitem_cast<const QGraphicsPathItem *>(item);
    return path == nullptr ? QStringLiteral("no path")
                           : pathDifference(withoutEmptySegments(path->path()),
                                            withoutEmptySegments(pathFromJson(expected["path"])));
}

} // namespace

/// Drawings against numbers that were worked out independently from the same worms.
class WorkedOutlinesTest final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void outlinesHaveTheirElements_data() { addCases(); }
    void outlinesHaveTheirElements();
    void regionsAreShadedAndStrokedAsComputed_data() { addCases(); }
    void regionsAreShadedAndStrokedAsComputed();
    void regionsStandWhereTheyShould_data() { addCases(); }
    void regionsStandWhereTheyShould();
    void centringAtZeroMovesRegionsAndCordsAlike_data() { addCases(); }
    void centringAtZeroMovesRegionsAndCordsAlike();
    void organsAreDrawnAsComputed_data() { addCases(); }
    void organsAreDrawnAsComputed();

private:
    void addCases() const;
    /// Takes the case of the current row.
    void fetchCase();

    QJsonArray cases;
    QJsonObject expected;
    std::unique_ptr<Morphology> morphology;
    std::unique_ptr<MorphologyItem> worm;
};

void WorkedOutlinesTest::initTestCase()
{
    cases = QJsonDocument::fromJson(readTestData("outlines.json"))["cases"].toArray();
    QCOMPARE(cases.size(), 12);
}

void WorkedOutlinesTest::addCases() const
{
    QTest::addColumn<int>("number");
    for (int i = 0; i < cases.size(); ++i)
        QTest::newRow(qPrintable(cases[i]["note"].toString())) << i;
}

void WorkedOutlinesTest::fetchCase()
{
    QFETCH(const int, number);
    const QJsonObject workedCase = cases[number].toObject();
    expected = workedCase["expected"].toObject();
    morphology = wormFromJson(workedCase["morphology"].toObject());
    worm = std::make_unique<MorphologyItem>(*morphology, nullptr, false);
}

void WorkedOutlinesTest::outlinesHaveTheirElements()
{
    fetchCase();
    const QJsonArray regions = expected["regions"].toArray();
    const QList<QGraphicsPathItem *> items = regionItems(*worm);
    QCOMPARE(items.size(), regions.size());
    for (int i = 0; i < regions.size(); ++i) {
        const QJsonObject region = regions[i].toObject();
        QList<int> links;
        for (RegionsLink *link : morphology->regions().at(i)->links())
            links += static_cast<int>(morphology->links().indexOf(link));
        QCOMPARE(QJsonArray::fromVariantList(QVariantList(links.cbegin(), links.cend())),
                 region["links"].toArray());

        const QPainterPath path = withoutEmptySegments(items[i]->path());
        QCOMPARE(pathDifference(path, withoutEmptySegments(pathFromJson(region["path"]))),
                 QString());
        if (region.contains("ellipse"))
            COMPARE_WITHIN(exact, path.boundingRect(), rect(region["ellipse"]));
        COMPARE_WITHIN(ofExtents(), items[i]->boundingRect(), rect(region["itemRect"]));
    }
    COMPARE_WITHIN(ofExtents(), worm->boundingRect(), rect(expected["itemBoundingRect"]));
}

void WorkedOutlinesTest::regionsAreShadedAndStrokedAsComputed()
{
    fetchCase();
    const QList<QGraphicsPathItem *> items = regionItems(*worm);
    for (int i = 0; i < items.size(); ++i) {
        const QJsonValue region = expected["regions"][i];
        QCOMPARE(items[i]->zValue(), region["z"].toDouble());
        QCOMPARE(items[i]->pen(), pen(region["pen"]));

        const QBrush brush = items[i]->brush();
        QCOMPARE(brush.style(), Qt::RadialGradientPattern);
        const auto *gradient = static_cast<const QRadialGradient *>(brush.gradient());
        COMPARE_WITHIN(exact, gradient->center(), point(region["gradient"]["center"]));
        COMPARE_WITHIN(exact, gradient->focalPoint(), point(region["gradient"]["focal"]));
        COMPARE_WITHIN(exact, gradient->radius(), region["gradient"]["radius"].toDouble());
        const QGradientStops stops{{0.0, color(region["gradient"]["at0"])},
                                   {1.0, color(region["gradient"]["at1"])}};
        QCOMPARE(gradient->stops(), stops);
    }
}

void WorkedOutlinesTest::regionsStandWhereTheyShould()
{
    fetchCase();
    const QList<QPointF> centres = positions(regionItems(*worm));
    COMPARE_WITHIN(expected["gravityDependsOnRects"].toBool() ? ofExtents() : exact, centres,
                   points(expected["positionsAfterCenterAtGravity"]));

    const QJsonArray pieces = expected["pieces"].toArray();
    for (const QJsonValue &piece : pieces) {
        QList<QPointF> relative;
        for (const QJsonValue &region : piece["regions"].toArray())
            relative += centres[region.toInt()] - centres[piece["regions"][0].toInt()];
        COMPARE_WITHIN(exact, relative, points(piece["relative"]));
    }
}

void WorkedOutlinesTest::centringAtZeroMovesRegionsAndCordsAlike()
{
    fetchCase();
    worm->centerAtZero();
    COMPARE_WITHIN(ofExtents(), positions(regionItems(*worm)),
                   points(expected["positionsAfterCenterAtZero"]));
    COMPARE_WITHIN(ofExtents(), positions(cordItems(*worm)),
                   points(expected["cordPositionsAfterCenterAtZero"]));
}

void WorkedOutlinesTest::organsAreDrawnAsComputed()
{
    fetchCase();
    QList<QGraphicsItem *> items; // as they are stacked in each region; the cords last
    for (const QGraphicsPathItem *region : regionItems(*worm))
        items += region->childItems();
    for (QGraphicsPathItem *cord : cordItems(*worm))
        items += cord;

    QList<QJsonObject> organs;
    for (const QJsonValue &organ : expected["organs"].toArray())
        organs += organ.toObject();
    std::stable_sort(organs.begin(), organs.end(), [](const QJsonObject &a, const QJsonObject &b) {
        const auto place = [](const QJsonObject &organ) {
            const bool cord = organ["parent"] == "morphology";
            return std::tuple(cord, cord ? 0 : organ["region"].toInt(), organ["z"].toDouble());
        };
        return place(a) < place(b);
    });

    QCOMPARE(items.size(), organs.size());
    for (int i = 0; i < items.size(); ++i) {
        QCOMPARE(organDifference(items[i], organs[i]), QString());
        const QList<QGraphicsItem *> parts = items[i]->childItems();
        const QJsonArray expectedParts = organs[i]["children"].toArray();
        QCOMPARE(parts.size(), expectedParts.size());
        for (int part = 0; part < parts.size(); ++part)
            QCOMPARE(organDifference(parts[part], expectedParts[part].toObject()), QString());
    }
}

} // namespace Planaria

QTEST_MAIN(Planaria::WorkedOutlinesTest)
#include "WorkedOutlinesTest.moc"
