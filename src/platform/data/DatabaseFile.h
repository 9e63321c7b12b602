// Looks at database files from outside the engine, and makes new ones.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>
#include <sys/types.h>

namespace qor {

/// Raises RuntimeError unless a file of this name exists and is not empty. It only asks the file system: opening and
/// closing the file would drop the locks that an engine in this process holds on it.
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

/// What a file is that the engine refuses, and what to do about it, as the end of a sentence. Reads its first bytes, so
/// call it only after the engine has refused the file.
QString ForeignFileSentence(const QString& fileName);

/// Gives our log and index beside the database the permissions that the database has now. The engine made them with
/// those of that time, and a log that stayed read-only would stop every save.
void MendPermissions(const QString& canonicalPath);

/// Whether only later versions of the engine can read or write the file. Reads its first bytes, too.
bool HasNewerFormat(const QString& fileName);

/// Raises RuntimeError: "The file %1 cannot be made: " and why.
[[noreturn]] void ThrowFileNotMade(const QString& fileName, const QString& why);
[[noreturn]] void ThrowFileExists(const QString& fileName);

/// Makes a new, empty database in write-ahead mode that only its owner may read (it will hold passwords).
/// Raises RuntimeError when the file exists already or cannot be made; then nothing is left behind.
void CreateDatabaseFile(const QString& fileName);

} // namespace qor
