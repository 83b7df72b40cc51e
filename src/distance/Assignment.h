#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
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

    /// Starts without pairs. @param newSizeOfFirst, newSizeOfSecond numbers of elements
    void reset(int newSizeOfFirst, int newSizeOfSecond);

    [[nodiscard]] int pairCount() const { return cells[pairCell]; }
    [[nodiscard]] bool isComplete() const
    {
        return nextOfFirst() == none && waitingOfSecond() == 0;
    }
    /// The element that the next pair is for; none once all of the first list are placed.
    [[nodiscard]] int nextOfFirst() const
    {
        return pairCount() < sizeOfFirst_ ? pairCount() : none;
    }
    [[nodiscard]] int sizeOfFirst() const { return sizeOfFirst_; }
    [[nodiscard]] int sizeOfSecond() const { return sizeOfSecond_; }
    /// How many elements wait.
    [[nodiscard]] int waitingOfFirst() const { return std::max(sizeOfFirst_ - pairCount(), 0); }
    [[nodiscard]] int waitingOfSecond() const { return cells[leftCell]; }

    /// The partner of an element, none or waiting.
    [[nodiscard]] int partnerOfFirst(int element) const { return cells[partnerCell(element)]; }
    [[nodiscard]] bool isWaiting(int second) const
    {
        const auto position = static_cast<unsigned>(second);
        return (bitsAt(position / bitsOfCell) >> (position % bitsOfCell) & 1U) != 0;
    }
    /// Calls @p visit with each element of the second list that waits, in order, until it returns
    /// false. @return whether it never did
    template <typename Visit> [[nodiscard]] bool forEachWaiting(const Visit &visit) const
    {
        for (unsigned cell = 0; cell < bitCells; ++cell) {
            for (std::uint32_t bits = bitsAt(cell); bits != 0; bits &= bits - 1) {
                if (!visit(static_cast<int>(cell * bitsOfCell) + std::countr_zero(bits)))
                    return false;
            }
        }
        return true;
    }

    /// Makes the next pair. @param second an element that waits; or none, while nextOfFirst() is
    /// an element
    void add(int second)
    {
        if (pairCount() < sizeOfFirst_)
            cells[partnerCell(pairCount())] = second;
        if (second != none) {
            toggle(second);
            --cells[leftCell];
        }
        ++cells[pairCell];
    }
    /// Takes the last pair back, which was made with @p second.
    void takeBack(int second);

    /// All pairs in one piece, as copies that are kept of them; its size stays until reset().
    [[nodiscard]] std::span<const std::int32_t> row() const { return cells; }
    void setRow(std::span<const std::int32_t> row)
    {
        std::copy(row.begin(), row.end(), cells.begin());
    }

private:
    static constexpr unsigned bitsOfCell = 32;
    static constexpr std::size_t pairCell = 0;
    static constexpr std::size_t leftCell = 1;
    static constexpr std::size_t firstBitCell = 2;

    [[nodiscard]] std::size_t partnerCell(int first) const
    {
        return firstBitCell + bitCells + static_cast<std::size_t>(first);
    }
    [[nodiscard]] std::uint32_t bitsAt(unsigned cell) const
    {
        return static_cast<std::uint32_t>(cells[firstBitCell + cell]);
    }
    void toggle(int second)
    {
        const auto position = static_cast<unsigned>(second);
        std::int32_t &cell = cells[firstBitCell + position / bitsOfCell];
        cell = static_cast<std::int32_t>(static_cast<std::uint32_t>(cell) ^
                                         1U << (position % bitsOfCell));
    }

    int sizeOfFirst_ = 0;
    int sizeOfSecond_ = 0;
    unsigned bitCells = 0;
    // Numbers of pairs and of elements that wait in the second list; a bit for each of these, set
    // while it waits; the partner of each element of the first list.
    std::vector<std::int32_t> cells;
};

} // namespace Planaria
