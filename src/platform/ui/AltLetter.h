// Letters typed with Alt: they press buttons and are not text.
#pragma once

class QKeyEvent;

namespace qor {

/// Whether a key press is a character typed with Alt. Characters that a keyboard has on AltGr, such as @, are not.
bool IsAltLetter(const QKeyEvent& event);

} // namespace qor
