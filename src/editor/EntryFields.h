// The fields of the selected entry: every admitted keystroke goes straight into the row's cell.
#pragma once

#include "form/Directory.h"

namespace qor {

class EditorForm;
class TextBox;

class EntryFields
{
public:
    explicit EntryFields(EditorForm& form) : mForm(form) {}

    void txtLastName_Change();
    void txtFirstName_Change();
    void txtExtension_Change();
    void txtPassword_Change();
    void cmbPromptNumber_Change();
    void cmbPromptNumber_Click();

    void txtLastName_GotFocus();
    void txtFirstName_GotFocus();
    void txtExtension_GotFocus();
    void txtPassword_GotFocus();

    /// A field that is left empty gets the row's text back.
    void txtLastName_LostFocus();
    void txtFirstName_LostFocus();
    void txtExtension_LostFocus();
    void txtPassword_LostFocus();

private:
    bool TakeText(TextBox& field, bool (*admits)(QChar), DirectoryColumn column);
    void ClearMarkOfSoundRow();
    void RestoreIfEmpty(TextBox& field, DirectoryColumn column);
    QString SelectedText(DirectoryColumn column) const;

    EditorForm& mForm;
};

} // namespace qor
