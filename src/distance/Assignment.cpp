#include "distance/Assignment.h"

namespace Planaria {

void Assignment::reset(int sizeOfFirst, int sizeOfSecond)
{
    pairs.clear();
    partnersOfFirst.assign(static_cast<std::size_t>(sizeOfFirst), waiting);
    partnersOfSecond.assign(static_cast<std::size_t>(sizeOfSecond), waiting);
    left = sizeOfSecond;
}

void Assignment::shortenTo(int count)
{
    while (pairCount() > count) {
        const int second = pairs.back();
        pairs.pop_back();
        const int first = nextOfFirst();
        if (first != none)
            partnersOfFirst[static_cast<std::size_t>(first)] = waiting;
        if (second != none) {
            partnersOfSecond[static_cast<std::size_t>(second)] = waiting;
            ++left;
        }
    }
}

} // namespace Planaria
