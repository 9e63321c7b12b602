#include "History.h"

#include "Output.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/RuntimeError.h"
#include "ReadAccess.h"
#include "rules/EarlierVersions.h"
#include "rules/NodeDifferences.h"
#include "rules/NodeLoading.h"
#include "store/DataBase.h"
#include "StoredNode.h"

#include <limits>
#include <QDir>

namespace qor {

namespace {

/// Nothing for a node that is not stored.
std::optional<DirectoryNode> StoredNode(const HistoryRequest& request)
{
    DataBase dataBase(ConnectionStringFor(request.fileName));
    const ReadAccess access(dataBase.Conn, request.fileName);
    constexpr int anyPrompt = std::numeric_limits<qint16>::max(); // that of the header does not matter here
    auto node = LoadNode(dataBase, request.node, anyPrompt);
    access.RequireUnchanged();
    return node;
}

void PrintVersions(const std::vector<KeptNode>& versions, const std::vector<DirectoryEntry>& stored)
{
    QList<QStringList> lines{{u"Saved"_s, u"By"_s, u"Entries"_s, u"Changes"_s}};
    for (const KeptNode& version : versions) {
        lines << QStringList{GeneralDateText(version.time), version.user, QString::number(version.node.entries.size()),
                             DifferencesText(CompareEntries(stored, version.node.entries))};
    }
    PrintTable(lines);
}

} // namespace

void PrintHistory(const HistoryRequest& request)
{
    const auto stored = StoredNode(request);
    const QString name = NameOf(request.node);
    const QString miscFolder = MiscFolderFor(request.fileName);
    const QString folder = QDir::cleanPath(VersionFolder(miscFolder, request.node));
    const std::vector<KeptNode> versions = ReadVersions(miscFolder, request.node);
    const bool isKept = HasVersions(miscFolder, request.node);
    if (!stored && !isKept)
        throw RuntimeError(ErrorNumber::Provider,
                           u"There is no %1, and no earlier version of it in %2."_s.arg(name, folder));
    if (versions.empty()) {
        const QString sentence = isKept ? u"The earlier versions of %1 in %2 cannot be read by you."_s
                                        : u"There are no earlier versions of %1 in %2."_s;
        PrintLine(sentence.arg(name, folder));
        return;
    }
    const QString sentence = stored ? u"Earlier versions of %1:"_s : u"%1 is no longer stored. Its earlier versions:"_s;
    PrintLine(sentence.arg(name));
    PrintVersions(versions, stored ? stored->entries : std::vector<DirectoryEntry>());
}

} // namespace qor
