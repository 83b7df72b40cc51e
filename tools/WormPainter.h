#pragma once

#include <QByteArray>
#include <QImage>

namespace Planaria {

class Morphology;

/// Makes pictures of worms with the drawing code of the program.
namespace WormPainter {

/// @p worm as large as a square of @p side pixels allows, on transparent ground.
QImage icon(const Morphology &worm, int side);

/// @p worm in its dish, turned by @p degrees to the left; a PNG file.
QByteArray photo(const Morphology &worm, double degrees);

} // namespace WormPainter

} // namespace Planaria
