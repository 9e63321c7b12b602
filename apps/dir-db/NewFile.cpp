#include "NewFile.h"

#include "platform/data/DatabaseFile.h"
#include "SignalsHeld.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace qor {

namespace {

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};
constexpr std::array builtSuffixes{"", "-wal", "-shm", "-journal"};

/// What a signal has to remove, in a form that its handler may read.
struct Leftovers
{
    std::array<QByteArray, builtSuffixes.size()> files;
    std::array<const char*, builtSuffixes.size()> names{};
    QByteArray folderName;
    const char* folder = nullptr;
};
Leftovers leftovers;

extern "C" void RemoveLeftovers(int signal)
{
    for (const char* const name : leftovers.names)
        unlink(name);
    rmdir(leftovers.folder);
    raise(signal); // it has its default action again, so that the shell learns how the program ended
}

/// Zero, or the number of the system's error; one of them is that the new name is taken.
int MoveToFreeName(const QByteArray& from, const QByteArray& to)
{
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return 0;
    // Where the file system has no such move, a second name for the file does the same: its folder is removed
    // with the first one.
    if (errno == EINVAL && link(from, to) == 0)
        return 0;
    return errno;
}

/// Zero, or the number of the system's error.
int Sync(const QString& path)
{
    const int descriptor = open(QFile::encodeName(path), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    const int error = fsync(descriptor) == 0 ? 0 : errno;
    close(descriptor);
    return error;
}

void RequireDone(int error, const QString& fileName)
{
    if (error != 0)
        ThrowFileNotMade(fileName, qt_error_string(error));
}

} // namespace

/// While it lives, a signal that ends the program takes the unfinished file away first.
class NewFile::RemovedBySignal
{
public:
    RemovedBySignal(const QString& folder, const QString& fileName)
    {
        for (std::size_t i = 0; i < builtSuffixes.size(); ++i) {
            leftovers.files[i] = QFile::encodeName(fileName) + builtSuffixes[i];
            leftovers.names[i] = leftovers.files[i].constData();
        }
        leftovers.folderName = QFile::encodeName(folder);
        leftovers.folder = leftovers.folderName.constData();
        struct sigaction action = {};
        action.sa_handler = RemoveLeftovers;
        action.sa_flags = SA_RESETHAND;
        for (std::size_t i = 0; i < endingSignals.size(); ++i) {
            sigaction(endingSignals[i], nullptr, &mBefore[i]);
            if (mBefore[i].sa_handler != SIG_IGN) // nohup wants it to go on
                sigaction(endingSignals[i], &action, nullptr);
        }
    }
    ~RemovedBySignal()
    {
        for (std::size_t i = 0; i < endingSignals.size(); ++i)
            sigaction(endingSignals[i], &mBefore[i], nullptr);
    }
    Q_DISABLE_COPY_MOVE(RemovedBySignal)

private:
    std::array<struct sigaction, endingSignals.size()> mBefore{};
};

void RequireFreeName(const QString& fileName)
{
    if (QFileInfo::exists(fileName))
        ThrowFileExists(fileName);
    for (const QString& log : {fileName + u"-wal"_s, fileName + u"-journal"_s}) {
        if (QFileInfo::exists(log))
            ThrowFileNotMade(fileName, u"%1 is left over from an earlier database; move it away first"_s.arg(log));
    }
}

void SyncFolderOf(const QString& fileName)
{
    const int error = Sync(QFileInfo(fileName).path());
    if (error != EACCES) // a folder in which one may write need not be readable
        RequireDone(error, fileName);
}

NewFile::NewFile(const QString& fileName) : mName(fileName)
{
    const SignalsHeld held; // until their handler knows the folder
    mFolder.emplace(QFileInfo(fileName).path() + u"/.dir-db-XXXXXX"_s);
    if (!mFolder->isValid())
        ThrowFileNotMade(mName, mFolder->errorString() + u"; choose a folder that you may write to"_s);
    mBuiltName = mFolder->filePath(u"database"_s);
    mRemovedBySignal = std::make_unique<RemovedBySignal>(mFolder->path(), mBuiltName);
}

NewFile::~NewFile()
{
    mFolder->remove(); // while a signal still finds the handler
}

void NewFile::Appear()
{
    RequireDone(Sync(mBuiltName), mName);
    const int error = MoveToFreeName(QFile::encodeName(mBuiltName), QFile::encodeName(mName));
    if (error == EEXIST)
        ThrowFileExists(mName);
    RequireDone(error, mName);
    SyncFolderOf(mName);
}

void NewFile::Replace()
{
    RequireDone(Sync(mBuiltName), mName);
    RequireDone(std::rename(QFile::encodeName(mBuiltName), QFile::encodeName(mName)) == 0 ? 0 : errno, mName);
    SyncFolderOf(mName);
}

} // namespace qor
