#pragma once

#include <QSize>

#include <algorithm>
#include <cmath>

/// How high pictures are shown, in pixels. One as high as a line is long, or beside a huge worm of
/// a damaged file, still has to fit in memory.
namespace Planaria::PictureSize {

inline constexpr double mostPixels = 6.4e7;
inline constexpr double highest = 1e6;

/// The height of @p picture at its proportions; a picture without extent counts as a square.
inline double heightAt(double width, const QSize &picture)
{
    return picture.isEmpty() ? width : picture.height() * width / picture.width();
}

/// For a picture that must be @p width wide, whatever that does to its proportions.
inline int heightForWidth(int width, const QSize &picture)
{
    const double inMemory = mostPixels / std::max(1, width);
    return static_cast<int>(std::min({heightAt(width, picture), inMemory, highest}));
}

/// For a picture that is @p height high at most, and keeps its proportions.
inline int heightWithin(double height, const QSize &picture)
{
    const double inMemory = std::sqrt(heightAt(mostPixels, picture));
    return static_cast<int>(std::min({height, inMemory, highest}));
}

} // namespace Planaria::PictureSize
