#include "rules/DraftFiles.h"

#include "platform/runtime/RuntimeError.h"
#include "platform/shell/ReadFile.h"
#include "platform/shell/ReplaceFile.h"

#include <cstdio>
#include <QDir>
#include <unistd.h>

namespace qor {

namespace {

/// Far more than any directory that can be edited.
constexpr qint64 highestDraftSize = 64LL * 1024 * 1024;

/// "DIRUnsaved-1-1-7."
QString Stem(const NodeIdentity& identity)
{
    return u"DIRUnsaved-%1-%2-%3."_s.arg(identity.partition.config).arg(identity.partition.number).arg(identity.number);
}

void Rename(const QString& fileName, const QString& newName)
{
    std::rename(QFile::encodeName(fileName).constData(), QFile::encodeName(newName).constData());
}

bool IsLeft(const RunningProcess& writer)
{
    const RunningProcess own = OwnProcess();
    return writer == own || writer.start.isEmpty() || ProcessNumbered(writer.number) != writer;
}

/// Nothing for a file that is not to be offered.
std::optional<KeptNode> ReadLeftDraft(const QFileInfo& file, const NodeIdentity& identity)
{
    const QString fileName = file.filePath();
    if (file.ownerId() != geteuid()) // what others put there is not for this administrator
        return std::nullopt;
    KeptReading reading{KeptReading::Verdict::Damaged, {}};
    if (file.size() <= highestDraftSize) {
        try {
            reading = ReadKeptText(ReadWholeFile(fileName, highestDraftSize).value_or(QByteArray()), identity);
        } catch (const RuntimeError&) {
            return std::nullopt;
        }
    }
    if (reading.verdict == KeptReading::Verdict::Damaged)
        Rename(fileName, fileName + u".bad"_s);
    if (reading.verdict != KeptReading::Verdict::Sound || !IsLeft(reading.kept.writer))
        return std::nullopt;
    return std::move(reading.kept);
}

/// Removes what processes left that were killed while they wrote.
void RemoveUnfinished(const QDir& folder, const QString& stem)
{
    for (const QString& name : folder.entryList({stem + u"*.json.??????"_s}, QDir::Files)) {
        const qint64 process = name.mid(stem.size()).section(u'.', 0, 0).toLongLong();
        if (process > 0 && ProcessNumbered(process).start.isEmpty())
            QFile::remove(folder.filePath(name));
    }
}

} // namespace

QString OwnDraftName(const QString& miscFolder, const NodeIdentity& identity)
{
    return miscFolder + Stem(identity) + QString::number(OwnProcess().number) + u".json"_s;
}

void WriteDraft(const QString& miscFolder, const KeptNode& draft, bool synced)
{
    MakeFolder(miscFolder, Readers::Owner);
    ReplaceFile(OwnDraftName(miscFolder, draft.node.identity), KeptText(draft), {.synced = synced});
}

void RemoveOwnDraft(const QString& miscFolder, const NodeIdentity& identity)
{
    QFile::remove(OwnDraftName(miscFolder, identity));
}

std::optional<LeftDraft> FindLeftDraft(const QString& miscFolder, const NodeIdentity& identity,
                                       const QStringList& passed)
{
    const QDir folder(miscFolder);
    const QString stem = Stem(identity);
    RemoveUnfinished(folder, stem);
    for (const QFileInfo& file : folder.entryInfoList({stem + u"*.json"_s}, QDir::Files, QDir::Time)) {
        if (passed.contains(file.filePath()))
            continue;
        if (auto draft = ReadLeftDraft(file, identity))
            return LeftDraft{file.filePath(), std::move(*draft)};
    }
    return std::nullopt;
}

void DiscardDraft(const QString& fileName)
{
    const QFileInfo file(fileName);
    const QDir folder = file.dir();
    const QString stem = file.fileName().section(u'.', 0, 0);
    for (const QString& before : folder.entryList({stem + u".*.discarded"_s}, QDir::Files))
        QFile::remove(folder.filePath(before));
    Rename(fileName, fileName + u".discarded"_s);
}

} // namespace qor
