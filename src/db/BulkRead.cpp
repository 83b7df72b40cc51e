#include "db/BulkRead.h"

#include "db/DB.h"

namespace Planaria {

BulkRead::BulkRead(DB *database) : db(database)
{
    db->startBulkRead();
}

BulkRead::~BulkRead()
{
    db->endBulkRead();
}

} // namespace Planaria
