#include "platform/shell/ReadFile.h"

#include "platform/runtime/RuntimeError.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <QFile>
#include <QScopeGuard>
#include <sys/stat.h>
#include <unistd.h>

namespace qor {

namespace {

[[noreturn]] void Fail(const QString& fileName, const QString& why)
{
    throw RuntimeError(ErrorNumber::FileAccess, u"%1 cannot be read: %2"_s.arg(fileName, why));
}

/// Nothing when there is no such file.
std::optional<int> Open(const QString& fileName)
{
    // Opening a pipe would wait for a writer, and a terminal could become this process's own.
    const int descriptor = open(QFile::encodeName(fileName).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor >= 0)
        return descriptor;
    if (errno == ENOENT || errno == ENOTDIR)
        return std::nullopt;
    Fail(fileName, QString::fromLocal8Bit(std::strerror(errno)) + u'.');
}

bool IsRegular(int descriptor)
{
    struct stat status
    {
    };
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

std::optional<QByteArray> ReadWholeFile(const QString& fileName, qint64 highestSize)
{
    const std::optional<int> descriptor = Open(fileName);
    if (!descriptor)
        return std::nullopt;
    const auto guard = qScopeGuard([&] { close(*descriptor); });
    if (!IsRegular(*descriptor))
        Fail(fileName, u"it is not a file."_s);
    QFile file;
    file.open(*descriptor, QIODevice::ReadOnly);
    QByteArray bytes = file.read(highestSize + 1);
    if (bytes.size() > highestSize)
        Fail(fileName, u"it is larger than %1 bytes."_s.arg(highestSize));
    if (file.error() != QFileDevice::NoError)
        Fail(fileName, file.errorString() + u'.');
    return bytes;
}

} // namespace qor
