#include "morphology/MorphoGraphView.h"

#include "model/Angles.h"
#include "model/LineOrgan.h"
#include "model/Morphology.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"
#include "model/WormLines.h"
#include "morphology/MGLineOrgan.h"
#include "morphology/MGLineOrganEnd.h"
#include "morphology/MGLink.h"
#include "morphology/MGLinkLever.h"
#include "morphology/MGRegion.h"
#include "morphology/MGRegionLever.h"
#include "morphology/MGSpotOrgan.h"
#include "morphology/MGSpotOrganLever.h"
#include "support/TemporaryLibrary.h"
#include "widgets/FileDialogAnswer.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <numbers>

using namespace Planaria;

namespace {

constexpr double pi = std::numbers::pi;

const QStringList oneRegionMenu{"Add region", "Change type", "Add organ", "-", "Delete selection"};
const QStringList otherItemMenu{"-", "Delete selection"};

QString textOf(const QAction *action)
{
    return action->isSeparator() ? QStringLiteral("-") : action->text();
}

QStringList textsOf(const QMenu *menu)
{
    QStringList texts;
    for (const QAction *action : menu->actions())
        texts += textOf(action);
    return texts;
}

QImage pixels(const QIcon &icon)
{
    return icon.pixmap(16, 16).toImage();
}

QImage silkPixels(const QString &name)
{
    return pixels(QIcon(QStringLiteral(":/Images/famfamfam_silk_icons/%1.png").arg(name)));
}

QAction *actionOf(const QMenu *menu, const QString &text)
{
    for (QAction *action : menu->actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

bool near(const QPointF &a, const QPointF &b)
{
    return Angles::length(a - b) < 1e-9;
}

} // namespace

/// Works on a head with an eye and a nerve cord, 200 above a trunk, unless a test says otherwise.
class MorphoGraphViewTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { view.reset(); }

    void opensNoMenuWithoutAMorphology();
    void offersToCreateARegionInAnEmptyMorphologyOnly();
    void offersWhatTheSelectionAllows_data();
    void offersWhatTheSelectionAllows();
    void listsTypesWithTheirIcons_data();
    void listsTypesWithTheirIcons();
    void showsIconsBesideItsCommands();
    void keepsTheSelectionAtARightClick();
    void takesTheNextClickAfterAMenuWhereItIs();

    void createsTheFirstRegion_data();
    void createsTheFirstRegion();
    void addsARegionBelowTheSelectedOne();
    void changesTheTypeOfTheSelectedRegion();
    void addsASpotOrganToTheSelectedRegion_data();
    void addsASpotOrganToTheSelectedRegion();
    void addsANerveCordToTheSelectedRegion();
    void connectsThePairsThatAreNotLinkedYet();
    void measuresANewLinkFromItsNodes();

    void deletesALinkAndGivesTheParamsBack();
    void deletesASpotOrganOnce_data();
    void deletesASpotOrganOnce();
    void keepsWhatALeverSetsWhenTheSelectionIsDeleted_data();
    void keepsWhatALeverSetsWhenTheSelectionIsDeleted();
    void deletesARegionWithLinksAndOrgans();
    void forgetsADeletedRegionInTheFade();
    void setsPiecesThatADeletionLeftSideBySide();
    void tellsWhetherADeletionSplitsTheGraph_data();
    void tellsWhetherADeletionSplitsTheGraph();

    void showsTheOrgansOfTheSelectedRegionOnly();
    void fadesOrgansOutStepByStep();
    void fadesOrgansOutByItself();
    void showsOrgansAgainThatWereFading();
    void keepsOrgansWhileOneOfThemOrALeverIsSelected_data();
    void keepsOrgansWhileOneOfThemOrALeverIsSelected();
    void hidesTheOrgansOfTheFormerRegionAtOnce();
    void showsAllOrgansOnRequest();

    void buildsTheGraphWithoutAChangeOfTheModel();
    void tellsOfADraggedRegion();
    void selectsByARubberBand();
    void namesTheOneSelectedNode();
    void clearsTheSelection();
    void showsTheWormUprightBeforeAndAfterItIsFitted();
    void takesTheItemsForTheSceneAfterAMouseRelease();
    void fitsAfterEachReleaseWithAutomaticZoom();
    void fitsEachMorphologyWithAutomaticZoom();
    void savesItsImage();
    void showsAnotherMorphology();
    void outlivesAClearedMorphology();

private:
    void show(Morphology *shown);
    void addTrunk(double ang);
    MGRegion *node(int region) const;
    MGLink *link(int index) const;
    template <typename Item> Item *only() const;
    QGraphicsItem *item(const QString &name) const;
    QPoint placeOf(const QString &name) const;
    void click(const QPoint &place, Qt::KeyboardModifiers keys = Qt::NoModifier);
    void select(const QStringList &names);
    /// The menu that a right click opens; null for none.
    QMenu *menuAt(const QPoint &place);
    QMenu *menuAt(const QString &name) { return menuAt(placeOf(name)); }
    /// Opens the menu on an item and chooses an entry of it or, with @p entry, of a submenu.
    void choose(const QString &name, const QString &menu, const QString &entry = {});
    QList<bool> organsShown() const;

    TemporaryLibrary library; // whose vocabulary stays while there are worms
    std::unique_ptr<Morphology> worm;
    std::unique_ptr<MorphoGraphView> view;
    std::unique_ptr<QSignalSpy> changes;
};

void MorphoGraphViewTest::init()
{
    worm = std::make_unique<Morphology>();
    worm->setName("Worm");
    Region *head = worm->addRegion(headType());
    Region *trunk = worm->addRegion(trunkType());
    head->addLink(trunk, 200.0, 1.5 * pi, 0.5);
    head->addSpotOrgan(eyeType(), {40.0, 40.0}, 0.0);
    head->addLineOrgan(cordType(), {-40.0, 40.0}, {0.0, 20.0}, {0.0, -20.0});
    show(worm.get());
}

void MorphoGraphViewTest::show(Morphology *shown)
{
    view = std::make_unique<MorphoGraphView>(shown, nullptr);
    changes = std::make_unique<QSignalSpy>(view.get(), &MorphoGraphView::signMorphologyChanged);
    view->resize(1000, 900);
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
}

void MorphoGraphViewTest::addTrunk(double ang)
{
    worm->regions().at(1)->addLink(worm->addRegion(trunkType()), 200.0, ang, 0.5);
}

MGRegion *MorphoGraphViewTest::node(int region) const
{
    return view->regionNodes().value(worm->regions().at(region));
}

MGLink *MorphoGraphViewTest::link(int index) const
{
    for (QGraphicsItem *any : view->scene()->items()) {
        auto *line = dynamic_cast<MGLink *>(any);
        if (line && line->regionsLink() == worm->links().at(index))
            return line;
    }
    return nullptr;
}

template <typename Item> Item *MorphoGraphViewTest::only() const
{
    Item *found = nullptr;
    for (QGraphicsItem *any : view->scene()->items()) {
        if (auto *match = dynamic_cast<Item *>(any))
            found = match;
    }
    return found;
}

QGraphicsItem *MorphoGraphViewTest::item(const QString &name) const
{
    if (name == "eye")
        return only<MGSpotOrgan>();
    if (name == "eye lever")
        return only<MGSpotOrgan>()->lever();
    if (name == "cord")
        return only<MGLineOrgan>();
    if (name == "cord end")
        return only<MGLineOrgan>()->ends().first();
    if (name == "link")
        return link(0);
    if (name == "link lever")
        return link(0)->lever();
    if (name == "region lever")
        return node(0)->levers().at(1);
    return node(QStringList({"head", "trunk", "trunk 2", "trunk 3"}).indexOf(name));
}

QPoint MorphoGraphViewTest::placeOf(const QString &name) const
{
    const QGraphicsItem *found = item(name);
    if (const auto *line = dynamic_cast<const MGLink *>(found))
        return view->mapFromScene(line->line().pointAt(0.25));
    return view->mapFromScene(found->scenePos());
}

void MorphoGraphViewTest::click(const QPoint &place, Qt::KeyboardModifiers keys)
{
    QTest::mouseClick(view->viewport(), Qt::LeftButton, keys, place);
}

void MorphoGraphViewTest::select(const QStringList &names)
{
    for (const QString &name : names)
        click(placeOf(name), name == names.first() ? Qt::NoModifier : Qt::ControlModifier);
}

QMenu *MorphoGraphViewTest::menuAt(const QPoint &place)
{
    // By way of the window, which turns the press into a request for a menu.
    const QPoint inWindow = view->viewport()->mapTo(view->window(), place);
    QTest::mouseClick(view->windowHandle(), Qt::RightButton, Qt::NoModifier, inWindow);
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

void MorphoGraphViewTest::choose(const QString &name, const QString &menu, const QString &entry)
{
    QMenu *opened = menuAt(name);
    QVERIFY(opened);
    QAction *action = actionOf(opened, menu);
    QVERIFY2(action, qPrintable(textsOf(opened).join(QStringLiteral(", "))));
    if (!entry.isEmpty())
        action = actionOf(action->menu(), entry);
    QVERIFY(action);
    action->trigger();
    opened->close();
}

QList<bool> MorphoGraphViewTest::organsShown() const
{
    QList<bool> shown;
    for (int i = 0; i < worm->regions().size(); ++i) {
        for (const MGLink *line : node(i)->links()) {
            if (!line->isRegionsLink()) {
                shown += line->isVisible();
                shown += line->toNode()->isVisible();
            }
        }
    }
    return shown;
}

// --- Menus ---

void MorphoGraphViewTest::opensNoMenuWithoutAMorphology()
{
    show(nullptr);
    QVERIFY(!menuAt(QPoint(50, 50)));
    QVERIFY(view->scene()->items().isEmpty());
}

void MorphoGraphViewTest::offersToCreateARegionInAnEmptyMorphologyOnly()
{
    Morphology empty;
    show(&empty);
    QMenu *menu = menuAt(QPoint(50, 60));
    QVERIFY(menu);
    QCOMPARE(textsOf(menu), QStringList({"Create region", "-", "Save image..."}));
    QCOMPARE(menu->pos(), view->mapToGlobal(QPoint(50, 60)));
    menu->close();

    empty.addRegion(headType());
    view->setMorphology(&empty);
    menu = menuAt(QPoint(5, 5));
    QVERIFY(menu);
    QCOMPARE(textsOf(menu), QStringList("Save image..."));
    menu->close();
    view.reset();
}

void MorphoGraphViewTest::offersWhatTheSelectionAllows_data()
{
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<QStringList>("entries");
    const QStringList regionsMenu{"Connect regions", "-", "Delete selection"};
    QTest::newRow("a region") << QStringList("head") << oneRegionMenu;
    for (const char *name :
         {"link", "link lever", "region lever", "eye", "eye lever", "cord", "cord end"})
        QTest::newRow(name) << QStringList(name) << otherItemMenu;
    QTest::newRow("two regions") << QStringList({"head", "trunk"}) << regionsMenu;
    QTest::newRow("region and link") << QStringList({"head", "link"}) << otherItemMenu;
    QTest::newRow("regions and organ") << QStringList({"head", "trunk", "eye"}) << otherItemMenu;
    QTest::newRow("two organs") << QStringList({"cord", "eye"}) << otherItemMenu;
}

void MorphoGraphViewTest::offersWhatTheSelectionAllows()
{
    QFETCH(const QStringList, selected);
    view->updateParamsVisibility(true);
    select(selected);
    QCOMPARE(view->scene()->selectedItems().size(), selected.size());
    QMenu *menu = menuAt(selected.last());
    QVERIFY(menu);
    QTEST(textsOf(menu), "entries");
    menu->close();
}

void MorphoGraphViewTest::listsTypesWithTheirIcons_data()
{
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QStringList>("icons");
    QTest::addColumn<QList<int>>("positions");
    const QStringList regions{"Head", "Trunk", "Tail"};
    const QStringList regionIcons{"bullet_red", "bullet_black", "bullet_blue"};
    const QList<int> regionPositions{0, 1, 2};
    QTest::newRow("Create region") << "add" << regions << regionIcons << regionPositions;
    QTest::newRow("Add region") << "pill_add" << regions << regionIcons << regionPositions;
    QTest::newRow("Change type") << "pill_go" << regions << regionIcons << regionPositions;
    QStringList organs;
    for (const SpotOrganType *type : ExperimentFactory::instance(nullptr)->spotOrganTypes)
        organs += type->name();
    QTest::newRow("Add organ") << "heart_add"
                               << QStringList({organs[0], organs[1], organs[2], "VNC"})
                               << QStringList({"bullet_white", "bullet_green", "bullet_black",
                                               "bullet_green"})
                               << QList<int>({0, 1, 2, 0});
}

void MorphoGraphViewTest::listsTypesWithTheirIcons()
{
    QFETCH(const QString, icon);
    QFETCH(const QStringList, icons);
    Morphology empty;
    const QString title = QString::fromLatin1(QTest::currentDataTag());
    if (title == "Create region")
        show(&empty);
    else
        select({"head"});
    QMenu *menu = title == "Create region" ? menuAt(QPoint(5, 5)) : menuAt("head");
    QVERIFY(menu);
    const QAction *submenu = actionOf(menu, title);
    QVERIFY(submenu);
    QCOMPARE(pixels(submenu->icon()), silkPixels(icon));
    QTEST(textsOf(submenu->menu()), "texts");
    QList<int> positions;
    for (int i = 0; i < icons.size(); ++i) {
        const QAction *action = submenu->menu()->actions().at(i);
        QVERIFY(!pixels(action->icon()).isNull());
        QCOMPARE(pixels(action->icon()), silkPixels(icons.at(i)));
        positions += action->data().toInt();
    }
    QTEST(positions, "positions");
    menu->close();
    view.reset();
}

void MorphoGraphViewTest::showsIconsBesideItsCommands()
{
    select({"head", "trunk"});
    QMenu *menu = menuAt("head");
    QVERIFY(menu);
    QCOMPARE(pixels(actionOf(menu, "Connect regions")->icon()), silkPixels("connect"));
    QCOMPARE(pixels(actionOf(menu, "Delete selection")->icon()), silkPixels("delete"));
    menu->close();
    menu = menuAt(QPoint(5, 5));
    QVERIFY(menu);
    QCOMPARE(pixels(actionOf(menu, "Save image...")->icon()), silkPixels("picture_save"));
    menu->close();
}

void MorphoGraphViewTest::keepsTheSelectionAtARightClick()
{
    select({"head", "trunk"});
    QMenu *menu = menuAt("link");
    QVERIFY(menu);
    QCOMPARE(view->scene()->selectedItems().size(), 2);
    menu->close();
}

void MorphoGraphViewTest::takesTheNextClickAfterAMenuWhereItIs()
{
    select({"head"});
    menuAt("head")->close();
    click(placeOf("trunk"));
    QCOMPARE(view->scene()->selectedItems(), QList<QGraphicsItem *>{node(1)});

    menuAt(QPoint(5, 5))->close();
    const QPoint from = placeOf("trunk");
    QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, from);
    QTest::mouseMove(view->viewport(), from - QPoint(0, 100));
    QVERIFY(view->rubberBandRect().isNull());
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, from - QPoint(0, 100));
    QCOMPARE(worm->links().first()->totalDist(), 100.0);
}

