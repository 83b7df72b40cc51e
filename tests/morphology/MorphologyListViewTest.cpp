#include "morphology/MorphologyListView.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/WormLines.h"
#include "morphology/MGLink.h"
#include "morphology/MGLinkLever.h"
#include "morphology/MGRegion.h"
#include "morphology/MGRegionLever.h"
#include "morphology/MGSpotOrgan.h"
#include "morphology/MorphoGraphView.h"
#include "morphology/MorphologyItem.h"
#include "support/Picture.h"
#include "widgets/TurnWheel.h"

#include <QApplication>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QScrollBar>
#include <QTest>

using namespace Planaria;

namespace {

std::unique_ptr<Morphology> oval(const QString &name, double halfWidth, double halfHeight)
{
    auto worm = std::make_unique<Morphology>();
    worm->setName(name);
    Region *region = worm->addRegion(ExperimentFactory::instance(nullptr)->regionType(1));
    region->setParams({halfWidth, halfHeight, halfWidth, halfHeight});
    return worm;
}

QByteArray redAboveBlue(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixelColor(x, y, y < size.height() / 2 ? Qt::red : Qt::blue);
    }
    return encoded(image, "png");
}

/// The items of one kind that @p view shows, in the order in which they were added.
template <typename Item> QList<Item *> shown(const MorphologyListView &view)
{
    QList<Item *> found;
    for (QGraphicsItem *any : view.scene()->items(Qt::AscendingOrder)) {
        auto *item = dynamic_cast<Item *>(any);
        if (item != nullptr && item->parentItem() == nullptr)
            found += item;
    }
    return found;
}

QStringList shownTexts(const MorphologyListView &view)
{
    QStringList texts;
    for (const QGraphicsTextItem *text : shown<QGraphicsTextItem>(view))
        texts += text->toPlainText();
    return texts;
}

/// The extent of a worm's graph where it is edited.
QRectF graphExtent(Morphology *worm)
{
    const MorphoGraphView view(worm, nullptr);
    return view.scene()->itemsBoundingRect();
}

/// Head and tail with an eye.
std::unique_ptr<Morphology> wormWithAnEye()
{
    const auto *words = ExperimentFactory::instance(nullptr);
    auto worm = std::make_unique<Morphology>();
    Region *head = worm->addRegion(words->regionTypes.at(0));
    head->addSpotOrgan(words->spotOrganTypes.at(0), {20.0, 20.0}, 0.0);
    head->addLink(worm->addRegion(words->regionTypes.at(2)), 150.0, 4.0, 0.5);
    return worm;
}

/// The captions of the nodes over the centre of the head, the topmost first.
QStringList stackOverHead(const QGraphicsScene &scene)
{
    QPointF head;
    for (const QGraphicsItem *item : scene.items()) {
        const auto *node = dynamic_cast<const MGRegion *>(item);
        if (node && node->text() == "Head")
            head = node->scenePos();
    }
    QStringList stack;
    for (const QGraphicsItem *item : scene.items(head)) {
        if (const auto *node = dynamic_cast<const MGRegion *>(item))
            stack += node->text();
    }
    return stack;
}

/// Whether both agree to a tenth; the extent of a pen is not exact.
bool near(const QRectF &actual, const QRectF &expected)
{
    return std::abs(actual.left() - expected.left()) < 0.1 &&
           std::abs(actual.right() - expected.right()) < 0.1 &&
           std::abs(actual.top() - expected.top()) < 0.1 &&
           std::abs(actual.bottom() - expected.bottom()) < 0.1;
}

} // namespace

class MorphologyListViewTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void numbersTheWormsAboveTheirRows();
    void showsNamesAsTheyAreWritten();
    void writesInBoldArial();
    void writesUpright();
    void writesInInkInEveryTheme();

    void setsEachWormBesideItsGraph();
    void setsAWormByTheMiddleOfItsDrawing();
    void setsEachGraphBelowItsNameLeftAligned();
    void makesTheRowAsHighAsTheHigherOfGraphAndWorm();
    void showsGraphsWithLeversButWithoutOrgans();
    void stacksGraphsAsInTheEditor();
    void letsNothingBeDraggedOrSelected();
    void changesNoWorm();
    void outlivesItsWorms();
    void setsPicturesInARowBesideTheWorm();
    void leavesNoRoomForPicturesThatAreNotThere();
    void showsPicturesUpright();
    void blendsNoPixelsOfPictures();
    void showsARedSquareForWhatIsNoPicture();
    void keepsPlaceForAWormWithoutRegions();

    void showsWormsAtTheirNaturalSize();
    void showsOneListAtATime();
    void scrollsToTheEndOfARefilledList();
    void keepsTheZoomOfARefilledList();
    void forgetsItsList();
    void hasNothingToScrollOnceItIsEmpty();
    void tellsWhatItShows();

