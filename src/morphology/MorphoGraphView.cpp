#include "morphology/MorphoGraphView.h"

#include "db/ExperimentFactory.h"
#include "model/Angles.h"
#include "model/LineOrgan.h"
#include "model/LineOrganType.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"
#include "morphology/MGLineOrgan.h"
#include "morphology/MGLink.h"
#include "morphology/MGRegion.h"
#include "morphology/MGSpotOrgan.h"
#include "morphology/MGSpotOrganLever.h"
#include "morphology/RegionLayout.h"
#include "widgets/SilkIcon.h"

#include <QAction>
#include <QGraphicsScene>
#include <QMenu>
#include <QScopedValueRollback>

#include <algorithm>

namespace Planaria {

namespace {

/// Above which of the others an organ's node lies.
double zValueOf(const SpotOrgan &organ, double unchanged)
{
    switch (organ.type()->id()) {
    case 1: // eye
        return 4.0;
    case 2: // brain
        return 3.0;
    case 3: // pharynx
        return 2.0;
    default:
        return unchanged;
    }
}

} // namespace

MorphoGraphView::MorphoGraphView(Morphology *shown, QWidget *parent)
    : ZoomGraphicsView(parent, true, true), morphology_(shown)
{
    initWidget();
}

MorphoGraphView::MorphoGraphView(QWidget *parent) : MorphoGraphView(nullptr, parent) {}

MorphoGraphView::~MorphoGraphView()
{
    clear();
}

void MorphoGraphView::initWidget()
{
    scene()->setSceneRect(QRectF()); // wherever items are
    scale(1.0, -1.0);                // undoes the flip until the view is fitted for the first time

    const ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    regionTypes = factory->regionTypes;
    spotOrganTypes = factory->spotOrganTypes;
    lineOrganTypes = factory->lineOrganTypes;

    keepEscape();
    setDragMode(QGraphicsView::RubberBandDrag);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &MorphoGraphView::contextMenuCalled);
    fadeTimer.setSingleShot(true);
    fadeTimer.setInterval(10);
    connect(&fadeTimer, &QTimer::timeout, this, &MorphoGraphView::updateOrgansVis);

    createActions();
    buildFullMorphology();
}

// --- Menus ---

void MorphoGraphView::createActions()
{
    connectAction = createAction(QStringLiteral("Connect regions"), "connect",
                                 &MorphoGraphView::connectSelectedRegions);
    deleteAction = createAction(QStringLiteral("Delete selection"), "delete",
                                &MorphoGraphView::deleteSelection);
    separatorAction = new QAction(this);
    separatorAction->setSeparator(true);

    createRegionMenu = createRegionTypeMenu(QStringLiteral("Create region"), "add",
                                            &MorphoGraphView::createNewRegion);
    addRegionMenu = createRegionTypeMenu(QStringLiteral("Add region"), "pill_add",
                                         &MorphoGraphView::addRegion2SelecNode);
    changeTypeMenu = createRegionTypeMenu(QStringLiteral("Change type"), "pill_go",
                                          &MorphoGraphView::changeRegionType2SelecNode);
    addOrganMenu = new QMenu(QStringLiteral("Add organ"), this);
    addOrganMenu->setIcon(silkIcon("heart_add"));
    addTypeActions(addOrganMenu, spotOrganTypes, {"bullet_white", "bullet_green", "bullet_black"},
                   &MorphoGraphView::addSpotOrgan2SelecNode);
    addTypeActions(addOrganMenu, lineOrganTypes, {"bullet_green"},
                   &MorphoGraphView::addLineOrgan2SelecNode);
    contextMenu = new QMenu(this);
}

QAction *MorphoGraphView::createAction(const QString &text, const QString &icon, Command command)
{
    auto *action = new QAction(silkIcon(icon), text, this);
    connect(action, &QAction::triggered, this, command);
    return action;
}

QMenu *MorphoGraphView::createRegionTypeMenu(const QString &title, const QString &icon,
                                             Command command)
{
    auto *menu = new QMenu(title, this);
    menu->setIcon(silkIcon(icon));
    addTypeActions(menu, regionTypes, {"bullet_red", "bullet_black", "bullet_blue"}, command);
    return menu;
}

template <typename Type>
void MorphoGraphView::addTypeActions(QMenu *menu, const QList<Type *> &types,
                                     const QStringList &icons, Command command)
{
    for (int i = 0; i < types.size(); ++i) {
        QAction *action = menu->addAction(types.at(i)->name());
        if (i < icons.size())
            action->setIcon(silkIcon(icons.at(i)));
        action->setData(i);
        connect(action, &QAction::triggered, this, command);
    }
}

