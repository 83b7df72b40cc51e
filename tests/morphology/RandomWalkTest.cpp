#include "model/Angles.h"
#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "model/WormLines.h"
#include "morphology/Clearance.h"
#include "morphology/MGLineOrgan.h"
#include "morphology/MGLineOrganEnd.h"
#include "morphology/MGLink.h"
#include "morphology/MGLinkLever.h"
#include "morphology/MGRegion.h"
#include "morphology/MGRegionLever.h"
#include "morphology/MGSpotOrgan.h"
#include "morphology/MGSpotOrganLever.h"
#include "morphology/MorphoGraphView.h"
#include "morphology/MorphologyView.h"
#include "support/TemporaryLibrary.h"

#include <QGraphicsScene>
#include <QMap>
#include <QMenu>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <cmath>
#include <utility>

using namespace Planaria;

namespace {

/// All items of one class, in an order that depends on the scene alone.
template <typename Item> QList<Item *> itemsOf(const MorphoGraphView &view)
{
    QList<Item *> found;
    for (QGraphicsItem *any : view.scene()->items(Qt::AscendingOrder)) {
        if (auto *item = dynamic_cast<Item *>(any))
            found += item;
    }
    return found;
}

bool near(const QPointF &a, const QPointF &b)
{
    return Angles::length(a - b) < 1e-6;
}

// --- What must hold after each command; each function tells what does not ---

QString regionProblem(const Region *region)
{
    const QList<RegionsLink *> &links = region->links();
    const qsizetype params = links.size() < 2 ? 4 - links.size() : links.size();
    if (region->params().size() != params)
        return QStringLiteral("%1 params, %2 links").arg(region->params().size()).arg(links.size());
    for (int i = 0; i < params; ++i) {
        if (region->params().at(i)->index() != i)
            return QStringLiteral("the indices of the params are not consecutive");
    }
    const auto turnsLess = [region](const RegionsLink *a, const RegionsLink *b) {
        return a->ang(region) < b->ang(region);
    };
    if (!std::is_sorted(links.cbegin(), links.cend(), turnsLess))
        return QStringLiteral("the links are out of order");
    return {};
}

QString organProblem(const MGOrgan *node)
{
    const QPointF pos = node->organ()->pos();
    const QPointF expected = Clearance::shownAt(pos, MGOrgan::minDist, {0.0, -MGOrgan::minDist});
    // The direction of an organ that is all but at the centre is rounded away.
    if (Angles::length(pos) > 0.001 && !near(node->pos(), expected))
        return QStringLiteral("an organ's node is not where the organ is");
    return {};
}

QString nodeProblem(const MorphoGraphView &view, const Region *region)
{
    const MGRegion *node = view.regionNodes().value(region);
    if (!node || node->region() != region || node->scene() != view.scene())
        return QStringLiteral("a region has no node in the scene");
    if (node->levers().size() != region->params().size())
        return QStringLiteral("levers and params differ in number");
    if (node->links().size() != region->links().size() + region->organs().size())
        return QStringLiteral("a node has lines too many or too few");
    if (node->text() != region->type()->name())
        return QStringLiteral("a caption names another type");
    return {};
}

QString linkProblem(const MorphoGraphView &view, RegionsLink *link)
{
    if (!link->from()->links().contains(link) || !link->to()->links().contains(link))
        return QStringLiteral("a region does not list its link");
    const QPointF between =
        view.regionNodes().value(link->to())->pos() - view.regionNodes().value(link->from())->pos();
    if (!near(between, link->totalDist() * Angles::direction(link->fromAng())))
        return QStringLiteral("a link differs from the way between its nodes");
    return {};
}

/// Whether the scene holds what the morphology asks for, and nothing else.
QString countProblem(const MorphoGraphView &view)
{
    const Morphology &worm = *view.morphology();
    qsizetype items = 2 * worm.links().size(); // line and lever
    for (const Region *region : worm.regions()) {
        items += 1 + 2 * region->params().size();   // node, levers and their lines
        for (const Organ *organ : region->organs()) // line and node; lever, or ends and their lines
            items += dynamic_cast<const SpotOrgan *>(organ) ? 3 : 6;
    }
    if (view.regionNodes().size() != worm.regions().size())
        return QStringLiteral("%1 nodes are known").arg(view.regionNodes().size());
    const qsizetype shown = view.scene()->items().size();
    if (shown != items)
        return QStringLiteral("%1 items instead of %2").arg(shown).arg(items);
    return {};
}

QString problemIn(const MorphoGraphView &view)
{
    QStringList problems{countProblem(view)};
    for (const Region *region : view.morphology()->regions())
        problems << regionProblem(region) << nodeProblem(view, region);
    for (RegionsLink *link : view.morphology()->links())
        problems << linkProblem(view, link);
    for (const MGOrgan *organ : itemsOf<MGOrgan>(view))
        problems << organProblem(organ);
    problems.removeAll(QString());
    return problems.join(QStringLiteral(", "));
}

// --- What a command does ---

/// The numbers of morphology and graph, by what they tell.
using Numbers = QMap<QString, QList<double>>;

void addOrganNumbers(const Organ *organ, Numbers *numbers)
{
    (*numbers)["organs"] += {organ->pos().x(), organ->pos().y()};
    if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ))
        (*numbers)["turns"] += spot->rot();
    if (const auto *line = dynamic_cast<const LineOrgan *>(organ))
        (*numbers)["ends"] +=
            {line->end1().x(), line->end1().y(), line->end2().x(), line->end2().y()};
}

