// What becomes of a typed text: the filter of admitted characters and the walk over typed digits.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// The characters that are admitted, in their order.
QString Admitted(QStringView text, bool (*admits)(QChar));

/// The number that a text begins with: digit by digit, ended by the first character that is no digit or that takes the
/// number out of low..high. 0 when not even the first digit stays; so a number of several digits cannot be typed where
/// its beginnings lie below `low`.
int TypedNumber(QStringView text, int low, int high);

} // namespace qor
