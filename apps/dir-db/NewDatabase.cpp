#include "NewDatabase.h"

#include "platform/data/Command.h"
#include "platform/data/DatabaseFile.h"
#include "platform/runtime/RuntimeError.h"
#include "Query.h"
#include "Schema.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <QFileInfo>
#include <QTemporaryDir>
#include <unistd.h>

namespace qor {

namespace {

void RunStatement(Connection& connection, const QString& text)
{
    Command(connection, text, text, 0).Execute({});
}

void Build(const QString& fileName, const FillDatabase& fill)
{
    CreateDatabaseFile(fileName);
    DataBase dataBase(ConnectionStringFor(fileName));
    Connection& connection = dataBase.Conn;
    RunStatement(connection, u"BEGIN"_s);
    for (const SchemaTable& table : Schema())
        RunStatement(connection, CreateTableText(table));
    fill(dataBase);
    RunStatement(connection, u"COMMIT"_s);
    // Closing would do this too, but keep a full disk to itself.
    if (Query(connection, u"PRAGMA wal_checkpoint(TRUNCATE)"_s).Field(0).toInt() != 0)
        ThrowFileNotMade(fileName, u"its log cannot be taken into it"_s);
}

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

void MakeDatabase(const QString& fileName, const FillDatabase& fill)
{
    RequireFreeName(fileName);
    // A folder of our own takes the engine's files beside the database with it, however this ends.
    const QTemporaryDir folder(QFileInfo(fileName).path() + u"/.dir-db-XXXXXX"_s);
    if (!folder.isValid())
        ThrowFileNotMade(fileName, folder.errorString() + u"; choose a folder that you may write to"_s);
    const QString builtName = folder.filePath(u"database"_s);
    try {
        Build(builtName, fill);
    } catch (const RuntimeError& error) {
        // People know the file by the name that they gave.
        throw RuntimeError(error.Number(), QString(error.Description()).replace(builtName, fileName));
    }
    const int error = MoveToFreeName(QFile::encodeName(builtName), QFile::encodeName(fileName));
    if (error == EEXIST)
        ThrowFileExists(fileName);
    if (error != 0)
        ThrowFileNotMade(fileName, qt_error_string(error));
}

} // namespace qor
