#pragma once

#include "manipulation/AreaDesigner.h"

namespace Planaria {

class CropAction;

/// Edits the area that is kept.
class CropDesigner final : public AreaDesigner
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/CropAction.h")

public:
    explicit CropDesigner(QWidget *parent = nullptr);

signals:
    void cropChanged();

public slots:
    /// @param newAction null for none
    void setCropAction(CropAction *newAction);
    void createSquareCrop() { createSquare(); }
    void cropAreaPointChanged() { areaPointChanged(); }

protected:
    void emitChanged() override { emit cropChanged(); }
};

} // namespace Planaria
