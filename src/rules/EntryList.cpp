#include "rules/EntryList.h"

#include "rules/DelimitedReader.h"
#include "rules/DelimitedWriter.h"
#include "rules/Validation.h"

namespace qor {

namespace {

constexpr int toleratedErrors = 20; // one more ends the reading

const QString lineBreak = u"\r\n"_s;

DirectoryEntry ReadEntry(DelimitedReader& reader)
{
    DirectoryEntry entry;
    entry.lastName = reader.ReadField();
    entry.firstName = reader.ReadField();
    entry.extension = reader.ReadField();
    return entry;
}

void AddRejected(ListReport& report, const DirectoryEntry& entry, const QString& message)
{
    report.hadErrors = true;
    report.errorList += u'(' + entry.lastName + u',' + entry.firstName + u',' + entry.extension + u") :"_s + lineBreak +
                        message + lineBreak;
}

ListReport EmptyReport()
{
    return {.errorList = u"CSV File format: (LastName,FirstName,Extension)"_s + lineBreak + lineBreak +
                         u"ERROR IN FOLLOWING ENTRIES:"_s + lineBreak};
}

void ReadEntries(const EntrySource& source, std::size_t entryCount, const EntryTaker& take, ListReport& report)
{
    int errorCount = 0;
    while (!source.atEnd()) {
        // Equality, as for the commands: a directory that was loaded longer is not stopped here.
        if (entryCount == highestEntryCount) {
            report.limitReached = true;
            return;
        }
        const DirectoryEntry entry = source.next();
        const QString message = ValidateData(entry.lastName, entry.firstName, entry.extension);
        if (message.isEmpty()) {
            take(entry);
            ++entryCount;
            continue;
        }
        AddRejected(report, entry, message);
        if (++errorCount > toleratedErrors) {
            report.errorList += u"Too many errors in this CSV file."_s + lineBreak + lineBreak;
            return;
        }
    }
}

} // namespace

ListReport ReadEntryList(const EntrySource& source, std::size_t entryCount, const EntryTaker& take)
{
    ListReport report = EmptyReport();
    ReadEntries(source, entryCount, take, report);
    return report;
}

ListReport ReadEntryList(QIODevice& device, std::size_t entryCount, const EntryTaker& take)
{
    DelimitedReader reader(device);
    const EntrySource source{.atEnd = [&] { return reader.AtEnd(); }, .next = [&] { return ReadEntry(reader); }};
    ListReport report = EmptyReport();
    try {
        ReadEntries(source, entryCount, take, report);
    } catch (...) {
        report.broken = true;
    }
    return report;
}

ListText WriteEntryList(const std::vector<DirectoryEntry>& entries)
{
    ListText list;
    int row = 0;
    for (const DirectoryEntry& entry : entries) {
        if (IsSound(entry))
            list.text += DelimitedLine({entry.lastName, entry.firstName, entry.extension}).toUtf8() + "\r\n";
        else
            list.skippedRows.push_back(row);
        ++row;
    }
    return list;
}

} // namespace qor
