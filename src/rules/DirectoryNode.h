// The directory node as a value: which one it is, its header, its entries in their order. Nothing here knows a
// database or a form.
#pragma once

#include "platform/runtime/Text.h"

#include <vector>

namespace qor {

/// How many entries a directory may hold.
inline constexpr int highestEntryCount = 500;

/// A partition of a configuration.
struct Partition
{
    qint16 config = 0;
    qint16 number = 0;
};

/// Which directory node it is.
struct NodeIdentity
{
    Partition partition;
    qint16 number = 0;
};

/// What belongs to the node itself.
struct NodeHeader
{
    QString description;
    QString accessCode;
    bool usePasswords = false;
    QString startingPrompt; ///< a number as it was chosen or typed: characters after it are kept

    bool operator==(const NodeHeader&) const = default;
};

/// One person. All fields are texts, as they are shown and stored.
struct DirectoryEntry
{
    QString lastName;
    QString firstName;
    QString extension;
    QString prompt; ///< the number of the message node that speaks the name
    QString password;

    bool operator==(const DirectoryEntry&) const = default;
};

struct DirectoryNode
{
    NodeIdentity identity;
    NodeHeader header;
    std::vector<DirectoryEntry> entries;
};

} // namespace qor
