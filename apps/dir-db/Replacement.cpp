#include "Replacement.h"

#include "NewFile.h"
#include "platform/data/Connection.h"
#include "platform/data/DatabaseFile.h"
#include "platform/runtime/RuntimeError.h"
#include "platform/runtime/SignalsHeld.h"
#include "Query.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <unistd.h>

namespace qor {

namespace {

std::optional<struct stat> StatusOf(const QString& path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path), &status) == 0 ? std::optional(status) : std::nullopt;
}

/// Whether it is a database of the engine, which would apply a log even to a file of another kind. Call it before the
/// engine has the file open.
bool IsForEngine(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) && file.read(16) == QByteArray("SQLite format 3\0", 16);
}

/// The old database, merged into one file and locked against everyone, if the engine can do that with it. A program
/// that waits for that lock gets a file that its engine does not let it write, because the name is that of another file
/// by then.
class OldDatabase
{
public:
    explicit OldDatabase(QString fileName) : mFileName(std::move(fileName)) {}
    ~OldDatabase()
    {
        if (!mConnection || !mWasWriteAhead)
            return;
        try {
            Query(*mConnection, u"ROLLBACK"_s);
            Query(*mConnection, u"PRAGMA journal_mode = WAL"_s);
        } catch (const RuntimeError&) {
            // It is as sound in the other mode; editors only save more slowly.
        }
    }
    Q_DISABLE_COPY_MOVE(OldDatabase)

    void Settle()
    {
        if (!IsForEngine(mFileName))
            return;
        mConnection.emplace();
        mConnection->SetConnectionString(ConnectionStringFor(mFileName));
        mConnection->SetLockTimeout(0);
        try {
            mWasWriteAhead = Query(*mConnection, u"PRAGMA journal_mode"_s).Field(0).toString() == u"wal";
            Query(*mConnection,
                  u"PRAGMA journal_mode = DELETE"_s); // merges the log, if nobody else has the file open
            Query(*mConnection, u"BEGIN EXCLUSIVE"_s);
        } catch (const RuntimeError&) {
            mConnection.reset(); // missing, damaged or in use; RequireUnused tells which
        }
    }
    bool IsSettled() const { return mConnection.has_value(); }
    /// From here on its mode stays as it is.
    void GiveUp() { mWasWriteAhead = false; }

private:
    QString mFileName;
    std::optional<Connection> mConnection; ///< while it is settled
    bool mWasWriteAhead = false;
};

