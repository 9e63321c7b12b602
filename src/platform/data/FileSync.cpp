#include "platform/data/FileEngine.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace qor {

namespace {

[[noreturn]] void ThrowNotSynced(const QString& path, int error)
{
    throw RuntimeError(ErrorNumber::Provider, u"%1 cannot be written to disk: %2. Check the disk and save again."_s.arg(
                                                  path, QString::fromLocal8Bit(std::strerror(error))));
}

/// harmlessError: what opening fails with when there is nothing to sync.
void SyncPath(const QString& path, int harmlessError)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 && errno == harmlessError)
        return;
    const bool synced = descriptor >= 0 && fsync(descriptor) == 0;
    const int error = errno;
    if (descriptor >= 0)
        close(descriptor);
    if (!synced)
        ThrowNotSynced(path, error);
}

} // namespace

class FileEngine::FileSync : public EngineSync
{
public:
    FileSync(Connection& connection, QString canonicalPath)
        : mConnection(connection),
          mPath(std::move(canonicalPath)),
          mIsDeferred(RunPragma(u"PRAGMA journal_mode"_s) == u"wal"_s)
    {
        if (mIsDeferred)
            RunPragma(u"PRAGMA synchronous = NORMAL"_s);
    }

    void Finish() override
    {
        if (mIsDeferred && mConnection.IsOpen())
            RunPragma(u"PRAGMA synchronous = FULL"_s);
        mConnection.RequireSameFile(u"What was just saved went into the old file."_s);
        SyncFiles();
    }

private:
    QString RunPragma(const QString& pragma);
    void SyncFiles() const;

    Connection& mConnection;
    QString mPath; ///< of the file itself, links resolved
    bool mIsDeferred;
};

QString FileEngine::FileSync::RunPragma(const QString& pragma)
{
    // Not a Command: most pragmas take no lock, so their success must not end the impatience with locks.
    QSqlQuery query(In(mConnection)->Database());
    if (!query.exec(pragma)) {
        const QSqlError error = query.lastError();
        query.finish();
        throw Failure(mConnection, error);
    }
    return query.next() ? query.value(0).toString() : QString();
}

void FileEngine::FileSync::SyncFiles() const
{
    // Opening and closing the log is safe beside the engine, whose locks are on the other files. The log is gone when a
    // failed command has dropped the engine.
    if (mIsDeferred)
        SyncPath(mPath + u"-wal"_s, ENOENT);
    auto* const engine = dynamic_cast<FileEngine*>(In(mConnection));
    if (mIsDeferred && engine && engine->mLogIsOnDisk)
        return;
    // The log may be new in its folder when the first save ends. A journal leaves the folder with each commit; one that
    // a power loss brings back undoes the last commit. A folder that may be written but not read cannot be synced.
    SyncPath(QFileInfo(mPath).path(), EACCES);
    if (engine)
        engine->mLogIsOnDisk = true;
}

std::unique_ptr<EngineSync> FileEngine::DeferSync(Connection& connection)
{
    return std::make_unique<FileSync>(connection, mCanonicalPath);
}

} // namespace qor