private:
    void addPicture(int worm, const QByteArray &bytes) { worms[worm]->addImage(bytes); }
    [[nodiscard]] QList<Morphology *> list() const;

    /// Ovals of 41 by 61 and of 101 by 21, pens included.
    std::array<std::unique_ptr<Morphology>, 2> worms;
};

void MorphologyListViewTest::init()
{
    worms = {oval("High", 20.0, 30.0), oval("Wide", 50.0, 10.0)};
}

QList<Morphology *> MorphologyListViewTest::list() const
{
    return {worms[0].get(), worms[1].get()};
}

// --- Names ---

void MorphologyListViewTest::numbersTheWormsAboveTheirRows()
{
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    QCOMPARE(shownTexts(view), QStringList({"1. High", "2. Wide"}));
    const auto texts = shown<QGraphicsTextItem>(view);
    QCOMPARE(texts[0]->pos(), QPointF(0.0, 0.0));
    QCOMPARE(texts[1]->pos(), QPointF(0.0, -(50.0 + 121.0 + 60.0)));
}

void MorphologyListViewTest::showsNamesAsTheyAreWritten()
{
    worms[0]->setName("<b>%1 & %2</b>");
    worms[1]->setName({});
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    QCOMPARE(shownTexts(view), QStringList({"1. <b>%1 & %2</b>", "2. "}));
}

void MorphologyListViewTest::writesInBoldArial()
{
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    for (const QGraphicsTextItem *text : shown<QGraphicsTextItem>(view)) {
        QCOMPARE(text->font().family(), "Arial");
        QCOMPARE(text->font().pointSize(), 16);
        QCOMPARE(text->font().weight(), int(QFont::Bold));
    }
}

void MorphologyListViewTest::writesUpright()
{
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    for (const QGraphicsTextItem *text : shown<QGraphicsTextItem>(view)) {
        QCOMPARE(text->deviceTransform(view.viewportTransform()).m22(), 1.0);
        QCOMPARE(text->deviceTransform(view.viewportTransform()).m11(), 1.0);
        // It hangs down from its position, into the room above the worm.
        QCOMPARE(text->sceneBoundingRect().bottom(), text->y());
        QVERIFY(text->sceneBoundingRect().height() < 50.0);
    }
}

void MorphologyListViewTest::writesInInkInEveryTheme()
{
    const QPalette light = QApplication::palette();
    QApplication::setPalette(QPalette(Qt::black));
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    const QColor ink = shown<QGraphicsTextItem>(view).first()->defaultTextColor();
    QApplication::setPalette(light);
    QCOMPARE(ink, QColor(Qt::black));
}

// --- Rows ---

void MorphologyListViewTest::setsEachWormBesideItsGraph()
{
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    const auto items = shown<MorphologyItem>(view);
    QCOMPARE(items.size(), 2);

    // Beside graphs of 101 by 121 and of 161 by 81, level with their middles.
    QVERIFY(near(items[0]->sceneBoundingRect(), {141.0, -141.0, 41.0, 61.0}));
    QVERIFY(near(items[1]->sceneBoundingRect(), {201.0, -332.0, 101.0, 21.0}));
}

void MorphologyListViewTest::setsAWormByTheMiddleOfItsDrawing()
{
    const auto worm = oval("Two pieces", 10.0, 10.0);
    worm->addRegion(worm->regions().first()->type())->setParams({90.0, 30.0, 90.0, 30.0});
    MorphologyItem drawing(*worm, nullptr, false);
    const QRectF asDrawn = drawing.boundingRect();
    drawing.centerAtZero();
    const QRectF centred = drawing.boundingRect();
    QVERIFY(centred != asDrawn);

    MorphologyListView view(nullptr);
    view.setMorphologyList({worm.get()});
    const MorphologyItem *item = shown<MorphologyItem>(view).first();
    QCOMPARE(item->boundingRect(), centred);
    const QRectF graph = graphExtent(worm.get());
    QCOMPARE(item->pos(),
             QPointF(40.0 + graph.width() + 0.5 * centred.width(), -50.0 - 0.5 * graph.height()));
}

