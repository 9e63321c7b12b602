#include "rules/TableLayout.h"

#include "platform/runtime/RuntimeError.h"
#include "rules/DelimitedReader.h"
#include "rules/RowReader.h"
#include "rules/TableCaptions.h"
#include "rules/TabularText.h"
#include "rules/Validation.h"

#include <algorithm>
#include <QBuffer>

namespace qor {

namespace {

constexpr qint64 highestLineTried = 2000;
constexpr qint64 highestSizeTried = qint64{1024} * 1024;
constexpr int highestCaptionRow = 5; // a title may stand above them

constexpr std::array separators{';', '\t', ','};

/// The beginning of a file.
struct Beginning
{
    QByteArray bytes;
    bool isWhole = true;
};

Beginning BeginningOf(QIODevice& device)
{
    const qint64 size = device.isSequential() ? highestSizeTried : std::min(highestSizeTried, device.size());
    QByteArray bytes = device.peek(size);
    const bool isWhole = bytes.size() < highestSizeTried;
    if (!isWhole)
        bytes.truncate(bytes.lastIndexOf('\n') + 1);
    return {.bytes = std::move(bytes), .isWhole = isWhole};
}

/// The beginning as a device to read from.
class BeginningFile : public QBuffer
{
public:
    explicit BeginningFile(const Beginning& beginning)
    {
        setData(beginning.bytes);
        open(ReadOnly);
    }
};

/// The separator that a first line names: some spreadsheets write "sep=;" there for others. A tab is read as a blank.
std::optional<char> NamedSeparator(const Beginning& beginning)
{
    const QString mark = u"sep="_s;
    BeginningFile file(beginning);
    const QString line = RowReader(file, '\0').ReadRow(1).constFirst();
    if (!line.startsWith(mark, Qt::CaseInsensitive))
        return std::nullopt;
    const QString named = line.sliced(mark.size());
    for (const char separator : separators) {
        if (named == QLatin1Char(separator) || (named.isEmpty() && separator == '\t'))
            return separator;
    }
    return std::nullopt;
}

/// How a table with this separator would be read.
struct Candidate
{
    TableLayout layout;
    bool isCertain = false; ///< the captions say so
};

QString HeadingOf(const QStringList& row, char separator)
{
    constexpr qsizetype highestLength = 120; // for a box
    QStringList cells;
    for (const QString& cell : row)
        cells << cell.simplified();
    const QString heading = cells.join(QLatin1Char(separator));
    return heading.size() > highestLength ? CutAtCharacter(heading, highestLength) + u'\u2026' : heading;
}

void TakeCaptions(Candidate& candidate, const QStringList& row, const TableCaptions& captions)
{
    TableLayout& layout = candidate.layout;
    layout.columns = captions.columns;
    layout.captions.clear();
    for (const int column : captions.columns)
        layout.captions << row[column];
    layout.heading = HeadingOf(row, layout.separator);
}

bool IsPlainHeading(const QStringList& row, const TableCaptions& captions, char separator)
{
    return separator == ',' && row.size() == 3 && captions.columns == TableLayout().columns;
}

Candidate CandidateFor(const Beginning& beginning, char separator, bool isNamed)
{
    constexpr qsizetype highestColumnCount = 1024;
    Candidate candidate{.layout = {.separator = separator, .firstLine = isNamed ? 2 : 1}};
    BeginningFile file(beginning);
    RowReader reader(file, separator);
    if (isNamed)
        reader.ReadRow(highestColumnCount);
    for (int number = 1; number <= highestCaptionRow && !reader.AtEnd(); ++number) {
        const qint64 line = reader.Line();
        const QStringList row = reader.ReadRow(highestColumnCount);
        const auto captions = ReadCaptions(row);
        if (!captions)
            continue;
        TakeCaptions(candidate, row, *captions);
        candidate.layout.firstLine = line;
        candidate.isCertain =
            isNamed || (number == 1 && captions->onlyKnown && !IsPlainHeading(row, *captions, separator));
        break;
    }
    return candidate;
}

void Count(TableLayout& layout, const Beginning& beginning)
{
    BeginningFile file(beginning);
    TabularReader reader(file, layout);
    for (; !reader.AtEnd() && reader.Line() <= highestLineTried; reader.Skip()) {
        ++layout.lines;
        layout.entries += IsValid(reader.NextEntry()) ? 1 : 0;
    }
    layout.triedWhole = beginning.isWhole && reader.AtEnd();
}

std::vector<Candidate> CandidatesFor(const Beginning& beginning)
{
    std::vector<Candidate> candidates;
    const auto named = NamedSeparator(beginning);
    for (const char separator : separators) {
        if (named.value_or(separator) == separator && beginning.bytes.contains(separator))
            candidates.push_back(CandidateFor(beginning, separator, named.has_value()));
    }
    return candidates;
}

/// The one that takes most entries; if none takes any, one with captions.
std::optional<TableLayout> BestOf(std::vector<Candidate> candidates, const Beginning& beginning)
{
    std::optional<TableLayout> best;
    for (Candidate& candidate : candidates) {
        TableLayout& layout = candidate.layout;
        Count(layout, beginning);
        const bool isTable = layout.entries > 0 || (!layout.heading.isEmpty() && layout.lines > 0);
        if (isTable && (!best || layout.entries > best->entries))
            best = std::move(layout);
    }
    return best;
}

bool PlainRuleTakesAny(const Beginning& beginning)
{
    try {
        BeginningFile file(beginning);
        for (DelimitedReader reader(file); !reader.AtEnd() && reader.Line() <= highestLineTried;) {
            DirectoryEntry entry;
            for (const auto field : {&DirectoryEntry::lastName, &DirectoryEntry::firstName, &DirectoryEntry::extension})
                entry.*field = reader.ReadField();
            if (IsValid(entry))
                return true;
        }
    } catch (const RuntimeError&) { // what was read before counts
    }
    return false;
}

QString SeparatorName(char separator)
{
    return separator == ';' ? u"semicolons"_s : separator == '\t' ? u"tabs"_s : u"commas"_s;
}

} // namespace

std::optional<TableLayout> DetectTable(QIODevice& device)
{
    const Beginning beginning = BeginningOf(device);
    std::vector<Candidate> candidates = CandidatesFor(beginning);
    const auto isUncertain = [](const Candidate& candidate) { return !candidate.isCertain; };
    if (!std::ranges::all_of(candidates, isUncertain)) {
        std::erase_if(candidates, isUncertain);
        return BestOf(std::move(candidates), beginning);
    }
    if (candidates.empty() || PlainRuleTakesAny(beginning))
        return std::nullopt;
    auto best = BestOf(std::move(candidates), beginning);
    return best && best->entries > 0 && 2 * best->entries >= best->lines ? best : std::nullopt;
}

std::optional<TableLayout> FindTable(QIODevice& device)
{
    const Beginning beginning = BeginningOf(device);
    return BestOf(CandidatesFor(beginning), beginning);
}

QString TableSentence(const TableLayout& layout)
{
    const QString heading = layout.heading.isEmpty() ? QString() : u" with the heading \"%1\","_s.arg(layout.heading);
    return u"Read as a table parted by %1,%2 %3 of %4%5 lines are entries."_s.arg(
        SeparatorName(layout.separator), heading, QString::number(layout.entries),
        layout.triedWhole ? QString() : u"the first "_s, QString::number(layout.lines));
}

QString TableQuestion(const TableLayout& layout)
{
    return u"This does not look like a plain LastName,FirstName,Extension file.\r\n%1\r\nDo you want to read it so?"_s
        .arg(TableSentence(layout));
}

} // namespace qor