// --- Adding ---

void MorphoGraphViewTest::createsTheFirstRegion_data()
{
    QTest::addColumn<int>("id");
    QTest::newRow("Head") << 1;
    QTest::newRow("Trunk") << 2;
    QTest::newRow("Tail") << 3;
}

void MorphoGraphViewTest::createsTheFirstRegion()
{
    QFETCH(const int, id);
    worm = std::make_unique<Morphology>();
    show(worm.get());
    QMenu *menu = menuAt(QPoint(5, 5));
    QVERIFY(menu);
    actionOf(actionOf(menu, "Create region")->menu(), QTest::currentDataTag())->trigger();
    menu->close();
    QCOMPARE(worm->regions().size(), 1);
    QCOMPARE(worm->regions().first()->type()->id(), id);
    QCOMPARE(node(0)->text(), QTest::currentDataTag());
    QCOMPARE(node(0)->pos(), QPointF(0.0, 0.0));
    QCOMPARE(changes->size(), 1);
}

void MorphoGraphViewTest::addsARegionBelowTheSelectedOne()
{
    select({"trunk"});
    const QPointF trunk = node(1)->pos();
    QList<bool> hasItsLine; // at each change that is told
    connect(view.get(), &MorphoGraphView::signMorphologyChanged, view.get(),
            [this, &hasItsLine] { hasItsLine += link(1) != nullptr; });
    choose("trunk", "Add region", "Tail");
    QCOMPARE(hasItsLine, QList<bool>({false, true})); // its place is told before its line
    QCOMPARE(worm->regions().size(), 3);
    QCOMPARE(worm->regions().last()->type(), tailType());
    const RegionsLink *added = worm->links().last();
    QCOMPARE(added->from(), worm->regions().at(1));
    QCOMPARE(added->to(), worm->regions().at(2));
    QCOMPARE(added->totalDist(), 200.0);
    QCOMPARE(added->fromAng(), 1.5 * pi);
    QCOMPARE(added->fromRatio(), 0.5);
    QVERIFY(near(node(2)->pos(), trunk + QPointF(0.0, -200.0)));
    QVERIFY(view->mapFromScene(node(2)->pos()).y() > view->mapFromScene(trunk).y());
    QCOMPARE(node(2)->text(), "Tail");
    QCOMPARE(link(1)->fromNode(), node(1));
    QCOMPARE(link(1)->toNode(), node(2));
    QCOMPARE(node(1)->levers().size(), 2);
}

