// The fields of the node itself: they keep what is typed within the rules and mark the node as changed.
#pragma once

namespace qor {

class EditorForm;

class NodeHeader
{
public:
    explicit NodeHeader(EditorForm& form) : mForm(form) {}

    void txtDescription_Change();
    void cmbUsePasswords_Click();
    void txtAccessCode_Change();
    /// Unlike the prompt of an entry, the text stays as typed unless not even its first digit fits the list.
    void cmbMSGNodeNumber_Change();
    void cmbMSGNodeNumber_Click();

private:
    EditorForm& mForm;
};

} // namespace qor
