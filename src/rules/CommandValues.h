// Identities as the commands take them: decimal texts, in the order of the commands' parameters.
#pragma once

#include "rules/DirectoryNode.h"

#include <QStringList>

namespace qor {

/// The configuration and the partition.
inline QStringList ValuesOf(const Partition& partition)
{
    return {QString::number(partition.config), QString::number(partition.number)};
}

/// The configuration, the partition and the node.
inline QStringList ValuesOf(const NodeIdentity& identity)
{
    return ValuesOf(identity.partition) << QString::number(identity.number);
}

} // namespace qor
