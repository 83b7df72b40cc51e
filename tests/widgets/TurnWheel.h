#pragma once

#include <QApplication>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>

namespace Planaria {

inline constexpr QPoint wheelUp(0, 120);
inline constexpr QPoint wheelDown(0, -120);
inline constexpr QPoint wheelSideways(120, 0);

/// Turns the mouse wheel over the middle of @p widget, by way of its window as the system does.
inline void turnWheel(QWidget *widget, const QPoint &angleDelta)
{
    QWidget *window = widget->window();
    const QPointF pos = widget->mapTo(window, widget->rect().center());
    QWheelEvent event(pos, window->mapToGlobal(pos), QPoint(), angleDelta, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(window->windowHandle(), &event);
}

} // namespace Planaria
