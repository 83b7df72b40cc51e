#include "widgets/GuiConfig.h"

#include <QColor>
#include <QPointF>
#include <QTest>

namespace Planaria {

using Color = const QColor &(*)();
using Rgba = QList<int>;

} // namespace Planaria

Q_DECLARE_METATYPE(Planaria::Color)

namespace Planaria {

class GuiConfigTest final : public QObject
{
    Q_OBJECT

private slots:
    void colorsStandForTheSameThingEverywhere_data();
    void colorsStandForTheSameThingEverywhere();
    void inputsOfAnActionLieAboveItAndToBothSides();
};

void GuiConfigTest::colorsStandForTheSameThingEverywhere_data()
{
    QTest::addColumn<Color>("color");
    QTest::addColumn<Rgba>("rgba");

    QTest::newRow("corner of an area")
        << Color(GuiConfig::cropAreaPointColor) << Rgba{255, 255, 0, 255};
    QTest::newRow("region lever") << Color(GuiConfig::regionLeverColor) << Rgba{255, 0, 0, 255};
    QTest::newRow("link lever") << Color(GuiConfig::linkLeverColor) << Rgba{0, 255, 0, 255};
    QTest::newRow("organ lever") << Color(GuiConfig::organLeverColor) << Rgba{0, 0, 255, 255};
    QTest::newRow("link") << Color(GuiConfig::graphLinkColor) << Rgba{128, 0, 0, 255};
    QTest::newRow("end of a cord")
        << Color(GuiConfig::MGLineOrganEndColor) << Rgba{128, 128, 0, 255};
}

void GuiConfigTest::colorsStandForTheSameThingEverywhere()
{
    QFETCH(const Color, color);
    QFETCH(const Rgba, rgba);

    const QColor &first = color();
    QCOMPARE(Rgba({first.red(), first.green(), first.blue(), first.alpha()}), rgba);
    QCOMPARE(&color(), &first);
}

void GuiConfigTest::inputsOfAnActionLieAboveItAndToBothSides()
{
    QCOMPARE(GuiConfig::actionNodeXDisp(), QPointF(50.0, 0.0));
    QCOMPARE(GuiConfig::actionNodeYDisp(), QPointF(0.0, 75.0));
}

} // namespace Planaria

QTEST_GUILESS_MAIN(Planaria::GuiConfigTest)
#include "GuiConfigTest.moc"
