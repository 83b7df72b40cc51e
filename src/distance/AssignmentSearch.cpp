#include "distance/AssignmentSearch.h"

namespace Planaria {

// --- The walk ---

void AssignmentSearch::countOrders(int most)
{
    if (orders.empty())
        orders.push_back(1.0);
    while (std::ssize(orders) <= most)
        orders.push_back(orders.back() * static_cast<double>(orders.size()));
}

void AssignmentSearch::moveBestToEnd(std::size_t begin)
{
    const auto added = steps.begin() + static_cast<std::ptrdiff_t>(begin);
    if (added == steps.end())
        return;
    const auto isBetter = [](const Step &a, const Step &b) { return a.least < b.least; };
    std::iter_swap(std::prev(steps.end()), std::min_element(added, steps.end(), isBetter));
}

bool AssignmentSearch::takeStep(Step *present)
{
    while (!steps.empty() && steps.back().cost > best)
        steps.pop_back();
    if (steps.empty())
        return false;
    *present = steps.back();
    steps.pop_back();
    while (current.pairCount() > present->pairs) {
        current.takeBack(trail.back());
        trail.pop_back();
    }
    current.add(present->second);
    trail.push_back(present->second);
    return true;
}

// --- The search ---

void AssignmentSearch::addExtension(double cost, int second)
{
    if (openPaths.size() + extensions.size() == openPathLimit)
        giveUpDearest();
    extensions.push_back({cost, second});
    dearestExtension = std::max(dearestExtension, cost);
}

void AssignmentSearch::giveUpDearest()
{
    if (dearestExtension <= openPaths.highestCost()) {
        rows.release(openPaths.takeLast().row);
        return;
    }
    const auto isCheaper = [](const Extension &a, const Extension &b) { return a.cost < b.cost; };
    extensions.erase(std::max_element(extensions.begin(), extensions.end(), isCheaper));
    dearestExtension = 0.0;
    for (const Extension &extension : extensions)
        dearestExtension = std::max(dearestExtension, extension.cost);
}

void AssignmentSearch::openExtensions()
{
    const int row = rows.add(current.row(), static_cast<int>(extensions.size()));
    for (const Extension &extension : extensions)
        openPaths.insert({extension.cost, row, extension.second});
    extensions.clear();
    dearestExtension = 0.0;
}

double AssignmentSearch::exposeFirst()
{
    const OpenPath first = openPaths.takeFirst();
    current.setRow(rows.row(first.row));
    current.add(first.second);
    rows.release(first.row);
    return first.cost;
}

} // namespace Planaria
