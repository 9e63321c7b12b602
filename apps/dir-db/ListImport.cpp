#include "ListImport.h"

#include "ImportReport.h"
#include "NewFile.h"
#include "Output.h"
#include "platform/runtime/RuntimeError.h"
#include "platform/runtime/SignalsHeld.h"
#include "platform/shell/ReadFile.h"
#include "rules/EntryList.h"
#include "rules/NodeLoading.h"
#include "rules/NodeSaving.h"
#include "rules/PromptNumbers.h"
#include "rules/Validation.h"
#include "store/DataBase.h"
#include "StoredNode.h"

#include <algorithm>
#include <QBuffer>
#include <QDateTime>
#include <QFileInfo>
#include <QSet>

namespace qor {

namespace {

const QString nothingWritten = u" Nothing was written."_s;

[[noreturn]] void Refuse(const QString& sentence)
{
    throw RuntimeError(ErrorNumber::InvalidFileFormat, sentence + nothingWritten);
}

void RequireFreeNames(const ListImportRequest& request)
{
    for (const QString& name : {request.rejectedName, request.suggestedName}) {
        if (!name.isEmpty())
            RequireFreeName(name);
    }
    if (!request.rejectedName.isEmpty() && request.rejectedName == request.suggestedName)
        Refuse(u"%1 cannot take both the rejected entries and the suggestions. Give them two names."_s.arg(
            request.rejectedName));
}

/// The whole file. It may not change meanwhile: half a list would replace a directory.
QByteArray ReadList(const QString& name)
{
    constexpr qint64 highestSize = qint64{16} * 1024 * 1024;
    const QFileInfo before(name);
    const auto written = before.lastModified();
    const auto bytes = ReadWholeFile(name, highestSize);
    if (!bytes)
        Refuse(u"There is no file %1."_s.arg(name));
    const QFileInfo after(name);
    if (after.size() != bytes->size() || after.lastModified() != written)
        Refuse(u"%1 was changed while it was read. Try again when it is complete."_s.arg(name));
    return *bytes;
}

std::optional<TableLayout> ChooseLayout(const ListImportRequest& request, QIODevice& list)
{
    if (request.rule == ListRule::Plain)
        return std::nullopt;
    auto table = DetectTable(list);
    if (request.rule == ListRule::Table) {
        if (!table)
            table = FindTable(list);
        if (!table)
            Refuse(u"%1 holds no table with last names, first names and extensions."_s.arg(request.listName));
        PrintLine(TableSentence(*table));
    } else if (table) {
        Refuse(u"%1 does not look like a plain LastName,FirstName,Extension file. %2 Add \"--layout table\" if it is "
               "to be read so, or \"--layout plain\"."_s.arg(request.listName, TableSentence(*table)));
    }
    return table;
}

/// The numbers of message nodes, and prompts of entries whose message nodes do not exist yet: an editor that stays open
/// between two imports also goes on after those.
MessageNodeNumbers UsedNumbers(DataBase& dataBase, const DirectoryNode& node)
{
    MessageNodeNumbers used = UsedMessageNodeNumbers(dataBase, node.identity.partition);
    for (const DirectoryEntry& entry : node.entries)
        used.push_back(entry.prompt.toInt());
    std::ranges::sort(used);
    return used;
}

/// The directory as the editor would show it after its import.
ImportedNode ReadInto(DataBase& dataBase, const ListImportRequest& request, QIODevice& list,
                      const std::optional<TableLayout>& layout)
{
    ImportedNode imported;
    imported.highestMessageNode = RequireHighestMessageNode(dataBase, request.node.partition);
    imported.node = RequireNode(dataBase, request.node, imported.highestMessageNode);
    imported.stored = imported.node;
    std::vector<DirectoryEntry>& entries = imported.node.entries;
    if (request.replaces)
        entries.clear();
    const std::size_t before = entries.size();
    const MessageNodeNumbers used = UsedNumbers(dataBase, imported.node);
    imported.freePromptCount = FreeNumberCount(used, imported.highestMessageNode);
    PromptNumbers prompts;
    imported.report = ReadEntryList(list, layout, before, [&](const DirectoryEntry& entry) {
        const qint16 number = prompts.Next(imported.node.header.startingPrompt, imported.highestMessageNode, used);
        entries.push_back({entry.lastName, entry.firstName, entry.extension, NewEntryPrompt(number), newEntryPassword});
    });
    imported.takenCount = entries.size() - before;
    return imported;
}

void RequireWhole(const ListImportRequest& request, const ImportedNode& imported)
{
    if (imported.report.broken)
        Refuse(u"%1 cannot be read to its end. %2"_s.arg(request.listName, imported.report.fault));
    if (imported.takenCount == 0 && imported.report.refused.empty())
        Refuse(u"%1 holds no entries."_s.arg(request.listName));
}

/// Whether a prompt was met before, for FindFault and RepeatedPrompts.
std::function<bool(const QString&)> Meeting()
{
    return [met = QSet<QString>()](const QString& prompt) mutable {
        const bool isMet = met.contains(prompt);
        met.insert(prompt);
        return isMet;
    };
}

/// Refuses what keeps the editor from saving, or makes it ask.
void RequireSavable(const ListImportRequest& request, const ImportedNode& imported)
{
    const DirectoryNode& node = imported.node;
    const QString name = NameOf(node.identity);
    if (!IsAcceptableAccessCode(node.header.accessCode))
        Refuse(u"The access code of %1 has too few characters. Correct it in the editor first."_s.arg(name));
    const auto fault = FindFault(node.entries, Meeting());
    if (fault && fault->isInvalid)
        Refuse(u"Entry %1 of %2 cannot be saved, because its extension is not a number. Correct it in the editor "
               "first, or add \"--replace\"."_s.arg(QString::number(fault->row + 1), name));
    if (fault && !request.sharesPrompts) {
        const auto repeated = RepeatedPrompts(node.entries, Meeting());
        Refuse(u"In %1 the prompts of %2 would be those of others, the first of them entry %3 with MSG %4: there are "
               "too few free numbers, or the directory uses some twice. Raise the maximum number of message nodes, or "
               "add \"--share-prompts\"."_s.arg(name, EntriesText(repeated.size()),
                                                QString::number(repeated.front() + 1),
                                                node.entries[repeated.front()].prompt));
    }
    if (!IsAcceptableLabel(node.header.description))
        Refuse(
            u"The label of %1 holds double quotes or continuous single quotes. Correct it in the editor first."_s.arg(
                name));
}

/// Files that are removed again unless the work succeeds.
class MadeFiles
{
public:
    ~MadeFiles()
    {
        for (const QString& name : mNames)
            QFile::remove(name);
    }
    MadeFiles() = default;
    Q_DISABLE_COPY_MOVE(MadeFiles)

