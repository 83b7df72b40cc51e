#include "distance/MorphologyDistCompForm.h"

#include "distance/StoredWorms.h"
#include "morphology/ChooserParts.h"
#include "morphology/MorphologyItem.h"
#include "support/ProgressWatcher.h"
#include "support/StatementLog.h"
#include "widgets/FileDialogAnswer.h"
#include "widgets/ZoomGraphicsView.h"

#include <QAction>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QImage>
#include <QLayout>
#include <QRegularExpression>
#include <QSettings>

#include <cmath>

using namespace Planaria;

namespace {

/// The comparator as a user sees it.
struct OpenForm
{
    explicit OpenForm(TemporaryLibrary *library, QWidget *parent = nullptr)
        : form(library->db(), parent)
    {
        if (!form.isAborted())
            form.show();
    }

    ChooserParts chooser() { return ChooserParts(form.findChild<MorphologyChooser *>()); }
    ZoomGraphicsView *comparison()
    {
        for (auto *view : form.findChildren<ZoomGraphicsView *>(QString())) {
            if (view != chooser().view())
                return view;
        }
        return nullptr;
    }

    template <typename Item> QList<Item *> items()
    {
        QList<Item *> found;
        for (QGraphicsItem *item : comparison()->scene()->items()) {
            if (auto *wanted = dynamic_cast<Item *>(item))
                found += wanted;
        }
        std::sort(found.begin(), found.end(),
                  [](const Item *a, const Item *b) { return a->x() < b->x(); });
        return found;
    }
    QList<MorphologyItem *> worms() { return items<MorphologyItem>(); }
    QList<QGraphicsTextItem *> labels() { return items<QGraphicsTextItem>(); }

    QStringList texts()
    {
        QStringList all;
        for (const QGraphicsTextItem *label : labels())
            all += label->toPlainText();
        return all;
    }
    /// The names of the worms, from left to right.
    QStringList order()
    {
        const QString told = comparison()->accessibleDescription();
        return told.isEmpty() ? QStringList()
                              : told.split(", ").replaceInStrings(QRegularExpression(" \\S+$"), "");
    }

    MorphologyDistCompForm form;
};

} // namespace

/// The comparator.
class MorphologyDistCompFormTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void putsTheChoiceBesideTheComparison();
    void showsTheComparisonAsOtherViewsDo();

    void comparesWithTheFirstWhenItOpens();
    void comparesWithWhatIsChosen();
    void drawsTheWormsByDistance();
    void ordersEqualDistancesByTheNewest();
    void putsTheWormsInARow();
    void putsEachDistanceUnderItsWorm();
    void putsTheDistancesOnOneLineBeneathTheLowestWorm();
    void putsTheDistancesOfWormsWithoutExtentAtZero();
    void writesTheDistancesUpright();
    void writesTheDistancesInBold();
    void opensOnTheClosestWormsAndTheirDistances();
    void comparesNothingInALibraryWithoutWorms();
    void drawsDamagedWormsBesideSoundOnes_data();
    void drawsDamagedWormsBesideSoundOnes();
    void keepsSoundWormsInOrderBesideADamagedOne_data();
    void keepsSoundWormsInOrderBesideADamagedOne();
    void tellsTheDistancesToThoseWhoCannotSee();
    void readsEachTableOfMembersOnce();

    void showsItsProgress();
    void opensNotWhenTheUserAborts_data();
    void opensNotWhenTheUserAborts();
    void readsNoSettingsWhenTheUserAborts();
    void staysOpenAndEmptyWhenALaterComparisonIsAborted_data();
    void staysOpenAndEmptyWhenALaterComparisonIsAborted();
    void comparesAgainAfterAnAbort();
    void abortsBetweenTwoComparisons();

    void comparesOnceWithANewOne();
    void comparesOnceWithACopy();
    void comparesOnceWithWhatWasEdited();
    void comparesNothingWhenTheUserCancels_data();
    void comparesNothingWhenTheUserCancels();
    void comparesWithTheFirstThatIsMade();

    void savesTheComparisonUpright();

