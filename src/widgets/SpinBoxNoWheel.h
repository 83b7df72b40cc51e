#pragma once

#include <QSpinBox>

namespace Planaria {

/// A spin box that leaves the mouse wheel to the scroll area around it, so that scrolling past it
/// does not change its value.
class SpinBoxNoWheel final : public QSpinBox
{
    Q_OBJECT

public:
    explicit SpinBoxNoWheel(QWidget *parent);

    bool event(QEvent *e) override;
};

} // namespace Planaria
