// The fields of the selected entry: every admitted keystroke goes straight into the row's cell. A procedure is reported
// as its control, an underscore and its event: "txtLastName_Change".
#pragma once

#include "form/EditorForm.h"

namespace qor {

class EntryFields
{
public:
    explicit EntryFields(EditorForm& form) : mForm(form) {}

    void Change(const EntryEditor& editor);
    /// A field that is left empty gets the row's text back.
    void LostFocus(const EntryEditor& editor);

    void cmbPromptNumber_Change();
    void cmbPromptNumber_Click();

private:
    void TakeText(const EntryEditor& editor);
    void ClearMarkOfSoundRow();

    EditorForm& mForm;
};

} // namespace qor
