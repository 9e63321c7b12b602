// A list into a directory node, by the rules and with the commands of the editor and without a window.
#pragma once

#include "rules/DirectoryNode.h"

#include <optional>

namespace qor {

enum class ListRule {
    Plain, ///< three fields for an entry, split at commas and line ends
    Table, ///< the rows of a table
};

struct ListImportRequest
{
    QString fileName; ///< of the database
    QString listName;
    NodeIdentity node{{1, 1}, 0};
    bool replaces = false;             ///< the entries of the directory make way; else those of the list follow them
    bool dryRun = false;               ///< reports and writes nothing
    bool sharesPrompts = false;        ///< saves entries that share a prompt, about which the editor asks
    std::optional<ListRule> rule = {}; ///< for a file that the editor would ask about
    QString rejectedName = {};         ///< a new file for what becomes no entry; empty for none
    QString suggestedName = {};        ///< the same with what would make it entries, to be looked through
};

/// Takes what the editor would take, and prints every line that is refused, totals, and how many prompt numbers are
/// free. Returns whether the whole list was taken. Where nothing of it can be taken the directory stays as it is. The
/// message nodes of new entries are not made; it prints which are missing. Raises RuntimeError when it fails, and then
/// nothing was written, unless the save itself failed: the sentence tells what the database holds then.
bool ImportList(const ListImportRequest& request);

} // namespace qor
