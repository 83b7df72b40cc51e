#pragma once

#include "db/DB.h"

#include <QTemporaryDir>

#include <memory>

namespace Planaria {

class Morphology;

/// How many elements a bench library holds.
struct LibrarySize
{
    int experiments = 0;
    int manipulations = 0;
    int morphologies = 0;
};

/// An open file with elements, in a folder that goes with the object.
class BenchLibrary final
{
public:
    /// @p count wild types.
    explicit BenchLibrary(int count);
    /// @p count worms, of the numbers from 1.
    BenchLibrary(int count, std::unique_ptr<Morphology> (*make)(int number));
    /// One worm, which is row 1.
    explicit BenchLibrary(Morphology *worm);
    /// Elements of all types that refer to each other, written as plain rows. The numbers of drugs,
    /// RNAi, species and publications grow with that of the experiments.
    explicit BenchLibrary(const LibrarySize &size);

    /// What a library of long-standing use holds.
    static LibrarySize full() { return {20000, 5000, 5000}; }

    DB *db() { return &database; }
    [[nodiscard]] QString fileName() const { return folder.filePath(QStringLiteral("bench.edb")); }

private:
    void create();

    QTemporaryDir folder;
    DB database;
};

} // namespace Planaria
