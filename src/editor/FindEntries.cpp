#include "editor/FindEntries.h"

#include "editor/DirectoryListEvents.h"
#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"

namespace qor {

FindEntries::FindEntries(EditorForm& form, DirectoryListEvents& listEvents)
    : mForm(form), mListEvents(listEvents), LVDirectory(*form.LVDirectory)
{
    WatchList();
}

void FindEntries::WatchList()
{
    const auto countAgain = [this] { CountLater(); };
    const ListItems* items = &LVDirectory.Items();
    QObject::connect(items, &ListItems::dataChanged, &mWatcher, countAgain);
    QObject::connect(items, &ListItems::layoutChanged, &mWatcher, countAgain);
    QObject::connect(items, &ListItems::modelReset, &mWatcher, countAgain);
    QObject::connect(items, &ListItems::rowsInserted, &mWatcher, countAgain);
    QObject::connect(items, &ListItems::rowsRemoved, &mWatcher, countAgain);
    QObject::connect(LVDirectory.selectionModel(), &QItemSelectionModel::currentChanged, &mWatcher, countAgain);
}

void FindEntries::CountLater()
{
    if (mCountPending || mForm.fraFind->isHidden())
        return;
    mCountPending = true;
    QMetaObject::invokeMethod(
        &mWatcher,
        [this] {
            mCountPending = false;
            ShowCount();
        },
        Qt::QueuedConnection);
}

void FindEntries::Open()
{
    ReportErrors(u"OpenFind"_s, [&] {
        mForm.ShowFindLine(true);
        mForm.fraFind->Edit();
        ShowCount();
    });
}

void FindEntries::Close()
{
    ReportErrors(u"CloseFind"_s, [&] {
        mForm.ShowFindLine(false);
        LVDirectory.setFocus();
    });
}

void FindEntries::TextChanged()
{
    ReportErrors(u"TextChanged"_s, [&] { Find(qMax(LVDirectory.SelectedItem(), 0), 1); });
}

void FindEntries::FindNext()
{
    ReportErrors(u"FindNext"_s, [&] {
        if (mForm.fraFind->Text().isEmpty())
            Open();
        else
            Find(LVDirectory.SelectedItem() + 1, 1);
    });
}

void FindEntries::FindPrevious()
{
    ReportErrors(u"FindPrevious"_s, [&] {
        if (mForm.fraFind->Text().isEmpty())
            Open();
        else
            Find(qMax(LVDirectory.SelectedItem(), 0) - 1, -1);
    });
}

/// Chooses the first row that matches, from this one on in steps of 1 or -1.
void FindEntries::Find(int from, int step)
{
    const int rowCount = LVDirectory.Items().RowCount();
    for (int tried = 0; tried < rowCount; ++tried) {
        const int row = (from + step * tried + rowCount) % rowCount;
        if (Matches(row)) {
            Choose(row);
            break;
        }
    }
    ShowCount();
}

/// Leaves the focus where it is, even when the fields go to another row.
void FindEntries::Choose(int row)
{
    QWidget* focus = mForm.focusWidget();
    LVDirectory.SelectOnly({row});
    LVDirectory.SetSelectedItem(row);
    LVDirectory.EnsureVisible(row);
    mListEvents.LVDirectory_ItemClick(row);
    if (focus)
        focus->setFocus();
}

bool FindEntries::Matches(int row) const
{
    const QString text = mForm.fraFind->Text();
    for (int column = 0; !text.isEmpty() && column < LVDirectory.Items().ColumnCount(); ++column) {
        if (!LVDirectory.isColumnHidden(column) &&
            LVDirectory.Items().Text(row, column).contains(text, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

void FindEntries::ShowCount() const
{
    int position = 0;
    int count = 0;
    for (int row = 0; row < LVDirectory.Items().RowCount(); ++row) {
        if (!Matches(row))
            continue;
        ++count;
        if (row == LVDirectory.SelectedItem())
            position = count;
    }
    mForm.fraFind->ShowCount(position, count);
}

} // namespace qor
