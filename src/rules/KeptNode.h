// A directory node that is kept in a file beside the database: a draft, or an earlier version.
#pragma once

#include "platform/shell/RunningProcess.h"
#include "rules/DirectoryNode.h"

#include <QDateTime>

namespace qor {

struct KeptNode
{
    DirectoryNode node;
    std::vector<int> incompleteRows = {}; ///< which entries are marked as such, from 0
    QString user;                         ///< who kept it
    QDateTime time;                       ///< and when
    RunningProcess writer;
    QByteArray stored = {}; ///< Fingerprint of the node in the database then; empty where that was not known
};

/// A node as this process keeps it now.
KeptNode KeptNow(DirectoryNode node);

/// Equal for nodes with the same header and entries.
QByteArray Fingerprint(const DirectoryNode& node);

/// One JSON object in UTF-8, with all entries and their passwords.
QByteArray KeptText(const KeptNode& kept);

/// What the text of a file turned out to be.
struct KeptReading
{
    enum class Verdict { Sound, Newer, Damaged }; ///< Newer: of a later version of this program
    Verdict verdict;
    KeptNode kept; ///< only when sound
};
/// Damaged as well when it is of another node.
KeptReading ReadKeptText(const QByteArray& text, const NodeIdentity& identity);

} // namespace qor
