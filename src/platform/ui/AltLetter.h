// Letters that are pressed with Alt: they call buttons, and write nothing.
#pragma once

class QKeyEvent;

namespace qor {

/// Whether a key press is a character with Alt held down; the keys that a keyboard makes with another Alt key, such as
/// @, are not.
bool IsAltLetter(const QKeyEvent& event);

} // namespace qor
