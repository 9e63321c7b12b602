// The fields of the node itself: they keep what is typed within the rules and mark the node as changed.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

class EditorForm;

class HeaderFields
{
public:
    explicit HeaderFields(EditorForm& form) : mForm(form) {}

    void txtDescription_Change();
    void cmbUsePasswords_Click();
    void txtAccessCode_Change();
    /// Unlike the prompt of an entry, the text stays as typed unless not even its first digit fits the list.
    void cmbMSGNodeNumber_Change();
    void cmbMSGNodeNumber_Click();

private:
    EditorForm& mForm;
};

/// "OK", or "" after telling the user that a code of one to three characters is too short; then the code is
/// selected and has the focus.
QString CheckAccessCode(EditorForm& form);

} // namespace qor
