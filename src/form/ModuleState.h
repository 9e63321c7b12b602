// The values that the whole component shares, one copy per thread.
#pragma once

#include "platform/ui/WindowMessages.h"

#include <QString>

namespace qor {

class EditorForm;

struct ModuleState
{
    QString PendingMessage;                    ///< shown once when the form is activated; empty for none
    WindowProcedure OldListViewProc = nullptr; ///< what the list view's hook replaced
    bool DirectoryChanged = false;             ///< rows were removed since loading or saving
    qint16 DirectorySubItemCount = 0;          ///< how many sub-items of a row carry the invalid-row colour
    EditorForm* LoadedForm = nullptr;          ///< the one form that is loaded on this thread
};

ModuleState& Module();

} // namespace qor
