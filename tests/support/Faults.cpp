// Loaded before the system's library: lets the writes to a database, or beside it, fail from a given one on. While
// QOR_FAULTS names an error number, calls are counted; those from QOR_FAULT_FROM on fail, or that one alone with
// QOR_FAULT_ONCE. QOR_FAULT_LOG names a file that gets a line when the first one has failed.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/types.h>
#include <unistd.h>

namespace {

bool IsWatched(int descriptor)
{
    char path[4096] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    if (readlink(link.c_str(), path, sizeof path - 1) < 0)
        return false;
    return std::strstr(path, "/Database/NewDB") != nullptr || std::strstr(path, "/Misc/") != nullptr;
}

void TellFault()
{
    const char* log = std::getenv("QOR_FAULT_LOG");
    if (log)
        close(open(log, O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
}

bool Fails(int descriptor)
{
    static int count = 0;
    const char* error = std::getenv("QOR_FAULTS");
    if (!error || !IsWatched(descriptor))
        return false;
    const char* const first = std::getenv("QOR_FAULT_FROM");
    const int from = first == nullptr ? 1 : std::atoi(first);
    ++count;
    if (count < from || (count > from && std::getenv("QOR_FAULT_ONCE") != nullptr))
        return false;
    TellFault();
    errno = std::atoi(error);
    return true;
}

template <typename Function>
Function Next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t write(int fd, const void* buf, size_t n)
{
    static const auto next = Next<ssize_t (*)(int, const void*, size_t)>("write");
    return Fails(fd) ? -1 : next(fd, buf, n);
}

ssize_t pwrite64(int fd, const void* buf, size_t n, off64_t offset)
{
    static const auto next = Next<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64");
    return Fails(fd) ? -1 : next(fd, buf, n, offset);
}

int fsync(int fd)
{
    static const auto next = Next<int (*)(int)>("fsync");
    return Fails(fd) ? -1 : next(fd);
}

int fdatasync(int fildes)
{
    static const auto next = Next<int (*)(int)>("fdatasync");
    return Fails(fildes) ? -1 : next(fildes);
}
}
