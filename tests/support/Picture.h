#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>

namespace Planaria {

/// The bytes of an image file. @param format "png" or another that Qt writes
inline QByteArray encoded(const QImage &image, const char *format)
{
    QBuffer buffer;
    if (!image.save(&buffer, format))
        qFatal("cannot write %s", format);
    return buffer.data();
}

} // namespace Planaria
