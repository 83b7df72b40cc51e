#include "damaged/DamagedLibrary.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "morphology/MorphologyListView.h"
#include "support/DrawnWorm.h"
#include "support/Picture.h"

#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QImage>
#include <QTest>
#include <QtEndian>

#include <sys/resource.h>

namespace Planaria {

namespace {

QByteArray smallPicture(const char *format)
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::blue);
    return encoded(image, format);
}

quint32 crc32(QByteArrayView bytes)
{
    quint32 crc = ~0U;
    for (const char byte : bytes) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1U) != 0 ? 0xedb88320U : 0U);
    }
    return ~crc;
}

// Small pictures whose headers are changed to claim another size.

QByteArray pngOfSize(quint32 width, quint32 height)
{
    QByteArray bytes = smallPicture("png");
    qToBigEndian(width, bytes.data() + 16);
    qToBigEndian(height, bytes.data() + 20);
    qToBigEndian(crc32(QByteArrayView(bytes).sliced(12, 17)), bytes.data() + 29);
    return bytes;
}

QByteArray bmpOfSize(qint32 width, qint32 height)
{
    QByteArray bytes = smallPicture("bmp");
    qToLittleEndian(width, bytes.data() + 18);
    qToLittleEndian(height, bytes.data() + 22);
    return bytes;
}

QByteArray jpegOfSize(quint16 width, quint16 height)
{
    QByteArray bytes = smallPicture("jpg");
    const qsizetype frame = bytes.indexOf("\xff\xc0");
    if (frame < 0)
        qFatal("no frame in the JPEG");
    qToBigEndian(height, bytes.data() + frame + 5);
    qToBigEndian(width, bytes.data() + frame + 7);
    return bytes;
}

QByteArray gifOfSize(quint16 width, quint16 height)
{
    QByteArray size(4, '\0');
    qToLittleEndian(width, size.data());
    qToLittleEndian(height, size.data() + 2);
    const QByteArray place(4, '\0');
    const QByteArray colours("\x00\x00\x00\xff\xff\xff", 6);
    return "GIF89a" + size + QByteArray("\x80\x00\x00", 3) + colours + ',' + place + size +
           QByteArray("\x00\x02\x02\x44\x01\x00;", 7);
}

QByteArray textHeader(const char *format, int width, int height)
{
    return QString::asprintf(format, width, height).toLatin1();
}

/// The most memory that the process has ever held, in megabytes.
long mostMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

bool isRedSquare(const QImage &image)
{
    QImage square(100, 100, QImage::Format_RGB32);
    square.fill(Qt::red);
    return image.convertToFormat(QImage::Format_RGB32) == square;
}

/// The pictures beside the first worm of @p library in a list of both.
QList<QSize> sizesInList(DamagedLibrary *library)
{
    Morphology damaged(1, library->db(), false);
    Morphology sound(2, library->db(), false);
    MorphologyListView view(nullptr);
    view.setMorphologyList({&damaged, &sound});
    if (thumbnail(view.scene()).isNull() || view.grab().isNull())
        qFatal("the list cannot be drawn");
    QList<QSize> sizes;
    for (const QGraphicsItem *item : view.scene()->items(Qt::AscendingOrder)) {
        if (const auto *picture = qgraphicsitem_cast<const QGraphicsPixmapItem *>(item))
            sizes += picture->pixmap().size();
    }
    return sizes;
}

} // namespace

/// Pictures that no photo is.
class DamagedPicturesTest final : public QObject
{
    Q_OBJECT

private slots:
    void shapelessPictureIsARedSquare_data();
    void shapelessPictureIsARedSquare();
    void pictureThatFitsOnlyWhilePackedIsARedSquare();
    void photoIsShown();
    void pictureOfOneLineIsShownNarrow();
    void pictureBesideAHugeWormIsShownSmall();

private:
    static void put(DamagedLibrary *library, const QByteArray &picture);
};

void DamagedPicturesTest::put(DamagedLibrary *library, const QByteArray &picture)
{
    library->damage({"UPDATE MorphologyImage SET Data = x'" + picture.toHex() + '\''});
    library->open();
}

