#include "distance/Assignment.h"

namespace Planaria {

void Assignment::reset(int newSizeOfFirst, int newSizeOfSecond)
{
    sizeOfFirst_ = newSizeOfFirst;
    sizeOfSecond_ = newSizeOfSecond;
    bitCells = (static_cast<unsigned>(newSizeOfSecond) + bitsOfCell - 1) / bitsOfCell;
    cells.assign(partnerCell(0), 0);
    cells.resize(partnerCell(sizeOfFirst_), waiting);
    cells[leftCell] = sizeOfSecond_;
    for (int second = 0; second < sizeOfSecond_; ++second)
        toggle(second);
}

void Assignment::takeBack(int second)
{
    --cells[pairCell];
    if (pairCount() < sizeOfFirst_)
        cells[partnerCell(pairCount())] = waiting;
    if (second != none) {
        toggle(second);
        ++cells[leftCell];
    }
}

} // namespace Planaria
