#pragma once

class QColor;

namespace Planaria {

/// Colours that several editors share.
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
};

} // namespace Planaria