void DamagedPicturesTest::shapelessPictureIsARedSquare_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("half a png") << smallPicture("png").first(40);
    QTest::newRow("png without its end") << smallPicture("png").chopped(30);
    QTest::newRow("header of a jpeg") << smallPicture("jpg").first(20);
    QTest::newRow("png of no size") << pngOfSize(0, 0);
    QTest::newRow("png of 60,000") << pngOfSize(60000, 60000);
    QTest::newRow("png of most") << pngOfSize(0x7fffffff, 0x7fffffff);
    QTest::newRow("bmp of 60,000") << bmpOfSize(60000, 60000);
    QTest::newRow("bmp of most") << bmpOfSize(0x7fffffff, -0x7fffffff);
    QTest::newRow("jpeg of 60,000") << jpegOfSize(60000, 60000);
    QTest::newRow("gif of 60,000") << gifOfSize(60000, 60000);
    QTest::newRow("ppm of 60,000") << textHeader("P6 %d %d 255\n", 60000, 60000);
    QTest::newRow("pbm of 60,000") << textHeader("P4 %d %d\n", 60000, 60000);
    QTest::newRow("xbm of 60,000")
        << textHeader("#define w_width %d\n#define w_height %d\nstatic char w_bits[] = {\n0x00};\n",
                      60000, 60000);
    QTest::newRow("xpm of 60,000") << textHeader(
        "/* XPM */\nstatic char *w[] = {\n\"%d %d 1 1\",\n\"a c #000\",\n\"a\"};\n", 60000, 60000);
}

void DamagedPicturesTest::shapelessPictureIsARedSquare()
{
    QFETCH(const QByteArray, bytes);
    DamagedLibrary library;
    put(&library, bytes);
    const QByteArray before = library.bytes();
    const long memory = mostMegabytes();

    const Morphology worm(1, library.db(), false);
    QCOMPARE(worm.nImages(), 1);
    QVERIFY(isRedSquare(worm.getImage(0)->createImage()));
    QVERIFY(isRedSquare(worm.getImage(0)->createPixmap().toImage()));
    const QList<QSize> sizes = sizesInList(&library);
    QCOMPARE(sizes.size(), 1);
    QCOMPARE(sizes[0].width(), sizes[0].height());

    QVERIFY2(mostMegabytes() - memory < 100, qPrintable(QString::number(mostMegabytes())));
    QCOMPARE(library.bytes(), before);
}

void DamagedPicturesTest::pictureThatFitsOnlyWhilePackedIsARedSquare()
{
    // 18 MB of black and white are 576 MB of colours.
    QImage image(12000, 12000, QImage::Format_Mono);
    image.fill(0);
    DamagedLibrary library;
    put(&library, encoded(image, "png"));
    const long memory = mostMegabytes();
    const Morphology worm(1, library.db(), true);
    QVERIFY(isRedSquare(worm.getImage(0)->createImage()));
    QVERIFY(mostMegabytes() - memory < 100);
}

void DamagedPicturesTest::photoIsShown()
{
    QImage image(5000, 4000, QImage::Format_RGB32);
    image.fill(Qt::blue);
    DamagedLibrary library;
    put(&library, encoded(image, "png"));
    const Morphology worm(1, library.db(), true);
    QCOMPARE(worm.getImage(0)->createImage().size(), QSize(5000, 4000));
    const QList<QSize> sizes = sizesInList(&library);
    QCOMPARE(sizes.size(), 1);
    QCOMPARE(sizes[0].width(), qRound(sizes[0].height() * 1.25));
}

void DamagedPicturesTest::pictureOfOneLineIsShownNarrow()
{
    // As high as its row of some 560 units, it would take 50 GB.
    QImage image(40000, 1, QImage::Format_RGB32);
    image.fill(Qt::blue);
    DamagedLibrary library;
    put(&library, encoded(image, "png"));
    const QList<QSize> sizes = sizesInList(&library);
    QCOMPARE(sizes.size(), 1);
    QVERIFY(sizes[0].height() >= 1);
    QVERIFY(1.0 * sizes[0].width() * sizes[0].height() <= 6.4e7);
}

void DamagedPicturesTest::pictureBesideAHugeWormIsShownSmall()
{
    DamagedLibrary library;
    library.damage({"UPDATE RegionParam SET Value = 1e300 WHERE Region = 4"});
    library.open();
    const QList<QSize> sizes = sizesInList(&library);
    QCOMPARE(sizes.size(), 1);
    QVERIFY(sizes[0].height() >= 1);
    QVERIFY(1.0 * sizes[0].width() * sizes[0].height() <= 6.4e7);
}

} // namespace Planaria

QTEST_MAIN(Planaria::DamagedPicturesTest)
#include "DamagedPicturesTest.moc"
