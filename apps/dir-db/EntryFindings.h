// Looks at the entries of a database as the editor would show them.
#pragma once

#include "Findings.h"

namespace qor {

class Connection;
class RecordingFiles;

/// Entries whose message node is missing. The editor asks the general pool for it and copies it from the
/// message nodes, so it has to stand in both.
Finding FindMissingMessages(Connection& connection);

/// All that is odd in the entries, in one pass. recordings: unless null, names without a file are found, too.
Findings FindInEntries(Connection& connection, const RecordingFiles* recordings);

} // namespace qor
