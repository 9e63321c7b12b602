// A directory node as the editor would open it.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

class DataBase;

/// "DIR 7 in configuration 1, partition 1"
QString NameOf(const NodeIdentity& identity);

/// The highest number of a message node. Raises RuntimeError when there is none: the editor opens nothing then.
qint16 RequireHighestMessageNode(DataBase& dataBase, const Partition& partition);

/// Raises RuntimeError when the node does not exist.
DirectoryNode RequireNode(DataBase& dataBase, const NodeIdentity& identity, int highestMessageNode);

/// The product's folder for versions and reports: Misc, beside the folder of the database.
QString MiscFolderFor(const QString& databaseName);

/// Writes a new file that only its owner may read; it appears complete or not at all. Raises RuntimeError when it
/// cannot be made or its name is taken.
void WriteNewFile(const QString& fileName, const QByteArray& contents);

} // namespace qor
