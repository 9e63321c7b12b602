// A database on a server that many stations share.
#pragma once

#include "platform/data/AnswerWatch.h"
#include "platform/data/Engine.h"

namespace qor {

class ServerEngine : public DatabaseEngine
{
public:
    /// service: the one that the link names.
    ServerEngine(const QString& fileName, QString service);
    ~ServerEngine() override;
    Q_DISABLE_COPY_MOVE(ServerEngine)

    bool IsShared() const override { return true; }
    QSqlError Open(const OpenOptions& options) override;
    void ApplyLockTimeout(int milliseconds) override { mLockTimeout = milliseconds; }
    EngineFailure Judge(const QSqlError& error) const override;
    std::unique_ptr<Statement> Prepare(const QString& text, int parameterCount) override;
    void RequireStorable(const QString& text) const override;
    std::optional<RuntimeError> Replacement(const QString& outcome, int lockTimeout) override;
    std::unique_ptr<EngineLock> Lock(Connection& connection, qint64 section, int timeout) override;
    std::unique_ptr<EngineSync> DeferSync(Connection& connection) override;

    /// Runs a statement as it is, within the time that a server may take.
    bool Run(QSqlQuery& query, const QString& text);
    /// Runs what the query has prepared.
    bool Run(QSqlQuery& query);
    /// Prepares a statement in the engine's syntax.
    bool PrepareIn(QSqlQuery& query, const QString& text);
    /// Tells the server that what is prepared in this query is not needed any more.
    void End(QSqlQuery& query);

private:
    void SendLockTimeout();

    QString mService;
    QString mPath; ///< of the link, absolute
    int mLockTimeout = 0;
    int mSentLockTimeout = 0; ///< what the server was told
    bool mWasConnected = false;
    std::unique_ptr<AnswerWatch> mWatch; ///< null where there can be none
};

/// The service was not reached, or a statement failed: a sentence that names the file, what is wrong and what to do. It
/// quotes only the first line of the server's message; further ones may show a row with its password.
RuntimeError ServerError(const QSqlError& error, const QString& fileName, const QString& service);

/// The same for a connection that has ended. hasGivenUp: we ended it, because the server did not answer in time.
RuntimeError LostServerError(const QSqlError& error, const QString& fileName, bool hasGivenUp);

} // namespace qor
