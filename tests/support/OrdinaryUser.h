// What permissions stop: tests run as root here, as somebody else there.
#pragma once

#include <cstdlib>
#include <QScopeGuard>
#include <unistd.h>

namespace qor {

/// Permissions stop ordinary users only: runs the body as one, or not at all.
template <typename Body>
bool RunAsOrdinaryUser(Body&& body)
{
    const bool isRoot = geteuid() == 0;
    if (isRoot && seteuid(65534) != 0)
        return false;
    const auto guard = qScopeGuard([isRoot] {
        if (isRoot && seteuid(0) != 0)
            std::abort();
    });
    body();
    return true;
}

} // namespace qor
