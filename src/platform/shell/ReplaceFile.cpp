#include "platform/shell/ReplaceFile.h"

#include "platform/runtime/RuntimeError.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <sys/stat.h>
#include <unistd.h>

namespace qor {

namespace {

[[noreturn]] void Fail(const QString& fileName, const QString& why)
{
    throw RuntimeError(ErrorNumber::FileAccess,
                       u"%1 cannot be written: %2. Choose another folder or free some space."_s.arg(fileName, why));
}

[[noreturn]] void FailBySystem(const QString& fileName)
{
    Fail(fileName, QString::fromLocal8Bit(std::strerror(errno)));
}

QFileDevice::Permissions PermissionsFor(Readers readers)
{
    const QFileDevice::Permissions owner = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    return readers == Readers::Owner ? owner : owner | QFileDevice::ReadGroup | QFileDevice::ReadOther;
}

/// By the system call: the toolkit does not say why a write stopped half way. When this is false, errno does.
bool WriteAll(int descriptor, const QByteArray& contents)
{
    for (qsizetype at = 0; at < contents.size();) {
        const ssize_t written = write(descriptor, contents.constData() + at, static_cast<size_t>(contents.size() - at));
        if (written < 0 && errno != EINTR)
            return false;
        at += written < 0 ? 0 : written;
    }
    return true;
}

void SyncFolder(const QString& folder)
{
    const int descriptor = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) // a folder may be writable without being readable
        return;
    fsync(descriptor);
    close(descriptor);
}

/// The name at the end of all links, including a last one that leads nowhere yet.
QString FinalName(const QString& fileName, const Replacement& how)
{
    constexpr int highestLinkCount = 40; // as many as the system follows
    QString name = fileName;
    for (int links = 0; how.followsLink && QFileInfo(name).isSymLink(); ++links) {
        if (links == highestLinkCount)
            Fail(fileName, u"it is a link to itself"_s);
        const QFileInfo info(name);
        name = info.exists() ? info.canonicalFilePath() : info.symLinkTarget();
    }
    return name;
}

/// Anything but a file would be lost: a pipe that a program reads from, a device.
void RequireReplaceable(const QString& fileName, const QString& target)
{
    const QFileInfo info(target);
    if (info.exists() && !info.isFile() && !info.isSymLink())
        Fail(fileName, u"it is not a file"_s);
}

} // namespace

void ReplaceFile(const QString& fileName, const QByteArray& contents, const Replacement& how)
{
    const QString target = FinalName(fileName, how);
    RequireReplaceable(fileName, target);
    QTemporaryFile file(target + u".XXXXXX"_s);
    if (!file.open() || !file.setPermissions(PermissionsFor(how.readers)))
        Fail(fileName, file.errorString());
    if (!WriteAll(file.handle(), contents) || (how.synced && fsync(file.handle()) != 0))
        FailBySystem(fileName);
    if (std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(target).constData()) != 0)
        FailBySystem(fileName);
    file.setAutoRemove(false);
    if (how.synced)
        SyncFolder(QFileInfo(target).absolutePath());
}

void MakeFolder(const QString& path, Readers readers)
{
    constexpr mode_t mode = 0755; // less the umask
    const QString cleanPath = QDir::cleanPath(path);
    if (QFileInfo::exists(cleanPath))
        return;
    MakeFolder(QFileInfo(cleanPath).path(), readers);
    const QByteArray name = QFile::encodeName(cleanPath);
    if (mkdir(name.constData(), mode) == 0 && readers == Readers::Everybody)
        chmod(name.constData(), mode);
}

} // namespace qor
