#include "EntryFindings.h"

#include "platform/runtime/Numbers.h"
#include "Query.h"

#include <algorithm>
#include <array>
#include <map>
#include <QSet>
#include <vector>

namespace qor {

namespace {

enum class Field { LastName, FirstName, Extension, NamePrompt, Password };

/// What the editor shows for a value that is missing, in the order of the fields.
struct ShownField
{
    const char* column;
    const char* whenMissing;
};
constexpr std::array fields{
    ShownField{"LastName", "UNKNOWN"}, ShownField{"FirstName", "UNKNOWN"}, ShownField{"Extension", "1"},
    ShownField{"NamePrompt", "1"},     ShownField{"Password", "1"},
};

struct ShownEntry
{
    QString partition; ///< "ConfigID, PartID"
    QString directory; ///< "configuration 1, partition 1, DIR 7"
    QString position;
    QStringList values;   ///< by Field
    QStringList replaced; ///< columns in whose place a default is shown

    const QString& Value(Field field) const { return values.at(static_cast<int>(field)); }
    QString Place() const { return u"%1, entry %2"_s.arg(directory, position); }
};

/// A prompt that is no whole number from 1 to 999 is shown as a missing one.
QString ShownText(const ShownField& field, const QString& stored)
{
    if (field.column != fields.at(static_cast<std::size_t>(Field::NamePrompt)).column)
        return stored;
    const int prompt = stored.trimmed().toInt();
    return prompt >= 1 && prompt <= 999 ? QString::number(prompt) : QString();
}

ShownEntry ReadEntry(const Recordset& rows)
{
    const QString config = rows.Field(u"ConfigID"_s).toString();
    const QString partition = rows.Field(u"PartID"_s).toString();
    ShownEntry entry{.partition = config + u", "_s + partition,
                     .directory = u"configuration %1, partition %2, DIR %3"_s.arg(
                         config, partition, rows.Field(u"NodeMasterID"_s).toString()),
                     .position = rows.Field(u"SequenceNo"_s).toString(),
                     .values = {},
                     .replaced = {}};
    for (const ShownField& field : fields) {
        const QString column = QString::fromLatin1(field.column);
        const QString text = ShownText(field, rows.Field(column).toString());
        entry.values << (text.isEmpty() ? QString::fromLatin1(field.whenMissing) : text);
        if (text.isEmpty())
            entry.replaced << column;
    }
    return entry;
}

std::vector<ShownEntry> ReadEntries(Connection& connection)
{
    std::vector<ShownEntry> entries;
    Recordset rows =
        Query(connection, u"SELECT * FROM Detail_DIR ORDER BY ConfigID, PartID, NodeMasterID, SequenceNo"_s);
    for (; !rows.EndOfFile(); rows.MoveNext())
        entries.push_back(ReadEntry(rows));
    return entries;
}

/// "ConfigID, PartID, NodeNumber" of each message node.
QSet<QString> ReadMessages(Connection& connection)
{
    QSet<QString> messages;
    Recordset rows = Query(connection, u"SELECT ConfigID, PartID, NodeNumber FROM Node_MSG INTERSECT SELECT ConfigID, "
                                       "PartID, NodeNumber FROM Node_General_Pool WHERE NodeTypeID = 0"_s);
    for (; !rows.EndOfFile(); rows.MoveNext())
        messages.insert(
            QStringList{rows.Field(0).toString(), rows.Field(1).toString(), rows.Field(2).toString()}.join(u", "_s));
    return messages;
}

Finding MissingMessages(const std::vector<ShownEntry>& entries, const QSet<QString>& messages)
{
    Finding finding{.kind = u"entries whose message node is missing"_s, .places = {}};
    for (const ShownEntry& entry : entries) {
        const QString& prompt = entry.Value(Field::NamePrompt);
        if (!messages.contains(entry.partition + u", "_s + prompt))
            finding.places << u"%1: MSG %2"_s.arg(entry.Place(), prompt);
    }
    return finding;
}

Finding DuplicatePrompts(const std::vector<ShownEntry>& entries)
{
    QStringList directories;                                    // in the order of the entries
    std::map<std::pair<qsizetype, int>, QStringList> positions; // by the directory's place and the prompt
    for (const ShownEntry& entry : entries) {
        if (directories.isEmpty() || directories.last() != entry.directory)
            directories << entry.directory;
        positions[{directories.size() - 1, entry.Value(Field::NamePrompt).toInt()}] << entry.position;
    }
    Finding finding{.kind = u"prompts that a directory has more than once"_s, .places = {}};
    for (const auto& [key, found] : positions) {
        if (found.size() > 1)
            finding.places << u"%1: prompt %2 in the entries %3"_s.arg(
                directories[key.first], QString::number(key.second), found.join(u", "_s));
    }
    return finding;
}

Finding RefusedEntries(const std::vector<ShownEntry>& entries)
{
    Finding finding{.kind = u"entries that the editor refuses to save"_s, .places = {}};
    for (const ShownEntry& entry : entries) {
        const QString& extension = entry.Value(Field::Extension);
        if (!IsNumeric(extension))
            finding.places << u"%1: the extension \"%2\" is not a number"_s.arg(entry.Place(), extension);
    }
    return finding;
}

Finding ReplacedValues(const std::vector<ShownEntry>& entries)
{
    Finding finding{.kind = u"entries of which the editor shows defaults for missing values"_s, .places = {}};
    for (const ShownEntry& entry : entries) {
        if (!entry.replaced.isEmpty())
            finding.places << u"%1: %2"_s.arg(entry.Place(), entry.replaced.join(u", "_s));
    }
    return finding;
}

} // namespace

Finding FindMissingMessages(Connection& connection)
{
    return MissingMessages(ReadEntries(connection), ReadMessages(connection));
}

Findings FindInEntries(Connection& connection)
{
    const std::vector<ShownEntry> entries = ReadEntries(connection);
    return {MissingMessages(entries, ReadMessages(connection)), DuplicatePrompts(entries), RefusedEntries(entries),
            ReplacedValues(entries)};
}

} // namespace qor
