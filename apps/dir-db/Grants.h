// Prints the rights that a server's roles need.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// Names of roles; empty for one that is not asked for.
struct GrantsRequest
{
    QString editor = {}; ///< of those who save
    QString reader = {}; ///< of those who only look
};

/// Prints the statements that give these roles no more rights than they need, for a superuser to run in the database
/// when its tables are made.
void PrintGrants(const GrantsRequest& request);

} // namespace qor
