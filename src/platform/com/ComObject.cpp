#include "platform/com/ComObject.h"

namespace qor {

namespace {

std::atomic<int> serverUses = 0;

} // namespace

void AddServerUse()
{
    ++serverUses;
}

void ReleaseServerUse()
{
    --serverUses;
}

bool IsServerInUse()
{
    return serverUses > 0;
}

} // namespace qor
