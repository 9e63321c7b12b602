#include "ImportReport.h"

#include "Output.h"
#include "rules/MessageNodes.h"
#include "store/CommandCatalog.h"

#include <algorithm>
#include <QSet>

namespace qor {

namespace {

/// "1 entry", "2 entries"
QString Counted(std::size_t count, const char* one, const char* more)
{
    return u"%1 %2"_s.arg(QString::number(count), QString::fromLatin1(count == 1 ? one : more));
}

/// Enough of it to recognise the entry.
QString Beginning(const QString& text)
{
    constexpr qsizetype length = 60;
    return text.size() > length ? CutAtCharacter(text, length) + u'\u2026' : text;
}

void PrintRefused(const QString& listName, const RefusedEntry& refused)
{
    const DirectoryEntry& entry = refused.entry;
    const QStringList faults = refused.message.split(u"\r\n"_s);
    QStringList trimmed;
    for (const QString& fault : faults)
        trimmed << fault.trimmed();
    PrintLine(u"%1, line %2: (%3,%4,%5): %6"_s.arg(listName, QString::number(refused.line), Beginning(entry.lastName),
                                                   Beginning(entry.firstName), Beginning(entry.extension),
                                                   trimmed.join(u", "_s)));
}

QString EndOfReading(const ImportedNode& imported)
{
    return imported.report.limitReached ? u"behind the last one for which there is room"_s
                                        : u"behind the 21st that is refused, where an import ends"_s;
}

void PrintTotals(const QString& listName, const ImportedNode& imported)
{
    const auto& refused = imported.report.refused;
    const auto sound = static_cast<std::size_t>(
        std::ranges::count_if(refused, [](const RefusedEntry& entry) { return entry.message.isEmpty(); }));
    QString totals = u"%1: %2, %3 taken, %4 refused"_s.arg(listName, EntriesText(imported.takenCount + refused.size()),
                                                           QString::number(imported.takenCount),
                                                           QString::number(refused.size() - sound));
    if (sound > 0)
        totals += u", %1 sound but %2"_s.arg(QString::number(sound), EndOfReading(imported));
    PrintLine(totals);
}

/// "1-3, 7" of numbers in their order.
QString Ranges(const std::vector<int>& numbers)
{
    QStringList ranges;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const int first = numbers[i];
        while (i + 1 < numbers.size() && numbers[i + 1] == numbers[i] + 1)
            ++i;
        const QString range = QString::number(first);
        ranges << (numbers[i] == first ? range : range + u'-' + QString::number(numbers[i]));
    }
    return ranges.join(u", "_s);
}

} // namespace

QString EntriesText(std::size_t count)
{
    return Counted(count, "entry", "entries");
}

void PrintReport(const QString& listName, const ImportedNode& imported)
{
    const ListReport& report = imported.report;
    for (const RefusedEntry& entry : report.refused) {
        if (!entry.message.isEmpty())
            PrintRefused(listName, entry);
    }
    if (report.broken)
        return;
    if (!report.fault.isEmpty())
        PrintLine(u"%1: %2"_s.arg(listName, report.fault));
    PrintTotals(listName, imported);
    PrintLine(u"%1 for %2"_s.arg(
        Counted(static_cast<std::size_t>(imported.freePromptCount), "free prompt number", "free prompt numbers"),
        Counted(imported.takenCount, "new entry", "new entries")));
}

void PrintMissingMessageNodes(DataBase& dataBase, const DirectoryNode& node)
{
    QSet<QString> looked;
    std::vector<int> missing;
    for (const DirectoryEntry& entry : node.entries) {
        if (looked.contains(entry.prompt))
            continue;
        looked.insert(entry.prompt);
        if (!IsNodeExisted(dataBase, node.identity.partition, NODE_TYPE_MSG, entry.prompt))
            missing.push_back(entry.prompt.toInt());
    }
    std::ranges::sort(missing);
    if (!missing.empty())
        PrintLine(
            u"Message nodes that do not exist yet: %1. The editor offers to make them when it saves DIR %2."_s.arg(
                Ranges(missing), QString::number(node.identity.number)));
}

} // namespace qor
