// Drafts: lists that were changed and not saved, in the Misc folder, one file for each node and process that edits it.
#pragma once

#include "rules/KeptNode.h"

#include <optional>

namespace qor {

/// Where this process keeps its draft of a node: DIRUnsaved-<configuration>-<partition>-<node>.<process>.json.
QString OwnDraftName(const QString& miscFolder, const NodeIdentity& identity);

/// Replaces this process's draft of the node; the folder is made if it is missing. synced: it survives a power loss,
/// and else only the end of the process. Raises RuntimeError when it cannot be written.
void WriteDraft(const QString& miscFolder, const KeptNode& draft, bool synced);

/// Removes this process's draft if there is one.
void RemoveOwnDraft(const QString& miscFolder, const NodeIdentity& identity);

struct LeftDraft
{
    QString fileName;
    KeptNode draft;
};

/// The youngest draft of a node that nobody works on any more: its process is gone, or is this one, which had the node
/// open before. Renames a damaged one to end in .bad; leaves one that cannot be read, or that a later version wrote,
/// alone. passed: names of files to skip.
std::optional<LeftDraft> FindLeftDraft(const QString& miscFolder, const NodeIdentity& identity,
                                       const QStringList& passed);

/// Renames a draft to end in .discarded, in place of the one of that node that was discarded before. Failing is silent.
void DiscardDraft(const QString& fileName);

} // namespace qor
