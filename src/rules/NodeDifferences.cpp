#include "rules/NodeDifferences.h"

#include <QHash>

namespace qor {

namespace {

using Key = QStringList (*)(const DirectoryEntry& entry);
using Entries = std::vector<const DirectoryEntry*>;

/// What makes two entries the same one, the surest first.
constexpr Key keys[] = {
    [](const DirectoryEntry& entry) {
        return QStringList{entry.lastName, entry.firstName, entry.extension, entry.prompt, entry.password};
    },
    [](const DirectoryEntry& entry) {
        return QStringList{entry.lastName, entry.firstName};
    },
    [](const DirectoryEntry& entry) {
        return QStringList{entry.extension, entry.prompt};
    },
};

Entries PointersTo(const std::vector<DirectoryEntry>& entries)
{
    Entries pointers;
    pointers.reserve(entries.size());
    for (const DirectoryEntry& entry : entries)
        pointers.push_back(&entry);
    return pointers;
}

/// Takes the pairs with equal keys out of both; returns how many there were.
int TakePairs(Entries& before, Entries& after, Key key)
{
    QHash<QStringList, int> counts;
    for (const DirectoryEntry* entry : before)
        ++counts[key(*entry)];
    QHash<QStringList, int> paired;
    const int pairs = static_cast<int>(std::erase_if(after, [&](const DirectoryEntry* entry) {
        int& left = counts[key(*entry)];
        if (left == 0)
            return false;
        --left;
        ++paired[key(*entry)];
        return true;
    }));
    std::erase_if(before, [&](const DirectoryEntry* entry) { return paired[key(*entry)]-- > 0; });
    return pairs;
}

} // namespace

EntryDifferences CompareEntries(const std::vector<DirectoryEntry>& before, const std::vector<DirectoryEntry>& after)
{
    Entries left = PointersTo(before);
    Entries right = PointersTo(after);
    TakePairs(left, right, keys[0]);
    const int changed = TakePairs(left, right, keys[1]) + TakePairs(left, right, keys[2]);
    EntryDifferences differences{static_cast<int>(right.size()), static_cast<int>(left.size()), changed, false};
    differences.reordered = differences == EntryDifferences() && before != after;
    return differences;
}

QString DifferencesText(const EntryDifferences& differences)
{
    return u"+%1 -%2 ~%3"_s.arg(differences.added).arg(differences.removed).arg(differences.changed) +
           (differences.reordered ? u", other order"_s : QString());
}

} // namespace qor
