#pragma once

class QColor;
class QPointF;

namespace Planaria {

/// Colours and distances that several editors share.
class GuiConfig final
{
public:
    static const QColor &cropAreaPointColor();
    static const QColor &organLeverColor();
    static const QColor &regionLeverColor();
    static const QColor &linkLeverColor();
    static const QColor &graphLinkColor();
    static const QColor &MGLineOrganEndColor();
    static const QColor &radiationColor();

    // Steps from an action of a tree to its inputs, scene units: to the side for each worm that
    // comes in there, and up.

    static const QPointF &actionNodeXDisp();
    static const QPointF &actionNodeYDisp();
};

} // namespace Planaria
