#include "platform/shell/ReplaceFile.h"

#include "platform/runtime/RuntimeError.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
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

/// Flushes first: a failure in the last block is told nowhere else.
bool WriteAll(QTemporaryFile& file, const QByteArray& contents, const Replacement& how)
{
    return file.open() && file.setPermissions(PermissionsFor(how.readers)) && file.write(contents) == contents.size() &&
           file.flush();
}

void SyncFolder(const QString& folder)
{
    const int descriptor = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) // one that may be written and not read
        return;
    fsync(descriptor);
    close(descriptor);
}

/// The name that the file has in the end; a link that leads nowhere yet counts as well.
QString FinalName(const QString& fileName, const Replacement& how)
{
    const QFileInfo info(fileName);
    if (!how.followsLink || !info.isSymLink())
        return fileName;
    return info.exists() ? info.canonicalFilePath() : info.symLinkTarget();
}

} // namespace

void ReplaceFile(const QString& fileName, const QByteArray& contents, const Replacement& how)
{
    const QString target = FinalName(fileName, how);
    QTemporaryFile file(target + u".XXXXXX"_s);
    if (!WriteAll(file, contents, how))
        Fail(fileName, file.errorString());
    if (how.synced && fsync(file.handle()) != 0)
        FailBySystem(fileName);
    if (std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(target).constData()) != 0)
        FailBySystem(fileName);
    file.setAutoRemove(false);
    if (how.synced)
        SyncFolder(QFileInfo(target).absolutePath());
}

} // namespace qor
