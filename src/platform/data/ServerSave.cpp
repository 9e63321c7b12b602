// What a save needs of a server: a lock that ends with the session, and commits that wait for the disk once.
#include "platform/data/Command.h"
#include "platform/data/SavingLock.h"
#include "platform/data/ServerEngine.h"

namespace qor {

namespace {

void Run(Connection& connection, const QString& text)
{
    Command(connection, text, text, 0).Execute({});
}

class ServerLock : public EngineLock
{
public:
    ServerLock(Connection& connection, qint64 key) : mConnection(connection), mKey(key)
    {
        // Run as a command that reads: a session that was lost while nobody worked is replaced here.
        Command(connection, u"the lock of a save"_s, u"SELECT pg_advisory_lock(%1)"_s.arg(mKey), 0).Open({});
        mConnection.StayWithEngine(true);
    }
    ~ServerLock() override
    {
        try {
            if (mConnection.IsOpen())
                Command(mConnection, u"the end of a save"_s, u"SELECT pg_advisory_unlock(%1)"_s.arg(mKey), 0).Open({});
        } catch (...) {
            // The lock goes with the session.
        }
        mConnection.StayWithEngine(false);
    }
    Q_DISABLE_COPY_MOVE(ServerLock)

private:
    Connection& mConnection;
    qint64 mKey;
};

class ServerSync : public EngineSync
{
public:
    explicit ServerSync(Connection& connection) : mConnection(connection)
    {
        Run(mConnection, u"SET synchronous_commit = off"_s);
        mConnection.StayWithEngine(true);
    }
    ~ServerSync() override { mConnection.StayWithEngine(false); }
    Q_DISABLE_COPY_MOVE(ServerSync)

    /// The setting alone writes nothing, and other sessions need not either. A message in the log, committed in this
    /// session, takes all commits before it to the disk. Two commands, because of several statements in one the toolkit
    /// only reports what the first one returned.
    void Finish() override
    {
        Run(mConnection, u"SET synchronous_commit = on"_s);
        Run(mConnection, u"SELECT pg_logical_emit_message(true, '', '')"_s);
    }

private:
    Connection& mConnection;
};

/// The upper bits of our keys, "QD", set them apart from those of other programs on the same database. The lower ones
/// are the section.
constexpr qint64 ourKeys = 0x5144;
constexpr int sectionBits = 48;

} // namespace

std::unique_ptr<EngineLock> ServerEngine::Lock(Connection& connection, qint64 section, int /*timeout*/)
{
    const QString fileName = FileName(); // this engine may be gone when the lock fails
    try {
        return std::make_unique<ServerLock>(connection, (ourKeys << sectionBits) | section);
    } catch (const RuntimeError& error) {
        if (error.Number() != ErrorNumber::DatabaseLocked)
            throw;
        throw RuntimeError(ErrorNumber::DatabaseLocked,
                           u"Another station is saving the same to the shared database %1. Wait until it has finished "
                           "and try again."_s.arg(fileName));
    }
}

/// The server shows the upper half of a key as classid.
QString HeldSavingLocks()
{
    constexpr int halfBits = 32;
    return u"pg_locks WHERE locktype = 'advisory' AND objsubid = 1 AND classid::bigint >> %1 = %2 AND database = "
           "(SELECT oid FROM pg_database WHERE datname = current_database())"_s.arg(sectionBits - halfBits)
               .arg(ourKeys);
}

std::unique_ptr<EngineSync> ServerEngine::DeferSync(Connection& connection)
{
    return std::make_unique<ServerSync>(connection);
}

} // namespace qor
