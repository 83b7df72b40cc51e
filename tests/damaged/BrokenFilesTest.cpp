#include "damaged/DamagedLibrary.h"
#include "db/BulkRead.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "morphology/MorphologyItem.h"
#include "morphology/MorphologyListViewerForm.h"
#include "support/DrawnWorm.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QImage>
#include <QRandomGenerator>
#include <QTest>

namespace Planaria {

namespace {

/// Loads each worm of the library, with its picture, and draws it. @return what went wrong
QString faultOfDrawing(DB *db)
{
    QGraphicsScene scene;
    for (int id = 1; id <= 3; ++id) {
        const Morphology worm(id, db, true);
        auto *item = new MorphologyItem(worm, nullptr, false);
        scene.addItem(item);
        item->centerAtZero();
        if (!isFinite(item))
            return QStringLiteral("worm %1 is not finite").arg(id);
        for (const MorphologyImage *image : worm.getImages()) {
            if (image->createPixmap().isNull())
                return QStringLiteral("worm %1 has an empty picture").arg(id);
        }
    }
    return thumbnail(&scene).isNull() ? "nothing can be drawn" : QString();
}

/// The same by statements, in bulk, and in the list viewer, with a look at what is written.
QString faultOfShowing(DamagedLibrary *library)
{
    const QByteArray before = library->bytes();
    library->open();
    QString fault = faultOfDrawing(library->db());
    {
        const BulkRead job(library->db());
        fault += faultOfDrawing(library->db());
    }
    MorphologyListViewerForm form(library->db(), nullptr);
    form.show();
    if (form.grab().isNull() || thumbnail(form.findChild<QGraphicsView *>()->scene()).isNull())
        fault += "the list cannot be drawn";
    if (library->bytes() != before)
        fault += "the file was written to";
    return fault;
}

} // namespace

/// Files that SQLite itself stumbles over.
class BrokenFilesTest final : public QObject
{
    Q_OBJECT

private slots:
    void soundFileShowsBothWorms();
    void truncatedFileIsShownAsFarAsItGoes_data();
    void truncatedFileIsShownAsFarAsItGoes();
    void strewnBytesAreSurvived();
};

void BrokenFilesTest::soundFileShowsBothWorms()
{
    DamagedLibrary library;
    QCOMPARE(faultOfShowing(&library), QString());
    QCOMPARE(library.db()->getNumRows("Morphology"), 2);
}

void BrokenFilesTest::truncatedFileIsShownAsFarAsItGoes_data()
{
    QTest::addColumn<double>("share");
    for (const double share : {0.0, 0.0001, 0.001, 0.01, 0.1, 0.25, 0.5, 0.75, 0.9, 0.99, 0.9999})
        QTest::addRow("%g", share) << share;
}

void BrokenFilesTest::truncatedFileIsShownAsFarAsItGoes()
{
    QFETCH(const double, share);
    DamagedLibrary library;
    const QByteArray whole = library.bytes();
    const QByteArray part = whole.first(static_cast<qsizetype>(share * whole.size()));
    library.setBytes(part);
    QCOMPARE(faultOfShowing(&library), QString());

    // SQLite refuses a file that lacks a page. It takes no notice of a piece lacking in the last
    // one, and writes; that must not make things worse.
    const QStringList faults = library.faults();
    Morphology worm(1, library.db(), true);
    worm.setName("Changed");
    worm.submit(library.db());
    QVERIFY(!library.isInTransaction());
    QCOMPARE(library.faultsBeside(faults), QStringList());
    if (share < 0.97)
        QCOMPARE(library.bytes(), part);
}

void BrokenFilesTest::strewnBytesAreSurvived()
{
    for (quint32 seed = 0; seed < 100; ++seed) {
        QRandomGenerator random(seed);
        DamagedLibrary library;
        QByteArray bytes = library.bytes();
        for (int i = random.bounded(1, 60); i > 0; --i)
            bytes[random.bounded(100, bytes.size())] = static_cast<char>(random.generate());
        library.setBytes(bytes);
        const QString fault = faultOfShowing(&library);
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
    }
}

} // namespace Planaria

QTEST_MAIN(Planaria::BrokenFilesTest)
#include "BrokenFilesTest.moc"
