// Tells how two states of a directory node differ.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

struct EntryDifferences
{
    int added = 0;
    int removed = 0;
    int changed = 0;        ///< the same name with another extension, prompt or password; or the same prompt and
                            ///< extension with another name
    bool reordered = false; ///< the same entries in another order

    bool operator==(const EntryDifferences&) const = default;
};

/// From `before` to `after`.
EntryDifferences CompareEntries(const std::vector<DirectoryEntry>& before, const std::vector<DirectoryEntry>& after);

/// "+12 -3 ~4"; "+0 -0 ~0, other order" when entries only changed places.
QString DifferencesText(const EntryDifferences& differences);

/// How `before` and `after` differ, in header and entries, as short lines for a box: "Jones Bob: added", "Smith Anne:
/// extension 101, now 105; another password". Of the added, removed and changed entries eight each, and the number of
/// others. Access codes and passwords are never shown. Empty when nothing differs.
QString DifferencesSentences(const DirectoryNode& before, const DirectoryNode& after);

} // namespace qor