template <typename Type> Type *MorphoGraphView::senderType(const QList<Type *> &types) const
{
    const auto *action = qobject_cast<const QAction *>(sender());
    return action ? types.value(action->data().toInt()) : nullptr;
}

void MorphoGraphView::contextMenuCalled(const QPoint &pos)
{
    if (!morphology_)
        return;
    contextMenu->clear();
    fillContextMenu();
    contextMenu->popup(mapToGlobal(pos));
}

void MorphoGraphView::fillContextMenu()
{
    const qsizetype selected = scene()->selectedItems().size();
    const qsizetype selectedRegions = selectedRegionNodes().size();
    if (selected == 0) {
        if (morphology_->regions().isEmpty()) {
            contextMenu->addMenu(createRegionMenu);
            contextMenu->addAction(separatorAction);
        }
        contextMenu->addAction(saveImageAction);
        return;
    }
    if (selected == 1 && selectedRegions == 1) {
        contextMenu->addMenu(addRegionMenu);
        contextMenu->addMenu(changeTypeMenu);
        contextMenu->addMenu(addOrganMenu);
    } else if (selected > 1 && selectedRegions == selected) {
        contextMenu->addAction(connectAction);
    }
    contextMenu->addAction(separatorAction);
    contextMenu->addAction(deleteAction);
}

// --- What is shown ---

void MorphoGraphView::clear()
{
    clearScene();
    morphology_ = nullptr;
    updateAccessibleName();
}

void MorphoGraphView::setMorphology(Morphology *morphology)
{
    clear();
    morphology_ = morphology;
    buildFullMorphology();
}

void MorphoGraphView::updateParamsVisibility(bool show)
{
    showAllOrgans = show;
    clearScene();
    buildFullMorphology();
}

void MorphoGraphView::setAutomaticZoom(bool on)
{
    automaticZoom = on;
    if (on)
        fitView();
}

void MorphoGraphView::clearSelection()
{
    scene()->clearSelection();
}

void MorphoGraphView::updateAccessibleName()
{
    setAccessibleName(
        morphology_ ? QStringLiteral("Graph of morphology %1").arg(morphology_->name()).trimmed()
                    : QStringLiteral("No morphology"));
}

void MorphoGraphView::clearScene()
{
    const QScopedValueRollback guard(building, true);
    organsRegion = nullptr;
    organsOpacity = 0.0;
    fadeTimer.stop();
    regionNodes_.clear();
    scene()->clear();
}

void MorphoGraphView::buildFullMorphology()
{
    updateAccessibleName();
    if (!morphology_)
        return;
    const QScopedValueRollback guard(building, true);
    buildAllRegions();
    updateRegionsPos();
    // Only now: a node that moved with its links would write their numbers.
    buildAllRegionsLinks();
    if (automaticZoom)
        fitView();
}

void MorphoGraphView::buildAllRegions()
{
    regionNodes_.clear();
    for (Region *region : morphology_->regions())
        buildMGRegion(region);
}

void MorphoGraphView::updateRegionsPos()
{
    layOutRegions(
        *morphology_,
        [this](const Region *region) { return regionNodes_.value(region)->childrenBoundingRect(); },
        [this](const Region *region, const QPointF &pos) {
            regionNodes_.value(region)->setPos(pos);
        });
}

void MorphoGraphView::buildAllRegionsLinks()
{
    for (RegionsLink *link : morphology_->links()) {
        if (link->isComplete())
            buildLink(regionNodes_.value(link->from()), regionNodes_.value(link->to()), link);
    }
}

MGRegion *MorphoGraphView::buildMGRegion(Region *region)
{
    auto *node = new MGRegion(this, region);
    node->setText(region->type()->name());
    scene()->addItem(node);
    regionNodes_.insert(region, node);
    buildRegionOrgans(node);
    return node;
}

void MorphoGraphView::buildRegionOrgans(MGRegion *regionNode)
{
    for (Organ *organ : regionNode->region()->organs())
        buildOrgan(organ, regionNode);
}

MGLink *MorphoGraphView::buildLink(MGNode *from, MGNode *to, RegionsLink *regionsLink)
{
    auto *link = new MGLink(from, to, this, regionsLink);
    scene()->addItem(link);
    if (!regionsLink)
        link->setVisible(to->isVisible());
    return link;
}

void MorphoGraphView::buildOrgan(Organ *organ, MGRegion *regionNode)
{
    if (auto *spot = dynamic_cast<SpotOrgan *>(organ))
        buildSpotOrgan(spot, regionNode);
    else if (auto *line = dynamic_cast<LineOrgan *>(organ))
        buildLineOrgan(line, regionNode);
}

