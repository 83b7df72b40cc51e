#pragma once

#include <QJsonObject>

#include <functional>
#include <memory>

namespace Planaria {

class Manipulation;
class Morphology;

/// A new worm of this name.
using WormMaker = std::function<std::unique_ptr<Morphology>(const QString &)>;

/// A new manipulation from its tree, its actions listed from the root up:
/// `{kind: morphology, name}`, `{kind: remove | crop | irradiation, area: [[x, y]], from}` or
/// `{kind: join, vect: [x, y], rot, from1, from2}`
std::unique_ptr<Manipulation> manipulationFromJson(const QJsonObject &tree, const WormMaker &worm);

} // namespace Planaria
