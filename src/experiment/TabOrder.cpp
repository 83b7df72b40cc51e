#include "experiment/TabOrder.h"

#include <QWidget>

namespace Planaria {

QWidget *leadTabsThrough(QWidget *widget, const QWidget *area)
{
    for (QWidget *next : area->findChildren<QWidget *>()) {
        const bool takesTab = (next->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
        if (!takesTab || next->focusProxy() || next->window() != widget->window())
            continue;
        QWidget::setTabOrder(widget, next);
        widget = next;
    }
    return widget;
}

} // namespace Planaria