void MorphoGraphView::buildSpotOrgan(SpotOrgan *organ, MGRegion *regionNode)
{
    auto *node = new MGSpotOrgan(this, organ, regionNode);
    finishOrgan(node, regionNode);
    node->setZValue(zValueOf(*organ, node->zValue()));
}

void MorphoGraphView::buildLineOrgan(LineOrgan *organ, MGRegion *regionNode)
{
    auto *node = new MGLineOrgan(this, organ, regionNode);
    finishOrgan(node, regionNode);
    node->setZValue(5.0);
}

void MorphoGraphView::finishOrgan(MGOrgan *organNode, MGRegion *regionNode)
{
    organNode->setText(organNode->organ()->typeName());
    organNode->setVisible(showAllOrgans || regionNode->isSelected());
    buildLink(regionNode, organNode, nullptr);
}

// --- Commands ---

MGNode *MorphoGraphView::selectedNode() const
{
    const QList<QGraphicsItem *> selected = scene()->selectedItems();
    return selected.size() == 1 ? dynamic_cast<MGNode *>(selected.first()) : nullptr;
}

MGRegion *MorphoGraphView::selectedRegionNode() const
{
    return dynamic_cast<MGRegion *>(selectedNode());
}

QList<MGRegion *> MorphoGraphView::selectedRegionNodes() const
{
    QList<MGRegion *> selected;
    if (!morphology_)
        return selected;
    for (const Region *region : morphology_->regions()) {
        MGRegion *node = regionNodes_.value(region);
        if (node && node->isSelected())
            selected.append(node);
    }
    return selected;
}

void MorphoGraphView::createNewRegion()
{
    RegionType *type = senderType(regionTypes);
    if (!type || !morphology_)
        return;
    morphology_->addRegion(type);
    clearScene();
    buildFullMorphology();
    emit signMorphologyChanged();
}

void MorphoGraphView::addRegion2SelecNode()
{
    RegionType *type = senderType(regionTypes);
    MGRegion *node = selectedRegionNode();
    if (!type || !node)
        return;
    constexpr double dist = 200.0;
    constexpr double downwards = 3.0 * Angles::quarterTurn;
    Region *region = morphology_->addRegion(type);
    RegionsLink *link = node->region()->addLink(region, dist, downwards, 0.5);
    MGRegion *newNode = buildMGRegion(region);
    newNode->setPos(node->pos() + dist * Angles::direction(downwards));
    buildLink(node, newNode, link);
    emit signMorphologyChanged();
}

void MorphoGraphView::changeRegionType2SelecNode()
{
    RegionType *type = senderType(regionTypes);
    MGRegion *node = selectedRegionNode();
    if (!type || !node)
        return;
    if (type->id() != node->region()->type()->id()) {
        node->region()->setType(type);
        node->setText(type->name());
    }
    emit signMorphologyChanged();
}

void MorphoGraphView::addSpotOrgan2SelecNode()
{
    SpotOrganType *type = senderType(spotOrganTypes);
    MGRegion *node = selectedRegionNode();
    if (!type || !node)
        return;
    buildSpotOrgan(node->region()->addSpotOrgan(type, QPointF(20.0, 0.0), 0.0), node);
    emit signMorphologyChanged();
}

void MorphoGraphView::addLineOrgan2SelecNode()
{
    LineOrganType *type = senderType(lineOrganTypes);
    MGRegion *node = selectedRegionNode();
    if (!type || !node)
        return;
    buildLineOrgan(node->region()->addLineOrgan(
                       type, QPointF(20.0, 0.0), 20.0 * Angles::direction(Angles::quarterTurn),
                       20.0 * Angles::direction(3.0 * Angles::quarterTurn)),
                   node);
    emit signMorphologyChanged();
}

void MorphoGraphView::connectSelectedRegions()
{
    const QList<MGRegion *> selected = selectedRegionNodes();
    for (int i = 0; i < selected.size(); ++i) {
        for (int j = i + 1; j < selected.size(); ++j) {
            if (!selected[i]->region()->isLinked(selected[j]->region()))
                connectRegions(selected[i], selected[j]);
        }
    }
    emit signMorphologyChanged();
}

void MorphoGraphView::connectRegions(MGRegion *a, MGRegion *b)
{
    const QPointF vector = b->pos() - a->pos();
    RegionsLink *link = morphology_->addRegionsLink(
        a->region(), b->region(), Angles::length(vector), Angles::angleOf(vector), 0.5);
    buildLink(a, b, link);
}

