#include "rules/NodeSaving.h"

#include "platform/data/DeferredSync.h"
#include "platform/data/SavingLock.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/RuntimeError.h"
#include "platform/runtime/StandardError.h"
#include "rules/CommandValues.h"
#include "rules/EarlierVersions.h"
#include "rules/EntryColumns.h"
#include "rules/NodeLoading.h"
#include "rules/SavingSections.h"
#include "store/DataBase.h"

#include <filesystem>
#include <QDateTime>
#include <QFile>

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

QString StoredAsItWas(const DirectoryNode& node)
{
    return u"\r\nDIR %1 is stored as it was."_s.arg(node.identity.number);
}

/// written: nothing when the entries stored before were not removed.
QString OutcomeOf(const DirectoryNode& node, std::optional<int> written, bool isLost)
{
    if (isLost)
        return u"\r\nHow much of DIR %1 the database holds now is not known."_s.arg(node.identity.number);
    if (!written)
        return StoredAsItWas(node);
    return u"\r\nThe database now holds %2 of %3 entries of DIR %1."_s.arg(node.identity.number)
        .arg(*written)
        .arg(node.entries.size());
}

RuntimeError WithOutcome(const RuntimeError& error, const QString& outcome)
{
    return {error.Number(), error.Description() + outcome, error.Source()};
}

/// What fails in such a step changes nothing of the node.
template <typename Step>
void BeforeWriting(const DirectoryNode& node, Step step)
{
    try {
        step();
    } catch (const RuntimeError& error) {
        throw WithOutcome(error, StoredAsItWas(node));
    }
}

/// Before anything makes way for it.
void RequireStorable(DataBase& dataBase, const DirectoryNode& node)
{
    dataBase.Conn.RequireStorable(node.header.description);
    for (const DirectoryEntry& entry : node.entries) {
        for (const EntryColumn& column : entryColumns)
            dataBase.Conn.RequireStorable(entry.*column.field);
    }
}

void KeepStoredVersion(const QString& miscFolder, DirectoryNode stored)
{
    try {
        KeepVersion(miscFolder, KeptNow(std::move(stored)));
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
    std::optional<DeferredSync> sync;
    BeforeWriting(node, [&] {
        RequireStorable(dataBase, node);
        sync.emplace(dataBase.Conn);
    });
    std::optional<int> written;
    try {
        dataBase.Execute(CommandId::Delete_DIR_DetailsNode, ValuesOf(node.identity));
        written = 0;
        SaveHeader(dataBase, node);
        SaveEntries(dataBase, node, *written);
        sync->Finish();
    } catch (const RuntimeError& error) {
        throw WithOutcome(error, OutcomeOf(node, written, error.Number() == ErrorNumber::ConnectionLost));
    }
}

void RequireRoomForSave(const DataBase& dataBase, const QString& databaseFolder)
{
    constexpr std::uintmax_t room = 8UL * 1024 * 1024; // the engine empties its log when it has grown to half of that
    // Where the space cannot be told, it is the largest number.
    std::error_code unknown;
    if (!dataBase.Conn.IsShared() &&
        std::filesystem::space(QFile::encodeName(databaseFolder).toStdString(), unknown).available < room) {
        throw RuntimeError(
            ErrorNumber::FileAccess,
            u"The disk of %1 is almost full, and the list cannot be kept either. Nothing was saved. Free some "
            "space and try again."_s.arg(databaseFolder));
    }
}

SaveResult SaveNodeKeepingVersion(DataBase& dataBase, const DirectoryNode& node, const KnownNode& known,
                                  const QString& miscFolder, int highestMessageNode)
{
    std::optional<SavingLock> lock;
    bool isOvertaken = false;
    BeforeWriting(node, [&] {
        lock.emplace(dataBase.Conn, SectionOf(node.identity));
        auto stored = LoadNode(dataBase, node.identity, highestMessageNode);
        isOvertaken = dataBase.Conn.IsShared() && !ChangesOfOthers(known, stored, highestMessageNode).isEmpty();
        if (stored && !isOvertaken)
            KeepStoredVersion(miscFolder, std::move(*stored));
    });
    if (isOvertaken)
        return {.isOvertaken = true, .stored = {}};
    SaveNode(dataBase, node);
    return {.isOvertaken = false, .stored = ReadBack(dataBase, node.identity, highestMessageNode)};
}

} // namespace qor
