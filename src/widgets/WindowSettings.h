#pragma once

class QString;
class QWidget;

namespace Planaria::WindowSettings {

/// Gives @p window the size of its last time, or leaves it as it is, and maximizes it if it was,
/// without showing it: exec() has to show a dialog, or it would not be modal.
void read(QWidget *window, const QString &group);
/// The size is kept only where the window is not maximized.
void write(const QWidget *window, const QString &group);

} // namespace Planaria::WindowSettings
