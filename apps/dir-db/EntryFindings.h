// Looks at the entries of a database as the editor would show them.
#pragma once

#include "Findings.h"

namespace qor {

class DataBase;

/// Entries whose message node is missing. The editor asks the general pool for it and copies it from the
/// message nodes, so it has to stand in both.
Finding FindMissingMessages(DataBase& dataBase);

/// Every kind: missing message nodes, prompts that a directory has twice, rows that the editor marks as invalid
/// and values in whose place it shows a default.
Findings FindInEntries(DataBase& dataBase);

} // namespace qor
