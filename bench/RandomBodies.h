#pragma once

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
    };

    explicit RandomBodies(quint32 seed) : generator(seed) {}

    std::unique_ptr<Morphology> worm(const Kind &kind);
    /// A copy with other numbers here and there.
    std::unique_ptr<Morphology> variation(const Morphology &worm, const Kind &kind);

    int number(int end) { return generator.bounded(end); }

private:
    void link(Morphology *worm, const Kind &kind);
    void shape(Region *region, const Kind &kind);

    double number(double from, double to, const Kind &kind);
    double ang(const Kind &kind);
    QPointF point(const Kind &kind);

    QRandomGenerator generator;
};

} // namespace Planaria
