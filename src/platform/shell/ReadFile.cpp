#include "platform/shell/ReadFile.h"

#include "platform/runtime/RuntimeError.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <QFile>
#include <sys/stat.h>

namespace qor {

namespace {

[[noreturn]] void Fail(const QString& fileName, const QString& why)
{
    throw RuntimeError(ErrorNumber::FileAccess, u"%1 cannot be read: %2"_s.arg(fileName, why));
}

bool IsRegular(const QFile& file)
{
    struct stat status
    {
    };
    return fstat(file.handle(), &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

std::optional<QByteArray> ReadWholeFile(const QString& fileName, qint64 highestSize)
{
    // Opening a pipe would wait for a writer.
    const int descriptor = open(QFile::encodeName(fileName).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0 && errno == ENOENT)
        return std::nullopt;
    if (descriptor < 0)
        Fail(fileName, QString::fromLocal8Bit(std::strerror(errno)) + u'.');
    QFile file;
    file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    if (!IsRegular(file))
        Fail(fileName, u"it is not a file."_s);
    QByteArray bytes = file.read(highestSize + 1);
    if (bytes.size() > highestSize)
        Fail(fileName, u"it is larger than %1 bytes."_s.arg(highestSize));
    if (file.error() != QFileDevice::NoError)
        Fail(fileName, file.errorString() + u'.');
    return bytes;
}

} // namespace qor
