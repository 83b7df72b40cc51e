#include "db/WholeWrite.h"

#include "db/DB.h"

namespace Planaria {

WholeWrite::WholeWrite(DB *database) : db(database)
{
    bool locked = false;
    begun = db->startWholeWrite(&locked);
    if (begun)
        state_ = State::Open;
    else if (locked)
        state_ = State::Locked;
}

WholeWrite::~WholeWrite()
{
    if (begun)
        db->endWholeWrite();
}

WholeWrite::State WholeWrite::state()
{
    if (state_ == State::Open && !db->isWholeWriteAlive())
        state_ = State::Ended;
    return state_;
}

bool WholeWrite::commit()
{
    if (state() != State::Open)
        return false;
    state_ = State::Ended;
    return db->commitWholeWrite();
}

} // namespace Planaria
