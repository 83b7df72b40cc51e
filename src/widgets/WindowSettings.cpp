#include "widgets/WindowSettings.h"

#include <QSettings>
#include <QWidget>

namespace Planaria {

void WindowSettings::read(QWidget *window, const QString &group)
{
    QSettings settings;
    settings.beginGroup(group);
    window->resize(settings.value(QStringLiteral("size"), window->size()).toSize());
    if (settings.value(QStringLiteral("maximized"), false).toBool())
        window->setWindowState(Qt::WindowMaximized); // for when it is shown
}

void WindowSettings::write(const QWidget *window, const QString &group)
{
    QSettings settings;
    settings.beginGroup(group);
    settings.setValue(QStringLiteral("maximized"), window->isMaximized());
    if (!window->isMaximized())
        settings.setValue(QStringLiteral("size"), window->size());
}

} // namespace Planaria
