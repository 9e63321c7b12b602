// Waiting for what another program holds, with something on screen.
#pragma once

#include <functional>
#include <QString>

namespace qor {

enum class WaitOutcome { Succeeded, TimedOut, Cancelled };

/// Tries until it succeeds, the time (in milliseconds) has run out, or the administrator gives up. After the first
/// second a dialog says the text and lets people cancel. What tryFor raises ends it.
/// tryFor: tries for so many milliseconds, and tells whether it succeeded.
WaitOutcome WaitFor(const std::function<bool(int milliseconds)>& tryFor, const QString& text, int patience);

} // namespace qor
