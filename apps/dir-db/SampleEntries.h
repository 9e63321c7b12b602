// The people in the sample's directories: the same in every run.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

/// The entry at a 0-based position of a directory whose prompts run from 1 to `lastPrompt`. No two of the
/// first 500 have the same name or extension.
DirectoryEntry OrdinaryEntry(int position, int lastPrompt);

/// Entries with a missing, an empty, an extreme and an out-of-range value in every column that has a default. A null
/// text stands for Null.
int OddEntryCount();
DirectoryEntry OddEntry(int position);

} // namespace qor
