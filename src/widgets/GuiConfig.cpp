#include "widgets/GuiConfig.h"

#include <QColor>
#include <QPointF>

namespace Planaria {

const QColor &GuiConfig::cropAreaPointColor()
{
    static const QColor color(255, 255, 0);
    return color;
}

const QColor &GuiConfig::organLeverColor()
{
    static const QColor color(0, 0, 255);
    return color;
}

const QColor &GuiConfig::regionLeverColor()
{
    static const QColor color(255, 0, 0);
    return color;
}

const QColor &GuiConfig::linkLeverColor()
{
    static const QColor color(0, 255, 0);
    return color;
}

const QColor &GuiConfig::graphLinkColor()
{
    static const QColor color(Qt::darkRed);
    return color;
}

const QColor &GuiConfig::MGLineOrganEndColor()
{
    static const QColor color(Qt::darkYellow);
    return color;
}

const QColor &GuiConfig::radiationColor()
{
    static const QColor color(255, 254, 2, 150);
    return color;
}

const QPointF &GuiConfig::actionNodeXDisp()
{
    static const QPointF step(50.0, 0.0);
    return step;
}

const QPointF &GuiConfig::actionNodeYDisp()
{
    static const QPointF step(0.0, 75.0);
    return step;
}

} // namespace Planaria