Numbers numbersOf(const MorphoGraphView &view)
{
    Numbers numbers;
    for (const Region *region : view.morphology()->regions()) {
        numbers["regions"] += region->type()->id();
        for (const RegionParam *param : region->params())
            numbers["params"] += param->value();
        for (const Organ *organ : region->organs())
            addOrganNumbers(organ, &numbers);
    }
    for (const RegionsLink *link : view.morphology()->links()) {
        numbers["links"] += {link->totalDist(), link->fromAng()};
        numbers["ratios"] += std::isnan(link->fromRatio()) ? -1.0 : link->fromRatio();
    }
    for (const MGOrgan *organ : itemsOf<MGOrgan>(view))
        numbers["looks"] += organ->isVisible() ? organ->opacity() : 0.0;
    numbers["selection"] += static_cast<double>(view.scene()->selectedItems().size());
    return numbers;
}

/// "more", "fewer" or "other" numbers of each kind that is not as it was.
QStringList effects(const Numbers &before, const Numbers &after)
{
    QStringList found;
    Numbers kinds = before;
    kinds.insert(after);
    for (const QString &kind : kinds.keys()) {
        const QList<double> was = before.value(kind);
        const QList<double> is = after.value(kind);
        if (was.size() != is.size())
            found += (was.size() < is.size() ? "more " : "fewer ") + kind;
        else if (was != is)
            found += "other " + kind;
    }
    if (found.contains("fewer regions")) { // which takes these along
        found.removeAll("fewer links");
        found.removeAll("fewer organs");
    }
    return found;
}

/// What each deed is there for.
const QStringList expectedEffects{
    "add a region: more regions",
    "add a region: more links",
    "change a type: other regions",
    "add an organ: more organs",
    "connect regions: more links",
    "delete: fewer regions",
    "delete: fewer links",
    "delete: fewer organs",
    "drag a region: other links",
    "drag a node: other organs",
    "drag a region's lever: other params",
    "drag a link's lever: other ratios",
    "drag an organ's lever: other turns",
    "drag an organ's lever: other ends",
    "drag several items: other links",
    "drag several items: other organs",
    "drag a rubber band: other selection",
    "fade: other looks",
    "show organs: other looks",
};

/// One who edits at random, the same way for the same seed.
class Walker final
{
public:
    Walker(MorphoGraphView *edited, quint32 seed) : view(edited), generator(seed) {}

    /// @return what was done
    QString step();

private:
    using Deed = void (Walker::*)();

    void addRegion();
    void changeType() { chooseFor(anyNode(), "Change type"); }
    void addOrgan();
    void connectRegions();
    void deleteSome();
    void dragRegion() { drag(anyNode()); }
    void dragAnyNode() { drag(anyOf(itemsOf<MGNode>(*view))); }
    void dragRegionLever() { drag(anyOf(itemsOf<MGRegionLever>(*view))); }
    void dragLinkLever() { drag(anyOf(itemsOf<MGLinkLever>(*view))); }
    void dragOrganLever();
    void dragSeveral();
    void dragRubberBand();
    void fade();
    void showOrgans() { view->updateParamsVisibility(number(2) == 0); }

