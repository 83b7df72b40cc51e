#include "widgets/ImageSaver.h"

#include "FileDialogAnswer.h"

#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QImage>
#include <QImageReader>
#include <QPixmap>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Planaria;

namespace {

constexpr QRgb black = 0xFF000000;
constexpr QRgb white = 0xFFFFFFFF;
constexpr QRgb clear = 0x00000000;

/// A picture in letters: '#' is black, '.' white, '-' all but white, ' ' clear, 'o' clear too, but
/// with white in its colours.
QImage picture(const QStringList &rows)
{
    static const QHash<QChar, QRgb> colours = {
        {'#', black}, {'.', white}, {'-', 0xFFFFFFFE}, {' ', clear}, {'o', 0x00FFFFFF}};
    QImage image(int(rows.first().size()), int(rows.size()), QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, colours.value(rows[y][x]));
    }
    return image;
}

void addBlock(QGraphicsScene *scene, const QRectF &rect, const QColor &colour)
{
    scene->addRect(rect, Qt::NoPen, colour);
}

/// Makes the scene larger than what can be seen of it.
void addInvisibleFrame(QGraphicsScene *scene, const QRectF &rect)
{
    scene->addRect(rect, Qt::NoPen, Qt::NoBrush);
}

QSize savedSize(const QString &fileName)
{
    return QImageReader(fileName).size();
}

QVariant lastFolder()
{
    return QSettings().value("ImageSaver/lastDir");
}

} // namespace

class ImageSaverTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void trimsMarginsOfTheBackground_data();
    void trimsMarginsOfTheBackground();
    void trimsNothingOfANullImage();

    void drawsASmallSceneAtTwiceItsSizeWithoutItsMargins();
    void drawsALargeSceneWithin25000Pixels_data();
    void drawsALargeSceneWithin25000Pixels();
    void makesOnePixelOfAnEmptyScene_data();
    void makesOnePixelOfAnEmptyScene();
    void takesBackgroundAndFormatFromTheEndingOfTheName_data();
    void takesBackgroundAndFormatFromTheEndingOfTheName();
    void flipsTheSceneTopToBottomOnly_data();
    void flipsTheSceneTopToBottomOnly();
    void drawsSmoothly();
    void saysNothingOfAFailure();
    void savesAPixmapAsItIs();

    void asksWhereToSave();
    void startsInTheFolderUsedLast();
    void remembersTheFolderOfTheFile_data();
    void remembersTheFolderOfTheFile();
    void appendsNoExtension();
    void doesNothingWithoutAName();
    void passesTheFlipOnFromTheDialog_data();
    void passesTheFlipOnFromTheDialog();

private:
    /// A path in a folder that is empty at the start of each test.
    [[nodiscard]] QString path(const QString &name) const { return folder->filePath(name); }
    [[nodiscard]] QStringList files() const { return QDir(folder->path()).entryList(QDir::Files); }

    std::unique_ptr<QTemporaryDir> folder;
};

void ImageSaverTest::init()
{
    QSettings().clear();
    folder = std::make_unique<QTemporaryDir>();
}

// --- Trimming ---

void ImageSaverTest::trimsMarginsOfTheBackground_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QRgb>("background");
    QTest::addColumn<QStringList>("after");

    const auto row = [](const char *name, QRgb background, const QStringList &before,
                        const QStringList &after) {
        QTest::newRow(name) << before << background << after;
    };
    row("uneven margins", white, {".....", ".....", ".##..", "..#..", "....."}, {"##", ".#"});
    row("top alone", white, {"..", "##"}, {"##"});
    row("bottom alone", white, {"##", ".."}, {"##"});
    row("left alone", white, {".#", ".#"}, {"#", "#"});
    row("right alone", white, {"#.", "#."}, {"#", "#"});
    row("no margin", white, {"#.", ".#"}, {"#.", ".#"});
    row("background inside", white, {"#.#", "...", "#.#"}, {"#.#", "...", "#.#"});
    row("background alone", white, {"...", "...", "..."}, {"."});
    row("one row", white, {"..#.."}, {"#"});
    row("one column", white, {".", "#", "."}, {"#"});
    row("one pixel", white, {"."}, {"."});
    row("almost the colour", white, {"...", ".-.", "..-"}, {"-.", ".-"});
    row("clear", clear, {"   ", " . ", "   "}, {"."});
    row("clear in another colour", clear, {"o  ", "   "}, {"o"});
    row("another colour than the background", clear, {"...", ".#."}, {"...", ".#."});
}

