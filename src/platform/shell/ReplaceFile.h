// Puts files in the place of older ones in one step, and makes the folders that they need.
#pragma once

#include "platform/runtime/Text.h"

class QByteArray;

namespace qor {

enum class Readers { Owner, Everybody };

/// How a file is replaced.
struct Replacement
{
    Readers readers = Readers::Owner; ///< whatever the mode of the older file and the umask
    bool followsLink = false;         ///< else the link itself is replaced
    bool synced = true;               ///< survives a power loss; unsynced it survives the process
};

/// Replaces the file by one with these contents, or makes it. Raises RuntimeError when they cannot be written whole, or
/// when a folder, a pipe or a device has that name; the older file then stays as it was. A process that is killed
/// leaves the older file or the new one, and perhaps a third beside it: the same name, a dot and six characters.
void ReplaceFile(const QString& fileName, const QByteArray& contents, const Replacement& how);

/// Makes the folder and missing ones above it. Failing is silent: writing into the folder will say why. Others may
/// never write in it; whether they may look into it is up to the umask, unless the readers are Everybody.
void MakeFolder(const QString& path, Readers readers);

} // namespace qor
