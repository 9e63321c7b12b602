#include "rules/NodeSaving.h"

#include "platform/data/DeferredSync.h"
#include "platform/data/SavingLock.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/RuntimeError.h"
#include "platform/runtime/StandardError.h"
#include "rules/CommandValues.h"
#include "rules/EarlierVersions.h"
#include "rules/NodeLoading.h"
#include "store/DataBase.h"

#include <QDateTime>
#include <QStorageInfo>

namespace qor {

namespace {

void SaveHeader(DataBase& dataBase, const DirectoryNode& node)
{
    const NodeHeader& header = node.header;
    dataBase.Execute(CommandId::Update_DIR_Node, QStringList{header.description, header.usePasswords ? u"1"_s : u"0"_s,
                                                             header.accessCode, header.startingPrompt} +
                                                     ValuesOf(node.identity));
    dataBase.Execute(CommandId::Update_Node_General_Pool,
                     QStringList{header.description, GeneralDateText(QDateTime::currentDateTime())} +
                         ValuesOf(node.identity.partition) +
                         QStringList{NODE_TYPE_DIR, QString::number(node.identity.number)});
}

/// Counts those that are written.
void SaveEntries(DataBase& dataBase, const DirectoryNode& node, int& written)
{
    const QStringList partition = ValuesOf(node.identity.partition);
    const QString number = QString::number(node.identity.number);
    for (const DirectoryEntry& entry : node.entries) {
        dataBase.Execute(CommandId::Add_Detail_DIR,
                         {partition[0], partition[1], QString::number(written + 1), number, entry.firstName,
                          entry.lastName, entry.extension, entry.prompt, entry.password});
        ++written;
    }
}

/// written: nothing when the entries stored before were not removed.
QString HeldSentence(const DirectoryNode& node, std::optional<int> written)
{
    if (!written)
        return u"\r\nDIR %1 is stored as it was."_s.arg(node.identity.number);
    return u"\r\nThe database now holds %2 of %3 entries of DIR %1."_s.arg(node.identity.number)
        .arg(*written)
        .arg(node.entries.size());
}

RuntimeError WithHeldSentence(const RuntimeError& error, const DirectoryNode& node, std::optional<int> written)
{
    return {error.Number(), error.Description() + HeldSentence(node, written), error.Source()};
}

/// One number for each node of a database, from 0 up.
qint64 SectionOf(const NodeIdentity& identity)
{
    constexpr int bits = 16;
    qint64 section = 0;
    for (const qint16 part : {identity.partition.config, identity.partition.number, identity.number})
        section = (section << bits) | static_cast<quint16>(part);
    return section;
}

void KeepStoredVersion(DataBase& dataBase, const NodeIdentity& identity, const QString& miscFolder,
                       int highestMessageNode)
{
    auto stored = LoadNode(dataBase, identity, highestMessageNode);
    if (!stored)
        return;
    try {
        KeepVersion(miscFolder, KeptNow(std::move(*stored)));
    } catch (const RuntimeError& error) {
        TellOnce(u"versions"_s, u"earlier versions are not kept. "_s + error.Description());
    }
}

/// What cannot be read is not known; that the save went well stays true.
std::optional<DirectoryNode> ReadBack(DataBase& dataBase, const NodeIdentity& identity, int highestMessageNode)
{
    try {
        return LoadNode(dataBase, identity, highestMessageNode);
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

} // namespace

void SaveNode(DataBase& dataBase, const DirectoryNode& node)
{
    std::optional<int> written;
    try {
        DeferredSync sync(dataBase.Conn);
        dataBase.Execute(CommandId::Delete_DIR_DetailsNode, ValuesOf(node.identity));
        written = 0;
        SaveHeader(dataBase, node);
        SaveEntries(dataBase, node, *written);
        sync.Finish();
    } catch (const RuntimeError& error) {
        throw WithHeldSentence(error, node, written);
    }
}

void RequireRoomForSave(const QString& databaseFolder)
{
    constexpr qint64 room = 8LL * 1024 * 1024; // the engine empties its log when it has grown to half of that
    if (QStorageInfo(databaseFolder).bytesAvailable() < room) {
        throw RuntimeError(
            ErrorNumber::FileAccess,
            u"The disk of %1 is almost full, and the list cannot be kept either. Nothing was saved. Free some "
            "space and try again."_s.arg(databaseFolder));
    }
}

std::optional<DirectoryNode> SaveNodeKeepingVersion(DataBase& dataBase, const DirectoryNode& node,
                                                    const QString& miscFolder, int highestMessageNode)
{
    std::optional<SavingLock> lock;
    try {
        lock.emplace(dataBase.Conn, SectionOf(node.identity));
        KeepStoredVersion(dataBase, node.identity, miscFolder, highestMessageNode);
    } catch (const RuntimeError& error) {
        throw WithHeldSentence(error, node, std::nullopt);
    }
    SaveNode(dataBase, node);
    return ReadBack(dataBase, node.identity, highestMessageNode);
}

} // namespace qor
