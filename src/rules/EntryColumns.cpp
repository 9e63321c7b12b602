#include "rules/EntryColumns.h"

#include "platform/runtime/Numbers.h"

namespace qor {

namespace {

QString StoredText(const QVariant& stored)
{
    return stored.toString();
}

/// Prompts outside 1 to 999 count as missing, whatever the partition's maximum.
QString PromptText(const QVariant& stored)
{
    constexpr int highestPrompt = 999;
    const int prompt = WholeNumber(stored).value_or(0);
    return prompt >= 1 && prompt <= highestPrompt ? QString::number(prompt) : QString();
}

QString TextOrDefault(const EntryColumn& column, const QVariant& stored)
{
    const QString text = column.shownText(stored);
    return text.isEmpty() ? QString::fromLatin1(column.whenMissing) : text;
}

} // namespace

const std::array<EntryColumn, 5> entryColumns{
    EntryColumn{"LastName", &DirectoryEntry::lastName, "UNKNOWN", StoredText},
    EntryColumn{"FirstName", &DirectoryEntry::firstName, "UNKNOWN", StoredText},
    EntryColumn{"Extension", &DirectoryEntry::extension, "1", StoredText},
    EntryColumn{"NamePrompt", &DirectoryEntry::prompt, "1", PromptText},
    EntryColumn{"Password", &DirectoryEntry::password, "1", StoredText},
};

DirectoryEntry AsRead(DirectoryEntry entry)
{
    for (const EntryColumn& column : entryColumns)
        entry.*column.field = TextOrDefault(column, entry.*column.field);
    return entry;
}

EntryReader::EntryReader(const Recordset& rows)
{
    for (std::size_t i = 0; i < entryColumns.size(); ++i)
        mIndexes[i] = rows.FieldIndex(QString::fromLatin1(entryColumns[i].name));
}

DirectoryEntry EntryReader::Read(const Recordset& rows, QStringList* replaced) const
{
    DirectoryEntry entry;
    for (std::size_t i = 0; i < entryColumns.size(); ++i) {
        const EntryColumn& column = entryColumns[i];
        QString& text = entry.*column.field;
        text = column.shownText(rows.Field(mIndexes[i]));
        if (!text.isEmpty())
            continue;
        text = QString::fromLatin1(column.whenMissing);
        if (replaced)
            *replaced << QString::fromLatin1(column.name);
    }
    return entry;
}

} // namespace qor
