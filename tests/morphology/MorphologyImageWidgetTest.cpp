#include "morphology/MorphologyImageWidget.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "morphology/PictureSize.h"
#include "support/Picture.h"
#include "support/TemporaryLibrary.h"
#include "widgets/FileDialogAnswer.h"

#include <QAction>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Planaria;

namespace {

/// Columns in turns black and white.
QImage striped(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int x = 0; x < size.width(); ++x) {
        for (int y = 0; y < size.height(); ++y)
            image.setPixelColor(x, y, x % 2 == 0 ? Qt::black : Qt::white);
    }
    return image;
}

QImage shownImage(const MorphologyImageWidget &widget)
{
    return widget.pixmap().toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

class MorphologyImageWidgetTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void keepsTheProportionsOfThePictureAtAnyWidth_data();
    void keepsTheProportionsOfThePictureAtAnyWidth();
    void keepsAPictureAsHighAsALineIsLongWithinMemory();
    void takesAPictureWithoutExtentForASquare();
    void fillsTheWidthThatALayoutGivesIt();
    void blendsNoPixels();
    void showsARedSquareForWhatIsNoPicture();
    void offersToSaveAndToDelete();
    void savesThePictureAtItsOwnSize();
    void hidesAPictureThatItDeletes();
    void keepsTheRowOfADeletedPictureUntilTheWormIsWritten();

private:
    /// A picture of the worm, which the library holds.
    MorphologyImage *storedImage(const QByteArray &bytes);

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<Morphology> worm;
};

void MorphologyImageWidgetTest::init()
{
    worm.reset(); // before the vocabulary that it points at is replaced
    library = std::make_unique<TemporaryLibrary>();
    worm = ExperimentFactory::instance(nullptr)->createWildMorphology();
}

MorphologyImage *MorphologyImageWidgetTest::storedImage(const QByteArray &bytes)
{
    MorphologyImage *image = worm->addImage(bytes);
    return worm->submit(library->db()) > 0 ? image : nullptr;
}

void MorphologyImageWidgetTest::keepsTheProportionsOfThePictureAtAnyWidth_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("natural size") << QSize(30, 20) << 30 << 20;
    QTest::newRow("larger") << QSize(30, 20) << 300 << 200;
    QTest::newRow("smaller, rounded down") << QSize(30, 20) << 19 << 12;
    QTest::newRow("larger, rounded down") << QSize(7, 5) << 100 << 71;
    QTest::newRow("high") << QSize(20, 30) << 33 << 49;
    QTest::newRow("flat") << QSize(200, 1) << 399 << 1;
}

void MorphologyImageWidgetTest::keepsTheProportionsOfThePictureAtAnyWidth()
{
    QFETCH(const QSize, picture);
    QFETCH(const int, width);
    QFETCH(const int, height);
    MorphologyImageWidget widget(worm->addImage(encoded(striped(picture), "png")), nullptr);
    widget.show();
    for (const int shownWidth : {500, width}) {
        widget.resize(shownWidth, 10);
        QCOMPARE(widget.width(), shownWidth);
    }
    QCOMPARE(widget.height(), height);
    QCOMPARE(widget.minimumHeight(), height);
    QCOMPARE(widget.maximumHeight(), height);
    QCOMPARE(widget.pixmap().size(), QSize(width, height));
}

