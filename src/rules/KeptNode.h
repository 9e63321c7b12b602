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
    QByteArray stored = {}; ///< Fingerprint of what the database held then; empty when that was not known
};

/// The node with this user, time and process.
KeptNode KeptNow(DirectoryNode node);

/// Equal for nodes with the same header and entries.
QByteArray Fingerprint(const DirectoryNode& node);

/// One JSON object in UTF-8, with all entries and their passwords.
QByteArray KeptText(const KeptNode& kept);

/// What the text of a file turned out to be.
struct KeptReading
{
    enum class Verdict { Sound, Newer, Damaged }; ///< Newer: written by a later version
    Verdict verdict;
    KeptNode kept; ///< only when sound
};
/// A text about another node is Damaged, too.
KeptReading ReadKeptText(const QByteArray& text, const NodeIdentity& identity);

} // namespace qor
