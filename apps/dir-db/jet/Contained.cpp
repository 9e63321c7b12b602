#include "Contained.h"

#include "platform/runtime/RuntimeError.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <QFile>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qor {

namespace {

/// A file in memory that the two processes share.
class SharedFile
{
public:
    explicit SharedFile(const char* name)
    {
        const int descriptor = memfd_create(name, MFD_CLOEXEC);
        if (descriptor < 0 ||
            !mFile.open(descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle))
            throw RuntimeError(ErrorNumber::OutOfMemory, u"There is no room for another process."_s);
    }

    int Descriptor() const { return mFile.handle(); }
    bool Write(const QByteArray& bytes) { return mFile.write(bytes) == bytes.size(); }
    QByteArray Read(qint64 highestCount)
    {
        mFile.seek(0);
        return mFile.read(highestCount);
    }

private:
    QFile mFile;
};

/// The bytes of address space that this process has now.
qint64 AddressSpace()
{
    QFile file(u"/proc/self/statm"_s);
    const QByteArray pages = file.open(QIODevice::ReadOnly) ? file.readLine().split(' ').first() : QByteArray();
    return pages.toLongLong() * sysconf(_SC_PAGESIZE);
}

void SetLimit(__rlimit_resource resource, qint64 value)
{
    const rlimit limit{static_cast<rlim_t>(value), static_cast<rlim_t>(value)};
    setrlimit(resource, &limit);
}

void SetLimits(ContainedLimits limits)
{
    SetLimit(RLIMIT_CORE, 0); // a core file would hold passwords
    SetLimit(RLIMIT_CPU, limits.processorSeconds);
    SetLimit(RLIMIT_AS, AddressSpace() + limits.bytes);
    SetLimit(RLIMIT_FSIZE, limits.bytes);
    std::signal(SIGXFSZ, SIG_IGN);
}

/// The new process from its first step to its exit code. It ends with its parent, whatever ends that.
int Work(const std::function<QByteArray()>& work, ContainedLimits limits, SharedFile& output, int messages,
         pid_t parent)
{
    try {
        if (prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || getppid() != parent)
            return 1;
        SetLimits(limits);
        if (dup2(messages, STDOUT_FILENO) < 0 || dup2(messages, STDERR_FILENO) < 0)
            return 1;
        const bool written = output.Write(work());
        return std::fflush(nullptr) == 0 && written ? 0 : 1;
    } catch (...) {
        return 1;
    }
}

Ending WaitFor(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return Ending::Failed;
    }
    // The limit is both the soft and the hard one; the hard one kills.
    if (WIFSIGNALED(status) && (WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGKILL))
        return Ending::TookTooLong;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? Ending::Done : Ending::Failed;
}

} // namespace

ContainedResult RunContained(const std::function<QByteArray()>& work, ContainedLimits limits)
{
    SharedFile output("output");
    SharedFile messages("messages");
    std::fflush(nullptr); // what waits to be written would be written by both processes
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process < 0)
        throw RuntimeError(ErrorNumber::OutOfMemory, u"No other process can be started."_s);
    if (process == 0)
        _exit(Work(work, limits, output, messages.Descriptor(), parent));
    ContainedResult result{.ending = WaitFor(process), .output = {}, .messages = messages.Read(1024)};
    if (result.ending == Ending::Done)
        result.output = output.Read(limits.bytes);
    return result;
}

} // namespace qor
