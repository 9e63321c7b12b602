// What a database file is, seen from outside the engine, and the making of a new one.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>
#include <sys/types.h>

namespace qor {

/// Raises RuntimeError unless a file of this name exists that is not empty. It only asks the file system:
/// opening and closing the file would drop the locks that an engine in this process holds on it.
void RequireDatabaseFile(const QString& fileName);

/// Which file it is, whatever its name.
struct FileIdentity
{
    dev_t device;
    ino_t inode;

    bool operator==(const FileIdentity&) const = default;
};

/// What to say of a file that only later versions of the engine know.
inline constexpr char newerFormatSentence[] =
    "has a newer format than the database engine of this computer. Update the package libsqlite3-0.";

/// Nothing when no file can be reached under this name.
std::optional<FileIdentity> IdentityOf(const QString& fileName);

/// A sentence on a file that the engine does not take for a database: what it is and what to do. It reads the
/// file's first bytes, so call it only after the engine has refused the file.
QString ForeignFileSentence(const QString& fileName);

/// The engine makes its files beside the database with the permissions that the database has then, and a log that stays
/// read-only stops every save. Gives those of ours the permissions that the database has now.
void MendPermissions(const QString& canonicalPath);

/// Whether the file is of a format that the engine reads or writes in its later versions only. The same holds.
bool HasNewerFormat(const QString& fileName);

/// Raises RuntimeError: "The file %1 cannot be made: " and why.
[[noreturn]] void ThrowFileNotMade(const QString& fileName, const QString& why);
[[noreturn]] void ThrowFileExists(const QString& fileName);

/// Makes a new, empty database in write-ahead mode that only its owner may read (it will hold passwords).
/// Raises RuntimeError when the file exists already or cannot be made; then nothing is left behind.
void CreateDatabaseFile(const QString& fileName);

} // namespace qor
