// A connection to a database, named by a connection string.
#pragma once

#include "platform/runtime/Text.h"

#include <memory>

namespace qor {

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
    /// How long a statement waits for a lock that another program holds.
    void SetLockTimeout(int milliseconds) { mLockTimeout = milliseconds; }

    /// Opens the file; nothing when it is open. A file is never created, and its
    /// journal mode stays as found. Raises RuntimeError: unknown provider, no such file, another format.
    void Open();
    /// Not when the toolkit dropped all connections, with the end of an application object or of the process; Open then
    /// opens anew.
    bool IsOpen() const;

private:
    friend class Command;
    friend class DeferredSync;
    struct Engine;

    QString mConnectionString;
    Access mAccess = Access::ReadWrite;
    int mLockTimeout = 30'000; // ms
    std::unique_ptr<Engine> mEngine;
};

} // namespace qor