void MorphologyImageWidgetTest::keepsAPictureAsHighAsALineIsLongWithinMemory()
{
    QImage line(1, 1'000'000, QImage::Format_Mono);
    line.fill(1);
    MorphologyImageWidget widget(worm->addImage(encoded(line, "png")), nullptr);
    widget.resize(2500, 10); // 2,500,000,000 pixels high by its proportions
    widget.show();
    QCOMPARE(widget.pixmap().size(), QSize(2500, 25'600));
    QCOMPARE(widget.size(), QSize(2500, 25'600));
}

void MorphologyImageWidgetTest::takesAPictureWithoutExtentForASquare()
{
    for (const QSize &size : {QSize(), QSize(0, 10), QSize(10, 0)}) {
        QCOMPARE(PictureSize::heightForWidth(30, size), 30);
        QCOMPARE(PictureSize::heightWithin(30.0, size), 30);
    }
}

void MorphologyImageWidgetTest::fillsTheWidthThatALayoutGivesIt()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *widget =
        new MorphologyImageWidget(worm->addImage(encoded(striped({40, 20}), "png")), &window);
    layout->addWidget(widget);
    layout->addStretch();
    window.resize(300, 400);
    window.show();
    QCOMPARE(widget->sizePolicy(), QSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored));
    QCOMPARE(widget->size(), QSize(300, 150));
    window.resize(100, 400); // narrower than the picture is by itself, too
    QCOMPARE(widget->size(), QSize(100, 50));
    window.resize(20, 400);
    QCOMPARE(widget->size(), QSize(20, 10));
}

void MorphologyImageWidgetTest::blendsNoPixels()
{
    const QImage picture = striped({30, 20});
    MorphologyImageWidget widget(worm->addImage(encoded(picture, "png")), nullptr);
    widget.show();
    widget.resize(47, 10);
    QCOMPARE(shownImage(widget),
             picture.scaled(47, 31, Qt::IgnoreAspectRatio, Qt::FastTransformation));
}

void MorphologyImageWidgetTest::showsARedSquareForWhatIsNoPicture()
{
    MorphologyImageWidget widget(worm->addImage("no picture"), nullptr);
    widget.show();
    widget.resize(50, 10);
    QImage red(50, 50, QImage::Format_RGB32);
    red.fill(Qt::red);
    QCOMPARE(widget.size(), red.size());
    QCOMPARE(shownImage(widget), red);
}

void MorphologyImageWidgetTest::offersToSaveAndToDelete()
{
    const MorphologyImageWidget widget(worm->addImage(encoded(striped({30, 20}), "png")), nullptr);
    QCOMPARE(widget.contextMenuPolicy(), Qt::ActionsContextMenu);
    const QList<std::pair<QString, QString>> expected = {{"Save image...", "picture_save"},
                                                         {"Delete image", "picture_delete"}};
    QCOMPARE(widget.actions().size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const auto &[text, iconName] = expected[i];
        const QPixmap icon(":/Images/famfamfam_silk_icons/" + iconName + ".png");
        QVERIFY(!icon.isNull());
        const QAction *action = widget.actions().at(i);
        QCOMPARE(action->text(), text);
        QCOMPARE(action->icon().pixmap(icon.size()).toImage(), icon.toImage());
    }
}

void MorphologyImageWidgetTest::savesThePictureAtItsOwnSize()
{
    const QImage picture = striped({30, 20});
    MorphologyImageWidget widget(worm->addImage(encoded(picture, "png")), nullptr);
    widget.show();
    widget.resize(100, 10);
    ModalAnswerer answerer;
    const auto seen = expectFileDialog(&answerer, library->filePath("picture.png"));
    widget.actions().first()->trigger();
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->parent, &widget);
    const QImage saved(library->filePath("picture.png"));
    QCOMPARE(saved.convertToFormat(QImage::Format_RGB32), picture);
}

void MorphologyImageWidgetTest::hidesAPictureThatItDeletes()
{
    MorphologyImage *image = worm->addImage(encoded(striped({30, 20}), "png"));
    const QPointer<MorphologyImageWidget> widget = new MorphologyImageWidget(image, nullptr);
    widget->show();
    const QSignalSpy deleted(widget, &MorphologyImageWidget::deleted);
    widget->actions().at(1)->trigger();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QCOMPARE(deleted.size(), 1);
    QVERIFY(!widget.isNull());
    QVERIFY(widget->isHidden());
    QCOMPARE(worm->nImages(), 0);
    QCOMPARE(worm->record().removedReferences(), QList<DBElement *>{image});
    delete widget;
}

void MorphologyImageWidgetTest::keepsTheRowOfADeletedPictureUntilTheWormIsWritten()
{
    MorphologyImage *stays = storedImage(encoded(striped({10, 10}), "png"));
    MorphologyImage *goes = storedImage(encoded(striped({30, 20}), "png"));
    QVERIFY(stays && goes);
    QCOMPARE(library->count("MorphologyImage"), 2);

    MorphologyImageWidget widget(goes, nullptr);
    widget.deleteImage();
    QCOMPARE(library->count("MorphologyImage"), 2);
    // Given up: the next one who reads the worm finds the picture.
    QCOMPARE(Morphology(worm->id(), library->db(), true).nImages(), 2);

    QVERIFY(worm->submit(library->db()) > 0);
    QCOMPARE(library->count("MorphologyImage"), 1);
    QCOMPARE(library->value("SELECT Id FROM MorphologyImage").toInt(), stays->id());
    QCOMPARE(library->brokenReferences(), QStringList());
}

QTEST_MAIN(MorphologyImageWidgetTest)
#include "MorphologyImageWidgetTest.moc"
