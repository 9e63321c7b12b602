#include "platform/data/FileEngine.h"
#include "platform/runtime/StandardError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <QDeadlineTimer>
#include <QFile>
#include <QThread>
#include <sys/stat.h>
#include <unistd.h>

namespace qor {

namespace {

/// The lock belongs to the open file description, not to the process: it keeps out other connections of this process,
/// too, and ends when the descriptor is closed.
struct HeldDescriptor : EngineLock
{
    int descriptor;

    explicit HeldDescriptor(int opened) : descriptor(opened) {}
    ~HeldDescriptor() override { close(descriptor); }
    Q_DISABLE_COPY_MOVE(HeldDescriptor)
};

void TellUnlocked(const QString& lockName, int error)
{
    TellOnce(u"saving lock"_s,
             u"%1 cannot be locked: %2. Saving goes on, but two programs must not save the same node at once."_s.arg(
                 lockName, QString::fromLocal8Bit(std::strerror(error))));
}

/// Makes the lock file for everybody who may write the database, whatever the umask. If it cannot get the database's
/// owner and group, everybody may lock it.
int MakeLockFile(const char* path, const QString& databaseName)
{
    struct stat database;
    if (stat(QFile::encodeName(databaseName).constData(), &database) != 0)
        return -1;
    const int descriptor = open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return -1;
    constexpr mode_t everyone = 0666;
    const bool isTheirs = fchown(descriptor, database.st_uid, database.st_gid) == 0;
    if (fchmod(descriptor, isTheirs ? database.st_mode & everyone : everyone) != 0) {
        // A file system without permissions; the file serves as it is.
    }
    return descriptor;
}

/// Negative when it cannot be opened; errno says why.
int OpenLockFile(const QString& lockName, const QString& databaseName)
{
    const QByteArray path = QFile::encodeName(lockName);
    constexpr int tries = 3;
    for (int i = 1;; ++i) {
        int descriptor = open(path.constData(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        if (descriptor < 0 && errno == ENOENT)
            descriptor = MakeLockFile(path.constData(), databaseName);
        // Another program is just making the file, or has yet to set its permissions.
        const bool isInTheMaking = descriptor < 0 && (errno == EEXIST || errno == EACCES);
        if (!isInTheMaking || i == tries)
            return descriptor;
        QThread::msleep(1);
    }
}

/// Zero, or the number of the error.
int TryLock(int descriptor, qint64 section)
{
    struct flock range = {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = section;
    range.l_len = 1;
    return fcntl(descriptor, F_OFD_SETLK, &range) == 0 ? 0 : errno;
}

bool IsTaken(int error)
{
    return error == EAGAIN || error == EACCES;
}

/// Asks again and again instead of waiting in the system, so that a program that hangs with the lock does not hang this
/// one.
int WaitForLock(int descriptor, qint64 section, int timeout)
{
    const QDeadlineTimer deadline(timeout);
    constexpr unsigned long longestPause = 50; // ms
    unsigned long pause = 2;
    int error = TryLock(descriptor, section);
    while (IsTaken(error) && !deadline.hasExpired()) {
        QThread::msleep(pause);
        pause = std::min(2 * pause, longestPause);
        error = TryLock(descriptor, section);
    }
    return error;
}

} // namespace

std::unique_ptr<EngineLock> LockBeside(const QString& canonicalPath, const QString& fileName, qint64 section,
                                       int timeout)
{
    const QString lockName = canonicalPath + u"-saving"_s;
    const int descriptor = OpenLockFile(lockName, canonicalPath);
    if (descriptor < 0) {
        TellUnlocked(lockName, errno);
        return nullptr;
    }
    auto held = std::make_unique<HeldDescriptor>(descriptor);
    const int error = WaitForLock(descriptor, section, timeout);
    if (IsTaken(error)) {
        throw RuntimeError(ErrorNumber::DatabaseLocked,
                           u"Another program is saving the same to the database %1. Wait until it has finished and "
                           "try again."_s.arg(fileName));
    }
    if (error != 0)
        TellUnlocked(lockName, error);
    return held;
}

} // namespace qor
