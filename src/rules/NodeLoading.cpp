#include "rules/NodeLoading.h"

#include "platform/runtime/Numbers.h"
#include "rules/CommandValues.h"
#include "rules/EntryColumns.h"
#include "rules/TypedText.h"
#include "store/DataBase.h"

#include <algorithm>

namespace qor {

namespace {

QString StartingPrompt(const QVariant& stored, int highestMessageNode)
{
    const int prompt = WholeNumber(stored).value_or(0);
    return QString::number(prompt >= 1 && prompt <= highestMessageNode ? prompt : 1);
}

NodeHeader ReadHeader(const Recordset& node, int highestMessageNode)
{
    return {.description = node.Field(u"NodeDescription"_s).toString(),
            .accessCode = Admitted(node.Field(u"AccessCode"_s).toString(), IsDigit),
            .usePasswords = WholeNumber(node.Field(u"UsePasswords"_s)) == 1,
            .startingPrompt = StartingPrompt(node.Field(u"StartingPromptNumber"_s), highestMessageNode)};
}

std::vector<DirectoryEntry> ReadEntries(Recordset& rows)
{
    const EntryReader reader(rows);
    std::vector<DirectoryEntry> entries;
    entries.reserve(static_cast<std::size_t>(rows.RecordCount()));
    for (; !rows.EndOfFile(); rows.MoveNext())
        entries.push_back(reader.Read(rows));
    return entries;
}

} // namespace

DirectoryNodeNumbers FindDirectoryNodes(DataBase& dataBase, const Partition& partition)
{
    Recordset nodes = dataBase.Open(CommandId::Get_All_DIR_Nodes, ValuesOf(partition) << NODE_TYPE_DIR);
    const int column = nodes.FieldIndex(u"NodeNumber"_s);
    DirectoryNodeNumbers found;
    for (; !nodes.EndOfFile(); nodes.MoveNext()) {
        if (const auto number = WholeNumber16(nodes.Field(column)))
            found.numbers.push_back(*number);
        else
            found.unusable << nodes.Field(column).toString();
    }
    return found;
}

std::optional<qint16> HighestMessageNode(DataBase& dataBase, const Partition& partition)
{
    const Recordset maxima = dataBase.Open(CommandId::Get_Specific_Node_Type_Max, ValuesOf(partition) << NODE_TYPE_MSG);
    if (maxima.EndOfFile())
        return std::nullopt;
    const auto highest = Int16FromField(maxima.Field(u"Max_number"_s), u"Max_number of the message nodes"_s);
    return highest && *highest > 0 ? highest : std::nullopt;
}

std::optional<DirectoryNode> LoadNode(DataBase& dataBase, const NodeIdentity& identity, int highestMessageNode)
{
    const Recordset node = dataBase.Open(CommandId::Get_DIR_Node, ValuesOf(identity) << NODE_TYPE_DIR);
    if (node.EndOfFile())
        return std::nullopt;
    Recordset entries = dataBase.Open(CommandId::Get_DIR_DetailsNode, ValuesOf(identity));
    return DirectoryNode{identity, ReadHeader(node, highestMessageNode), ReadEntries(entries)};
}

bool IsLoadedFrom(const DirectoryNode& loaded, const DirectoryNode& node, int highestMessageNode)
{
    NodeHeader header = node.header;
    header.accessCode = Admitted(header.accessCode, IsDigit);
    header.startingPrompt = StartingPrompt(header.startingPrompt, highestMessageNode);
    return loaded.header == header && std::ranges::equal(loaded.entries, node.entries,
                                                         [](const DirectoryEntry& read, const DirectoryEntry& written) {
                                                             return read == written || read == AsRead(written);
                                                         });
}

} // namespace qor
