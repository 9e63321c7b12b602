#include "editor/HeaderFields.h"

#include "editor/TypedField.h"
#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/Numbers.h"
#include "platform/ui/MsgBox.h"
#include "rules/Validation.h"

namespace qor {

void HeaderFields::txtDescription_Change()
{
    mForm.MarkChanged();
}

void HeaderFields::cmbUsePasswords_Click()
{
    mForm.MarkChanged();
}

void HeaderFields::cmbMSGNodeNumber_Click()
{
    mForm.MarkChanged();
}

void HeaderFields::txtAccessCode_Change()
{
    ReportErrors(u"txtAccessCode_Change"_s, [&] {
        FilterField(*mForm.txtAccessCode, IsDigit);
        mForm.MarkChanged();
    });
}

void HeaderFields::cmbMSGNodeNumber_Change()
{
    ReportErrors(u"cmbMSGNodeNumber_Change"_s, [&] {
        if (NumberTypedIn(*mForm.cmbMSGNodeNumber) == 0)
            mForm.cmbMSGNodeNumber->SetListIndex(0);
        mForm.MarkChanged();
    });
}

QString CheckAccessCode(EditorForm& form)
{
    return ReportErrors(u"CheckAccessCode"_s, [&]() -> QString {
        if (IsAcceptableAccessCode(form.txtAccessCode->text()))
            return u"OK"_s;
        MsgBox(u"Too Few Characters."_s, MsgBoxStyle::Information, u"Information"_s);
        form.txtAccessCode->selectAll();
        form.txtAccessCode->setFocus();
        return {};
    });
}

} // namespace qor
