#include "platform/shell/TrustedPath.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <QDir>
#include <QFileInfo>
#include <QStringList>
#include <sys/stat.h>
#include <unistd.h>

namespace qor {

namespace {

using Status = struct stat;

/// 0, or what went wrong.
int ReadStatus(const QString& path, Status& status)
{
    return lstat(QFile::encodeName(path).constData(), &status) == 0 ? 0 : errno;
}

bool IsWritableByOthers(const Status& status)
{
    return !S_ISLNK(status.st_mode) && (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

/// A folder such as /tmp: everybody may add to it, but nobody may move or remove the files of others.
bool IsSticky(const Status& status)
{
    return S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0;
}

/// Follows a path the way the system does, part by part.
class Walk
{
public:
    explicit Walk(const QString& path) { Expect(path.startsWith(u'/') ? path : QDir::currentPath() + u'/' + path); }

    std::optional<QString> FindProblem()
    {
        std::optional<QString> problem;
        while (!problem && !mAhead.isEmpty())
            problem = Enter(PathOf(mAhead.takeFirst()));
        return problem;
    }

private:
    void Expect(const QString& path)
    {
        mAhead = path.split(u'/', Qt::SkipEmptyParts) + mAhead;
        if (path.startsWith(u'/'))
            mAhead.prepend(u"/"_s);
    }

    QString PathOf(const QString& name) const
    {
        if (name == u"/" || name == u".")
            return name == u"/" ? name : mAt;
        if (name == u"..")
            return QFileInfo(mAt).path();
        return mAt.endsWith(u'/') ? mAt + name : mAt + u'/' + name;
    }

    std::optional<QString> Enter(const QString& path)
    {
        Status status{};
        if (const int error = ReadStatus(path, status))
            return MissingProblem(path, error);
        if (auto problem = PartProblem(path, status))
            return problem;
        mInShared = IsWritableByOthers(status) && IsSticky(status);
        if (!S_ISLNK(status.st_mode))
            mAt = path;
        else if (++mLinks <= highestLinkCount)
            Expect(LinkTarget(path));
        else
            return u"%1 is a link that leads nowhere. Name the file itself."_s.arg(path);
        return std::nullopt;
    }

    std::optional<QString> PartProblem(const QString& path, const Status& status) const
    {
        if (status.st_uid != 0 && status.st_uid != geteuid())
            return u"%1 belongs to another user. Make it your own or root's."_s.arg(path);
        if (IsWritableByOthers(status) && !IsSticky(status))
            return u"%1 can be written by others than its owner. Take that permission away."_s.arg(path);
        // Others cannot put a folder of ours there, but they can put a hard link to a file or link of ours.
        return mInShared && !S_ISDIR(status.st_mode) ? SharedProblem(path) : std::nullopt;
    }

    std::optional<QString> MissingProblem(const QString& path, int error)
    {
        mAhead.clear();
        if (error != ENOENT && error != ENOTDIR)
            return u"%1 cannot be examined: %2."_s.arg(path, QString::fromLocal8Bit(std::strerror(error)));
        return mInShared ? SharedProblem(path) : std::nullopt;
    }

    static std::optional<QString> SharedProblem(const QString& path)
    {
        return u"%1 lies in a folder where others can put files. Move it to a folder of its own."_s.arg(path);
    }

    static QString LinkTarget(const QString& path)
    {
        std::error_code ignored; // a link that is gone has no target
        const auto target = std::filesystem::read_symlink(QFile::encodeName(path).toStdString(), ignored);
        return QFile::decodeName(QByteArray::fromStdString(target.native()));
    }

    static constexpr int highestLinkCount = 40; // as many as the system follows
    QStringList mAhead;
    QString mAt = u"/"_s;   ///< a folder, reached without links
    bool mInShared = false; ///< whether others can add to it
    int mLinks = 0;
};

} // namespace

std::optional<QString> TrustProblem(const QString& path)
{
    return Walk(path).FindProblem();
}

} // namespace qor