void ImageSaverTest::trimsMarginsOfTheBackground()
{
    QFETCH(const QStringList, before);
    QFETCH(const QRgb, background);
    QFETCH(const QStringList, after);
    QImage image = picture(before);
    ImageSaver::crop(image, background);
    QCOMPARE(image, picture(after));
}

void ImageSaverTest::trimsNothingOfANullImage()
{
    QImage image;
    ImageSaver::crop(image, white);
    QVERIFY(image.isNull());
}

// --- Saving under a name ---

void ImageSaverTest::drawsASmallSceneAtTwiceItsSizeWithoutItsMargins()
{
    QGraphicsScene scene;
    addInvisibleFrame(&scene, {-50.0, -20.0, 200.0, 100.0});
    addBlock(&scene, {10.0, 5.0, 30.0, 15.0}, Qt::black);
    ImageSaver::saveScene(scene, path("scene.png"), false);

    const QImage image(path("scene.png"));
    QCOMPARE(image.size(), QSize(60, 30));
    for (const QPoint corner : {QPoint(0, 0), QPoint(59, 0), QPoint(0, 29), QPoint(59, 29)})
        QCOMPARE(image.pixel(corner), black);
}

void ImageSaverTest::drawsALargeSceneWithin25000Pixels_data()
{
    QTest::addColumn<QSizeF>("scene");
    QTest::addColumn<QSize>("image");
    QTest::newRow("wide") << QSizeF(30000.0, 12.0) << QSize(25000, 10);
    QTest::newRow("high") << QSizeF(12.0, 30000.0) << QSize(10, 25000);
    QTest::newRow("just twice") << QSizeF(12500.0, 6.0) << QSize(25000, 12);
    QTest::newRow("not quite twice") << QSizeF(12800.0, 12.8) << QSize(25000, 25);
    QTest::newRow("half a unit more") << QSizeF(30000.5, 12.0) << QSize(25000, 10);
    QTest::newRow("too flat") << QSizeF(30000.0, 0.6) << QSize(25000, 1);
}

void ImageSaverTest::drawsALargeSceneWithin25000Pixels()
{
    QFETCH(const QSizeF, scene);
    QFETCH(const QSize, image);
    QGraphicsScene flat;
    addBlock(&flat, QRectF(QPointF(), scene), Qt::black);
    ImageSaver::saveScene(flat, path("flat.png"), false);
    QCOMPARE(savedSize(path("flat.png")), image);
}

void ImageSaverTest::makesOnePixelOfAnEmptyScene_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRgb>("colour");
    QTest::newRow("png") << "empty.png" << clear;
    QTest::newRow("jpg") << "empty.jpg" << white;
}

void ImageSaverTest::makesOnePixelOfAnEmptyScene()
{
    QFETCH(const QString, name);
    QFETCH(const QRgb, colour);
    QGraphicsScene scene;
    ImageSaver::saveScene(scene, path(name), true);
    const QImage image(path(name));
    QCOMPARE(image.size(), QSize(1, 1));
    QCOMPARE(image.pixel(0, 0), colour);
}

void ImageSaverTest::takesBackgroundAndFormatFromTheEndingOfTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QRgb>("background");
    QTest::newRow("png") << "worm.png" << QByteArray("png") << clear;
    QTest::newRow("png in capitals") << "worm.PNG" << QByteArray("png") << white;
    QTest::newRow("jpg") << "worm.jpg" << QByteArray("jpeg") << white;
    QTest::newRow("bmp") << "worm.bmp" << QByteArray("bmp") << white;
    QTest::newRow("png before the ending") << "worm.png.jpg" << QByteArray("jpeg") << white;
}

