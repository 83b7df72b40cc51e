#pragma once

#include <QJsonObject>

#include <memory>

namespace Planaria {

class Morphology;
class Region;

/// Adds one organ to @p region: `{kind: spot, type, pos, rot}` or `{kind: line, type, pos, end1,
/// end2}`. Types without a place in the vocabulary are allowed.
void addOrgan(Region *region, const QJsonObject &organ);

/// A new worm from its numbers: all regions, all links in order, all params, then the organs.
/// `{name, regions: [{type, params, organs}], links: [{from, to, dist, ang, ratio}]}`
std::unique_ptr<Morphology> wormFromJson(const QJsonObject &json);

} // namespace Planaria
