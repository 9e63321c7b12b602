// The listing of a partition's directory nodes and their entries.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

struct ShowRequest
{
    QString fileName = {};
    Partition partition = {.config = 1, .number = 1};
    bool asCsv = false;
    bool withPasswords = false; ///< and with access codes
};

/// Prints the values as they are stored, with a sign in place of each character that would command a terminal. Raises
/// RuntimeError for a file that does not open or has other tables.
void ShowPartition(const ShowRequest& request);

} // namespace qor
