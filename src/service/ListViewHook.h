// The hook in the directory list's window procedure.
#pragma once

#include "platform/ui/WindowMessages.h"

namespace qor {

/// Hides the in-place fields when the list of the loaded form scrolls or a click reaches its column headers,
/// so that they never stand over another row; then hands every message of that list on to the procedure it
/// replaced. A message for any other window is answered with 0.
MessageResult ListViewWindowProc(WindowHandle window, quint32 message, quintptr wParam, qintptr lParam);

} // namespace qor
