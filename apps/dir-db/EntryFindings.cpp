#include "EntryFindings.h"

#include "platform/runtime/Numbers.h"
#include "Query.h"
#include "rules/EntryColumns.h"
#include "rules/MessageNodes.h"
#include "rules/PromptNumbers.h"
#include "rules/Validation.h"
#include "store/DataBase.h"

#include <algorithm>
#include <map>
#include <QSet>
#include <set>
#include <tuple>

namespace qor {

namespace {

struct StoredDirectory
{
    QString name;                        ///< "configuration 1, partition 1, DIR 7"
    std::optional<Partition> partition;  ///< none for one that the editor cannot be opened on
    std::vector<DirectoryEntry> entries; ///< as the editor shows them
    QStringList positions;               ///< of the entries
    QList<QStringList> replacedColumns;  ///< of the entries

    QString Place(std::size_t row) const
    {
        return u"%1, entry %2"_s.arg(name, positions.at(static_cast<qsizetype>(row)));
    }
};
using StoredDirectories = std::vector<StoredDirectory>;

QString DirectoryName(const Recordset& rows)
{
    return u"configuration %1, partition %2, DIR %3"_s.arg(rows.Field(u"ConfigID"_s).toString(),
                                                           rows.Field(u"PartID"_s).toString(),
                                                           rows.Field(u"NodeMasterID"_s).toString());
}

std::optional<Partition> PartitionOf(const Recordset& rows)
{
    const auto config = WholeNumber16(rows.Field(u"ConfigID"_s));
    const auto number = WholeNumber16(rows.Field(u"PartID"_s));
    return config && number ? std::optional(Partition{*config, *number}) : std::nullopt;
}

StoredDirectories ReadDirectories(Connection& connection)
{
    Recordset rows =
        Query(connection, u"SELECT * FROM Detail_DIR ORDER BY ConfigID, PartID, NodeMasterID, SequenceNo"_s);
    const EntryReader reader(rows);
    StoredDirectories directories;
    for (; !rows.EndOfFile(); rows.MoveNext()) {
        const QString name = DirectoryName(rows);
        if (directories.empty() || directories.back().name != name)
            directories.push_back(
                {.name = name, .partition = PartitionOf(rows), .entries = {}, .positions = {}, .replacedColumns = {}});
        StoredDirectory& directory = directories.back();
        directory.entries.push_back(reader.Read(rows));
        directory.positions << rows.Field(u"SequenceNo"_s).toString();
        directory.replacedColumns << reader.ReplacedColumns(rows);
    }
    return directories;
}

/// A finding of this kind with a line for each entry for which `fault` has a text.
template <typename Fault>
Finding FindFaults(const QString& kind, const StoredDirectories& directories, Fault fault)
{
    Finding finding{.kind = kind, .places = {}};
    for (const StoredDirectory& directory : directories) {
        for (std::size_t row = 0; row < directory.entries.size(); ++row) {
            const QString text = fault(directory, row);
            if (!text.isEmpty())
                finding.places << directory.Place(row) + u": "_s + text;
        }
    }
    return finding;
}

class MessageSearch
{
public:
    explicit MessageSearch(DataBase& dataBase) : mDataBase(dataBase) {}

    bool Has(const Partition& partition, const QString& prompt)
    {
        const auto [place, isNew] = mFound.try_emplace({partition.config, partition.number, prompt});
        if (isNew) // many entries name the same prompts
            place->second = std::ranges::binary_search(Numbers(partition), prompt.toInt()) &&
                            IsNodeExisted(mDataBase, partition, NODE_TYPE_MSG, prompt);
        return place->second;
    }

private:
    const MessageNodeNumbers& Numbers(const Partition& partition)
    {
        const auto [place, isNew] = mNumbers.try_emplace({partition.config, partition.number});
        if (isNew)
            place->second = UsedMessageNodeNumbers(mDataBase, partition);
        return place->second;
    }

    DataBase& mDataBase;
    std::map<std::pair<qint16, qint16>, MessageNodeNumbers> mNumbers; ///< of the partitions met so far
    std::map<std::tuple<qint16, qint16, QString>, bool> mFound;       ///< for the prompts met so far
};

Finding MissingMessages(DataBase& dataBase, const StoredDirectories& directories)
{
    MessageSearch search(dataBase);
    return FindFaults(u"entries whose message node is missing"_s, directories,
                      [&](const StoredDirectory& directory, std::size_t row) {
                          const QString& prompt = directory.entries[row].prompt;
                          const bool found = directory.partition && search.Has(*directory.partition, prompt);
                          return found ? QString() : u"MSG "_s + prompt;
                      });
}

/// The prompts that a directory has more than once, in their order.
std::set<int> DuplicatePrompts(const StoredDirectory& directory)
{
    QSet<QString> met;
    std::set<int> prompts;
    for (const std::size_t row : RepeatedPrompts(directory.entries, [&](const QString& prompt) {
             const bool before = met.contains(prompt);
             met.insert(prompt);
             return before;
         }))
        prompts.insert(directory.entries[row].prompt.toInt());
    return prompts;
}

Finding DuplicatePrompts(const StoredDirectories& directories)
{
    Finding finding{.kind = u"prompts that a directory has more than once"_s, .places = {}};
    for (const StoredDirectory& directory : directories) {
        for (const int prompt : DuplicatePrompts(directory)) {
            QStringList positions;
            for (std::size_t row = 0; row < directory.entries.size(); ++row) {
                if (directory.entries[row].prompt.toInt() == prompt)
                    positions << directory.positions.at(static_cast<qsizetype>(row));
            }
            finding.places << u"%1: prompt %2 in the entries %3"_s.arg(directory.name, QString::number(prompt),
                                                                       positions.join(u", "_s));
        }
    }
    return finding;
}

/// Names are never empty here: a missing one is shown as the default.
Finding RefusedEntries(const StoredDirectories& directories)
{
    return FindFaults(u"entries that the editor refuses to save"_s, directories,
                      [](const StoredDirectory& directory, std::size_t row) {
                          const DirectoryEntry& entry = directory.entries[row];
                          return IsSound(entry) ? QString()
                                                : u"the extension \"%1\" is not a number"_s.arg(entry.extension);
                      });
}

Finding ReplacedValues(const StoredDirectories& directories)
{
    return FindFaults(u"entries of which the editor shows defaults for missing values"_s, directories,
                      [](const StoredDirectory& directory, std::size_t row) {
                          return directory.replacedColumns.at(static_cast<qsizetype>(row)).join(u", "_s);
                      });
}

} // namespace

Finding FindMissingMessages(DataBase& dataBase)
{
    return MissingMessages(dataBase, ReadDirectories(dataBase.Conn));
}

Findings FindInEntries(DataBase& dataBase)
{
    const StoredDirectories directories = ReadDirectories(dataBase.Conn);
    return {MissingMessages(dataBase, directories), DuplicatePrompts(directories), RefusedEntries(directories),
            ReplacedValues(directories)};
}

} // namespace qor
