#include "Backup.h"

#include "Check.h"
#include "NewFile.h"
#include "Output.h"
#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "platform/data/DatabaseFile.h"
#include "platform/runtime/RuntimeError.h"
#include "Progress.h"
#include "Query.h"
#include "ReadAccess.h"
#include "Replacement.h"
#include "store/CommandCatalog.h"

#include <fcntl.h>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

namespace qor {

namespace {

/// A save is many commits. While this lives none begins; it waits for the end of those that have begun. A save holds a
/// lock on a byte of the file beside the database that is named here, which byte is its own matter.
class PauseOfSaves
{
public:
    explicit PauseOfSaves(const QString& fileName) : mLocked(QFileInfo(fileName).canonicalFilePath() + u"-saving"_s)
    {
        if (!mLocked.open(QIODevice::ReadOnly | QIODevice::ExistingOnly))
            return; // nobody has saved yet, or where we may not look
        const Progress progress("Waiting for the end of a save");
        constexpr int longestSave = 30'000; // ms
        constexpr unsigned long lookEvery = 20;
        for (const QDeadlineTimer deadline(longestSave); !Lock(); QThread::msleep(lookEvery)) {
            if (deadline.hasExpired())
                throw RuntimeError(ErrorNumber::Provider, u"The database %1 is being saved by another program. Wait "
                                                          "until that has finished and try again."_s.arg(fileName));
        }
    }

private:
    /// Against every byte, and gone with the file's descriptor.
    bool Lock()
    {
        struct flock all = {};
        all.l_type = F_RDLCK;
        all.l_whence = SEEK_SET;
        return fcntl(mLocked.handle(), F_OFD_SETLK, &all) == 0;
    }

    QFile mLocked;
};

void RequireSound(Connection& connection, const QString& fileName)
{
    const QStringList reasons = FindUnsoundness(connection);
    if (!reasons.isEmpty())
        throw RuntimeError(ErrorNumber::Provider,
                           u"The database %1 is not sound. %2 Choose another file; \"dir-db check\" tells more."_s.arg(
                               fileName, reasons[0]));
}

/// "7 directory nodes, 567 entries"
QString ContentsOf(const NewFile& file)
{
    Connection connection;
    connection.SetConnectionString(ConnectionStringFor(file.BuiltName()));
    return u"%1 directory nodes, %2 entries"_s
        .arg(CountOf(connection, u"Node_DIR WHERE NodeTypeID = ?1"_s, {NODE_TYPE_DIR}))
        .arg(CountOf(connection, u"Detail_DIR"_s));
}

/// Builds the file from what a database holds at one moment, if that is sound. The engine's statement for it reads in
/// one transaction, so that it sees what the log holds and no half commit, and leaves one file in rollback mode, which
/// can be read without a log, from read-only media too. (Its other way, the backup calls, is beyond what Qt hands
/// through; a second copy of the engine in this process would not know the locks of the first.)
void TakeSnapshot(const QString& sourceName, const NewFile& file)
{
    const Progress progress("Copying the database");
    Connection source;
    const ReadAccess access(source, sourceName);
    RequireSound(source, sourceName);
    const PauseOfSaves pause(sourceName);
    try {
        Command(source, u"the copy"_s, u"VACUUM INTO ?1"_s, 1).Execute({file.BuiltName()});
    } catch (const RuntimeError& error) {
        Query(source, u"PRAGMA schema_version"_s); // the fault is told as the source's if it can no longer be read
        throw RuntimeError(error.Number(), QString(error.Description()).replace(sourceName, file.Name()));
    }
    access.RequireUnchanged();
    QFile::setPermissions(file.BuiltName(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

/// As a new database is; the mode is written into the file.
void SetWriteAheadMode(const NewFile& file)
{
    Connection connection;
    connection.SetConnectionString(ConnectionStringFor(file.BuiltName()));
    if (Query(connection, u"PRAGMA journal_mode = WAL"_s).Field(0).toString() != u"wal")
        ThrowFileNotMade(file.Name(), u"its file system has no write-ahead mode; choose a folder on a local disk"_s);
}

} // namespace

void BackUpDatabase(const QString& fileName, const QString& copyName)
{
    RequireFreeName(copyName);
    NewFile copy(copyName);
    TakeSnapshot(fileName, copy);
    const QString contents = ContentsOf(copy);
    copy.Appear();
    PrintLine(u"%1: made (%2)"_s.arg(copyName, contents));
}

void RestoreDatabase(const QString& copyName, const QString& fileName)
{
    const QString target = RequireReplaceable(fileName);
    if (QFileInfo(copyName).canonicalFilePath() == target)
        ThrowFileNotMade(fileName, u"it is the copy itself; name the copy first, then the database"_s);
    NewFile restored(target);
    TakeSnapshot(copyName, restored);
    const QString contents = ContentsOf(restored);
    SetWriteAheadMode(restored);
    const QStringList kept = ReplaceDatabase(restored);
    PrintLine(u"%1: restored (%2)"_s.arg(fileName, contents));
    if (!kept.isEmpty())
        PrintLine(u"What was there before is kept: "_s + kept.join(u", "_s));
}

} // namespace qor
