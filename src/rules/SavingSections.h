// How all programs number what only one of them may save at a time, for the locks of saves.
#pragma once

#include "rules/DirectoryNode.h"

#include <limits>

namespace qor {

/// Of a node's entries and header: a number of 48 bits for each node.
inline qint64 SectionOf(const NodeIdentity& identity)
{
    constexpr int bits = 16;
    qint64 section = 0;
    for (const qint16 part : {identity.partition.config, identity.partition.number, identity.number})
        section = (section << bits) | static_cast<quint16>(part);
    return section;
}

/// Of a partition's message nodes. No directory node has this number.
inline qint64 SectionOf(const Partition& partition)
{
    return SectionOf(NodeIdentity{.partition = partition, .number = std::numeric_limits<qint16>::min()});
}

} // namespace qor
