#include "rules/NodeDifferences.h"

#include <algorithm>
#include <QHash>
#include <QStringList>

namespace qor {

namespace {

using Key = QStringList (*)(const DirectoryEntry& entry);
using Entries = std::vector<const DirectoryEntry*>; ///< in their order

struct Pair
{
    const DirectoryEntry* before;
    const DirectoryEntry* after;
};
using Pairs = std::vector<Pair>;

struct Comparison
{
    Entries removed;
    Entries added;
    Pairs changed;
    bool reordered = false; ///< what is in both is in another order
};

/// What identifies an entry, the surest first.
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

/// Takes entries with equal keys out of both, pairing the first with the first. The pairs are in the order of `before`.
Pairs TakePairs(Entries& before, Entries& after, Key key)
{
    QHash<QStringList, Entries> waiting; // the last one first
    std::for_each(before.rbegin(), before.rend(),
                  [&](const DirectoryEntry* entry) { waiting[key(*entry)].push_back(entry); });
    Pairs pairs;
    std::erase_if(after, [&](const DirectoryEntry* entry) {
        const auto same = waiting.find(key(*entry));
        if (same == waiting.end() || same->empty())
            return false;
        pairs.push_back({same->back(), entry});
        same->pop_back();
        return true;
    });
    std::ranges::sort(pairs, {}, &Pair::before);
    std::erase_if(before, [&](const DirectoryEntry* entry) {
        return std::ranges::binary_search(pairs, entry, {}, &Pair::before);
    });
    return pairs;
}

Comparison Compare(const std::vector<DirectoryEntry>& before, const std::vector<DirectoryEntry>& after)
{
    if (before == after)
        return {};
    Comparison found{PointersTo(before), PointersTo(after), {}};
    Pairs all;
    for (const Key key : keys) {
        const Pairs pairs = TakePairs(found.removed, found.added, key);
        all.insert(all.end(), pairs.begin(), pairs.end());
        if (key != keys[0])
            found.changed.insert(found.changed.end(), pairs.begin(), pairs.end());
    }
    std::ranges::sort(all, {}, &Pair::before);
    std::ranges::sort(found.changed, {}, &Pair::before);
    found.reordered = !std::ranges::is_sorted(all, {}, &Pair::after);
    return found;
}

/// The text on one line, short enough for a narrow box.
QString Shortened(const QString& text)
{
    constexpr qsizetype highestLength = 40;
    const QString line = text.simplified();
    return line.size() > highestLength ? CutAtCharacter(line, highestLength - 1) + u'…' : line;
}

QString NameOf(const DirectoryEntry& entry)
{
    return Shortened(entry.lastName + u' ' + entry.firstName);
}

/// Nothing for equal texts.
QStringList Change(const QString& pattern, const QString& before, const QString& after)
{
    return before == after ? QStringList() : QStringList{pattern.arg(Shortened(before), Shortened(after))};
}

QStringList HeaderLines(const NodeHeader& before, const NodeHeader& after)
{
    QStringList lines = Change(u"Label: \"%1\", now \"%2\""_s, before.description, after.description);
    if (before.accessCode != after.accessCode)
        lines << u"Access Code: another one"_s;
    const auto yesOrNo = [](bool isYes) { return isYes ? u"Yes"_s : u"No"_s; };
    return lines << Change(u"Use Passwords: %1, now %2"_s, yesOrNo(before.usePasswords), yesOrNo(after.usePasswords))
                 << Change(u"Starting Prompt: %1, now %2"_s, before.startingPrompt, after.startingPrompt);
}

/// "Smith Anne: extension 101, now 105; another password"
QString ChangeLine(const Pair& pair)
{
    const auto& [before, after] = pair;
    QStringList changes;
    if (before->lastName != after->lastName || before->firstName != after->firstName)
        changes << u"now "_s + NameOf(*after);
    changes << Change(u"extension %1, now %2"_s, before->extension, after->extension)
            << Change(u"prompt %1, now %2"_s, before->prompt, after->prompt);
    if (before->password != after->password)
        changes << u"another password"_s;
    return NameOf(*before) + u": "_s + changes.join(u"; "_s);
}

/// The lines of one kind: the first ones, and how many more there are.
template <typename Found, typename Line>
QStringList LinesOf(const std::vector<Found>& found, Line line)
{
    constexpr std::size_t highestCount = 8;
    QStringList lines;
    for (std::size_t i = 0; i < std::min(found.size(), highestCount); ++i)
        lines << line(found[i]);
    if (found.size() > highestCount)
        lines << u"and %1 more"_s.arg(found.size() - highestCount);
    return lines;
}

} // namespace

EntryDifferences CompareEntries(const std::vector<DirectoryEntry>& before, const std::vector<DirectoryEntry>& after)
{
    const Comparison found = Compare(before, after);
    EntryDifferences differences{static_cast<int>(found.added.size()), static_cast<int>(found.removed.size()),
                                 static_cast<int>(found.changed.size()), false};
    differences.reordered = differences == EntryDifferences() && found.reordered;
    return differences;
}

QString DifferencesText(const EntryDifferences& differences)
{
    return u"+%1 -%2 ~%3"_s.arg(differences.added).arg(differences.removed).arg(differences.changed) +
           (differences.reordered ? u", other order"_s : QString());
}

QString DifferencesSentences(const DirectoryNode& before, const DirectoryNode& after)
{
    const Comparison found = Compare(before.entries, after.entries);
    QStringList lines = HeaderLines(before.header, after.header);
    lines << LinesOf(found.added, [](const DirectoryEntry* entry) { return NameOf(*entry) + u": added"_s; })
          << LinesOf(found.removed, [](const DirectoryEntry* entry) { return NameOf(*entry) + u": removed"_s; })
          << LinesOf(found.changed, ChangeLine);
    if (found.reordered)
        lines << u"The entries stand in another order."_s;
    return lines.join(u"\r\n"_s);
}

} // namespace qor