void MorphoGraphViewTest::changesTheTypeOfTheSelectedRegion()
{
    select({"head"});
    choose("head", "Change type", "Tail");
    QCOMPARE(worm->regions().first()->type(), tailType());
    QCOMPARE(node(0)->text(), "Tail");
    QCOMPARE(node(0)->getTextColor(), QColor(Qt::darkBlue));
    QCOMPARE(changes->size(), 1);
    choose("head", "Change type", "Tail");
    QCOMPARE(worm->regions().first()->type(), tailType());
    QCOMPARE(changes->size(), 2);
}

void MorphoGraphViewTest::addsASpotOrganToTheSelectedRegion_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<double>("z");
    QTest::newRow("Eye") << 0 << 4.0;
    QTest::newRow("Brain") << 1 << 3.0;
    QTest::newRow("Phar.") << 2 << 2.0;
}

void MorphoGraphViewTest::addsASpotOrganToTheSelectedRegion()
{
    QFETCH(const int, position);
    select({"trunk"});
    choose("trunk", "Add organ", QTest::currentDataTag());
    QCOMPARE(changes->size(), 1);
    QCOMPARE(worm->regions().at(1)->organs().size(), 1);
    const auto *organ = dynamic_cast<SpotOrgan *>(worm->regions().at(1)->organs().first());
    QVERIFY(organ);
    QCOMPARE(organ->type(), ExperimentFactory::instance(nullptr)->spotOrganTypes.at(position));
    QCOMPARE(organ->pos(), QPointF(20.0, 0.0));
    QCOMPARE(organ->rot(), 0.0);
    const MGNode *organNode = node(1)->links().last()->toNode();
    QCOMPARE(organNode->parentItem(), node(1));
    QCOMPARE(organNode->text(), QTest::currentDataTag());
    QVERIFY(organNode->isVisible());
    QVERIFY(node(1)->links().last()->isVisible());
    QTEST(organNode->zValue(), "z");
}

