#include "editor/EntryFields.h"

#include "editor/FieldFilter.h"
#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "rules/Validation.h"

#include <QPushButton>

namespace qor {

void EntryFields::txtLastName_Change()
{
    ReportErrors(u"txtLastName_Change"_s, [&] {
        if (TakeText(*mForm.txtLastName, IsLetter, DirectoryColumn::LastName))
            ClearMarkOfSoundRow();
        mForm.cmdApply->setEnabled(true);
    });
}

void EntryFields::txtFirstName_Change()
{
    ReportErrors(u"txtFirstName_Change"_s, [&] {
        if (TakeText(*mForm.txtFirstName, IsLetter, DirectoryColumn::FirstName))
            ClearMarkOfSoundRow();
        mForm.cmdApply->setEnabled(true);
    });
}

void EntryFields::txtExtension_Change()
{
    ReportErrors(u"txtExtension_Change"_s, [&] {
        if (TakeText(*mForm.txtExtension, IsDigit, DirectoryColumn::Extension))
            ClearMarkOfSoundRow();
        mForm.cmdApply->setEnabled(true);
    });
}

void EntryFields::txtPassword_Change()
{
    ReportErrors(u"txtPassword_Change"_s, [&] {
        TakeText(*mForm.txtPassword, IsDigit, DirectoryColumn::Password);
        mForm.cmdApply->setEnabled(true);
    });
}

/// Writes a clean text into the selected row; a text that was filtered comes back through Change.
bool EntryFields::TakeText(TextBox& field, bool (*admits)(QChar), DirectoryColumn column)
{
    if (!FilterField(field, admits))
        return false;
    mForm.LVDirectory->Items().SetText(mForm.LVDirectory->SelectedItem(), static_cast<int>(column), field.text());
    return true;
}

void EntryFields::ClearMarkOfSoundRow()
{
    const int row = mForm.LVDirectory->SelectedItem();
    if (IsSoundRow(*mForm.LVDirectory, row))
        PaintRow(*mForm.LVDirectory, row, soundRowColour);
}

QString EntryFields::SelectedText(DirectoryColumn column) const
{
    return EntryText(*mForm.LVDirectory, mForm.LVDirectory->SelectedItem(), column);
}

void EntryFields::cmbPromptNumber_Change()
{
    ReportErrors(u"cmbPromptNumber_Change"_s, [&] {
        ComboBox& combo = *mForm.cmbPromptNumber;
        if (combo.isHidden() || combo.ListCount() == 0)
            return;
        const int number = WalkTypedNumber(combo);
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

void EntryFields::txtLastName_GotFocus()
{
    ReportErrors(u"txtLastName_GotFocus"_s, [&] { mForm.txtLastName->selectAll(); });
}

void EntryFields::txtFirstName_GotFocus()
{
    ReportErrors(u"txtFirstName_GotFocus"_s, [&] { mForm.txtFirstName->selectAll(); });
}

void EntryFields::txtExtension_GotFocus()
{
    ReportErrors(u"txtExtension_GotFocus"_s, [&] { mForm.txtExtension->selectAll(); });
}

void EntryFields::txtPassword_GotFocus()
{
    ReportErrors(u"txtPassword_GotFocus"_s, [&] { mForm.txtPassword->selectAll(); });
}

void EntryFields::txtLastName_LostFocus()
{
    ReportErrors(u"txtLastName_LostFocus"_s, [&] { RestoreIfEmpty(*mForm.txtLastName, DirectoryColumn::LastName); });
}

void EntryFields::txtFirstName_LostFocus()
{
    ReportErrors(u"txtFirstName_LostFocus"_s, [&] { RestoreIfEmpty(*mForm.txtFirstName, DirectoryColumn::FirstName); });
}

void EntryFields::txtExtension_LostFocus()
{
    ReportErrors(u"txtExtension_LostFocus"_s, [&] { RestoreIfEmpty(*mForm.txtExtension, DirectoryColumn::Extension); });
}

void EntryFields::txtPassword_LostFocus()
{
    ReportErrors(u"txtPassword_LostFocus"_s, [&] { RestoreIfEmpty(*mForm.txtPassword, DirectoryColumn::Password); });
}

void EntryFields::RestoreIfEmpty(TextBox& field, DirectoryColumn column)
{
    if (field.text().isEmpty())
        field.setText(SelectedText(column));
}

} // namespace qor
