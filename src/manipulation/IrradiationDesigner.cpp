#include "manipulation/IrradiationDesigner.h"

#include "model/IrradiationAction.h"
#include "widgets/GuiConfig.h"

namespace Planaria {

IrradiationDesigner::IrradiationDesigner(QWidget *parent)
    : AreaDesigner({tr("Create &square irradiation"), tr("Remove points"), Traits::Shadow::Inside,
                    GuiConfig::radiationColor(), QStringLiteral("Area to irradiate: %1 points")},
                   parent)
{
}

void IrradiationDesigner::setIrradiationAction(IrradiationAction *newAction)
{
    setAction(newAction);
}

} // namespace Planaria
