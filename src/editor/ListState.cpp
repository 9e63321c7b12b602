#include "editor/ListState.h"

#include "form/DirectoryRows.h"
#include "platform/ui/ListView.h"

#include <algorithm>

namespace qor {

ListState TakeState(const ListView& list)
{
    const ListItems& items = list.Items();
    return {.rows = items.Rows(),
            .sort = items.Sorting(),
            .columnCount = items.ColumnCount(),
            .selected = list.SelectedRows(),
            .current = list.SelectedItem(),
            .top = list.TopRow()};
}

void PutState(ListView& list, const ListState& state)
{
    ListItems& items = list.Items();
    ClearSelectionFrom(list, 0);
    if (state.columnCount < items.ColumnCount())
        DropSortColumn(list);
    else if (state.columnCount > items.ColumnCount())
        AddSortColumn(list);
    items.Restore(state.rows, state.sort);
    list.SelectOnly(state.selected);
    list.SetSelectedItem(state.current);
    list.SetTopRow(state.top);
}

bool IsSameDirectory(const ListState& one, const ListState& other)
{
    return one.sort == other.sort && one.columnCount == other.columnCount &&
           std::ranges::equal(one.rows, other.rows, [](const ListRow& left, const ListRow& right) {
               return left.key == right.key && left.texts == right.texts;
           });
}

} // namespace qor
