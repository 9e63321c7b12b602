// The earlier versions of a directory node that the editor keeps beside the database.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

struct HistoryRequest
{
    QString fileName = {};
    NodeIdentity node = {.partition = {.config = 1, .number = 1}, .number = 0};
};

/// Prints when and by whom a save replaced each version, its number of entries and what restoring it would change, the
/// youngest first, or that there are none. Raises RuntimeError when the database cannot be read, and for a node that is
/// neither stored nor kept.
void PrintHistory(const HistoryRequest& request);

} // namespace qor
