#pragma once

#include <cstdint>
#include <vector>

namespace Planaria {

/// The open paths of a best-first search, by cost; of equal costs the newest comes first. Both
/// ends can be taken off, in the logarithm of the number of paths.
///
/// An interval heap: entries 2i and 2i + 1 are the lower and upper bound of node i, and the
/// interval of a node contains those of its children 2i + 1 and 2i + 2. (J. van Leeuwen, D. Wood:
/// Interval heaps. The Computer Journal 36, 1993.)
class OpenPaths final
{
public:
    struct Entry
    {
        double cost = 0.0;
        std::uint64_t birth = 0; // grows with each insertion
        int path = 0;
    };

    bool isEmpty() const { return entries.empty(); }
    std::size_t size() const { return entries.size(); }

    void insert(double cost, int path);
    /// Whether a path of this cost, inserted now, would stand before the last one.
    bool comesBeforeLast(double cost) const { return cost <= entries[lastIndex()].cost; }
    Entry takeFirst();
    Entry takeLast();

private:
    static bool isBefore(const Entry &a, const Entry &b)
    {
        return a.cost < b.cost || (a.cost == b.cost && a.birth > b.birth);
    }

    std::size_t lastIndex() const { return entries.size() > 1 ? 1 : 0; }
    /// The upper bound of @p node, which in the last node may be its lower bound too.
    std::size_t upper(std::size_t node) const
    {
        return 2 * node + 1 < entries.size() ? 2 * node + 1 : 2 * node;
    }

    void riseAsLower(std::size_t index);
    void riseAsUpper(std::size_t index);
    void sinkLower();
    void sinkUpper();

    std::vector<Entry> entries;
    std::uint64_t births = 0;
};

} // namespace Planaria
