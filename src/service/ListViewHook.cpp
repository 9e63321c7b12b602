#include "service/ListViewHook.h"

#include "form/EditorForm.h"
#include "form/ModuleState.h"

namespace qor {

MessageResult ListViewWindowProc(WindowHandle window, quint32 message, quintptr wParam, qintptr lParam)
{
    EditorForm* form = Module().LoadedForm;
    if (!form || window != form->LVDirectory->Handle())
        return 0;
    if (message == WM_VSCROLL || message == WM_PARENTNOTIFY)
        form->HideEntryEditors();
    return CallWindowProcA(Module().OldListViewProc, window, message, wParam, lParam);
}

} // namespace qor
