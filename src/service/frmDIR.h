// The editor's form: its life from load to unload, and which handler serves which event. It contains no rule.
#pragma once

#include "form/DirectoryListEvents.h"
#include "form/EditorForm.h"
#include "rules/BusinessRules.h"

#include <memory>

namespace qor {

class frmDIR : public EditorForm
{
    Q_OBJECT
public:
    frmDIR();

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Unload(bool& cancel) override;

private:
    void ConnectEvents();

    std::unique_ptr<BusinessRules> mRules; ///< the form's own instance, from Form_Load on
    DirectoryListEvents mListEvents;
};

} // namespace qor
