#include "platform/data/DeferredSync.h"

#include "platform/data/Engine.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <QFileInfo>
#include <QSqlQuery>
#include <unistd.h>

namespace qor {

namespace {

QString RunPragma(const QSqlDatabase& database, const QString& pragma)
{
    QSqlQuery query(database);
    return query.exec(pragma) && query.next() ? query.value(0).toString() : QString();
}

void SyncPath(const QString& path)
{
    const int descriptor = open(path.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
    const bool synced = descriptor >= 0 && fsync(descriptor) == 0;
    const int error = errno;
    if (descriptor >= 0)
        close(descriptor);
    if (!synced) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"%1 cannot be written to disk: %2. Check the disk and save again."_s.arg(
                               path, QString::fromLocal8Bit(std::strerror(error))));
    }
}

} // namespace

DeferredSync::DeferredSync(Connection& connection) : mConnection(connection)
{
    mConnection.Open();
    const QSqlDatabase database = mConnection.mEngine->Database();
    if (RunPragma(database, u"PRAGMA journal_mode"_s) != u"wal"_s)
        return;
    RunPragma(database, u"PRAGMA synchronous = NORMAL"_s);
    mDeferred = true;
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
    if (!mDeferred)
        return;
    mDeferred = false;
    Connection::Engine& engine = *mConnection.mEngine;
    RunPragma(engine.Database(), u"PRAGMA synchronous = FULL"_s);
    // The log may be opened and closed beside the engine: its locks are on the other files. It lies where the file is
    // that a link leads to, and may be new in its folder when the first save ends.
    const QString log = QFileInfo(engine.fileName).canonicalFilePath() + u"-wal"_s;
    if (!QFileInfo::exists(log))
        return;
    SyncPath(log);
    if (!engine.logIsOnDisk)
        SyncPath(QFileInfo(log).absolutePath());
    engine.logIsOnDisk = true;
}

} // namespace qor
