// A connection to a database, named by a connection string.
#pragma once

#include "platform/runtime/Text.h"

#include <memory>

class QSqlError;

namespace qor {

class DatabaseEngine;
class RuntimeError;

/// "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" and the file name.
QString ConnectionStringFor(const QString& fileName);

enum class Access {
    ReadWrite,
    ReadOnly,  ///< leaves a log beside the file alone; a writing connection merges it when it closes
    Unchanging ///< without locks and logs, for a file that nobody can change, as on read-only media
};

class Connection
{
public:
    Connection();
    /// Every Command on it must be gone, or the connection closed.
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// "Provider=<name>;Data Source=<file>"; the file name is the rest of the text.
    void SetConnectionString(const QString& connectionString) { mConnectionString = connectionString; }
    /// How the next Open opens the file; ReadWrite unless set.
    void SetAccess(Access access) { mAccess = access; }
    /// How long opening and each command wait for a lock of another program; it takes effect at once. After a wait in
    /// vain the next ones take a second at most until a command succeeds, so that a save of many commands costs one
    /// long wait.
    void SetLockTimeout(int milliseconds);

    /// Opens the file, or the server that it names, unless it is open. A file is never created, and its journal mode
    /// stays as found. Raises RuntimeError: unknown provider, no such file, another format, a lock. After a failure it
    /// may be called again.
    void Open();
    /// False also when the toolkit has dropped all connections, at the end of an application object or of the process,
    /// and when a command found the file out of reach (read-only, input or output, opening). Open then opens anew, and
    /// so does the next command.
    bool IsOpen() const;
    /// Drops the engine; the next Open opens anew.
    void Close();
    /// Whether other stations can write to it: true for a server, false for a file. It answers for what is open or
    /// would be opened.
    bool IsShared() const;
    /// Raises RuntimeError when the name of the opened file now leads to another file or to none, and closes the
    /// connection. The log is merged into the old file first; it would be applied to the new one. outcome: a sentence
    /// of the message that says what became of the work. Does nothing when it is not open.
    void RequireSameFile(const QString& outcome);
    /// Raises RuntimeError when the engine cannot store this text. Call it before what is stored is removed. Opens the
    /// connection if it is not open.
    void RequireStorable(const QString& text);
    /// After true, and until false, a lost server is not connected to again: the lock and settings of a save were those
    /// of the lost session. Calls nest.
    void StayWithEngine(bool stays);

private:
    friend class Command;
    friend class DatabaseEngine;
    friend class DeferredSync;
    friend class SavingLock;

    /// Opens, and opens again if the file could not be written the first time.
    void OpenForWriting();
    /// The error that a failed command raises. Draws the connection's conclusions from it first.
    RuntimeError Failure(const QSqlError& error);
    void Succeeded();
    int LockTimeout() const;
    void ApplyLockTimeout() const;

    QString mConnectionString;
    Access mAccess = Access::ReadWrite;
    int mLockTimeout = 30'000;  // ms
    bool mWaitedInVain = false; ///< and no command has succeeded since
    bool mMayRepeat = false;    ///< the command that failed last, if it only reads
    int mStaysWithEngine = 0;   ///< how often it was asked for
    std::unique_ptr<DatabaseEngine> mEngine;
};

} // namespace qor
