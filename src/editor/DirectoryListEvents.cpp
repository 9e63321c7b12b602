#include "editor/DirectoryListEvents.h"

#include "editor/History.h"
#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/ListView.h"
#include "rules/Validation.h"

namespace qor {

namespace {

SortOrder Flipped(SortOrder order)
{
    return static_cast<SortOrder>(1 - static_cast<int>(order));
}

bool IsSortedBy(const ListItems& items, int column)
{
    return items.Sorted() && items.SortKey() == column;
}

} // namespace

DirectoryListEvents::DirectoryListEvents(EditorForm& form, History& history)
    : mForm(form), mHistory(history), LVDirectory(*form.LVDirectory)
{
    LVDirectory.Items().SetRowNote([this](int row) { return NoteOn(row); });
}

/// The list outlives its handlers.
DirectoryListEvents::~DirectoryListEvents()
{
    LVDirectory.Items().SetRowNote({});
}

/// Why a row is red.
QString DirectoryListEvents::NoteOn(int row) const
{
    if (!IsMarkedInvalid(LVDirectory, row))
        return {};
    const DirectoryEntry entry = EntryAt(LVDirectory, row);
    QStringList faults = ValidateData(entry.lastName, entry.firstName, entry.extension).split(u"\r\n"_s);
    for (QString& fault : faults)
        fault = fault.trimmed();
    return u"Incomplete: "_s + faults.join(u", "_s);
}

void DirectoryListEvents::LVDirectory_ItemClick(int row)
{
    ReportErrors(u"LVDirectory_ItemClick"_s, [&] {
        if (!mForm.InEditMode())
            return;
        // The list scrolls a row or last name that is partly out of view into it a moment later, and scrolling hides
        // the fields.
        LVDirectory.EnsureVisible(row);
        mForm.LayEntryEditors(row);
        mForm.FillEntryEditors(row);
        mHistory.BeginVisit(row);
        mForm.txtLastName->setFocus();
    });
}

void DirectoryListEvents::LVDirectory_MouseUp()
{
    // The report names another list; those who read reports know it by that name.
    ReportErrors(u"LVActions_MouseUp"_s, [&] {
        for (const EntryEditor& editor : mForm.EntryEditors()) {
            if (TextBox* box = editor.Text(); box && !box->isHidden())
                box->end(false);
        }
    });
}

void DirectoryListEvents::LVDirectory_HorizontalScroll()
{
    if (mForm.EntryEditorsShown())
        mForm.LayEntryEditors(LVDirectory.SelectedItem());
}

void DirectoryListEvents::LVDirectory_Resized()
{
    mForm.KeepEntryEditors([] {});
}

void DirectoryListEvents::LVDirectory_ColumnClick(int column)
{
    ReportErrors(u"LVDirectory_ColumnClick"_s, [&] {
        const History::Step step(mHistory, u"Sort"_s);
        switch (static_cast<DirectoryColumn>(column)) {
        case DirectoryColumn::LastName:
        case DirectoryColumn::FirstName:
        case DirectoryColumn::Password:
            SortByText(column);
            break;
        case DirectoryColumn::Extension:
        case DirectoryColumn::Prompt:
            // Descending at every click: the list is then sorted by the dummy column, never by this one.
            SortListByNumber(LVDirectory, static_cast<DirectoryColumn>(column));
            break;
        case DirectoryColumn::RowNumber:
        case DirectoryColumn::SortKey:
            break;
        }
    });
}

void DirectoryListEvents::SortByText(int column)
{
    ListItems& items = LVDirectory.Items();
    const auto order = IsSortedBy(items, column) ? Flipped(items.Order()) : SortOrder::Ascending;
    items.SetSorted(false); // so that the list is sorted once, with both settings
    items.SetOrder(order);
    items.SetSortKey(column);
    items.SetSorted(true);
}

void DirectoryListEvents::LVDirectory_KeyPress(int character)
{
    ReportErrors(u"LVDirectory_KeyPress"_s, [&] {
        if (character == ctrlA)
            LVDirectory.SelectRows(0, LVDirectory.Items().RowCount() - 1);
    });
}

} // namespace qor
