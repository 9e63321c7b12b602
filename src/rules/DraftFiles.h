// Drafts: lists that were changed and not saved, one file in the Misc folder for each process that edits a node.
#pragma once

#include "rules/KeptNode.h"

#include <optional>

namespace qor {

/// Where this process keeps its draft of a node: DIRUnsaved-<configuration>-<partition>-<node>.<process>.json.
QString OwnDraftName(const QString& miscFolder, const NodeIdentity& identity);

/// Replaces this process's draft of the node; the folder is made when it is missing. synced: it outlives a power loss,
/// else the end of the process. Raises RuntimeError when it cannot be written.
void WriteDraft(const QString& miscFolder, const KeptNode& draft, bool synced);

/// Removes this process's draft; nothing where there is none.
void RemoveOwnDraft(const QString& miscFolder, const NodeIdentity& identity);

struct LeftDraft
{
    QString fileName;
    KeptNode draft;
};

/// The youngest draft of a node that nobody works on any more: its process is gone, or is this one, which had the node
/// open before. A damaged one is renamed to end in .bad; one that cannot be read, or that a later version wrote, stays.
/// passed: names of files to leave out.
std::optional<LeftDraft> FindLeftDraft(const QString& miscFolder, const NodeIdentity& identity,
                                       const QStringList& passed);

/// Renames a draft to end in .discarded, in place of the one of that node discarded before. Nothing where it cannot be.
void DiscardDraft(const QString& fileName);

} // namespace qor
