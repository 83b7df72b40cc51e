#include "widgets/DoubleSpinBoxNoWheel.h"

#include <QEvent>

namespace Planaria {

DoubleSpinBoxNoWheel::DoubleSpinBoxNoWheel(QWidget *parent) : QDoubleSpinBox(parent) {}

bool DoubleSpinBoxNoWheel::event(QEvent *e)
{
    if (e->type() == QEvent::Wheel)
        return false;
    return QAbstractSpinBox::event(e);
}

} // namespace Planaria
