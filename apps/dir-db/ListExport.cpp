#include "ListExport.h"

#include "NewFile.h"
#include "Output.h"
#include "rules/EntryList.h"
#include "store/DataBase.h"
#include "StoredNode.h"

#include <cstdio>
#include <unistd.h>

namespace qor {

namespace {

/// Prints it as it is, except on a terminal, which a text must not control.
void PrintList(const QByteArray& text)
{
    if (isatty(STDOUT_FILENO) == 0) {
        std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
        return;
    }
    for (const QString& line : QString::fromUtf8(text).split(u"\r\n"_s, Qt::SkipEmptyParts))
        PrintLine(line);
}

void TellSkipped(const DirectoryNode& node, const ListText& list)
{
    for (const int row : list.skippedRows) {
        const DirectoryEntry& entry = node.entries[static_cast<std::size_t>(row)];
        PrintError(u"Entry %1 of DIR %2 is left out: the extension \"%3\" of %4 %5 is not a number."_s.arg(row + 1)
                       .arg(node.identity.number)
                       .arg(entry.extension, entry.firstName, entry.lastName));
    }
}

} // namespace

bool ExportList(const ListExportRequest& request)
{
    if (!request.listName.isEmpty())
        RequireFreeName(request.listName);
    DataBase dataBase(ConnectionStringFor(request.fileName));
    const int highest = RequireHighestMessageNode(dataBase, request.node.partition);
    const DirectoryNode node = RequireNode(dataBase, request.node, highest);
    const ListText list = WriteEntryList(node.entries);
    TellSkipped(node, list);
    if (request.listName.isEmpty()) {
        PrintList(list.text);
    } else {
        WriteNewFile(request.listName, list.text);
        PrintLine(u"%1: made (%2 entries)"_s.arg(request.listName).arg(node.entries.size() - list.skippedRows.size()));
    }
    return list.skippedRows.empty();
}

} // namespace qor