void MorphologyListViewTest::setsEachGraphBelowItsNameLeftAligned()
{
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    const auto nodes = shown<MGRegion>(view);
    QCOMPARE(nodes.size(), 2);
    const auto extent = [](const MGRegion *node) {
        return node->childrenBoundingRect().translated(node->scenePos());
    };
    QVERIFY(near(extent(nodes[0]), {0.0, -171.0, 101.0, 121.0}));
    QVERIFY(near(extent(nodes[1]), {0.0, -362.0, 161.0, 81.0}));
}

void MorphologyListViewTest::makesTheRowAsHighAsTheHigherOfGraphAndWorm()
{
    const auto high = oval("Worm higher than its graph", -60.0, -60.0); // drawn by the amount
    high->addImage(redAboveBlue({80, 40}));
    const QRectF graph = graphExtent(high.get());
    const double drawn = MorphologyItem(*high, nullptr, false).boundingRect().height();
    QCOMPARE(drawn, 121.0);
    QVERIFY(graph.height() < drawn - 20.0);
    MorphologyListView view(nullptr);
    view.setMorphologyList({high.get(), worms[0].get()});

    QCOMPARE(shown<QGraphicsTextItem>(view).at(1)->y(), -(50.0 + drawn + 60.0));
    // The picture as high as the worm; the worm level with the middle of its graph.
    const QRectF picture = shown<QGraphicsPixmapItem>(view).first()->sceneBoundingRect();
    QVERIFY(near(picture, {40.0 + graph.width() + drawn + 40.0, -50.0 - drawn, 242.0, drawn}));
    const QRectF worm = shown<MorphologyItem>(view).first()->sceneBoundingRect();
    QCOMPARE(worm.center().y(), -50.0 - 0.5 * graph.height());
}

void MorphologyListViewTest::showsGraphsWithLeversButWithoutOrgans()
{
    const auto worm = wormWithAnEye();
    MorphologyListView view(nullptr);
    view.setMorphologyList({worm.get()});
    int levers = 0;
    QList<bool> organs; // whether each node, or line to one, is seen
    QList<bool> links;
    for (const QGraphicsItem *item : view.scene()->items()) {
        const bool isLever = dynamic_cast<const MGRegionLever *>(item) != nullptr ||
                             dynamic_cast<const MGLinkLever *>(item) != nullptr;
        levers += isLever && item->isVisible() ? 1 : 0;
        if (dynamic_cast<const MGSpotOrgan *>(item))
            organs += item->isVisible();
        if (const auto *line = dynamic_cast<const MGLink *>(item))
            (line->isRegionsLink() ? links : organs) += item->isVisible();
    }
    QCOMPARE(levers, 3 + 3 + 1);
    QCOMPARE(links, QList<bool>{true});
    QCOMPARE(organs, QList<bool>({false, false}));
}

void MorphologyListViewTest::stacksGraphsAsInTheEditor()
{
    // Three nodes that overlap.
    Morphology worm;
    for (int type = 1; type <= 3; ++type)
        worm.addRegion(ExperimentFactory::instance(nullptr)->regionType(type));
    const QList<Region *> &regions = worm.regions();
    regions.at(0)->addLink(regions.at(1), 10.0, 0.0, 0.5);
    regions.at(0)->addLink(regions.at(2), 10.0, 1.0, 0.5);
    const MorphoGraphView editor(&worm, nullptr);
    MorphologyListView view(nullptr);
    view.setMorphologyList({&worm});

    const QStringList stack{"Tail", "Trunk", "Head"};
    QCOMPARE(stackOverHead(*editor.scene()), stack);
    QCOMPARE(stackOverHead(*view.scene()), stack);
}

void MorphologyListViewTest::letsNothingBeDraggedOrSelected()
{
    const auto worm = wormWithAnEye();
    const QStringList before = wormLines(*worm, Ids::Without);
    MorphologyListView view(nullptr);
    view.setMorphologyList({worm.get()});
    view.resize(900, 700);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    for (const QGraphicsItem *item : view.scene()->items()) {
        if (item->parentItem() && !item->isVisible())
            continue;
        const QPointF scenePos = item->scenePos();
        const QPoint from = view.mapFromScene(scenePos);
        QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(view.viewport(), from + QPoint(30, 20));
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::NoModifier, from + QPoint(30, 20));
        QCOMPARE(item->scenePos(), scenePos);
    }
    QVERIFY(view.scene()->selectedItems().isEmpty());
    QCOMPARE(wormLines(*worm, Ids::Without), before);
}

