#pragma once

#include "model/Angles.h"

#include <QPointF>

namespace Planaria {

class Morphology;
class Region;

/// Parts of worms in the terms of their anatomy. Measures are scene units; a grown worm is about
/// 560 long and 120 wide. Heads, tails and pharynges face a direction: forwards is where the head
/// looks.
namespace WormParts {

inline constexpr double east = 0.0;
inline constexpr double north = Angles::quarterTurn;
inline constexpr double south = -Angles::quarterTurn;

enum class Side { Left, Right };

/// Radii of a head or a tail, and the distance of its centre from that of the body.
struct End
{
    double flank;
    double tip;
    double dist;
};

inline constexpr End grownHead{60.0, 80.0, 200.0};
inline constexpr End grownTail{50.0, 80.0, 200.0};
inline constexpr End blastema{34.0, 26.0, 115.0};

/// The point @p ahead and @p left of a region's centre for one who looks along @p facing.
QPointF at(double facing, double ahead, double left);

// Regions. One without links is an ellipse, and its four params are the extents to the right, the
// top, the left and the bottom. The params of a body are set once all its links are there.

Region *addHead(Morphology &worm);
Region *addTrunk(Morphology &worm);
Region *addTail(Morphology &worm);

/// A head or tail on @p body, pointing away from it; the border is halfway.
Region *addHead(Region *body, double facing, const End &size = grownHead);
Region *addTail(Region *body, double facing, const End &size = grownTail);

// Organs. A pair stands to both sides of the line along which its region faces.

void addEye(Region *region, const QPointF &pos, double facing);
void addEyes(Region *head, double facing);
void addBrainLobe(Region *head, double facing, Side side);
void addBrain(Region *head, double facing);
/// Its tip, the rounded end, lies towards the back.
void addPharynx(Region *trunk, double facing);

/// A nerve cord. All points are relative to the centre of @p region.
void addCord(Region *region, const QPointF &from, const QPointF &through, const QPointF &to);
/// Both cords of a region that lies along the y axis: the right one as given, and its mirror image.
void addCords(Region *region, const QPointF &from, const QPointF &through, const QPointF &to);
/// The same for a grown trunk.
void addTrunkCords(Region *trunk, const QPointF &from, const QPointF &to);

/// A head on @p body with brain and eyes.
Region *addWholeHead(Region *body, double facing, const End &size = grownHead);

// Where the right cord of a grown worm ends, relative to the centre of the trunk.

inline constexpr QPointF cordInHead{35.0, 176.5};
inline constexpr QPointF cordInTail{7.0, -250.0};
inline constexpr QPointF cordAtFrontWound{41.0, 80.0};
inline constexpr QPointF cordAtBackWound{39.0, -80.0};

/// @p point at the other end of the body.
constexpr QPointF behind(const QPointF &point)
{
    return {point.x(), -point.y()};
}

/// @p point on the other side of the body.
constexpr QPointF mirrored(const QPointF &point)
{
    return {-point.x(), point.y()};
}

} // namespace WormParts

} // namespace Planaria
