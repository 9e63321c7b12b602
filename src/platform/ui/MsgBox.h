// Message boxes by style number.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// What a style number is the sum of: buttons and icon.
namespace MsgBoxStyle {
inline constexpr int OkOnly = 0;
inline constexpr int YesNoCancel = 3;
inline constexpr int YesNo = 4;
inline constexpr int Critical = 16;
inline constexpr int Question = 32;
inline constexpr int Exclamation = 48;
inline constexpr int Information = 64;
} // namespace MsgBoxStyle

enum class MsgBoxAnswer { None = 0, Ok = 1, Cancel = 2, Yes = 6, No = 7 };

/// Shows a text as it stands (CR LF, no markup) and waits for the answer. Closing the box, or Escape, is Cancel if the
/// box has that button, else No, else OK. When it ends because the host quits, the answer is Cancel or None.
MsgBoxAnswer MsgBox(const QString& text, int style, const QString& title);

/// From now on the error reports of all procedures appear in message boxes.
void InstallErrorBox();

} // namespace qor