void MorphoGraphViewTest::addsANerveCordToTheSelectedRegion()
{
    select({"trunk"});
    choose("trunk", "Add organ", "VNC");
    QCOMPARE(changes->size(), 1);
    const auto *organ = dynamic_cast<LineOrgan *>(worm->regions().at(1)->organs().value(0));
    QVERIFY(organ);
    QCOMPARE(organ->pos(), QPointF(20.0, 0.0));
    QVERIFY(near(organ->end1(), {0.0, 20.0}));
    QVERIFY(near(organ->end2(), {0.0, -20.0}));
    const MGNode *organNode = node(1)->links().last()->toNode();
    QVERIFY(organNode->isVisible());
    QCOMPARE(organNode->zValue(), 5.0);
}

void MorphoGraphViewTest::connectsThePairsThatAreNotLinkedYet()
{
    addTrunk(0.0);
    show(worm.get());
    select({"head", "trunk", "trunk 2"});
    choose("trunk", "Connect regions");
    QCOMPARE(changes->size(), 1);
    QCOMPARE(worm->links().size(), 3);
    QVERIFY(worm->regions().at(0)->isLinked(worm->regions().at(2)));
    QVERIFY(link(2));
    choose("trunk", "Connect regions");
    QCOMPARE(worm->links().size(), 3);

    for (RegionsLink *old : QList(worm->links()))
        old->removeFromMorphology();
    show(worm.get());
    select({"head", "trunk", "trunk 2"});
    choose("trunk", "Connect regions");
    QCOMPARE(worm->links().size(), 3);
}

