// Writing a directory node into the configuration database.
#pragma once

#include "rules/OtherStations.h"

namespace qor {

class DataBase;

/// Removes the node's entries, writes its row and its general-pool row and then its entries, numbered from 1 in their
/// order. Every command commits by itself and no transaction holds them together: a failure, which raises RuntimeError,
/// leaves what ran before it, and its sentence says how many entries the database holds then. Everything written is on
/// disk when it returns.
void SaveNode(DataBase& dataBase, const DirectoryNode& node);

/// Raises RuntimeError when the disk may be full before a save is done. Ask before a save that has no list to fall back
/// on: it removes the stored entries first. A shared database has its disk elsewhere.
void RequireRoomForSave(const DataBase& dataBase, const QString& databaseFolder);

struct SaveResult
{
    bool isOvertaken = false;            ///< another station saved the node just before; nothing was saved here
    std::optional<DirectoryNode> stored; ///< what LoadNode reads now; nothing when it cannot, or the node has no row
};

/// Keeps what is stored of the node as an earlier version in the Misc folder, and saves it. One save of a node runs at
/// a time: others wait. In a shared database nothing is saved when the node there is not as it is known here. Raises
/// RuntimeError as SaveNode does; a version that cannot be kept is told on standard error, once.
SaveResult SaveNodeKeepingVersion(DataBase& dataBase, const DirectoryNode& node, const KnownNode& known,
                                  const QString& miscFolder, int highestMessageNode);

} // namespace qor
