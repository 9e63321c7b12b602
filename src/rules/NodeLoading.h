// Reads directory nodes, and what their partition sets for them, from the configuration database. Every function raises
// RuntimeError when the database cannot be read.
#pragma once

#include "rules/DirectoryNode.h"

#include <optional>
#include <QStringList>

namespace qor {

class DataBase;

/// The directory nodes of a partition.
struct DirectoryNodeNumbers
{
    std::vector<qint16> numbers; ///< in ascending order
    QStringList unusable;        ///< stored numbers that are not whole numbers of 16 bits
};
DirectoryNodeNumbers FindDirectoryNodes(DataBase& dataBase, const Partition& partition);

/// The highest number that a message node of the partition may have; nothing when it is not defined, or not a whole
/// number above 0. Raises RuntimeError for one that is not a number, or does not fit into 16 bits.
std::optional<qint16> HighestMessageNode(DataBase& dataBase, const Partition& partition);

/// A node with its entries, or nothing when it does not exist. Missing values are replaced, so that every value can be
/// shown; a starting prompt that is not from 1 to highestMessageNode becomes 1.
std::optional<DirectoryNode> LoadNode(DataBase& dataBase, const NodeIdentity& identity, int highestMessageNode);

/// Whether LoadNode returns `loaded` when `node` is stored.
bool IsLoadedFrom(const DirectoryNode& loaded, const DirectoryNode& node, int highestMessageNode);

} // namespace qor