void MorphoGraphViewTest::measuresANewLinkFromItsNodes()
{
    addTrunk(0.0);
    show(worm.get());
    select({"head", "trunk 2"});
    choose("head", "Connect regions");
    const RegionsLink *added = worm->links().last();
    QCOMPARE(added->from(), worm->regions().at(0));
    QCOMPARE(added->to(), worm->regions().at(2));
    QCOMPARE(added->totalDist(), 200.0 * std::numbers::sqrt2);
    QCOMPARE(added->fromAng(), 1.75 * pi);
    QCOMPARE(added->fromRatio(), 0.5);
}

// --- Deleting ---

void MorphoGraphViewTest::deletesALinkAndGivesTheParamsBack()
{
    select({"link"});
    choose("link", "Delete selection");
    QCOMPARE(changes->size(), 1);
    QVERIFY(worm->links().isEmpty());
    QVERIFY(!only<MGLinkLever>());
    for (int i : {0, 1}) {
        QCOMPARE(worm->regions().at(i)->params().size(), 4);
        QCOMPARE(node(i)->levers().size(), 4);
        QVERIFY(near(node(i)->levers().at(3)->pos(), {0.0, -85.0}));
    }
}

void MorphoGraphViewTest::deletesASpotOrganOnce_data()
{
    QTest::addColumn<QStringList>("selected");
    QTest::newRow("by itself") << QStringList("eye");
    QTest::newRow("by its lever") << QStringList("eye lever");
    QTest::newRow("by both") << QStringList({"eye", "eye lever"});
    QTest::newRow("with all others") << QStringList({"eye", "eye lever", "cord end"});
}

void MorphoGraphViewTest::deletesASpotOrganOnce()
{
    QFETCH(const QStringList, selected);
    view->updateParamsVisibility(true);
    select(selected);
    choose(selected.first(), "Delete selection");
    QCOMPARE(changes->size(), 1);
    QVERIFY(!only<MGSpotOrgan>());
    QCOMPARE(worm->regions().first()->organs().size(), 1);
    QCOMPARE(only<MGLineOrgan>()->organ(), worm->regions().first()->organs().first());
    QCOMPARE(node(0)->links().size(), 2);
}

void MorphoGraphViewTest::keepsWhatALeverSetsWhenTheSelectionIsDeleted_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"region lever", "link lever", "cord end"})
        QTest::newRow(name) << name;
}

void MorphoGraphViewTest::keepsWhatALeverSetsWhenTheSelectionIsDeleted()
{
    QFETCH(const QString, name);
    view->updateParamsVisibility(true);
    const QStringList before = wormLines(*worm, Ids::Without);
    const qsizetype items = view->scene()->items().size();
    select({name});
    choose(name, "Delete selection");
    QCOMPARE(wormLines(*worm, Ids::Without), before);
    QCOMPARE(view->scene()->items().size(), items);
}

