#include "BuildFolder.h"

#include "platform/data/DatabaseFile.h"
#include "platform/runtime/SignalsHeld.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qor {

namespace {

const QString namePrefix = u".dir-db-"_s;
constexpr const char* builtName = "database";
constexpr const char* lockedName = "locked";
constexpr std::array fileNames{builtName, "database-wal", "database-shm", "database-journal", lockedName};

/// The one folder, in a form that a signal's handler and a new process may read.
struct Current
{
    QByteArray path;
    const char* name = nullptr;
    int descriptor = -1; ///< it holds a lock as long as this process lives
};
Current current;

int OpenFolder(const char* path)
{
    return open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

void Remove(int folder, const char* path)
{
    for (const char* const name : fileNames)
        unlinkat(folder, name, 0);
    rmdir(path);
}

extern "C" void RemoveCurrent(int signal)
{
    Remove(current.descriptor, current.name);
    raise(signal); // it has its default action again, so that the shell learns how the program ended
}

/// Whoever lives has the lock of its folder before anything is in it. File systems without such locks keep what is
/// left.
bool IsLeft(int folder)
{
    const auto isThere = [folder](const char* name) { return faccessat(folder, name, F_OK, 0) == 0; };
    struct stat status = {};
    return fstat(folder, &status) == 0 && status.st_uid == geteuid() && std::ranges::any_of(fileNames, isThere) &&
           flock(folder, LOCK_EX | LOCK_NB) == 0;
}

void RemoveLeftFolders(const QString& place)
{
    constexpr auto folders = QDir::Dirs | QDir::Hidden | QDir::NoSymLinks;
    for (const QFileInfo& found : QDir(place).entryInfoList({namePrefix + u'*'}, folders)) {
        const QByteArray path = QFile::encodeName(found.filePath());
        const int folder = OpenFolder(path);
        if (folder < 0)
            continue;
        if (IsLeft(folder))
            Remove(folder, path);
        close(folder);
    }
}

/// The watching process from its first step to its last. No signal but a kill reaches it: they are all held back.
[[noreturn]] void Watch(int life)
{
    prctl(PR_SET_NAME, "tidy-unfinished"); // whoever kills dir-db by its name, or a shell's whole job, leaves it alone
    setsid();
    // Whoever waits for the end of dir-db's output does not wait for this one, nor does anybody for a lock.
    if (dup2(life, STDIN_FILENO) == STDIN_FILENO && close_range(STDIN_FILENO + 1, ~0U, 0) == 0) {
        char byte = 0;
        ssize_t count = 1;
        while (count > 0 || (count < 0 && errno == EINTR))
            count = read(STDIN_FILENO, &byte, 1);
        Remove(OpenFolder(current.name), current.name);
    }
    _exit(0);
}

} // namespace

BuildFolder::Watcher::Watcher()
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return;
    mProcess = fork();
    if (mProcess == 0) {
        close(ends[1]);
        Watch(ends[0]);
    }
    mLife = ends[1];
    close(ends[0]);
}

BuildFolder::Watcher::~Watcher()
{
    if (mProcess > 0) {
        kill(mProcess, SIGKILL); // it may have been stopped
        while (waitpid(mProcess, nullptr, 0) < 0 && errno == EINTR)
            continue;
    }
    if (mLife >= 0)
        close(mLife);
}

BuildFolder::RemovedBySignal::RemovedBySignal()
{
    struct sigaction action = {};
    action.sa_handler = RemoveCurrent;
    action.sa_flags = SA_RESETHAND;
    for (std::size_t i = 0; i < signals.size(); ++i) {
        sigaction(signals[i], nullptr, &mBefore[i]);
        if (mBefore[i].sa_handler != SIG_IGN) // nohup wants it to go on
            sigaction(signals[i], &action, nullptr);
    }
}

BuildFolder::RemovedBySignal::~RemovedBySignal()
{
    for (std::size_t i = 0; i < signals.size(); ++i)
        sigaction(signals[i], &mBefore[i], nullptr);
}

BuildFolder::BuildFolder(const QString& fileName)
{
    const QString place = QFileInfo(fileName).path();
    RemoveLeftFolders(place);
    const SignalsHeld held; // until their handler knows the folder
    const QString path = place + u'/' + namePrefix + QString::number(QRandomGenerator::system()->generate64(), 36);
    mBuiltName = path + u'/' + QLatin1String(builtName);
    current.path = QFile::encodeName(path);
    current.name = current.path.constData();
    mWatcher.emplace(); // before there is anything to be removed
    if (mkdir(current.name, S_IRWXU) != 0 || (current.descriptor = OpenFolder(current.name)) < 0) {
        const QString why = qt_error_string(errno);
        rmdir(current.name);
        ThrowFileNotMade(fileName, why + u"; choose a folder that you may write to"_s);
    }
    flock(current.descriptor, LOCK_EX | LOCK_NB);
    // From here on it can be told from one that its owner is about to lock.
    close(openat(current.descriptor, lockedName, O_CREAT | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
    mRemovedBySignal.emplace();
}

BuildFolder::~BuildFolder()
{
    Remove(current.descriptor, current.name); // while a signal still finds the handler
    close(current.descriptor);
}

} // namespace qor