private:
    std::unique_ptr<TemporaryLibrary> library;
};

void MorphologyDistCompFormTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
}

void MorphologyDistCompFormTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
}

// --- The parts ---

void MorphologyDistCompFormTest::putsTheChoiceBesideTheComparison()
{
    OpenForm open(library.get());
    const QLayout *layout = open.form.layout();
    QCOMPARE(layout->count(), 2);
    const QLayout *row = layout->itemAt(0)->layout();
    QCOMPARE(row->count(), 2);
    QCOMPARE(row->itemAt(0)->widget(), open.chooser().chooser);
    QCOMPARE(row->itemAt(1)->widget(), open.comparison());
    const auto *buttons = qobject_cast<QDialogButtonBox *>(layout->itemAt(1)->widget());
    QVERIFY(buttons);
    QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Close);
}

void MorphologyDistCompFormTest::showsTheComparisonAsOtherViewsDo()
{
    storeWorms(library.get(), 2);
    OpenForm open(library.get());
    const ZoomGraphicsView *view = open.comparison();
    QCOMPARE(view->renderHints(), open.chooser().view()->renderHints());
    QCOMPARE(view->transform(), QTransform::fromScale(1.0, -1.0));
    QCOMPARE(view->contextMenuPolicy(), Qt::ActionsContextMenu);
    QCOMPARE(view->actions().size(), 1);
    QCOMPARE(view->actions().first()->text(), "Save image...");
}

// --- The comparison ---

void MorphologyDistCompFormTest::comparesWithTheFirstWhenItOpens()
{
    storeWorm(library.get(), "B", 20.0);
    storeWorm(library.get(), "A", 10.0);
    const ProgressWatcher progress;
    OpenForm open(library.get());
    QCOMPARE(open.chooser().chosenName(), "A");
    QCOMPARE(open.chooser().shownName(), "A");
    QCOMPARE(open.order(), QStringList({"A", "B"}));
    QCOMPARE(open.texts(), QStringList({"0.00", "1.00"}));
    QCOMPARE(progress.values, QList<int>({0, 1}));
}

void MorphologyDistCompFormTest::comparesWithWhatIsChosen()
{
    storeWorms(library.get(), 3);
    OpenForm open(library.get());
    const ProgressWatcher progress;
    open.chooser().choose("Worm 0002");
    QCOMPARE(open.order(), QStringList({"Worm 0002", "Worm 0001", "Worm 0000"}));
    QCOMPARE(open.texts(), QStringList({"0.00", "1.00", "2.00"}));
    QCOMPARE(progress.values, QList<int>({0, 1, 2}));
    QCOMPARE(open.worms().size(), 3);
}

void MorphologyDistCompFormTest::drawsTheWormsByDistance()
{
    storeWorm(library.get(), "A", 50.0);
    storeWorm(library.get(), "B", 300.0);
    storeWorm(library.get(), "C", 10.0);
    storeWorm(library.get(), "D", 100.0);
    OpenForm open(library.get());
    QCOMPARE(open.order(), QStringList({"A", "C", "D", "B"}));
    QCOMPARE(open.texts(), QStringList({"0.00", "4.00", "5.00", "25.00"}));
    QList<double> heights;
    for (const MorphologyItem *worm : open.worms())
        heights += worm->boundingRect().height();
    // C, the shortest, stands second, and B, the longest, last.
    QCOMPARE(std::min_element(heights.begin(), heights.end()) - heights.begin(), 1);
    QCOMPARE(std::max_element(heights.begin(), heights.end()) - heights.begin(), 3);
}

void MorphologyDistCompFormTest::ordersEqualDistancesByTheNewest()
{
    storeWorm(library.get(), "A");
    for (const char *name : {"D", "B", "C"})
        storeWorm(library.get(), name, 10.0);
    OpenForm open(library.get());
    QCOMPARE(open.order(), QStringList({"A", "D", "C", "B"}));
}

