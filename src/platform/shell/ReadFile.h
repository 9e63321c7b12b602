// Files that are read whole.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

/// The contents of a regular file of at most this many bytes; nothing where none is there. Raises RuntimeError for one
/// that cannot be read, is larger, or is no regular file: a pipe would never end.
std::optional<QByteArray> ReadWholeFile(const QString& fileName, qint64 highestSize);

} // namespace qor
