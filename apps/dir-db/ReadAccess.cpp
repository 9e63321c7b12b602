#include "ReadAccess.h"

#include "platform/data/Connection.h"
#include "platform/data/LinkFile.h"
#include "platform/runtime/RuntimeError.h"

#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace qor {

namespace {

bool MayWrite(const QString& path)
{
    return faccessat(AT_FDCWD, QFile::encodeName(path), W_OK, AT_EACCESS) == 0;
}

std::optional<struct stat> StatusOf(const QString& path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path), &status) == 0 ? std::optional(status) : std::nullopt;
}

bool IsSame(const struct stat& one, const struct stat& other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino && one.st_size == other.st_size &&
           one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

void Open(Connection& connection, Access access)
{
    connection.SetAccess(access);
    connection.Open();
}

} // namespace

ReadAccess::ReadAccess(Connection& connection, const QString& fileName) : mFileName(fileName)
{
    connection.SetConnectionString(ConnectionStringFor(fileName));
    if (ServiceIn(fileName)) {
        Open(connection, Access::ReadOnly);
        return;
    }
    const QFileInfo file(QFileInfo(fileName).canonicalFilePath());
    const bool hasLog = QFileInfo(file.filePath() + u"-wal"_s).size() > 0;
    if (MayWrite(file.filePath()) && MayWrite(file.path())) {
        Open(connection, hasLog ? Access::ReadOnly : Access::ReadWrite);
        return;
    }
    try {
        Open(connection, Access::ReadOnly);
    } catch (const RuntimeError& error) {
        mFound = StatusOf(fileName);
        if (!mFound || error.Number() == ErrorNumber::DatabaseLocked)
            throw;
        if (hasLog || QFileInfo::exists(file.filePath() + u"-journal"_s))
            throw RuntimeError(
                error.Number(),
                u"The database %1 has a log beside it, which cannot be read where you may not write. Copy "
                "both files into a folder of yours and use the copy."_s.arg(fileName));
        Open(connection, Access::Unchanging);
    }
}

void ReadAccess::RequireUnchanged() const
{
    if (!mFound)
        return;
    const auto now = StatusOf(mFileName);
    if (!now || !IsSame(*mFound, *now))
        throw RuntimeError(ErrorNumber::Provider,
                           u"The database %1 was changed while it was read. Try again, or read it "
                           "where you may write beside it."_s.arg(mFileName));
}

} // namespace qor
