// The message nodes of a database.
#pragma once

#include "rules/DirectoryNode.h"

#include <map>
#include <optional>
#include <QHash>

namespace qor {

class Connection;

struct StoredMessage
{
    QString description;
    QString recording; ///< the file that is played, which need not be the one that the editor would name
    bool isInPool;     ///< the general pool, which the editor asks, has it
};

using MessagesByNumber = QHash<int, StoredMessage>;

class StoredMessages
{
public:
    /// Reads them. Raises RuntimeError when they cannot be read.
    explicit StoredMessages(Connection& connection);

    /// Those of a partition; none for no partition.
    const MessagesByNumber& Of(const std::optional<Partition>& partition) const;

private:
    std::map<std::pair<qint16, qint16>, MessagesByNumber> mMessages; ///< by configuration and partition
};

/// The one that a prompt names, or null.
inline const StoredMessage* FindMessage(const MessagesByNumber& messages, const QString& prompt)
{
    const auto message = messages.constFind(prompt.toInt());
    return message == messages.cend() ? nullptr : &*message;
}

} // namespace qor
