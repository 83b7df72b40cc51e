#include "widgets/ImageSaver.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSettings>

#include <algorithm>
#include <cmath>

namespace Planaria {

namespace {

bool rowIs(const QImage &image, int y, int left, int right, QRgb colour)
{
    for (int x = left; x <= right; ++x) {
        if (image.pixel(x, y) != colour)
            return false;
    }
    return true;
}

bool columnIs(const QImage &image, int x, int top, int bottom, QRgb colour)
{
    for (int y = top; y <= bottom; ++y) {
        if (image.pixel(x, y) != colour)
            return false;
    }
    return true;
}

int scaledSide(double side, double scale)
{
    // The scale is that of a side whose fraction was cut off, which may make a pixel too many.
    const double scaled = scale * side;
    return scaled > 1.0 ? static_cast<int>(std::min(scaled, 25000.0)) : 1;
}

/// The file that the user chooses to save to; empty when they cancel.
QString askFileName(QWidget *parent)
{
    QSettings settings;
    settings.beginGroup(QStringLiteral("ImageSaver"));
    const QString lastDir = settings.value(QStringLiteral("lastDir")).toString();
    QString fileName = QFileDialog::getSaveFileName(parent, QStringLiteral("Save image"), lastDir,
                                                    QStringLiteral("Images (*.png *.jpg *.bmp)"));
    if (!fileName.isEmpty()) {
        const QString dir = QFileInfo(fileName).absolutePath();
        if (dir != lastDir)
            settings.setValue(QStringLiteral("lastDir"), dir);
    }
    return fileName;
}

} // namespace

void ImageSaver::crop(QImage &image, unsigned int background)
{
    if (image.isNull())
        return;

    int left = 0;
    int top = 0;
    int right = image.width() - 1;
    int bottom = image.height() - 1;
    while (top < bottom && rowIs(image, top, left, right, background))
        ++top;
    while (top < bottom && rowIs(image, bottom, left, right, background))
        --bottom;
    while (left < right && columnIs(image, left, top, bottom, background))
        ++left;
    while (left < right && columnIs(image, right, top, bottom, background))
        --right;

    const QRect rect(QPoint(left, top), QPoint(right, bottom));
    if (rect != image.rect())
        image = image.copy(rect);
}

void ImageSaver::saveScene(QGraphicsScene &scene, const QString &fileName, bool mirror)
{
    const QRectF rect = scene.itemsBoundingRect();
    const double largerSide = std::trunc(std::max(rect.width(), rect.height()));
    const double scale = std::min(2.0, 25000.0 / largerSide);

    QImage image(scaledSide(rect.width(), scale), scaledSide(rect.height(), scale),
                 QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return; // more pixels than there is memory
    const bool transparent = fileName.endsWith(QLatin1String(".png"));
    image.fill(transparent ? Qt::transparent : Qt::white);

    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    scene.render(&painter, QRectF(), rect, Qt::KeepAspectRatio);
    painter.end();

    crop(image, transparent ? 0 : 0xFFFFFFFF);
    (mirror ? image.mirrored(false, true) : image).save(fileName);
}

void ImageSaver::savePixmap(const QPixmap &pixmap, const QString &fileName, QWidget * /*parent*/)
{
    pixmap.save(fileName);
}

void ImageSaver::saveScene(QGraphicsScene &scene, bool mirror, QWidget *parent)
{
    const QString fileName = askFileName(parent);
    if (!fileName.isEmpty())
        saveScene(scene, fileName, mirror);
}

void ImageSaver::savePixmap(const QPixmap &pixmap, QWidget *parent)
{
    const QString fileName = askFileName(parent);
    if (!fileName.isEmpty())
        savePixmap(pixmap, fileName, parent);
}

} // namespace Planaria