void MorphologyDistCompFormTest::putsTheWormsInARow()
{
    storeWorms(library.get(), 3);
    Morphology round;
    round.setName("Round");
    round.addRegion(ExperimentFactory::instance(nullptr)->regionType(1));
    QVERIFY(round.submit(library->db()) > 0);
    OpenForm open(library.get());
    QCOMPARE(open.worms().size(), 4);
    double x = 20.0;
    for (const MorphologyItem *worm : open.worms()) {
        const QRectF rect = worm->sceneBoundingRect();
        QCOMPARE(rect.left(), x);
        QCOMPARE(worm->y(), 0.0);
        x = rect.right() + 30.0;
    }
}

void MorphologyDistCompFormTest::putsEachDistanceUnderItsWorm()
{
    storeWorms(library.get(), 4);
    OpenForm open(library.get());
    const auto worms = open.worms();
    const auto labels = open.labels();
    QCOMPARE(labels.size(), worms.size());
    for (int i = 0; i < worms.size(); ++i)
        QCOMPARE(labels[i]->sceneBoundingRect().center().x(),
                 worms[i]->sceneBoundingRect().center().x());
}

void MorphologyDistCompFormTest::putsTheDistancesOnOneLineBeneathTheLowestWorm()
{
    storeWorm(library.get(), "A");
    storeWorm(library.get(), "B", 123.7);
    storeWorm(library.get(), "C", 10.0);
    OpenForm open(library.get());
    double lowest = 0.0;
    for (const MorphologyItem *worm : open.worms())
        lowest = std::min(lowest, worm->boundingRect().y());
    QVERIFY(lowest != std::trunc(lowest));
    for (const QGraphicsTextItem *label : open.labels()) {
        QCOMPARE(label->y(), std::trunc(lowest));
        QCOMPARE(label->sceneBoundingRect().bottom(), std::trunc(lowest));
    }
}

void MorphologyDistCompFormTest::putsTheDistancesOfWormsWithoutExtentAtZero()
{
    library->run("INSERT INTO Morphology (Name) VALUES('Nothing'), ('Nothing else')");
    OpenForm open(library.get());
    QCOMPARE(open.texts(), QStringList({"0.00", "0.00"}));
    for (const QGraphicsTextItem *label : open.labels())
        QCOMPARE(label->y(), 0.0);
}

void MorphologyDistCompFormTest::writesTheDistancesUpright()
{
    storeWorms(library.get(), 2);
    OpenForm open(library.get());
    for (const QGraphicsTextItem *label : open.labels())
        QCOMPARE(label->deviceTransform(open.comparison()->viewportTransform()).m22(), 1.0);
}

void MorphologyDistCompFormTest::writesTheDistancesInBold()
{
    storeWorms(library.get(), 1);
    OpenForm open(library.get());
    const QFont font = open.labels().first()->font();
    QCOMPARE(font.family(), "Arial");
    QCOMPARE(font.pointSize(), 12);
    QCOMPARE(font.weight(), QFont::Bold);
    QVERIFY(!font.italic());
    QCOMPARE(open.labels().first()->defaultTextColor(), QColor(Qt::black));
}

void MorphologyDistCompFormTest::opensOnTheClosestWormsAndTheirDistances()
{
    storeWorms(library.get(), 30);
    OpenForm open(library.get());
    const ZoomGraphicsView *view = open.comparison();
    const auto shown = [view](const QGraphicsItem *item) {
        return view->mapFromScene(item->sceneBoundingRect()).boundingRect();
    };
    QVERIFY(view->viewport()->rect().contains(shown(open.labels().first()).center()));
    QVERIFY(view->viewport()->rect().intersects(shown(open.worms().first())));
    QVERIFY(!view->viewport()->rect().intersects(shown(open.worms().last())));
}

void MorphologyDistCompFormTest::comparesNothingInALibraryWithoutWorms()
{
    const ProgressWatcher progress;
    OpenForm open(library.get());
    open.form.updateComparator();
    QVERIFY(!open.form.isAborted());
    QVERIFY(open.comparison()->scene()->items().isEmpty());
    QCOMPARE(open.comparison()->accessibleName(), "No comparison");
    QCOMPARE(progress.values, QList<int>());
}

