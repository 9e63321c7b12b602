// The directory's rows in the list view: their columns, keys, colours and the two ways of sorting them.
#pragma once

#include "platform/ui/ListItems.h"
#include "rules/DirectoryNode.h"

#include <QColor>

namespace qor {

class ListView;

/// A row's own text and its sub-items.
enum class DirectoryColumn : int {
    RowNumber = 0,
    LastName = 1,
    FirstName = 2,
    Extension = 3,
    Prompt = 4,
    Password = 5,
    SortKey = 6, ///< only after a numeric sort
};

inline const QColor invalidRowColour(255, 0, 0);
inline const QColor soundRowColour(0, 0, 0);

/// "12" gives "12a".
QString RowKey(int number);

/// A row for the list: the number as its text, the key made of it, and the five sub-items.
ListRow EntryRow(int number, DirectoryEntry entry);

QString EntryText(const ListView& list, int row, DirectoryColumn column);
DirectoryEntry EntryAt(const ListView& list, int row);
/// All entries in the order of their rows.
std::vector<DirectoryEntry> EntriesOf(const ListView& list);

bool IsMarkedInvalid(const ListView& list, int row);
/// Paints the cells that mark an invalid row.
void PaintRow(ListView& list, int row, const QColor& colour);

/// Sets the list view up with its six columns; rows in the list stay.
void ResetDirectoryListView(ListView& list);

/// The hidden "dummy column" that a numeric sort sorts by.
void AddSortColumn(ListView& list);
/// Does nothing when there is none.
void DropSortColumn(ListView& list);

/// Forgets what the list is sorted by; its rows stay where they are.
void ForgetSort(ListView& list);

/// The number of selected rows, asked of the list view as a message.
int GetSelectedCount(const ListView& list);

/// Deselects every row from `first` to the last.
void ClearSelectionFrom(ListView& list, int first);

/// Sorts by the numbers in a column, the highest first, by way of zero-padded texts in the dummy column. A text that is
/// not a number raises RuntimeError, which leaves the list unsorted and the dummy column in place.
void SortListByNumber(ListView& list, DirectoryColumn column);

} // namespace qor
