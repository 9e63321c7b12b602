// The form with nothing behind it: no rules, no handlers.
#pragma once

#include "form/EditorForm.h"

namespace qor {

class BareForm : public EditorForm
{
public:
    bool keepLoaded = false; ///< what Form_Unload answers

protected:
    void Form_Load() override {}
    void Form_Activate() override {}
    void Form_Unload(bool& cancel) override { cancel = keepLoaded; }
};

} // namespace qor
