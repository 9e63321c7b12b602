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
    ReadOnly,  ///< leaves a log where it lies, which a writing connection would take into the file when it closes
    Unchanging ///< without locks and logs, for a file that nobody can change, as on read-only media
};

class Connection
{
public:
    Connection();
    /// Gives the connection back; every Command on it must be gone.
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// "Provider=<name>;Data Source=<file>"; the file name is the rest of the text.
    void SetConnectionString(const QString& connectionString) { mConnectionString = connectionString; }
    /// How the next Open opens the file; for reading and writing where nothing is said.
    void SetAccess(Access access) { mAccess = access; }
    /// How long opening and each command wait for a lock that another program holds; it counts at once, also for an
    /// open connection. Once such a wait was in vain, the next ones take a second at most, until a command succeeds.
    void SetLockTimeout(int milliseconds);

    /// Opens the file, or the server that it names; nothing when it is open. A file is never created, and its journal
    /// mode stays as found. Raises RuntimeError: unknown provider, no such file, another format, a lock. After a
    /// failure it may be called again.
    void Open();
    /// Not when the toolkit dropped all connections, with the end of an application object or of the process, and not
    /// after a command found the file out of reach (read-only, input or output, opening); Open then opens anew, and so
    /// does the next command.
    bool IsOpen() const;
    /// Gives the engine back; the next Open opens anew.
    void Close();
    /// Whether other stations write to it: a server, and no file; as it is open, or would be opened.
    bool IsShared() const;
    /// Raises RuntimeError when the name of the opened file leads to no file or to another one. outcome: a sentence
    /// that tells what became of the work. The connection is closed then; its log stays with the old file and is not
    /// laid over the new one. Nothing when it is not open.
    void RequireSameFile(const QString& outcome);
    /// Raises RuntimeError when the engine cannot hold this text in a column for texts. To be asked before what is
    /// stored makes way. Opens the connection if it is not open.
    void RequireStorable(const QString& text);
    /// While it stays, a server that was lost is not connected to anew, since what a save holds there went with the old
    /// connection. To be ended as often as it was asked for.
    void StayWithEngine(bool stays);

private:
    friend class Command;
    friend class DatabaseEngine;
    friend class DeferredSync;
    friend class SavingLock;

    /// Open, and anew when the file could not be written at the first time.
    void OpenForWriting();
    /// What a command has to raise, after the connection has drawn its conclusions from it.
    RuntimeError Failure(const QSqlError& error);
    void Succeeded();
    int LockTimeout() const;
    void ApplyLockTimeout() const;

    QString mConnectionString;
    Access mAccess = Access::ReadWrite;
    int mLockTimeout = 30'000;  // ms
    bool mWaitedInVain = false; ///< and no command has succeeded since
    bool mMayRepeat = false;    ///< what failed last, if it only reads
    int mStaysWithEngine = 0;   ///< how many ask for it
    std::unique_ptr<DatabaseEngine> mEngine;
};

} // namespace qor