    /// Nothing for an empty name.
    void Make(const QString& name, const QByteArray& contents)
    {
        if (name.isEmpty())
            return;
        WriteNewFile(name, contents);
        mNames << name;
    }
    void Keep() { mNames.clear(); }

private:
    QStringList mNames;
};

SaveResult Save(DataBase& dataBase, const ListImportRequest& request, const ImportedNode& imported)
{
    try {
        return SaveNodeKeepingVersion(dataBase, imported.node,
                                      {.stored = imported.stored, .attempted = {}, .isDeleted = false},
                                      MiscFolderFor(request.fileName), imported.highestMessageNode);
    } catch (const RuntimeError& error) { // a message box has its sentences on lines of their own
        throw RuntimeError(error.Number(), QString(error.Description()).replace(u"\r\n"_s, u" "_s), error.Source());
    }
}

void TellStored(DataBase& dataBase, const ImportedNode& imported, const std::optional<DirectoryNode>& stored)
{
    const DirectoryNode& node = imported.node;
    if (!stored || !IsLoadedFrom(*stored, node, imported.highestMessageNode)) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"%1 was saved, but the database does not give it back as it was saved. Look at it with "
                           "\"dir-db show\"."_s.arg(NameOf(node.identity)));
    }
    PrintLine(u"%1 holds %2 now"_s.arg(NameOf(node.identity), EntriesText(node.entries.size())));
    PrintMissingMessageNodes(dataBase, node);
}

/// The files come first: without them nobody could complete the directory after it was saved.
void Write(DataBase& dataBase, const ListImportRequest& request, const ImportedNode& imported)
{
    const SignalsHeld held; // a directory that is half saved helps nobody
    MadeFiles files;
    if (const auto& refused = imported.report.refused; !refused.empty()) {
        files.Make(request.rejectedName, RejectedText(refused));
        files.Make(request.suggestedName, SuggestedText(refused));
    }
    if (imported.takenCount == 0) {
        PrintLine(u"%1 stays as it is"_s.arg(NameOf(imported.node.identity)));
        files.Keep();
        return;
    }
    RequireRoomForSave(dataBase, QFileInfo(QFileInfo(request.fileName).canonicalFilePath()).path());
    const SaveResult result = Save(dataBase, request, imported);
    if (result.isOvertaken) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"%1 was changed at another station at the same moment. Nothing was saved. Try again."_s.arg(
                               NameOf(imported.node.identity)));
    }
    files.Keep();
    TellStored(dataBase, imported, result.stored);
}

} // namespace

bool ImportList(const ListImportRequest& request)
{
    RequireFreeNames(request);
    QBuffer list;
    list.setData(ReadList(request.listName));
    list.open(QIODevice::ReadOnly);
    const auto layout = ChooseLayout(request, list);
    DataBase dataBase(ConnectionStringFor(request.fileName));
    const ImportedNode imported = ReadInto(dataBase, request, list, layout);
    PrintReport(request.listName, imported);
    RequireWhole(request, imported);
    RequireSavable(request, imported);
    if (request.dryRun)
        PrintLine(u"Nothing was written"_s);
    else
        Write(dataBase, request, imported);
    return imported.report.refused.empty();
}

} // namespace qor
