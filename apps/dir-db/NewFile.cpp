#include "NewFile.h"

#include "platform/data/DatabaseFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace qor {

namespace {

/// Zero, or the number of the system's error; one of them is that the new name is taken.
int MoveToFreeName(const QByteArray& from, const QByteArray& to)
{
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return 0;
    // Where the file system has no such move, a second name for the file does the same: its folder is removed
    // with the first one.
    if (errno == EINVAL && link(from, to) == 0)
        return 0;
    return errno;
}

/// Zero, or the number of the system's error.
int Sync(const QString& path)
{
    const int descriptor = open(QFile::encodeName(path), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    const int error = fsync(descriptor) == 0 ? 0 : errno;
    close(descriptor);
    return error;
}

void RequireDone(int error, const QString& fileName)
{
    if (error != 0)
        ThrowFileNotMade(fileName, qt_error_string(error));
}

} // namespace

void RequireFreeName(const QString& fileName)
{
    if (QFileInfo::exists(fileName))
        ThrowFileExists(fileName);
    for (const QString& log : {fileName + u"-wal"_s, fileName + u"-journal"_s}) {
        if (QFileInfo::exists(log))
            ThrowFileNotMade(fileName, u"%1 is left over from an earlier database; move it away first"_s.arg(log));
    }
}

void SyncFolderOf(const QString& fileName)
{
    const int error = Sync(QFileInfo(fileName).path());
    if (error != EACCES) // a folder in which one may write need not be readable
        RequireDone(error, fileName);
}

NewFile::NewFile(const QString& fileName) : mName(fileName), mFolder(fileName) {}

void NewFile::Appear()
{
    RequireDone(Sync(BuiltName()), mName);
    const int error = MoveToFreeName(QFile::encodeName(BuiltName()), QFile::encodeName(mName));
    if (error == EEXIST)
        ThrowFileExists(mName);
    RequireDone(error, mName);
    SyncFolderOf(mName);
}

void NewFile::Replace()
{
    RequireDone(Sync(BuiltName()), mName);
    RequireDone(std::rename(QFile::encodeName(BuiltName()), QFile::encodeName(mName)) == 0 ? 0 : errno, mName);
    SyncFolderOf(mName);
}

} // namespace qor
