#pragma once

#include <QDoubleSpinBox>

namespace Planaria {

/// A spin box for fractions that leaves the mouse wheel to the scroll area around it, so that
/// scrolling past it does not change its value.
class DoubleSpinBoxNoWheel final : public QDoubleSpinBox
{
    Q_OBJECT

public:
    explicit DoubleSpinBoxNoWheel(QWidget *parent);

    bool event(QEvent *e) override;
};

} // namespace Planaria