    int number(int end) { return generator.bounded(end); }
    template <typename Item> Item *anyOf(const QList<Item *> &list)
    {
        return list.isEmpty() ? nullptr : list.at(number(static_cast<int>(list.size())));
    }
    MGRegion *anyNode()
    {
        Region *region = anyOf(view->morphology()->regions());
        return region ? view->regionNodes().value(region) : nullptr;
    }
    /// Near the middle of the scene, so that the worm does not grow beyond all bounds.
    QPoint anyPoint() { return view->mapFromScene(number(1000) - 500, number(1000) - 500); }

    /// Triggers one action of the menu of this title.
    void choose(const QString &title);
    void chooseFor(MGRegion *node, const QString &title);
    void selectSome(int most);
    void drag(QGraphicsItem *item);
    void drag(const QPoint &from, const QPoint &to);

    MorphoGraphView *view;
    QRandomGenerator generator;
};

QString Walker::step()
{
    static const QList<std::pair<const char *, Deed>> deeds{
        {"add a region", &Walker::addRegion},
        {"add a region", &Walker::addRegion},
        {"change a type", &Walker::changeType},
        {"add an organ", &Walker::addOrgan},
        {"connect regions", &Walker::connectRegions},
        {"delete", &Walker::deleteSome},
        {"drag a region", &Walker::dragRegion},
        {"drag a region", &Walker::dragRegion},
        {"drag a node", &Walker::dragAnyNode},
        {"drag a region's lever", &Walker::dragRegionLever},
        {"drag a link's lever", &Walker::dragLinkLever},
        {"drag an organ's lever", &Walker::dragOrganLever},
        {"drag several items", &Walker::dragSeveral},
        {"drag a rubber band", &Walker::dragRubberBand},
        {"fade", &Walker::fade},
        {"show organs", &Walker::showOrgans},
    };
    const auto &[name, deed] = deeds.at(number(static_cast<int>(deeds.size())));
    (this->*deed)();
    return QString::fromLatin1(name);
}

void Walker::choose(const QString &title)
{
    for (const QMenu *menu : view->findChildren<QMenu *>()) {
        if (menu->title() == title)
            anyOf(menu->actions())->trigger();
    }
}

void Walker::chooseFor(MGRegion *node, const QString &title)
{
    if (!node)
        return;
    view->clearSelection();
    node->setSelected(true);
    choose(title);
}

void Walker::addRegion()
{
    constexpr int most = 6;
    if (view->morphology()->regions().isEmpty())
        choose("Create region");
    else if (view->morphology()->regions().size() < most)
        chooseFor(anyNode(), "Add region");
}

void Walker::addOrgan()
{
    constexpr int most = 2;
    MGRegion *node = anyNode();
    if (node && node->region()->organs().size() < most)
        chooseFor(node, "Add organ");
}

void Walker::connectRegions()
{
    view->clearSelection();
    for (int i = 0; i < 3; ++i) {
        if (MGRegion *node = anyNode())
            node->setSelected(true);
    }
    view->connectSelectedRegions();
}

void Walker::selectSome(int most)
{
    view->clearSelection();
    const QList<QGraphicsItem *> items = view->scene()->items(Qt::AscendingOrder);
    for (int i = number(most); i >= 0; --i) {
        if (QGraphicsItem *item = anyOf(items))
            item->setSelected(true);
    }
}

void Walker::deleteSome()
{
    selectSome(3); // most items are levers, which stay
    const QList<MGNode *> nodes = itemsOf<MGNode>(*view);
    const QList<MGLink *> lines = itemsOf<MGLink>(*view);
    if (QGraphicsItem *item =
            number(2) == 0 ? static_cast<QGraphicsItem *>(anyOf(nodes)) : anyOf(lines))
        item->setSelected(true);
    view->deleteSelection();
}

void Walker::dragOrganLever()
{
    QList<QGraphicsItem *> levers;
    for (MGSpotOrganLever *lever : itemsOf<MGSpotOrganLever>(*view))
        levers += lever;
    for (MGLineOrganEnd *lever : itemsOf<MGLineOrganEnd>(*view))
        levers += lever;
    QGraphicsItem *lever = anyOf(levers);
    if (!lever)
        return;
    view->clearSelection();
    lever->parentItem()->parentItem()->setSelected(true); // so that the organ shows
    drag(lever);
}

void Walker::dragSeveral()
{
    selectSome(5);
    QList<QGraphicsItem *> items = view->scene()->items(Qt::AscendingOrder);
    items.removeIf([](const QGraphicsItem *item) { return !item->isSelected(); });
    drag(anyOf(items));
}

