#include "MessageDescriptions.h"

#include "rules/MessageNodes.h"
#include "StoredDirectories.h"

namespace qor {

MessageDescriptions::PartitionFound& MessageDescriptions::FoundIn(const Partition& partition)
{
    const auto [place, isNew] = mPartitions.try_emplace({partition.config, partition.number});
    if (isNew) {
        for (const StoredMessage& message : mMessages.Of(partition))
            place->second.described.insert(message.description, {});
    }
    return place->second;
}

void MessageDescriptions::Look(const StoredDirectory& directory)
{
    const MessagesByNumber& messages = mMessages.Of(directory.partition);
    if (messages.isEmpty())
        return;
    PartitionFound& found = FoundIn(*directory.partition);
    for (const StoredEntry& entry : directory.entries) {
        const QString description = MessageNodeDescription(entry.shown);
        const auto described = found.described.find(description);
        if (described != found.described.end() && described->isEmpty())
            *described = directory.Place(entry);
        const StoredMessage* const message = FindMessage(messages, entry.shown.prompt);
        const int number = entry.shown.prompt.toInt();
        if (message && message->description != description && !found.misnamed.contains(number))
            found.misnamed.insert({number, {message->description, directory.Place(entry)}});
    }
}

Finding MessageDescriptions::Result() const
{
    Finding finding{u"message nodes that may speak the wrong name, as they are described as another entry"_s};
    for (const auto& [partition, found] : mPartitions) {
        for (const auto& [number, misnamed] : found.misnamed) {
            const QString described = found.described.value(misnamed.description);
            if (!described.isEmpty())
                finding.Add(u"%1: MSG %2 is \"%3\", as %4"_s.arg(misnamed.namedBy, QString::number(number),
                                                                 misnamed.description, described));
        }
    }
    return finding;
}

} // namespace qor