void MorphoGraphView::deleteSelection()
{
    QList<MGLink *> links;
    QList<MGOrgan *> organs;
    const QList<MGRegion *> regions = selectedRegionNodes();
    const auto addOrgan = [&](MGOrgan *organ) {
        if (!organs.contains(organ)) // it may be selected together with its lever
            organs.append(organ);
    };
    for (QGraphicsItem *item : scene()->selectedItems()) {
        if (auto *link = dynamic_cast<MGLink *>(item))
            links.append(link);
        else if (auto *organ = dynamic_cast<MGOrgan *>(item))
            addOrgan(organ);
        else if (const auto *lever = dynamic_cast<MGSpotOrganLever *>(item))
            addOrgan(lever->organNode());
    }

    for (MGLink *link : links)
        deleteLink(link);
    for (MGOrgan *organ : organs)
        deleteOrgan(organ);
    for (MGRegion *region : regions)
        deleteRegion(region);
    emit signMorphologyChanged();
}

// The model goes first: when a line goes, its nodes make their levers anew from the params.

void MorphoGraphView::deleteLink(MGLink *link)
{
    link->regionsLink()->removeFromMorphology();
    delete link;
}

void MorphoGraphView::deleteOrgan(MGOrgan *organ)
{
    organ->organ()->removeFromMorphology();
    delete organ;
}

void MorphoGraphView::deleteRegion(MGRegion *region)
{
    region->region()->removeFromMorphology();
    regionNodes_.remove(region->region());
    if (organsRegion == region)
        organsRegion = nullptr;
    delete region;
}

bool MorphoGraphView::deletionMakesGraphDisc(const QList<MGLink *> &links,
                                             const QList<MGRegion *> &regions) const
{
    const QList<MGRegion *> nodes = regionNodes_.values();
    if (nodes.size() == regions.size())
        return false;
    QList<MGRegion *> reached;
    const auto first = std::find_if(nodes.cbegin(), nodes.cend(),
                                    [&](MGRegion *node) { return !regions.contains(node); });
    if (first != nodes.cend())
        reached.append(*first);
    for (qsizetype i = 0; i < reached.size(); ++i) {
        const MGRegion *node = reached.at(i);
        for (MGLink *link : node->links()) {
            if (!link->isRegionsLink() || links.contains(link))
                continue;
            auto *other = static_cast<MGRegion *>(link->otherNode(node));
            if (!regions.contains(other) && !reached.contains(other))
                reached.append(other);
        }
    }
    return reached.size() != nodes.size() - regions.size();
}

// --- What the items tell ---

void MorphoGraphView::graphRegionChanged(MGRegion * /*region*/)
{
    graphItemChanged();
}

void MorphoGraphView::graphItemChanged()
{
    if (!building)
        emit signMorphologyChanged();
}

void MorphoGraphView::graphRegionSelectionChanged(MGRegion *region, bool selected)
{
    if (!showAllOrgans)
        setOrgansVis(region, selected);
}

void MorphoGraphView::graphOrganSelectionChanged(MGOrgan *organ, bool selected)
{
    if (!showAllOrgans)
        setOrgansVis(organ->parent(), selected);
}

void MorphoGraphView::setOrgansVis(MGRegion *region, bool visible)
{
    if (region != organsRegion && organsOpacity != 0.0) {
        organsOpacity = 0.0;
        updateOrgansVis(); // those of the former region go at once
    }
    organsRegion = region;
    if (visible) {
        organsOpacity = 1.0;
        updateOrgansVis();
    } else {
        organsOpacity = 0.9;
        fadeTimer.start();
    }
}

void MorphoGraphView::updateOrgansVis()
{
    if (!organsRegion)
        return;
    // An item that is hidden loses its selection, which calls setOrgansVis() in between.
    const auto show = [opacity = organsOpacity](QGraphicsItem *item) {
        item->setVisible(opacity > 0.0);
        item->setOpacity(opacity);
    };
    for (QGraphicsItem *child : organsRegion->childItems()) {
        if (dynamic_cast<MGOrgan *>(child))
            show(child);
    }
    for (MGLink *link : organsRegion->links()) {
        if (!link->isRegionsLink())
            show(link);
    }
    if (organsOpacity > 0.0 && organsOpacity < 1.0) {
        organsOpacity -= 0.1;
        fadeTimer.start();
    }
}

void MorphoGraphView::mouseReleaseEvent(QMouseEvent *event)
{
    ZoomGraphicsView::mouseReleaseEvent(event);
    if (automaticZoom)
        fitView();
    else
        scene()->setSceneRect(scene()->itemsBoundingRect());
}

} // namespace Planaria
