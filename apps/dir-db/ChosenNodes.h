// The directory nodes that a command line chooses, as the editor would load them.
#pragma once

#include "rules/DirectoryNode.h"

#include <functional>
#include <optional>

namespace qor {

struct NodeChoice
{
    Partition partition = {.config = 1, .number = 1};
    std::optional<qint16> node = {}; ///< nothing for all of the partition
};

class DataBase;

/// Passes them to `take` in the order of their numbers. Raises RuntimeError for a node that does not exist, for a
/// partition without any, and when the database cannot be read.
void ForEachChosenNode(DataBase& dataBase, const NodeChoice& choice,
                       const std::function<void(const DirectoryNode& node)>& take);

} // namespace qor