void MorphologyDistCompFormTest::drawsDamagedWormsBesideSoundOnes_data()
{
    QTest::addColumn<QString>("damage");
    QTest::newRow("rotation of organs") << "UPDATE SpotOrgan SET Rot=9e999 WHERE %1";
    QTest::newRow("places of organs") << "UPDATE Organ SET VecX=9e999 WHERE %1";
    QTest::newRow("extent of regions") << "UPDATE RegionParam SET Value=-9e999 WHERE %1";
    QTest::newRow("length of links") << "UPDATE RegionsLink SET Dist=9e999 WHERE %1";
    QTest::newRow("direction of links") << "UPDATE RegionsLink SET Ang=9e999 WHERE %1";
}

void MorphologyDistCompFormTest::drawsDamagedWormsBesideSoundOnes()
{
    QFETCH(const QString, damage);
    for (const char *name : {"A", "B", "C", "D", "E"})
        storeWorm(library.get(), name, 10.0 * (name[0] - 'A'));
    // The worms have as many rows each, one behind the other.
    library->run(damage.arg("Id % 2 = 0 AND Id > (SELECT MAX(Id) FROM Morphology)"));
    OpenForm open(library.get());
    for (const char *name : {"B", "C", "A"}) {
        open.chooser().choose(name);
        QCOMPARE(open.worms().size(), 5);
        QList<double> distances;
        for (const QString &text : open.texts())
            distances += text.toDouble();
        QVERIFY2(std::is_sorted(distances.begin(), distances.end()),
                 qPrintable(open.texts().join(", ")));
        QVERIFY(!open.texts().contains("nan"));
    }
}

void MorphologyDistCompFormTest::keepsSoundWormsInOrderBesideADamagedOne_data()
{
    addDamageRows();
}

void MorphologyDistCompFormTest::keepsSoundWormsInOrderBesideADamagedOne()
{
    QFETCH(const QString, damage);
    storeWorm(library.get(), "A");
    library->run(damage.arg(storeWorm(library.get(), "B")));
    storeWorm(library.get(), "C", 20.0);
    storeWorm(library.get(), "D", 10.0);
    OpenForm open(library.get());

    QStringList sound = open.order();
    QCOMPARE(sound.removeAll("B"), 1);
    QCOMPARE(sound, QStringList({"A", "D", "C"}));
    QList<double> places; // in the order in which the worms were added
    for (const QGraphicsItem *item : open.comparison()->scene()->items(Qt::AscendingOrder)) {
        if (dynamic_cast<const MorphologyItem *>(item))
            places += item->x();
    }
    QCOMPARE(places.size(), 4);
    QVERIFY(std::all_of(places.begin(), places.end(), [](double x) { return std::isfinite(x); }));
    QVERIFY(std::is_sorted(places.begin(), places.end(), std::less_equal<>()));
    QFETCH(const QString, distance);
    QCOMPARE(open.texts(), QStringList({"0.00", "1.00", "2.00", distance}));
}

void MorphologyDistCompFormTest::tellsTheDistancesToThoseWhoCannotSee()
{
    storeWorms(library.get(), 2);
    OpenForm open(library.get());
    QCOMPARE(open.comparison()->accessibleName(), "Morphologies by distance from Worm 0000: 2");
    QCOMPARE(open.comparison()->accessibleDescription(), "Worm 0000 0.00, Worm 0001 1.00");
}

void MorphologyDistCompFormTest::readsEachTableOfMembersOnce()
{
    storeWorms(library.get(), 10);
    StatementLog log;
    DB db;
    QCOMPARE(db.connect(library->fileName(), false), int(DB::Opened));
    const MorphologyDistCompForm form(&db);
    auto *chooser = form.findChild<MorphologyChooser *>();
    log.take();
    chooser->chooseRow(5);
    const QStringList statements = log.take();
    for (const char *table :
         {"Region", "RegionParam", "RegionsLink", "Organ", "SpotOrgan", "LineOrgan"}) {
        // One more is for the worm that is chosen.
        const QRegularExpression read(QStringLiteral("\\bFROM %1\\b.*ORDER BY").arg(table));
        QVERIFY2(statements.filter(read).size() <= 4,
                 qPrintable(statements.filter(read).join("; ")));
    }
}

