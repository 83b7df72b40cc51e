#include "distance/MorphologyDistSearchForm.h"

#include "distance/StoredWorms.h"
#include "morphology/MGRegion.h"
#include "morphology/MorphoGraphView.h"
#include "morphology/MorphologyListView.h"
#include "morphology/MorphologyView.h"
#include "support/ModalAnswerer.h"
#include "support/ProgressWatcher.h"
#include "support/StatementLog.h"

#include <QDialogButtonBox>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using namespace Planaria;

namespace {

/// The search as a user sees it.
struct OpenForm
{
    explicit OpenForm(DB *db, QWidget *parent = nullptr) : form(db, parent) { form.show(); }

    MorphoGraphView *graph() { return form.findChild<MorphoGraphView *>(); }
    MorphologyView *drawing() { return form.findChild<MorphologyView *>(); }
    MorphologyListView *results() { return form.findChild<MorphologyListView *>(); }
    QDialogButtonBox *buttons() { return form.findChild<QDialogButtonBox *>(); }
    QPushButton *searchButton()
    {
        for (QAbstractButton *button : buttons()->buttons()) {
            if (buttons()->buttonRole(button) == QDialogButtonBox::ActionRole)
                return qobject_cast<QPushButton *>(button);
        }
        return nullptr;
    }
    void search() { QTest::mouseClick(searchButton(), Qt::LeftButton); }

    QList<QScrollBar *> scrollBars()
    {
        return {results()->horizontalScrollBar(), results()->verticalScrollBar()};
    }

    QStringList resultTexts()
    {
        QStringList texts;
        for (QGraphicsItem *item : results()->scene()->items(Qt::AscendingOrder)) {
            if (const auto *text = dynamic_cast<QGraphicsTextItem *>(item))
                texts += text->toPlainText();
        }
        return texts;
    }

    MorphologyDistSearchForm form;
};

} // namespace

/// The graphical search.
class MorphologyDistSearchFormTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void putsTheWormBesideTheResults();
    void hasAButtonToSearchAndOneToClose();
    void leadsFromTheGraphToTheResultsByTab();
    void startsWithTheWildTypeAndNoResults();
    void redrawsTheWormWhenItsGraphChanges();

    void ordersTheResultsByDistance();
    void ordersEqualDistancesByTheNewest();
    void findsWhatWasDrawn();
    void searchesByTheKeyboard();
    void findsNothingInALibraryWithoutWorms();
    void showsTheResultsOfTheLastSearchAlone();
    void showsTheClosestWormsOfEachSearchFirst();
    void hasNothingToScrollWithoutResults();
    void findsSoundWormsInOrderBesideADamagedOne_data();
    void findsSoundWormsInOrderBesideADamagedOne();
    void tellsTheOrderToThoseWhoCannotSee();
    void storesNothing();
    void readsEachTableOfMembersOnce();

    void showsItsProgress();
    void leavesTheResultsEmptyWhenTheUserAborts_data();
    void leavesTheResultsEmptyWhenTheUserAborts();
    void searchesAgainAfterAnAbort();
    void abortsBetweenTwoComparisons();
    void takesNoOtherCommandWhileItSearches();

private:
    std::unique_ptr<TemporaryLibrary> library;
};

void MorphologyDistSearchFormTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
}

void MorphologyDistSearchFormTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
}

// --- The parts ---

void MorphologyDistSearchFormTest::putsTheWormBesideTheResults()
{
    OpenForm open(library->db());
    const auto labels = open.form.findChildren<QLabel *>();
    QCOMPARE(labels.size(), 2);
    QCOMPARE(labels[0]->text(), "Morphology to search:");
    QCOMPARE(labels[1]->text(), "Search results:");

    const auto place = [&open](const QWidget *widget) {
        return QRect(widget->mapTo(&open.form, QPoint()), widget->size());
    };
    const QRect graph = place(open.graph());
    const QRect drawing = place(open.drawing());
    const QRect results = place(open.results());
    QVERIFY(place(labels[0]).bottom() < graph.top());
    QVERIFY(place(labels[1]).bottom() < results.top());
    QVERIFY(graph.right() < drawing.left());
    QVERIFY(drawing.right() < results.left());
    QCOMPARE(graph.top(), drawing.top());
    QCOMPARE(graph.top(), results.top());
    QCOMPARE(open.graph()->parentWidget()->width(), open.results()->parentWidget()->width());
    QVERIFY(place(open.buttons()).top() > results.bottom());
}