/// The process that holds one of the engine's locks, if any. An open database in write-ahead mode always has one. Not
/// for a file that this process has open as a database: closing it here would drop those locks.
std::optional<qint64> LockHolder(const QString& fileName)
{
    constexpr off_t firstLock = 0x40000000; // where the engine's locks lie in the file
    constexpr off_t lockBytes = 512;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = firstLock;
    lock.l_len = lockBytes;
    const bool isHeld = fcntl(file.handle(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    return isHeld ? std::optional<qint64>(lock.l_pid) : std::nullopt;
}

/// Another process that has the file open, if we can see one: in rollback mode an idle editor holds no lock. Root sees
/// every process, others their own.
std::optional<qint64> Opener(const struct stat& file)
{
    for (const QString& process : QDir(u"/proc"_s).entryList({u"[1-9]*"_s}, QDir::Dirs)) {
        if (process.toLongLong() == QCoreApplication::applicationPid())
            continue;
        const QDir descriptors(u"/proc/%1/fd"_s.arg(process));
        for (const QString& descriptor : descriptors.entryList(QDir::Files | QDir::System)) {
            const auto other = StatusOf(descriptors.filePath(descriptor));
            if (other && other->st_dev == file.st_dev && other->st_ino == file.st_ino)
                return process.toLongLong();
        }
    }
    return std::nullopt;
}

void RequireUnused(const QString& fileName, const OldDatabase& old)
{
    const auto status = StatusOf(fileName);
    if (!status)
        return;
    auto process = old.IsSettled() ? std::nullopt : LockHolder(fileName);
    if (!process)
        process = Opener(*status);
    if (!process)
        return;
    QFile name(u"/proc/%1/comm"_s.arg(*process));
    const QString program = name.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(name.readAll()).trimmed() : u"?"_s;
    throw RuntimeError(ErrorNumber::Provider, u"The database %1 is open in another program (%2, process %3). Close it "
                                              "there and try again."_s.arg(fileName, program)
                                                  .arg(*process));
}

void TakeOwner(const QString& from, const QString& to)
{
    const auto status = StatusOf(from);
    if (!status)
        return;
    const QByteArray name = QFile::encodeName(to);
    constexpr mode_t permissions = 0777;
    if (chown(name, status->st_uid, status->st_gid) != 0 || chmod(name, status->st_mode & permissions) != 0)
        ThrowFileNotMade(from, u"its owner and permissions cannot be kept; restore it as its owner or as root"_s);
}

bool Exists(const QString& path)
{
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

/// What may lie beside a database and belong to it.
const QStringList& LogSuffixes()
{
    static const QStringList suffixes{u"-wal"_s, u"-journal"_s, u"-shm"_s};
    return suffixes;
}

/// A name that neither a database nor a log of one has; or the one that a restore gave this file before it was killed.
QString NameToKeep(const QString& fileName)
{
    QString name = fileName + u".before-restore"_s;
    const auto isTaken = [&] {
        const bool isOther = Exists(name) && IdentityOf(name) != IdentityOf(fileName);
        return isOther || Exists(name + u"-wal"_s) || Exists(name + u"-journal"_s);
    };
    for (int number = 2; isTaken(); ++number)
        name = u"%1.before-restore-%2"_s.arg(fileName).arg(number);
    return name;
}

/// Gives the old files a second name, under which they stay.
QStringList Keep(const QString& fileName, bool withLogs)
{
    const QString name = NameToKeep(fileName);
    QStringList kept;
    for (const QString& suffix : {u""_s, u"-wal"_s, u"-journal"_s}) {
        const bool isWanted = suffix.isEmpty() || (withLogs && QFileInfo(fileName + suffix).size() > 0);
        if (!isWanted || !Exists(fileName + suffix))
            continue;
        if (!Exists(name + suffix) && link(QFile::encodeName(fileName + suffix), QFile::encodeName(name + suffix)) != 0)
            ThrowFileNotMade(name + suffix, qt_error_string(errno));
        kept << name + suffix;
    }
    return kept;
}

void RemoveLogs(const QString& fileName)
{
    for (const QString& suffix : LogSuffixes()) {
        if (unlink(QFile::encodeName(fileName + suffix)) != 0 && errno != ENOENT)
            ThrowFileNotMade(fileName, u"%1 cannot be removed (%2)"_s.arg(fileName + suffix, qt_error_string(errno)));
    }
    SyncFolderOf(fileName); // else a power loss may bring one of them back, beside the new database
}

} // namespace

QString RequireReplaceable(const QString& fileName)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile())
        ThrowFileNotMade(fileName, u"there is something other than a file; choose another name"_s);
    if (!info.exists() && info.isSymLink())
        ThrowFileNotMade(fileName, u"it is a link that leads nowhere; remove the link or mend it first"_s);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}

// Whenever this is killed, something whole is left. First the engine merges the old log into the old file, in a
// transaction of its own, and sets it to rollback mode, in which editors use it as well. From there on the old database
// is that one file, and its logs are removed before the rename, which is one step. So no log is ever beside a database
// that it does not belong to. If the engine cannot merge the log, because the file is damaged or missing, the log gets
// a second name, as the file does, before it is removed; from then until the rename, the old state is whole under its
// second name only.
QStringList ReplaceDatabase(NewFile& file)
{
    const QString& fileName = file.Name();
    TakeOwner(fileName, file.BuiltName());
    OldDatabase old(fileName);
    for (int attempt = 0; attempt < 2 && !old.IsSettled(); ++attempt) { // whoever was in the way may just have gone
        old.Settle();
        RequireUnused(fileName, old);
    }
    const SignalsHeld held;
    QStringList kept = Keep(fileName, !old.IsSettled());
    RemoveLogs(fileName);
    old.GiveUp();
    file.Replace();
    for (const QString& name : std::as_const(kept))
        QFile::setPermissions(name, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    return kept;
}

} // namespace qor