// --- Progress ---

void MorphologyDistCompFormTest::showsItsProgress()
{
    storeWorms(library.get(), 4);
    QWidget parent;
    const ProgressWatcher progress;
    const OpenForm open(library.get(), &parent);
    QCOMPARE(progress.label, "Comparing worms...");
    QCOMPARE(progress.button, "Abort");
    QCOMPARE(progress.range, qMakePair(0, 4));
    QCOMPARE(progress.values, QList<int>({0, 1, 2, 3}));
    QCOMPARE(progress.modality, Qt::WindowModal);
    QCOMPARE(progress.minimumDuration, 500);
    QCOMPARE(progress.parentWidget, &parent);
}

void MorphologyDistCompFormTest::opensNotWhenTheUserAborts_data()
{
    QTest::addColumn<int>("worm");
    QTest::newRow("at the first worm") << 0;
    QTest::newRow("on the way") << 2;
    QTest::newRow("at the last worm") << 3;
}

void MorphologyDistCompFormTest::opensNotWhenTheUserAborts()
{
    QFETCH(const int, worm);
    storeWorms(library.get(), 4);
    const ProgressWatcher progress(worm);
    OpenForm open(library.get());
    QVERIFY(open.form.isAborted());
    QCOMPARE(progress.values.last(), worm);
    QVERIFY(open.comparison()->scene()->items().isEmpty());
}

void MorphologyDistCompFormTest::readsNoSettingsWhenTheUserAborts()
{
    storeWorms(library.get(), 2);
    QSettings().setValue("MorphologyDistCompForm/size", QSize(500, 400));
    const ProgressWatcher progress(1);
    const MorphologyDistCompForm form(library->db());
    QVERIFY(form.isAborted());
    QCOMPARE(form.size(), QSize(800, 700));
}

void MorphologyDistCompFormTest::staysOpenAndEmptyWhenALaterComparisonIsAborted_data()
{
    opensNotWhenTheUserAborts_data();
}

void MorphologyDistCompFormTest::staysOpenAndEmptyWhenALaterComparisonIsAborted()
{
    QFETCH(const int, worm);
    storeWorms(library.get(), 4);
    OpenForm open(library.get());
    QVERIFY(!open.form.isAborted());
    const ProgressWatcher progress(worm);
    open.chooser().choose("Worm 0003");
    QVERIFY(open.form.isVisible());
    QCOMPARE(open.chooser().shownName(), "Worm 0003");
    QVERIFY(open.comparison()->scene()->items().isEmpty());
    QCOMPARE(open.comparison()->accessibleName(), "No comparison");
}

void MorphologyDistCompFormTest::comparesAgainAfterAnAbort()
{
    storeWorms(library.get(), 3);
    OpenForm open(library.get());
    {
        const ProgressWatcher progress(1);
        open.chooser().choose("Worm 0002");
    }
    open.chooser().choose("Worm 0001");
    QCOMPARE(open.order(), QStringList({"Worm 0001", "Worm 0002", "Worm 0000"}));
}

void MorphologyDistCompFormTest::abortsBetweenTwoComparisons()
{
    constexpr int count = 200;
    storeLargeWorms(library.get(), count);
    const ProgressWatcher progress;
    int atAbort = -1;
    ModalAnswerer answerer;
    answerer.expectProgress([&](QDialog *dialog) {
        atAbort = progress.values.last();
        dialog->findChild<QPushButton *>()->click();
    });
    const MorphologyDistCompForm form(library->db());
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(form.isAborted());
    QVERIFY(atAbort > 0);
    QVERIFY(atAbort < count - 1);
    QCOMPARE(progress.values.last(), atAbort);
}

// --- Editing ---

