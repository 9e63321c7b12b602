#include "platform/data/DeferredSync.h"

#include "platform/data/Engine.h"

#include <utility>

namespace qor {

DeferredSync::DeferredSync(Connection& connection)
{
    connection.RequireSameFile(u"Nothing was saved."_s);
    connection.OpenForWriting();
    mSync = connection.mEngine->DeferSync(connection);
}

DeferredSync::~DeferredSync()
{
    try {
        Finish();
    } catch (...) {
        // Whoever needs to know calls Finish.
    }
}

void DeferredSync::Finish()
{
    if (const auto sync = std::exchange(mSync, nullptr))
        sync->Finish();
}

} // namespace qor
