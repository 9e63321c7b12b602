#include "Backup.h"

#include "Check.h"
#include "NewFile.h"
#include "Output.h"
#include "PauseOfSaves.h"
#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "platform/data/DatabaseFile.h"
#include "platform/data/LinkFile.h"
#include "platform/runtime/RuntimeError.h"
#include "Progress.h"
#include "Query.h"
#include "ReadAccess.h"
#include "Replacement.h"
#include "store/CommandCatalog.h"

#include <QFile>
#include <QFileInfo>

namespace qor {

namespace {

void RequireFile(const QString& fileName, const QString& whatToDo)
{
    if (ServiceIn(fileName)) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"The file %1 is a link to a shared database. %2"_s.arg(fileName, whatToDo));
    }
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

/// Makes the file of what a sound database holds at one moment. The engine's statement for that reads in one
/// transaction, so it sees what is in the log and no half commit, and it leaves one file in rollback mode, which can be
/// read without a log, even on read-only media. (The engine has backup calls as well, but Qt does not give access to
/// them, and a second copy of the engine in this process would not know the locks of the first.)
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
        Query(source,
              u"PRAGMA schema_version"_s); // raises the fault as one of the source if that is what cannot be read
        throw RuntimeError(error.Number(), QString(error.Description()).replace(sourceName, file.Name()));
    }
    access.RequireUnchanged();
    QFile::setPermissions(file.BuiltName(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

/// New databases are in this mode; it is written into the file.
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
    RequireFile(fileName, u"Back it up with the tools of its server, or take it into a file with \"dir-db copy\"."_s);
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
    for (const QString& name : {copyName, fileName})
        RequireFile(name, u"Name a file, or take a sound copy there with \"dir-db copy\"."_s);
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