void MorphologyDistCompFormTest::comparesOnceWithANewOne()
{
    storeWorm(library.get(), "B");
    storeWorm(library.get(), "C", 10.0);
    OpenForm open(library.get());
    const ProgressWatcher progress;
    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "Between");
    open.chooser().press("New");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->parent, &open.form);
    QCOMPARE(open.chooser().names(), QStringList({"B", "Between", "C"}));
    QCOMPARE(open.chooser().chosenName(), "Between");
    QCOMPARE(open.chooser().shownName(), "Between");
    QCOMPARE(progress.values, QList<int>({0, 1, 2}));
    QCOMPARE(open.order(), QStringList({"Between", "C", "B"}));
    QCOMPARE(open.texts().first(), "0.00");
}

void MorphologyDistCompFormTest::comparesOnceWithACopy()
{
    storeWorms(library.get(), 2);
    OpenForm open(library.get());
    open.chooser().choose("Worm 0001");
    const ProgressWatcher progress;
    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "A copy");
    open.chooser().press("Copy");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->name, "Worm 0001 - copy");
    QCOMPARE(open.chooser().chosenName(), "A copy");
    QCOMPARE(open.chooser().shownName(), "A copy");
    QCOMPARE(progress.values, QList<int>({0, 1, 2}));
    QCOMPARE(open.order(), QStringList({"Worm 0001", "A copy", "Worm 0000"}));
}

void MorphologyDistCompFormTest::comparesOnceWithWhatWasEdited()
{
    storeWorms(library.get(), 2);
    OpenForm open(library.get());
    const ProgressWatcher progress;
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "Zero");
    open.chooser().press("Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(open.chooser().shownName(), "Zero");
    QCOMPARE(open.chooser().list()->currentIndex(), 0);
    QCOMPARE(progress.values, QList<int>({0, 1}));
    QCOMPARE(open.order(), QStringList({"Zero", "Worm 0001"}));
}

void MorphologyDistCompFormTest::comparesNothingWhenTheUserCancels_data()
{
    QTest::addColumn<QString>("button");
    for (const char *button : {"Edit", "Copy", "New"})
        QTest::newRow(button) << button;
}

void MorphologyDistCompFormTest::comparesNothingWhenTheUserCancels()
{
    QFETCH(const QString, button);
    storeWorms(library.get(), 2);
    OpenForm open(library.get());
    const auto before = open.worms();
    const ProgressWatcher progress;
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, QString());
    open.chooser().press(button);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(progress.values, QList<int>());
    QCOMPARE(open.worms(), before);
    QCOMPARE(library->count("Morphology"), 2);
}

void MorphologyDistCompFormTest::comparesWithTheFirstThatIsMade()
{
    OpenForm open(library.get());
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "First");
    open.chooser().press("New");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(open.order(), QStringList({"First"}));
    QCOMPARE(open.texts(), QStringList({"0.00"}));
}

// --- Saving ---

void MorphologyDistCompFormTest::savesTheComparisonUpright()
{
    storeWorms(library.get(), 2);
    OpenForm open(library.get());
    const QString fileName = library->filePath("comparison.png");
    ModalAnswerer answerer;
    const auto seen = expectFileDialog(&answerer, fileName);
    open.comparison()->actions().first()->trigger();
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->title, "Save image");

    const QImage image(fileName);
    const QRectF extent = open.comparison()->scene()->itemsBoundingRect();
    QVERIFY(qAbs(image.width() - 2.0 * extent.width()) < 20.0);
    // Red heads are up.
    const int middle = int(2.0 * open.worms().first()->boundingRect().width() / 2.0);
    const QColor up = image.pixelColor(middle, image.height() / 4);
    QVERIFY2(up.red() > 200 && up.blue() < 150, qPrintable(up.name()));

    answerer.expectDialog([](QDialog *dialog) { dialog->reject(); });
    open.form.saveCompImage();
    QCOMPARE(answerer.problems(), QStringList());
}

QTEST_MAIN(MorphologyDistCompFormTest)
#include "MorphologyDistCompFormTest.moc"