void MorphologyDistSearchFormTest::hasAButtonToSearchAndOneToClose()
{
    OpenForm open(library->db());
    QCOMPARE(open.buttons()->standardButtons(), QDialogButtonBox::Close);
    QCOMPARE(open.buttons()->buttons().size(), 2);
    QVERIFY(open.searchButton());
    QCOMPARE(open.searchButton()->text(), "Search");
}

void MorphologyDistSearchFormTest::leadsFromTheGraphToTheResultsByTab()
{
    OpenForm open(library->db());
    open.graph()->setFocus();
    QPushButton *close = open.buttons()->button(QDialogButtonBox::Close);
    for (QWidget *next :
         QList<QWidget *>{open.drawing(), open.results(), open.searchButton(), close}) {
        QTest::keyClick(open.form.focusWidget(), Qt::Key_Tab);
        QCOMPARE(open.form.focusWidget(), next);
    }
}

void MorphologyDistSearchFormTest::startsWithTheWildTypeAndNoResults()
{
    storeWorms(library.get(), 2);
    const ProgressWatcher progress;
    OpenForm open(library->db());
    QCOMPARE(open.graph()->morphology()->name(), "Wild type");
    QCOMPARE(open.graph()->morphology()->id(), 0);
    QCOMPARE(open.drawing()->morphology(), open.graph()->morphology());
    QCOMPARE(open.resultTexts(), QStringList());
    QCOMPARE(progress.values, QList<int>());
}

void MorphologyDistSearchFormTest::redrawsTheWormWhenItsGraphChanges()
{
    OpenForm open(library->db());
    const QRectF before = open.drawing()->sceneRect();
    const auto *head = open.graph()->morphology()->regions().first();
    for (int step = 0; step < 2; ++step)
        open.graph()->regionNodes().value(head)->moveBy(0.0, 100.0);
    QVERIFY(open.drawing()->sceneRect().height() > before.height() + 50.0);
}

// --- Searching ---

void MorphologyDistSearchFormTest::ordersTheResultsByDistance()
{
    storeWorm(library.get(), "A", 300.0);
    storeWorm(library.get(), "B", -20.0);
    storeWorm(library.get(), "C");
    storeWorm(library.get(), "D", 100.0);
    OpenForm open(library->db());
    open.search();
    QCOMPARE(open.resultTexts(), QStringList({"1. C", "2. B", "3. D", "4. A"}));
}

void MorphologyDistSearchFormTest::ordersEqualDistancesByTheNewest()
{
    for (const char *name : {"B", "A", "C"})
        storeWorm(library.get(), name, 10.0);
    storeWorm(library.get(), "D");
    OpenForm open(library->db());
    open.search();
    QCOMPARE(open.resultTexts(), QStringList({"1. D", "2. C", "3. B", "4. A"}));
}

void MorphologyDistSearchFormTest::findsWhatWasDrawn()
{
    storeWorm(library.get(), "A");
    const auto headless = ExperimentFactory::instance(nullptr)->createWildMorphology();
    headless->setName("Headless");
    headless->removeRegion(headless->regions().first());
    QVERIFY(headless->submit(library->db()) > 0);

    OpenForm open(library->db());
    open.search();
    QCOMPARE(open.resultTexts(), QStringList({"1. A", "2. Headless"}));

    const auto *head = open.graph()->morphology()->regions().first();
    const MGRegion *node = open.graph()->regionNodes().value(head);
    QTest::mouseClick(open.graph()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      open.graph()->mapFromScene(node->scenePos()));
    open.graph()->deleteSelection();
    open.search();
    QCOMPARE(open.resultTexts(), QStringList({"1. Headless", "2. A"}));
}

