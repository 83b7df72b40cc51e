#include "manipulation/RemoveDesigner.h"

#include "model/RemoveAction.h"

namespace Planaria {

RemoveDesigner::RemoveDesigner(QWidget *parent)
    : AreaDesigner({tr("Create &square cut"), tr("&Remove points"), Traits::Shadow::Inside,
                    QColor(255, 255, 255, 200), QStringLiteral("Area to cut away: %1 points")},
                   parent)
{
}

void RemoveDesigner::setRemoveAction(RemoveAction *newAction)
{
    setAction(newAction);
}

} // namespace Planaria
