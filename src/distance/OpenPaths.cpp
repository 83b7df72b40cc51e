#include "distance/OpenPaths.h"

#include <utility>

namespace Planaria {

void OpenPaths::insert(double cost, int path)
{
    entries.push_back({cost, births++, path});
    std::size_t index = entries.size() - 1;
    if (index % 2 == 1) {
        // The second entry of its node. Whichever bound it is, only that bound can now reach
        // beyond the parent's interval.
        if (isBefore(entries[index], entries[index - 1])) {
            std::swap(entries[index], entries[index - 1]);
            riseAsLower(index - 1);
        } else {
            riseAsUpper(index);
        }
    } else if (index > 0) {
        const std::size_t parent = (index / 2 - 1) / 2;
        if (isBefore(entries[index], entries[2 * parent]))
            riseAsLower(index);
        else
            riseAsUpper(index);
    }
}

OpenPaths::Entry OpenPaths::takeFirst()
{
    const Entry first = entries.front();
    entries.front() = entries.back();
    entries.pop_back();
    sinkLower();
    return first;
}

OpenPaths::Entry OpenPaths::takeLast()
{
    const std::size_t index = lastIndex();
    const Entry last = entries[index];
    entries[index] = entries.back();
    entries.pop_back();
    sinkUpper();
    return last;
}

void OpenPaths::riseAsLower(std::size_t index)
{
    while (index >= 2) {
        const std::size_t parent = 2 * ((index / 2 - 1) / 2);
        if (!isBefore(entries[index], entries[parent]))
            return;
        std::swap(entries[index], entries[parent]);
        index = parent;
    }
}

void OpenPaths::riseAsUpper(std::size_t index)
{
    while (index >= 2) {
        const std::size_t parent = 2 * ((index / 2 - 1) / 2) + 1;
        if (!isBefore(entries[parent], entries[index]))
            return;
        std::swap(entries[index], entries[parent]);
        index = parent;
    }
}

void OpenPaths::sinkLower()
{
    std::size_t node = 0;
    while (2 * node < entries.size()) {
        const std::size_t lower = 2 * node;
        if (isBefore(entries[upper(node)], entries[lower]))
            std::swap(entries[upper(node)], entries[lower]);

        std::size_t child = 2 * node + 1;
        if (2 * child >= entries.size())
            return;
        if (2 * (child + 1) < entries.size() &&
            isBefore(entries[2 * (child + 1)], entries[2 * child]))
            ++child;
        if (!isBefore(entries[2 * child], entries[lower]))
            return;
        std::swap(entries[2 * child], entries[lower]);
        node = child;
    }
}

void OpenPaths::sinkUpper()
{
    std::size_t node = 0;
    while (2 * node + 1 < entries.size()) {
        const std::size_t own = 2 * node + 1;
        if (isBefore(entries[own], entries[2 * node]))
            std::swap(entries[own], entries[2 * node]);

        std::size_t child = 2 * node + 1;
        if (2 * child >= entries.size())
            return;
        if (2 * (child + 1) < entries.size() &&
            isBefore(entries[upper(child)], entries[upper(child + 1)]))
            ++child;
        if (!isBefore(entries[own], entries[upper(child)]))
            return;
        std::swap(entries[own], entries[upper(child)]);
        node = child;
    }
}

} // namespace Planaria