void MorphologyDistSearchFormTest::searchesByTheKeyboard()
{
    storeWorm(library.get(), "A");
    OpenForm open(library->db());
    open.searchButton()->setFocus();
    QTest::keyClick(open.searchButton(), Qt::Key_Space);
    QCOMPARE(open.resultTexts(), QStringList({"1. A"}));
    QVERIFY(open.form.isVisible());
}

void MorphologyDistSearchFormTest::findsNothingInALibraryWithoutWorms()
{
    OpenForm open(library->db());
    open.search();
    QCOMPARE(open.resultTexts(), QStringList());
}

void MorphologyDistSearchFormTest::showsTheResultsOfTheLastSearchAlone()
{
    storeWorms(library.get(), 3);
    OpenForm open(library->db());
    open.search();
    open.search();
    QCOMPARE(open.resultTexts(), QStringList({"1. Worm 0000", "2. Worm 0001", "3. Worm 0002"}));
}

void MorphologyDistSearchFormTest::showsTheClosestWormsOfEachSearchFirst()
{
    storeWorms(library.get(), 5);
    OpenForm open(library->db());
    open.form.resize(500, 400);
    for (int search = 0; search < 3; ++search) {
        open.search();
        for (QScrollBar *bar : open.scrollBars()) {
            QVERIFY(bar->maximum() > bar->minimum());
            QCOMPARE(bar->value(), bar->minimum());
            bar->setValue(bar->maximum());
        }
    }
}

void MorphologyDistSearchFormTest::hasNothingToScrollWithoutResults()
{
    storeWorms(library.get(), 5);
    OpenForm open(library->db());
    for (int search = 0; search < 2; ++search) {
        open.search();
        const ProgressWatcher progress(1);
        open.search();
        for (const QScrollBar *bar : open.scrollBars())
            QCOMPARE(bar->maximum(), bar->minimum());
    }
}

void MorphologyDistSearchFormTest::findsSoundWormsInOrderBesideADamagedOne_data()
{
    addDamageRows();
}

void MorphologyDistSearchFormTest::findsSoundWormsInOrderBesideADamagedOne()
{
    QFETCH(const QString, damage);
    storeWorm(library.get(), "A", 20.0);
    library->run(damage.arg(storeWorm(library.get(), "B")));
    storeWorm(library.get(), "C", 10.0);
    OpenForm open(library->db());
    open.search();
    QStringList names = open.results()->accessibleDescription().split(", ");
    QCOMPARE(names.removeAll("B"), 1);
    QCOMPARE(names, QStringList({"C", "A"}));
}

void MorphologyDistSearchFormTest::tellsTheOrderToThoseWhoCannotSee()
{
    storeWorm(library.get(), "A", 10.0);
    storeWorm(library.get(), "B");
    OpenForm open(library->db());
    QCOMPARE(open.results()->accessibleName(), "No morphologies");
    open.search();
    QCOMPARE(open.results()->accessibleName(), "Drawings of morphologies: 2");
    QCOMPARE(open.results()->accessibleDescription(), "B, A");
}

void MorphologyDistSearchFormTest::storesNothing()
{
    storeWorms(library.get(), 2);
    {
        OpenForm open(library->db());
        open.search();
    }
    QCOMPARE(library->count("Morphology"), 2);
}

void MorphologyDistSearchFormTest::readsEachTableOfMembersOnce()
{
    storeWorms(library.get(), 10);
    StatementLog log;
    DB db;
    QCOMPARE(db.connect(library->fileName(), false), int(DB::Opened));
    OpenForm open(&db);
    log.take();
    open.search();
    const QStringList statements = log.take();
    QCOMPARE(open.resultTexts().size(), 10);
    for (const char *table : {"Region", "RegionParam", "RegionsLink", "Organ", "SpotOrgan",
                              "LineOrgan", "MorphologyImage"}) {
        const QRegularExpression read(QStringLiteral("\\bFROM %1\\b").arg(table));
        const QStringList reads = statements.filter(read);
        QVERIFY2(reads.size() == 1, qPrintable(table + QStringLiteral(": ") + reads.join("; ")));
    }
}

