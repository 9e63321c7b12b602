#include "editor/EntryFields.h"

#include "editor/TypedField.h"
#include "platform/runtime/ErrorReport.h"
#include "rules/Validation.h"

namespace qor {

namespace {

QString ProcedureOf(const EntryEditor& editor, const QString& event)
{
    return editor.control->objectName() + u'_' + event;
}

} // namespace

void EntryFields::Change(const EntryEditor& editor)
{
    ReportErrors(ProcedureOf(editor, u"Change"_s), [&] {
        if (FilterField(*editor.Text(), editor.admits)) // a text that was filtered comes back through Change
            TakeText(editor);
        mForm.MarkChanged();
    });
}

/// Writes a clean text into the selected row; the password has no say in the row's mark.
void EntryFields::TakeText(const EntryEditor& editor)
{
    ListView& list = *mForm.LVDirectory;
    list.Items().SetText(list.SelectedItem(), static_cast<int>(editor.column), editor.Text()->text());
    if (editor.column != DirectoryColumn::Password)
        ClearMarkOfSoundRow();
}

void EntryFields::ClearMarkOfSoundRow()
{
    const int row = mForm.LVDirectory->SelectedItem();
    if (IsSound(EntryAt(*mForm.LVDirectory, row)))
        PaintRow(*mForm.LVDirectory, row, soundRowColour);
}

void EntryFields::LostFocus(const EntryEditor& editor)
{
    ReportErrors(ProcedureOf(editor, u"LostFocus"_s), [&] {
        if (editor.Text()->text().isEmpty())
            editor.Fill(EntryText(*mForm.LVDirectory, mForm.LVDirectory->SelectedItem(), editor.column));
    });
}

void EntryFields::cmbPromptNumber_Change()
{
    ReportErrors(u"cmbPromptNumber_Change"_s, [&] {
        ComboBox& combo = *mForm.cmbPromptNumber;
        if (combo.isHidden() || combo.ListCount() == 0)
            return;
        const int number = NumberTypedIn(combo);
        combo.SetText(number == 0 ? combo.List(0) : QString::number(number));
        combo.MoveCaretToEnd();
        cmbPromptNumber_Click();
    });
}

void EntryFields::cmbPromptNumber_Click()
{
    ReportErrors(u"cmbPromptNumber_Click"_s, [&] {
        ListView& list = *mForm.LVDirectory;
        const int row = list.SelectedItem();
        if (row >= 0 && list.IsSelected(row))
            list.Items().SetText(row, static_cast<int>(DirectoryColumn::Prompt), mForm.cmbPromptNumber->Text());
    });
}

} // namespace qor
