#include "rules/EntryList.h"

#include "platform/runtime/ErrorReport.h"
#include "rules/DelimitedReader.h"
#include "rules/DelimitedWriter.h"
#include "rules/PlainLetters.h"
#include "rules/TabularText.h"
#include "rules/TextBytes.h"
#include "rules/Validation.h"

#include <algorithm>
#include <utility>

namespace qor {

namespace {

constexpr int toleratedErrors = 20; // one more ends the reading

// Limits on what is kept of the entries that became no row; a list of people has far fewer.
constexpr std::size_t highestRefusedCount = 20'000;
constexpr qsizetype highestRefusedLength = qsizetype{8} * 1024 * 1024; ///< of all their texts

const QString lineBreak = u"\r\n"_s;

/// After a failure, entry holds what was read of it.
void ReadEntry(DelimitedReader& reader, DirectoryEntry& entry)
{
    entry = {};
    entry.lastName = reader.ReadField();
    entry.firstName = reader.ReadField();
    entry.extension = reader.ReadField();
}

ListReport EmptyReport()
{
    return {.errorList = u"CSV File format: (LastName,FirstName,Extension)"_s + lineBreak + lineBreak +
                         u"ERROR IN FOLLOWING ENTRIES:"_s + lineBreak};
}

/// The reading of one list.
class ListReading
{
public:
    ListReading(const EntrySource& source, ListReport& report) : mSource(source), mReport(report) {}

    void Read(std::size_t entryCount, const EntryTaker& take);
    /// Keeps what follows the end of the reading.
    void ReadRest();
    /// Reports the failure that is being handled.
    void TakeFault();
    /// Keeps what was read of an entry before the failure.
    void KeepUnfinished(const DirectoryEntry& entry);

private:
    RefusedEntry Next();
    void Reject(RefusedEntry&& rejected);
    bool Keep(RefusedEntry&& refused);

