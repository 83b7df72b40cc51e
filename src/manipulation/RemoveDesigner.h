#pragma once

#include "manipulation/AreaDesigner.h"

namespace Planaria {

class RemoveAction;

/// Edits the area that is cut away.
class RemoveDesigner final : public AreaDesigner
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/RemoveAction.h")

public:
    explicit RemoveDesigner(QWidget *parent = nullptr);

signals:
    void removeChanged();

public slots:
    /// @param newAction null for none
    void setRemoveAction(RemoveAction *newAction);
    void createSquareRemove() { createSquare(); }
    void removeAreaPointChanged() { areaPointChanged(); }

protected:
    void emitChanged() override { emit removeChanged(); }
};

} // namespace Planaria
