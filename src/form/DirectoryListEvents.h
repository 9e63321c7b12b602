// The list view's own events: sorting by a click on a column header, Ctrl+A.
#pragma once

namespace qor {

class ListView;

class DirectoryListEvents
{
public:
    explicit DirectoryListEvents(ListView& list) : LVDirectory(list) {}

    /// Text columns sort ascending, then descending in turn; number columns sort descending at every click.
    void LVDirectory_ColumnClick(int column);
    /// Ctrl+A selects every row.
    void LVDirectory_KeyPress(int character);

private:
    void SortByText(int column);
    void SortByNumber(int column);

    ListView& LVDirectory;
};

} // namespace qor
