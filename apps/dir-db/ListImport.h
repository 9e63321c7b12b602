// Imports a list into a directory node by the rules and commands of the editor, without a window.
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
    bool replaces = false;             ///< the entries of the directory; else the list is appended
    bool dryRun = false;               ///< reports and writes nothing
    bool sharesPrompts = false;        ///< saves entries that share a prompt, about which the editor asks
    std::optional<ListRule> rule = {}; ///< for a file that the editor would ask about
    QString rejectedName = {};         ///< a new file for what becomes no entry; empty for none
    QString suggestedName = {};        ///< the same with what would make it entries, to be looked through
};

/// Takes what the editor would take. Prints every line that is refused, totals, and how many prompt numbers are free.
/// Returns whether the whole list was taken. If nothing of it can be taken, the directory stays as it is. Message nodes
/// of new entries are not made; it prints which are missing. Raises RuntimeError when it fails. Then nothing was
/// written, unless the save itself failed: the message says what the database holds then.
bool ImportList(const ListImportRequest& request);

} // namespace qor