void MorphoGraphViewTest::deletesARegionWithLinksAndOrgans()
{
    view->updateParamsVisibility(true);
    select({"head", "eye", "link"});
    choose("head", "Delete selection");
    QCOMPARE(changes->size(), 1);
    QCOMPARE(worm->regions().size(), 1);
    QVERIFY(worm->links().isEmpty());
    QCOMPARE(view->regionNodes().size(), 1);
    QVERIFY(!only<MGLink>());
    QVERIFY(!only<MGOrgan>());
    QCOMPARE(view->scene()->items().size(), 1 + 2 * 4); // the trunk, its levers and their lines

    QVERIFY(worm->submit(library.db()) > 0);
    QCOMPARE(library.brokenReferences(), QStringList());
}

void MorphoGraphViewTest::forgetsADeletedRegionInTheFade()
{
    worm->regions().at(1)->addSpotOrgan(brainType(), {40.0, 40.0}, 0.0);
    show(worm.get());
    select({"head"});
    const MGNode *eye = node(0)->links().first()->toNode();
    const QPoint eyePlace = view->mapFromScene(eye->scenePos());
    click(eyePlace, Qt::ControlModifier);
    click(eyePlace, Qt::ControlModifier); // the eye goes, and takes the others along
    QVERIFY(QTest::qWaitFor([eye] { return eye->opacity() < 0.95; }));
    QCOMPARE(view->selectedNode(), node(0));
    choose("head", "Delete selection");
    QCOMPARE(worm->regions().size(), 1);
    QTest::qWait(50);

    click(view->mapFromScene(node(0)->scenePos()));
    QCOMPARE(organsShown(), QList<bool>(2, true));
    QTest::qWait(50);
    QCOMPARE(organsShown(), QList<bool>(2, true));
    QCOMPARE(only<MGSpotOrgan>()->opacity(), 1.0);
}

void MorphoGraphViewTest::setsPiecesThatADeletionLeftSideBySide()
{
    addTrunk(1.5 * pi);
    show(worm.get());
    select({"trunk"});
    choose("trunk", "Delete selection");
    QCOMPARE(worm->regions().size(), 2);
    view->setMorphology(worm.get());
    const auto extent = [this](int i) {
        return node(i)->childrenBoundingRect().translated(node(i)->pos());
    };
    QCOMPARE(extent(1).left() - extent(0).right(), 25.0);
    QVERIFY(std::abs(extent(0).center().y()) < 1e-9);
    QVERIFY(std::abs(extent(1).center().y()) < 1e-9);
}

void MorphoGraphViewTest::tellsWhetherADeletionSplitsTheGraph_data()
{
    QTest::addColumn<QList<int>>("links");
    QTest::addColumn<QList<int>>("regions");
    QTest::addColumn<bool>("splits");
    // Head - trunk - trunk 2 - trunk 3, and trunk 3 back to trunk.
    using Places = QList<int>;
    QTest::newRow("nothing") << Places() << Places() << false;
    QTest::newRow("a bridge") << Places{0} << Places() << true;
    QTest::newRow("a link of the ring") << Places{1} << Places() << false;
    QTest::newRow("two links of the ring") << Places{1, 2} << Places() << true;
    QTest::newRow("an end") << Places() << Places{0} << false;
    QTest::newRow("an end with its link") << Places{0} << Places{0} << false;
    QTest::newRow("the joint") << Places() << Places{1} << true;
    QTest::newRow("a region of the ring") << Places() << Places{2} << false;
    QTest::newRow("all regions") << Places{0, 1, 2, 3} << Places{0, 1, 2, 3} << false;
    QTest::newRow("all but one") << Places() << Places{0, 1, 2} << false;
}

void MorphoGraphViewTest::tellsWhetherADeletionSplitsTheGraph()
{
    QFETCH(const QList<int>, links);
    QFETCH(const QList<int>, regions);
    addTrunk(1.5 * pi);
    worm->regions().at(2)->addLink(worm->addRegion(trunkType()), 200.0, 0.0, 0.5);
    worm->regions().at(3)->addLink(worm->regions().at(1), 283.0, 0.75 * pi, 0.5);
    show(worm.get());
    QList<MGLink *> lines;
    for (int index : links)
        lines += link(index);
    QList<MGRegion *> nodes;
    for (int index : regions)
        nodes += node(index);
    QTEST(view->deletionMakesGraphDisc(lines, nodes), "splits");
    QCOMPARE(worm->regions().size(), 4);
}

// --- Organs that come and go ---

void MorphoGraphViewTest::showsTheOrgansOfTheSelectedRegionOnly()
{
    QCOMPARE(organsShown(), QList<bool>(4, false));
    select({"trunk"});
    QCOMPARE(organsShown(), QList<bool>(4, false));
    select({"head"});
    QCOMPARE(organsShown(), QList<bool>(4, true));
    QCOMPARE(only<MGSpotOrgan>()->opacity(), 1.0);
}

