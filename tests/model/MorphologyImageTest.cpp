#include "model/MorphologyImage.h"

#include "model/Morphology.h"
#include "support/Picture.h"

#include <QTest>
#include <QtEndian>

using namespace Planaria;

namespace {

QImage sketch()
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setPixelColor(3, 4, Qt::blue);
    return image;
}

/// The checksum of a PNG chunk.
quint32 checksum(const QByteArray &bytes)
{
    quint32 sum = ~0U;
    for (const char byte : bytes) {
        sum ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1U) ^ ((sum & 1U) != 0U ? 0xEDB88320U : 0U);
    }
    return ~sum;
}

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, 0);
    qToBigEndian(number, bytes.data());
    return bytes;
}

constexpr quint32 hugeSide = 60'000;

/// A sound picture but for its header, which claims 60,000 by 60,000 pixels.
QByteArray hugePng()
{
    QByteArray png = encoded(sketch(), "png");
    png.replace(16, 8, bigEndian(hugeSide) + bigEndian(hugeSide));
    const qsizetype header = 12; // type and content of the first chunk
    const qsizetype headerSize = 17;
    png.replace(header + headerSize, 4, bigEndian(checksum(png.mid(header, headerSize))));
    return png;
}

QByteArray hugeBmp()
{
    QByteArray bmp = encoded(sketch(), "bmp");
    qToLittleEndian(hugeSide, bmp.data() + 18);
    qToLittleEndian(hugeSide, bmp.data() + 22);
    return bmp;
}

QByteArray hugeJpeg()
{
    QByteArray jpeg = encoded(sketch(), "jpg");
    const qsizetype frame = jpeg.indexOf("\xFF\xC0");
    qToBigEndian(static_cast<quint16>(hugeSide), jpeg.data() + frame + 5);
    qToBigEndian(static_cast<quint16>(hugeSide), jpeg.data() + frame + 7);
    return jpeg;
}

QImage redSquare()
{
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

} // namespace

class MorphologyImageTest final : public QObject
{
    Q_OBJECT

private slots:
    void tellsItsFormat_data();
    void tellsItsFormat();
    void decodesItsPixels_data();
    void decodesItsPixels();
    void decodesAPhotoOfAMicroscope();
    void showsARedSquareForWhatIsNoPicture_data();
    void showsARedSquareForWhatIsNoPicture();
    void isEqualByItsBytes();
    void copiesItsBytes();

private:
    Morphology worm;
};

void MorphologyImageTest::tellsItsFormat_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("format");

    QTest::newRow("PNG") << encoded(sketch(), "png") << QByteArray("png");
    QTest::newRow("JPEG") << encoded(sketch(), "jpg") << QByteArray("jpeg");
    QTest::newRow("BMP") << encoded(sketch(), "bmp") << QByteArray("bmp");
    QTest::newRow("text") << QByteArray("no picture") << QByteArray();
    QTest::newRow("nothing") << QByteArray() << QByteArray();
}

void MorphologyImageTest::tellsItsFormat()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, format);

    QCOMPARE(MorphologyImage(&worm, bytes).format(), format);
}

void MorphologyImageTest::decodesItsPixels_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("PNG") << encoded(sketch(), "png");
    QTest::newRow("BMP") << encoded(sketch(), "bmp");
}

void MorphologyImageTest::decodesItsPixels()
{
    QFETCH(QByteArray, bytes);
    const MorphologyImage image(&worm, bytes);

    QCOMPARE(image.createImage().convertToFormat(QImage::Format_RGB32), sketch());
    QCOMPARE(image.createPixmap().toImage().convertToFormat(QImage::Format_RGB32), sketch());
    QCOMPARE(image.bytes(), bytes);
}

void MorphologyImageTest::decodesAPhotoOfAMicroscope()
{
    // Counted as 32 bits a pixel, it is more than the 128 megabytes that Qt allows by default.
    QImage photo(6'000, 6'000, QImage::Format_Grayscale8);
    photo.fill(Qt::gray);
    const MorphologyImage image(&worm, encoded(photo, "png"));

    QCOMPARE(image.createImage().size(), photo.size());
}

void MorphologyImageTest::showsARedSquareForWhatIsNoPicture_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("the mere start of a PNG") << encoded(sketch(), "png").first(20);
    QTest::newRow("a huge PNG") << hugePng();
    QTest::newRow("a huge BMP") << hugeBmp();
    QTest::newRow("a huge JPEG") << hugeJpeg();
}

void MorphologyImageTest::showsARedSquareForWhatIsNoPicture()
{
    QFETCH(QByteArray, bytes);
    const MorphologyImage image(&worm, bytes);

    QCOMPARE(image.createImage(), redSquare());
    QCOMPARE(image.createImage().format(), QImage::Format_RGB32);
    QCOMPARE(image.createPixmap().toImage().convertToFormat(QImage::Format_RGB32), redSquare());
    QCOMPARE(image.bytes(), bytes);
}

void MorphologyImageTest::isEqualByItsBytes()
{
    const MorphologyImage image(&worm, QByteArray("a\0b", 3));

    QVERIFY(image == MorphologyImage(&worm, QByteArray("a\0b", 3)));
    QVERIFY(!(image == MorphologyImage(&worm, QByteArray("a\0c", 3))));
    QVERIFY(!(image == MorphologyImage(&worm, QByteArray("a"))));
}

void MorphologyImageTest::copiesItsBytes()
{
    const MorphologyImage image(&worm, QByteArray("a\0b", 3));
    const MorphologyImage copy(image, &worm, false);

    QVERIFY(copy == image);
    QCOMPARE(copy.id(), 0);
}

QTEST_MAIN(MorphologyImageTest)
#include "MorphologyImageTest.moc"
