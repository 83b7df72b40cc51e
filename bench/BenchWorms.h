#pragma once

#include "db/DB.h"

#include <QTemporaryDir>

#include <memory>

namespace Planaria {

class Morphology;

namespace BenchWorms {

std::unique_ptr<Morphology> wildType();

/// A worm of nine regions, eight of them around one, with twelve organs each.
std::unique_ptr<Morphology> large();

/// One of the many shapes of a library: one to five regions with up to six organs each, and
/// numbers of its own. @param number the same number gives the same worm
std::unique_ptr<Morphology> varied(int number);

} // namespace BenchWorms

/// An open file that holds worms, in a folder that goes with the object.
class BenchLibrary final
{
public:
    /// @p count wild types.
    explicit BenchLibrary(int count);
    /// @p count worms, of the numbers from 1.
    BenchLibrary(int count, std::unique_ptr<Morphology> (*make)(int number));
    /// One worm, which is row 1.
    explicit BenchLibrary(Morphology *worm);

    DB *db() { return &database; }
    [[nodiscard]] QString fileName() const { return folder.filePath(QStringLiteral("bench.edb")); }

private:
    void create();

    QTemporaryDir folder;
    DB database;
};

} // namespace Planaria
