// Any bytes as a file that may be a table: it is looked at and read to its end, with as many entries as were counted.
// What is refused of it can be written and is read back the same, and no suggestion has a character that is refused.
#include "rules/EntryList.h"
#include "rules/TabularText.h"
#include "rules/Validation.h"

#include <cstdlib>
#include <QBuffer>

using namespace qor;

namespace {

void Expect(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

QString TextOf(const DirectoryEntry& entry)
{
    return entry.lastName + u'|' + entry.firstName + u'|' + entry.extension;
}

struct Reading
{
    int taken = 0;
    ListReport report;
};

Reading Read(const QByteArray& bytes, const std::optional<TableLayout>& layout)
{
    QBuffer file;
    file.setData(bytes);
    file.open(QIODevice::ReadOnly);
    Reading reading;
    reading.report = ReadEntryList(file, layout, 0, [&](const DirectoryEntry& entry) {
        Expect(IsValid(entry));
        ++reading.taken;
    });
    return reading;
}

/// What was not taken comes back as it was, whatever becomes of it.
void ReadBack(const ListReport& report)
{
    QStringList texts;
    for (const RefusedEntry& refused : report.refused)
        texts << TextOf(refused.entry);
    QStringList again;
    const auto take = [&](const DirectoryEntry& entry) { again << TextOf(entry); };
    QBuffer file;
    file.setData(RejectedText(report.refused));
    file.open(QIODevice::ReadOnly);
    const ListReport second = ReadEntryList(file, 0, take);
    for (const RefusedEntry& refused : second.refused)
        again << TextOf(refused.entry);
    texts.sort();
    again.sort();
    Expect(again == texts && second.fault.isEmpty());
}

void ReadAsTable(const QByteArray& bytes)
{
    QBuffer file;
    file.setData(bytes);
    file.open(QIODevice::ReadOnly);
    const auto found = FindTable(file);
    Expect(!DetectTable(file) || found);
    Expect(file.pos() == 0);
    if (!found)
        return;
    Expect(found->entries <= found->lines);
    const auto [taken, report] = Read(bytes, found);
    const auto notRead = std::ranges::count_if(report.refused, [](const auto& row) { return row.message.isEmpty(); });
    if (found->triedWhole && report.fault.isEmpty())
        Expect(taken + notRead == found->entries &&
               taken + static_cast<std::ptrdiff_t>(report.refused.size()) == found->lines);
    Expect(Read(SuggestedText(report.refused), std::nullopt).report.fault.isEmpty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    ReadAsTable(bytes);
    ReadBack(Read(bytes, std::nullopt).report);
    for (TabularReader reader(QString::fromUtf8(bytes)); !reader.AtEnd();)
        Expect(!reader.ReadRow().isEmpty());
    return 0;
}