void MorphologyListViewTest::changesNoWorm()
{
    const auto worm = wormWithAnEye();
    const QStringList before = wormLines(*worm, Ids::Without);
    MorphologyListView view(nullptr);
    view.setMorphologyList({worms[0].get(), worm.get()});
    QCOMPARE(wormLines(*worm, Ids::Without), before);
}

void MorphologyListViewTest::outlivesItsWorms()
{
    auto worm = wormWithAnEye();
    {
        MorphologyListView view(nullptr);
        view.setMorphologyList({worm.get()});
        worm.reset();
        view.clear();
        QVERIFY(view.scene()->items().isEmpty());
    }
    worm = wormWithAnEye();
    auto view = std::make_unique<MorphologyListView>(nullptr);
    view->setMorphologyList({worm.get()});
    worm.reset();
    view->grab();
    view.reset();
}

void MorphologyListViewTest::setsPicturesInARowBesideTheWorm()
{
    addPicture(0, redAboveBlue({100, 50}));
    addPicture(0, redAboveBlue({90, 90}));
    addPicture(1, redAboveBlue({42, 84}));
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());

    // As high as the row without its fraction, and as wide as their proportions make them.
    const QList<QSize> sizes = {{242, 121}, {121, 121}, {41, 81}};
    const QList<QPointF> corners = {{222.0, -171.0}, {504.0, -171.0}, {342.0, -362.0}};
    const auto pictures = shown<QGraphicsPixmapItem>(view);
    QCOMPARE(pictures.size(), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(pictures[i]->pixmap().size(), sizes[i]);
        QVERIFY(near(pictures[i]->sceneBoundingRect(), {corners[i], sizes[i]}));
    }
}

void MorphologyListViewTest::leavesNoRoomForPicturesThatAreNotThere()
{
    const auto secondRow = [this] {
        MorphologyListView view(nullptr);
        view.setMorphologyList(list());
        return shown<QGraphicsTextItem>(view).at(1)->y();
    };
    const double withoutPictures = secondRow();
    QCOMPARE(withoutPictures, -(121.0 + 60.0 + 50.0));
    addPicture(0, redAboveBlue({10, 1000}));
    QCOMPARE(secondRow(), withoutPictures);
}

void MorphologyListViewTest::showsPicturesUpright()
{
    addPicture(0, redAboveBlue({50, 50}));
    MorphologyListView view(nullptr);
    view.setMorphologyList({worms[0].get()});
    view.resize(400, 300);
    view.show();
    const QRectF picture = shown<QGraphicsPixmapItem>(view).first()->sceneBoundingRect();
    const QImage screen = view.viewport()->grab().toImage();
    const QPoint upper = view.mapFromScene(picture.center().x(), picture.bottom() - 10.0);
    const QPoint lower = view.mapFromScene(picture.center().x(), picture.top() + 10.0);
    QVERIFY(upper.y() < lower.y());
    QCOMPARE(screen.pixelColor(upper), QColor(Qt::red));
    QCOMPARE(screen.pixelColor(lower), QColor(Qt::blue));
}

void MorphologyListViewTest::blendsNoPixelsOfPictures()
{
    addPicture(0, redAboveBlue({50, 200}));
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    const QImage image = shown<QGraphicsPixmapItem>(view).first()->pixmap().toImage();
    for (int y = 0; y < image.height(); ++y) {
        const QColor colour = image.pixelColor(0, y);
        QVERIFY(colour == QColor(Qt::red) || colour == QColor(Qt::blue));
    }
}

void MorphologyListViewTest::showsARedSquareForWhatIsNoPicture()
{
    addPicture(0, "no picture");
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    const auto pictures = shown<QGraphicsPixmapItem>(view);
    QCOMPARE(pictures.size(), 1);
    QCOMPARE(pictures.first()->pixmap().size(), QSize(121, 121));
    QCOMPARE(pictures.first()->pixmap().toImage().pixelColor(30, 30), QColor(Qt::red));
}

