#pragma once

#include <QtGlobal>

class QGraphicsScene;
class QImage;
class QPixmap;
class QString;
class QWidget;

namespace Planaria {

/// Writes scenes and pixmaps to image files. The format follows the name's extension; a failure to
/// write is not reported.
class ImageSaver final
{
public:
    /// Trims margins that have exactly the colour @p background (as QImage::pixel() gives it). One
    /// row and one column always stay.
    static void crop(QImage &image, unsigned int background);

    /// Draws @p scene at twice its size, or as large as 25,000 pixels allow, and trims its margins.
    /// They are transparent in a file named ".png" and white in any other.
    /// @param mirror whether the scene's y axis points up
    static void saveScene(QGraphicsScene &scene, const QString &fileName, bool mirror);
    static void savePixmap(const QPixmap &pixmap, const QString &fileName, QWidget *parent);

    // These ask for the file first.

    static void saveScene(QGraphicsScene &scene, bool mirror, QWidget *parent);
    static void savePixmap(const QPixmap &pixmap, QWidget *parent);
};

} // namespace Planaria