void ImageSaverTest::takesBackgroundAndFormatFromTheEndingOfTheName()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, format);
    QFETCH(const QRgb, background);
    QGraphicsScene scene;
    addInvisibleFrame(&scene, {-32.0, -32.0, 96.0, 96.0});
    addBlock(&scene, {0.0, 0.0, 16.0, 16.0}, Qt::black);
    addBlock(&scene, {16.0, 16.0, 16.0, 16.0}, Qt::black);
    ImageSaver::saveScene(scene, path(name), false);

    QCOMPARE(QImageReader(path(name)).format(), format);
    const QImage image(path(name));
    QCOMPARE(image.size(), QSize(64, 64));
    QCOMPARE(image.pixel(16, 16), black);
    QCOMPARE(image.pixel(48, 16), background);
    QCOMPARE(image.pixel(16, 48), background);
}

void ImageSaverTest::flipsTheSceneTopToBottomOnly_data()
{
    QTest::addColumn<bool>("mirror");
    QTest::addColumn<QColor>("topLeft");
    QTest::addColumn<QColor>("bottomLeft");
    QTest::newRow("y points down") << false << QColor(Qt::red) << QColor(Qt::blue);
    QTest::newRow("y points up") << true << QColor(Qt::blue) << QColor(Qt::red);
}

namespace {

/// Red above blue on the left, as a view shows it in which y points down; black on the right.
void addFlag(QGraphicsScene *scene)
{
    addBlock(scene, {0.0, 0.0, 10.0, 10.0}, Qt::red);
    addBlock(scene, {0.0, 10.0, 10.0, 10.0}, Qt::blue);
    addBlock(scene, {10.0, 0.0, 10.0, 20.0}, Qt::black);
}

} // namespace

void ImageSaverTest::flipsTheSceneTopToBottomOnly()
{
    QFETCH(const bool, mirror);
    QFETCH(const QColor, topLeft);
    QFETCH(const QColor, bottomLeft);
    QGraphicsScene scene;
    addFlag(&scene);
    ImageSaver::saveScene(scene, path("flag.png"), mirror);

    const QImage image(path("flag.png"));
    QCOMPARE(image.pixelColor(10, 10), topLeft);
    QCOMPARE(image.pixelColor(10, 30), bottomLeft);
    QCOMPARE(image.pixelColor(30, 20), QColor(Qt::black));
}

void ImageSaverTest::drawsSmoothly()
{
    QGraphicsScene scene;
    const QBrush texture(picture({"#.", ".#"}));
    scene.addRect(QRectF(0.0, 0.0, 2.0, 2.0), Qt::NoPen, texture)->setScale(20.0);
    scene.addEllipse(QRectF(50.0, 0.0, 20.0, 20.0), Qt::NoPen, Qt::black);
    ImageSaver::saveScene(scene, path("smooth.png"), false);

    const QImage image(path("smooth.png"));
    const auto isBetween = [](int value) { return value > 0 && value < 255; };
    int greys = 0;
    int softEdges = 0;
    for (int x = 0; x < image.width(); ++x) {
        const QColor colour = image.pixelColor(x, 10);
        greys += isBetween(colour.red()) && colour.alpha() == 255;
        softEdges += isBetween(colour.alpha());
    }
    QVERIFY(greys > 10);
    QVERIFY(softEdges > 0);
}

void ImageSaverTest::saysNothingOfAFailure()
{
    const ModalAnswerer answerer;
    QGraphicsScene scene;
    addFlag(&scene);
    QPixmap pixmap(10, 10);
    pixmap.fill(Qt::red);
    for (const char *name : {"no such folder/flag.png", "flag.of-no-format", "flag"}) {
        ImageSaver::saveScene(scene, path(name), false);
        ImageSaver::savePixmap(pixmap, path(name), nullptr);
    }
    QTest::qWait(50); // for a box that would open late
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(files(), QStringList());
}

void ImageSaverTest::savesAPixmapAsItIs()
{
    const QImage image = picture({"...", ".#.", "..."});
    ImageSaver::savePixmap(QPixmap::fromImage(image), path("pixmap.png"), nullptr);
    QCOMPARE(QImage(path("pixmap.png")).convertToFormat(image.format()), image);
}