void MorphologyListViewTest::keepsPlaceForAWormWithoutRegions()
{
    Morphology empty;
    empty.setName("Empty");
    empty.addImage(redAboveBlue({50, 50}));
    MorphologyListView view(nullptr);
    view.setMorphologyList({&empty, worms[0].get()});
    QCOMPARE(shownTexts(view), QStringList({"1. Empty", "2. High"}));
    QCOMPARE(shown<QGraphicsTextItem>(view).at(1)->pos(), QPointF(0.0, -110.0));
    QVERIFY(
        near(shown<MorphologyItem>(view).at(1)->sceneBoundingRect(), {141.0, -251.0, 41.0, 61.0}));
}

// --- The list ---

void MorphologyListViewTest::showsWormsAtTheirNaturalSize()
{
    MorphologyListView view(nullptr);
    view.setMorphologyList(QList<Morphology *>(50, worms[0].get()));
    view.resize(200, 200);
    view.show();
    QCOMPARE(view.transform(), QTransform::fromScale(1.0, -1.0));
    QCOMPARE(view.sceneRect(), view.scene()->itemsBoundingRect());
}

void MorphologyListViewTest::showsOneListAtATime()
{
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    view.setMorphologyList({worms[1].get()});
    QCOMPARE(shownTexts(view), QStringList("1. Wide"));
    QCOMPARE(shown<MorphologyItem>(view).size(), 1);
    view.setMorphologyList({});
    QVERIFY(view.scene()->items().isEmpty());
}

void MorphologyListViewTest::scrollsToTheEndOfARefilledList()
{
    MorphologyListView view(nullptr);
    view.resize(200, 200);
    view.show();
    for (const int count : {2, 6, 2}) {
        view.setMorphologyList(QList<Morphology *>(count, worms[0].get()));
        QCOMPARE(view.sceneRect(), view.scene()->itemsBoundingRect());
        view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
        const QRectF last = shown<MorphologyItem>(view).last()->sceneBoundingRect();
        const QRect seen = view.mapFromScene(last).boundingRect();
        QVERIFY(view.viewport()->rect().adjusted(-1, -1, 1, 1).contains(seen)); // pixels are whole
    }
}

void MorphologyListViewTest::keepsTheZoomOfARefilledList()
{
    MorphologyListView view(nullptr);
    view.setMorphologyList({worms[0].get()});
    view.resize(300, 300);
    view.show();
    QTest::keyPress(&view, Qt::Key_Control);
    turnWheel(view.viewport(), wheelUp);
    turnWheel(view.viewport(), wheelUp);
    QTest::keyRelease(&view, Qt::Key_Control);
    const QTransform zoomed = view.transform();
    QVERIFY(zoomed.m11() > 1.3);
    const QRectF one = view.sceneRect();

    view.setMorphologyList(list());
    QCOMPARE(view.transform(), zoomed);
    QCOMPARE(view.sceneRect(), view.scene()->itemsBoundingRect());
    QVERIFY(view.sceneRect().height() > one.height() + 100.0);
    view.setMorphologyList({worms[0].get()});
    QCOMPARE(view.transform(), zoomed);
    QCOMPARE(view.sceneRect(), one);
}

void MorphologyListViewTest::forgetsItsList()
{
    addPicture(0, redAboveBlue({50, 50}));
    MorphologyListView view(nullptr);
    view.setMorphologyList(list());
    view.clear();
    QVERIFY(view.scene()->items().isEmpty());
}

void MorphologyListViewTest::hasNothingToScrollOnceItIsEmpty()
{
    MorphologyListView view(nullptr);
    view.resize(200, 200);
    view.show();
    for (int time = 0; time < 3; ++time) {
        view.setMorphologyList(list());
        QVERIFY(view.verticalScrollBar()->maximum() > view.verticalScrollBar()->minimum());
        view.clear();
        QCOMPARE(view.verticalScrollBar()->maximum(), view.verticalScrollBar()->minimum());
        QCOMPARE(view.horizontalScrollBar()->maximum(), view.horizontalScrollBar()->minimum());
    }
}

void MorphologyListViewTest::tellsWhatItShows()
{
    MorphologyListView view(nullptr);
    QCOMPARE(view.accessibleName(), "No morphologies");
    view.setMorphologyList(list());
    QCOMPARE(view.accessibleName(), "Drawings of morphologies: 2");
    view.clear();
    QCOMPARE(view.accessibleName(), "No morphologies");
}

QTEST_MAIN(MorphologyListViewTest)
#include "MorphologyListViewTest.moc"
