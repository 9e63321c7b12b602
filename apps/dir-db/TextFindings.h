// Looks at the texts of a database.
#pragma once

#include "Findings.h"

namespace qor {

class Connection;

/// The texts that are not UTF-8, in every table but that of the entries (see FindInEntries).
Finding FindForeignTexts(Connection& connection);

} // namespace qor
