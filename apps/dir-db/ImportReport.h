// Reports on a list that is imported into a directory node.
#pragma once

#include "rules/EntryList.h"

namespace qor {

class DataBase;

/// What an import is about to store.
struct ImportedNode
{
    DirectoryNode stored; ///< what is there so far
    DirectoryNode node;
    std::size_t takenCount = 0;
    ListReport report;
    int highestMessageNode = 0;
    int freePromptCount = 0;
};

/// "1 entry", "2 entries"
QString EntriesText(std::size_t count);

/// Prints every line that is refused. Unless reading the list failed, it prints totals as well, and how many prompt
/// numbers are free for the new entries.
void PrintReport(const QString& listName, const ImportedNode& imported);

/// Prints which message nodes the entries name that do not exist. Raises RuntimeError when that cannot be read.
void PrintMissingMessageNodes(DataBase& dataBase, const DirectoryNode& node);

} // namespace qor
