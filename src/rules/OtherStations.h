// What other stations do to a node that is open here. Only a shared database has other stations.
#pragma once

#include "rules/DirectoryNode.h"

#include <optional>

namespace qor {

/// What is known here of a node in the database.
struct KnownNode
{
    std::optional<DirectoryNode> stored; ///< as it was read last; nothing where it was not
    std::optional<DirectoryNode>
        attempted;          ///< by a save of ours since then whose end is not known: it may be there in part
    bool isDeleted = false; ///< by another station, as people know
};

/// What others changed since, for a question: how `found` differs from what is known, as lines for people. Empty when
/// nothing differs, and when all that differs is what a save of ours may have left.
/// found: what the database holds now; nothing for a node that was deleted.
QString ChangesOfOthers(const KnownNode& known, const std::optional<DirectoryNode>& found, int highestMessageNode);

} // namespace qor
