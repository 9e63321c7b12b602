#include "EntryFindings.h"

#include "MessageDescriptions.h"
#include "RecordingFiles.h"
#include "rules/TelephoneKeys.h"
#include "rules/Validation.h"
#include "StoredDirectories.h"

#include <algorithm>

namespace qor {

namespace {

const QString newExtension = u"1"_s; ///< of a new entry, and of one without an extension

/// One kind of finding and how it is found.
struct Search
{
    Finding finding;
    std::function<void(const StoredDirectory& directory, Finding& finding)> look;
};

/// Finds the entries that have a fault. text: describes it.
template <typename HasFault, typename Text>
Search EachEntry(const QString& kind, HasFault hasFault, Text text)
{
    return {{kind}, [=](const StoredDirectory& directory, Finding& finding) {
                for (const StoredEntry& entry : directory.entries) {
                    if (hasFault(directory, entry))
                        finding.AddPlace([&] { return directory.Place(entry) + u": "_s + text(entry); });
                }
            }};
}

template <typename HasFault, typename Text>
Search EachShownEntry(const QString& kind, HasFault hasFault, Text text)
{
    return EachEntry(
        kind,
        [hasFault](const StoredDirectory& /*directory*/, const StoredEntry& entry) { return hasFault(entry.shown); },
        [text](const StoredEntry& entry) { return text(entry.shown); });
}

Search NamedColumns(const QString& kind, QStringList StoredEntry::*columns)
{
    return EachEntry(
        kind,
        [=](const StoredDirectory& /*directory*/, const StoredEntry& entry) { return !(entry.*columns).isEmpty(); },
        [=](const StoredEntry& entry) { return (entry.*columns).join(u", "_s); });
}

Search MissingMessages(const StoredMessages& messages)
{
    return EachEntry(
        u"entries whose name nothing speaks, as their message node is missing"_s,
        [&messages](const StoredDirectory& directory, const StoredEntry& entry) {
            const StoredMessage* const message = FindMessage(messages.Of(directory.partition), entry.shown.prompt);
            return message == nullptr || !message->isInPool;
        },
        [](const StoredEntry& entry) { return u"MSG "_s + entry.shown.prompt; });
}

/// Entries without a message node are left to MissingMessages.
Search MissingRecordings(const StoredMessages& messages, const RecordingFiles& recordings)
{
    const auto message = [&messages](const StoredDirectory& directory, const StoredEntry& entry) {
        return FindMessage(messages.Of(directory.partition), entry.shown.prompt);
    };
    return {{u"entries whose name nothing speaks, as the file that their message node names is missing"_s},
            [message, &recordings](const StoredDirectory& directory, Finding& finding) {
                for (const StoredEntry& entry : directory.entries) {
                    const StoredMessage* const named = message(directory, entry);
                    if (named && !recordings.Contains(named->recording))
                        finding.AddPlace([&] {
                            return u"%1: MSG %2, \"%3\""_s.arg(directory.Place(entry), entry.shown.prompt,
                                                               named->recording);
                        });
                }
            }};
}

/// Shorter ones first, so that numbers are in order.
QStringList InOrder(const QSet<QString>& values)
{
    QStringList ordered(values.cbegin(), values.cend());
    std::ranges::sort(ordered, {}, [](const QString& value) { return std::pair(value.size(), value); });
    return ordered;
}

QString Positions(const StoredDirectory& directory, QString DirectoryEntry::*field, const QString& value)
{
    QStringList positions;
    for (const StoredEntry& entry : directory.entries) {
        if (entry.shown.*field == value)
            positions << entry.position;
    }
    return positions.join(u", "_s);
}

/// Finds values that several entries of a directory have, except leftOut.
Search Repeats(const QString& kind, const QString& what, QString DirectoryEntry::*field, const QString& leftOut)
{
    return {{kind}, [=](const StoredDirectory& directory, Finding& finding) {
                QSet<QString> met;
                QSet<QString> repeated;
                met.reserve(static_cast<qsizetype>(directory.entries.size()));
                for (const StoredEntry& entry : directory.entries) {
                    const qsizetype before = met.size();
                    met.insert(entry.shown.*field);
                    if (met.size() == before && entry.shown.*field != leftOut)
                        repeated.insert(entry.shown.*field);
                }
                for (const QString& value : InOrder(repeated))
                    finding.AddPlace([&] {
                        return u"%1: %2 %3 in the entries %4"_s.arg(directory.name, what, value,
                                                                    Positions(directory, field, value));
                    });
            }};
}

QString FullName(const DirectoryEntry& entry)
{
    return entry.firstName + u' ' + entry.lastName;
}

bool IsAtNewExtension(const DirectoryEntry& entry)
{
    return entry.extension == newExtension;
}

bool LacksKeys(const DirectoryEntry& entry)
{
    return !HasKeys(entry.lastName) || !HasKeys(entry.firstName);
}

/// Names are never empty here, since a missing one is shown as its default.
bool IsRefused(const DirectoryEntry& entry)
{
    return !IsSound(entry);
}

QString RefusalOf(const DirectoryEntry& entry)
{
    return u"the extension \"%1\" is not a number"_s.arg(entry.extension);
}

std::vector<Search> AllSearches(const StoredMessages& messages)
{
    return {
        MissingMessages(messages),
        Repeats(u"prompts that speak for several entries, as a directory has them more than once"_s, u"prompt"_s,
                &DirectoryEntry::prompt, {}),
        Repeats(u"extensions that callers reach under several names, as a directory has them more than once"_s,
                u"extension"_s, &DirectoryEntry::extension, newExtension),
        EachShownEntry(u"entries whose callers reach extension 1, which stands in new entries"_s, IsAtNewExtension,
                       FullName),
        EachShownEntry(u"entries that callers may not find, as telephones have no key for a character of the name"_s,
                       LacksKeys, FullName),
        EachShownEntry(u"entries that the editor refuses to save"_s, IsRefused, RefusalOf),
        NamedColumns(u"entries of which the editor shows defaults for missing values"_s, &StoredEntry::replacedColumns),
        NamedColumns(u"entries that the editor shows and saves with other characters, as a text is not UTF-8"_s,
                     &StoredEntry::foreignColumns),
    };
}

} // namespace

Finding FindMissingMessages(Connection& connection)
{
    const StoredMessages messages(connection);
    Search search = MissingMessages(messages);
    ForEachDirectory(connection, [&](const StoredDirectory& directory) { search.look(directory, search.finding); });
    return search.finding;
}

Findings FindInEntries(Connection& connection, const RecordingFiles* recordings)
{
    const StoredMessages messages(connection);
    std::vector<Search> searches = AllSearches(messages);
    if (recordings)
        searches.push_back(MissingRecordings(messages, *recordings));
    MessageDescriptions descriptions(messages);
    ForEachDirectory(connection, [&](const StoredDirectory& directory) {
        for (Search& search : searches)
            search.look(directory, search.finding);
        descriptions.Look(directory);
    });
    Findings findings;
    for (const Search& search : searches)
        findings << search.finding;
    return findings << descriptions.Result();
}

} // namespace qor
