// The prompt numbers of new entries: free message-node numbers, handed out one after the other.
#pragma once

#include "rules/DirectoryNode.h"

#include <vector>

namespace qor {

class DataBase;

/// The numbers of a partition's message nodes, in ascending order.
using MessageNodeNumbers = std::vector<int>;

/// Raises RuntimeError when they cannot be read.
MessageNodeNumbers UsedMessageNodeNumbers(DataBase& dataBase, const Partition& partition);

/// How many of the numbers from 1 to `highest` no message node has.
int FreeNumberCount(const MessageNodeNumbers& used, int highest);

/// The prompt of a new entry that was given this number; 1 when there was none.
QString NewEntryPrompt(qint16 number);
/// The password of every new entry.
inline const QString newEntryPassword = u"1"_s;

/// Remembers the number that it gave last. Successive calls count up from the starting prompt and wrap at the highest
/// number; numbers below the remembered one are not looked at again before that.
class PromptNumbers
{
public:
    /// The next count begins at the starting prompt again.
    void Restart() { mLast = 0; }

    /// A number from 1 to `highest` that is not in use, or 0 when there is none. The starting prompt counts as far as
    /// its leading digits go, and as 1 where it has none.
    qint16 Next(const QString& startingPrompt, int highest, const MessageNodeNumbers& used);

private:
    int mLast = 0;
};

} // namespace qor
