#include "rules/EarlierVersions.h"

#include "platform/runtime/RuntimeError.h"
#include "platform/shell/ReadFile.h"
#include "platform/shell/ReplaceFile.h"

#include <algorithm>
#include <QDir>

namespace qor {

namespace {

constexpr qint64 highestVersionSize = 64LL * 1024 * 1024;
const QString timeFormat = u"yyyyMMdd'T'HHmmsszzz"_s; // in UTC, so that the names sort by time

/// Names of files, the oldest first.
QStringList VersionNames(const QDir& folder)
{
    return folder.entryList({u"*.json"_s}, QDir::Files, QDir::Name);
}

QString NextName(const QStringList& names, const QDateTime& time)
{
    QDateTime next = time.toUTC();
    if (!names.isEmpty()) {
        QDateTime latest = QDateTime::fromString(QFileInfo(names.last()).baseName(), timeFormat);
        latest.setTimeSpec(Qt::UTC);
        if (latest.isValid() && latest >= next)
            next = latest.addMSecs(1);
    }
    return next.toString(timeFormat) + u".json"_s;
}

/// Whoever may write into Misc may keep versions, too; each file is for its owner only.
QDir MakeVersionFolder(const QString& miscFolder, const NodeIdentity& identity)
{
    const QDir folder(VersionFolder(miscFolder, identity));
    if (!folder.exists()) {
        MakeFolder(miscFolder, Readers::Owner);
        QDir().mkpath(folder.path());
        const auto permissions = QFileInfo(miscFolder).permissions();
        QFile::setPermissions(miscFolder + u"DIRHistory"_s, permissions);
        QFile::setPermissions(folder.path(), permissions);
    }
    return folder;
}

void RemoveOldest(const QDir& folder)
{
    const QStringList names = VersionNames(folder);
    for (qsizetype i = 0; i < names.size() - highestVersionCount; ++i)
        QFile::remove(folder.filePath(names[i]));
    for (const QString& unfinished : folder.entryList({u"*.json.??????"_s}, QDir::Files)) // left by a killed process
        QFile::remove(folder.filePath(unfinished));
}

} // namespace

QString VersionFolder(const QString& miscFolder, const NodeIdentity& identity)
{
    return miscFolder +
           u"DIRHistory/%1-%2-%3/"_s.arg(identity.partition.config).arg(identity.partition.number).arg(identity.number);
}

void KeepVersion(const QString& miscFolder, const KeptNode& version)
{
    const QDir folder = MakeVersionFolder(miscFolder, version.node.identity);
    ReplaceFile(folder.filePath(NextName(VersionNames(folder), version.time)), KeptText(version), {});
    RemoveOldest(folder);
}

bool HasVersions(const QString& miscFolder, const NodeIdentity& identity)
{
    return !VersionNames(QDir(VersionFolder(miscFolder, identity))).isEmpty();
}

std::vector<KeptNode> ReadVersions(const QString& miscFolder, const NodeIdentity& identity)
{
    const QDir folder(VersionFolder(miscFolder, identity));
    QStringList names = VersionNames(folder);
    std::ranges::reverse(names);
    std::vector<KeptNode> versions;
    for (const QString& name : names) {
        try {
            const auto text = ReadWholeFile(folder.filePath(name), highestVersionSize);
            KeptReading reading = ReadKeptText(text.value_or(QByteArray()), identity);
            if (reading.verdict == KeptReading::Verdict::Sound)
                versions.push_back(std::move(reading.kept));
        } catch (const RuntimeError&) {
            // Another user's.
        }
    }
    return versions;
}

} // namespace qor
