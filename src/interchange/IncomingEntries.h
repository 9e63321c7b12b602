// What import and paste have in common: entries from outside on their way into the directory list.
#pragma once

#include "editor/BusinessRules.h"
#include "form/DirectoryRows.h"
#include "form/LongOperation.h"
#include "platform/ui/Screen.h"
#include "rules/EntryList.h"

namespace qor {

/// Makes rows of entries, numbered after those in the list. An entry without a prompt is a new one: it gets the next
/// free prompt and the password that all begin with.
class IncomingRows
{
public:
    IncomingRows(EditorForm& form, BusinessRules& rules);

    /// Takes the sound entries from a source.
    ListReport Read(const EntrySource& source);
    /// The same from a file, read by the plain rule or as a table.
    ListReport Read(QIODevice& device, const std::optional<TableLayout>& table);
    void Add(DirectoryEntry entry);
    /// Whether the list and these rows together are as many as a directory may hold.
    bool IsFull() const { return mNumber == highestEntryCount; }
    int Count() const { return static_cast<int>(mRows.size()); }
    std::vector<ListRow> Take() { return std::move(mRows); }

private:
    NewRowPrompts mPrompts;
    int mNumber; ///< of the last row so far
    std::vector<ListRow> mRows;
};

/// The form while it reads entries.
class Loading
{
public:
    explicit Loading(EditorForm& form);
    ~Loading();
    Loading(const Loading&) = delete;
    Loading& operator=(const Loading&) = delete;

private:
    EditorForm& mForm;
    HourglassPointer mPointer;
    LongOperation mRunning;
};

/// Tells what was rejected or left out. The list of rejected entries goes into a file as well.
void TellReport(const ListReport& report);

} // namespace qor
