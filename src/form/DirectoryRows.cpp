#include "form/DirectoryRows.h"

#include "form/ModuleState.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RuntimeError.h"
#include "platform/ui/ListView.h"
#include "platform/ui/Screen.h"

#include <array>

namespace qor {

namespace {

struct ColumnHeader
{
    const char* text;
    int twips;
};

constexpr int numberColumnTwips = 900 / 2 + 1000;

constexpr std::array columnHeaders{
    ColumnHeader{"#", 0},
    ColumnHeader{"LastName", 1600},
    ColumnHeader{"FirstName", 1600},
    ColumnHeader{"Extension", numberColumnTwips},
    ColumnHeader{"Prompt", numberColumnTwips},
    ColumnHeader{"Password", 0},
};

/// The list's columns without the dummy column of a numeric sort.
constexpr int ownColumnCount = static_cast<int>(columnHeaders.size());

double NumberIn(const ListItems& items, int row, DirectoryColumn column)
{
    const QString text = items.Text(row, static_cast<int>(column));
    if (const auto number = NumberFromText(text))
        return *number;
    throw RuntimeError(ErrorNumber::TypeMismatch,
                       u"%1 of row %2 is \"%3\", which is not a number. Correct it and sort again."_s
                           .arg(QLatin1String(columnHeaders[static_cast<std::size_t>(column)].text))
                           .arg(row + 1)
                           .arg(text.left(40)));
}

} // namespace

QString RowKey(int number)
{
    return QString::number(number) + u'a';
}

ListRow EntryRow(int number, DirectoryEntry entry)
{
    ListRow row{RowKey(number), {}, {}};
    row.texts.reserve(ownColumnCount);
    row.texts << QString::number(number) << std::move(entry.lastName) << std::move(entry.firstName)
              << std::move(entry.extension) << std::move(entry.prompt) << std::move(entry.password);
    return row;
}

QString EntryText(const ListView& list, int row, DirectoryColumn column)
{
    return list.Items().Text(row, static_cast<int>(column));
}

DirectoryEntry EntryAt(const ListView& list, int row)
{
    const auto text = [&](DirectoryColumn column) { return EntryText(list, row, column); };
    return {.lastName = text(DirectoryColumn::LastName),
            .firstName = text(DirectoryColumn::FirstName),
            .extension = text(DirectoryColumn::Extension),
            .prompt = text(DirectoryColumn::Prompt),
            .password = text(DirectoryColumn::Password)};
}

std::vector<DirectoryEntry> EntriesOf(const ListView& list)
{
    const int rowCount = list.Items().RowCount();
    std::vector<DirectoryEntry> entries;
    entries.reserve(static_cast<std::size_t>(rowCount));
    for (int row = 0; row < rowCount; ++row)
        entries.push_back(EntryAt(list, row));
    return entries;
}

bool IsMarkedInvalid(const ListView& list, int row)
{
    return list.Items().ForeColor(row, static_cast<int>(DirectoryColumn::LastName)) == invalidRowColour;
}

void PaintRow(ListView& list, int row, const QColor& colour)
{
    for (int subItem = 1; subItem <= Module().DirectorySubItemCount; ++subItem)
        list.Items().SetForeColor(row, subItem, colour);
}

void ResetDirectoryListView(ListView& list)
{
    list.SetMultiSelect(true);
    list.setShowGrid(true);
    list.Items().ClearColumns();
    for (const ColumnHeader& header : columnHeaders)
        list.AddColumn(QLatin1String(header.text), TwipsToPixels(header.twips));
}

int GetSelectedCount(const ListView& list)
{
    return static_cast<int>(SendMessageA(list.Handle(), LVM_GETSELECTEDCOUNT, 0, 0));
}

void ClearSelectionFrom(ListView& list, int first)
{
    list.DeselectFrom(first);
}

void AddSortColumn(ListView& list)
{
    list.AddColumn(u"dummy column"_s, 0);
}

void DropSortColumn(ListView& list)
{
    if (list.Items().ColumnCount() > ownColumnCount)
        list.Items().RemoveLastColumn();
}

void ForgetSort(ListView& list)
{
    ListItems& items = list.Items();
    items.SetSorted(false);
    items.SetSortKey(0);
    items.SetOrder(SortOrder::Ascending);
    DropSortColumn(list);
}

void SortListByNumber(ListView& list, DirectoryColumn column)
{
    constexpr int sortKey = static_cast<int>(DirectoryColumn::SortKey);
    ListItems& items = list.Items();
    DropSortColumn(list);
    items.SetSorted(false);
    AddSortColumn(list);
    for (int row = 0; row < items.RowCount(); ++row)
        items.SetText(row, sortKey, ZeroPaddedNumber(NumberIn(items, row, column)));
    items.SetSortKey(sortKey);
    items.SetOrder(SortOrder::Descending);
    items.SetSorted(true);
}

} // namespace qor
