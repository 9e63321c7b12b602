// What differs between the engines behind a connection; for the sources of this folder only.
#pragma once

#include "platform/data/Connection.h"
#include "platform/runtime/RuntimeError.h"

#include <optional>
#include <QPointer>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

namespace qor {

/// A statement of a command, ready to run again and again.
class Statement
{
public:
    explicit Statement(const QSqlDatabase& database) : query(database) {}
    virtual ~Statement() = default;
    Q_DISABLE_COPY_MOVE(Statement)

    /// Runs it with these texts; a null one stands for Null. When it returns false, the query has the error.
    virtual bool Run(const QStringList& values) = 0;
    /// A value of the row that the query stands on; a Null is null.
    virtual QVariant Value(int column) const = 0;

    QSqlQuery query;
};

/// A failure, and what a connection has to conclude from it.
struct EngineFailure
{
    RuntimeError error;
    bool waitedInVain = false; ///< for a lock or an answer
    bool endsEngine = false;   ///< this engine does not recover; a new one may
    bool mayRepeat = false;    ///< a command that only reads may succeed if it runs again
};

/// Locked until it is destroyed.
class EngineLock
{
public:
    EngineLock() = default;
    virtual ~EngineLock() = default;
    Q_DISABLE_COPY_MOVE(EngineLock)
};

/// Commits do not wait for the disk until it is destroyed.
class EngineSync
{
public:
    EngineSync() = default;
    virtual ~EngineSync() = default;
    Q_DISABLE_COPY_MOVE(EngineSync)

    /// What DeferredSync::Finish does; called once.
    virtual void Finish() = 0;
};

struct OpenOptions
{
    Access access;
    int lockTimeout;  ///< in milliseconds
    bool isImpatient; ///< the last wait was in vain
};

class DatabaseEngine
{
public:
    explicit DatabaseEngine(QString fileName);
    /// Removes Qt's connection; queries on it have ended, or end now.
    virtual ~DatabaseEngine();
    Q_DISABLE_COPY_MOVE(DatabaseEngine)

    const QString& FileName() const { return mFileName; }
    /// False once the toolkit has dropped the connection.
    bool IsOpen() const { return !mDriver.isNull(); }
    QSqlDatabase Database() const { return QSqlDatabase::database(mName, false); }

    virtual bool IsShared() const = 0;
    /// Called once. Returns the error of the engine, and raises RuntimeError for everything else.
    virtual QSqlError Open(const OpenOptions& options) = 0;
    virtual void ApplyLockTimeout(int milliseconds) = 0;
    /// Whether the file could not be written when it was opened. That may have changed since.
    virtual bool IsReadOnly() const { return false; }
    virtual EngineFailure Judge(const QSqlError& error) const = 0;
    /// text: as for Command. Mistakes in it show when it runs.
    virtual std::unique_ptr<Statement> Prepare(const QString& text, int parameterCount) = 0;
    /// Raises RuntimeError when the engine cannot store a text.
    virtual void RequireStorable(const QString& /*text*/) const {}
    /// What Connection::RequireSameFile raises; nothing while the file's name leads to what was opened.
    virtual std::optional<RuntimeError> Replacement(const QString& outcome, int lockTimeout) = 0;

    /// The lock that a SavingLock holds; null where there are no such locks.
    virtual std::unique_ptr<EngineLock> Lock(Connection& connection, qint64 section, int timeout) = 0;
    virtual std::unique_ptr<EngineSync> DeferSync(Connection& connection) = 0;

protected:
    /// Makes Qt's connection. Raises RuntimeError when the toolkit has no such driver.
    QSqlDatabase AddDatabase(const QString& driver, const QString& package);

    /// The engine of a connection, for locks and syncs, which may outlive theirs: by then it may be another one or
    /// null.
    static DatabaseEngine* In(Connection& connection) { return connection.mEngine.get(); }
    static RuntimeError Failure(Connection& connection, const QSqlError& error) { return connection.Failure(error); }

private:
    QString mFileName;            ///< for messages
    QString mName;                ///< of the connection in Qt's table of connections
    QPointer<QSqlDriver> mDriver; ///< null once the toolkit has dropped the connection
};

/// Raises RuntimeError when the toolkit has no such driver.
void RequireDriver(const QString& driver, const QString& package);

/// A name for Qt's table of connections, which we share with the host.
QString NewConnectionName();

} // namespace qor
