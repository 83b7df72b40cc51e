#pragma once

#include "db/DBElementData.h"

#include <QByteArray>
#include <QImage>
#include <QPixmap>

namespace Planaria {

class Morphology;

/// A picture of a worm, kept as the bytes of the file that it was read from.
class MorphologyImage final : public DBElement
{
public:
    MorphologyImage(Morphology *owner, QByteArray bytes);
    MorphologyImage(const MorphologyImage &other, Morphology *owner, bool keepIds);
    MorphologyImage(Morphology *owner, const DBElementData &parentData);

    [[nodiscard]] const QByteArray &bytes() const { return bytes_; }

    /// No larger file is taken as a picture, bytes: SQLite would refuse it with its whole worm.
    static constexpr qint64 largestFile = qint64{256} * 1024 * 1024;

    /// The picture in the bytes of an image file; null where it cannot be decoded.
    static QImage decoded(const QByteArray &bytes);

    /// The file format that the bytes show, as "png"; empty for none that is known.
    [[nodiscard]] QByteArray format() const;

    // A picture that cannot be decoded, or would take more memory than any photo does, shows as a
    // red square of 100 by 100.

    [[nodiscard]] QImage createImage() const;
    [[nodiscard]] QPixmap createPixmap() const;

    bool operator==(const MorphologyImage &other) const { return bytes_ == other.bytes_; }

    /// Takes the picture out of its morphology, which then owns it until its next submit.
    void removeFromMorphology();

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

private:
    Morphology *morphology; // null once removed
    QByteArray bytes_;
    DBElementData data;
};

} // namespace Planaria
