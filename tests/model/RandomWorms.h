#pragma once

#include <QList>
#include <QRandomGenerator>

#include <memory>

namespace Planaria {

class Morphology;
class Organ;
class Region;
class RegionsLink;

/// Makes worms and edits them at random, the same way for the same seed.
class RandomWorms final
{
public:
    enum Angles {
        /// Many links of a region leave at equal angles.
        AnyAngles,
        /// No two links of a region leave at equal angles, so their order follows from them.
        DistinctAngles
    };

    RandomWorms(quint32 seed, Angles angleKind) : generator(seed), angles(angleKind) {}

    /// A new worm with a name of its own, of some regions, links, organs and images.
    std::unique_ptr<Morphology> worm();

    /// One change of regions or links, or none where the one picked has nothing to change.
    void editGraph(Morphology *worm);
    /// One change of anything.
    void edit(Morphology *worm);

private:
    void addRegion(Morphology *worm);
    void addLink(Morphology *worm);
    void removeRegion(Morphology *worm);
    void removeLink(Morphology *worm);
    void turnLink(Morphology *worm);

    void rename(Morphology *worm);
    void changeRegion(Morphology *worm);
    void changeLink(Morphology *worm);
    void addOrgan(Morphology *worm);
    void changeOrgan(Morphology *worm);
    void removeOrgan(Morphology *worm);
    void addImage(Morphology *worm);
    void removeImage(Morphology *worm);

    int number(int end) { return generator.bounded(end); }
    double number(double from, double to);
    QPointF point();
    double ang();
    /// One of @p list, or null of an empty one.
    template <typename Member> Member *anyOf(const QList<Member *> &list)
    {
        return list.isEmpty() ? nullptr : list.at(number(static_cast<int>(list.size())));
    }

    QRandomGenerator generator;
    Angles angles;
};

} // namespace Planaria
