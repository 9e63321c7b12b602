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

/// harmlessError: of the opening, when there is nothing to do for us then.
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
    FileSync(Connection& connection, const QString& canonicalPath)
        : mConnection(connection), mPath(canonicalPath), mIsDeferred(RunPragma(u"PRAGMA journal_mode"_s) == u"wal"_s)
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
    QString mPath; ///< of the file, where no link is left
    bool mIsDeferred;
};

QString FileEngine::FileSync::RunPragma(const QString& pragma)
{
    // No command: most of these take no lock, so that their success does not end the impatience for locks.
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
    // The log may be opened and closed beside the engine: its locks are on the other files. It goes with an engine that
    // a failing command dropped.
    if (mIsDeferred)
        SyncPath(mPath + u"-wal"_s, ENOENT);
    auto* const engine = static_cast<FileEngine*>(In(mConnection));
    if (mIsDeferred && engine && engine->mLogIsOnDisk)
        return;
    // The log may be new in its folder when the first save ends; a journal leaves it with each commit, and one that
    // comes back takes the last commit with it. A folder that may be written but not read cannot be synced.
    SyncPath(QFileInfo(mPath).path(), EACCES);
    if (engine)
        engine->mLogIsOnDisk = true;
}

std::unique_ptr<EngineSync> FileEngine::DeferSync(Connection& connection)
{
    return std::make_unique<FileSync>(connection, mCanonicalPath);
}

} // namespace qor
