#include "manipulation/CropDesigner.h"

#include "model/CropAction.h"

namespace Planaria {

CropDesigner::CropDesigner(QWidget *parent)
    : AreaDesigner({tr("Create &square crop"), tr("Remove points"), Traits::Shadow::Outside,
                    QColor(255, 255, 255, 200), QStringLiteral("Area to keep: %1 points")},
                   parent)
{
}

void CropDesigner::setCropAction(CropAction *newAction)
{
    setAction(newAction);
}

} // namespace Planaria
