// Finds entries with a text anywhere in the columns that the list shows, ignoring case, and chooses one after the
// other. Remembers nothing of the rows, since they may change in between.
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

    /// Shows the find line with its last text selected.
    void Open();
    /// The text stays, for FindNext and FindPrevious.
    void Close();

    /// Finds the text as it is typed, from the chosen row on.
    void TextChanged();
    /// Both start next to the chosen row and go on at the other end of the list. Without a text to find they open the
    /// line.
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
    bool mCountPending = false; ///< one count for everything that a key changes
};

} // namespace qor