void Walker::fade()
{
    for (int i = number(15); i >= 0; --i)
        view->updateOrgansVis();
}

void Walker::dragRubberBand()
{
    drag(anyPoint(), anyPoint());
}

void Walker::drag(QGraphicsItem *item)
{
    if (!item)
        return;
    view->fitView();
    // Now and then onto another region, which makes a link of no length.
    const MGRegion *target = number(20) == 0 ? anyNode() : nullptr;
    drag(view->mapFromScene(item->scenePos()),
         target ? view->mapFromScene(target->scenePos()) : anyPoint());
}

void Walker::drag(const QPoint &from, const QPoint &to)
{
    const Qt::KeyboardModifiers keys = number(8) == 0 ? Qt::ControlModifier : Qt::NoModifier;
    QTest::mousePress(view->viewport(), Qt::LeftButton, keys, from);
    QTest::mouseMove(view->viewport(), to);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, keys, to);
}

/// Runs what scenes put off for each item that is added; the list of these grows until then.
void letScenesForgetTheirNewItems(const QList<QGraphicsScene *> &scenes)
{
    for (QGraphicsScene *scene : scenes)
        QCoreApplication::sendPostedEvents(scene, QEvent::MetaCall);
}

int steps()
{
#ifdef __SANITIZE_ADDRESS__
    return 1000;
#else
    return qEnvironmentVariableIsSet("VERMIDEX_SHORT_TESTS") ? 1000 : 10000;
#endif
}

/// The worm in lines, where a region names its links in their own order: a drag may change the
/// order of links at equal angles, which the file does not keep.
QStringList linesOf(const Morphology &worm)
{
    QStringList lines = wormLines(worm, Ids::With);
    const QRegularExpression links("with links ([0-9 ]+)");
    for (QString &line : lines) {
        const QRegularExpressionMatch match = links.match(line);
        if (!match.hasMatch())
            continue;
        QStringList numbers = match.captured(1).split(' ');
        numbers.sort();
        line.replace(match.capturedStart(1), match.capturedLength(1), numbers.join(' '));
    }
    return lines;
}

} // namespace

class RandomWalkTest final : public QObject
{
    Q_OBJECT

private slots:
    void keepsMorphologyAndGraphInStep_data();
    void keepsMorphologyAndGraphInStep();
};

void RandomWalkTest::keepsMorphologyAndGraphInStep_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("end");
    QTest::newRow("long") << quint32(20) << steps();
    for (const quint32 seed : {21, 22})
        QTest::addRow("seed %u", seed) << seed << 1000;
}

void RandomWalkTest::keepsMorphologyAndGraphInStep()
{
    QFETCH(const quint32, seed);
    QFETCH(const int, end);
    TemporaryLibrary library;
    Morphology worm;
    worm.setName("Walk");
    MorphoGraphView view(&worm, nullptr);
    MorphologyView drawing(&worm, nullptr);
    connect(&view, &MorphoGraphView::signMorphologyChanged, &drawing,
            &MorphologyView::morphologyChanged);
    view.resize(800, 600);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    Walker walker(&view, seed);
    Numbers numbers = numbersOf(view);
    QMap<QString, int> done;
    for (int step = 1; step <= end; ++step) {
        const QString deed = walker.step();
        const QString problem = problemIn(view);
        QVERIFY2(problem.isEmpty(),
                 qPrintable(QStringLiteral("seed %1, step %2, %3: %4")
                                .arg(QString::number(seed), QString::number(step), deed, problem)));
        const Numbers before = std::exchange(numbers, numbersOf(view));
        for (const QString &effect : effects(before, numbers))
            ++done[deed + ": " + effect];
        if (step % 50 == 0) {
            view.repaint(); // and no other events: timers would make each run another
            letScenesForgetTheirNewItems({view.scene(), drawing.scene()});
        }
    }
    for (const QString &effect : expectedEffects) {
        const QString times = QStringLiteral("%1 %2 times").arg(effect).arg(done.value(effect));
        QVERIFY2(done.value(effect) >= end / 1000, qPrintable(times));
    }

    QVERIFY(worm.submit(library.db()) > 0);
    QCOMPARE(library.brokenReferences(), QStringList());
    const Morphology loaded(worm.id(), library.db(), true);
    QCOMPARE(linesOf(loaded), linesOf(worm));
    QCOMPARE(rowsIn(&library), rowsOf({&worm}));
}

QTEST_MAIN(RandomWalkTest)
#include "RandomWalkTest.moc"
