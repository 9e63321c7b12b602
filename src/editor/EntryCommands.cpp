#include "editor/EntryCommands.h"

#include "editor/BusinessRules.h"
#include "editor/DirectoryListEvents.h"
#include "editor/History.h"
#include "form/EditorForm.h"
#include "form/ModuleState.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"

#include <algorithm>
#include <QPushButton>

namespace qor {

QString CountedEntries(std::size_t count)
{
    return count == 1 ? u"1 Entry"_s : u"%1 Entries"_s.arg(count);
}

void TellDirectoryFull()
{
    MsgBox(u"Limited to %1 names in Directory list "_s.arg(highestEntryCount), MsgBoxStyle::Information,
           u"Information"_s);
}

EntryCommands::EntryCommands(EditorForm& form, BusinessRules& rules, DirectoryListEvents& listEvents, History& history)
    : mForm(form), mRules(rules), mListEvents(listEvents), mHistory(history), LVDirectory(*form.LVDirectory)
{
}

bool EntryCommands::MayAddEntry()
{
    if (mForm.cmbPromptNumber->ListCount() == 0) {
        MsgBox(u"Please check the \"Max Number of each Node\" in Partition Settings."_s, MsgBoxStyle::Information,
               u"Information"_s);
        return false;
    }
    // Equality on purpose: an import may have left more rows, and those are not stopped here.
    if (LVDirectory.Items().RowCount() == highestEntryCount) {
        TellDirectoryFull();
        return false;
    }
    return true;
}

void EntryCommands::cmdDirAdd_Click()
{
    ReportErrors(u"cmdDirAdd_Click"_s, [&] {
        if (!MayAddEntry())
            return;
        const HourglassPointer hourglass;
        const History::Step step(mHistory, u"Add 1 Entry"_s);
        InsertNewRow(LVDirectory.Items().RowCount());
    });
}

void EntryCommands::cmdDirInsert_Click()
{
    int number = 0;
    int index = 0;
    try {
        if (!MayAddEntry())
            return;
        if (GetSelectedCount(LVDirectory) != 1) {
            cmdDirAdd_Click();
            return;
        }
        const HourglassPointer hourglass;
        const int position = LVDirectory.SelectedRows().front();
        index = position + 1;
        number = LVDirectory.Items().RowCount() + 1;
        const History::Step step(mHistory, u"Insert 1 Entry"_s);
        InsertNewRow(position);
    } catch (...) {
        ShowErrorReport(CurrentRuntimeError(),
                        u"cmdDirInsert_Click : RowNumber%1 -- index : %2"_s.arg(number).arg(index));
    }
}

/// The new row gets the next number after all others, wherever it goes; the other rows keep theirs until they are
/// renumbered.
void EntryCommands::InsertNewRow(int position)
{
    ClearSelectionFrom(LVDirectory, 0);
    LVDirectory.SetSelectedItem(-1);
    mForm.cmbPromptNumber->SetListIndex(0);
    ListItems& items = LVDirectory.Items();
    const int number = items.RowCount() + 1;
    items.Insert(position, {EntryRow(number, {{}, {}, u"1"_s, NewRowPrompts(mForm, mRules).Next(), newEntryPassword})});

    const int row = items.RowOfKey(RowKey(number));
    SelectAndShow(row);
    PaintRow(LVDirectory, row, invalidRowColour);
    mForm.HideEntryEditors();
    mForm.MarkChanged();
}

void EntryCommands::SelectAndShow(int row)
{
    LVDirectory.SetSelected(row, true);
    LVDirectory.EnsureVisible(row);
}

void EntryCommands::cmdDirRemove_Click()
{
    ReportErrors(u"cmdDirRemove_Click"_s, [&] {
        Module().DirectoryChanged = true;
        if (GetSelectedCount(LVDirectory) > 0)
            RemoveSelected(u"Remove"_s);
    });
}

void EntryCommands::RemoveSelected(const QString& stepText)
{
    const HourglassPointer hourglass;
    ListItems& items = LVDirectory.Items();
    const std::vector<int> selected = LVDirectory.SelectedRows();
    const History::Step step(mHistory, stepText + u' ' + CountedEntries(selected.size()));
    const int next = selected.size() == 1 ? selected.front() : 0;
    ClearSelectionFrom(LVDirectory, 0);
    items.Remove(selected);
    Renumber();
    if (items.RowCount() > 0)
        SelectAndShow(qMin(next, items.RowCount() - 1));
    mForm.MarkChanged();
}

/// Numbers the rows in their order. They get interim keys first, so that none gets a key that another row still has.
void EntryCommands::Renumber()
{
    ListItems& items = LVDirectory.Items();
    for (int row = 0; row < items.RowCount(); ++row) {
        items.SetKey(row, RowKey(row + 1) + u'b');
        items.SetText(row, static_cast<int>(DirectoryColumn::RowNumber), QString::number(row + 1));
    }
    for (int row = 0; row < items.RowCount(); ++row)
        items.SetKey(row, RowKey(row + 1));
}

void EntryCommands::cmdDirUp_Click()
{
    ReportErrors(u"cmdDirUp_Click"_s, [&] { MoveSelected(-1); });
}

void EntryCommands::cmdDirDown_Click()
{
    ReportErrors(u"cmdDirDown_Click"_s, [&] { MoveSelected(1); });
}

void EntryCommands::MoveSelected(int distance)
{
    if (GetSelectedCount(LVDirectory) == 1)
        MoveBlock(distance);
}

void EntryCommands::MoveBlock(int distance)
{
    std::vector<int> rows = LVDirectory.SelectedRows();
    if (rows.empty())
        return;
    const HourglassPointer hourglass;
    const History::Step step(mHistory,
                             u"Move %1 %2"_s.arg(CountedEntries(rows.size()), distance < 0 ? u"Up"_s : u"Down"_s));
    Renumber();
    if (distance < 0 ? rows.front() > 0 : rows.back() < LVDirectory.Items().RowCount() - 1)
        SwapOnward(rows, distance);
    mForm.MarkChanged();
}

/// The selection and the chosen row go with the entries.
void EntryCommands::SwapOnward(std::vector<int> rows, int distance)
{
    const bool isChosen = std::ranges::find(rows, LVDirectory.SelectedItem()) != rows.end();
    const int chosen = (isChosen ? LVDirectory.SelectedItem() : rows.front()) + distance;
    if (distance > 0)
        std::ranges::reverse(rows); // so that no row meets another one of the block
    for (int& row : rows) {
        SwapEntries(row, row + distance);
        row += distance;
    }
    std::ranges::sort(rows);
    LVDirectory.SelectOnly(rows);
    LVDirectory.SetSelectedItem(chosen);
    LVDirectory.EnsureVisible(chosen);
}

void EntryCommands::SwapEntries(int row, int other)
{
    ListItems& items = LVDirectory.Items();
    for (int subItem = static_cast<int>(DirectoryColumn::LastName);
         subItem <= static_cast<int>(DirectoryColumn::Password); ++subItem) {
        const QString text = items.Text(row, subItem);
        items.SetText(row, subItem, items.Text(other, subItem));
        items.SetText(other, subItem, text);

        const QColor colour = items.ForeColor(row, subItem).value_or(soundRowColour);
        items.SetForeColor(row, subItem, items.ForeColor(other, subItem).value_or(soundRowColour));
        items.SetForeColor(other, subItem, colour);
    }
}

void EntryCommands::LVDirectory_KeyDown(int key)
{
    ReportErrors(u"LVDirectory_KeyDown"_s, [&] {
        if (key == Qt::Key_Delete && mForm.cmdDirRemove->isEnabled())
            cmdDirRemove_Click();
    });
}

void EntryCommands::cmdDirEdit_Click()
{
    ReportErrors(u"cmdDirEdit_Click"_s, [&] {
        const HourglassPointer hourglass;
        if (mForm.InEditMode())
            EndEditMode();
        else
            StartEditMode();
        mForm.MarkChanged();
    });
}

void EntryCommands::LeaveEditMode()
{
    if (mForm.InEditMode())
        cmdDirEdit_Click();
}

void EntryCommands::EndEditMode()
{
    mHistory.EndVisit();
    LVDirectory.SetMultiSelect(true);
    LVDirectory.SetTypeToFind(true);
    mForm.HideEntryEditors();
    EnableListCommands(true);
    mForm.SetEditMode(false);
}

void EntryCommands::StartEditMode()
{
    const std::vector<int> selected = LVDirectory.SelectedRows();
    LVDirectory.SetMultiSelect(false);
    LVDirectory.SetTypeToFind(false); // a letter would choose another person, and the next ones would go into that name
    EnableListCommands(false);
    mForm.SetEditMode(true);
    if (selected.empty())
        return;
    const int current = LVDirectory.SelectedItem();
    const int row = current >= 0 && LVDirectory.IsSelected(current) ? current : selected.front();
    ClearSelectionFrom(LVDirectory, 0);
    SelectAndShow(row);
    mListEvents.LVDirectory_ItemClick(row);
}

void EntryCommands::EnableListCommands(bool enabled)
{
    for (QPushButton* button : {mForm.cmdDirAdd, mForm.cmdDirInsert, mForm.cmdDirRemove, mForm.cmdDirUp,
                                mForm.cmdDirDown, mForm.cmdDirSaveList})
        button->setEnabled(enabled);
}

} // namespace qor
