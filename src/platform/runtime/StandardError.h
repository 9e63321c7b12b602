// What is told to whoever looks after the host, and not to the administrator.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// Prints a sentence on standard error, once in a process for each topic.
void TellOnce(const QString& topic, const QString& sentence);

} // namespace qor