void MorphoGraphViewTest::fadesOrgansOutStepByStep()
{
    select({"head"});
    const MGNode *eye = only<MGSpotOrgan>();
    view->clearSelection();
    QCOMPARE(eye->opacity(), 1.0);
    for (int step = 9; step > 0; --step) {
        view->updateOrgansVis();
        QVERIFY(std::abs(eye->opacity() - 0.1 * step) < 1e-9);
        QCOMPARE(organsShown(), QList<bool>(4, true));
    }
    view->updateOrgansVis();
    QVERIFY(eye->opacity() < 1e-9);
    view->updateOrgansVis();
    QCOMPARE(organsShown(), QList<bool>(4, false));
    QTest::qWait(50);
    QCOMPARE(organsShown(), QList<bool>(4, false));
    QCOMPARE(changes->size(), 0);
}

void MorphoGraphViewTest::fadesOrgansOutByItself()
{
    select({"head"});
    click(QPoint(5, 5));
    QCOMPARE(organsShown(), QList<bool>(4, true));
    QTRY_COMPARE(organsShown(), QList<bool>(4, false));
}

void MorphoGraphViewTest::showsOrgansAgainThatWereFading()
{
    select({"head"});
    click(QPoint(5, 5));
    QTRY_VERIFY(only<MGSpotOrgan>()->opacity() < 0.85);
    select({"head"});
    QTest::qWait(50);
    QCOMPARE(only<MGSpotOrgan>()->opacity(), 1.0);
    QCOMPARE(organsShown(), QList<bool>(4, true));
}

void MorphoGraphViewTest::keepsOrgansWhileOneOfThemOrALeverIsSelected_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"eye", "eye lever", "cord", "cord end"})
        QTest::newRow(name) << name;
}

void MorphoGraphViewTest::keepsOrgansWhileOneOfThemOrALeverIsSelected()
{
    QFETCH(const QString, name);
    select({"head"});
    select({name});
    QVERIFY(!node(0)->isSelected());
    QTest::qWait(50);
    QCOMPARE(organsShown(), QList<bool>(4, true));
    QCOMPARE(only<MGSpotOrgan>()->opacity(), 1.0);
    click(QPoint(5, 5));
    QTRY_COMPARE(organsShown(), QList<bool>(4, false));
}

void MorphoGraphViewTest::hidesTheOrgansOfTheFormerRegionAtOnce()
{
    worm->regions().at(1)->addSpotOrgan(brainType(), {40.0, 40.0}, 0.0);
    view->setMorphology(worm.get());
    const QList<bool> ofTrunkOnly{false, false, false, false, true, true};
    select({"head"});
    select({"eye", "trunk"}); // the trunk with Control held
    QCOMPARE(organsShown(), ofTrunkOnly);
    QTest::qWait(50);
    QCOMPARE(organsShown(), ofTrunkOnly);

    select({"head"});
    select({"trunk"});
    QCOMPARE(organsShown(), ofTrunkOnly);
}

void MorphoGraphViewTest::showsAllOrgansOnRequest()
{
    view->updateParamsVisibility(true);
    QCOMPARE(organsShown(), QList<bool>(4, true));
    select({"head"});
    click(QPoint(5, 5));
    QTest::qWait(50);
    QCOMPARE(organsShown(), QList<bool>(4, true));
    QCOMPARE(only<MGSpotOrgan>()->opacity(), 1.0);
    view->updateParamsVisibility(false);
    QCOMPARE(organsShown(), QList<bool>(4, false));
    QCOMPARE(changes->size(), 0);
}

// --- The view ---

void MorphoGraphViewTest::buildsTheGraphWithoutAChangeOfTheModel()
{
    worm->links().first()->setTotalDist(123.0);
    const QStringList before = wormLines(*worm, Ids::Without);
    view->setMorphology(worm.get());
    view->updateParamsVisibility(true);
    QCOMPARE(wormLines(*worm, Ids::Without), before);
    QCOMPARE(changes->size(), 0);
    QVERIFY(near(node(1)->pos() - node(0)->pos(), {0.0, -123.0}));
    QCOMPARE(only<MGSpotOrgan>()->zValue(), 4.0);
    QCOMPARE(only<MGLineOrgan>()->zValue(), 5.0);
}

void MorphoGraphViewTest::tellsOfADraggedRegion()
{
    const QPoint from = placeOf("trunk");
    QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, from);
    QTest::mouseMove(view->viewport(), from + QPoint(0, 50));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, from + QPoint(0, 50));
    QVERIFY(!changes->isEmpty());
    QCOMPARE(worm->links().first()->totalDist(), 250.0);
}

void MorphoGraphViewTest::selectsByARubberBand()
{
    const QPoint corner(2, 2);
    const QPoint end = placeOf("trunk") + QPoint(300, 20);
    QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, corner);
    QTest::mouseMove(view->viewport(), end);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, end);
    QVERIFY(node(0)->isSelected());
    QVERIFY(node(1)->isSelected());
    QVERIFY(link(0)->isSelected());
    QCOMPARE(changes->size(), 0);
}

