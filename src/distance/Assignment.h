#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Planaria {

/// Pairs of the elements of two lists, made one after another. The elements of the first list are
/// placed in their order, each with one of the second or without partner; what is left of the
/// second list follows, without partners.
class Assignment final
{
public:
    static constexpr int none = -1;    // in place of a partner
    static constexpr int waiting = -2; // an element not placed yet

    /// Starts without pairs. @param sizeOfFirst, sizeOfSecond numbers of elements
    void reset(int sizeOfFirst, int sizeOfSecond);

    [[nodiscard]] int pairCount() const { return static_cast<int>(pairs.size()); }
    [[nodiscard]] bool isComplete() const { return nextOfFirst() == none && left == 0; }
    /// The element that the next pair is for; none once all of the first list are placed.
    [[nodiscard]] int nextOfFirst() const
    {
        return pairs.size() < partnersOfFirst.size() ? pairCount() : none;
    }
    [[nodiscard]] int sizeOfSecond() const { return static_cast<int>(partnersOfSecond.size()); }
    /// How many elements of the second list wait.
    [[nodiscard]] int leftOfSecond() const { return left; }

    // The partner of an element, none or waiting.

    [[nodiscard]] int partnerOfFirst(int element) const
    {
        return partnersOfFirst[static_cast<std::size_t>(element)];
    }
    [[nodiscard]] int partnerOfSecond(int element) const
    {
        return partnersOfSecond[static_cast<std::size_t>(element)];
    }

    /// Makes the next pair. @param second an element that waits; or none, while nextOfFirst() is
    /// one
    void add(int second)
    {
        setPair(pairs.size(), second);
        pairs.push_back(second);
    }
    /// Takes the last pairs back until @p count are left.
    void shortenTo(int count);
    /// Replaces all pairs by @p count others, which @p takeLast gives from the last to the first.
    template <typename TakeLast> void replace(int count, const TakeLast &takeLast)
    {
        std::fill(partnersOfFirst.begin(), partnersOfFirst.end(), waiting);
        std::fill(partnersOfSecond.begin(), partnersOfSecond.end(), waiting);
        left = sizeOfSecond();
        pairs.resize(static_cast<std::size_t>(count));
        for (std::size_t i = pairs.size(); i-- > 0;) {
            pairs[i] = takeLast();
            setPair(i, pairs[i]);
        }
    }

private:
    void setPair(std::size_t position, int second)
    {
        const bool hasFirst = position < partnersOfFirst.size();
        if (hasFirst)
            partnersOfFirst[position] = second;
        if (second != none) {
            partnersOfSecond[static_cast<std::size_t>(second)] =
                hasFirst ? static_cast<int>(position) : none;
            --left;
        }
    }

    std::vector<int> pairs; // the second of each
    std::vector<int> partnersOfFirst;
    std::vector<int> partnersOfSecond;
    int left = 0;
};

} // namespace Planaria
