// Finds what other stations have done to a node that is open here. Only a shared database has other stations.
#pragma once

#include "rules/DirectoryNode.h"

#include <optional>

namespace qor {

/// What this editor knows of a node in the database.
struct KnownNode
{
    std::optional<DirectoryNode> stored; ///< as it was last read; nothing if it was not
    /// By a save of ours since then that may or may not have ended: it may be stored in part.
    std::optional<DirectoryNode> attempted;
    bool isDeleted = false; ///< by another station, and the user knows
};

/// What others have changed since, as lines of a question: how `found` differs from what is known. Empty when nothing
/// differs, or only in what a save of ours may have left.
/// found: what the database holds now; nothing for a node that was deleted.
QString ChangesOfOthers(const KnownNode& known, const std::optional<DirectoryNode>& found, int highestMessageNode);

} // namespace qor
