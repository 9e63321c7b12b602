#include "rules/OtherStations.h"

#include "rules/EntryColumns.h"
#include "rules/NodeDifferences.h"
#include "rules/NodeLoading.h"

#include <algorithm>

namespace qor {

namespace {

bool IsSame(const std::optional<DirectoryNode>& stored, const DirectoryNode& found)
{
    return stored && stored->header == found.header && stored->entries == found.entries;
}

/// Whether what was found can be what a save of ours left when it was cut off: it removes the entries, writes the
/// header and then the entries in their order.
bool IsLeftBy(const KnownNode& known, const DirectoryNode& found, int highestMessageNode)
{
    if (!known.attempted || found.entries.size() > known.attempted->entries.size())
        return false;
    DirectoryNode part = *known.attempted;
    part.entries.resize(found.entries.size());
    if (IsLoadedFrom(found, part, highestMessageNode))
        return true;
    return found.entries.empty() && known.stored && known.stored->header == found.header;
}

} // namespace

QString ChangesOfOthers(const KnownNode& known, const std::optional<DirectoryNode>& found, int highestMessageNode)
{
    if (!found && known.isDeleted)
        return {};
    if (!found)
        return u"The directory was deleted. No editor shows what is saved now before it is made again."_s;
    if (IsSame(known.stored, *found) || IsLeftBy(known, *found, highestMessageNode))
        return {};
    return DifferencesSentences(known.stored.value_or(DirectoryNode()), *found);
}

} // namespace qor
