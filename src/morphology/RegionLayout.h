#pragma once

#include <QPointF>
#include <QRectF>

#include <functional>

namespace Planaria {

class Morphology;
class Region;

/// Gives each region of @p morphology its place: connected pieces stand side by side, 25 scene
/// units apart, each with its extent centred on the x axis. Within a piece the links place the
/// regions, depth first from the first region, so that one to which two routes lead keeps the
/// place of the first.
/// @param extent what a region takes up around its centre
/// @param place  called once for each region with the place of its centre
void layOutRegions(const Morphology &morphology,
                   const std::function<QRectF(const Region *)> &extent,
                   const std::function<void(const Region *, const QPointF &)> &place);

} // namespace Planaria