// --- Asking for the name ---

void ImageSaverTest::asksWhereToSave()
{
    QWidget window;
    QGraphicsScene scene;
    addFlag(&scene);
    ModalAnswerer answerer;
    const auto forScene = expectFileDialog(&answerer, path("flag.png"));
    ImageSaver::saveScene(scene, false, &window);
    const auto forPixmap = expectFileDialog(&answerer, path("pixmap.png"));
    ImageSaver::savePixmap(QPixmap::fromImage(picture({"#"})), &window);

    QCOMPARE(answerer.problems(), QStringList());
    for (const auto &seen : {forScene, forPixmap}) {
        QVERIFY(seen->asksToSave);
        QCOMPARE(seen->title, "Save image");
        QCOMPARE(seen->filters, QStringList("Images (*.png *.jpg *.bmp)"));
        QCOMPARE(seen->parent, &window);
    }
    QCOMPARE(savedSize(path("flag.png")), QSize(40, 40));
    QCOMPARE(savedSize(path("pixmap.png")), QSize(1, 1));
}

void ImageSaverTest::startsInTheFolderUsedLast()
{
    QVERIFY(QDir(folder->path()).mkdir("drawings"));
    QSettings().setValue("ImageSaver/lastDir", path("drawings"));
    ModalAnswerer answerer;
    const auto seen = expectFileDialog(&answerer, "pixmap.png");
    ImageSaver::savePixmap(QPixmap::fromImage(picture({"#"})), nullptr);

    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->folder, path("drawings"));
    QVERIFY(QFile::exists(path("drawings/pixmap.png")));
    QCOMPARE(lastFolder(), path("drawings"));
}

void ImageSaverTest::remembersTheFolderOfTheFile_data()
{
    QTest::addColumn<QString>("before");
    QTest::newRow("for the first time") << QString();
    QTest::newRow("instead of another") << "/no such folder";
}

void ImageSaverTest::remembersTheFolderOfTheFile()
{
    QFETCH(const QString, before);
    if (!before.isNull())
        QSettings().setValue("ImageSaver/lastDir", before);
    ModalAnswerer answerer;
    expectFileDialog(&answerer, path("pixmap.png"));
    ImageSaver::savePixmap(QPixmap::fromImage(picture({"#"})), nullptr);

    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(lastFolder(), folder->path());
}

void ImageSaverTest::appendsNoExtension()
{
    ModalAnswerer answerer;
    expectFileDialog(&answerer, path("pixmap"));
    ImageSaver::savePixmap(QPixmap::fromImage(picture({"#"})), nullptr);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(files(), QStringList()); // a name without a format
    QCOMPARE(lastFolder(), folder->path());
}

void ImageSaverTest::doesNothingWithoutAName()
{
    QSettings().setValue("ImageSaver/lastDir", folder->path());
    QGraphicsScene scene;
    addFlag(&scene);
    ModalAnswerer answerer;
    expectFileDialog(&answerer, {});
    ImageSaver::saveScene(scene, false, nullptr);
    expectFileDialog(&answerer, {});
    ImageSaver::savePixmap(QPixmap::fromImage(picture({"#"})), nullptr);

    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(files(), QStringList());
    QCOMPARE(lastFolder(), folder->path());
}

void ImageSaverTest::passesTheFlipOnFromTheDialog_data()
{
    QTest::addColumn<bool>("mirror");
    QTest::addColumn<QColor>("topLeft");
    QTest::newRow("y points down") << false << QColor(Qt::red);
    QTest::newRow("y points up") << true << QColor(Qt::blue);
}

void ImageSaverTest::passesTheFlipOnFromTheDialog()
{
    QFETCH(const bool, mirror);
    QFETCH(const QColor, topLeft);
    QGraphicsScene scene;
    addFlag(&scene);
    ModalAnswerer answerer;
    expectFileDialog(&answerer, path("flag.png"));
    ImageSaver::saveScene(scene, mirror, nullptr);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(QImage(path("flag.png")).pixelColor(10, 10), topLeft);
}

QTEST_MAIN(ImageSaverTest)
#include "ImageSaverTest.moc"
