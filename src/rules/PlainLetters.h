// Names in the letters that a directory takes.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// The letters A to Z of a text, accents taken off by their Unicode decomposition: Müller becomes Muller, whatever its
/// language is. Letters that have none are written as usual: ß ss, æ ae, œ oe, þ th, ø o, ł l, đ and ð d, ħ h, ı i, ŋ
/// n. Everything else is left out: O'Neil becomes ONeil.
QString PlainLetters(const QString& text);

/// The digits 0 to 9 of a text; those of other scripts and forms become these.
QString PlainDigits(const QString& text);

} // namespace qor
