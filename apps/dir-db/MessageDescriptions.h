// Finds message nodes that may speak the wrong name.
#pragma once

#include "Findings.h"
#include "StoredMessages.h"

namespace qor {

struct StoredDirectory;

/// Finds the message nodes that are described as one entry and named by another. The editor describes a node as the
/// entry for which it makes it, and leaves the description when the number goes to somebody else.
class MessageDescriptions
{
public:
    explicit MessageDescriptions(const StoredMessages& messages) : mMessages(messages) {}

    void Look(const StoredDirectory& directory);
    /// What was found in the directories that it looked at.
    Finding Result() const;

private:
    struct Misnamed
    {
        QString description;
        QString namedBy; ///< the first such entry
    };
    struct PartitionFound
    {
        QHash<QString, QString> described; ///< the place of the entry of each description; empty until one is met
        std::map<int, Misnamed> misnamed;  ///< message nodes that an entry names and that describe another
    };

    PartitionFound& FoundIn(const Partition& partition);

    const StoredMessages& mMessages;
    std::map<std::pair<qint16, qint16>, PartitionFound> mPartitions;
};

} // namespace qor
