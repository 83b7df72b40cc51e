#pragma once

#include "manipulation/AreaDesigner.h"

namespace Planaria {

class IrradiationAction;

/// Edits the area that is irradiated.
class IrradiationDesigner final : public AreaDesigner
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/IrradiationAction.h")

public:
    explicit IrradiationDesigner(QWidget *parent = nullptr);

signals:
    void irradiationChanged();

public slots:
    /// @param newAction null for none
    void setIrradiationAction(IrradiationAction *newAction);
    void createSquareIrradiation() { createSquare(); }
    void irradiationAreaPointChanged() { areaPointChanged(); }

protected:
    void emitChanged() override { emit irradiationChanged(); }
};

} // namespace Planaria
