// Whether a display can be used, found out without the toolkit, which would end the process if it cannot.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

/// Nothing when the display that the environment names can be used; else a sentence that says what is
/// missing.
std::optional<QString> DisplayProblem();

} // namespace qor
