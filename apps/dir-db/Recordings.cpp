#include "Recordings.h"

#include "Output.h"
#include "ReadAccess.h"
#include "RecordingFiles.h"
#include "rules/DelimitedWriter.h"
#include "rules/MessageNodes.h"
#include "store/DataBase.h"
#include "StoredMessages.h"

namespace qor {

namespace {

QString RecordingOf(const MessagesByNumber& messages, const Partition& partition, const QString& prompt)
{
    const StoredMessage* const message = FindMessage(messages, prompt);
    return message && !message->recording.isEmpty() ? message->recording : WaveFileName(partition.number, prompt);
}

void PrintRecord(const QStringList& values)
{
    PrintLine(DelimitedLine(values, Quoting::WhereNeeded));
}

} // namespace

void PrintRecordings(const RecordingsRequest& request)
{
    std::optional<RecordingFiles> files;
    if (!request.missingIn.isEmpty())
        files.emplace(request.missingIn);
    DataBase dataBase(ConnectionStringFor(request.fileName));
    const ReadAccess access(dataBase.Conn, request.fileName);
    const StoredMessages messages(dataBase.Conn);
    bool isFirst = true;
    QSet<QStringList> printed;
    ForEachChosenNode(dataBase, request.nodes, [&](const DirectoryNode& node) {
        if (std::exchange(isFirst, false))
            PrintRecord({u"File"_s, u"Say"_s, u"Extension"_s});
        const Partition& partition = node.identity.partition;
        for (const DirectoryEntry& entry : node.entries) {
            const QStringList record{RecordingOf(messages.Of(partition), partition, entry.prompt),
                                     entry.firstName + u' ' + entry.lastName, entry.extension};
            if ((files && files->Contains(record[0])) || printed.contains(record))
                continue;
            printed.insert(record);
            PrintRecord(record);
        }
    });
}

} // namespace qor
