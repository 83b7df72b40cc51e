#include "model/MorphologyImage.h"

#include "model/Morphology.h"

#include <QBuffer>
#include <QImageReader>

#include <utility>

namespace Planaria {

namespace {

constexpr auto table = "MorphologyImage";

// Room for a microscope's photo of 11,000 by 11,000 pixels, and no more: the size in the header of
// a picture is believed before a single pixel is seen.
constexpr int largestImageMegabytes = 512;

} // namespace

MorphologyImage::MorphologyImage(Morphology *owner, QByteArray bytes)
    : morphology(owner), bytes_(std::move(bytes)), data(table)
{
}

MorphologyImage::MorphologyImage(const MorphologyImage &other, Morphology *owner, bool keepIds)
    : morphology(owner), bytes_(other.bytes_), data(other.data, keepIds)
{
}

MorphologyImage::MorphologyImage(Morphology *owner, const DBElementData &parentData)
    : morphology(owner), data(table, parentData)
{
    bytes_ = data.loadValue(2).toByteArray();
    data.loadFinished();
}

QByteArray MorphologyImage::format() const
{
    QBuffer buffer;
    buffer.setData(bytes_);
    buffer.open(QIODevice::ReadOnly);
    return QImageReader(&buffer).format();
}

QImage MorphologyImage::decoded(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader::setAllocationLimit(largestImageMegabytes);
    return QImageReader(&buffer).read();
}

QImage MorphologyImage::createImage() const
{
    QImage image = decoded(bytes_);
    if (image.isNull()) {
        image = QImage(100, 100, QImage::Format_RGB32);
        image.fill(Qt::red);
    }
    return image;
}

QPixmap MorphologyImage::createPixmap() const
{
    return QPixmap::fromImage(createImage());
}

void MorphologyImage::removeFromMorphology()
{
    if (Morphology *former = std::exchange(morphology, nullptr))
        former->removeImage(this);
}

int MorphologyImage::submit(DB *db)
{
    // Null bytes, which is also what an empty BLOB is read as, would be written as NULL.
    return data.submit(db, DBElementData::Parent("Morphology", morphology),
                       DBElementData::Values{{"Data", bytes_.isNull() ? QByteArray("") : bytes_}});
}

bool MorphologyImage::erase()
{
    return data.erase();
}

} // namespace Planaria
