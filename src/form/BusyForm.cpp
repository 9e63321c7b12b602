#include "form/BusyForm.h"

#include "form/EditorForm.h"

namespace qor {

BusyForm::BusyForm(EditorForm& form) : mForm(form), mFocus(form.focusWidget())
{
    mForm.Frame1->setEnabled(false);
    mForm.StatusBar1->show();
}

BusyForm::~BusyForm()
{
    mForm.StatusBar1->hide();
    mForm.Frame1->setEnabled(true);
    if (mFocus)
        mFocus->setFocus();
}

} // namespace qor
