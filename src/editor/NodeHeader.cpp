#include "editor/NodeHeader.h"

#include "editor/FieldFilter.h"
#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "rules/Validation.h"

#include <QPushButton>

namespace qor {

void NodeHeader::txtDescription_Change()
{
    mForm.cmdApply->setEnabled(true);
}

void NodeHeader::cmbUsePasswords_Click()
{
    mForm.cmdApply->setEnabled(true);
}

void NodeHeader::cmbMSGNodeNumber_Click()
{
    mForm.cmdApply->setEnabled(true);
}

void NodeHeader::txtAccessCode_Change()
{
    ReportErrors(u"txtAccessCode_Change"_s, [&] {
        FilterField(*mForm.txtAccessCode, IsDigit);
        mForm.cmdApply->setEnabled(true);
    });
}

void NodeHeader::cmbMSGNodeNumber_Change()
{
    ReportErrors(u"cmbMSGNodeNumber_Change"_s, [&] {
        if (WalkTypedNumber(*mForm.cmbMSGNodeNumber) == 0)
            mForm.cmbMSGNodeNumber->SetListIndex(0);
        mForm.cmdApply->setEnabled(true);
    });
}

} // namespace qor
