#include "widgets/SpinBoxNoWheel.h"

#include <QEvent>

namespace Planaria {

SpinBoxNoWheel::SpinBoxNoWheel(QWidget *parent) : QSpinBox(parent) {}

bool SpinBoxNoWheel::event(QEvent *e)
{
    if (e->type() == QEvent::Wheel)
        return false;
    return QSpinBox::event(e);
}

} // namespace Planaria
