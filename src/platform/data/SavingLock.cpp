#include "platform/data/SavingLock.h"

#include "platform/data/Engine.h"

namespace qor {

SavingLock::SavingLock(Connection& connection, qint64 section)
{
    connection.Open();
    connection.RequireSameFile(u"Nothing was saved."_s);
    mHeld = connection.mEngine->Lock(connection, section, connection.LockTimeout());
}

SavingLock::~SavingLock() = default;

} // namespace qor
