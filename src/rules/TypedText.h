// What typed text becomes: the filter of admitted characters, and numbers digit by digit.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// The characters that are admitted, in their order.
QString Admitted(QStringView text, bool (*admits)(QChar));

/// The number that a text begins with, digit by digit up to the first character that is not a digit or takes the number
/// out of low..high. 0 when that is the first one, so that longer numbers cannot be typed if their beginnings are below
/// `low`.
int TypedNumber(QStringView text, int low, int high);

} // namespace qor
