// Keys and clicks that wait to be delivered.
#pragma once

class QWidget;

namespace qor {

/// Takes the keys, clicks and closings that people have sent to a window and throws them away; everything else that
/// waits is delivered, timers and sockets aside. For a window that could not be used while they were made.
void DropPendingInput(QWidget& window);

} // namespace qor
