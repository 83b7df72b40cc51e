#include "distance/AssignmentSearch.h"

namespace Planaria {

bool AssignmentSearch::takeStep(double best, Step *present)
{
    while (!steps.empty() && steps.back().cost > best)
        steps.pop_back();
    if (steps.empty())
        return false;
    *present = steps.back();
    steps.pop_back();
    current.shortenTo(present->pairs);
    current.add(present->second);
    return true;
}

void AssignmentSearch::open(double cost, int parent, int second)
{
    if (openPaths.size() == mostOpenPaths)
        release(openPaths.takeLast().path);
    openPaths.insert(cost, addPath(parent, second));
}

int AssignmentSearch::addPath(int parent, int second)
{
    Path path{parent, 1, second, 0};
    if (parent != none) {
        Path &extended = paths[static_cast<std::size_t>(parent)];
        ++extended.users;
        path.pairs = extended.pairs + 1;
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
    const auto pathAt = [this](int index) { return paths[static_cast<std::size_t>(index)]; };
    current.replace(pathAt(path).pairs, [&] {
        const Path last = pathAt(path);
        path = last.parent;
        return last.second;
    });
}

} // namespace Planaria
