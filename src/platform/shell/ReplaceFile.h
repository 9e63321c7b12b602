// Files that take the place of older ones in one step, and the folders that they need.
#pragma once

#include "platform/runtime/Text.h"

class QByteArray;

namespace qor {

enum class Readers { Owner, Everybody };

/// What holds of the new file.
struct Replacement
{
    Readers readers = Readers::Owner; ///< whatever the older file and the umask allow
    bool followsLink = false;         ///< else a link makes way for the file
    bool synced = true;               ///< it outlives a power loss; unsynced it outlives the process
};

/// Puts the contents in place of the file, or makes it. Raises RuntimeError when any of them cannot be written, or when
/// a folder, a pipe or a device has that name; the older file stays as it was then. A process that is killed leaves one
/// or the other; beside it may stay a file of that name with a point and six characters behind it.
void ReplaceFile(const QString& fileName, const QByteArray& contents, const Replacement& how);

/// Makes the folder and those above it that are missing; writing into it says why it could not be made. Others may
/// never write in it, and whether they may look into it is for the umask to say, unless everybody may.
void MakeFolder(const QString& path, Readers readers);

} // namespace qor
