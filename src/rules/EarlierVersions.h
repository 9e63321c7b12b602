// Earlier versions of a directory node: what each save replaced, in the folder DIRHistory below Misc.
#pragma once

#include "rules/KeptNode.h"

namespace qor {

/// How many are kept of each node.
inline constexpr int highestVersionCount = 20;

/// The folder of a node's versions: <Misc>/DIRHistory/<configuration>-<partition>-<node>/.
QString VersionFolder(const QString& miscFolder, const NodeIdentity& identity);

/// Writes a version, which is on disk when this returns, and removes the oldest ones beyond the limit. Files are named
/// by their time, each later than the one before, whatever the clock says. Raises RuntimeError when it cannot be
/// written. Call it under the lock of a save.
void KeepVersion(const QString& miscFolder, const KeptNode& version);

/// Whether there are any, without reading them.
bool HasVersions(const QString& miscFolder, const NodeIdentity& identity);

/// The youngest first, without those that cannot be read.
std::vector<KeptNode> ReadVersions(const QString& miscFolder, const NodeIdentity& identity);

} // namespace qor
