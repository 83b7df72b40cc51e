#pragma once

#include <QList>
#include <QPointF>
#include <QRandomGenerator>

#include <memory>

namespace Planaria {

class Morphology;
class Region;

/// Makes worms of some kind at random, the same way for the same seed.
class RandomBodies final
{
public:
    struct Kind
    {
        int regions = 5;            // in all
        int organs = 1;             // of a region, at most
        bool parallelLinks = false; // some regions are linked twice
        bool evenNumbers = false;   // few different numbers, so that many costs are equal
        int types = 3;              // of regions, and of spot organs
        bool twins = false;         // of the organs, and of regions without links, some are alike
        bool wholeTurns = false;    // angles of the same direction differ by these
        bool loops = false;         // some regions are linked with themselves
        bool hugeNumbers = false;   // some lead beyond what a number holds
    };

    explicit RandomBodies(quint32 seed) : generator(seed) {}

    std::unique_ptr<Morphology> worm(const Kind &kind);
    /// A copy with other numbers here and there.
    std::unique_ptr<Morphology> variation(const Morphology &worm, const Kind &kind);

    int number(int end) { return generator.bounded(end); }

private:
    void link(Morphology *worm, const Kind &kind);
    void shapeTwins(const QList<Region *> &regions, const Kind &kind);
    void shape(Region *region, const Kind &kind);
    void addOrgan(Region *region, const Kind &kind);
    /// Calls @p make as if it stood in place of what was made at @p then.
    template <typename Make> void repeat(const QRandomGenerator &then, const Make &make);

    double number(double from, double to, const Kind &kind);
    double ang(const Kind &kind);
    QPointF point(const Kind &kind);

    QRandomGenerator generator;
};

} // namespace Planaria
