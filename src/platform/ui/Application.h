// The application object of the process: the host's, or one of our own where the host has none.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

/// Makes sure that forms can be shown on this thread. Where the host has no application object it makes one
/// that stays for the process, and leaves locale and signal handlers as they were. Nothing when all is well;
/// else a sentence: an application object that cannot show windows, another thread than the application's, no
/// usable display, a process that is short of what the toolkit needs.
std::optional<QString> EnsureApplication();

} // namespace qor
