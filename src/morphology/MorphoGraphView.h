#pragma once

#include "widgets/ZoomGraphicsView.h"

#include <QHash>
#include <QList>
#include <QTimer>

class QMenu;

namespace Planaria {

class LineOrgan;
class LineOrganType;
class MGLink;
class MGNode;
class MGOrgan;
class MGRegion;
class Morphology;
class Organ;
class Region;
class RegionsLink;
class RegionType;
class SpotOrgan;
class SpotOrganType;

/// The editor of a morphology as a graph. It edits in place, and owns neither the morphology nor
/// its elements; they must stay while they are shown.
///
/// The nodes of organs show only around the region that is selected, and fade out after it.
class MorphoGraphView final : public ZoomGraphicsView
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/Morphology.h")

public:
    /// @param shown null for none
    MorphoGraphView(Morphology *shown, QWidget *parent);
    explicit MorphoGraphView(QWidget *parent);
    ~MorphoGraphView() override;

    [[nodiscard]] Morphology *morphology() const { return morphology_; }
    [[nodiscard]] const QHash<const Region *, MGRegion *> &regionNodes() const
    {
        return regionNodes_;
    }
    /// Whether items come and go as a whole, so that their changes are no edits.
    [[nodiscard]] bool isBuilding() const { return building; }

    void clearSelection();
    /// Fits the view after each edit, instead of leaving the scene where it is.
    void setAutomaticZoom(bool on);
    /// The one node that is selected; null for none, several, or another item.
    [[nodiscard]] MGNode *selectedNode() const;
    /// Whether the graph would fall to pieces without these.
    [[nodiscard]] bool deletionMakesGraphDisc(const QList<MGLink *> &links,
                                              const QList<MGRegion *> &regions) const;

    /// Follows a change of the morphology's name.
    void updateAccessibleName();

    // What the items tell.

    void graphRegionChanged(MGRegion *region);
    void graphItemChanged();
    void graphRegionSelectionChanged(MGRegion *region, bool selected);
    void graphOrganSelectionChanged(MGOrgan *organ, bool selected);

signals:
    void signMorphologyChanged();

public slots:
    void clear();
    void setMorphology(Morphology *morphology);
    /// Shows all organ nodes all the time.
    void updateParamsVisibility(bool show);
    void contextMenuCalled(const QPoint &pos);

    // The commands; the menu action that calls one bears the place of its type in the vocabulary.

    void createNewRegion();
    void addRegion2SelecNode();
    void changeRegionType2SelecNode();
    void addSpotOrgan2SelecNode();
    void addLineOrgan2SelecNode();
    void connectSelectedRegions();
    void deleteSelection();

    void updateOrgansVis();

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    using Command = void (MorphoGraphView::*)();

    void initWidget();
    void createActions();
    QMenu *createRegionTypeMenu(const QString &title, const QString &icon, Command command);
    template <typename Type>
    void addTypeActions(QMenu *menu, const QList<Type *> &types, const QStringList &icons,
                        Command command);
    QAction *createAction(const QString &text, const QString &icon, Command command);
    void fillContextMenu();

    void clearScene();
    void buildFullMorphology();
    void buildAllRegions();
    void updateRegionsPos();
    void buildAllRegionsLinks();
    MGRegion *buildMGRegion(Region *region);
    void buildRegionOrgans(MGRegion *regionNode);
    MGLink *buildLink(MGNode *from, MGNode *to, RegionsLink *regionsLink);
    void buildOrgan(Organ *organ, MGRegion *regionNode);
    void buildSpotOrgan(SpotOrgan *organ, MGRegion *regionNode);
    void buildLineOrgan(LineOrgan *organ, MGRegion *regionNode);
    void finishOrgan(MGOrgan *organNode, MGRegion *regionNode);

    /// The type of the menu action that called the slot; null without one.
    template <typename Type> Type *senderType(const QList<Type *> &types) const;
    [[nodiscard]] MGRegion *selectedRegionNode() const;
    /// In the order of the morphology.
    [[nodiscard]] QList<MGRegion *> selectedRegionNodes() const;
    void connectRegions(MGRegion *a, MGRegion *b);
    void deleteLink(MGLink *link);
    void deleteOrgan(MGOrgan *organ);
    void deleteRegion(MGRegion *region);

    void setOrgansVis(MGRegion *region, bool visible);

    QAction *connectAction = nullptr;
    QAction *deleteAction = nullptr;
    QAction *separatorAction = nullptr;
    QMenu *createRegionMenu = nullptr;
    QMenu *addRegionMenu = nullptr;
    QMenu *changeTypeMenu = nullptr;
    QMenu *addOrganMenu = nullptr;
    QMenu *contextMenu = nullptr;

    Morphology *morphology_ = nullptr;
    QHash<const Region *, MGRegion *> regionNodes_;
    QList<RegionType *> regionTypes;
    QList<SpotOrganType *> spotOrganTypes;
    QList<LineOrganType *> lineOrganTypes;
    bool building = false;
    bool showAllOrgans = false;
    bool automaticZoom = false;
    double organsOpacity = 0.0;
    MGRegion *organsRegion = nullptr; // whose organ nodes are showing
    QTimer fadeTimer;
};

} // namespace Planaria
