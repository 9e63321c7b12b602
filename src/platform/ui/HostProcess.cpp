#include "platform/ui/HostProcess.h"

#include <algorithm>
#include <fcntl.h>
#include <latch>
#include <QCoreApplication>
#include <QScopeGuard>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace qor {

using namespace Qt::StringLiterals;

namespace {

void CloseAll(const std::vector<int>& files)
{
    std::ranges::for_each(files, close);
}

/// The toolkit waits forever for a thread of its own that could not start.
bool CanStartThreads()
{
    constexpr int needed = 2; // one reads from the display, one from the message bus
    std::latch tried(1);
    std::vector<std::jthread> threads;
    const auto guard = qScopeGuard([&tried] { tried.count_down(); });
    try {
        for (int i = 0; i < needed; ++i)
            threads.emplace_back([&tried] { tried.wait(); });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

} // namespace

std::optional<QString> DescriptorProblem()
{
    constexpr std::size_t needed = 16; // opening takes seven at a time
    std::vector<int> files;
    const auto guard = qScopeGuard([&files] { CloseAll(files); });
    while (files.size() < needed) {
        const int file = eventfd(0, EFD_CLOEXEC);
        if (file < 0)
            return u"the process has hardly a file descriptor left; close files or raise its limit (ulimit -n)"_s;
        files.push_back(file);
    }
    return std::nullopt;
}

std::optional<QString> ProcessProblem()
{
    if (geteuid() != getuid() && !QCoreApplication::isSetuidAllowed())
        return u"the process has taken on another user's rights (setuid); start it as that user"_s;
    if (!CanStartThreads())
        return u"the process can start no more threads; raise its limits of processes and memory (ulimit -u, -v)"_s;
    return DescriptorProblem();
}

StandardFilesGuard::StandardFilesGuard()
{
    int file = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (; file >= 0 && file <= STDERR_FILENO; file = open("/dev/null", O_RDWR | O_CLOEXEC))
        mTaken.push_back(file);
    if (file >= 0)
        close(file);
}

StandardFilesGuard::~StandardFilesGuard()
{
    CloseAll(mTaken);
}

} // namespace qor
