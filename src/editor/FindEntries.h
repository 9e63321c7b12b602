// Finds the entries that have a text anywhere in the columns that the list shows, without regard to case, and chooses
// one after the other. Nothing is remembered of the rows, which may change in between.
#pragma once

#include "platform/runtime/Text.h"

#include <QObject>

namespace qor {

class DirectoryListEvents;
class EditorForm;
class ListView;

class FindEntries
{
public:
    FindEntries(EditorForm& form, DirectoryListEvents& listEvents);

    /// Shows the line in which the text is typed; the one that it still has is marked.
    void Open();
    /// The text stays, for FindNext and FindPrevious.
    void Close();

    /// Finds the text as it is typed, from the chosen row on.
    void TextChanged();
    /// Both start beside the chosen row and go on at the other end of the list. Where there is no text to find, they
    /// open the line.
    void FindNext();
    void FindPrevious();

private:
    void WatchList();
    void CountLater();
    void Find(int from, int step);
    void Choose(int row);
    bool Matches(int row) const;
    void ShowCount() const;

    EditorForm& mForm;
    DirectoryListEvents& mListEvents;
    ListView& LVDirectory;
    QObject mWatcher;           ///< its connections end with this object
    bool mCountPending = false; ///< one count for all that one key changes
};

} // namespace qor