// --- Progress ---

void MorphologyDistSearchFormTest::showsItsProgress()
{
    storeWorms(library.get(), 4);
    QWidget parent;
    OpenForm open(library->db(), &parent);
    const ProgressWatcher progress;
    open.search();
    QCOMPARE(progress.label, "Comparing worms...");
    QCOMPARE(progress.button, "Abort");
    QCOMPARE(progress.range, qMakePair(0, 4));
    QCOMPARE(progress.values, QList<int>({0, 1, 2, 3}));
    QCOMPARE(progress.modality, Qt::WindowModal);
    QCOMPARE(progress.minimumDuration, 500);
    QCOMPARE(progress.parentWidget, &parent);
}

void MorphologyDistSearchFormTest::leavesTheResultsEmptyWhenTheUserAborts_data()
{
    QTest::addColumn<int>("worm");
    QTest::addColumn<bool>("searchedBefore");
    for (const bool before : {false, true}) {
        const char *when = before ? "after another search" : "in the first search";
        QTest::addRow("at the first worm, %s", when) << 0 << before;
        QTest::addRow("on the way, %s", when) << 2 << before;
        QTest::addRow("at the last worm, %s", when) << 3 << before;
    }
}

void MorphologyDistSearchFormTest::leavesTheResultsEmptyWhenTheUserAborts()
{
    QFETCH(const int, worm);
    QFETCH(const bool, searchedBefore);
    storeWorms(library.get(), 4);
    OpenForm open(library->db());
    if (searchedBefore)
        open.search();
    const ProgressWatcher progress(worm);
    open.search();
    QCOMPARE(progress.values.last(), worm);
    QVERIFY(open.results()->scene()->items().isEmpty());
    QCOMPARE(open.results()->accessibleName(), "No morphologies");
    QVERIFY(open.form.isVisible());
}

void MorphologyDistSearchFormTest::searchesAgainAfterAnAbort()
{
    storeWorms(library.get(), 3);
    OpenForm open(library->db());
    {
        const ProgressWatcher progress(1);
        open.search();
    }
    open.search();
    QCOMPARE(open.resultTexts(), QStringList({"1. Worm 0000", "2. Worm 0001", "3. Worm 0002"}));
}

void MorphologyDistSearchFormTest::abortsBetweenTwoComparisons()
{
    constexpr int count = 200;
    storeLargeWorms(library.get(), count);
    OpenForm open(library->db());
    const ProgressWatcher progress;
    int atAbort = -1;
    ModalAnswerer answerer;
    answerer.expectProgress([&](QDialog *dialog) {
        atAbort = progress.values.last();
        dialog->findChild<QPushButton *>()->click();
    });
    open.search();
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(atAbort > 0);
    QVERIFY(atAbort < count - 1);
    QCOMPARE(progress.values.last(), atAbort);
    QCOMPARE(open.resultTexts(), QStringList());
}

void MorphologyDistSearchFormTest::takesNoOtherCommandWhileItSearches()
{
    storeLargeWorms(library.get(), 200);
    QWidget parent;
    parent.show();
    OpenForm open(library->db(), &parent);
    QVERIFY(QTest::qWaitForWindowExposed(&open.form));
    const auto click = [&open] {
        QTest::mouseClick(open.form.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          open.searchButton()->mapTo(&open.form, QPoint(10, 10)));
    };
    const QSignalSpy clicked(open.searchButton(), &QPushButton::clicked);
    const ProgressWatcher progress;
    ModalAnswerer answerer;
    answerer.expectProgress([&click](QDialog *dialog) {
        click();
        dialog->findChild<QPushButton *>()->click();
    });
    click();
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(progress.values.count(0), 1);
}

QTEST_MAIN(MorphologyDistSearchFormTest)
#include "MorphologyDistSearchFormTest.moc"
