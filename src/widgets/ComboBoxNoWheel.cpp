#include "widgets/ComboBoxNoWheel.h"

#include <QEvent>

namespace Planaria {

ComboBoxNoWheel::ComboBoxNoWheel(QWidget *parent) : QComboBox(parent) {}

bool ComboBoxNoWheel::event(QEvent *e)
{
    if (e->type() == QEvent::Wheel)
        return false;
    return QComboBox::event(e);
}

} // namespace Planaria
