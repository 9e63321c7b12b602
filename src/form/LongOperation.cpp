#include "form/LongOperation.h"

#include "form/EditorForm.h"
#include "platform/ui/PendingInput.h"

namespace qor {

LongOperation::LongOperation(EditorForm& form) : mForm(form), mFocus(form.focusWidget())
{
    mForm.Frame1->setEnabled(false);
    mForm.StatusBar1->show();
}

LongOperation::~LongOperation()
{
    mForm.StatusBar1->hide();
    DropPendingInput(mForm);
    mForm.Frame1->setEnabled(true);
    if (mFocus)
        mFocus->setFocus();
}

} // namespace qor
