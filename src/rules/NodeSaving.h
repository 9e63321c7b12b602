// Writing a directory node into the configuration database.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

class DataBase;

/// Removes the node's entries, writes its row and its general-pool row and then its entries, numbered from 1 in their
/// order. Every command commits by itself and no transaction holds them together: a failure, which raises RuntimeError,
/// leaves what ran before it. Everything written is on disk when it returns.
void SaveNode(DataBase& dataBase, const DirectoryNode& node);

} // namespace qor
