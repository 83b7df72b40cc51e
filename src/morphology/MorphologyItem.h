#pragma once

#include <QBrush>
#include <QGraphicsPathItem>
#include <QHash>
#include <QList>
#include <QPen>

class QRadialGradient;

namespace Planaria {

class LineOrgan;
class Morphology;
class Organ;
class Region;
class RegionsLink;
class SpotOrgan;

/// Draws a worm from the numbers of its graph: a shaded shape for each region, joined to its
/// neighbours along shared curves, and the organs. Its shape() is the outline of the whole worm.
///
/// Built once, from the morphology as it is then; it keeps no link to it. Regions clip their spot
/// organs, and the outline clips everything. Numbers that cannot be drawn (a damaged file) are
/// taken for ones that can.
class MorphologyItem final : public QGraphicsPathItem
{
public:
    /// @param plain flat colours without pens, instead of outlines and gradients
    MorphologyItem(const Morphology &morphology, QGraphicsItem *parent, bool plain);
    ~MorphologyItem() override;

    /// The extent of the regions, without the organs.
    [[nodiscard]] QRectF boundingRect() const override;

    /// Moves the drawing so that the centre of its extent lies at the item's origin.
    void centerAtZero();

private:
    void buildMorphology(const Morphology &morphology);
    void buildRegionsItems(const Morphology &morphology);
    QGraphicsPathItem *buildRegion(const Region *region);
    QGraphicsPathItem *buildRegion0Links(const Region *region);
    QGraphicsPathItem *buildRegion1Link(const Region *region);
    QGraphicsPathItem *buildRegionNLinks(const Region *region);
    QGraphicsPathItem *createRegionItem(const Region *region, const QPainterPath &path);

    void updateRegionsPos(const Morphology &morphology);
    void centerAtGravity();
    void moveAll(const QPointF &offset);
    void setupGlobalPath();

    static double calcRegionRadius(const Region *region);
    static QPointF calcRegionFocus(const Region *region);
    static void calcRegionColors(const Region *region, QColor *strong, QColor *pale);
    static QRadialGradient calcRegionGradient(const Region *region);

    /// The points on the outline of @p region before and behind @p link, and their angles.
    static void calcPrevNextPoints(const Region *region, const RegionsLink *link,
                                   QPointF *prevPoint, QPointF *nextPoint, double *prevAng,
                                   double *nextAng);
    /// Adds the outline from the point before @p link along the border with the other region to
    /// the point behind it.
    static void addLink2Path(const Region *region, const RegionsLink *link, QPainterPath *path);

    void buildOrgansItems(const Morphology &morphology);
    void buildRegionOrgans(const Region &region, QGraphicsPathItem *regionItem);
    void buildOrgan(const Organ *organ, QGraphicsPathItem *regionItem);
    void buildEye(const SpotOrgan &eye, QGraphicsPathItem *regionItem);
    void buildBrain(const SpotOrgan &brain, QGraphicsPathItem *regionItem);
    void buildPharynx(const SpotOrgan &pharynx, QGraphicsPathItem *regionItem);
    void buildVNC(const LineOrgan &cord, QGraphicsPathItem *regionItem);

    [[nodiscard]] QPen outlinePen() const;

    QHash<const Region *, QGraphicsPathItem *> regionItems; // children, placed at their centres
    // The same in the order of the regions, so that sums come out alike in each run of the program.
    QList<QGraphicsPathItem *> orderedRegionItems;
    QList<QGraphicsPathItem *> lineOrganItems; // children, free to cross regions
    bool plainStyle;
};

} // namespace Planaria
