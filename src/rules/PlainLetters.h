// Names in the letters that a directory takes.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// The text with its accents apart, by Unicode decomposition, and with letters that do not decompose written as usual:
/// ß ss, æ ae, œ oe, þ th, ø o, ł l, đ and ð d, ħ h, ı i, ŋ n.
QString SpelledOut(const QString& text);

/// The letters A to Z of a text that is spelled out: Müller becomes Muller, whatever its language, and O'Neil ONeil.
QString PlainLetters(const QString& text);

/// The digits of a text as 0 to 9, whatever their script and form.
QString PlainDigits(const QString& text);

} // namespace qor
