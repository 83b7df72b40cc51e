#include "distance/AssignmentSearch.h"

#include <algorithm>

namespace Planaria {

int AssignmentSearch::addPath(int parent, int second, int placed)
{
    Path path;
    path.parent = parent;
    path.second = second;
    if (parent != none) {
        Path &extended = paths[static_cast<std::size_t>(parent)];
        ++extended.users;
        path.pairs = extended.pairs + 1;
        path.placedOfSecond = extended.placedOfSecond + placed;
    }

    if (freePaths.empty()) {
        paths.push_back(path);
        return static_cast<int>(paths.size()) - 1;
    }
    const int index = freePaths.back();
    freePaths.pop_back();
    paths[static_cast<std::size_t>(index)] = path;
    return index;
}

void AssignmentSearch::release(int path)
{
    while (path != none) {
        Path &released = paths[static_cast<std::size_t>(path)];
        if (--released.users > 0)
            return;
        freePaths.push_back(path);
        path = released.parent;
    }
}

void AssignmentSearch::expose(int path)
{
    std::fill(partnersOfFirst.begin(), partnersOfFirst.end(), waiting);
    std::fill(partnersOfSecond.begin(), partnersOfSecond.end(), waiting);
    while (true) {
        const Path &last = paths[static_cast<std::size_t>(path)];
        if (last.parent == none)
            return;
        const int first = last.pairs <= firstSize ? last.pairs - 1 : none;
        if (first != none)
            partnersOfFirst[static_cast<std::size_t>(first)] = last.second;
        if (last.second != none)
            partnersOfSecond[static_cast<std::size_t>(last.second)] = first;
        path = last.parent;
    }
}

} // namespace Planaria
