#pragma once

#include <QRandomGenerator>
#include <QStringList>

#include <memory>

namespace Planaria {

class AreaAction;
class DB;
class Experiment;
class Manipulation;
class Morphology;

/// Fills libraries at random, the same way for the same seed. All take their elements from the same
/// few names, and have few versions of each, so that two of them share many.
class RandomLibraries final
{
public:
    explicit RandomLibraries(quint32 seed) : generator(seed) {}

    void fill(DB *db);

    int number(qsizetype end) { return generator.bounded(static_cast<int>(end)); }

private:
    /// Some of the names, in any order, but at least one.
    QStringList names(const QString &kind);
    void fillWords(DB *db);
    void fillMorphologies(DB *db);
    std::unique_ptr<Manipulation> manipulation(DB *db);
    void draw(AreaAction *action);
    std::unique_ptr<Experiment> experiment(DB *db);
    void addResults(Experiment *experiment, DB *db);

    int anyId(DB *db, const QString &table);
    Morphology *anyWorm(DB *db);

    QRandomGenerator generator;
};

} // namespace Planaria