    const EntrySource& mSource;
    ListReport& mReport;
    qint64 mLine = 0; ///< on which the current entry begins
    qsizetype mKeptLength = 0;
};

RefusedEntry ListReading::Next()
{
    mLine = mSource.line ? mSource.line() : 0;
    DirectoryEntry entry = mSource.next();
    QString message = ValidateData(entry.lastName, entry.firstName, entry.extension);
    return {std::move(entry), std::move(message), mLine};
}

void ListReading::Read(std::size_t entryCount, const EntryTaker& take)
{
    int errorCount = 0;
    while (!mSource.atEnd()) {
        // Equality, as in the commands: a directory that was longer when it was loaded is not stopped here.
        if (entryCount == highestEntryCount) {
            mReport.limitReached = true;
            return;
        }
        RefusedEntry read = Next();
        if (read.message.isEmpty()) {
            take(read.entry);
            ++entryCount;
            continue;
        }
        Reject(std::move(read));
        if (++errorCount > toleratedErrors) {
            mReport.errorList += u"Too many errors in this CSV file."_s + lineBreak + lineBreak;
            return;
        }
    }
}

void ListReading::Reject(RefusedEntry&& rejected)
{
    const DirectoryEntry& entry = rejected.entry;
    mReport.hadErrors = true;
    mReport.errorList += u'(' + entry.lastName + u',' + entry.firstName + u',' + entry.extension + u") :"_s +
                         lineBreak + rejected.message + lineBreak;
    Keep(std::move(rejected));
}

/// False when there is no room for more.
bool ListReading::Keep(RefusedEntry&& refused)
{
    const DirectoryEntry& entry = refused.entry;
    mKeptLength += entry.lastName.size() + entry.firstName.size() + entry.extension.size();
    if (mReport.refused.size() == highestRefusedCount || mKeptLength > highestRefusedLength)
        return false;
    mReport.refused.push_back(std::move(refused));
    return true;
}

void ListReading::ReadRest()
{
    while (!mSource.atEnd()) {
        if (RefusedEntry next = Next(); !Keep(std::move(next))) {
            mReport.fault =
                u"Only the first %1 of the entries that are left were read. Check that the file is a directory list."_s
                    .arg(mReport.refused.size());
            return;
        }
    }
}

void ListReading::TakeFault()
{
    mReport.fault = u"Line %1: %2"_s.arg(mLine).arg(CurrentRuntimeError().Description());
}

void ListReading::KeepUnfinished(const DirectoryEntry& entry)
{
    if (entry != DirectoryEntry())
        Keep({entry, ValidateData(entry.lastName, entry.firstName, entry.extension), mLine});
}

/// unfinished: what the source has read of an entry if it fails.
ListReport ReadWithoutFailing(const EntrySource& source, std::size_t entryCount, const EntryTaker& take,
                              const DirectoryEntry& unfinished = {})
{
    ListReport report = EmptyReport();
    ListReading reading(source, report);
    try {
        reading.Read(entryCount, take);
    } catch (...) {
        report.broken = true;
        reading.TakeFault();
        return report;
    }
    try {
        reading.ReadRest();
    } catch (...) {
        reading.TakeFault();
        reading.KeepUnfinished(unfinished);
    }
    return report;
}

/// With its fields cut so that they can be read back.
DirectoryEntry Readable(DirectoryEntry entry)
{
    for (const auto field : {&DirectoryEntry::lastName, &DirectoryEntry::firstName, &DirectoryEntry::extension}) {
        const QByteArray bytes = (entry.*field).toUtf8();
        qsizetype length = std::min(bytes.size(), DelimitedReader::highestFieldLength);
        while (length < bytes.size() && (bytes[length] & 0xC0) == 0x80) // inside a character
            --length;
        DecodeText(bytes.first(length), entry.*field);
    }
    return entry;
}

QByteArray LineFor(const DirectoryEntry& entry)
{
    return DelimitedLine({entry.lastName, entry.firstName, entry.extension}).toUtf8() + "\r\n";
}

} // namespace

ListReport ReadEntryList(const EntrySource& source, std::size_t entryCount, const EntryTaker& take)
{
    ListReport report = EmptyReport();
    ListReading reading(source, report);
    reading.Read(entryCount, take);
    reading.ReadRest();
    return report;
}

ListReport ReadEntryList(QIODevice& device, std::size_t entryCount, const EntryTaker& take)
{
    DelimitedReader reader(device);
    DirectoryEntry entry;
    const auto next = [&] {
        ReadEntry(reader, entry);
        return std::exchange(entry, {});
    };
    return ReadWithoutFailing(
        {.atEnd = [&] { return reader.AtEnd(); }, .next = next, .line = [&] { return reader.Line(); }}, entryCount,
        take, entry);
}

ListReport ReadEntryList(QIODevice& device, const std::optional<TableLayout>& layout, std::size_t entryCount,
                         const EntryTaker& take)
{
    if (!layout)
        return ReadEntryList(device, entryCount, take);
    std::optional<TabularReader> reader; // made on first use, where its failure is caught
    const auto started = [&]() -> TabularReader& { return reader ? *reader : reader.emplace(device, *layout); };
    return ReadWithoutFailing({.atEnd = [&] { return started().AtEnd(); },
                               .next = [&] { return started().ReadEntry(); },
                               .line = [&] { return started().Line(); }},
                              entryCount, take);
}

QByteArray RejectedText(const std::vector<RefusedEntry>& refused)
{
    QByteArray text;
    for (const auto& [entry, message, line] : refused)
        text += LineFor(Readable(entry));
    return text;
}

QByteArray SuggestedText(const std::vector<RefusedEntry>& refused)
{
    QByteArray text;
    for (const auto& [entry, message, line] : refused) {
        const DirectoryEntry plain{
            PlainLetters(entry.lastName), PlainLetters(entry.firstName), PlainDigits(entry.extension), {}, {}};
        text += LineFor(Readable(plain));
    }
    return text;
}

ListText WriteEntryList(const std::vector<DirectoryEntry>& entries)
{
    ListText list;
    int row = 0;
    for (const DirectoryEntry& entry : entries) {
        if (IsSound(entry))
            list.text += LineFor(entry);
        else
            list.skippedRows.push_back(row);
        ++row;
    }
    return list;
}

} // namespace qor
