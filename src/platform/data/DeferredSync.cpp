#include "platform/data/DeferredSync.h"

#include "platform/data/Engine.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
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

DeferredSync::DeferredSync(Connection& connection) : mConnection(connection)
{
    mConnection.RequireSameFile(u"Nothing was saved."_s);
    mConnection.OpenForWriting();
    mPath =
        mConnection.mEngine->canonicalPath; // NOLINT(cppcoreguidelines-prefer-member-initializer): known from here on
    mDeferred = RunPragma(u"PRAGMA journal_mode"_s) == u"wal"_s;
    if (mDeferred)
        RunPragma(u"PRAGMA synchronous = NORMAL"_s);
}

QString DeferredSync::RunPragma(const QString& pragma)
{
    // No command: most of these take no lock, so that their success does not end the impatience for locks.
    QSqlQuery query(mConnection.mEngine->Database());
    if (!query.exec(pragma)) {
        const QSqlError error = query.lastError();
        query.finish();
        throw mConnection.Failure(error);
    }
    return query.next() ? query.value(0).toString() : QString();
}

DeferredSync::~DeferredSync()
{
    try {
        Finish();
    } catch (...) {
        // Whoever needs to know calls Finish.
    }
}

void DeferredSync::Finish()
{
    if (mFinished)
        return;
    mFinished = true;
    if (mDeferred && mConnection.IsOpen())
        RunPragma(u"PRAGMA synchronous = FULL"_s);
    mConnection.RequireSameFile(u"What was just saved went into the old file."_s);
    SyncFiles();
}

void DeferredSync::SyncFiles() const
{
    // The log may be opened and closed beside the engine: its locks are on the other files. It goes with an engine that
    // a failing command dropped.
    if (mDeferred)
        SyncPath(mPath + u"-wal"_s, ENOENT);
    Connection::Engine* const engine = mConnection.mEngine.get();
    if (mDeferred && engine && engine->logIsOnDisk)
        return;
    // The log may be new in its folder when the first save ends; a journal leaves it with each commit, and one that
    // comes back takes the last commit with it. A folder that may be written but not read cannot be synced.
    SyncPath(QFileInfo(mPath).path(), EACCES);
    if (engine)
        engine->logIsOnDisk = true;
}

} // namespace qor
