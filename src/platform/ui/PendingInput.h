// Keys and clicks that have not been delivered yet.
#pragma once

class QWidget;

namespace qor {

/// Throws away the pending keys, clicks and close requests of a window that could not be used while they were made.
/// Everything else that is pending is delivered, except for timers and sockets.
void DropPendingInput(QWidget& window);

} // namespace qor
