#include "interchange/DirectoryClipboard.h"

#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "form/EditorForm.h"
#include "form/ModuleState.h"
#include "interchange/IncomingEntries.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"
#include "rules/TabularText.h"
#include "rules/Validation.h"

#include <algorithm>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace qor {

namespace {

/// Nothing when no row of the text has the three columns.
std::optional<ListReport> ReadText(const QString& text, IncomingRows& rows)
{
    TabularReader reader(text);
    bool hasColumns = false;
    const auto next = [&] {
        const QStringList row = reader.ReadRow();
        hasColumns = hasColumns || row.size() == 3;
        return DirectoryEntry{row.value(0), row.value(1), row.value(2), {}, {}};
    };
    const ListReport report = rows.Read(EntrySource{.atEnd = [&] { return reader.AtEnd(); }, .next = next});
    return hasColumns ? std::optional(report) : std::nullopt;
}

} // namespace

DirectoryClipboard::DirectoryClipboard(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands,
                                       History& history)
    : mForm(form), mRules(rules), mEntryCommands(entryCommands), mHistory(history), LVDirectory(*form.LVDirectory)
{
}

bool DirectoryClipboard::CanCopy() const
{
    return !mForm.InEditMode() && GetSelectedCount(LVDirectory) > 0;
}

bool DirectoryClipboard::CanPaste() const
{
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return !mForm.InEditMode() && data != nullptr && data->hasText();
}

void DirectoryClipboard::Copy()
{
    ReportErrors(u"Copy"_s, [&] {
        if (!CanCopy())
            return;
        PutSelected();
        mCut = {};
    });
}

void DirectoryClipboard::Cut()
{
    ReportErrors(u"Cut"_s, [&] {
        if (!CanCopy())
            return;
        mCut = PutSelected();
        Module().DirectoryChanged = true;
        mEntryCommands.RemoveSelected(u"Cut"_s);
    });
}

DirectoryClipboard::CutRows DirectoryClipboard::PutSelected() const
{
    CutRows rows;
    for (const int row : LVDirectory.SelectedRows())
        rows.entries.push_back(EntryAt(LVDirectory, row));
    rows.text = TabularText(rows.entries);
    QGuiApplication::clipboard()->setText(rows.text);
    return rows;
}

void DirectoryClipboard::Paste()
{
    ReportErrors(u"Paste"_s, [&] {
        if (mForm.InEditMode() || !mEntryCommands.MayAddEntry())
            return;
        std::optional<ListReport> report;
        {
            const Loading loading(mForm);
            const QString text = QGuiApplication::clipboard()->text();
            IncomingRows rows(mForm, mRules);
            report = !text.isEmpty() && text == mCut.text ? ReadCut(rows) : ReadText(text, rows);
            InsertRows(rows);
        }
        if (report) {
            TellReport(*report);
        } else {
            MsgBox(u"The clipboard holds no entries. Copy rows with LastName, FirstName and Extension."_s,
                   MsgBoxStyle::Information, u"Information"_s);
        }
    });
}

/// Rows that only move are not checked: a name that could not be typed would be lost on the way.
ListReport DirectoryClipboard::ReadCut(IncomingRows& rows) const
{
    ListReport report;
    for (const DirectoryEntry& entry : EntriesCut()) {
        report.limitReached = rows.IsFull();
        if (report.limitReached)
            break;
        rows.Add(entry);
    }
    return report;
}

/// An entry that is in the list, because it was pasted before or the cut was undone, is a new one this time.
std::vector<DirectoryEntry> DirectoryClipboard::EntriesCut() const
{
    const std::vector<DirectoryEntry> present = EntriesOf(LVDirectory);
    std::vector<DirectoryEntry> entries = mCut.entries;
    for (DirectoryEntry& entry : entries) {
        if (std::ranges::find(present, entry) != present.end())
            entry.prompt.clear();
    }
    return entries;
}

void DirectoryClipboard::InsertRows(IncomingRows& rows)
{
    if (rows.Count() == 0)
        return;
    const std::vector<int> selected = LVDirectory.SelectedRows();
    const int first = selected.size() == 1 ? selected.front() : LVDirectory.Items().RowCount();
    const int last = first + rows.Count() - 1;
    const History::Step step(mHistory, u"Paste "_s + CountedEntries(static_cast<std::size_t>(rows.Count())));
    ClearSelectionFrom(LVDirectory, 0);
    LVDirectory.Items().Insert(first, rows.Take());
    for (int row = first; row <= last; ++row) {
        if (!IsSound(EntryAt(LVDirectory, row)))
            PaintRow(LVDirectory, row, invalidRowColour);
    }
    LVDirectory.SelectRows(first, last);
    LVDirectory.SetSelectedItem(first);
    LVDirectory.EnsureVisible(last);
    LVDirectory.EnsureVisible(first);
    mForm.MarkChanged();
}

} // namespace qor
