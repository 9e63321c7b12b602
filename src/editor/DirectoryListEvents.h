// The list view's own events: a row chosen, a column header clicked, Ctrl+A.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

class EditorForm;
class History;
class ListView;

class DirectoryListEvents
{
public:
    DirectoryListEvents(EditorForm& form, History& history);
    ~DirectoryListEvents();
    DirectoryListEvents(const DirectoryListEvents&) = delete;
    DirectoryListEvents& operator=(const DirectoryListEvents&) = delete;

    /// In edit mode the in-place fields are laid over the row and show its texts.
    void LVDirectory_ItemClick(int row);
    /// Puts the caret of the shown in-place fields at the end of their texts, where typing goes on.
    void LVDirectory_MouseUp();
    /// Keeps the in-place fields over their columns.
    void LVDirectory_HorizontalScroll();
    void LVDirectory_Resized();

    /// Text columns sort ascending, then descending in turn; number columns sort descending at every click.
    void LVDirectory_ColumnClick(int column);
    /// Ctrl+A selects every row.
    void LVDirectory_KeyPress(int character);

private:
    QString NoteOn(int row) const;
    void SortByText(int column);

    EditorForm& mForm;
    History& mHistory;
    ListView& LVDirectory;
};

} // namespace qor
