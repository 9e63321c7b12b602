// Waits for a lock that another program holds, with a dialog on screen.
#pragma once

#include <functional>
#include <QString>

namespace qor {

enum class WaitOutcome { Succeeded, TimedOut, Cancelled };

/// Tries until it succeeds, the time (in milliseconds) has run out, or the administrator gives up. After the first
/// second a dialog shows the text and offers to cancel. What tryFor raises ends the wait.
///
/// tryFor: tries for so many milliseconds and returns whether it succeeded.
WaitOutcome WaitFor(const std::function<bool(int milliseconds)>& tryFor, const QString& text, int patience);

} // namespace qor