void MorphoGraphViewTest::namesTheOneSelectedNode()
{
    QCOMPARE(view->selectedNode(), nullptr);
    select({"head"});
    QCOMPARE(view->selectedNode(), node(0));
    select({"eye"});
    QCOMPARE(view->selectedNode(), only<MGSpotOrgan>());
    select({"head", "trunk"});
    QCOMPARE(view->selectedNode(), nullptr);
    select({"link"});
    QCOMPARE(view->selectedNode(), nullptr);
}

void MorphoGraphViewTest::clearsTheSelection()
{
    select({"head", "trunk"});
    view->clearSelection();
    QVERIFY(view->scene()->selectedItems().isEmpty());
}

void MorphoGraphViewTest::showsTheWormUprightBeforeAndAfterItIsFitted()
{
    const MorphoGraphView unfitted(worm.get(), nullptr);
    QCOMPARE(unfitted.transform(), QTransform());
    QCOMPARE(view->transform(), QTransform::fromScale(1.0, -1.0));
    QVERIFY(placeOf("head").y() < placeOf("trunk").y());
}

void MorphoGraphViewTest::takesTheItemsForTheSceneAfterAMouseRelease()
{
    node(1)->setPos(node(1)->pos() + QPointF(500.0, -700.0));
    const QTransform before = view->transform();
    QVERIFY(view->sceneRect() != view->scene()->itemsBoundingRect());
    click(QPoint(5, 5));
    QCOMPARE(view->sceneRect(), view->scene()->itemsBoundingRect());
    QCOMPARE(view->transform(), before);
}

void MorphoGraphViewTest::fitsAfterEachReleaseWithAutomaticZoom()
{
    node(1)->setPos(0.0, -3000.0);
    view->setAutomaticZoom(true);
    const double zoom = view->transform().m11();
    QVERIFY(zoom < 0.5);
    node(1)->setPos(0.0, -6000.0);
    click(QPoint(5, 5));
    QVERIFY(view->transform().m11() < 0.6 * zoom);
    view->setAutomaticZoom(false);
    const double kept = view->transform().m11();
    node(1)->setPos(0.0, -200.0);
    click(QPoint(5, 5));
    QCOMPARE(view->transform().m11(), kept);
}

void MorphoGraphViewTest::fitsEachMorphologyWithAutomaticZoom()
{
    view->setAutomaticZoom(true);
    const QTransform natural = view->transform();
    worm->links().first()->setTotalDist(5000.0);
    view->setMorphology(worm.get());
    QVERIFY(view->transform().m11() < 0.5);
    const QRectF items = view->scene()->itemsBoundingRect();
    QVERIFY(view->rect().contains(view->mapFromScene(items).boundingRect()));

    worm->links().first()->setTotalDist(200.0);
    view->setMorphology(worm.get());
    QCOMPARE(view->transform(), natural);

    view->setAutomaticZoom(false);
    worm->links().first()->setTotalDist(5000.0);
    view->setMorphology(worm.get());
    QCOMPARE(view->transform(), natural);
}

void MorphoGraphViewTest::savesItsImage()
{
    const QString fileName = library.filePath("graph.png");
    ModalAnswerer answerer;
    expectFileDialog(&answerer, fileName);
    QMenu *menu = menuAt(QPoint(5, 5));
    QVERIFY(menu);
    QAction *save = actionOf(menu, "Save image...");
    menu->close();
    save->trigger();
    QCOMPARE(answerer.problems(), QStringList());
    const QImage saved(fileName);
    QVERIFY(!saved.isNull());
    QVERIFY(saved.height() > saved.width());
}

void MorphoGraphViewTest::showsAnotherMorphology()
{
    Morphology other;
    other.setName("Other");
    const Region *region = other.addRegion(tailType());
    view->setMorphology(&other);
    QCOMPARE(view->morphology(), &other);
    QCOMPARE(view->regionNodes().keys(), QList<const Region *>{region});
    QCOMPARE(view->scene()->items().size(), 1 + 2 * 4);
    QCOMPARE(view->accessibleName(), "Graph of morphology Other");
    QCOMPARE(changes->size(), 0);
    view->clear();
    QCOMPARE(view->accessibleName(), "No morphology");
}

void MorphoGraphViewTest::outlivesAClearedMorphology()
{
    select({"head"});
    view->clear();
    worm.reset();
    QTest::qWait(50);
    view->updateOrgansVis();
    view->updateParamsVisibility(true);
    QVERIFY(view->scene()->items().isEmpty());
    QCOMPARE(view->morphology(), nullptr);
    QVERIFY(!menuAt(QPoint(5, 5)));
}

QTEST_MAIN(MorphoGraphViewTest)
#include "MorphoGraphViewTest.moc"
