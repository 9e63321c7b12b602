// Writes a directory node into the configuration database.
#pragma once

#include "rules/OtherStations.h"

namespace qor {

class DataBase;

/// Removes the node's entries, writes its row and its general-pool row, and then its entries, numbered from 1 in their
/// order. Each command commits by itself and no transaction holds them together. That is the product's contract: a save
/// that is cut short leaves what ran before it, and the message of the RuntimeError that it raises says how many
/// entries the database holds then. Nobody loses a list by it, since a draft and the version before are kept beside the
/// database. Everything written is on disk when this returns.
void SaveNode(DataBase& dataBase, const DirectoryNode& node);

/// Raises RuntimeError when the disk may be full before a save is done. Call it before a save whose list is kept
/// nowhere else, because the save removes the stored entries first. The disk of a shared database is elsewhere.
void RequireRoomForSave(const DataBase& dataBase, const QString& databaseFolder);

struct SaveResult
{
    bool isOvertaken = false;            ///< another station saved the node just before; nothing was saved here
    std::optional<DirectoryNode> stored; ///< what LoadNode reads now; nothing when it cannot, or the node has no row
};

/// Keeps what is stored of the node as an earlier version in the Misc folder, and saves the node. Saves of one node
/// take turns. In a shared database nothing is saved when the stored node is not as it is known here. Raises
/// RuntimeError as SaveNode does; a version that cannot be kept is only reported on standard error, once.
SaveResult SaveNodeKeepingVersion(DataBase& dataBase, const DirectoryNode& node, const KnownNode& known,
                                  const QString& miscFolder, int highestMessageNode);

} // namespace qor
