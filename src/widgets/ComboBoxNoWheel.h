#pragma once

#include <QComboBox>

namespace Planaria {

/// A combo box that leaves the mouse wheel to the scroll area around it, so that scrolling past it
/// does not change its value.
class ComboBoxNoWheel final : public QComboBox
{
    Q_OBJECT

public:
    explicit ComboBoxNoWheel(QWidget *parent);

    bool event(QEvent *e) override;
};

} // namespace Planaria
