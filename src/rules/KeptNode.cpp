#include "rules/KeptNode.h"

#include <algorithm>
#include <array>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace qor {

namespace {

constexpr int currentFormat = 1;

/// An entry is an array of its fields in this order.
constexpr std::array entryFields{&DirectoryEntry::lastName, &DirectoryEntry::firstName, &DirectoryEntry::extension,
                                 &DirectoryEntry::prompt, &DirectoryEntry::password};

bool NeedsEscaping(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

/// Appends a text with its quotes.
void AppendJson(QByteArray& json, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    if (std::ranges::any_of(bytes, NeedsEscaping))
        json += QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact).chopped(1).sliced(1);
    else
        json.append('"').append(bytes).append('"');
}

/// Built here because the toolkit takes six times as long, and a save waits for it.
QByteArray EntriesAsJson(const std::vector<DirectoryEntry>& entries)
{
    QByteArray json("[");
    for (const DirectoryEntry& entry : entries) {
        json += json.size() > 1 ? ",\n[" : "\n[";
        for (const auto field : entryFields) {
            json += field == entryFields.front() ? "" : ",";
            AppendJson(json, entry.*field);
        }
        json += ']';
    }
    return json + ']';
}

std::optional<DirectoryEntry> EntryFrom(const QJsonArray& fields)
{
    const bool isEntry = fields.size() == static_cast<qsizetype>(entryFields.size()) &&
                         std::ranges::all_of(fields, [](auto field) { return field.isString(); });
    if (!isEntry)
        return std::nullopt;
    DirectoryEntry entry;
    for (std::size_t i = 0; i < entryFields.size(); ++i)
        entry.*entryFields[i] = fields[static_cast<qsizetype>(i)].toString();
    return entry;
}

/// Nothing when one of them is not an entry.
std::optional<std::vector<DirectoryEntry>> EntriesFrom(const QJsonValue& value)
{
    if (!value.isArray())
        return std::nullopt;
    std::vector<DirectoryEntry> entries;
    const QJsonArray array = value.toArray();
    for (const auto& fields : array) {
        auto entry = EntryFrom(fields.toArray());
        if (!entry)
            return std::nullopt;
        entries.push_back(std::move(*entry));
    }
    return entries;
}

QJsonArray RowsAsJson(const std::vector<int>& rows)
{
    QJsonArray array;
    for (const int row : rows)
        array.append(row);
    return array;
}

std::vector<int> RowsFrom(const QJsonArray& array, std::size_t rowCount)
{
    std::vector<int> rows;
    for (const auto& value : array) {
        const int row = value.toInt(-1);
        if (row >= 0 && static_cast<std::size_t>(row) < rowCount)
            rows.push_back(row);
    }
    return rows;
}

NodeHeader HeaderFrom(const QJsonObject& object)
{
    return {.description = object[u"label"].toString(),
            .accessCode = object[u"accessCode"].toString(),
            .usePasswords = object[u"usePasswords"].toBool(),
            .startingPrompt = object[u"startingPrompt"].toString()};
}

bool IsOf(const QJsonObject& object, const NodeIdentity& identity)
{
    return object[u"configuration"] == identity.partition.config && object[u"partition"] == identity.partition.number &&
           object[u"node"] == identity.number;
}

void AddText(QCryptographicHash& hash, const QString& text)
{
    const qsizetype length = text.size();
    hash.addData(QByteArrayView(reinterpret_cast<const char*>(&length), sizeof length));
    hash.addData(QByteArrayView(reinterpret_cast<const char*>(text.utf16()), length * qsizetype(sizeof(QChar))));
}

} // namespace

KeptNode KeptNow(DirectoryNode node)
{
    return {
        .node = std::move(node), .user = OwnUserName(), .time = QDateTime::currentDateTime(), .writer = OwnProcess()};
}

QByteArray Fingerprint(const DirectoryNode& node)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString& text : {node.header.description, node.header.accessCode,
                                node.header.usePasswords ? u"1"_s : u"0"_s, node.header.startingPrompt})
        AddText(hash, text);
    for (const DirectoryEntry& entry : node.entries) {
        for (const auto field : entryFields)
            AddText(hash, entry.*field);
    }
    return hash.result().toHex();
}

QByteArray KeptText(const KeptNode& kept)
{
    const NodeIdentity& identity = kept.node.identity;
    const NodeHeader& header = kept.node.header;
    const QJsonObject object{
        {u"format"_s, currentFormat},
        {u"configuration"_s, identity.partition.config},
        {u"partition"_s, identity.partition.number},
        {u"node"_s, identity.number},
        {u"user"_s, kept.user},
        {u"time"_s, kept.time.toOffsetFromUtc(kept.time.offsetFromUtc()).toString(Qt::ISODateWithMs)},
        {u"process"_s, kept.writer.number},
        {u"processStart"_s, kept.writer.start},
        {u"stored"_s, QString::fromLatin1(kept.stored)},
        {u"label"_s, header.description},
        {u"accessCode"_s, header.accessCode},
        {u"usePasswords"_s, header.usePasswords},
        {u"startingPrompt"_s, header.startingPrompt},
        {u"incomplete"_s, RowsAsJson(kept.incompleteRows)},
    };
    const QByteArray start = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return start.chopped(1) + ",\"entries\":" + EntriesAsJson(kept.node.entries) + "}\n";
}

KeptReading ReadKeptText(const QByteArray& text, const NodeIdentity& identity)
{
    using enum KeptReading::Verdict;
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    if (object[u"format"].toInt() > currentFormat)
        return {Newer, {}};
    auto entries = EntriesFrom(object[u"entries"]);
    const auto time = QDateTime::fromString(object[u"time"].toString(), Qt::ISODateWithMs);
    if (object[u"format"] != currentFormat || !IsOf(object, identity) || !entries || !time.isValid())
        return {Damaged, {}};
    KeptNode kept{.node = {identity, HeaderFrom(object), std::move(*entries)},
                  .user = object[u"user"].toString(),
                  .time = time.toLocalTime(),
                  .writer = {object[u"process"].toInteger(), object[u"processStart"].toString()},
                  .stored = object[u"stored"].toString().toLatin1()};
    kept.incompleteRows = RowsFrom(object[u"incomplete"].toArray(), kept.node.entries.size());
    return {Sound, std::move(kept)};
}

} // namespace qor
