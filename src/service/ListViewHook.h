// The hook in the directory list's window procedure.
#pragma once

#include "platform/ui/WindowMessages.h"

namespace qor {

/// Hides the in-place fields when the list of the loaded form scrolls or its column headers are clicked, so that they
/// never lie over another row; then hands every message of that list on to the procedure that it replaced. The answer
/// to a message for any other window is 0.
MessageResult ListViewWindowProc(WindowHandle window, quint32 message, quintptr wParam, qintptr lParam);

} // namespace qor
